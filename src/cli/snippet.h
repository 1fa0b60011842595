#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Prints text for a developer's program about chosen fields of a table, as the grid's menu puts it on the clipboard.
ExitStatus runSnippet(Run& run);

}  // namespace quillmarden
