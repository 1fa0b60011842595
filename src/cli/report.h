#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Runs a stored query: into a workbook, whose path is printed, or as lines of cells parted by tabs.
ExitStatus runReport(Run& run);

}  // namespace quillmarden
