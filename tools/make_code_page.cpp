// Writes the table of CP932 as initialisers, so that a command does not build it at each start.
//   make_code_page OUTPUT

#include "common/code_page.h"

#include <unicode/ucnv.h>

#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace quillmarden {

namespace {

constexpr char16_t kUnmapped = 0xFFFD;

// Some characters have several cells. Windows takes the one of JIS X 0208, then row 13, then the IBM extension at
// FA to FC, and the same characters at ED and EE last: the order in which leads are asked here.
constexpr std::pair<int, int> kLeads[] = {{0x81, 0x9F}, {0xE0, 0xEC}, {0xEF, 0xFC}, {0xED, 0xEE}};

// The same signs as other systems write them. They share the meaning with the cell's own character.
constexpr std::pair<char16_t, std::uint16_t> kTwins[] = {
    {u'\u301C', 0x8160}, {u'\u2016', 0x8161}, {u'\u2212', 0x817C}, {u'\u00A2', 0x8191},
    {u'\u00A3', 0x8192}, {u'\u00AC', 0x81CA}, {u'\u2014', 0x815C},
};

/// All double-byte cells in the order of kLeads.
std::vector<std::uint16_t> allCells() {
  std::vector<std::uint16_t> cells;
  cells.reserve(60 * 188);
  for (const auto& [first, last] : kLeads)
    for (int lead = first; lead <= last; ++lead)
      for (int trail = 0x40; trail <= 0xFC; ++trail)
        if (trail != 0x7F) cells.push_back(static_cast<std::uint16_t>(lead << 8 | trail));
  return cells;
}

/// The text of all cells, each closed by a line feed, so that one call decodes them and none shifts the others.
std::vector<char16_t> decodeLines(const std::vector<std::uint16_t>& cells) {
  std::string bytes;
  bytes.reserve(cells.size() * 3);
  for (const std::uint16_t cell : cells) {
    bytes += static_cast<char>(cell >> 8);
    bytes += static_cast<char>(cell & 0xFF);
    bytes += '\n';
  }
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open("ibm-943_P15A-2003", &status),
                                                                     ucnv_close);
  std::vector<char16_t> text(bytes.size() * 2);
  const int length = ucnv_toUChars(converter.get(), text.data(), static_cast<int>(text.size()), bytes.data(),
                                   static_cast<int>(bytes.size()), &status);
  if (U_FAILURE(status)) throw std::runtime_error(std::string("no table of CP932: ") + u_errorName(status));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

std::unique_ptr<CodePage> build() {
  auto page = std::make_unique<CodePage>();
  const std::vector<std::uint16_t> cells = allCells();
  const std::vector<char16_t> text = decodeLines(cells);
  auto cell = cells.begin();
  for (std::size_t at = 0; at < text.size() && cell != cells.end(); ++cell) {
    const std::size_t start = at;
    while (at < text.size() && text[at] != u'\n') ++at;
    const char16_t character = text[start];
    if (at - start == 1 && character != kUnmapped) {
      page->toCharacter[*cell] = character;
      if (page->toCell[character] == 0) page->toCell[character] = *cell;
    }
    ++at;
  }
  for (const auto& [twin, shared] : kTwins)
    if (page->toCell[twin] == 0) page->toCell[twin] = shared;
  // Half-width katakana are single bytes.
  for (int byte = 0xA1; byte <= 0xDF; ++byte)
    page->toCell[static_cast<std::size_t>(byte - 0xA1 + 0xFF61)] = static_cast<std::uint16_t>(byte);
  return page;
}

template <typename Table>
void put(std::ostream& out, const Table& table) {
  out << "{{";
  for (std::size_t i = 0; i < table.size(); ++i)
    out << (i % 16 == 0 ? "\n" : " ") << static_cast<unsigned>(table[i]) << ',';
  out << "}},\n";
}

}  // namespace

}  // namespace quillmarden

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::unique_ptr<quillmarden::CodePage> page = quillmarden::build();
  std::ofstream out(argv[1]);
  quillmarden::put(out, page->toCell);
  quillmarden::put(out, page->toCharacter);
  out.close();
  if (!out) std::cerr << argv[1] << ": not written\n";
  return out ? 0 : 1;
}
