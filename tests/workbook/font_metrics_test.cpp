#include "workbook/font_metrics.h"

#include <gtest/gtest.h>

namespace quillmarden {
namespace {

class FontMetricsTest : public testing::Test {
 protected:
  FontBook fonts;
  SizedFont font{"ＭＳ Ｐゴシック", 10, false};
  double em() { return textWidth(fonts, font, "漢"); }
};

TEST_F(FontMetricsTest, MeasuresTheLongestLine) {
  EXPECT_NEAR(em(), 10, 0.5);
  EXPECT_NEAR(textWidth(fonts, font, "漢字\n漢字漢字\n漢"), 4 * em(), 0.01);
  EXPECT_LT(textWidth(fonts, font, "il"), em());
  EXPECT_EQ(textWidth(fonts, font, ""), 0);
  EXPECT_GT(textWidth(fonts, font, "\xff\xfe"), 0);
}

TEST_F(FontMetricsTest, BreaksLinesWhereTextMayBreak) {
  const auto lines = [&](std::string_view text, double width) { return wrappedLines(fonts, font, text, width); };
  EXPECT_EQ(lines("", 50), 1);
  EXPECT_EQ(lines("漢字漢字", 4 * em()), 1);
  EXPECT_EQ(lines("漢字漢字漢", 4 * em()), 2);
  EXPECT_EQ(lines("漢\n字\n", 4 * em()), 3);
  // A full stop does not start a line: the character before it moves down with it, and no line is added.
  EXPECT_EQ(lines("漢字漢字。", 4 * em()), 2);
  const double word = textWidth(fonts, font, "wide");
  EXPECT_EQ(lines("wide wide wide", word * 1.5), 3);
  EXPECT_EQ(lines("widewidewide", word * 1.05), 3);
  // A column narrower than a character still ends.
  EXPECT_EQ(lines("漢字", 1), 2);
  EXPECT_EQ(lines("漢字", 0), 2);
}

TEST_F(FontMetricsTest, SpacesLinesWideEnoughForTheFont) {
  EXPECT_GE(linesHeight(fonts, font, 1), 12);
  EXPECT_DOUBLE_EQ(linesHeight(fonts, font, 3), 3 * linesHeight(fonts, font, 1));
  const SizedFont large{"ＭＳ Ｐゴシック", 20, false};
  EXPECT_GT(linesHeight(fonts, large, 1), 1.9 * linesHeight(fonts, font, 1));
  EXPECT_GE(maxDigitWidth(fonts, font), 5);
}

TEST_F(FontMetricsTest, AnUnknownFontHasASubstitute) {
  const SizedFont unknown{"No such font 漢字", 10, true};
  EXPECT_GT(textWidth(fonts, unknown, "漢字abc"), 20);
}

}  // namespace
}  // namespace quillmarden
