#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Prints ALTER TABLE text for chosen fields of a table, as the grid's menu puts it on the clipboard.
ExitStatus runAlter(Run& run);

}  // namespace quillmarden
