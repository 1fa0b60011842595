#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Runs a stored query: into a workbook, whose path is printed, or as lines of cells parted by tabs.
extern const Command kReportCommand;

}  // namespace quillmarden
