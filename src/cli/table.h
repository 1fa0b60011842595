#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Prints the header of one table, or makes, changes, copies, moves, locks, deletes or brings back that table, with the
/// checks and questions of the screens.
extern const Command kTableCommand;

}  // namespace quillmarden
