#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Writes the member list of the chosen groups and prints its path.
extern const Command kMembersCommand;

}  // namespace quillmarden
