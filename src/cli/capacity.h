#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Recomputes lengths and capacities of a System and prints its tables' values below a line of headings.
ExitStatus runCapacity(Run& run);

}  // namespace quillmarden
