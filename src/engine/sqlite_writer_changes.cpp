#include <algorithm>

#include "engine/convert.h"
#include "engine/sqlite_connection.h"
#include "engine/sqlite_writer_state.h"

namespace quillmarden {

namespace {

[[noreturn]] void throwNoColumn(const std::string& column, const std::string& table) {
  throw EngineError(engine_error::kMissingParameter, "項目「" + column + "」がテーブル「" + table + "」にありません.");
}

// The name of the derived table that a change draws from; no table can be called so by chance.
constexpr std::string_view kFound = "\"found rows\"";

const FieldDef& fieldOf(const TableDef& table, const std::string& column) {
  const FieldDef* field = table.field(column);
  if (field == nullptr) throwNoColumn(column, table.name);
  return *field;
}

bool isWholeNumber(FieldType type) {
  return type == FieldType::Integer || type == FieldType::Long || type == FieldType::Flag || type == FieldType::Auto;
}

// Whether every value of the source column fits the target, so that nothing has to be looked at.
bool fits(const FieldDef& source, const FieldDef& target) {
  if (target.type == FieldType::Memo && target.allowZeroLength) {
    return source.type == FieldType::Memo || source.type == FieldType::Text;
  }
  if (source.type != target.type || source.allowZeroLength != target.allowZeroLength) return false;
  return target.type != FieldType::Text || target.size == 0 || (source.size > 0 && source.size <= target.size);
}

// The source that a change goes to, by its name in the statement.
std::size_t sourceNamed(const Scope& scope, const std::string& name) {
  const auto found = std::find_if(scope.sources.begin(), scope.sources.end(), [&](const Source& source) {
    return sameName(source.alias, name) || (source.table != nullptr && sameName(source.table->name, name));
  });
  if (found == scope.sources.end()) {
    throw EngineError(engine_error::kNoSuchTable, "テーブル「" + name + "」が文の中にありません.");
  }
  return static_cast<std::size_t>(found - scope.sources.begin());
}

const Source& changeable(const Scope& scope, std::size_t index) {
  const Source& source = scope.sources[index];
  if (source.table == nullptr) {
    throw EngineError(engine_error::kReadOnly, "クエリ「" + source.alias + "」の行は変更できません.");
  }
  if (source.nested) {
    throw EngineError(engine_error::kReadOnly,
                      "外部結合の中の結合にあるテーブル「" + source.alias + "」の行は変更できません.");
  }
  return source;
}

}  // namespace

// The value as the column stores it; checked by a function where that is not known beforehand.
std::string StatementWriter::store(const Written& value, const FieldDef& field, const TableDef& table) const {
  if (value.type == ValueType::Null) return value.sql;
  if (value.field != nullptr && fits(*value.field, field)) return value.sql;
  const bool anyText =
      field.allowZeroLength && (field.type == FieldType::Memo || (field.type == FieldType::Text && field.size == 0));
  if (anyText && (value.type == ValueType::Text || value.type == ValueType::Date)) return value.sql;
  if (isWholeNumber(field.type)) {
    if (value.type == ValueType::Condition) return "-(" + value.sql + ")";
    if (value.sql == "-1" || value.sql == "0") return value.sql;
  }
  std::string sql = "qm_store(";
  sql += value.type == ValueType::Condition ? "-(" + value.sql + ")" : value.sql;
  sql += "," + std::to_string(static_cast<int>(field.type)) + "," + std::to_string(field.size) + ",";
  sql += field.allowZeroLength ? "1," : "0,";
  return sql + quotedText(table.name) + "," + quotedText(field.name) + ")";
}

void StatementWriter::insert(const InsertStatement& insert) {
  const TableDef& table = baseTable(insert.table);
  std::vector<const FieldDef*> fields;
  for (const std::string& column : insert.columns) {
    const FieldDef& field = fieldOf(table, column);
    if (std::find(fields.begin(), fields.end(), &field) != fields.end()) {
      throw EngineError(engine_error::kSyntax, "構文エラー: 項目「" + column + "」が二度あります.");
    }
    fields.push_back(&field);
  }
  std::string values;
  const auto add = [&](const Written& value, std::size_t index) {
    if (!values.empty()) values += ", ";
    values += store(value, *fields[index], table);
  };
  const auto expectCount = [&](std::size_t count) {
    if (count == fields.size()) return;
    throw EngineError(engine_error::kSyntax, "構文エラー: INSERT の項目の数 " + std::to_string(fields.size()) +
                                                 " と値の数 " + std::to_string(count) + " が違います.");
  };
  std::string source;
  if (insert.select != nullptr) {
    const WrittenSelect rows = select(*insert.select, nullptr, Use::Columns);
    // Without a list the columns go by their names.
    if (insert.columns.empty()) {
      for (const Output& output : rows.outputs) fields.push_back(&fieldOf(table, output.name));
    }
    expectCount(rows.outputs.size());
    for (std::size_t i = 0; i < rows.outputs.size(); ++i) {
      Written column = rows.outputs[i].value;
      column.sql = std::string(kFound) + ".c" + std::to_string(i + 1);
      if (column.type == ValueType::Null) column.type = ValueType::Unknown;
      add(column, i);
    }
    source = " SELECT " + values + " FROM (" + rows.sql + ") AS " + std::string(kFound);
  } else {
    if (insert.columns.empty()) {
      for (const FieldDef& field : table.fields) fields.push_back(&field);
    }
    expectCount(insert.values.size());
    Scope scope;
    for (std::size_t i = 0; i < insert.values.size(); ++i) add(expression(*insert.values[i], scope), i);
    source = " VALUES (" + values + ")";
  }
  result_.sql = "INSERT INTO " + quotedName(table.name) + " (";
  for (std::size_t i = 0; i < fields.size(); ++i) result_.sql += (i > 0 ? "," : "") + quotedName(fields[i]->name);
  result_.sql += ")" + source;
}

void StatementWriter::update(const UpdateStatement& update) {
  Scope scope;
  addSources(*update.from, scope, false);
  // All assignments go to the columns of one table.
  std::size_t target = scope.sources.size();
  std::vector<const FieldDef*> fields;
  std::vector<std::string> values;
  for (const Assignment& assignment : update.assignments) {
    std::size_t source = scope.sources.size();
    for (std::size_t i = 0; i < scope.sources.size(); ++i) {
      const Source& candidate = scope.sources[i];
      if (!assignment.qualifier.empty() && !sameName(candidate.alias, assignment.qualifier)) continue;
      if (candidate.table == nullptr || candidate.table->field(assignment.column) == nullptr) continue;
      if (source != scope.sources.size()) throwAmbiguous(assignment.column);
      source = i;
    }
    if (source == scope.sources.size()) {
      if (!assignment.qualifier.empty()) changeable(scope, sourceNamed(scope, assignment.qualifier));
      throwNoColumn(assignment.column,
                    assignment.qualifier.empty() ? scope.sources.front().alias : assignment.qualifier);
    }
    if (target != scope.sources.size() && target != source) {
      throw EngineError(engine_error::kSyntax, "構文エラー: 一つの UPDATE で変更できるテーブルは一つだけです.");
    }
    target = source;
    const TableDef& table = *changeable(scope, source).table;
    const FieldDef& field = fieldOf(table, assignment.column);
    if (std::find(fields.begin(), fields.end(), &field) != fields.end()) {
      throw EngineError(engine_error::kSyntax, "構文エラー: 項目「" + assignment.column + "」が二度設定されています.");
    }
    fields.push_back(&field);
    values.push_back(store(expression(*assignment.value, scope), field, table));
  }

  const Source& table = changeable(scope, target);
  const std::string alias = quotedName(table.alias);
  result_.sql = "UPDATE " + quotedName(table.table->name) + " AS " + alias + " SET ";
  const std::string where = update.where == nullptr ? "" : " WHERE " + condition(*update.where, scope);
  if (scope.sources.size() == 1) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
      result_.sql += (i > 0 ? ", " : "") + quotedName(fields[i]->name) + " = " + values[i];
    }
    result_.sql += where;
    return;
  }
  // Over a join the rows and their new values are found first; a row that the join gives twice is written once.
  const std::string rowId = alias + "." + std::string(rowIdName(*table.table));
  std::string found = "SELECT " + rowId + " AS id";
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::string column = "c" + std::to_string(i + 1);
    result_.sql += (i > 0 ? ", " : "") + quotedName(fields[i]->name) + " = " + std::string(kFound) + "." + column;
    found += ", " + values[i] + " AS " + column;
  }
  result_.sql += " FROM (" + found + " FROM " + from(*update.from, scope) + where + ") AS " + std::string(kFound) +
                 " WHERE " + rowId + " = " + std::string(kFound) + ".id";
}

void StatementWriter::deletion(const DeleteStatement& deletion) {
  Scope scope;
  addSources(*deletion.from, scope, false);
  if (deletion.target.empty() && scope.sources.size() > 1) {
    throw EngineError(engine_error::kSyntax, "構文エラー: 削除するテーブルを DELETE テーブル名.* の形で書いて下さい.");
  }
  const Source& table = changeable(scope, deletion.target.empty() ? 0 : sourceNamed(scope, deletion.target));
  const std::string alias = quotedName(table.alias);
  result_.sql = "DELETE FROM " + quotedName(table.table->name);
  const std::string where = deletion.where == nullptr ? "" : " WHERE " + condition(*deletion.where, scope);
  if (scope.sources.size() == 1) {
    result_.sql += " AS " + alias + where;
    return;
  }
  const std::string rowId(rowIdName(*table.table));
  result_.sql +=
      " WHERE " + rowId + " IN (SELECT " + alias + "." + rowId + " FROM " + from(*deletion.from, scope) + where + ")";
}

}  // namespace quillmarden
