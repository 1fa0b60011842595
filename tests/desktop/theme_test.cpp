#include "desktop/theme.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QFontMetrics>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRawFont>
#include <cmath>

#include "desktop/icons.h"

namespace quillmarden {
namespace {

double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other) {
  const double a = luminance(one), b = luminance(other);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

/// The column of pixels in which a field's text begins.
int textStart(QWidget& field) {
  field.resize(120, 60);
  const QImage picture = field.grab().toImage();
  const QColor ground = picture.pixelColor(picture.width() / 2, picture.height() / 2);
  for (int x = 3; x < picture.width(); ++x)
    for (int y = 6; y < picture.height() - 6; ++y)
      if (contrast(picture.pixelColor(x, y), ground) > 3) return x;
  return -1;
}

class ThemeTest : public testing::TestWithParam<Look> {
 protected:
  void SetUp() override { applyTheme(*qApp, GetParam()); }
  void TearDown() override { applyTheme(*qApp, Look::Light); }
};

// 4.5 is what people with weak eyes need to read a text.
TEST_P(ThemeTest, TextsStandOutFromWhatIsBehindThem) {
  const Palette& c = palette();
  EXPECT_EQ(isDark(), GetParam() == Look::Dark);
  for (const QColor& ground : {c.window, c.surface, c.stripe, c.field, c.hover}) EXPECT_GE(contrast(c.text, ground), 7);
  for (const QColor& ground : {c.window, c.surface, c.field}) EXPECT_GE(contrast(c.faint, ground), 4.5);
  EXPECT_GE(contrast(c.accentText, c.accent), 4.5);
  EXPECT_GE(contrast(c.fault, c.surface), 4.5);
}

TEST_P(ThemeTest, ColoursOfTheSettingsStayReadable) {
  // Keys, added fields, table names, white and the red of a fault, as the settings and records hold them.
  for (const Colour colour : {12632319U, 16761087U, 65535U, 0xffffffU, 0x8080ffU, 0xc0c0c0U})
    EXPECT_GE(contrast(palette().text, toBackground(colour)), 4.5) << std::hex << colour;
  for (const Colour colour : {0x000000U, 0x0000c0U, 0x800000U})
    EXPECT_GE(contrast(toText(colour), palette().surface), 4.5) << std::hex << colour;
}

TEST_P(ThemeTest, TheFontHasTheLettersOfTheCaptions) {
  const QRawFont font = QRawFont::fromFont(QApplication::font());
  for (const char32_t letter : U"漢字カナｶﾅ⇒■①") {
    if (letter == 0) continue;
    EXPECT_TRUE(font.supportsCharacter(letter)) << static_cast<std::uint32_t>(letter);
  }
}

TEST_P(ThemeTest, FieldsBelowEachOtherBeginTheirTextsInOneLine) {
  const QString text = QStringLiteral("■");
  QLineEdit line(text);
  QPlainTextEdit lines(text);
  QComboBox choice, typed;
  choice.addItem(text);
  typed.setEditable(true);
  typed.addItem(text);
  const int start = textStart(line);
  EXPECT_GT(start, 5);
  for (QWidget* field : std::initializer_list<QWidget*>{&lines, &choice, &typed})
    EXPECT_NEAR(textStart(*field), start, 1) << field->metaObject()->className();
}

INSTANTIATE_TEST_SUITE_P(Looks, ThemeTest, testing::Values(Look::Light, Look::Dark));

TEST(LookTest, TheSettingsKeepTheChoice) {
  for (const Look look : {Look::Follow, Look::Light, Look::Dark}) EXPECT_EQ(lookOf(lookText(look)), look);
  EXPECT_EQ(lookOf("blue"), Look::Follow);
}

TEST(IconTest, IsDrawnAnewForEachScale) {
  const QPixmap single = icon(Glyph::Gear).pixmap(QSize(18, 18), 1);
  const QPixmap twice = icon(Glyph::Gear).pixmap(QSize(18, 18), 2);
  EXPECT_EQ(single.size(), QSize(18, 18));
  EXPECT_EQ(twice.size(), QSize(36, 36));
  // Were it the small picture scaled up, every 2 x 2 square would be of one colour.
  const QImage picture = twice.toImage();
  int edges = 0;
  for (int y = 0; y < 36; y += 2)
    for (int x = 0; x < 36; x += 2) edges += picture.pixel(x, y) != picture.pixel(x + 1, y + 1);
  EXPECT_GT(edges, 20);
}

}  // namespace
}  // namespace quillmarden
