#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Prints the shown Systems, one a line: name, tab, Database kind.
ExitStatus runSystems(Run& run);

}  // namespace quillmarden
