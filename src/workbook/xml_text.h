#pragma once

#include <string>
#include <string_view>

namespace quillmarden {

/// Appends text for an element. What XML can't hold (control characters, bytes that are no UTF-8) becomes U+FFFD; line
/// ends and tabs stay as they are.
void appendXml(std::string& out, std::string_view text);
/// As appendXml for an attribute in double quotes, where line ends and tabs are written as character references.
void appendXmlAttribute(std::string& out, std::string_view text);
std::string xmlText(std::string_view text);
/// The text with U+FFFD for what XML can't hold, otherwise as it stands: for a tree that escapes it on writing.
std::string xmlSafe(std::string_view text);

/// A cell's text for a "t" element: control characters become "_x000D_", and a text that looks like such an escape
/// has its "_" escaped.
void appendCellText(std::string& out, std::string_view text);
/// Whether XML readers would strip blanks or line ends of the text.
bool hasOuterBlanks(std::string_view text);

/// Entities and character references resolved, line ends made "\n". Unknown entities stay as they are.
std::string xmlDecode(std::string_view raw);
/// "_x000D_" escapes of a cell's text resolved.
std::string cellTextDecode(std::string_view text);

/// The number of UTF-16 units of a UTF-8 text, in which spreadsheet programs count; a byte that is no UTF-8 is one.
std::size_t utf16Length(std::string_view text);
/// The longest beginning of the text that has at most so many UTF-16 units and ends with a whole character.
std::string_view utf16Prefix(std::string_view text, std::size_t units);

/// XML in UTF-8 without a byte order mark, from UTF-8 or UTF-16. Throws WorkbookError (Damaged) for other encodings.
std::string xmlAsUtf8(std::string bytes, std::string_view part);

}  // namespace quillmarden
