#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Writes the list book of the chosen tables, without or with field rows, and prints its path.
ExitStatus runList(Run& run);

}  // namespace quillmarden
