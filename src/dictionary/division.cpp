#include "dictionary/division.h"

#include "common/text.h"
#include "engine/sql_text.h"

namespace quillmarden {

namespace {

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
  std::string all;
  for (const std::string& part : parts) {
    if (!all.empty()) all += separator;
    all += part;
  }
  return all;
}

}  // namespace

std::vector<std::string> pGetDivisionDetails2Text(Database& database, std::string_view system, std::string_view name) {
  std::string sql = "SELECT DISTINCT a.値, MIN(a.内容) as 内容, MIN(a.初期値) as 初期値 ";
  sql.append(" FROM MAS_DIVISIONDETAILES AS a ")
      .append(" INNER JOIN MAS_DIVISION AS d  ")
      .append("   ON a.値名称 = d.値名称 ")
      .append("   WHERE a.システム名 =")
      .append(sqlText(system))
      .append(" ")
      .append("   AND a.値名称 =")
      .append(sqlText(name))
      .append(" ")
      .append("   OR ( a.システム名 <> ")
      .append(sqlText(system))
      .append(" ")
      .append("   AND a.値名称=")
      .append(sqlText(name))
      .append(" ")
      .append("   AND d.全システム共通=True) ")
      .append(" GROUP BY a.値 ");

  std::vector<std::string> entries;
  for (Recordset rows = database.openRecordset(sql); !rows.eof(); rows.moveNext()) {
    if (rows.text(0).empty()) continue;
    std::string entry = rows.integer(2) != 0 ? "[初期値]" : "";
    entry.append(rows.text(0)).append(":").append(trim(rows.text(1)));
    entries.push_back(std::move(entry));
  }
  return entries;
}

std::string pGetDivisionIn2Text(Database& database, std::string_view system, std::string_view name,
                                ValueListType type) {
  std::string sql = "SELECT a.値, a.内容,a.初期値";
  sql.append(" FROM MAS_DIVISIONDETAILES AS a")
      .append(" WHERE a.システム名 = ")
      .append(sqlText(system))
      .append("  AND a.値名称 = ")
      .append(sqlText(name))
      .append(" ")
      .append(" ORDER BY a.行番号");

  std::vector<std::string> values;
  for (Recordset rows = database.openRecordset(sql); !rows.eof(); rows.moveNext()) {
    std::string value(trim(rows.text(0)));
    if (value.empty()) continue;
    if (type == ValueListType::Text) value.insert(0, 1, '\'').push_back('\'');
    values.push_back(std::move(value));
  }
  return values.empty() ? "" : " IN (" + joined(values, ",") + ") ";
}

bool gGetOtherSystem2DivName(Database& database, std::string_view system, std::string_view name,
                             std::string& otherSystem) {
  std::string sql = "SELECT div.システム名 ";
  sql.append(" FROM MAS_DIVISION AS div ")
      .append(" WHERE (((div.値名称)=")
      .append(sqlText(name))
      .append(") ")
      .append(" AND ((div.システム名)<>")
      .append(sqlText(system))
      .append(") ")
      .append(" AND ((div.全システム共通)<>0) ")
      .append("AND ((div.削除フラグ)=0));");

  Recordset rows = database.openRecordset(sql);
  if (rows.eof()) return false;
  otherSystem = rows.isNull(0) ? "他のシステム" : std::string(rows.text(0));
  return true;
}

}  // namespace quillmarden
