#pragma once

#include <string>
#include <string_view>

namespace quillmarden {

/// Keeps "0" to "9", a "-" in first position and, with `allowPoint`, the first "."; drops all else. No digit
/// left gives "0".
std::string gNumFromText(std::string_view text, bool allowPoint);

/// The trimmed text as a number; text that is no number goes through gNumFromText first.
double gStr2Double(std::string_view text);

/// The text as a number when it is one as a whole, else 0.
double gVal(std::string_view text);

/// Whether the whole trimmed text is a number: sign, digits, one point, an exponent.
bool isNumeric(std::string_view text);

/// A number in its shortest plain form: "0.5", "12", "-3", never an exponent.
std::string plainNumber(double number);

/// Rounded to a whole number, groups of three parted by ",": the format "#,##0".
std::string groupedNumber(double number);

}  // namespace quillmarden
