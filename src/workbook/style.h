#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quillmarden {

/// A cell format of one workbook: an index into its list of formats. 0 is the default format.
using StyleId = std::uint32_t;

struct CellColor {
  enum class Kind : std::uint8_t { None, Automatic, Rgb, Indexed, Theme };

  Kind kind = Kind::None;
  std::uint32_t value = 0;  ///< 0xAARRGGBB, the index of the file, or the theme's number
  double tint = 0;          ///< from -1 (black) to 1 (white)

  /// 0xRRGGBB.
  static CellColor rgb(std::uint32_t value) { return {Kind::Rgb, 0xFF000000U | (value & 0xFFFFFFU), 0}; }
  static CellColor automatic() { return {Kind::Automatic, 0, 0}; }
  /// A colour index of the classic palette, 1 to 56; anything else, as -4105, is automatic.
  static CellColor index(int colorIndex);

  bool operator==(const CellColor&) const = default;
};

/// 0xRRGGBB of the classic palette's colour index 1 to 56; black for another one.
std::uint32_t paletteRgb(int colorIndex);

struct CellFont {
  enum class Underline : std::uint8_t { None, Single, Double, SingleAccounting, DoubleAccounting };
  enum class Script : std::uint8_t { Baseline, Superscript, Subscript };

  std::string name;  ///< empty: the default format's font
  double size = 11;  ///< points
  bool bold = false;
  bool italic = false;
  bool strike = false;
  bool outline = false;
  bool shadow = false;
  bool condense = false;
  bool extend = false;
  Underline underline = Underline::None;
  Script script = Script::Baseline;
  CellColor color;
  int family = -1;   ///< -1: not given
  int charset = -1;  ///< -1: not given
  /// "major" or "minor" takes the theme's font in place of the name; cleared when the name is changed.
  std::string scheme;

  bool operator==(const CellFont&) const = default;
};

enum class FillPattern : std::uint8_t {
  None,
  Solid,
  Gray125,
  Gray0625,
  MediumGray,
  DarkGray,
  LightGray,
  DarkHorizontal,
  DarkVertical,
  DarkDown,
  DarkUp,
  DarkGrid,
  DarkTrellis,
  LightHorizontal,
  LightVertical,
  LightDown,
  LightUp,
  LightGrid,
  LightTrellis,
};

struct CellFill {
  FillPattern pattern = FillPattern::None;
  CellColor foreground;  ///< the colour of a solid fill
  CellColor background;
  std::string gradient;  ///< the XML of a gradient, kept as it came; empty for a pattern

  /// Interior.ColorIndex with Pattern 1.
  static CellFill solid(CellColor color) { return {FillPattern::Solid, color, {CellColor::Kind::Indexed, 64, 0}, {}}; }

  bool operator==(const CellFill&) const = default;
};

enum class LineKind : std::uint8_t {
  None,
  Thin,
  Medium,
  Thick,
  Hair,
  Dotted,
  Dashed,
  MediumDashed,
  DashDot,
  MediumDashDot,
  DashDotDot,
  MediumDashDotDot,
  SlantDashDot,
  Double,
};

struct BorderLine {
  LineKind kind = LineKind::None;
  CellColor color;

  /// From the constants that automation uses: LineStyle (1, -4115, -4118, -4119, 4, 5, 13, -4142), Weight (1 hairline,
  /// 2 thin, -4138 medium, 4 thick) and ColorIndex (1 to 56, or -4105 for automatic).
  static BorderLine of(int lineStyle, int weight = 2, int colorIndex = -4105);

  bool operator==(const BorderLine&) const = default;
};

struct CellBorder {
  BorderLine left;
  BorderLine right;
  BorderLine top;
  BorderLine bottom;
  BorderLine diagonal;
  bool diagonalUp = false;
  bool diagonalDown = false;

  bool operator==(const CellBorder&) const = default;
};

/// The numbers of the lines of a range's border, as automation counts them.
enum class BorderIndex : int {
  DiagonalDown = 5,
  DiagonalUp = 6,
  EdgeLeft = 7,
  EdgeTop = 8,
  EdgeBottom = 9,
  EdgeRight = 10,
  InsideVertical = 11,
  InsideHorizontal = 12,
};

enum class HorizontalAlign : std::uint8_t {
  General,
  Left,
  Center,
  Right,
  Fill,
  Justify,
  CenterContinuous,
  Distributed
};
enum class VerticalAlign : std::uint8_t { Bottom, Top, Center, Justify, Distributed };

struct CellAlignment {
  HorizontalAlign horizontal = HorizontalAlign::General;
  VerticalAlign vertical = VerticalAlign::Bottom;
  bool wrap = false;
  bool shrink = false;
  bool justifyLastLine = false;
  int rotation = 0;  ///< as in the file: 0 to 90 up, 91 to 180 is 1 to 90 down, 255 letters one above the other
  int indent = 0;
  int relativeIndent = 0;
  int readingOrder = 0;

  /// Orientation as automation counts it: -90 to 90 degrees, -4128 horizontal, -4166 vertical, -4171 up, -4170 down.
  void setOrientation(int orientation);

  bool operator==(const CellAlignment&) const = default;
};

/// All that a cell's format says. Compare and copy freely; Workbook::style turns it into a StyleId.
struct CellStyle {
  CellFont font;
  CellFill fill;
  CellBorder border;
  CellAlignment alignment;
  std::string numberFormat;  ///< a format code as "#,##0" or "yyyy/mm/dd"; empty is "General", "@" is text
  std::string named;         ///< the named style it is based on; empty is the normal one
  bool quotePrefix = false;  ///< the text was entered behind an apostrophe
  bool pivotButton = false;
  bool locked = true;
  bool hidden = false;

  bool operator==(const CellStyle&) const = default;
};

}  // namespace quillmarden
