#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Writes the member list of the chosen groups and prints its path.
ExitStatus runMembers(Run& run);

}  // namespace quillmarden
