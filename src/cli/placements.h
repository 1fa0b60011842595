#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Prints the placement targets that table headers offer, one a line. Or adds one, removes one.
extern const Command kPlacementsCommand;

}  // namespace quillmarden
