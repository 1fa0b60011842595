#include "common/numbers.h"

#include <gtest/gtest.h>

#include <cmath>

namespace quillmarden {
namespace {

TEST(Numbers, FromFreeText) {
  EXPECT_EQ(gNumFromText("12-3.4.5", true), "123.45");
  EXPECT_EQ(gNumFromText("12-3.4.5", false), "12345");
  EXPECT_EQ(gNumFromText("-1,200円", false), "-1200");
  for (const char* none : {"", "-", ".", "-.", "abc", "１２"}) EXPECT_EQ(gNumFromText(none, true), "0") << none;
}

TEST(Numbers, WholeTextOrItsDigits) {
  EXPECT_EQ(gStr2Double(" +1.5e2 "), 150);
  EXPECT_EQ(gStr2Double("1,234.5"), 1234.5);
  EXPECT_EQ(gStr2Double("10 K"), 10);
  EXPECT_EQ(gStr2Double("inf"), 0);
  EXPECT_EQ(gStr2Double(std::string(400, '9')), 0) << "no double holds it";
  EXPECT_EQ(gVal("12abc"), 0);
  EXPECT_EQ(gVal("-1"), -1);
  for (const char* number : {"0", "-3", "+.5", "5.", " 7 ", "1E3"}) EXPECT_TRUE(isNumeric(number)) << number;
  for (const char* word : {"", " ", "-", ".", "--1", "0x10", "nan", "1 2", "1e", "1e999", "１"})
    EXPECT_FALSE(isNumeric(word)) << word;
}

TEST(Numbers, Grouped) {
  EXPECT_EQ(groupedNumber(1234567), "1,234,567");
  EXPECT_EQ(groupedNumber(999.5), "1,000");
  EXPECT_EQ(groupedNumber(2.5), "3") << "halves go away from zero";
  EXPECT_EQ(groupedNumber(-2.5), "-3");
  EXPECT_EQ(groupedNumber(-0.4), "0");
  EXPECT_EQ(groupedNumber(std::nan("")), "0");
  EXPECT_EQ(plainNumber(1e15), "1000000000000000");
}

}  // namespace
}  // namespace quillmarden
