#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Prints ALTER TABLE text for chosen fields of a table, as the grid's menu puts it on the clipboard.
extern const Command kAlterCommand;

}  // namespace quillmarden
