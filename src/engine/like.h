#pragma once

#include <string_view>

namespace quillmarden {

/// Whether a text fits a pattern of the operator Like, the case of ASCII and full-width letters left out of account:
/// "*" any characters, "?" one, "#" a digit, "[a-z]" one of these, "[!a-z]" none of them, "[*]" the character itself.
/// Throws EngineError kLikePattern for an unclosed bracket or a range that runs backwards.
bool matchesLike(std::string_view text, std::string_view pattern);

}  // namespace quillmarden
