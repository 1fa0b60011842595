#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Writes the layout workbook of each chosen table and prints the paths. A table that fails does not end the run.
extern const Command kLayoutCommand;

}  // namespace quillmarden
