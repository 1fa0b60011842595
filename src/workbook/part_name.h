#pragma once

#include <string>
#include <string_view>

namespace quillmarden {

/// Part names without the leading "/", as "xl/workbook.xml".

/// The name with ASCII capitals made small: two names that agree in this mean one part.
std::string partKey(std::string_view name);
bool samePart(std::string_view a, std::string_view b);
/// Why the text can't name a part ("../x", "/x", "C:x", "a\b", "a//b", control characters); "" when it can.
std::string partNameFault(std::string_view name);
/// "xl/worksheets/" of "xl/worksheets/sheet1.xml"; "" at the top.
std::string_view partFolder(std::string_view name);

}  // namespace quillmarden
