#include "relations/tableref.h"
#include "engine/sql_text.h"

namespace quillmarden {

std::vector<UsedTable> usedTables(Database& database, std::string_view system) {
  std::string sql = "SELECT inf.ID, inf.システム名, inf.テーブル名, inf.日本語名, inf.ファイル種別 ";
  sql.append(" FROM DAT_TABLEREF AS ref ")
      .append("   INNER JOIN MAS_TABLEINFO AS inf ON ref.ID = inf.ID ")
      .append(" WHERE ref.システム名 = ")
      .append(sqlText(system))
      .append(" ")
      .append("   AND inf.システム名 <> ")
      .append(sqlText(system))
      .append(" ")
      .append("   AND inf.全システム共通 =-1  ")
      .append("   AND inf.削除フラグ =0 ")
      .append(" Order By inf.システム名,inf.日本語名, inf.テーブル名 ");

  std::vector<UsedTable> tables;
  for (Recordset rows = database.openRecordset(sql); !rows.eof(); rows.moveNext()) {
    tables.push_back({std::string(rows.text(0)), std::string(rows.text(1)), std::string(rows.text(2)),
                      std::string(rows.text(3)), std::string(rows.text(4))});
  }
  return tables;
}

}  // namespace quillmarden
