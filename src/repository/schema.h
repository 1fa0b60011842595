#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/database.h"
#include "engine/query_def.h"
#include "engine/table_def.h"

namespace quillmarden {

/// All tables of a Repository at the current schema.
const std::vector<TableDef>& repositoryTables();

/// The stored queries that a new Repository carries.
const std::vector<QueryDef>& repositoryQueries();

/// Indexes beside the primary keys that keep look-ups in line with the work; made when missing.
void ensureRepositoryIndexes(Database& database);

/// Makes a Repository: tables, catalogue rows, stored queries, and MAS_USER rows for "admin" (group ADMIN) and
/// the given names; a blank or repeated name adds none. Throws EngineError; an existing file is left alone, a
/// half-made one is removed.
Database createRepository(const std::string& path, const std::vector<std::string>& users = {});

}  // namespace quillmarden
