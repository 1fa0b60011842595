#include "engine/like.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "engine/letters.h"
#include "engine/value.h"

namespace quillmarden {
namespace {

// The same told the slow way, for patterns of "*", "?", "#" and letters.
bool matchesSlowly(std::string_view text, std::string_view pattern) {
  if (pattern.empty()) return text.empty();
  if (pattern[0] == '*') {
    return matchesSlowly(text, pattern.substr(1)) || (!text.empty() && matchesSlowly(text.substr(1), pattern));
  }
  if (text.empty()) return false;
  const bool fits = pattern[0] == '?' || (pattern[0] == '#' ? text[0] >= '0' && text[0] <= '9' : pattern[0] == text[0]);
  return fits && matchesSlowly(text.substr(1), pattern.substr(1));
}

TEST(LikeTest, AgreesWithTheSlowWay) {
  std::minstd_rand random(7);
  const auto text = [&](std::string_view letters) {
    std::string result(random() % 8, ' ');
    for (char& letter : result) letter = letters[random() % letters.size()];
    return result;
  };
  for (int i = 0; i < 20000; ++i) {
    const std::string word = text("ab1");
    const std::string pattern = text("ab1**?#");
    ASSERT_EQ(matchesLike(word, pattern), matchesSlowly(word, pattern)) << word << " Like " << pattern;
  }
}

TEST(LikeTest, ListsRangesAndCase) {
  EXPECT_TRUE(matchesLike("Code_7", "c[!0-9]de[_]#"));
  EXPECT_FALSE(matchesLike("c5de_7", "c[!0-9]de[_]#"));
  EXPECT_TRUE(matchesLike("顧客マスタ", "*[か-ヺ]スタ"));
  EXPECT_TRUE(matchesLike("ＡＢＣ", "ａ?ｃ"));
  EXPECT_TRUE(matchesLike("a*b", "a[*]b"));
  EXPECT_FALSE(matchesLike("axb", "a[*]b"));
  EXPECT_TRUE(matchesLike("ab", "a[]b"));
  EXPECT_FALSE(matchesLike("", "[!a]"));
  EXPECT_TRUE(matchesLike("a-", "a[b-]"));
  EXPECT_THROW(matchesLike("a", "[a"), EngineError);
  EXPECT_THROW(matchesLike("a", "[b-a]"), EngineError);
  // Many stars over a long text cost no more than the product of both.
  EXPECT_FALSE(matchesLike(std::string(10000, 'a'), "*a*a*a*a*a*a*a*a*a*a*b"));
}

TEST(LettersTest, WidthGoesBothWaysForAsciiAndKatakana) {
  EXPECT_EQ(wideLetters("a ~ｶﾞﾊﾟﾜｰ"), "ａ　～ガパワー");
  EXPECT_EQ(narrowLetters("ａ　～ガパヴー。漢"), "a ~ｶﾞﾊﾟｳﾞｰ｡漢");
  for (const std::string_view text : {"Abc 123!?{}", "ｱｲｳｴｵｶﾞｷﾞﾊﾟﾋﾟﾝﾞ｢｣･"})
    EXPECT_EQ(narrowLetters(wideLetters(text)), text);
  EXPECT_EQ(toHiragana(toKatakana("ぁんゝ漢A")), "ぁんゝ漢A");
}

}  // namespace
}  // namespace quillmarden
