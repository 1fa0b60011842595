#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Prints the rows of the table list under the filters of the options.
ExitStatus runTables(Run& run);

}  // namespace quillmarden
