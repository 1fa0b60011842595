#pragma once

#include <string>
#include <vector>

#include "sqlgen/fields.h"
#include "sqlgen/generation.h"

namespace quillmarden {

/// Whether any field of the table refers to another table.
bool hasForeignKeys(const std::vector<Field>& fields);

/// The FOREIGN KEY constraints of the table on show, one a referred table, each behind a tab; a remark when the
/// references point nowhere.
std::string pGetFkClause(const Generation& generation);

}  // namespace quillmarden
