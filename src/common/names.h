#pragma once

#include <string>
#include <string_view>

namespace quillmarden {

/// Replaces each of [ ] @ \ / : * ? < > | and the double quote, and control characters, by `replacement`.
std::string gSafeFileName(std::string_view text, std::string_view replacement = "_");

/// A row of the table list down to the table's name: the first of its tab-separated parts, trimmed, without a leading
/// reference mark and its closing twin, and without a System prefix up to "@". A name that merely ends in "@", as a
/// table read from a live database does, keeps it.
std::string gSplitTableName(std::string_view text);

/// Whether the text holds one of the reference marks < > [ ].
bool gChkMark(std::string_view text);

/// "{", each character as its CP932 number, "_" kept as it is, "}": a name that any file system takes. A character
/// that CP932 cannot hold stands as "u" and its Unicode number in hexadecimal digits.
std::string gEncodeName(std::string_view text);

}  // namespace quillmarden
