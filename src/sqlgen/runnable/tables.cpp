#include <algorithm>
#include <utility>

#include "common/text.h"
#include "sqlgen/runnable/column_parts.h"
#include "sqlgen/runnable/key_plan.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/mysql_limits.h"
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

/// Comments that the server would refuse stand cut in the statement; the script says so, and of those that it changes.
void putCutComments(const Writing& writing, const ScriptTable& table, ScriptText& text) {
  const Dialect& dialect = writing.dialect;
  if (!writing.options.comments) return;
  const auto look = [&](std::string_view comment, std::size_t most, const std::string& what) {
    if (cutComment(comment, most).size() != comment.size()) putRemark(text, "コメントを切り詰めました", what);
    if (dialect.kind == ScriptKind::MySql && !withinBasicPlane(comment))
      putRemark(text, "コメントに保存できない文字があります", what);
  };
  look(table.memo, dialect.tableComment, table.name);
  for (const ScriptColumn& column : table.columns)
    if (!column.computed) look(column.remark, dialect.columnComment, fieldText(table, column));
}

/// The columns that an expression of the table may name.
ColumnLookUp columnsOf(Writing& writing, const ScriptTable& table) {
  return [&writing, &table](std::string_view name) -> std::optional<Expression> {
    const ScriptColumn* found = table.column(name);
    for (const ScriptColumn& column : table.columns)
      if (!found && equalsNoCase(column.name, name)) found = &column;
    if (!found || found->computed) return std::nullopt;
    return Expression{quotedColumn(writing, table.id, found->name), kindOf(*found->type)};
  };
}

/// Prints a column's line behind its name. False for one that cannot be had; the remark has said so.
bool putColumn(Writing& writing, const ScriptTable& table, const ScriptColumn& column, ScriptText& remarks,
               std::string& script) {
  const Dialect& dialect = writing.dialect;
  if (column.computed) {
    const ColumnPart part = computedPart(dialect, column, columnsOf(writing, table));
    if (!part.remark.empty()) {
      putRemark(remarks, part.remark, fieldText(table, column) + " (" + std::string(trim(column.remark)) + ")");
      return false;
    }
    appendName(dialect, columnName(writing, table.id, column.name), script);
    script += part.sql;
    const bool number = part.sql.starts_with(" numeric") || part.sql.starts_with(" decimal");
    if (dialect.knowsTypes && !number) writing.uncountable.insert(&column);
    return true;
  }
  const ScriptType& type = *column.type;
  if (!type.fault.empty()) putRemark(remarks, type.fault, fieldText(table, column));
  appendName(dialect, columnName(writing, table.id, column.name), script);
  script.append(" ").append(type.sql);
  // A time stamp that may be Null has to say so on servers that think otherwise.
  const bool saysNull =
      (dialect.kind == ScriptKind::MySql || dialect.kind == ScriptKind::SqlServer) && !type.numbersItself;
  const bool notNull = column.notNull || (dialect.kind == ScriptKind::MySql && type.numbersItself);
  const std::string_view null = notNull ? " NOT NULL" : saysNull ? " NULL" : "";
  if (!dialect.defaultBeforeNull) script += null;
  if (writing.options.defaults) {
    const ColumnPart part = defaultPart(dialect, column);
    if (!part.remark.empty())
      putRemark(remarks, part.remark, fieldText(table, column) + " (" + std::string(trim(column.defaultText)) + ")");
    script += part.sql;
  }
  if (dialect.defaultBeforeNull) script += null;
  if (dialect.commentsInCreate() && writing.options.comments && !trim(column.remark).empty()) {
    script += " COMMENT ";
    appendTextLiteral(dialect, cutComment(column.remark, dialect.columnComment), script);
  }
  return true;
}

void putKey(Writing& writing, const ScriptTable& table, ScriptText& remarks, ScriptText& text) {
  const std::vector<PlannedKey> keys = plannedKeys(writing, table);
  if (keys.empty() || keys.front().index) return;
  const PlannedKey& planned = keys.front();
  if (!planned.fault.empty()) {
    putRemark(remarks, "主キーを作成できません. " + planned.fault, table.name);
    return;
  }
  if (planned.partial()) putRemark(remarks, "主キーは項目の先頭だけで一意になります", table.name);
  std::string key = "\t,";
  // MySQL has one name for all primary keys.
  if (writing.dialect.kind != ScriptKind::MySql) {
    NameScope& scope = writing.dialect.indexNamesInSchema ? writing.tables : writing.constraints;
    key += "CONSTRAINT " + madeName(writing, scope, "PK_", table.name) + " ";
  }
  key.append("PRIMARY KEY").append(writing.dialect.clustered);
  key += " (" + keyList(writing, table, planned) + ")";
  const std::string_view space = trim(writing.system.indexSpace);
  if (writing.dialect.kind == ScriptKind::Oracle && writing.options.storage && !space.empty() && !table.temporary)
    key += " USING INDEX TABLESPACE " + serverName(writing.dialect, space);
  text.print(key);
}

void putChecks(Writing& writing, const ScriptTable& table, ScriptText& remarks, ScriptText& text) {
  for (const ScriptColumn& column : table.columns) {
    if (column.computed || !column.checked() || (column.list && !writing.options.checks)) continue;
    const ColumnPart part = checkPart(writing.dialect, column, quotedColumn(writing, table.id, column.name));
    if (!part.remark.empty()) putRemark(remarks, part.remark, fieldText(table, column));
    if (!part.sql.empty())
      text.print("\t,CONSTRAINT ",
                 madeName(writing, writing.constraints, "CK_", (table.shortName + "_").append(column.name)), " CHECK (",
                 part.sql, ")");
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

/// " PARTITION BY RANGE (…)". A remark says which of the fields are none, or none that a table can be parted by.
std::string partitionOf(Writing& writing, const ScriptTable& table, ScriptText& remarks) {
  if (writing.dialect.kind != ScriptKind::PostgreSql || table.partition.empty()) return {};
  const std::vector<std::string> fields = partitionFields(table);
  const auto commas = static_cast<std::size_t>(std::count(table.partition.begin(), table.partition.end(), ','));
  if (fields.size() != commas + 1)
    putRemark(remarks,
              fields.empty() ? "パーティションを作成できません. 項目がありません" : "パーティションの項目がありません",
              table.name + " (" + table.partition + ")");
  return fields.empty() ? "" : " PARTITION BY RANGE (" + columnList(writing, table.id, fields) + ")";
}

void putTableEnd(Writing& writing, const ScriptTable& table, const std::string& partition, ScriptText& text) {
  const Dialect& dialect = writing.dialect;
  std::string end = ")" + partition;
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
  ScriptText remarks;  // they stand in front of the statement
  remarks.text = table.head;
  for (const auto& [remark, what] : table.remarks) putRemark(remarks, remark, what);
  ScriptText body;
  body.text.reserve(table.columns.size() * kUsualLine);
  for (const ScriptColumn& column : table.columns) {
    std::string line;
    if (!putColumn(writing, table, column, remarks, line)) {
      writing.leftOut.insert(&column);
      continue;
    }
    body.print(body.text.empty() ? "\t" : "\t,", line);
  }
  if (body.text.empty()) {
    putRemark(remarks, "項目がないため作成できません", table.name);
    writing.unmade.insert(&table);
    sink(table.name, std::move(remarks));
    return;
  }
  putCutComments(writing, table, remarks);
  ScriptText text;
  text.print(openingWords(writing, table), namesOf(writing, table).qualified, tableOptions(writing.dialect));
  text.print("(");
  text.text += body.text;
  const std::string partition = partitionOf(writing, table, remarks);
  putKey(writing, table, remarks, text);
  putChecks(writing, table, remarks, text);
  putTableEnd(writing, table, partition, text);
  remarks.text += text.text;
  sink(table.name, std::move(remarks));
}

void putComments(Writing& writing, const ScriptTable& table, const ScriptSink& sink) {
  if (writing.unmade.contains(&table)) return;
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
