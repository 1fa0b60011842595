#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Writes a VIEW script and prints its path.
extern const Command kViewCommand;

}  // namespace quillmarden
