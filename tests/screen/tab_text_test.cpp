#include "screen/tab_text.h"

#include <gtest/gtest.h>

namespace quillmarden {
namespace {

TEST(TabText, WhatIsCopiedComesBackAsItWas) {
  const TextRows rows = {
      {"顧客ID", "10"}, {"二行の\n備考", "a\tb"}, {"", ""}, {"\"引用\" で始まる", "中の \" はそのまま"}, {"最後"}};
  EXPECT_EQ(fromTabText(toTabText(rows)), rows);
  EXPECT_EQ(toTabText({{"a", "x\ny"}, {"\"q", "5\"6"}}), "a\t\"x\ny\"\r\n\"\"\"q\"\t5\"6\r\n");
}

TEST(TabText, TakesTheLineEndsOfEveryProgram) {
  const TextRows rows = {{"a", "b"}, {"c", ""}};
  EXPECT_EQ(fromTabText("a\tb\r\nc\t\r\n"), rows);
  EXPECT_EQ(fromTabText("a\tb\nc\t"), rows);
  EXPECT_EQ(fromTabText("a\tb\rc\t\r"), rows);
  EXPECT_EQ(fromTabText("\"x\r\ny\"\r\n"), (TextRows{{"x\ny"}}));
  EXPECT_EQ(fromTabText("a\r\n\r\nb"), (TextRows{{"a"}, {""}, {"b"}}));
  EXPECT_TRUE(fromTabText("").empty());
}

TEST(TabText, AQuoteThatQuotesNothingIsACharacter) {
  EXPECT_EQ(fromTabText("\"open\tb"), (TextRows{{"\"open", "b"}}));
  EXPECT_EQ(fromTabText("\"a\"b\tc"), (TextRows{{"\"a\"b", "c"}}));
  EXPECT_EQ(fromTabText("5\" pipe"), (TextRows{{"5\" pipe"}}));
}

}  // namespace
}  // namespace quillmarden
