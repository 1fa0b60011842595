#include <utility>

#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/writing.h"

namespace quillmarden {

namespace {

constexpr std::size_t kUsualLine = 64;  ///< bytes of a statement about a column, rather too many than too few

std::string_view cutComment(std::string_view text, std::size_t most) {
  // Bytes are never fewer than characters: nearly all comments are known to fit without counting.
  return most > 0 && text.size() > most ? firstCharacters(text, most) : text;
}

/// The column in a remark.
std::string fieldText(const ScriptTable& table, const ScriptColumn& column) {
  return table.name + "." + std::string(column.name);
}

/// Comments that the server would refuse stand cut in the statement; the script says so.
void putCutComments(const Writing& writing, const ScriptTable& table, ScriptText& text) {
  const Dialect& dialect = writing.dialect;
  if (!writing.options.comments) return;
  const auto isCut = [](std::string_view comment, std::size_t most) {
    return cutComment(comment, most).size() != comment.size();
  };
  if (isCut(table.memo, dialect.tableComment)) putRemark(text, "コメントを切り詰めました", table.name);
  for (const ScriptColumn& column : table.columns)
    if (!column.computed && isCut(column.remark, dialect.columnComment))
      putRemark(text, "コメントを切り詰めました", fieldText(table, column));
}

/// The column's line behind the table's opening bracket or comma.
void putColumn(Writing& writing, const ScriptTable& table, const ScriptColumn& column, std::string& script) {
  const Dialect& dialect = writing.dialect;
  appendName(dialect, columnName(writing, table.id, column.name), script);
  if (column.computed) {
    script += dialect.computed(column.remark);
    return;
  }
  script.append(" ").append(dialect.type(column));
  const bool identity = dialect.kind == ScriptKind::SqlServer && script.ends_with("identity(1,1)");
  // A time stamp that may be Null has to say so on servers that think otherwise.
  const bool saysNull = dialect.kind == ScriptKind::MySql || dialect.kind == ScriptKind::SqlServer;
  const std::string_view null = column.notNull ? " NOT NULL" : saysNull && !identity ? " NULL" : "";
  if (!dialect.defaultBeforeNull) script += null;
  if (const std::string value = writing.options.defaults ? defaultLiteral(dialect, column) : ""; !value.empty())
    script.append(" DEFAULT ").append(value);
  if (dialect.defaultBeforeNull) script += null;
  if (dialect.commentsInCreate() && writing.options.comments && !trim(column.remark).empty()) {
    script += " COMMENT ";
    appendTextLiteral(dialect, cutComment(column.remark, dialect.columnComment), script);
  }
}

void putKey(Writing& writing, const ScriptTable& table, ScriptText& text) {
  const std::vector<std::string> fields = table.keyFields();
  if (fields.empty()) return;
  if (!keepsPartition(writing, table, fields)) {
    putRemark(text, "主キーを作成できません. パーティションの項目が含まれていません", table.name);
    return;
  }
  std::string key = "\t,";
  // MySQL has one name for all primary keys.
  if (writing.dialect.kind != ScriptKind::MySql) {
    NameScope& scope = writing.dialect.indexNamesInSchema ? writing.tables : writing.constraints;
    key += "CONSTRAINT " + madeName(writing, scope, "PK_", table.name) + " ";
  }
  key.append("PRIMARY KEY").append(writing.dialect.clustered);
  key += " (" + keyList(writing, table, fields) + ")";
  const std::string_view space = trim(writing.system.indexSpace);
  if (writing.dialect.kind == ScriptKind::Oracle && writing.options.storage && !space.empty() && !table.temporary)
    key += " USING INDEX TABLESPACE " + quotedName(writing.dialect, space);
  text.print(key);
}

void putChecks(Writing& writing, const ScriptTable& table, ScriptText& text) {
  for (const ScriptColumn& column : table.columns) {
    if (column.computed || !column.checked() || (column.list && !writing.options.checks)) continue;
    const std::string condition = checkCondition(writing.dialect, column, quotedColumn(writing, table.id, column.name));
    if (!condition.empty())
      text.print("\t,CONSTRAINT ",
                 madeName(writing, writing.constraints, "CK_", (table.shortName + "_").append(column.name)), " CHECK (",
                 condition, ")");
  }
}

std::string openingWords(const Writing& writing, const ScriptTable& table) {
  if (writing.dialect.kind == ScriptKind::Oracle && table.temporary) return "CREATE GLOBAL TEMPORARY TABLE ";
  if (writing.dialect.kind != ScriptKind::Teradata) return "CREATE TABLE ";
  return table.isSet ? "CREATE SET TABLE " : "CREATE MULTISET TABLE ";
}

/// What stands between a table's name and its columns.
std::string_view tableOptions(const Dialect& dialect) {
  if (dialect.kind != ScriptKind::Teradata) return {};
  return ", NO FALLBACK, NO BEFORE JOURNAL, NO AFTER JOURNAL, CHECKSUM = DEFAULT";
}

void putTableEnd(Writing& writing, const ScriptTable& table, ScriptText& text) {
  const Dialect& dialect = writing.dialect;
  std::string end = ")";
  if (dialect.kind == ScriptKind::PostgreSql && !table.partition.empty())
    end += " PARTITION BY RANGE (" + columnList(writing, table.id, partitionFields(table)) + ")";
  if (dialect.commentsInCreate() && writing.options.comments && !table.memo.empty())
    end += " COMMENT = " + textLiteral(dialect, cutComment(table.memo, dialect.tableComment));
  if (dialect.kind == ScriptKind::Oracle && table.temporary) end += "\r\nON COMMIT PRESERVE ROWS";
  text.print(end);
  // An empty line would end the statement for the command-line tool.
  const std::size_t last = table.storage.find_last_not_of("\r\n ");
  if (last != std::string::npos) text.print(table.storage.substr(0, last + 1));
  text.print(dialect.end);
  text.print();
}

}  // namespace

void putTable(Writing& writing, const ScriptTable& table, const ScriptSink& sink) {
  ScriptText text;
  text.text = table.head;
  const auto impossible = [&](const ScriptColumn& column) {
    return column.computed && (column.remark.empty() || writing.dialect.computed(column.remark).empty());
  };
  bool first = true;
  ScriptText body;
  body.text.reserve(table.columns.size() * kUsualLine);
  for (const ScriptColumn& column : table.columns) {
    if (impossible(column)) {
      putRemark(text, "計算式の項目を作成できません", fieldText(table, column));
      continue;
    }
    body.text += first ? "\t" : "\t,";
    putColumn(writing, table, column, body.text);
    body.print();
    first = false;
  }
  if (first) {
    putRemark(text, "項目がないため作成できません", table.name);
    sink(table.name, std::move(text));
    return;
  }
  putCutComments(writing, table, text);
  text.print(openingWords(writing, table), namesOf(writing, table).qualified, tableOptions(writing.dialect));
  text.print("(");
  text.text += body.text;
  putKey(writing, table, text);
  putChecks(writing, table, text);
  putTableEnd(writing, table, text);
  sink(table.name, std::move(text));
}

void putComments(Writing& writing, const ScriptTable& table, const ScriptSink& sink) {
  ScriptText text;
  text.text.reserve(table.columns.size() * kUsualLine * 2);
  const TableNames& names = namesOf(writing, table);
  const Dialect& dialect = writing.dialect;
  if (!table.memo.empty()) dialect.comment(dialect, names, "", cutComment(table.memo, dialect.tableComment), text.text);
  for (const ScriptColumn& column : table.columns) {
    if (column.computed || trim(column.remark).empty()) continue;
    dialect.comment(dialect, names, columnName(writing, table.id, column.name),
                    cutComment(column.remark, dialect.columnComment), text.text);
  }
  if (!text.text.empty()) sink(table.name, std::move(text));
}

}  // namespace quillmarden
