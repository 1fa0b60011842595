#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Makes an initial Repository and prints its path. An existing file is left alone.
ExitStatus runInit(Run& run);

}  // namespace quillmarden
