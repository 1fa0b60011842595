#include "engine/convert.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "common/utf8.h"

namespace quillmarden {

namespace {

char lower(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

std::string place(const FieldDef& field, std::string_view table) {
  return "テーブル「" + std::string(table) + "」の項目「" + field.name + "」";
}

// A text of any length must not drown the message that quotes it.
std::string excerpt(std::string_view text) {
  constexpr std::size_t kMost = 60;
  if (text.size() <= kMost) return std::string(text);
  std::size_t end = kMost;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return std::string(text.substr(0, end)) + "…";
}

[[noreturn]] void throwConversion(const Value& value, const FieldDef& field, std::string_view table,
                                  std::string_view expected) {
  throw EngineError(engine_error::kConversion, place(field, table) + "に値「" + excerpt(toText(value)) +
                                                   "」を設定できません. " + std::string(expected) + ".");
}

struct Range {
  double lowest;
  double highest;
  const char* text;
};
constexpr Range kInteger = {-32768, 32767, "-32768 から 32767 までの整数が必要です"};
constexpr Range kLong = {-2147483648.0, 2147483647.0, "-2147483648 から 2147483647 までの整数が必要です"};

const Range& rangeOf(FieldType type) { return type == FieldType::Integer ? kInteger : kLong; }

// Flags given as words come from texts that people or other tools wrote.
std::optional<double> numberOf(const Value& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return static_cast<double>(*whole);
  if (const auto* real = std::get_if<double>(&value)) {
    if (!std::isfinite(*real)) return std::nullopt;
    return *real;
  }
  const std::string_view text = trimmed(std::get<std::string>(value));
  if (sameName(text, "true")) return -1;
  if (sameName(text, "false")) return 0;
  return parseNumber(text);
}

Value wholeNumber(const Value& value, const FieldDef& field, std::string_view table) {
  const Range& range = rangeOf(field.type);
  const std::optional<double> number = numberOf(value);
  if (!number) throwConversion(value, field, table, range.text);
  const double rounded = roundHalfToEven(*number);
  if (rounded < range.lowest || rounded > range.highest) throwConversion(value, field, table, range.text);
  return static_cast<std::int64_t>(rounded);
}

Value shortText(Value value, const FieldDef& field, std::string_view table) {
  if (!std::holds_alternative<std::string>(value)) value = toText(value);
  const std::string& text = std::get<std::string>(value);
  if (text.empty() && !field.allowZeroLength) {
    throw EngineError(engine_error::kZeroLengthNotAllowed, place(field, table) + "に長さ 0 の文字列は設定できません.");
  }
  // Fewer bytes than characters allowed need no counting.
  const auto width = static_cast<std::size_t>(field.size);
  if (field.type == FieldType::Text && width > 0 && text.size() > width) {
    const std::size_t count = characterCount(text);
    if (count > width) {
      throw EngineError(engine_error::kTextTooLong, place(field, table) + "に文字が入りきりません. 最大 " +
                                                        std::to_string(width) + " 文字のところに " +
                                                        std::to_string(count) + " 文字あります.");
    }
  }
  return value;
}

Value date(const Value& value, const FieldDef& field, std::string_view table) {
  std::optional<std::string> text;
  if (const auto* given = std::get_if<std::string>(&value)) {
    text = normaliseDate(*given);
  } else {
    text = dateFromDays(numberOf(value).value_or(1e9));
  }
  if (!text) throwConversion(value, field, table, "日付 (yyyy/mm/dd hh:nn:ss) が必要です");
  return *std::move(text);
}

// --- dates

bool isNormalDate(std::string_view text) {
  constexpr std::string_view kForm = "0000/00/00 00:00:00";
  if (text.size() != kForm.size()) return false;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    if (kForm[i] == '0' ? !isDigit(text[i]) : text[i] != kForm[i]) return false;
  }
  return true;
}

int daysOfMonth(int year, int month) {
  constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[static_cast<std::size_t>(month - 1)];
}

std::string dateText(int year, int month, int day, int hour, int minute, int second) {
  std::array<char, 80> buffer;
  const int length = std::snprintf(buffer.data(), buffer.size(), "%04d/%02d/%02d %02d:%02d:%02d", year, month, day,
                                   hour, minute, second);
  return std::string(buffer.data(), static_cast<std::size_t>(length));
}

struct Numbers {
  std::array<int, 3> values{};
  std::array<std::size_t, 3> digits{};
  std::size_t count = 0;
};

// "n<sep>n[<sep>n]" as a whole; the separators are all the same.
std::optional<Numbers> numbersBetween(std::string_view text, std::string_view separators) {
  Numbers numbers;
  char separator = 0;
  std::size_t at = 0;
  while (true) {
    if (numbers.count == 3) return std::nullopt;
    const std::size_t begin = at;
    int value = 0;
    while (at < text.size() && isDigit(text[at]) && at - begin < 4) value = value * 10 + (text[at++] - '0');
    if (at == begin) return std::nullopt;
    numbers.values[numbers.count] = value;
    numbers.digits[numbers.count] = at - begin;
    ++numbers.count;
    if (at == text.size()) break;
    if (separators.find(text[at]) == std::string_view::npos || (separator != 0 && text[at] != separator)) {
      return std::nullopt;
    }
    separator = text[at++];
  }
  if (numbers.count < 2) return std::nullopt;
  return numbers;
}

bool readDatePart(std::string_view text, int& year, int& month, int& day) {
  const std::optional<Numbers> numbers = numbersBetween(text, "/-");
  if (!numbers || numbers->count != 3) return false;
  const auto& [values, digits, count] = *numbers;
  const bool yearLast = digits[0] <= 2 && digits[2] == 4;
  year = yearLast ? values[2] : values[0];
  month = yearLast ? values[0] : values[1];
  day = yearLast ? values[1] : values[2];
  if (!yearLast && digits[0] <= 2) year += year < 30 ? 2000 : 1900;
  return year >= 100 && month >= 1 && month <= 12 && day >= 1 && day <= daysOfMonth(year, month);
}

bool readTimePart(std::string_view text, int& hour, int& minute, int& second) {
  const std::optional<Numbers> numbers = numbersBetween(text, ":");
  if (!numbers) return false;
  hour = numbers->values[0];
  minute = numbers->values[1];
  second = numbers->values[2];
  return hour < 24 && minute < 60 && second < 60;
}

// Days since 1970/01/01 of a date in the proleptic Gregorian calendar, and back (the usual era arithmetic with
// years that begin in March).
void civilFromDays(std::int64_t days, int& year, int& month, int& day) {
  days += 719468;
  const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
  const std::int64_t dayOfEra = days - era * 146097;
  const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t shifted = (5 * dayOfYear + 2) / 153;
  day = static_cast<int>(dayOfYear - (153 * shifted + 2) / 5 + 1);
  month = static_cast<int>(shifted < 10 ? shifted + 3 : shifted - 9);
  year = static_cast<int>(yearOfEra + era * 400 + (month <= 2 ? 1 : 0));
}

std::int64_t daysFromCivil(int year, int month, int day) {
  const std::int64_t shiftedYear = month <= 2 ? year - 1 : year;
  const std::int64_t era = (shiftedYear >= 0 ? shiftedYear : shiftedYear - 399) / 400;
  const std::int64_t yearOfEra = shiftedYear - era * 400;
  const std::int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

constexpr std::int64_t kDaysTo1970 = 25569;  // from 1899/12/30

}  // namespace

Value convertForColumn(Value value, const FieldDef& field, std::string_view table) {
  if (isNull(value)) {
    if (field.required && field.type != FieldType::Auto) {
      throw EngineError(engine_error::kNullNotAllowed, place(field, table) + "は空 (Null) にできません.");
    }
    return value;
  }
  switch (field.type) {
    case FieldType::Text:
    case FieldType::Memo:
      return shortText(std::move(value), field, table);
    case FieldType::Integer:
    case FieldType::Long:
    case FieldType::Auto:
      return wholeNumber(value, field, table);
    case FieldType::Double: {
      const std::optional<double> number = numberOf(value);
      if (!number) throwConversion(value, field, table, "数値が必要です");
      return *number;
    }
    case FieldType::Flag: {
      const std::optional<double> number = numberOf(value);
      if (!number) throwConversion(value, field, table, "0 または -1 が必要です");
      return std::int64_t{*number == 0 ? 0 : -1};
    }
    case FieldType::Date:
      return date(value, field, table);
  }
  return value;
}

bool fitsColumn(const Value& value, const FieldDef& field) {
  if (isNull(value)) return !field.required || field.type == FieldType::Auto;
  switch (field.type) {
    case FieldType::Text:
    case FieldType::Memo: {
      const auto* text = std::get_if<std::string>(&value);
      if (text == nullptr || (text->empty() && !field.allowZeroLength)) return false;
      const auto width = static_cast<std::size_t>(field.size);
      return field.type == FieldType::Memo || width == 0 || text->size() <= width || characterCount(*text) <= width;
    }
    case FieldType::Integer:
    case FieldType::Long:
    case FieldType::Auto: {
      const auto* whole = std::get_if<std::int64_t>(&value);
      if (whole == nullptr) return false;
      const Range& range = rangeOf(field.type);
      const auto number = static_cast<double>(*whole);
      return number >= range.lowest && number <= range.highest;
    }
    case FieldType::Double: {
      const auto* real = std::get_if<double>(&value);
      return real != nullptr && std::isfinite(*real);
    }
    case FieldType::Flag: {
      const auto* whole = std::get_if<std::int64_t>(&value);
      return whole != nullptr && (*whole == 0 || *whole == -1);
    }
    case FieldType::Date: {
      const auto* text = std::get_if<std::string>(&value);
      return text != nullptr && isNormalDate(*text) && normaliseDate(*text).has_value();
    }
  }
  return false;
}

std::optional<double> parseNumber(std::string_view text) {
  text = trimmed(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  // from_chars takes "inf" and "nan" too, which are no numbers here.
  const std::size_t first = !text.empty() && text.front() == '-' ? 1 : 0;
  if (first >= text.size() || !(isDigit(text[first]) || text[first] == '.')) return std::nullopt;
  double number = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (fault != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

double roundHalfToEven(double number) {
  // Beyond 2^52 every double is whole.
  if (!(std::fabs(number) < 4503599627370496.0)) return number;
  const double below = std::floor(number);
  const double rest = number - below;
  if (rest < 0.5) return below;
  if (rest > 0.5) return below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

std::optional<std::string> normaliseDate(std::string_view text) {
  text = trimmed(text);
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;
  const std::size_t blank = text.find(' ');
  const std::string_view first = text.substr(0, blank);
  if (blank != std::string_view::npos) {
    if (!readDatePart(first, year, month, day) || !readTimePart(trimmed(text.substr(blank)), hour, minute, second)) {
      return std::nullopt;
    }
  } else if (!readDatePart(first, year, month, day)) {
    // A refused date may have left its parts behind.
    year = 1899, month = 12, day = 30;
    if (!readTimePart(first, hour, minute, second)) return std::nullopt;
  }
  if (isNormalDate(text)) return std::string(text);
  return dateText(year, month, day, hour, minute, second);
}

std::optional<std::string> dateFromDays(double days) {
  constexpr double kFirst = -657434;   // 0100/01/01
  constexpr double kBehind = 2958466;  // 10000/01/01
  if (!(days >= kFirst && days < kBehind)) return std::nullopt;
  // Before 1899/12/30 the fraction still counts forward from midnight of its day.
  const double wholeDays = std::trunc(days);
  auto seconds = static_cast<std::int64_t>(std::llround(std::fabs(days - wholeDays) * 86400.0));
  auto day = static_cast<std::int64_t>(wholeDays);
  if (seconds == 86400) {
    seconds = 0;
    ++day;
  }
  int year = 0;
  int month = 0;
  int dayOfMonth = 0;
  civilFromDays(day - kDaysTo1970, year, month, dayOfMonth);
  if (year > 9999) return std::nullopt;
  return dateText(year, month, dayOfMonth, static_cast<int>(seconds / 3600), static_cast<int>(seconds / 60 % 60),
                  static_cast<int>(seconds % 60));
}

double daysFromDate(std::string_view date) {
  const auto part = [&](std::size_t begin, std::size_t length) {
    int number = 0;
    for (const char digit : date.substr(begin, length)) number = number * 10 + (digit - '0');
    return number;
  };
  const std::int64_t days = daysFromCivil(part(0, 4), part(5, 2), part(8, 2)) + kDaysTo1970;
  const double fraction = (part(11, 2) * 3600 + part(14, 2) * 60 + part(17, 2)) / 86400.0;
  const auto whole = static_cast<double>(days);
  return whole < 0 ? whole - fraction : whole + fraction;
}

std::size_t characterCount(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

bool sameName(std::string_view left, std::string_view right) {
  return left.size() == right.size() && std::equal(left.begin(), left.end(), right.begin(),
                                                   [](char a, char b) { return a == b || lower(a) == lower(b); });
}

std::string lowerName(std::string_view name) {
  std::string result(name);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

}  // namespace quillmarden
