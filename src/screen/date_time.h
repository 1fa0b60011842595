#pragma once

#include <compare>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace quillmarden {

/// A moment of local time, to the second.
struct DateTime {
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;

  auto operator<=>(const DateTime&) const = default;
};

/// Fills a pattern of "yyyy", "mm", "dd", "hh", "nn" (minutes), "ss"; all else stands as it is.
/// "yyyy/mm/dd hh:nn:ss" is the form of the Repository's Date columns.
std::string formatDateTime(const DateTime& moment, std::string_view pattern);

/// Reads "yyyy/mm/dd", with or without " hh:nn" or " hh:nn:ss", with "/" or "-" between the parts and one or two
/// digits a part. Anything else, a 13th month or a 30th of February included, gives nothing.
std::optional<DateTime> parseDateTime(std::string_view text);

/// The moment of a file or system time on this machine's own clock.
DateTime localDateTime(std::time_t time);
/// A moment of this machine's own clock in universal time. Of an hour that the clock shows twice
/// either may be meant; where the system can't tell, the moment stands as it is.
DateTime universalDateTime(const DateTime& local);
/// The machine's clock, for hosts that have no other.
DateTime systemNow();

/// Seconds from the first moment to the second, negative when that is earlier. Local time is taken as it stands, so
/// an hour that the clock was put forward or back counts in.
std::int64_t secondsBetween(const DateTime& from, const DateTime& to);

}  // namespace quillmarden
