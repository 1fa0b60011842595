#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Writes a CREATE script and prints its path.
ExitStatus runSql(Run& run);

}  // namespace quillmarden
