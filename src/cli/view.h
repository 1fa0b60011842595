#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Writes a VIEW script and prints its path.
ExitStatus runView(Run& run);

}  // namespace quillmarden
