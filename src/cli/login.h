#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Prints the user, the file and whether the user is an administrator. The login itself has then happened.
ExitStatus runLogin(Run& run);

}  // namespace quillmarden
