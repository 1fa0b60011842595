#pragma once

#include <string_view>

#include "engine/ast.h"

namespace quillmarden {

/// Parses one statement of the Access SQL dialect, with or without a closing ";". Throws EngineError kSyntax
/// with the place (line, column, the words there) for anything else, a second statement included.
Statement parseStatement(std::string_view sql);

}  // namespace quillmarden
