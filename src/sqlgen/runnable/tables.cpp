#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/writing.h"

namespace quillmarden {

namespace {

std::string cutComment(std::string_view text, std::size_t most) {
  return std::string(most > 0 ? firstCharacters(text, most) : text);
}

/// Comments that the server would refuse stand cut in the statement; the script says so.
void putCutComments(const Writing& writing, const ScriptTable& table, ScriptText& text) {
  const Dialect& dialect = writing.dialect;
  if (!writing.options.comments) return;
  // Bytes are never fewer than characters: nearly all comments are known to fit without counting.
  const auto isCut = [](const std::string& comment, std::size_t most) {
    return most > 0 && comment.size() > most && cutComment(comment, most) != comment;
  };
  if (isCut(table.memo, dialect.tableComment)) putRemark(text, "コメントを切り詰めました", table.name);
  for (const ScriptColumn& column : table.columns)
    if (!column.computed && isCut(column.remark, dialect.columnComment))
      putRemark(text, "コメントを切り詰めました", table.name + "." + column.name);
}

std::string columnLine(Writing& writing, const ScriptTable& table, const ScriptColumn& column) {
  const Dialect& dialect = writing.dialect;
  std::string line = quotedColumn(writing, table.id, column.name);
  if (column.computed) return line + dialect.computed(column.remark);
  line.append(" ").append(dialect.type(column));
  const std::string value = writing.options.defaults ? defaultLiteral(dialect, column) : std::string();
  const std::string defaultClause = value.empty() ? "" : " DEFAULT " + value;
  const bool identity = dialect.kind == ScriptKind::SqlServer && line.ends_with("identity(1,1)");
  // A time stamp that may be Null has to say so on servers that think otherwise.
  const bool saysNull = dialect.kind == ScriptKind::MySql || dialect.kind == ScriptKind::SqlServer;
  const std::string nullClause = column.notNull ? " NOT NULL" : saysNull && !identity ? " NULL" : "";
  line += dialect.defaultBeforeNull ? defaultClause + nullClause : nullClause + defaultClause;
  if (dialect.commentsInCreate() && writing.options.comments && !trim(column.remark).empty())
    line += " COMMENT " + textLiteral(dialect, cutComment(column.remark, dialect.columnComment));
  return line;
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
    if (column.computed || (column.values.empty() && column.rangeKind.empty())) continue;
    if (!writing.options.checks && !column.values.empty()) continue;
    const std::string condition = checkCondition(writing.dialect, column, quotedColumn(writing, table.id, column.name));
    if (!condition.empty())
      text.print("\t,CONSTRAINT ", madeName(writing, writing.constraints, "CK_", table.shortName + "_" + column.name),
                 " CHECK (", condition, ")");
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
  for (const ScriptColumn& column : table.columns) {
    if (impossible(column)) {
      putRemark(text, "計算式の項目を作成できません", table.name + "." + column.name);
      continue;
    }
    body.print(first ? "\t" : "\t,", columnLine(writing, table, column));
    first = false;
  }
  if (first) {
    putRemark(text, "項目がないため作成できません", table.name);
    sink(table.name, text);
    return;
  }
  putCutComments(writing, table, text);
  text.print(openingWords(writing, table), namesOf(writing, table).qualified, tableOptions(writing.dialect));
  text.print("(");
  text.text += body.text;
  putKey(writing, table, text);
  putChecks(writing, table, text);
  putTableEnd(writing, table, text);
  sink(table.name, text);
}

void putComments(Writing& writing, const ScriptTable& table, const ScriptSink& sink) {
  ScriptText text;
  const TableNames names = namesOf(writing, table);
  const Dialect& dialect = writing.dialect;
  if (!table.memo.empty())
    text.text += dialect.comment(dialect, names, "", cutComment(table.memo, dialect.tableComment));
  for (const ScriptColumn& column : table.columns) {
    if (column.computed || trim(column.remark).empty()) continue;
    text.text += dialect.comment(dialect, names, columnName(writing, table.id, column.name),
                                 cutComment(column.remark, dialect.columnComment));
  }
  if (!text.text.empty()) sink(table.name, text);
}

}  // namespace quillmarden
