#pragma once

#include <string_view>

#include "sqlgen/runnable/dialect.h"

namespace quillmarden {

/// Whether the kind reserves the word, compared without case.
bool isReservedWord(ScriptKind kind, std::string_view word);

}  // namespace quillmarden
