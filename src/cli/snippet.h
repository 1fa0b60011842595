#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Prints text for a developer's program about chosen fields of a table, as the grid's menu puts it on the clipboard.
extern const Command kSnippetCommand;

}  // namespace quillmarden
