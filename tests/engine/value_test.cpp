#include "engine/value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "engine/convert.h"

namespace quillmarden {
namespace {

FieldDef fieldOf(FieldType type, int size = 0) {
  FieldDef field;
  field.name = "略名";
  field.type = type;
  field.size = size;
  return field;
}

int faultOf(const Value& value, const FieldDef& field) {
  try {
    convertForColumn(value, field, "T");
  } catch (const EngineError& fault) {
    return fault.number();
  }
  return 0;
}

Value stored(const Value& value, FieldType type, int size = 0) {
  return convertForColumn(value, fieldOf(type, size), "T");
}

TEST(ValueTest, NumbersAreWrittenPlainAndShortest) {
  EXPECT_EQ(numberText(0.5), "0.5");
  EXPECT_EQ(numberText(64.784), "64.784");
  EXPECT_EQ(numberText(12.0), "12");
  EXPECT_EQ(numberText(-0.0), "0");
  EXPECT_EQ(numberText(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(numberText(1e21), "1000000000000000000000");
  EXPECT_EQ(numberText(1e-7), "0.0000001");
  // The widest of all: no crash, and it reads back as the same number.
  const double least = std::numeric_limits<double>::denorm_min();
  EXPECT_EQ(parseNumber(numberText(least)), least);
  EXPECT_EQ(parseNumber(numberText(-std::numeric_limits<double>::max())), -std::numeric_limits<double>::max());
}

TEST(ValueTest, WholeNumbersRoundHalfToEvenAndNeverOverflow) {
  EXPECT_EQ(toInteger(2.5), 2);
  EXPECT_EQ(toInteger(3.5), 4);
  EXPECT_EQ(toInteger(-0.5), 0);
  EXPECT_EQ(toInteger(-1.5), -2);
  EXPECT_EQ(toInteger(std::string(" 12 ")), 12);
  EXPECT_EQ(toInteger(std::string("12円")), 0);
  EXPECT_EQ(toInteger(1e300), 0);
  EXPECT_EQ(toInteger(std::nan("")), 0);
  EXPECT_EQ(toNumber(Value{}), 0);
}

TEST(ValueTest, TextThatIsNoNumberIsNone) {
  for (const char* text : {"", " ", "-", "1a", "inf", "nan", "0x10", "1 2", "1,000"}) {
    EXPECT_EQ(parseNumber(text), std::nullopt) << text;
  }
  EXPECT_EQ(parseNumber("+5"), 5);
  EXPECT_EQ(parseNumber("-.5"), -0.5);
  EXPECT_EQ(parseNumber("1e3"), 1000);
}

TEST(ConvertTest, WidthCountsCharactersAndNamesWhatIsTooLong) {
  EXPECT_EQ(stored(std::string("三文字"), FieldType::Text, 3), Value(std::string("三文字")));
  EXPECT_EQ(stored(std::int64_t{123}, FieldType::Text, 3), Value(std::string("123")));
  EXPECT_EQ(faultOf(std::string("四文字名"), fieldOf(FieldType::Text, 3)), engine_error::kTextTooLong);
  EXPECT_EQ(faultOf(std::string(10000, 'x'), fieldOf(FieldType::Memo)), 0);
  try {
    convertForColumn(std::string("四文字名"), fieldOf(FieldType::Text, 3), "MAS_TABLEINFO");
    FAIL();
  } catch (const EngineError& fault) {
    const std::string text = fault.what();
    for (const char* part : {"MAS_TABLEINFO", "略名", "3", "4"}) EXPECT_NE(text.find(part), std::string::npos) << text;
  }
}

TEST(ConvertTest, NumbersAreRoundedAndHeldToTheirRange) {
  EXPECT_EQ(stored(std::string("2.5"), FieldType::Integer), Value(std::int64_t{2}));
  EXPECT_EQ(stored(32767.4, FieldType::Integer), Value(std::int64_t{32767}));
  EXPECT_EQ(faultOf(32767.6, fieldOf(FieldType::Integer)), engine_error::kConversion);
  EXPECT_EQ(faultOf(std::int64_t{2147483648}, fieldOf(FieldType::Long)), engine_error::kConversion);
  EXPECT_EQ(stored(std::int64_t{-2147483648}, FieldType::Long), Value(std::int64_t{-2147483648}));
  EXPECT_EQ(faultOf(std::string(""), fieldOf(FieldType::Long)), engine_error::kConversion);
  EXPECT_EQ(faultOf(std::numeric_limits<double>::infinity(), fieldOf(FieldType::Double)), engine_error::kConversion);
  EXPECT_EQ(stored(std::int64_t{1}, FieldType::Flag), Value(std::int64_t{-1}));
  EXPECT_EQ(stored(std::string("True"), FieldType::Flag), Value(std::int64_t{-1}));
  EXPECT_EQ(stored(std::string("0"), FieldType::Flag), Value(std::int64_t{0}));
}

TEST(ConvertTest, DatesBecomeOneForm) {
  const auto date = [](const char* text) { return toText(stored(std::string(text), FieldType::Date)); };
  EXPECT_EQ(date("2026/11/24 09:05:00"), "2026/11/24 09:05:00");
  EXPECT_EQ(date("2026-1-2"), "2026/01/02 00:00:00");
  EXPECT_EQ(date("2026/1/2 9:05"), "2026/01/02 09:05:00");
  EXPECT_EQ(date("11/24/2026"), "2026/11/24 00:00:00");
  EXPECT_EQ(date("09:05"), "1899/12/30 09:05:00");
  EXPECT_EQ(date("2024/02/29"), "2024/02/29 00:00:00");
  for (const char* text : {"", "2026/02/29", "2026/13/01", "2026/00/10", "2026/1/1 24:00", "2026/11", "あした",
                           "2026/1/1 09:05:00 x", "99999/1/1", "2026/1-1"}) {
    EXPECT_EQ(faultOf(std::string(text), fieldOf(FieldType::Date)), engine_error::kConversion) << text;
  }
  EXPECT_EQ(toText(stored(0.25, FieldType::Date)), "1899/12/30 06:00:00");
  EXPECT_EQ(toText(stored(46350.0, FieldType::Date)), "2026/11/24 00:00:00");
  EXPECT_EQ(toText(stored(-1.25, FieldType::Date)), "1899/12/29 06:00:00");
  EXPECT_EQ(dateFromDays(1e18), std::nullopt);
  EXPECT_EQ(dateFromDays(2958465.999999), std::nullopt) << "rounds up into the year 10000";
}

TEST(ConvertTest, NullAndEmptyAreDifferentThings) {
  FieldDef field = fieldOf(FieldType::Text, 10);
  EXPECT_EQ(convertForColumn(Value{}, field, "T"), Value{});
  EXPECT_EQ(convertForColumn(std::string(), field, "T"), Value(std::string()));
  field.allowZeroLength = false;
  EXPECT_EQ(faultOf(std::string(), field), engine_error::kZeroLengthNotAllowed);
  field.required = true;
  EXPECT_EQ(faultOf(Value{}, field), engine_error::kNullNotAllowed);
}

TEST(ConvertTest, WhatFitsIsWhatComesBackUnchanged) {
  const Value values[] = {Value{},
                          std::int64_t{0},
                          std::int64_t{-1},
                          std::int64_t{40000},
                          2.5,
                          std::string("abc"),
                          std::string("2.5"),
                          std::string(300, 'x'),
                          std::int64_t{1} << 40,
                          std::string("2026/11/24 09:05:00"),
                          std::string("2026/02/30 00:00:00")};
  for (const FieldType type : {FieldType::Text, FieldType::Memo, FieldType::Integer, FieldType::Long, FieldType::Double,
                               FieldType::Flag, FieldType::Date, FieldType::Auto}) {
    const FieldDef field = fieldOf(type, 20);
    for (const Value& value : values) {
      if (!fitsColumn(value, field)) continue;
      EXPECT_EQ(convertForColumn(value, field, "T"), value) << toText(value) << " as " << static_cast<int>(type);
    }
  }
}

}  // namespace
}  // namespace quillmarden
