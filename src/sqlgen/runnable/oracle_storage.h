#pragma once

#include <string>

#include "sqlgen/generation.h"

namespace quillmarden {

/// The clauses behind a table's closing bracket: figures as numbers, the table space as all names of the server's own
/// are written. "" where nothing is set.
std::string oracleStorage(const Generation& generation);

}  // namespace quillmarden
