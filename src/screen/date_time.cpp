#include "screen/date_time.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <iterator>

namespace quillmarden {

namespace {

/// What a pattern's letters stand for, as often as `width` says.
struct Part {
  char letter;
  std::size_t width;
  int DateTime::*number;
};
constexpr Part kParts[] = {{'y', 4, &DateTime::year}, {'m', 2, &DateTime::month},  {'d', 2, &DateTime::day},
                           {'h', 2, &DateTime::hour}, {'n', 2, &DateTime::minute}, {'s', 2, &DateTime::second}};

void appendPadded(std::string& text, int number, std::size_t width) {
  char digits[16];
  const char* end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
  const auto size = static_cast<std::size_t>(end - digits);
  if (size < width) text.append(width - size, '0');
  text.append(digits, size);
}

/// Takes up to `most` digits off the front of the text; nothing when there are fewer than `least`.
std::optional<int> takeNumber(std::string_view& text, std::size_t least, std::size_t most) {
  std::size_t length = 0;
  int number = 0;
  while (length < most && length < text.size() && text[length] >= '0' && text[length] <= '9')
    number = number * 10 + (text[length++] - '0');
  if (length < least) return std::nullopt;
  text.remove_prefix(length);
  return number;
}

/// Takes one character off the front when it is one of `signs`, and gives it; else '\0'.
char takeSign(std::string_view& text, std::string_view signs) {
  if (text.empty() || signs.find(text.front()) == std::string_view::npos) return '\0';
  const char sign = text.front();
  text.remove_prefix(1);
  return sign;
}

std::chrono::year_month_day date(const DateTime& moment) {
  return std::chrono::year(moment.year) / std::chrono::month(static_cast<unsigned>(moment.month)) /
         std::chrono::day(static_cast<unsigned>(moment.day));
}

std::int64_t seconds(const DateTime& moment) {
  const std::int64_t days = std::chrono::sys_days(date(moment)).time_since_epoch().count();
  return ((days * 24 + moment.hour) * 60 + moment.minute) * 60 + moment.second;
}

/// The time of day in the text, into the moment. False when it is none.
bool parseTime(std::string_view text, DateTime& moment) {
  const auto hour = takeNumber(text, 1, 2);
  if (!hour || !takeSign(text, ":")) return false;
  const auto minute = takeNumber(text, 1, 2);
  if (!minute) return false;
  std::optional<int> second = 0;
  if (takeSign(text, ":")) second = takeNumber(text, 1, 2);
  if (!second || !text.empty() || *hour > 23 || *minute > 59 || *second > 59) return false;
  moment.hour = *hour;
  moment.minute = *minute;
  moment.second = *second;
  return true;
}

}  // namespace

std::string formatDateTime(const DateTime& moment, std::string_view pattern) {
  std::string text;
  text.reserve(pattern.size());
  while (!pattern.empty()) {
    const char letter = pattern.front();
    const auto part =
        std::find_if(std::begin(kParts), std::end(kParts), [=](const Part& known) { return known.letter == letter; });
    const std::size_t run = std::min(pattern.find_first_not_of(letter), pattern.size());
    if (part != std::end(kParts) && run >= part->width) {
      appendPadded(text, moment.*part->number, part->width);
      pattern.remove_prefix(part->width);
    } else {
      text += letter;
      pattern.remove_prefix(1);
    }
  }
  return text;
}

std::optional<DateTime> parseDateTime(std::string_view text) {
  DateTime moment;
  const auto year = takeNumber(text, 4, 4);
  const char sign = takeSign(text, "/-");
  if (!year || *year == 0 || !sign) return std::nullopt;
  const auto month = takeNumber(text, 1, 2);
  if (!month || takeSign(text, "/-") != sign) return std::nullopt;
  const auto day = takeNumber(text, 1, 2);
  if (!day) return std::nullopt;
  moment.year = *year;
  moment.month = *month;
  moment.day = *day;
  if (!date(moment).ok()) return std::nullopt;
  if (text.empty()) return moment;
  if (!takeSign(text, " ") || !parseTime(text, moment)) return std::nullopt;
  return moment;
}

DateTime localDateTime(std::time_t time) {
  std::tm parts{};
  if (localtime_r(&time, &parts) == nullptr) return {};
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec};
}

DateTime universalDateTime(const DateTime& local) {
  std::tm parts{};
  parts.tm_year = local.year - 1900;
  parts.tm_mon = local.month - 1;
  parts.tm_mday = local.day;
  parts.tm_hour = local.hour;
  parts.tm_min = local.minute;
  parts.tm_sec = local.second;
  parts.tm_isdst = -1;
  const std::time_t time = std::mktime(&parts);
  if (time == static_cast<std::time_t>(-1) || gmtime_r(&time, &parts) == nullptr) return local;
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec};
}

DateTime systemNow() { return localDateTime(std::time(nullptr)); }

std::int64_t secondsBetween(const DateTime& from, const DateTime& to) { return seconds(to) - seconds(from); }

}  // namespace quillmarden
