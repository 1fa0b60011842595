#include <algorithm>

#include "common/text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/generators.h"

namespace quillmarden {

namespace {

constexpr std::string_view kEnd = ";";

void putDrop(const Generation& generation, ScriptText& script) {
  if (!generation.dropDue()) return;
  script.print("DROP TABLE ", generation.table.txtTableNameENG.text);
  script.print(kEnd, "\r\n");
  script.print("\r\n");
}

void putOpening(const Generation& generation, ScriptText& script) {
  script.print("CREATE TABLE ", toUpper(generation.table.txtTableNameENG.text));
  script.print("  (");
}

/// A field with what its statements behind the CREATE repeat.
struct Column {
  Field field;
  std::string type;           ///< with its digits
  std::string defaultClause;  ///< "" without a default
};

Column columnOf(const Generation& generation, const Field& field) {
  Session& session = generation.session;
  const DigitRule rule =
      gFileType_NoDigits(*session.gDB, session.catalogue, trim(generation.table.lblFileType.caption), field.type);
  Column column{field, std::string(field.type), ""};
  if (!rule.noDigits && !field.type.empty()) column.type += "(" + digitsText(field) + ") ";
  column.defaultClause = bareDefault(field, rule.numeric);
  return column;
}

void putColumns(const std::vector<Column>& columns, ScriptText& script) {
  for (const Column& column : columns)
    script.print(&column == columns.data() ? "\t " : "\t,", column.field.name, "\t ", column.type, " ",
                 nullClause(column.field, false));
}

void putKey(const std::vector<Field>& fields, ScriptText& script) {
  const std::string keys = keyList(fields);
  if (!keys.empty()) script.print("\t,PRIMARY KEY ( ", keys, " ) ");
}

void putChecks(const Generation& generation, const std::vector<Field>& fields, ScriptText& script) {
  AlterStyle style;
  style.table = generation.table.txtTableNameENG.text;
  style.end = kEnd;
  style.dropsRange = false;
  bool headed = false;
  for (const Field& field : fields) {
    if (!field.hasRange()) continue;
    if (!headed) script.print("/*制約(CHECK)の出力*/");
    headed = true;
    script.print(alterRange(style, field));
  }
  const auto hasList = [](const Field& field) { return !field.valueList.empty(); };
  if (std::any_of(fields.begin(), fields.end(), hasList)) {
    script.print("/*値リストの出力*/");
    putAlterValueChecks(generation, style, fields, script);
  }
}

void putTableComment(const Generation& generation, ScriptText& script) {
  const std::string memo = memoText(generation.table);
  if (memo.empty()) return;
  script.print(" ALTER TABLE ", generation.table.txtTableNameENG.text, " COMMENT '", memo, "'");
  script.print(kEnd);
}

void putDefaults(const Generation& generation, const std::vector<Column>& columns, ScriptText& script) {
  bool headed = false;
  for (const Column& column : columns) {
    if (column.defaultClause.empty()) continue;
    if (!headed) script.print("/*初期値の出力*/");
    headed = true;
    script.print(" ALTER TABLE ", generation.table.txtTableNameENG.text, " ALTER COLUMN  ", column.field.name, " SET ",
                 column.defaultClause, kEnd, "\r\n");
  }
}

void putColumnComments(const Generation& generation, const std::vector<Column>& columns, ScriptText& script) {
  bool headed = false;
  for (const Column& column : columns) {
    if (column.field.remark.empty()) continue;
    if (!headed) script.print("/*コメントの出力*/");
    headed = true;
    const std::string_view name = column.field.name;
    script.print(" ALTER TABLE ", generation.table.txtTableNameENG.text, " change  ", name, " ", name, " ", column.type,
                 " COMMENT '", cleanComment(column.field.remark), "'", kEnd);
  }
}

}  // namespace

void pCreateCurrentTable2Sql4MySQL(const Generation& generation, ScriptText& script) {
  const std::vector<Field> fields = readFields(generation.table);
  std::vector<Column> columns;
  columns.reserve(fields.size());
  for (const Field& field : fields) columns.push_back(columnOf(generation, field));

  HeadStyle head = blockHeadStyle();
  head.japaneseLabel = "";
  head.tableLabel = "";
  head.ryakuLabel = "テーブル略名=";
  putHead(generation, head, script);
  putDrop(generation, script);
  putOpening(generation, script);
  putColumns(columns, script);
  putKey(fields, script);
  script.print(") ");
  script.print(kEnd);
  putChecks(generation, fields, script);
  putTableComment(generation, script);
  putDefaults(generation, columns, script);
  putColumnComments(generation, columns, script);
}

}  // namespace quillmarden
