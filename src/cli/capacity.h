#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Recomputes lengths and capacities of a System and prints its tables' values below a line of headings.
extern const Command kCapacityCommand;

}  // namespace quillmarden
