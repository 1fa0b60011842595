#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Writes the ER workbook of the chosen tables and prints its path.
ExitStatus runEr(Run& run);

}  // namespace quillmarden
