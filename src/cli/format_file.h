#pragma once

#include "cli/run.h"

namespace quillmarden {

/// Writes the default Format file of a template when there is none, and prints its path; or checks one.
ExitStatus runFormatFile(Run& run);

}  // namespace quillmarden
