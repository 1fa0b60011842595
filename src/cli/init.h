#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Makes an initial Repository and prints its path. An existing file is left alone.
extern const Command kInitCommand;

}  // namespace quillmarden
