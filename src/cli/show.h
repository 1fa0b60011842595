#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Prints one table as the detail screen holds it: header values, an empty line, the field grid.
ExitStatus runShow(Run& run);

}  // namespace quillmarden
