#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Prints the mail addresses of the chosen groups, a line a group.
extern const Command kMailCommand;

}  // namespace quillmarden
