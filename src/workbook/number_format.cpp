#include "workbook/number_format.h"

#include <charconv>
#include <chrono>

#include "workbook/styles.h"

namespace quillmarden {

namespace {

struct BuiltinFormat {
  int id;
  std::string_view code;
};

// Numbers 27 to 58 mean what a Japanese program makes of them.
constexpr BuiltinFormat kBuiltin[] = {
    {1, "0"},
    {2, "0.00"},
    {3, "#,##0"},
    {4, "#,##0.00"},
    {9, "0%"},
    {10, "0.00%"},
    {11, "0.00E+00"},
    {12, "# ?/?"},
    {13, "# ?\?/?\?"},
    {14, "mm-dd-yy"},
    {15, "d-mmm-yy"},
    {16, "d-mmm"},
    {17, "mmm-yy"},
    {18, "h:mm AM/PM"},
    {19, "h:mm:ss AM/PM"},
    {20, "h:mm"},
    {21, "h:mm:ss"},
    {22, "m/d/yy h:mm"},
    {27, "[$-411]ge.m.d"},
    {28, "[$-411]ggge\"年\"m\"月\"d\"日\""},
    {30, "m/d/yy"},
    {31, "yyyy\"年\"m\"月\"d\"日\""},
    {32, "h\"時\"mm\"分\""},
    {33, "h\"時\"mm\"分\"ss\"秒\""},
    {37, "#,##0 ;(#,##0)"},
    {38, "#,##0 ;[Red](#,##0)"},
    {39, "#,##0.00;(#,##0.00)"},
    {40, "#,##0.00;[Red](#,##0.00)"},
    {41, "_(* #,##0_);_(* (#,##0);_(* \"-\"_);_(@_)"},
    {42, "_($* #,##0_);_($* (#,##0);_($* \"-\"_);_(@_)"},
    {43, "_(* #,##0.00_);_(* (#,##0.00);_(* \"-\"?\?_);_(@_)"},
    {44, "_($* #,##0.00_);_($* (#,##0.00);_($* \"-\"?\?_);_(@_)"},
    {45, "mm:ss"},
    {46, "[h]:mm:ss"},
    {47, "mmss.0"},
    {48, "##0.0E+0"},
    {49, "@"},
    {55, "yyyy\"年\"m\"月\""},
    {56, "m\"月\"d\"日\""},
    {29, "[$-411]ggge\"年\"m\"月\"d\"日\""},
    {34, "yyyy\"年\"m\"月\""},
    {35, "m\"月\"d\"日\""},
    {36, "[$-411]ge.m.d"},
    {50, "[$-411]ge.m.d"},
    {51, "[$-411]ggge\"年\"m\"月\"d\"日\""},
    {52, "yyyy\"年\"m\"月\""},
    {53, "m\"月\"d\"日\""},
    {54, "[$-411]ggge\"年\"m\"月\"d\"日\""},
    {57, "[$-411]ge.m.d"},
    {58, "[$-411]ggge\"年\"m\"月\"d\"日\""},
};

/// The format without what it shows as it stands, colours and conditions; of its sections the first.
std::string placeholders(std::string_view format) {
  std::string out;
  for (std::size_t at = 0; at < format.size() && format[at] != ';'; ++at) {
    const char c = format[at];
    if (c == '"' || c == '[') {
      const std::size_t close = std::min(format.find(c == '"' ? '"' : ']', at + 1), format.size());
      const std::string_view inner = format.substr(at + 1, close - at - 1);
      // Hours, minutes and seconds beyond a day stand in brackets, too.
      if (c == '[' && inner.find_first_not_of("hHmMsS") == std::string_view::npos) out += inner;
      at = close;
    } else if (c == '\\' || c == '_' || c == '*') {
      ++at;
    } else {
      out += c;
    }
  }
  return out;
}

/// Takes a number of one to so many digits off the front.
std::optional<int> takeNumber(std::string_view& text, std::size_t digits) {
  int number = 0;
  const char* const begin = text.data();
  const auto [end, error] = std::from_chars(begin, begin + std::min(text.size(), digits), number);
  if (error != std::errc() || *begin == '-') return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - begin));
  return number;
}

bool takeSign(std::string_view& text, char sign) {
  if (text.empty() || text.front() != sign) return false;
  text.remove_prefix(1);
  return true;
}

}  // namespace

bool showsDates(std::string_view format) {
  const std::string shown = placeholders(format);
  if (shown == "General") return false;
  for (std::size_t at = shown.find_first_of("yYmMdDhHsSgGeE"); at < shown.size();
       at = shown.find_first_of("yYmMdDhHsSgGeE", at + 1)) {
    // A year of an era, unless it is an exponent.
    const bool exponent = (shown[at] == 'e' || shown[at] == 'E') && at + 1 < shown.size() &&
                          (shown[at + 1] == '+' || shown[at + 1] == '-');
    if (!exponent) return true;
  }
  return false;
}

std::optional<double> dateSerial(std::string_view text) {
  using namespace std::chrono;
  const auto yearPart = takeNumber(text, 4);
  const char sign = text.empty() ? '/' : text.front();
  if (!yearPart || *yearPart < 1901 || (sign != '/' && sign != '-') || !takeSign(text, sign)) return std::nullopt;
  const auto monthPart = takeNumber(text, 2);
  if (!monthPart || !takeSign(text, sign)) return std::nullopt;
  const auto dayPart = takeNumber(text, 2);
  if (!dayPart) return std::nullopt;
  const year_month_day date{year(*yearPart), month(static_cast<unsigned>(*monthPart)),
                            day(static_cast<unsigned>(*dayPart))};
  if (!date.ok()) return std::nullopt;
  const auto days = static_cast<double>((sys_days(date) - sys_days(year(1899) / 12 / 30)).count());
  if (text.empty()) return days;
  if (!takeSign(text, ' ')) return std::nullopt;
  const auto hourPart = takeNumber(text, 2);
  if (!hourPart || !takeSign(text, ':')) return std::nullopt;
  const auto minutePart = takeNumber(text, 2);
  const auto secondPart = takeSign(text, ':') ? takeNumber(text, 2) : std::optional(0);
  if (!minutePart || !secondPart || !text.empty()) return std::nullopt;
  if (*hourPart > 23 || *minutePart > 59 || *secondPart > 59) return std::nullopt;
  return days + (*hourPart * 3600 + *minutePart * 60 + *secondPart) / 86400.0;
}

std::string_view builtinNumberFormat(int id) {
  for (const BuiltinFormat& format : kBuiltin)
    if (format.id == id) return format.code;
  return {};
}

int builtinNumberFormatId(std::string_view code) {
  if (code.empty() || code == "General") return 0;
  for (const BuiltinFormat& format : kBuiltin)
    if (format.code == code) return format.id;
  return -1;
}

}  // namespace quillmarden
