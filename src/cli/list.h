#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Writes the list book of the chosen tables, without or with field rows, and prints its path.
extern const Command kListCommand;

}  // namespace quillmarden
