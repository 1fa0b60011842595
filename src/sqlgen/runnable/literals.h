#pragma once

#include <string>
#include <string_view>

#include "sqlgen/runnable/dialect.h"

namespace quillmarden {

/// The text as a literal of the kind: quotes doubled, line ends kept where the kind can.
std::string textLiteral(const Dialect& dialect, std::string_view text);
/// The same behind what the script holds.
void appendTextLiteral(const Dialect& dialect, std::string_view text, std::string& script);

}  // namespace quillmarden
