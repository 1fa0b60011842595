#pragma once

#include <string>
#include <string_view>

#include "sqlgen/generation.h"

namespace quillmarden {

// What CREATE and ALTER word alike for SQL Server.

/// The table's name in brackets, behind its owner where the System names one.
std::string quotedTable(const Generation& generation);

/// The type in brackets without digits, identity behind them.
std::string bracketedType(std::string_view type);

}  // namespace quillmarden
