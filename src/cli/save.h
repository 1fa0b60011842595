#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Saves a table's field grid from a file, with the checks and questions of the detail screen.
extern const Command kSaveCommand;

}  // namespace quillmarden
