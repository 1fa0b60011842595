#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Prints one table as the detail screen holds it: header values, an empty line, the field grid.
extern const Command kShowCommand;

}  // namespace quillmarden
