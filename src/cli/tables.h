#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Prints the rows of the table list under the filters of the options.
extern const Command kTablesCommand;

}  // namespace quillmarden
