#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ast.h"
#include "engine/query_def.h"
#include "engine/table_def.h"
#include "engine/value.h"

struct sqlite3;

namespace quillmarden {

/// What the writer has to know of the file: column types decide comparison and assignment.
/// Both give nullptr for a name that is not there.
struct SchemaView {
  std::function<const TableDef*(std::string_view)> table;
  std::function<const QueryDef*(std::string_view)> query;
};

/// A statement with its literals taken out: statements that differ in literals alone share the key, so that
/// a prepared statement serves all of them.
struct StatementKey {
  std::string key;
  std::vector<Value> literals;  ///< in order of appearance; date literals as "yyyy/mm/dd hh:nn:ss"
};

/// The types of the literals stay in the key, since they decide how values are compared. Throws EngineError kSyntax for
/// text that no token can be made of.
StatementKey statementKey(std::string_view sql);

/// A table whose rows a SELECT shows, so that a recordset can edit them.
struct ShownTable {
  std::string table;  ///< the base table's name
  std::string alias;  ///< its name in the statement
  int rowIdColumn;  ///< index of the extra result column that holds its row id; Null on the empty side of an outer join
};

/// A column of a SELECT: its name as Access gives it, and the base column behind it where it shows one.
struct ResultColumn {
  std::string name;
  int shownTable = -1;  ///< index in shownTables, or -1 for what cannot be edited
  std::string field;    ///< the base table's column
};

/// SELECT, INSERT, UPDATE or DELETE as one SQLite statement.
struct SqliteStatement {
  std::string sql;
  bool isSelect = false;
  int literalCount = 0;                 ///< ?1 to ?literalCount take the literals of the StatementKey
  std::vector<std::string> parameters;  ///< the slots behind them take these parameters, in this order
  int columnCount = 0;                  ///< of a SELECT: the columns before the extra row id columns
  std::vector<ResultColumn> columns;    ///< of a SELECT: these columns, in order
  /// Of a SELECT without GROUP BY, DISTINCT, UNION or derived tables: what can be edited through it.
  std::vector<ShownTable> shownTables;
  bool cacheable = true;  ///< false when a literal had to be written into the text
};

/// Writes a data statement. Names are checked against the schema: an unknown table throws kNoSuchTable;
/// an unknown column becomes a parameter, as Access has it. Tables on the empty side of an outer join with a join
/// inside cannot be edited through it.
SqliteStatement writeSqlite(const Statement& statement, const SchemaView& schema);

/// The SQL functions that the written text calls, made known to a connection once after its opening.
void registerFunctions(sqlite3* connection);

}  // namespace quillmarden
