#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillmarden {

// Text is UTF-8 in memory. Its width is counted in bytes of CP932: half-width characters 1, full-width 2. A
// character that CP932 cannot hold counts 1, one beyond the basic plane 2. Bytes that are no UTF-8 count 1 each.

/// Width of the text in bytes of CP932.
std::size_t gLenB(std::string_view text);

/// The part that begins at byte `start` (from 1) of the CP932 form and is at most `length` bytes long. A cut through
/// a double-byte character drops that character.
std::string gMidB(std::string_view text, std::size_t start, std::size_t length);

/// Pads to `width` bytes: behind the text when `mode` is 0, in front when it is 1; with 2 and 3 the text first
/// becomes full-width. A longer text is cut to `width`, unless `keep` is set.
std::string gPadText(std::string_view text, std::size_t width, int mode = 0, bool keep = false);

/// Brackets and angle signs to half-width; with `withDigits` digits too; with `withBlanks` all blanks are removed.
std::string gZenkaku2Hankaku(std::string_view text, bool withDigits, bool withBlanks);

/// Full-width letters, digits, signs and katakana to half-width, as StrConv narrow does; the rest stays.
std::string toNarrow(std::string_view text);
/// Half-width to full-width, as StrConv wide does.
std::string toWide(std::string_view text);

/// Case conversion of all letters that have one, full-width included.
std::string toUpper(std::string_view text);
std::string toLower(std::string_view text);
/// Equality without case, by toLower on both sides.
bool equalsNoCase(std::string_view left, std::string_view right);

/// Without blanks, tabs excluded, at both ends, as Trim$ has it: only U+0020.
std::string_view trim(std::string_view text);

/// Replaces every `from`; an empty `from` changes nothing. Replaced text is not searched again.
std::string gReplaceAll(std::string_view text, std::string_view from, std::string_view to);

/// A text for an Excel cell: trimmed, with a leading "'" when it begins with "+", "=" or "-".
std::string gExcelSafeText(std::string_view text);

/// UTF-8 to CP932. Each character that CP932 cannot hold becomes "?", and is added once to `lost` when given.
std::string toCp932(std::string_view utf8, std::u32string* lost = nullptr);
/// CP932 to UTF-8; a byte that is none becomes U+FFFD.
std::string fromCp932(std::string_view cp932);
/// One character as UTF-8.
std::string toUtf8(char32_t character);

}  // namespace quillmarden
