#pragma once

#include <vector>

#include "cli/command.h"

namespace quillmarden {

/// All commands, in the order in which the help lists them within their groups.
const std::vector<const Command*>& commands();

/// The heading of a group in the help.
const char* groupHeading(CommandGroup group);

}  // namespace quillmarden
