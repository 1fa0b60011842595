#include "engine/database.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <deque>

#include "engine/sqlite_state.h"

namespace quillmarden {

namespace {

// A set is read anew when the schema moved under it; more moves than this in a row are no coincidence.
constexpr int kReadings = 5;
// SQLite takes as many values in one statement in every build.
constexpr std::size_t kMostValues = 30000;

std::string_view withoutEnds(std::string_view text) {
  constexpr std::string_view kEnds = " \t\r\n;";
  const std::size_t begin = text.find_first_not_of(kEnds);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kEnds) - begin + 1);
}

std::string firstWord(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\r\n(");
  if (begin == std::string_view::npos) return {};
  text.remove_prefix(begin);
  return lowerName(text.substr(0, text.find_first_of(" \t\r\n[(")));
}

// A table or query may bear any name, so a text counts as a statement only by its first word.
bool isStatement(std::string_view text) {
  static constexpr std::string_view kWords[] = {"select", "parameters", "insert", "update",
                                                "delete", "create",     "alter",  "drop"};
  const std::string word = firstWord(text);
  return word.size() < text.size() && std::find(std::begin(kWords), std::end(kWords), word) != std::end(kWords);
}

std::string_view withoutBrackets(std::string_view name) {
  if (name.size() >= 2 && name.front() == '[' && name.back() == ']') return name.substr(1, name.size() - 2);
  return name;
}

[[noreturn]] void throwNotRows() {
  throw EngineError(engine_error::kNotAnAction, "行を返さない文をレコードセットとして開くことはできません.");
}

std::optional<Recordset> openText(const std::shared_ptr<Database::State>& state, const std::string& key,
                                  const std::vector<Value>& literals, std::string_view sql,
                                  const std::vector<ParameterValue>& parameters) {
  DataStatement* statement = state->statements.find(key);
  std::optional<DataStatement> once;
  if (statement == nullptr) {
    once = state->write(parseStatement(sql));
    statement = &*once;
    if (once->written.cacheable) {
      statement = &state->statements.add(key, *std::move(once));
    }
  }
  if (!statement->written.isSelect) throwNotRows();
  state->bind(*statement, literals, parameters);
  return openSet(state, *statement);
}

std::optional<Recordset> openText(const std::shared_ptr<Database::State>& state, std::string_view sql,
                                  const std::vector<ParameterValue>& parameters) {
  const StatementKey key = statementKey(sql);
  return openText(state, key.key, key.literals, sql, parameters);
}

std::optional<Recordset> openName(const std::shared_ptr<Database::State>& state, std::string_view name,
                                  const std::vector<ParameterValue>& parameters) {
  if (const TableDef* table = state->schema().find(name)) {
    DataStatement statement;
    statement.written = wholeTable(*table);
    statement.prepared = PreparedStatement(state->connection, statement.written.sql);
    statement.columns = setColumns(statement.written);
    return openSet(state, statement);
  }
  if (const std::optional<QueryDef> query = state->query(name)) return openText(state, query->sql, parameters);
  throw EngineError(engine_error::kNoSuchTable, "テーブルまたはクエリ「" + std::string(name) + "」が見つかりません.");
}

}  // namespace

Database::Database(std::shared_ptr<State> state) : state_(std::move(state)) {}
Database::Database(Database&&) noexcept = default;
Database& Database::operator=(Database&&) noexcept = default;
Database::~Database() = default;

Database Database::open(const std::string& path) { return Database(std::make_shared<State>(path)); }

Database Database::create(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (descriptor < 0) {
    const std::string reason =
        errno == EEXIST ? "はすでにあります. 上書きしません." : std::string("を作れません: ") + std::strerror(errno);
    throw EngineError(engine_error::kCannotOpen, "ファイル「" + path + "」" + reason);
  }
  ::close(descriptor);
  return open(path);
}

const std::string& Database::path() const { return state_->connection.path(); }
bool Database::readOnly() const { return state_->connection.readOnly(); }
void Database::setWaiting(bool waits) { state_->connection.waits = waits; }

int Database::execute(std::string_view sql, const std::vector<ParameterValue>& parameters) {
  State& state = *state_;
  const StatementKey key = statementKey(sql);
  return state.withFreshSchema([&]() -> int {
    DataStatement* statement = state.statements.find(key.key);
    std::optional<DataStatement> once;
    if (statement == nullptr) {
      const Statement parsed = parseStatement(sql);
      const bool isDefinition = std::visit(
          [&](const auto& body) {
            if constexpr (requires { runDefinition(state, body); }) {
              runDefinition(state, body);
              return true;
            }
            return false;
          },
          parsed.body);
      if (isDefinition) return 0;
      once = state.write(parsed);
      statement = &*once;
      if (once->written.cacheable) statement = &state.statements.add(key.key, *std::move(once));
    }
    if (statement->written.isSelect) {
      throw EngineError(engine_error::kNotAnAction, "行を返す文は実行できません. レコードセットとして開いて下さい.");
    }
    state.bind(*statement, key.literals, parameters);
    const int changed = statement->prepared.run();
    if (statement->prepared.schemaMoved()) state.schemaHasChanged(false);
    return changed;
  });
}

Recordset Database::openRecordset(std::string_view sqlOrName, const std::vector<ParameterValue>& parameters) {
  const std::string_view text = withoutEnds(sqlOrName);
  const bool isSql = isStatement(text);
  for (int reading = 0; reading < kReadings; ++reading) {
    std::optional<Recordset> set = state_->withFreshSchema([&] {
      return isSql ? openText(state_, sqlOrName, parameters) : openName(state_, withoutBrackets(text), parameters);
    });
    if (set) return *std::move(set);
    state_->schemaHasChanged(false);
  }
  throw EngineError(engine_error::kLocked,
                    "ファイル「" + path() + "」のテーブル定義が他のユーザーによって変更されています.");
}

Recordset Database::openTable(std::string_view table) {
  return state_->withFreshSchema([&] { return openTableSet(state_, state_->table(withoutBrackets(table))); });
}

void Database::insertRows(std::string_view tableName, const std::vector<std::string>& columns,
                          const std::vector<std::vector<Value>>& rows) {
  if (rows.empty()) return;
  State& state = *state_;
  state.withFreshSchema([&] {
    const TableDef& table = state.table(tableName);
    std::vector<const FieldDef*> fields;
    std::string head = "INSERT INTO " + quotedName(table.name) + " (";
    std::string row = "(";
    for (const std::string& column : columns) {
      const FieldDef* field = table.field(column);
      if (field == nullptr) {
        throw EngineError(engine_error::kNoSuchTableDef,
                          "テーブル「" + table.name + "」に項目「" + column + "」がありません.");
      }
      head.append(fields.empty() ? "" : ", ").append(quotedName(field->name));
      row.append(fields.empty() ? "?" : ", ?");
      fields.push_back(field);
    }
    if (fields.empty()) throw EngineError(engine_error::kSyntax, "追加する項目がありません.");
    head += ") VALUES ";
    row += ")";

    const std::size_t perStatement = std::max<std::size_t>(1, kMostValues / fields.size());
    const auto insertPart = [&](std::size_t begin, std::size_t end) {
      std::string sql = head;
      for (std::size_t i = begin; i < end; ++i) sql.append(i > begin ? ", " : "").append(row);
      PreparedStatement* insert = state.inserts.find(sql);
      if (insert == nullptr) {
        PreparedStatement prepared(state.connection, sql);
        insert = &state.inserts.add(sql, std::move(prepared));
      }
      std::deque<Value> converted;
      int slot = 0;
      for (std::size_t i = begin; i < end; ++i) {
        if (rows[i].size() != fields.size()) {
          throw EngineError(engine_error::kSyntax, "テーブル「" + table.name + "」に追加する行の値の数が合いません.");
        }
        for (std::size_t j = 0; j < fields.size(); ++j) {
          const Value& value = rows[i][j];
          insert->bind(++slot, fitsColumn(value, *fields[j])
                                   ? value
                                   : converted.emplace_back(convertForColumn(value, *fields[j], table.name)));
        }
      }
      insert->run();
    };
    // One statement stands or falls by itself.
    if (rows.size() <= perStatement) {
      insertPart(0, rows.size());
      return;
    }
    allOrNothing(state.connection, [&] {
      for (std::size_t begin = 0; begin < rows.size(); begin += perStatement) {
        insertPart(begin, std::min(rows.size(), begin + perStatement));
      }
    });
  });
}

const std::vector<TableDef>& Database::tableDefs() { return state_->schema().tables; }

const TableDef* Database::tableDef(std::string_view name) {
  const TableDef* found = state_->schema().find(name);
  if (found == nullptr && state_->schemaMoved()) found = state_->schema().find(name);
  return found;
}

void Database::createTable(const TableDef& table) { runDefinition(*state_, CreateTableStatement{table}); }

void Database::addField(std::string_view table, const FieldDef& field) {
  state_->withFreshSchema([&] { quillmarden::addField(*state_, table, field); });
}

void Database::ensureIndex(std::string_view tableName, std::string_view indexName,
                           const std::vector<std::string>& fields) {
  State& state = *state_;
  state.withFreshSchema([&] {
    const TableDef& table = state.table(tableName);
    for (const IndexDef& index : table.indexes) {
      if (sameName(index.name, indexName)) return;
    }
    state.connection.run(createIndexStatement(table.name, IndexDef{std::string(indexName), fields}, true));
    state.schemaHasChanged(true);
  });
}

std::vector<QueryDef> Database::queryDefs() {
  std::vector<QueryDef> queries;
  if (!state_->schema().hasQueries) return queries;
  PreparedStatement& read = state_->own("SELECT Name, SQL FROM MSysQueryDefs ORDER BY rowid");
  const ResetAtEnd guard(read);
  while (read.step()) queries.push_back({std::string(read.text(0)), std::string(read.text(1))});
  return queries;
}

void Database::putQueryDef(const QueryDef& query) {
  if (query.name.empty()) throw EngineError(engine_error::kSyntax, "クエリの名前が空です.");
  parseStatement(query.sql);
  State& state = *state_;
  if (!state.schema().hasQueries) {
    state.connection.run(
        "CREATE TABLE IF NOT EXISTS MSysQueryDefs (Name TEXT COLLATE NOCASE NOT NULL PRIMARY KEY, SQL TEXT)");
    state.schemaHasChanged(true);
  }
  PreparedStatement& put = state.own(
      "INSERT INTO MSysQueryDefs (Name, SQL) VALUES (?1, ?2) "
      "ON CONFLICT (Name) DO UPDATE SET Name = ?1, SQL = ?2");
  put.bindCopy(1, query.name);
  put.bindCopy(2, query.sql);
  put.run();
}

std::vector<QueryParameter> Database::queryParameters(std::string_view queryName) {
  State& state = *state_;
  return state.withFreshSchema([&] {
    const std::optional<QueryDef> query = state.query(withoutBrackets(queryName));
    if (!query) {
      throw EngineError(engine_error::kNoSuchTableDef, "クエリ「" + std::string(queryName) + "」が見つかりません.");
    }
    const Statement parsed = parseStatement(query->sql);
    std::vector<QueryParameter> parameters = parsed.parameters;
    const DataStatement written = state.write(parsed);
    for (const std::string& name : written.written.parameters) {
      const bool known = std::any_of(parameters.begin(), parameters.end(),
                                     [&](const QueryParameter& other) { return sameName(other.name, name); });
      if (!known) parameters.push_back({name, "text"});
    }
    return parameters;
  });
}

void Database::beginTrans() {
  if (inTransaction()) {
    throw EngineError(engine_error::kTransaction, "トランザクションはすでに始まっています. 入れ子にはできません.");
  }
  state_->definedInTransaction = false;
  state_->own("BEGIN IMMEDIATE").run();
}

void Database::commitTrans() {
  if (!inTransaction()) {
    throw EngineError(engine_error::kTransaction,
                      "確定するトランザクションがありません. 障害のため取り消された可能性があります.");
  }
  state_->own("COMMIT").run();
}

void Database::rollback() {
  if (!inTransaction()) {
    throw EngineError(engine_error::kTransaction, "取り消すトランザクションがありません.");
  }
  state_->own("ROLLBACK").run();
  if (state_->definedInTransaction) state_->schemaHasChanged(true);
}

bool Database::inTransaction() const { return state_->connection.inTransaction(); }

long Database::statementCount() const { return state_->connection.executions; }

}  // namespace quillmarden
