#include "sqlgen/runnable/mysql_limits.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/utf8.h"

namespace quillmarden {

namespace {

/// Character sets that MySQL and MariaDB have in common.
constexpr std::array<std::pair<std::string_view, int>, 40> kCharsets = {{
    {"utf8mb4", 4},  {"utf8mb3", 3}, {"utf8", 3},    {"ascii", 1}, {"latin1", 1},   {"latin2", 1}, {"latin5", 1},
    {"latin7", 1},   {"cp932", 2},   {"sjis", 2},    {"ujis", 3},  {"eucjpms", 3},  {"ucs2", 2},   {"utf16", 4},
    {"utf16le", 4},  {"utf32", 4},   {"big5", 2},    {"gbk", 2},   {"gb2312", 2},   {"euckr", 2},  {"cp1250", 1},
    {"cp1251", 1},   {"cp1256", 1},  {"cp1257", 1},  {"cp850", 1}, {"cp852", 1},    {"cp866", 1},  {"greek", 1},
    {"hebrew", 1},   {"koi8r", 1},   {"koi8u", 1},   {"macce", 1}, {"macroman", 1}, {"swe7", 1},   {"tis620", 1},
    {"armscii8", 1}, {"dec8", 1},    {"geostd8", 1}, {"hp8", 1},   {"keybcs2", 1},
}};

/// Behind the name of the character set; those of Unicode have the second group too.
constexpr std::string_view kUnicodeCollations[] = {"_bin", "_general_ci", "_unicode_ci", "_unicode_520_ci"};
constexpr std::string_view kOtherCollations[] = {
    "ascii_bin",         "ascii_general_ci", "latin1_bin",        "latin1_general_ci",  "latin1_general_cs",
    "latin1_swedish_ci", "cp932_bin",        "cp932_japanese_ci", "sjis_bin",           "sjis_japanese_ci",
    "ujis_bin",          "ujis_japanese_ci", "eucjpms_bin",       "eucjpms_japanese_ci"};

constexpr long kLongestRow = 65535;
/// What a page keeps of a row, less what the server adds to it.
constexpr long kLongestInPage = 8126 - 32;
constexpr long kPointer = 20;         ///< to a value outside the page
constexpr long kLongestInline = 255;  ///< bytes of a value that never leaves the page

/// Bytes of a value without a length: whole numbers, dates, digits.
long fixedBytes(const ScriptType& type) {
  if (const int bytes = integerBytes(type)) return bytes;
  if (type.family == TypeFamily::Exact) return type.length / 2 + 2;
  if (type.family == TypeFamily::Uuid || type.family == TypeFamily::Address) return 16;
  return 8;
}

bool hasLength(const ScriptType& type) {
  return type.base == "char" || type.base == "varchar" || type.base == "binary" || type.base == "varbinary";
}

/// What the column takes of a row's length, and of a page.
long inRow(const ScriptType& type) {
  if (isLarge(type)) return 12;
  return (hasLength(type) ? mostBytes(type) + 2 : fixedBytes(type)) + 1;
}

long inPage(const ScriptType& type) {
  if (isLarge(type)) return kPointer + 2;
  if (!hasLength(type)) return fixedBytes(type) + 1;
  const long bytes = mostBytes(type);
  return bytes > kLongestInline ? kPointer + 3 : bytes + 2;
}

}  // namespace

int bytesOfCharacter(std::string_view charset) {
  const auto found =
      std::find_if(kCharsets.begin(), kCharsets.end(), [&](const auto& known) { return known.first == charset; });
  return found == kCharsets.end() ? 0 : found->second;
}

bool knownCollation(std::string_view collation) {
  for (const std::string_view charset : {"utf8mb4", "utf8mb3", "utf8"})
    for (const std::string_view tail : kUnicodeCollations)
      if (collation.starts_with(charset) && collation.substr(charset.size()) == tail) return true;
  return std::find(std::begin(kOtherCollations), std::end(kOtherCollations), collation) != std::end(kOtherCollations);
}

bool withinBasicPlane(std::string_view text) {
  return std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0xF0; });
}

long mostBytes(const ScriptType& type) {
  if (type.family == TypeFamily::Bytes) return type.length;
  // A collation alone names its character set.
  std::string_view charset = type.charset;
  if (charset.starts_with(' ')) charset = charset.substr(1, charset.find('_') - 1);
  charset = charset.substr(0, charset.find(' '));
  const int bytes = bytesOfCharacter(charset);
  return type.length * (bytes == 0 ? 4 : bytes);
}

long longestVarchar(const ScriptType& type) {
  ScriptType one = type;
  one.length = 1;
  return kLongestVarbinary / mostBytes(one);
}

bool isLarge(const ScriptType& type) {
  const bool text = type.family == TypeFamily::Text || type.family == TypeFamily::Bytes;
  return (text && !hasLength(type)) || type.family == TypeFamily::Json || type.base == "geometry";
}

std::vector<std::size_t> tooLargeForRow(const std::vector<RowColumn>& columns) {
  long row = 0, page = 0;
  std::vector<std::size_t> texts;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    row += inRow(*columns[i].type);
    page += inPage(*columns[i].type);
    if (hasLength(*columns[i].type)) texts.push_back(i);
  }
  std::vector<std::size_t> moved;
  // What gains most goes first, and no field of a key while there are others.
  const auto move = [&](long& size, long most, auto part, long remains) {
    std::stable_sort(texts.begin(), texts.end(), [&](std::size_t left, std::size_t right) {
      if (columns[left].key != columns[right].key) return columns[right].key;
      return part(*columns[left].type) > part(*columns[right].type);
    });
    for (auto text = texts.begin(); size > most && text != texts.end();) {
      const ScriptType& type = *columns[*text].type;
      const bool gains = part(type) > remains;
      if (gains) {
        row -= inRow(type) - 12;
        page -= inPage(type) - (kPointer + 2);
        moved.push_back(*text);
      }
      text = gains ? texts.erase(text) : std::next(text);
    }
  };
  move(row, kLongestRow, inRow, 12);
  move(page, kLongestInPage, inPage, kPointer + 2);
  return moved;
}

}  // namespace quillmarden
