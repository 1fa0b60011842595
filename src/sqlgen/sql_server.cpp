#include "common/text.h"
#include "relations/index.h"
#include "sqlgen/clauses.h"
#include "sqlgen/generators.h"
#include "sqlgen/sql_server_clauses.h"

namespace quillmarden {

namespace {

/// What stands for the table in the head and in BRIN statements: the short name where there is one.
std::string shownName(const Generation& generation) {
  const std::string_view ryaku = trim(generation.table.lblRyaku.caption);
  return ryaku.empty() ? generation.table.txtTableNameENG.text : std::string(ryaku);
}

void putDrop(const Generation& generation, ScriptText& script) {
  if (!generation.dropDue()) return;
  script.print("DROP TABLE ", quotedTable(generation));
  script.print("go \r\n");
  script.print("\r\n");
}

void putOpening(const Generation& generation, ScriptText& script) {
  script.print("CREATE TABLE ", toUpper(quotedTable(generation)));
  script.print("  (");
}

std::string columnLine(const Generation& generation, const Field& field, bool first) {
  std::string line(first ? "\t[" : "\t,[");
  line.append(field.name).append("]");
  if (field.computed()) {
    if (!field.remark.empty()) line.append(" AS (").append(field.remark).append(")");
    return line;
  }
  Session& session = generation.session;
  const std::string type = toLower(field.type);
  DigitRule rule =
      gFileType_NoDigits(*session.gDB, session.catalogue, trim(generation.table.lblFileType.caption), type);
  if (field.type == "@AUTO_NO") rule.noDigits = true;
  if (!type.empty()) line.append("\t").append(bracketedType(field.type));
  if (!rule.noDigits && !type.empty()) line.append("(").append(digitsText(field)).append(") ");

  std::string defaultClause;
  if (type.find("uniqueidentifier") != std::string::npos) {
    line += " DEFAULT (newid())";
  } else if (generation.due(session.settings.createSql2DefaultIsPut)) {
    defaultClause = bracketedDefault(field, rule.numeric);
  }
  line += nullClause(field, !defaultClause.empty());
  line += defaultClause;
  return line.append("\t-- ").append(oneLine(field.japaneseName));
}

void putColumns(const Generation& generation, const std::vector<Field>& fields, ScriptText& script) {
  for (const Field& field : fields) script.print(columnLine(generation, field, &field == fields.data()));
}

void putKey(const Generation& generation, const std::vector<Field>& fields, ScriptText& script) {
  const std::string keys = keyList(fields);
  if (!keys.empty())
    script.print("\t,CONSTRAINT PK_", generation.table.txtTableNameENG.text, " PRIMARY KEY CLUSTERED (", keys, "  ) ");
}

void putChecks(const Generation& generation, const std::vector<Field>& fields, ScriptText& script) {
  AlterStyle style;
  style.table = quotedTable(generation);
  style.end = " go ";
  style.bracketedColumns = true;
  for (const Field& field : fields)
    if (field.hasRange()) script.print(alterRange(style, field));
  putAlterValueChecks(generation, style, fields, script);
}

void putIndexes(const Generation& generation, ScriptText& script) {
  const std::vector<TableIndex> indexes = gGetIndexList(*generation.session.gDB, generation.table.lblID.caption);
  if (indexes.empty()) return;
  script.print();
  for (const TableIndex& index : indexes) {
    std::string text;
    if (index.brin) {
      text.append("Create INDEX [").append(index.name).append("]  ON [");
      text.append(toUpper(shownName(generation))).append("]  USING BRIN  ");
    } else {
      text.append(index.unique() ? "Create UNIQUE INDEX [" : "Create INDEX [").append(index.name).append("]  ON ");
      text.append(quotedTable(generation));
    }
    text += " ( ";
    for (const TableIndex::Field& field : index.fields)
      text.append(&field == index.fields.data() ? "  [" : ", [").append(field.name).append("] ");
    script.print(text, " ) ");
    script.print(" go ");
  }
}

}  // namespace

void pCreateCurrentTable2Sql4SQLServer(const Generation& generation, ScriptText& script) {
  std::vector<Field> fields = readFields(generation.table);
  HeadStyle head;
  const std::string shown = shownName(generation);
  head.tableText = shown;
  putHead(generation, head, script);
  putDrop(generation, script);
  putOpening(generation, script);
  putColumns(generation, fields, script);
  // A computed column takes no part in keys and checks.
  std::erase_if(fields, [](const Field& field) { return field.computed(); });
  putKey(generation, fields, script);
  script.print(") ");
  script.print(" go ");
  putChecks(generation, fields, script);
  putIndexes(generation, script);
}

}  // namespace quillmarden
