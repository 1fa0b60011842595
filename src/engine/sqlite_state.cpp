#include "engine/sqlite_state.h"

#include <array>
#include <deque>

namespace quillmarden {

namespace {

constexpr std::array<std::pair<std::string_view, FieldType>, 19> kParameterTypes = {{
    {"text", FieldType::Memo},        {"char", FieldType::Memo},       {"memo", FieldType::Memo},
    {"string", FieldType::Memo},      {"short", FieldType::Integer},   {"integer", FieldType::Long},
    {"smallint", FieldType::Integer}, {"long", FieldType::Long},       {"int", FieldType::Long},
    {"byte", FieldType::Integer},     {"double", FieldType::Double},   {"single", FieldType::Double},
    {"float", FieldType::Double},     {"currency", FieldType::Double}, {"bit", FieldType::Flag},
    {"yesno", FieldType::Flag},       {"boolean", FieldType::Flag},    {"date", FieldType::Date},
    {"datetime", FieldType::Date},
}};

// A parameter comes as text from people and is compared as what it was declared.
Value parameterValue(const ParameterValue& given, const std::string& type) {
  for (const auto& [word, fieldType] : kParameterTypes) {
    if (!sameName(word, type)) continue;
    FieldDef field;
    field.name = given.name;
    field.type = fieldType;
    return convertForColumn(given.value, field, "パラメーター");
  }
  return given.value;
}

}  // namespace

const Schema& Database::State::schema() {
  if (schemaIsOld_) {
    schemas_.push_back(std::make_unique<const Schema>(readSchema(connection)));
    schemaIsOld_ = false;
  }
  return *schemas_.back();
}

const TableDef& Database::State::table(std::string_view name) {
  if (const TableDef* found = schema().find(name)) return *found;
  throw EngineError(engine_error::kNoSuchTable, "テーブル「" + std::string(name) + "」が見つかりません.");
}

void Database::State::schemaHasChanged(bool byUs) {
  statements.clear();
  ownStatements.clear();
  inserts.clear();
  schemaIsOld_ = true;
  if (!byUs) return;
  schemas_.clear();
  if (connection.inTransaction()) definedInTransaction = true;
}

bool Database::State::schemaMoved() {
  if (schemaIsOld_ || schemaVersion(connection) == schemas_.back()->version) return false;
  schemaHasChanged(false);
  return true;
}

DataStatement Database::State::write(const Statement& statement) {
  // The writer keeps pointers to the queries that it asks for, so they have to stay in place.
  std::deque<QueryDef> queries;
  SchemaView view;
  view.table = [this](std::string_view name) { return schema().find(name); };
  view.query = [&](std::string_view name) -> const QueryDef* {
    std::optional<QueryDef> found = query(name);
    if (!found) return nullptr;
    return &queries.emplace_back(*std::move(found));
  };
  DataStatement result;
  result.written = writeSqlite(statement, view);
  // Another process may replace a stored query at any time, and nothing would tell a kept statement.
  if (!queries.empty()) result.written.cacheable = false;
  result.prepared = PreparedStatement(connection, result.written.sql);
  for (const std::string& name : result.written.parameters) {
    std::string type;
    for (const QueryParameter& parameter : statement.parameters) {
      if (sameName(parameter.name, name)) type = parameter.type;
    }
    result.parameterTypes.push_back(std::move(type));
  }
  if (result.written.isSelect) result.columns = setColumns(result.written);
  return result;
}

PreparedStatement& Database::State::own(const std::string& sql) {
  if (PreparedStatement* found = ownStatements.find(sql)) return *found;
  return ownStatements.add(sql, PreparedStatement(connection, sql));
}

void Database::State::bind(DataStatement& statement, const std::vector<Value>& literals,
                           const std::vector<ParameterValue>& parameters) {
  const SqliteStatement& written = statement.written;
  for (int i = 0; i < written.literalCount && i < static_cast<int>(literals.size()); ++i) {
    statement.prepared.bind(i + 1, literals[static_cast<std::size_t>(i)]);
  }
  for (std::size_t i = 0; i < written.parameters.size(); ++i) {
    const ParameterValue* given = nullptr;
    for (const ParameterValue& candidate : parameters) {
      if (sameName(candidate.name, written.parameters[i])) given = &candidate;
    }
    if (given == nullptr) {
      throw EngineError(engine_error::kMissingParameter,
                        "「" + written.parameters[i] + "」は項目にもパラメーターにもありません. 値を指定して下さい.");
    }
    statement.prepared.bindCopy(written.literalCount + 1 + static_cast<int>(i),
                                parameterValue(*given, statement.parameterTypes[i]));
  }
}

std::optional<QueryDef> Database::State::query(std::string_view name) {
  if (!schema().hasQueries) return std::nullopt;
  PreparedStatement& read = own("SELECT Name, SQL FROM MSysQueryDefs WHERE Name = ?1 COLLATE NOCASE");
  const ResetAtEnd guard(read);
  read.bindCopy(1, std::string(name));
  if (!read.step()) return std::nullopt;
  return QueryDef{std::string(read.text(0)), std::string(read.text(1))};
}

}  // namespace quillmarden
