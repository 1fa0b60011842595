#include "workbook/anchors.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

#include "workbook/legacy_drawing.h"
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

/// A piece of a text that is replaced.
struct TextChange {
  std::size_t begin;
  std::size_t end;
  std::string by;
};

std::string changed(std::string text, std::vector<TextChange> changes) {
  std::ranges::sort(changes, {}, &TextChange::begin);
  for (auto change = changes.rbegin(); change != changes.rend(); ++change)
    text.replace(change->begin, change->end - change->begin, change->by);
  return text;
}

/// Where the shape of a legacy drawing hangs on the sheet, as its client data says.
struct ClientData {
  std::size_t shape;
  bool note;
  bool moves = true;
  bool sizes = true;
  std::optional<LegacyElement> row;
  std::optional<LegacyElement> anchor;
};

std::vector<ClientData> clientData(const std::vector<LegacyElement>& elements) {
  std::vector<ClientData> all;
  std::size_t data = elements.size();
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const LegacyElement& element = elements[i];
    if (element.is(LegacySpace::Excel, "ClientData")) {
      data = i;
      const bool note = attributeOf(element, "ObjectType") == "Note";
      all.push_back({element.parent, note, true, !note, std::nullopt, std::nullopt});
    }
    if (element.parent != data || i == data) continue;
    ClientData& client = all.back();
    // An element that is there says that the shape does not; notes go with their cell all the same.
    if (element.is(LegacySpace::Excel, "MoveWithCells")) client.moves = client.note;
    if (element.is(LegacySpace::Excel, "SizeWithCells")) client.sizes = false;
    if (element.is(LegacySpace::Excel, "Row")) client.row = element;
    if (element.is(LegacySpace::Excel, "Anchor")) client.anchor = element;
  }
  return all;
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
  const std::vector<LegacyElement> elements = legacyElements(vml);
  const auto numbersIn = [&vml](const LegacyElement& element) {
    return numbersOf(std::string_view(vml).substr(element.innerBegin, element.innerEnd - element.innerBegin));
  };
  std::vector<TextChange> changes;
  for (const ClientData& client : clientData(elements)) {
    if (client.row && client.note) {
      const std::vector<int> row = numbersIn(*client.row);
      const LegacyElement& shape = elements[client.shape];
      if (row.size() == 1 && !change.inserted && !shiftRow(row[0] + 1, change) && shape.is(LegacySpace::Vml, "shape")) {
        // Without its note a shape would be left over.
        changes.push_back({shape.begin, shape.end, ""});
        continue;
      }
      if (row.size() == 1)
        changes.push_back(
            {client.row->innerBegin, client.row->innerEnd, std::to_string(moved({row[0], 0}, change).row)});
    }
    if (!client.anchor) continue;
    std::vector<int> numbers = numbersIn(*client.anchor);
    if (numbers.size() != 8) continue;
    const auto [top, bottom] =
        moved({numbers[2], numbers[3]}, {numbers[6], numbers[7]}, client.moves, client.sizes, change);
    numbers[2] = top.row;
    numbers[3] = static_cast<int>(top.offset);
    numbers[6] = bottom.row;
    numbers[7] = static_cast<int>(bottom.offset);
    std::string list;
    for (const int number : numbers) list += (list.empty() ? "" : ", ") + std::to_string(number);
    changes.push_back({client.anchor->innerBegin, client.anchor->innerEnd, std::move(list)});
  }
  return changed(std::move(vml), std::move(changes));
}

}  // namespace quillmarden
