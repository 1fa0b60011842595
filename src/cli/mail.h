#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Prints the mail addresses of the chosen groups, a line a group.
ExitStatus runMail(Run& run);

}  // namespace quillmarden
