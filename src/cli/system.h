#pragma once

#include "cli/command.h"

namespace quillmarden {

/// The `system` command: the record of a System, and changes of it as the System screen makes them.
extern const Command kSystemCommand;

}  // namespace quillmarden
