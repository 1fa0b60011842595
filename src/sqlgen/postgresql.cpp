#include "common/text.h"
#include "relations/index.h"
#include "sqlgen/clauses.h"
#include "sqlgen/generators.h"

namespace quillmarden {

namespace {

constexpr std::string_view kEnd = ";";

void putDrop(const Generation& generation, ScriptText& script) {
  if (!generation.dropDue()) return;
  script.print("DROP TABLE ", schemaOf(generation.system), ".", generation.table.txtTableNameENG.text);
  script.print(kEnd, "\r\n");
  script.print("\r\n");
}

void putOpening(const Generation& generation, ScriptText& script) {
  script.print("CREATE TABLE ", schemaOf(generation.system), ".", toUpper(generation.table.txtTableNameENG.text));
  script.print("  (");
}

std::string columnLine(const Generation& generation, const Field& field, bool first) {
  std::string line(first ? "\t" : "\t,");
  line += field.name;
  if (field.computed()) {
    if (!field.remark.empty()) line.append(" AS (").append(field.remark).append(")");
    return line;
  }
  Session& session = generation.session;
  const DigitRule rule =
      gFileType_NoDigits(*session.gDB, session.catalogue, trim(generation.table.lblFileType.caption), field.type);
  if (!field.type.empty()) {
    line.append("\t").append(field.type);
    if (!rule.noDigits) line.append("(").append(digitsText(field)).append(") ");
  }
  const std::string defaultClause = bracketedDefault(field, rule.numeric);
  line += nullClause(field, !defaultClause.empty());
  if (!defaultClause.empty()) line.append(" ").append(defaultClause);
  return line.append("\t-- ").append(oneLine(field.japaneseName));
}

void putColumns(const Generation& generation, const std::vector<Field>& fields, ScriptText& script) {
  for (const Field& field : fields) script.print(columnLine(generation, field, &field == fields.data()));
}

void putKey(const std::vector<Field>& fields, ScriptText& script) {
  const std::string keys = keyList(fields);
  if (!keys.empty()) script.print("\t,PRIMARY KEY ( ", keys, " ) ");
}

void putEnd(const Generation& generation, ScriptText& script) {
  script.print(") ");
  const std::string& partition = generation.table.txtPartitionRead.text;
  if (!partition.empty()) script.print(" PARTITION BY RANGE (", partition, " ) ");
  script.print(kEnd);
  script.print();
  script.print("-- CREATE TABLE と、INDEX等は別々に実行してください。");
  script.print("-- 同時に実行すると、エラーで作成されない場合があります.");
  script.print();
}

void putBrin(const Generation& generation, const std::vector<Field>& fields, ScriptText& script) {
  if (!generation.table.lblBRIN.visible) return;
  script.print(" CREATE INDEX idx_", generation.table.lblRyaku.caption, "_BRIN  ON ",
               toUpper(generation.table.txtTableNameENG.text), " USING BRIN (", keyList(fields), " ) ");
  script.print(kEnd);
}

void putChecks(const Generation& generation, const std::vector<Field>& fields, ScriptText& script) {
  AlterStyle style;
  style.table = generation.table.txtTableNameENG.text;
  style.end = kEnd;
  for (const Field& field : fields)
    if (field.hasRange()) script.print(alterRange(style, field));
  putAlterValueChecks(generation, style, fields, script);
}

void putComments(const Generation& generation, const std::vector<Field>& fields, ScriptText& script) {
  const std::string& table = generation.table.txtTableNameENG.text;
  const std::string memo = memoText(generation.table);
  if (!memo.empty()) {
    script.print(" COMMENT ON TABLE ", table, " IS '", memo, "'");
    script.print(kEnd);
  }
  for (const Field& field : fields) {
    if (field.remark.empty()) continue;
    script.print(" COMMENT ON  COLUMN ", table, ".", field.name, " IS '", cleanComment(field.remark), "'");
    script.print(kEnd);
  }
}

void putIndexes(const Generation& generation, ScriptText& script) {
  const std::vector<TableIndex> indexes = gGetIndexList(*generation.session.gDB, generation.table.lblID.caption);
  if (indexes.empty()) return;
  const std::string table = toUpper(generation.table.txtTableNameENG.text);
  const std::string_view space = trim(generation.system.indexSpace);
  script.print();
  for (const TableIndex& index : indexes) {
    std::string text = index.unique() && !index.brin ? "Create UNIQUE INDEX " : "Create INDEX ";
    text.append(index.name).append(" ON ").append(table);
    if (index.brin) text += " USING BRIN  ";
    text += " ( ";
    for (const TableIndex::Field& field : index.fields)
      text.append(&field == index.fields.data() ? " " : ", ").append(field.name);
    text += " ) ";
    if (!space.empty()) text.append("\r\n TABLESPACE ").append(space);
    script.print(text);
    script.print(kEnd);
  }
}

}  // namespace

void pCreateCurrentTable2Sql4PostgreSQL(const Generation& generation, ScriptText& script) {
  std::vector<Field> fields = readFields(generation.table);
  HeadStyle head;
  head.schema = generation.system.odbcSource;
  head.indexSpace = trim(generation.system.indexSpace);
  putHead(generation, head, script);
  putDrop(generation, script);
  putOpening(generation, script);
  putColumns(generation, fields, script);
  // A computed column takes no part in keys, checks and comments.
  std::erase_if(fields, [](const Field& field) { return field.computed(); });
  putKey(fields, script);
  putEnd(generation, script);
  putBrin(generation, fields, script);
  putChecks(generation, fields, script);
  putComments(generation, fields, script);
  putIndexes(generation, script);
}

}  // namespace quillmarden
