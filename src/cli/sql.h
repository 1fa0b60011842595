#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Writes a CREATE script and prints its path.
extern const Command kSqlCommand;

}  // namespace quillmarden
