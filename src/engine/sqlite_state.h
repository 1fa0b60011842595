#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/database.h"
#include "engine/parser.h"
#include "engine/sqlite_connection.h"
#include "engine/sqlite_schema.h"
#include "engine/sqlite_writer.h"
#include "engine/statement_cache.h"

namespace quillmarden {

/// The columns of a set, shared by all sets of one prepared statement.
struct SetColumns {
  std::vector<ResultColumn> columns;
  std::vector<ShownTable> tables;
  NameMap<int> places;  ///< "name" and "alias.name"
  int width = 0;        ///< columns, those of the row ids behind them included
};

/// A data statement ready to run.
struct DataStatement {
  PreparedStatement prepared;
  SqliteStatement written;
  std::vector<std::string> parameterTypes;    ///< declared type of each of written.parameters, "" for none
  std::shared_ptr<const SetColumns> columns;  ///< of a SELECT
};

struct Database::State {
  explicit State(const std::string& path) : connection(path) {}

  // --- definitions
  const Schema& schema();
  const TableDef& table(std::string_view name);  ///< throws kNoSuchTable
  /// Forgets prepared statements, and reads the definitions anew when they are next asked for. What was handed out
  /// before stays readable until `byUs`, a definition statement of this process, comes.
  void schemaHasChanged(bool byUs);
  /// Whether another process has changed the schema since it was read; forgets it then.
  bool schemaMoved();
  /// Runs a body; when it fails for a name and the schema turns out to be older than the file's, once more.
  template <typename Body>
  auto withFreshSchema(Body&& body);

  // --- statements
  DataStatement write(const Statement& statement);
  /// A statement of the engine's own, in SQLite's dialect.
  PreparedStatement& own(const std::string& sql);
  void bind(DataStatement& statement, const std::vector<Value>& literals,
            const std::vector<ParameterValue>& parameters);
  std::optional<QueryDef> query(std::string_view name);

  Connection connection;
  StatementCache<DataStatement> statements{256};
  StatementCache<PreparedStatement> ownStatements{128};
  StatementCache<PreparedStatement> inserts{16};

  bool definedInTransaction = false;  ///< definitions that a rollback takes back

 private:
  std::vector<std::unique_ptr<const Schema>> schemas_;  ///< the current one last
  bool schemaIsOld_ = true;
};

template <typename Body>
auto Database::State::withFreshSchema(Body&& body) {
  try {
    return body();
  } catch (const EngineError& fault) {
    switch (fault.number()) {
      case engine_error::kNoSuchTable:
      case engine_error::kNoSuchTableDef:
      case engine_error::kMissingParameter:
        if (schemaMoved()) break;
        throw;
      default:
        throw;
    }
  }
  return body();
}

// --- sqlite_recordset.cpp
/// None when the schema turns out to have moved under the statement: it has to be written anew.
std::optional<Recordset> openSet(std::shared_ptr<Database::State> database, DataStatement& statement);
Recordset openTableSet(std::shared_ptr<Database::State> database, const TableDef& table);
std::shared_ptr<const SetColumns> setColumns(const SqliteStatement& select);
/// All columns of a table and its row id, without a condition.
SqliteStatement wholeTable(const TableDef& table);

// --- sqlite_definition.cpp
void runDefinition(Database::State& state, const CreateTableStatement& statement);
void runDefinition(Database::State& state, const AlterTableStatement& statement);
void runDefinition(Database::State& state, const DropTableStatement& statement);
void runDefinition(Database::State& state, const CreateIndexStatement& statement);
void runDefinition(Database::State& state, const DropIndexStatement& statement);
void addField(Database::State& state, std::string_view table, const FieldDef& field);

}  // namespace quillmarden
