#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Prints a table's memo, one line a row, or saves it from a file of that form.
extern const Command kMemoCommand;

}  // namespace quillmarden
