#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/query_def.h"
#include "engine/recordset.h"
#include "engine/table_def.h"
#include "engine/value.h"

namespace quillmarden {

/// A Repository file, opened shared by many processes, spoken to in the Access SQL dialect.
///
/// Each call runs exactly one statement; text behind its end is a syntax error. Text compares without case.
/// Another process's lock is waited for up to the time-out (30 s), then reported as kLocked. Every fault
/// throws EngineError. One thread.
class Database {
 public:
  struct State;

  /// Opens an existing file for reading and writing, or, where it or its folder may not be written, for reading alone:
  /// every change then throws kReadOnly. Throws kCannotOpen (missing, a directory, no permission), kAccessFile (the
  /// header is that of a real Access database), kUnrecognisedFormat, kDamaged. An empty file counts as a database
  /// without tables.
  static Database open(const std::string& path);
  /// Makes a new file. An existing one is refused with kCannotOpen and left alone.
  static Database create(const std::string& path);

  Database(Database&&) noexcept;
  Database& operator=(Database&&) noexcept;
  ~Database();

  const std::string& path() const;
  bool readOnly() const;

  /// Runs an action query or a definition statement (CREATE TABLE, ALTER TABLE, DROP). Gives the number of rows
  /// that it changed, 0 for definition statements.
  int execute(std::string_view sql, const std::vector<ParameterValue>& parameters = {});

  /// Opens the result of a SELECT, of a stored query or of a table, by its text or name.
  Recordset openRecordset(std::string_view sqlOrName, const std::vector<ParameterValue>& parameters = {});
  /// Opens a table for addNew() and seek() by "PrimaryKey". No row is read until seek() finds one.
  Recordset openTable(std::string_view table);

  /// Adds rows in as few statements as the engine allows: one for a table of usual size. Each row has one
  /// value a column, in the order of `columns`. Checks widths and types as Recordset::update does; on a fault
  /// none of the rows stays.
  void insertRows(std::string_view table, const std::vector<std::string>& columns,
                  const std::vector<std::vector<Value>>& rows);

  // --- definitions
  /// All tables but the engine's own, in the order of their creation. Valid until the next definition statement.
  const std::vector<TableDef>& tableDefs();
  /// The table of that name without regard to case, or nullptr.
  const TableDef* tableDef(std::string_view name);
  void createTable(const TableDef& table);
  /// Adds a column behind the last one; one that exists throws kFieldExists.
  void addField(std::string_view table, const FieldDef& field);
  /// Adds a plain index when none of that name exists.
  void ensureIndex(std::string_view table, std::string_view indexName, const std::vector<std::string>& fields);

  // --- stored queries
  std::vector<QueryDef> queryDefs();
  /// Adds or replaces. The text is parsed first; a fault throws and changes nothing.
  void putQueryDef(const QueryDef& query);
  /// The parameters of a stored query in the order of its PARAMETERS clause, then undeclared ones.
  std::vector<QueryParameter> queryParameters(std::string_view queryName);

  /// Whether another process's lock is waited for; without, kLocked comes at once. On when the file is opened.
  void setWaiting(bool waits);

  // --- transactions. They take the write lock at their beginning, so that nothing fails half way.
  void beginTrans();
  void commitTrans();
  void rollback();
  bool inTransaction() const;

  /// Statements that have reached the storage since opening, for measuring.
  long statementCount() const;

 private:
  explicit Database(std::shared_ptr<State> state);
  std::shared_ptr<State> state_;  ///< the sets opened from it keep the file open too
};

/// Runs a body in one transaction: commits at its end, rolls back when it throws and throws on.
/// Inside a running transaction it only runs the body.
template <typename Body>
void inTransaction(Database& database, Body&& body) {
  if (database.inTransaction()) {
    body();
    return;
  }
  database.beginTrans();
  try {
    body();
    database.commitTrans();
  } catch (...) {
    if (database.inTransaction()) database.rollback();
    throw;
  }
}

}  // namespace quillmarden
