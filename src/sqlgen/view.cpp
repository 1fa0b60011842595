#include "common/text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/generators.h"

namespace quillmarden {

namespace {

constexpr std::string_view kViewMark = "V_";

std::string schemaPrefix(const SystemRecord& system) {
  return equalsNoCase(system.databaseType, "PostgreSQL") ? std::string(schemaOf(system)) + "." : "";
}

void putViewHead(const Generation& generation, std::string_view prefix, ScriptText& script) {
  constexpr std::string_view kRuler = "--------------------------------------------------------";
  const frmTBDetail& table = generation.table;
  const auto put = [&](std::string_view label, std::string_view value) {
    script.print("-- \t", label, oneLine(value));
  };
  script.print(kRuler);
  put("Schema           = ", prefix);
  put("論理名(日本語)   = ", table.txtTableNameJPN.text);
  put("物理名(テーブル) = ", table.txtTableNameENG.text);
  if (!trim(table.lblRyaku.caption).empty()) put("テーブル略名     = ", table.lblRyaku.caption);
  put("TableID          = ", table.lblID.caption);
  if (!trim(table.lblBunrui.caption).empty()) put("分類             :", table.lblBunrui.caption);
  put("DataBaseType     : ", trim(table.lblFileType.caption));
  script.print();
  put("作成先           : ", table.lblHost.caption);
  script.print(kRuler);
  script.print("\r\n");
}

/// The columns. A view's own grid names the source in its first column, a base table's in its second.
void putItems(const Spread& grid, bool isView, ScriptText& script) {
  for (int row = 1; row <= grid.maxRows(); ++row) {
    const std::string japaneseName(grid.text(field_col::kJapaneseName, row));
    const std::string fieldName = toUpper(grid.text(field_col::kFieldName, row));
    const std::string& source = isView ? japaneseName : fieldName;
    const std::string& alias = isView ? fieldName : japaneseName;
    if (source.empty()) return;
    const char* start = row == 1 ? "    a." : "  , a.";
    if (alias.empty()) {
      script.print(start, source);
    } else {
      script.print(start, source, " AS \"", alias, "\"");
    }
  }
}

}  // namespace

void pCreateCurrentTable2SqlView(const Generation& generation, ScriptText& script) {
  const std::string table = toUpper(generation.table.txtTableNameENG.text);
  const bool isView = table.find(kViewMark) != std::string::npos;
  const std::string prefix = schemaPrefix(generation.system);
  putViewHead(generation, prefix, script);
  script.print("CREATE VIEW ", prefix, table.starts_with(kViewMark) ? "" : kViewMark, table, "  AS ");
  script.print(" SELECT  ");
  putItems(generation.table.Spread, isView, script);
  script.print(" FROM ", table, " AS a ");
  script.print(" ;");
}

}  // namespace quillmarden
