#include "screen/date_time.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace quillmarden {
namespace {

TEST(DateTime, FormFillsOnlyItsOwnWords) {
  const DateTime moment{2026, 1, 2, 3, 4, 5};
  EXPECT_EQ(formatDateTime(moment, "yyyy/mm/dd hh:nn:ss"), "2026/01/02 03:04:05");
  EXPECT_EQ(formatDateTime(moment, "yyyymmddhhnnss"), "20260102030405");
  EXPECT_EQ(formatDateTime(moment, "更新 yyyy年m"), "更新 2026年m");
}

TEST(DateTime, ReadsWhatPeopleAndFilesWrite) {
  EXPECT_EQ(parseDateTime("2026/11/24 09:05:00"), (DateTime{2026, 11, 24, 9, 5, 0}));
  EXPECT_EQ(parseDateTime("2026-1-2 3:4"), (DateTime{2026, 1, 2, 3, 4, 0}));
  EXPECT_EQ(parseDateTime("2024/02/29"), (DateTime{2024, 2, 29, 0, 0, 0}));
  for (const char* odd :
       {"", "2026", "2026/13/01", "2026/02/30", "2025/02/29", "2026/1-2", "0000/01/01", "2026/01/01 24:00",
        "2026/01/01 10:60", "2026/01/01 10", "2026/01/01 10:00:00x", "2026/01/01T10:00", "26/01/01", "2026/001/01",
        " 2026/01/01", "2026/01/01 ", "２０２６/01/01", "2026/00/10", "2026/10/00"})
    EXPECT_EQ(parseDateTime(odd), std::nullopt) << odd;
}

TEST(DateTime, UniversalTimeByTheMachinesZone) {
  const char* before = std::getenv("TZ");
  const std::string kept = before == nullptr ? "" : before;
  const auto in = [](const char* zone, const DateTime& moment) {
    setenv("TZ", zone, 1);
    tzset();
    return universalDateTime(moment);
  };
  EXPECT_EQ(in("JST-9", {2026, 1, 1, 8, 30, 5}), (DateTime{2025, 12, 31, 23, 30, 5}));
  EXPECT_EQ(in("UTC0", {2026, 1, 1, 8, 30, 5}), (DateTime{2026, 1, 1, 8, 30, 5}));
  EXPECT_EQ(in("CET-1CEST,M3.5.0,M10.5.0/3", {2026, 7, 1, 12, 0, 0}), (DateTime{2026, 7, 1, 10, 0, 0}));
  before == nullptr ? unsetenv("TZ") : setenv("TZ", kept.c_str(), 1);
  tzset();
}

TEST(DateTime, SecondsAcrossMonthsAndLeapDays) {
  const DateTime february{2024, 2, 28, 23, 59, 59};
  EXPECT_EQ(secondsBetween(february, {2024, 3, 1, 0, 0, 0}), 24 * 3600 + 1);
  EXPECT_EQ(secondsBetween({2024, 3, 1, 0, 0, 0}, february), -24 * 3600 - 1);
}

}  // namespace
}  // namespace quillmarden
