#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/convert.h"
#include "engine/sqlite_connection.h"
#include "engine/table_def.h"

namespace quillmarden {

/// Keeps names without regard to case; looks up without a copy.
struct NameHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view name) const;
};
struct NameEqual {
  using is_transparent = void;
  bool operator()(std::string_view left, std::string_view right) const { return sameName(left, right); }
};
template <typename T>
using NameMap = std::unordered_map<std::string, T, NameHash, NameEqual>;

/// Holds the stored queries; none of the tables that users see.
inline constexpr std::string_view kQueryTable = "MSysQueryDefs";

/// The definitions of a file, read all at once.
struct Schema {
  std::vector<TableDef> tables;
  NameMap<std::size_t> places;  ///< of each table in `tables`
  bool hasQueries = false;
  std::int64_t version = -1;  ///< of SQLite's schema when these were read

  const TableDef* find(std::string_view table) const;
};

Schema readSchema(Connection& connection);
std::int64_t schemaVersion(Connection& connection);

/// The declaration of a column behind its name: `TEXT(50) COLLATE NOCASE NOT NULL`.
std::string columnDeclaration(const FieldDef& field);
/// CREATE TABLE with the primary key in it where the key can stand there, then one statement for each further index.
/// Throws kSyntax for a table without a name or fields, and for an Auto field beside another.
std::vector<std::string> createTableStatements(const TableDef& table);
std::string createIndexStatement(std::string_view table, const IndexDef& index, bool ifMissing = false);
/// Index names are unique in a table here, in the whole file for SQLite.
std::string storedIndexName(std::string_view table, std::string_view index);
bool isPrimaryKey(const IndexDef& index);

}  // namespace quillmarden
