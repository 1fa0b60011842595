#include "screen/date_time.h"

#include <array>
#include <chrono>
#include <utility>

namespace quillmarden {

namespace {

void appendPadded(std::string& text, int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  if (digits.size() < width) text.append(width - digits.size(), '0');
  text += digits;
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
  const std::array<std::pair<std::string_view, int>, 6> parts{{{"yyyy", moment.year},
                                                               {"mm", moment.month},
                                                               {"dd", moment.day},
                                                               {"hh", moment.hour},
                                                               {"nn", moment.minute},
                                                               {"ss", moment.second}}};
  std::string text;
  text.reserve(pattern.size());
  while (!pattern.empty()) {
    std::size_t taken = 0;
    for (const auto& [name, number] : parts) {
      if (!pattern.starts_with(name)) continue;
      appendPadded(text, number, name.size());
      taken = name.size();
      break;
    }
    if (taken == 0) {
      text += pattern.front();
      taken = 1;
    }
    pattern.remove_prefix(taken);
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

DateTime systemNow() { return localDateTime(std::time(nullptr)); }

std::int64_t secondsBetween(const DateTime& from, const DateTime& to) { return seconds(to) - seconds(from); }

}  // namespace quillmarden
