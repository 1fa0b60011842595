#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Prints the shown Systems, one a line: name, tab, Database kind.
extern const Command kSystemsCommand;

}  // namespace quillmarden
