#include "workbook/worksheet.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "workbook/book_state.h"
#include "workbook/formula_shift.h"
#include "workbook/number_format.h"
#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

constexpr std::size_t kMaxText = 32767;
constexpr std::string_view kCutMark = "…(以下省略)";
constexpr double kDaysTo1904 = 1462;
// Longer numbers are shown rounded or with an exponent.
constexpr std::size_t kGeneralWidth = 11;

/// A number as the format "General" shows it in a wide cell.
std::string generalText(double number) {
  std::array<char, 40> digits;
  const auto text = [&](std::to_chars_result result) { return std::string(digits.data(), result.ptr); };
  char* const begin = digits.data();
  char* const end = begin + digits.size();
  const double size = std::abs(number);
  if (number == std::floor(number) && size < 1e11)
    return text(std::to_chars(begin, end, static_cast<std::int64_t>(number)));
  if (size >= 1e-4 && size < 1e11) {
    std::string shortest = text(std::to_chars(begin, end, number, std::chars_format::fixed));
    if (shortest.size() <= kGeneralWidth) return shortest;
    return text(std::to_chars(begin, end, number, std::chars_format::general, 9));
  }
  std::string exponential = text(std::to_chars(begin, end, number, std::chars_format::general, 6));
  std::transform(exponential.begin(), exponential.end(), exponential.begin(),
                 [](char c) { return c == 'e' ? 'E' : c; });
  return exponential;
}

/// The number that the text is, when it would be shown exactly so.
std::optional<double> plainNumberOf(std::string_view text) {
  if (text.empty() || text.size() > kGeneralWidth) return std::nullopt;
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) return std::nullopt;
  if (number == 0 && text != "0") return std::nullopt;
  return generalText(number) == text ? std::optional(number) : std::nullopt;
}

/// The value of a cell that is kept as XML.
CellValue rawValue(const SpecialCell& special, const StringPool& strings) {
  if (special.form != SpecialCell::Form::Raw) return {};
  const std::string xml = "<c>" + special.inner + "</c>";
  XmlScanner scanner(xml, "");
  std::optional<std::string> text;
  for (auto token = scanner.next(); token != XmlScanner::Token::Finish; token = scanner.next()) {
    if (token != XmlScanner::Token::Start) continue;
    if (scanner.local() == "v") text = scanner.content();
    if (scanner.local() == "is") return richText(special.inner);
  }
  if (!text) return {};
  if (special.type == "e") return CellError{*text};
  if (special.type == "b") return *text == "1";
  if (special.type != "n" && special.type != "s") return cellTextDecode(*text);
  double number = 0;
  std::from_chars(text->data(), text->data() + text->size(), number);
  if (special.type == "n") return number;
  const bool known = number >= 0 && number < static_cast<double>(strings.size());
  return known ? strings.text(static_cast<std::uint32_t>(number)) : "";
}

void setNumberOf(StoredCell& cell, double value) { cell.set(StoredKind::Number, std::bit_cast<std::uint64_t>(value)); }

}  // namespace

Worksheet::Worksheet(BookState& book, std::size_t index) : book_(book), index_(index) {}

const std::string& Worksheet::name() const { return book_.slots[index_].name; }

const SheetModel& Worksheet::model() const { return book_.model(index_); }

SheetModel& Worksheet::edit() { return book_.editModel(index_); }

void Worksheet::check(const CellRange& range) const {
  const bool inside = range.first.row >= 1 && range.first.column >= 1 && range.last.row <= kMaxSheetRow &&
                      range.last.column <= kMaxSheetColumn && range.first.row <= range.last.row &&
                      range.first.column <= range.last.column;
  if (!inside) throw WorkbookError(WorkbookFault::BadAddress, "", "シート「" + name() + "」の外の番地です.");
}

// Lines in a cell are parted by LF alone; a CR would show as a sign of its own.
static std::string withLineFeeds(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '\r') {
      out += text[at];
    } else if (at + 1 == text.size() || text[at + 1] != '\n') {
      out += '\n';
    }
  }
  return out;
}

void Worksheet::setText(CellRef cell, std::string_view text) {
  check(cell);
  if (text.size() > kMaxText && utf16Length(text) > kMaxText) {
    book_.slots[index_].cutTexts.push_back(cell);
    const std::string_view beginning = utf16Prefix(text, kMaxText - utf16Length(kCutMark));
    return setText(cell, std::string(beginning).append(kCutMark));
  }
  StoredCell& stored = edit().makeCell(cell);
  if (text.empty()) {
    stored.set(StoredKind::Empty, 0);
  } else if (text.find('\r') == std::string_view::npos) {
    stored.set(StoredKind::Text, book_.editStrings().intern(text));
  } else {
    stored.set(StoredKind::Text, book_.editStrings().intern(withLineFeeds(text)));
  }
}

const std::vector<CellRef>& Worksheet::cutTexts() const { return book_.slots[index_].cutTexts; }

void Worksheet::setEntered(CellRef cell, std::string_view text) {
  check(cell);
  const StyleId style = styleId(cell);
  const bool quoted = text.starts_with('\'');
  if (quoted != book_.styles().hasQuotePrefix(style))
    changeStyle(cell, [&](CellStyle& changed) { changed.quotePrefix = quoted; });
  if (quoted) return setText(cell, text.substr(1));
  if (book_.styles().isText(style)) return setText(cell, text);
  if (text.starts_with('=') && isFormula(text.substr(1))) return setFormula(cell, text.substr(1));
  if (const auto number = plainNumberOf(text)) return setNumber(cell, *number);
  if (const auto serial = dateSerial(text); serial && book_.styles().isDate(style)) {
    const double shift = book_.countsFrom1904() ? kDaysTo1904 : 0;
    if (*serial >= shift) return setNumber(cell, *serial - shift);
  }
  setText(cell, text);
}

void Worksheet::setNumber(CellRef cell, double value) {
  check(cell);
  if (!std::isfinite(value))
    throw WorkbookError(WorkbookFault::BadValue, "", "セル " + cellName(cell) + " に入らない数です.");
  setNumberOf(edit().makeCell(cell), value);
}

void Worksheet::setBoolean(CellRef cell, bool value) {
  check(cell);
  edit().makeCell(cell).set(StoredKind::Boolean, value ? 1 : 0);
}

void Worksheet::setDate(CellRef cell, double serial, std::string_view format) {
  setNumber(cell, book_.countsFrom1904() ? serial - kDaysTo1904 : serial);
  changeStyle(cell, [&](CellStyle& style) { style.numberFormat = format; });
}

void Worksheet::setFormula(CellRef cell, std::string_view formula) {
  check(cell);
  if (!isFormula(formula))
    throw WorkbookError(WorkbookFault::BadValue, "",
                        "セル " + cellName(cell) + " の「=" + std::string(formula) + "」は数式ではありません.");
  SheetModel& sheet = edit();
  SpecialCell special;
  special.formula = formula;
  const std::uint32_t number = sheet.addSpecial(std::move(special));
  sheet.makeCell(cell).set(StoredKind::Special, number);
}

void Worksheet::clear(const CellRange& range) {
  check(range);
  SheetModel& sheet = edit();
  for (StoredRow& row : sheet.rows) {
    if (row.number < range.first.row || row.number > range.last.row) continue;
    for (StoredCell& cell : row.cells)
      if (cell.column >= range.first.column && cell.column <= range.last.column) cell.set(StoredKind::Empty, 0);
  }
}

CellValue Worksheet::value(CellRef cell) const {
  check(cell);
  const StoredCell* stored = model().findCell(cell);
  if (stored == nullptr) return {};
  switch (stored->kind) {
    case StoredKind::Number:
      return stored->number();
    case StoredKind::Boolean:
      return stored->index() != 0;
    case StoredKind::Text:
      return book_.strings().text(stored->index());
    case StoredKind::Inline:
      return model().inlineTexts.text(stored->index());
    case StoredKind::Error:
      return CellError{model().errorCodes[stored->index()]};
    case StoredKind::Special:
      return rawValue(model().specials[stored->index()], book_.strings());
    default:
      return {};
  }
}

std::string Worksheet::text(CellRef cell) const {
  const CellValue held = value(cell);
  if (const auto* text = std::get_if<std::string>(&held)) return *text;
  if (const auto* number = std::get_if<double>(&held)) return generalText(*number);
  if (const auto* boolean = std::get_if<bool>(&held)) return *boolean ? "TRUE" : "FALSE";
  if (const auto* error = std::get_if<CellError>(&held)) return error->code;
  return "";
}

std::string Worksheet::formula(CellRef cell) const {
  check(cell);
  const StoredCell* stored = model().findCell(cell);
  return stored != nullptr && stored->kind == StoredKind::Special ? model().specials[stored->index()].formula : "";
}

std::optional<CellRange> Worksheet::used() const {
  std::optional<CellRange> range;
  for (const StoredRow& row : model().rows) {
    for (const StoredCell& cell : row.cells) {
      if (cell.kind == StoredKind::Empty) continue;
      const CellRef at{row.number, cell.column};
      if (!range) range = CellRange(at);
      range->last.row = at.row;
      range->first.column = std::min(range->first.column, at.column);
      range->last.column = std::max(range->last.column, at.column);
    }
  }
  return range;
}

void Worksheet::merge(const CellRange& range) {
  check(range);
  if (range.first == range.last) return;
  unmerge(range);
  SheetModel& sheet = edit();
  sheet.merges.push_back(range);
  sheet.mergesChanged = true;
  for (StoredRow& row : sheet.rows) {
    if (row.number < range.first.row || row.number > range.last.row) continue;
    for (StoredCell& cell : row.cells) {
      const CellRef at{row.number, cell.column};
      if (range.contains(at) && at != range.first) cell.set(StoredKind::Empty, 0);
    }
  }
}

void Worksheet::unmerge(const CellRange& range) {
  check(range);
  const auto met = [&](const CellRange& other) { return other.meets(range); };
  if (std::none_of(model().merges.begin(), model().merges.end(), met)) return;
  SheetModel& sheet = edit();
  std::erase_if(sheet.merges, met);
  sheet.mergesChanged = true;
}

CellRange Worksheet::mergedRange(CellRef cell) const {
  for (const CellRange& range : model().merges)
    if (range.contains(cell)) return range;
  return cell;
}

std::vector<CellRange> Worksheet::mergedRanges() const { return model().merges; }

std::string Worksheet::element(std::string_view name) const {
  const XmlSection* section = model().xml.find(name);
  return section == nullptr ? "" : section->xml;
}

void Worksheet::setElement(std::string_view name, std::string_view xml) {
  XmlSections& sections = edit().xml;
  if (xml.empty()) return sections.remove(name);
  if (xml.find(" r:") != std::string_view::npos)
    // Elements come with the usual prefix; a part that binds another one binds this one as well.
    if (sections.ensurePrefix("r", kRelationshipsUri, kStrictRelationshipsUri) != "r" &&
        sections.head.find(" xmlns:r=") == std::string::npos)
      sections.head.insert(sections.head.rfind('>'), xmlAttribute("xmlns:r", kRelationshipsUri));
  sections.put(name, std::string(xml), sheetElementOrder());
}

}  // namespace quillmarden
