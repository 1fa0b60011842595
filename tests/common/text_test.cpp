#include "common/text.h"

#include <gtest/gtest.h>

#include "common/names.h"

namespace quillmarden {
namespace {

using namespace std::string_literals;

TEST(Text, WidthIsThatOfTheCodePage) {
  EXPECT_EQ(gLenB(""), 0U);
  EXPECT_EQ(gLenB("かA"), 3U);
  EXPECT_EQ(gLenB("ｶﾞ"), 2U);
  EXPECT_EQ(gLenB("①㈱髙﨑～∥－"), 14U);
  EXPECT_EQ(gLenB("é한"), 2U) << "not in CP932";
  EXPECT_EQ(gLenB("😀"), 2U) << "beyond the basic plane";
  EXPECT_EQ(gLenB("\xE3\x81"s), 2U) << "a cut character: its bytes";
  EXPECT_EQ(gLenB("a\0あ"s), 4U);
}

TEST(Text, CutThroughADoubleByteDropsIt) {
  EXPECT_EQ(gMidB("aあb", 1, 2), "a");
  EXPECT_EQ(gMidB("aあb", 2, 2), "あ");
  EXPECT_EQ(gMidB("aあb", 3, 2), "b") << "the front half is cut off";
  EXPECT_EQ(gMidB("abcdefghijあ", 3, 4), "cdef");
  EXPECT_EQ(gMidB("あいう", 3, std::string::npos), "いう");
  EXPECT_EQ(gMidB("あ", 9, 1), "");
  EXPECT_EQ(gMidB("あ", 0, 5), "");
}

TEST(Text, Padding) {
  EXPECT_EQ(gPadText("あ", 4), "あ  ");
  EXPECT_EQ(gPadText("あ", 4, 1), "  あ");
  EXPECT_EQ(gPadText("aｶﾞ", 6, 3), "  ａガ");
  EXPECT_EQ(gPadText("ab", 4, 2), "ａｂ");
  EXPECT_EQ(gPadText("aあ", 2), "a") << "one byte short, as the cut leaves it";
  EXPECT_EQ(gPadText("あい", 3, 0, true), "あい");
}

TEST(Text, FullToHalfAndBack) {
  EXPECT_EQ(toNarrow("ＡＢｃ１２＿＃　ガパヴッー。・"), "ABc12_# ｶﾞﾊﾟｳﾞｯｰ｡･");
  EXPECT_EQ(toNarrow("ひらがな漢字ヰヶ"), "ひらがな漢字ヰヶ");
  EXPECT_EQ(toNarrow("￥～−"), "\\~-");
  EXPECT_EQ(toWide("ｶﾞｷﾞﾊﾟﾊﾞｳﾞ"), "ガギパバヴ");
  EXPECT_EQ(toWide("ｯﾞｱﾟﾞ"), "ッ゛ア゜゛") << "marks that their kana does not take";
  EXPECT_EQ(toWide("a 1漢ﾂ"), "ａ　１漢ツ");
  EXPECT_EQ(toWide("\xFF"s), "\xFF"s);
  EXPECT_EQ(gZenkaku2Hankaku("（１２）［Ａ］＞＜", false, false), "(１２)[Ａ]><");
  EXPECT_EQ(gZenkaku2Hankaku("０９　a b", true, true), "09ab");
}

TEST(Text, Case) {
  EXPECT_EQ(toUpper("abｃé"), "ABＣÉ");
  EXPECT_EQ(toLower("ABＣ漢\xFF"s), "abｃ漢\xFF"s);
  EXPECT_TRUE(equalsNoCase("Tableinf.INI", "tableINF.ini"));
  EXPECT_TRUE(equalsNoCase("ＥＲ図", "ｅｒ図"));
  EXPECT_FALSE(equalsNoCase("a", "ab"));
}

TEST(Text, TrimTakesOnlyBlanks) {
  EXPECT_EQ(trim("  \ta　 "), "\ta　");
  EXPECT_EQ(trim("   "), "");
  EXPECT_EQ(gExcelSafeText(" -1 "), "'-1");
  EXPECT_EQ(gExcelSafeText(" a-1"), "a-1");
  EXPECT_EQ(gReplaceAll("aaa", "a", "aa"), "aaaaaa");
  EXPECT_EQ(gReplaceAll("abc", "", "x"), "abc");
}

TEST(Text, CodePageCellsAreThoseOfWindows) {
  EXPECT_EQ(toCp932("～∥－￢"), "\x81\x60\x81\x61\x81\x7C\x81\xCA");
  EXPECT_EQ(toCp932("①㈱髙﨑"), "\x87\x40\x87\x8A\xFB\xFC\xFA\xB1");
  EXPECT_EQ(toCp932("∪纊"), "\x81\xBE\xFA\x5C") << "characters with several cells";
  EXPECT_EQ(toCp932("ｱ表\\"), "\xB1\x95\x5C\x5C");
  // Signs that other systems write for the same cell.
  EXPECT_EQ(toCp932("〜‖−¢£¬"), "\x81\x60\x81\x61\x81\x7C\x81\x91\x81\x92\x81\xCA");
  EXPECT_EQ(fromCp932("\x81\x60\xED\x40\x87\x9C"), "～纊∪");
}

TEST(Text, WhatTheCodePageCannotHoldIsTold) {
  std::u32string lost;
  EXPECT_EQ(toCp932("é한é😀あ¥\xFF"s, &lost), "????\x82\xA0??");
  EXPECT_EQ(lost, U"é한😀¥\uFFFD");
  EXPECT_EQ(toCp932("é", &lost), "?");
  EXPECT_EQ(lost.size(), 5U) << "each once, over several calls";
  EXPECT_EQ(fromCp932("a\x82"), "a\uFFFD");
  EXPECT_EQ(fromCp932("\x82\x20\x80\xFFz"), "\uFFFD \uFFFD\uFFFDz");
}

TEST(Text, EveryCellComesBack) {
  int cells = 0;
  for (int lead = 0x81; lead <= 0xFC; ++lead)
    for (int trail = 0x40; trail <= 0xFC; ++trail) {
      const std::string bytes{static_cast<char>(lead), static_cast<char>(trail)};
      const std::string text = fromCp932(bytes);
      if (lead >= 0xA0 && lead <= 0xDF) continue;
      if (text.find("\uFFFD") != std::string::npos) continue;
      ++cells;
      std::u32string lost;
      EXPECT_EQ(fromCp932(toCp932(text, &lost)), text);
      EXPECT_TRUE(lost.empty());
    }
  EXPECT_EQ(cells, 9604);
}

TEST(Names, FilesAndRows) {
  EXPECT_EQ(gSafeFileName("a[b]@\\/:*?<>|\"\n\x7F表"), "a_b" + std::string(13, '_') + "表");
  EXPECT_EQ(gSplitTableName("販売@[受注]  \t注文\t12"), "[受注]");
  EXPECT_EQ(gSplitTableName("[販売@受注]   \tORDERS\t12"), "受注");
  EXPECT_EQ(gSplitTableName("<受注\t\t3"), "受注");
  EXPECT_EQ(gSplitTableName("ORDERS@"), "ORDERS@") << "a table read from a live database";
  EXPECT_TRUE(gChkMark("a>b"));
  EXPECT_FALSE(gChkMark("＞［"));
  EXPECT_EQ(gEncodeName("A_あ😀"), "{65_33440u1f600}");
}

}  // namespace
}  // namespace quillmarden
