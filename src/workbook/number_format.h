#pragma once

#include <optional>
#include <string_view>

namespace quillmarden {

/// Whether a number format, as "yyyy/mm/dd" or "[$-411]ge.m.d", shows a number as a date or a time.
bool showsDates(std::string_view format);

/// "yyyy/mm/dd", with or without " hh:mm" or " hh:mm:ss", with "/" or "-" between the parts of the date, as days since
/// 1899-12-30. Nothing for another text, a day that there is not, and years before 1901, in which programs count
/// differently.
std::optional<double> dateSerial(std::string_view text);

}  // namespace quillmarden
