#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Prints a table's memo, one line a row, or saves it from a file of that form.
ExitStatus runMemo(Run& run);

}  // namespace quillmarden
