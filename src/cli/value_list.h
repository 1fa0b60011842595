#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Prints a System's value lists, or one of them: its record, an empty line, its entries. With a file or a part of the
/// record it saves that list instead, with the checks and questions of its screens; a list that is not there is made.
extern const Command kValueListCommand;

}  // namespace quillmarden
