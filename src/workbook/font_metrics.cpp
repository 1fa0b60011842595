#include "workbook/font_metrics.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>

#include "common/utf8.h"
#include "workbook/units.h"
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H

namespace quillmarden {
namespace {

// Spreadsheet programs leave this much between lines even where the font asks for less.
constexpr double kLeastLineHeight = 1.2273;
// Where the font is not installed, other programs may choose another substitute than we do. The tallest of the common
// Japanese ones asks for this much, and has no kana narrower than an em.
constexpr double kSubstituteLineHeight = 1.45;
constexpr double kPixelTolerance = 0.05;

struct Substitute {
  std::string_view family;
  std::string_view installed;
};

// Fonts of office programs and the free ones of the same or nearly the same widths.
constexpr std::array kSubstitutes = {
    Substitute{"ＭＳ Ｐゴシック", "IPAPGothic"},
    Substitute{"MS PGothic", "IPAPGothic"},
    Substitute{"ＭＳ ゴシック", "IPAGothic"},
    Substitute{"MS Gothic", "IPAGothic"},
    Substitute{"ＭＳ Ｐ明朝", "IPAPMincho"},
    Substitute{"MS PMincho", "IPAPMincho"},
    Substitute{"ＭＳ 明朝", "IPAMincho"},
    Substitute{"MS Mincho", "IPAMincho"},
    Substitute{"メイリオ", "Noto Sans CJK JP"},
    Substitute{"Meiryo", "Noto Sans CJK JP"},
    Substitute{"Meiryo UI", "Noto Sans CJK JP"},
    Substitute{"游ゴシック", "Noto Sans CJK JP"},
    Substitute{"Yu Gothic", "Noto Sans CJK JP"},
    Substitute{"游明朝", "Noto Serif CJK JP"},
    Substitute{"Calibri", "Carlito"},
    Substitute{"Cambria", "Caladea"},
    Substitute{"Arial", "Liberation Sans"},
    Substitute{"Times New Roman", "Liberation Serif"},
};

bool isWide(char32_t character) { return character >= 0x1100 && !(character >= 0xFF61 && character <= 0xFF9F); }

// Where no font is installed: the widths of a typewriter.
class TypewriterFace : public FontFace {
 public:
  double lineHeight() const override { return kLeastLineHeight; }
  double ascent() const override { return 0.88; }
  double advance(char32_t character) const override { return isWide(character) ? 1.0 : 0.55; }
};

class FreeTypeFace : public FontFace {
 public:
  FreeTypeFace(FT_Face face, bool substitutes) : face_(face), substitutes_(substitutes) {
    const double em = std::max<double>(face->units_per_EM, 1);
    ascent_ = face->ascender / em;
    lineHeight_ = std::max(face->height, static_cast<FT_Short>(face->ascender - face->descender)) / em;
    if (const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2)); os2 != nullptr) {
      lineHeight_ = std::max(lineHeight_, (os2->usWinAscent + os2->usWinDescent) / em);
      ascent_ = std::max(ascent_, os2->usWinAscent / em);
    }
    if (substitutes && lineHeight_ < kSubstituteLineHeight) {
      ascent_ += (kSubstituteLineHeight - lineHeight_) / 2;
      lineHeight_ = kSubstituteLineHeight;
    }
  }
  ~FreeTypeFace() override { FT_Done_Face(face_); }
  FreeTypeFace(const FreeTypeFace&) = delete;
  FreeTypeFace& operator=(const FreeTypeFace&) = delete;

  double lineHeight() const override { return lineHeight_; }
  double ascent() const override { return ascent_; }
  double advance(char32_t character) const override {
    const auto known = advances_.find(character);
    if (known != advances_.end()) {
      return known->second;
    }
    const double width = measure(character);
    advances_.emplace(character, width);
    return width;
  }

 private:
  double measure(char32_t character) const {
    const FT_UInt glyph = FT_Get_Char_Index(face_, character);
    if (glyph == 0 || FT_Load_Glyph(face_, glyph, FT_LOAD_NO_SCALE) != 0) {
      return isWide(character) ? 1.0 : 0.6;  // another font will lend the glyph
    }
    const double width = static_cast<double>(face_->glyph->metrics.horiAdvance) / face_->units_per_EM;
    return substitutes_ && isWide(character) ? std::max(width, 1.0) : width;
  }

  FT_Face face_;
  bool substitutes_;
  double ascent_ = 0.88;
  double lineHeight_ = 1;
  mutable std::unordered_map<char32_t, double> advances_;
};

struct FontFile {
  std::string path;
  int index = 0;
  bool substitutes = true;  ///< it is not the font of that name
};

bool isOfFamily(FcPattern* font, const std::string& family) {
  FcChar8* name = nullptr;
  for (int i = 0; FcPatternGetString(font, FC_FAMILY, i, &name) == FcResultMatch; ++i) {
    if (FcStrCmpIgnoreCase(name, reinterpret_cast<const FcChar8*>(family.c_str())) == 0) return true;
  }
  return false;
}

std::string_view installedName(std::string_view family) {
  const auto found = std::ranges::find(kSubstitutes, family, &Substitute::family);
  return found == kSubstitutes.end() ? family : found->installed;
}

// The file that shows this family here. Fontconfig always answers with something when any font is installed.
FontFile findFont(FcConfig* config, std::string_view family, bool bold) {
  FcPattern* pattern = FcPatternCreate();
  for (const std::string& name : {std::string(family), std::string(installedName(family))}) {
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(name.c_str()));
  }
  FcPatternAddString(pattern, FC_LANG, reinterpret_cast<const FcChar8*>("ja"));
  FcPatternAddInteger(pattern, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcConfigSubstitute(config, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcResult result = FcResultNoMatch;
  FcPattern* match = FcFontMatch(config, pattern, &result);
  FcPatternDestroy(pattern);
  FontFile file;
  if (match == nullptr) {
    return file;
  }
  FcChar8* path = nullptr;
  if (FcPatternGetString(match, FC_FILE, 0, &path) == FcResultMatch) {
    file.path = reinterpret_cast<const char*>(path);
  }
  FcPatternGetInteger(match, FC_INDEX, 0, &file.index);
  file.substitutes = !isOfFamily(match, std::string(family));
  FcPatternDestroy(match);
  return file;
}

std::u32string toUtf32(std::string_view text) {
  std::u32string characters;
  characters.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Step step = utf8At(text, at);
    characters += step.character;
    at += step.size;
  }
  return characters;
}

/// Whether a line may break between the two characters, apart from blanks.
bool breaksBetween(char32_t before, char32_t after) {
  constexpr std::u32string_view neverFirst = U"、。，．・：；？！ー々）］｝〕〉》」』】,.!?:;)]}";
  constexpr std::u32string_view neverLast = U"（［｛〔〈《「『【([{";
  if (neverFirst.find(after) != std::u32string_view::npos || neverLast.find(before) != std::u32string_view::npos) {
    return false;
  }
  return isWide(before) || isWide(after);
}

// The lines of one paragraph: characters are taken until the width is used up, then the line ends at the last place
// where it may.
int paragraphLines(const FontFace& face, double size, std::u32string_view text, double width) {
  int lines = 1;
  double used = 0;
  double sinceBreak = 0;  // the width behind the last place where the line may end
  char32_t before = 0;
  for (const char32_t character : text) {
    if (before != 0 && (before == U' ' || breaksBetween(before, character))) {
      sinceBreak = 0;
    }
    const double advance = face.advance(character) * size;
    if (used + advance > width && used > 0 && character != U' ') {
      ++lines;
      // A word that fills the line from its start is cut here; any other moves down whole.
      used = sinceBreak < used ? sinceBreak : 0;
    }
    used += advance;
    sinceBreak += advance;
    before = character;
  }
  return lines;
}

}  // namespace

struct FontBook::Library {
  FT_Library freeType = nullptr;
  FcConfig* config = nullptr;

  ~Library() {
    if (config != nullptr) {
      FcConfigDestroy(config);
    }
    if (freeType != nullptr) {
      FT_Done_FreeType(freeType);
    }
  }
};

FontBook::FontBook() : library_(std::make_unique<Library>()) {}

FontBook::~FontBook() { faces_.clear(); }

const FontFace& FontBook::face(std::string_view family, bool bold) {
  std::string key(family);
  key += bold ? "\1b" : "";
  const auto known = faces_.find(key);
  if (known != faces_.end()) {
    return *known->second;
  }
  if (library_->freeType == nullptr && FT_Init_FreeType(&library_->freeType) == 0) {
    library_->config = FcInitLoadConfigAndFonts();
  }
  std::unique_ptr<FontFace> made;
  if (library_->config != nullptr) {
    const FontFile file = findFont(library_->config, family, bold);
    FT_Face face = nullptr;
    if (!file.path.empty() && FT_New_Face(library_->freeType, file.path.c_str(), file.index & 0xFFFF, &face) == 0) {
      made = std::make_unique<FreeTypeFace>(face, file.substitutes);
    }
  }
  if (!made) {
    made = std::make_unique<TypewriterFace>();
  }
  return *faces_.emplace(std::move(key), std::move(made)).first->second;
}

double textWidth(FontBook& fonts, const SizedFont& font, std::string_view text) {
  const FontFace& face = fonts.face(font.family, font.bold);
  double widest = 0;
  double width = 0;
  for (const char32_t character : toUtf32(text)) {
    if (character == U'\n') {
      width = 0;
      continue;
    }
    width += face.advance(character) * font.size;
    widest = std::max(widest, width);
  }
  return widest;
}

int wrappedLines(FontBook& fonts, const SizedFont& font, std::string_view text, double width) {
  const FontFace& face = fonts.face(font.family, font.bold);
  const std::u32string characters = toUtf32(text);
  std::u32string_view rest = characters;
  int lines = 0;
  while (true) {
    const std::size_t end = rest.find(U'\n');
    lines += paragraphLines(face, font.size, rest.substr(0, end), width);
    if (end == std::u32string_view::npos) {
      return lines;
    }
    rest.remove_prefix(end + 1);
  }
}

double linesHeight(FontBook& fonts, const SizedFont& font, int lines) {
  const double line = std::max(fonts.face(font.family, font.bold).lineHeight(), kLeastLineHeight) * font.size;
  return lines * std::ceil(line * kPixelsPerPoint - kPixelTolerance) / kPixelsPerPoint;
}

int maxDigitWidth(FontBook& fonts, const SizedFont& font) {
  const FontFace& face = fonts.face(font.family, font.bold);
  double widest = 0;
  for (char32_t digit = U'0'; digit <= U'9'; ++digit) {
    widest = std::max(widest, face.advance(digit));
  }
  return std::max(1, static_cast<int>(widest * font.size * kPixelsPerPoint));
}

double digitWidth(FontBook& fonts, const SizedFont& font) { return maxDigitWidth(fonts, font) / kPixelsPerPoint; }

}  // namespace quillmarden
