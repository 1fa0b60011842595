#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Saves a table's field grid from a file, with the checks and questions of the detail screen.
ExitStatus runSave(Run& run);

}  // namespace quillmarden
