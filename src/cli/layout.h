#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Writes the layout workbook of each chosen table and prints the paths. A table that fails does not end the run.
ExitStatus runLayout(Run& run);

}  // namespace quillmarden
