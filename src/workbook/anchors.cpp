#include "workbook/anchors.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "workbook/xml_fragment.h"

namespace quillmarden {

namespace {

/// A corner of a shape: its row, counted from 0, and how far below that row's top it lies.
struct AnchorRow {
  int row = 0;
  long offset = 0;

  bool operator==(const AnchorRow&) const = default;
};

AnchorRow moved(AnchorRow corner, const RowChange& change) {
  const int number = corner.row + 1;
  if (const auto row = shiftRow(number, change)) return {*row - 1, corner.offset};
  // On a row that went: at the top of what stands there now.
  return change.inserted ? AnchorRow{kMaxSheetRow - 1, corner.offset} : AnchorRow{change.first - 1, 0};
}

/// Where a shape's corners go that moves or is sized with the cells.
std::pair<AnchorRow, AnchorRow> moved(AnchorRow from, AnchorRow to, bool moves, bool sizes, const RowChange& change) {
  if (!moves) return {from, to};
  const AnchorRow top = moved(from, change);
  if (sizes) return {top, moved(to, change)};
  return {top, {to.row + top.row - from.row, to.offset}};
}

AnchorRow cornerOf(const pugi::xml_node& corner) {
  return {childNamed(corner, "row").text().as_int(), static_cast<long>(childNamed(corner, "rowOff").text().as_llong())};
}

void setCorner(const pugi::xml_node& corner, const AnchorRow& place) {
  childNamed(corner, "row").text().set(place.row);
  childNamed(corner, "rowOff").text().set(place.offset);
}

bool shiftAnchor(pugi::xml_node anchor, const RowChange& change) {
  const pugi::xml_node from = childNamed(anchor, "from");
  const pugi::xml_node to = childNamed(anchor, "to");
  if (!from) return false;
  // Objects of a sheet say it in two attributes, shapes of a drawing in one word.
  const bool ofSheet = localName(anchor) == "anchor";
  const std::string_view editAs = anchor.attribute("editAs").as_string(to ? "twoCell" : "oneCell");
  const bool sizes = ofSheet ? flag(anchor, "sizeWithCells") : editAs == "twoCell";
  const bool moves = ofSheet ? sizes || flag(anchor, "moveWithCells") : editAs != "absolute";
  const AnchorRow top = cornerOf(from);
  const AnchorRow bottom = to ? cornerOf(to) : top;
  const auto [newTop, newBottom] = moved(top, bottom, moves, sizes, change);
  if (newTop == top && newBottom == bottom) return false;
  setCorner(from, newTop);
  if (to) setCorner(to, newBottom);
  return true;
}

/// The text between the tags of the first such element at or behind `at`, as a place in the text.
struct Inner {
  std::size_t begin = std::string::npos;
  std::size_t end = std::string::npos;
};

Inner innerOf(const std::string& text, std::string_view element, std::size_t at, std::size_t limit) {
  const std::size_t open = text.find("<" + std::string(element) + ">", at);
  if (open == std::string::npos || open >= limit) return {};
  const std::size_t begin = open + element.size() + 2;
  const std::size_t end = text.find('<', begin);
  return end == std::string::npos ? Inner{} : Inner{begin, end};
}

/// The numbers of a comma separated list; empty when it is none.
std::vector<int> numbersOf(std::string_view list) {
  std::vector<int> numbers;
  while (!list.empty()) {
    const std::size_t digit = list.find_first_of("-0123456789");
    if (digit == std::string_view::npos) break;
    list.remove_prefix(digit);
    int number = 0;
    const auto [end, error] = std::from_chars(list.data(), list.data() + list.size(), number);
    if (error != std::errc()) return {};
    numbers.push_back(number);
    list.remove_prefix(static_cast<std::size_t>(end - list.data()));
  }
  return numbers;
}

/// Replaces a piece and moves the limit of the search along.
void replacePiece(std::string& text, const Inner& piece, const std::string& by, std::size_t& limit) {
  text.replace(piece.begin, piece.end - piece.begin, by);
  limit = limit + by.size() - (piece.end - piece.begin);
}

/// Takes away the shapes of notes whose rows went: without its note a shape is left over.
void dropNotes(std::string& vml, const RowChange& change) {
  if (change.inserted) return;
  std::size_t at = 0;
  while ((at = vml.find("<v:shape ", at)) != std::string::npos) {
    constexpr std::string_view kEnd = "</v:shape>";
    const std::size_t end = vml.find(kEnd, at);
    if (end == std::string::npos) return;
    const bool note = vml.find("\"Note\"", at) < end;
    const Inner row = innerOf(vml, "x:Row", at, end);
    const auto numbers = note && row.begin != std::string::npos
                             ? numbersOf(std::string_view(vml).substr(row.begin, row.end - row.begin))
                             : std::vector<int>();
    if (numbers.size() == 1 && !shiftRow(numbers[0] + 1, change)) {
      vml.erase(at, end + kEnd.size() - at);
    } else {
      at = end;
    }
  }
}

}  // namespace

bool shiftAnchors(pugi::xml_node root, const RowChange& change) {
  bool changed = false;
  forEachElement(root, [&](pugi::xml_node node) {
    const std::string_view name = localName(node);
    if (name == "twoCellAnchor" || name == "oneCellAnchor" || name == "anchor") changed |= shiftAnchor(node, change);
  });
  return changed;
}

std::string shiftLegacyAnchors(std::string vml, const RowChange& change) {
  dropNotes(vml, change);
  std::size_t at = 0;
  while ((at = vml.find("<x:ClientData", at)) != std::string::npos) {
    std::size_t end = std::min(vml.find("</x:ClientData>", at), vml.size());
    const std::string_view block = std::string_view(vml).substr(at, end - at);
    const bool note = block.find("\"Note\"") != std::string_view::npos;
    // An element that is there says that the shape does not.
    const bool moves = note || block.find("<x:MoveWithCells") == std::string_view::npos;
    const bool sizes = !note && block.find("<x:SizeWithCells") == std::string_view::npos;
    if (const Inner row = innerOf(vml, "x:Row", at, end); note && row.begin != std::string::npos) {
      const auto numbers = numbersOf(std::string_view(vml).substr(row.begin, row.end - row.begin));
      if (numbers.size() == 1) replacePiece(vml, row, std::to_string(moved({numbers[0], 0}, change).row), end);
    }
    if (const Inner anchor = innerOf(vml, "x:Anchor", at, end); anchor.begin != std::string::npos) {
      auto numbers = numbersOf(std::string_view(vml).substr(anchor.begin, anchor.end - anchor.begin));
      if (numbers.size() == 8) {
        const auto [top, bottom] = moved({numbers[2], numbers[3]}, {numbers[6], numbers[7]}, moves, sizes, change);
        numbers[2] = top.row;
        numbers[3] = static_cast<int>(top.offset);
        numbers[6] = bottom.row;
        numbers[7] = static_cast<int>(bottom.offset);
        std::string list;
        for (const int number : numbers) list += (list.empty() ? "" : ", ") + std::to_string(number);
        replacePiece(vml, anchor, list, end);
      }
    }
    at = end;
  }
  return vml;
}

}  // namespace quillmarden
