#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace quillmarden {

/// The measures of one installed font, in fractions of the em square.
class FontFace {
 public:
  virtual ~FontFace() = default;
  /// The distance from one line to the next.
  virtual double lineHeight() const = 0;
  /// The part of a line above the base line.
  virtual double ascent() const = 0;
  /// How far the pen moves for one character; a character that the font lacks counts as a full em.
  virtual double advance(char32_t character) const = 0;
};

/// The installed fonts, found by the names that workbooks use. A name that is not installed gives its usual
/// substitute; where no font is installed at all, Japanese characters count as one em and others as half of one.
/// Faces are opened once and kept, so one book of fonts serves a whole run. Not for use by two threads at once.
class FontBook {
 public:
  FontBook();
  ~FontBook();
  FontBook(const FontBook&) = delete;
  FontBook& operator=(const FontBook&) = delete;

  const FontFace& face(std::string_view family, bool bold = false);

 private:
  struct Library;
  std::unique_ptr<Library> library_;
  std::map<std::string, std::unique_ptr<FontFace>, std::less<>> faces_;
};

/// A font at a size in points.
struct SizedFont {
  std::string family;
  double size = 11;
  bool bold = false;
};

/// The width of the text's longest line in points. Bytes that are no UTF-8 count as one full character each.
double textWidth(FontBook& fonts, const SizedFont& font, std::string_view text);

/// How many lines the text takes in a column of this many points: Japanese text breaks behind any character, other
/// text at blanks, and a word that is wider than the column where it must. At least 1.
int wrappedLines(FontBook& fonts, const SizedFont& font, std::string_view text, double width);

/// The height in points of that many lines, as spreadsheet programs space them.
double linesHeight(FontBook& fonts, const SizedFont& font, int lines);

/// The pixels (96 an inch) of the widest digit: the unit in which column widths are stored.
int maxDigitWidth(FontBook& fonts, const SizedFont& font);

/// The same in points.
double digitWidth(FontBook& fonts, const SizedFont& font);

}  // namespace quillmarden
