#include "editing/table_classes.h"

#include "common/text.h"
#include "engine/sql_text.h"

namespace quillmarden {

std::vector<std::string> tableClasses() {
  return {"",     "マスタ",          "管理データ", "集計データ", "トランザクション",
          "履歴", "GlobalTemporary", "その他",     "VIEW",       "区分"};
}

std::vector<std::string> blankAndValues(Database& database, const std::string& sql) {
  std::vector<std::string> values = {""};
  for (Recordset rows = database.openRecordset(sql); !rows.eof(); rows.moveNext())
    if (const std::string_view value = trim(rows.text(0)); !value.empty()) values.emplace_back(value);
  return values;
}

std::vector<std::string> dataClassesInUse(Database& database, std::string_view system) {
  const auto of = [&](const std::string& column) {
    return "SELECT " + column + " AS databun FROM MAS_TABLEINFO WHERE システム名 = " + sqlText(system) +
           " AND 削除フラグ = 0 AND NOT " + column + " IS NULL ";
  };
  return blankAndValues(database, of("データ分類") + " UNION " + of("データ分類2"));
}

}  // namespace quillmarden
