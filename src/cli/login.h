#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Prints the user, the file and whether the user is an administrator. The login itself has then happened.
extern const Command kLoginCommand;

}  // namespace quillmarden
