#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "engine/sqlite_error.h"
#include "engine/value.h"

namespace quillmarden {

/// A name between double quotes, as SQLite takes any name.
std::string quotedName(std::string_view name);

class Connection;

/// A prepared statement; closes itself. Parameters count from 1, columns from 0. Faults throw EngineError.
class PreparedStatement {
 public:
  PreparedStatement() = default;
  PreparedStatement(Connection& connection, std::string_view sql);

  sqlite3_stmt* handle() const { return statement_.get(); }
  explicit operator bool() const { return statement_ != nullptr; }

  /// The text of the value must live until the statement has run. A slot that the statement does not have is left out.
  void bind(int index, const Value& value);
  /// The same with a copy of the text.
  void bindCopy(int index, const Value& value);
  /// True with a row, false at the end. A fault resets the statement.
  bool step();
  void reset() { sqlite3_reset(statement_.get()); }
  /// Runs to its end, rows left unread, and gives the number of changed rows.
  int run();

  std::int64_t integer(int column) const { return sqlite3_column_int64(statement_.get(), column); }
  std::string_view text(int column) const;
  bool isNull(int column) const { return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL; }
  /// Whether the schema was another at its last run than at its preparation.
  bool schemaMoved() const { return sqlite3_stmt_status(statement_.get(), SQLITE_STMTSTATUS_REPREPARE, 0) > 0; }

 private:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  Connection* connection_ = nullptr;
  std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
};

/// Leaves no lock behind when the reading of a statement ends early.
class ResetAtEnd {
 public:
  explicit ResetAtEnd(PreparedStatement& statement) : statement_(statement) {}
  ~ResetAtEnd() { statement_.reset(); }
  ResetAtEnd(const ResetAtEnd&) = delete;
  ResetAtEnd& operator=(const ResetAtEnd&) = delete;

 private:
  PreparedStatement& statement_;
};

/// One open file. Opening checks what stands in the way and says it; see Database::open.
class Connection {
 public:
  explicit Connection(std::string path);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  const std::string& path() const { return path_; }
  bool readOnly() const { return readOnly_; }
  sqlite3* handle() const { return connection_; }
  /// Runs one statement without parameters to its end.
  void run(std::string_view sql);
  bool inTransaction() const { return sqlite3_get_autocommit(connection_) == 0; }
  [[noreturn]] void fail() const { throw lastFault(connection_, path_); }

  long executions = 0;
  bool waits = true;  ///< for another process's lock

 private:
  void open();
  void openFile(const std::string& name, int flags);
  void checkHeader();
  void close();

  std::string path_;
  bool readOnly_ = false;
  sqlite3* connection_ = nullptr;
};

/// Runs a body so that all of its statements stand or none, inside a running transaction too.
template <typename Body>
void allOrNothing(Connection& connection, Body&& body) {
  const bool nested = connection.inTransaction();
  connection.run(nested ? "SAVEPOINT quillmarden_step" : "BEGIN IMMEDIATE");
  try {
    body();
    connection.run(nested ? "RELEASE quillmarden_step" : "COMMIT");
  } catch (...) {
    // SQLite ends the transaction by itself after some faults.
    if (connection.inTransaction()) {
      try {
        if (nested) connection.run("ROLLBACK TO quillmarden_step");
        connection.run(nested ? "RELEASE quillmarden_step" : "ROLLBACK");
      } catch (const EngineError&) {
        // The first fault is the one to tell.
      }
    }
    throw;
  }
}

}  // namespace quillmarden
