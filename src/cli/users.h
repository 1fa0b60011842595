#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Prints the users, one a line: name, group, time of the last login. Or adds one, gives one a group, removes one.
extern const Command kUsersCommand;

}  // namespace quillmarden
