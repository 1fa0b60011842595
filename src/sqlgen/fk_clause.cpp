#include "sqlgen/fk_clause.h"

#include <algorithm>
#include <string_view>

#include "common/text.h"
#include "engine/database.h"

namespace quillmarden {

bool hasForeignKeys(const std::vector<Field>& fields) {
  return std::any_of(fields.begin(), fields.end(), [](const Field& field) { return !field.foreign.empty(); });
}

std::string pGetFkClause(const Generation& generation) {
  const frmTBDetail& table = generation.table;
  Recordset rows = generation.session.gDB->openRecordset(
      " SELECT m.項目名 AS m項目名 "
      " , i.テーブル名, s.ID, s.ROWNO, s.項目名 AS s項目名 "
      ", i.システム名, sys.username "
      ", i.略名 "
      " FROM ((MAS_TABLEDETAILES AS m "
      "   INNER JOIN MAS_TABLEDETAILES AS s "
      "       ON (m.外部参照TABLEID = s.ID) AND (m.外部参照ROWNO = s.ROWNO)) "
      "   INNER JOIN MAS_TABLEINFO AS i ON s.ID = i.ID) "
      "       LEFT JOIN MAS_SYSTEM AS sys ON i.システム名 = sys.システム名 "
      "   Where (((m.Id) = " +
      table.lblID.caption +
      ")) "
      "   ORDER BY s.ID, s.ROWNO;");
  if (rows.eof()) return "--    設定はあるがSql文が作成できなかった.";

  const std::string_view ryaku = trim(table.lblRyaku.caption);
  const std::string_view ownName = ryaku.empty() ? std::string_view(table.lblID.caption) : ryaku;
  std::string text;
  while (!rows.eof()) {
    const std::int64_t referredId = rows.integer("ID");
    const std::string referredTable(rows.text("テーブル名"));
    const std::string_view referredRyaku = trim(rows.text("略名"));
    const std::string suffix = referredRyaku.empty() ? referredTable : std::string(referredRyaku);
    // Another System's tables stand under another user of the database.
    std::string owner;
    if (!equalsNoCase(rows.text("システム名"), generation.system.name)) owner = rows.text("username");
    if (!owner.empty()) owner += ".";

    std::string ownFields;
    std::string referredFields;
    for (; !rows.eof() && rows.integer("ID") == referredId; rows.moveNext()) {
      const char* separator = ownFields.empty() ? "(" : ",";
      ownFields.append(separator).append(rows.text("m項目名"));
      referredFields.append(separator).append(rows.text("s項目名"));
    }
    if (!text.empty()) text += "\r\n";
    text.append("\t,CONSTRAINT FK_").append(ownName).append("_").append(suffix);
    text.append(" FOREIGN KEY ").append(ownFields).append(") ");
    text.append(" REFERENCES ").append(owner).append(referredTable).append(referredFields).append(") ");
  }
  return text;
}

}  // namespace quillmarden
