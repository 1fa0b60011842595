#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Writes the ER workbook of the chosen tables and prints its path.
extern const Command kErCommand;

}  // namespace quillmarden
