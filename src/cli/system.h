#pragma once

#include "cli/run.h"

namespace quillmarden {

/// The `system` command: the record of a System, and changes of it as the System screen makes them.
ExitStatus runSystem(Run& run);

}  // namespace quillmarden
