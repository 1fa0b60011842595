#include "common/text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/generators.h"
#include "sqlgen/oracle_clauses.h"

namespace quillmarden {

namespace {

void putDrop(const Generation& generation, ScriptText& script) {
  if (generation.dropDue()) {
    script.print("DROP TABLE ", toUpper(generation.table.txtTableNameENG.text));
    script.print(" ALL OVERRIDE ");
    script.print("; ");
  }
  for (int i = 0; i < 3; ++i) script.print("\r\n");
}

void putOpening(const Generation& generation, ScriptText& script) {
  // The figure of the first extent is free here, and tells whether the table is a set.
  const bool isSet = numberIn(generation.table.lblNum[0].caption) == 1;
  script.print("CREATE ", isSet ? " SET " : " MULTISET ", " TABLE ", toUpper(generation.table.txtTableNameENG.text),
               " , NO FALLBACK \r\n"
               " , NO BEFORE JOURNAL \r\n"
               " , NO AFTER JOURNAL \r\n"
               " , CHECKSUM = DEFAULT \r\n"
               " ( \r\n");
}

std::string columnLine(const Field& field, bool first) {
  std::string line(first ? "\t" : "\t,");
  line += field.cell;
  const std::string type = toLower(field.type);
  const bool isText = type == "char" || type == "varchar";
  if (type == "date") {
    line += "\t DATE FORMAT 'YYYY-MM-DD' ";
  } else if (type == "timestamp") {
    line += "\ttimestamp(0) ";
  } else if (!type.empty()) {
    line.append("\t").append(type).append(bracketedDigits(field));
  }
  if (isText) line += " CHARACTER SET UNICODE NOT CASESPECIFIC ";
  const bool hasDefault = !field.defaultText.empty();
  if (hasDefault) line.append(isText ? " DEFAULT '" : " DEFAULT ").append(field.defaultText).append(isText ? "' " : "");
  line += " ";
  if (field.null.empty()) {
    line += " NULL ";
  } else {
    line.append(" ").append(hasDefault ? "NOT NULL" : field.null).append(" ");
  }
  return line.append("\t-- ").append(oneLine(field.japaneseName));
}

void putColumns(const std::vector<Field>& fields, ScriptText& script) {
  for (const Field& field : fields) script.print(columnLine(field, &field == fields.data()));
}

void putEnd(const Generation& generation, ScriptText& script) {
  if (storageDue(generation)) {
    const std::string storage = pGetStorageClause(generation);
    if (!storage.empty()) script.print(storage);
  }
  script.print("/ ");
}

}  // namespace

void pCreateCurrentTable2Sql4Tera(const Generation& generation, ScriptText& script) {
  const std::vector<Field> fields = readFields(generation.table);
  HeadStyle head;
  head.japaneseLabel = "";
  head.tableLabel = "";
  head.ryakuLabel = "テーブル略名=";
  putHead(generation, head, script);
  putDrop(generation, script);
  putOpening(generation, script);
  putColumns(fields, script);
  putConstraintsAndEnd(generation, fields, script);
  putEnd(generation, script);
  putComments(generation, fields, "/", script);
}

}  // namespace quillmarden
