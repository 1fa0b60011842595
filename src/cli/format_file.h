#pragma once

#include "cli/command.h"

namespace quillmarden {

/// Writes the default Format file of a template when there is none, and prints its path; or checks one.
extern const Command kFormatFileCommand;

}  // namespace quillmarden
