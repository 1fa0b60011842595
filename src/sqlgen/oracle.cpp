#include "common/numbers.h"
#include "common/text.h"
#include "relations/index.h"
#include "sqlgen/clauses.h"
#include "sqlgen/generators.h"
#include "sqlgen/oracle_clauses.h"

namespace quillmarden {

namespace {

void putBackup(const Generation& generation, ScriptText& script) {
  if (!generation.backup) return;
  const std::string& table = generation.table.txtTableNameENG.text;
  script.print("CREATE TABLE ", toUpper(table), "_bk", formatDateTime(generation.host.clock.now(), "mmddhhnnss"));
  script.print(" As Select * From ", table);
  script.print("; ");
}

void putDrop(const Generation& generation, ScriptText& script) {
  if (generation.dropDue()) {
    script.print("DROP TABLE ", generation.table.txtTableNameENG.text);
    script.print("; ");
  }
  script.print("\r\n");
}

bool isGlobalTemporary(const Generation& generation) { return generation.table.lblBunrui.caption == "GlobalTemporary"; }

void putOpening(const Generation& generation, ScriptText& script) {
  const std::string& table = generation.table.txtTableNameENG.text;
  if (isGlobalTemporary(generation)) {
    script.print("CREATE GLOBAL TEMPORARY TABLE ", table, "(");
  } else {
    script.print("CREATE TABLE ", toUpper(table), "(");
  }
}

std::string columnLine(const Field& field, bool first) {
  std::string line(first ? "\t" : "\t,");
  line += field.cell;
  if (field.type == "date") {
    line.append("\t").append(field.type);
  } else if (!field.type.empty()) {
    // Brackets come with every type, also where the server wants none: the catalogue has no say here.
    line.append("\t").append(toLower(field.type)).append(bracketedDigits(field));
  }
  line += defaultAndNull(field);
  return line.append("\t-- ").append(oneLine(field.japaneseName));
}

void putColumns(const std::vector<Field>& fields, ScriptText& script) {
  for (const Field& field : fields) script.print(columnLine(field, &field == fields.data()));
}

void putEnd(const Generation& generation, ScriptText& script) {
  if (isGlobalTemporary(generation)) script.print(" ON COMMIT PRESERVE ROWS ");
  if (storageDue(generation)) {
    const std::string storage = pGetStorageClause(generation);
    if (!storage.empty()) script.print(storage);
  }
  script.print("; ");
  script.print();
}

void putRemarks(const Generation& generation, ScriptText& script) {
  script.print("-- Global Temporary Tableのサンプル.");
  script.print("-- CREATE GLOBAL TEMPORARY TABLE TEMP_", oneLine(generation.table.txtTableNameENG.text));
  script.print("-- ON COMMIT PRESERVE ROWS");
  script.print();
  script.print("-- サンプル");
  script.print("-- CREATE GLOBAL TEMPORARY TABLE テーブル名 (");
  script.print("--    カラム名1  データ型,");
  script.print("--    カラム名2  データ型, ");
  script.print("--   ...");
  script.print("-- )");
  script.print("-- ON COMMIT PRESERVE ROWS");
  script.print("-- ;");
  script.print();
  script.print();
  script.print("-- テーブル作成とコメントを別々に実行しないとエラーになることがあります.");
  script.print();
  script.print();
}

std::string indexText(const TableIndex& index, std::string_view table) {
  std::string text = "--インデックス\r\n";
  text.append(index.uniqueFlag == 1 ? "CREATE UNIQUE INDEX " : "CREATE INDEX ").append(index.name).append("\r\n");
  text.append("\t ON ").append(table).append("\r\n");
  text += "(\r\n";
  for (std::size_t place = 1; place <= index.fields.size(); ++place) {
    if (place > 1 && place % 5 == 0) text += "\r\n";
    text.append(place == 1 ? " " : " ,").append(index.fields[place - 1].name);
  }
  return text += "\r\n)\r\n;";
}

void pPutIndexText(const Generation& generation, ScriptText& script) {
  for (const TableIndex& index : gGetIndexList(*generation.session.gDB, generation.table.lblID.caption))
    script.print(indexText(index, generation.table.txtTableNameENG.text));
}

}  // namespace

void pCreateCurrentTable2Sql4Oracle(const Generation& generation, ScriptText& script) {
  const std::vector<Field> fields = readFields(generation.table);
  putHead(generation, {}, script);
  putBackup(generation, script);
  putDrop(generation, script);
  putOpening(generation, script);
  putColumns(fields, script);
  putConstraintsAndEnd(generation, fields, script);
  putEnd(generation, script);
  putRemarks(generation, script);
  putComments(generation, fields, ";", script);
  pPutIndexText(generation, script);
}

}  // namespace quillmarden
