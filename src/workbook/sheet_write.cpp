#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "workbook/sheet_model.h"
#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

template <class Number>
void appendNumber(std::string& out, Number number) {
  std::array<char, 32> digits;
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  out.append(digits.data(), end);
}

void appendDouble(std::string& out, double number) {
  if (number == std::floor(number) && std::abs(number) < 1e15)
    return appendNumber(out, static_cast<std::int64_t>(number));
  appendNumber(out, number);
}

/// Writes the rows of a sheet in the part's own prefix.
class RowWriter {
 public:
  explicit RowWriter(const SheetModel& model) : model_(model), prefix_(model.xml.prefix()) {
    row_ = "<" + prefix_ + "row r=\"";
    rowEnd_ = "</" + prefix_ + "row>";
    cell_ = "<" + prefix_ + "c r=\"";
    value_ = "\"><" + prefix_ + "v>";
    valueEnd_ = "</" + prefix_ + "v></" + prefix_ + "c>";
  }

  void append(std::string& out, const StoredRow& row) {
    out += row_;
    appendNumber(out, row.number);
    if (row.has(StoredRow::HasStyle)) {
      out += "\" s=\"";
      appendNumber(out, row.style);
      out += "\" customFormat=\"1";
    }
    if (row.has(StoredRow::HasHeight)) {
      out += "\" ht=\"";
      appendDouble(out, row.height);
    }
    if (row.has(StoredRow::CustomHeight)) out += "\" customHeight=\"1";
    if (row.has(StoredRow::Hidden)) out += "\" hidden=\"1";
    out += '"';
    out += model_.rowExtras[row.extra];
    if (row.cells.empty()) {
      out += "/>";
      return;
    }
    out += '>';
    std::array<char, 12> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), row.number).ptr;
    rowDigits_ = std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data()));
    for (const StoredCell& cell : row.cells) append(out, cell);
    out += rowEnd_;
  }

 private:
  void append(std::string& out, const StoredCell& cell) {
    out += cell_;
    out += letters(cell.column);
    out += rowDigits_;
    if (cell.style != 0) {
      out += "\" s=\"";
      appendNumber(out, cell.style);
    }
    switch (cell.kind) {
      case StoredKind::Empty:
        out += "\"/>";
        return;
      case StoredKind::Number:
        out += value_;
        appendDouble(out, cell.number());
        break;
      case StoredKind::Boolean:
        out += "\" t=\"b";
        out += value_;
        out += cell.index() != 0 ? '1' : '0';
        break;
      case StoredKind::Text:
        out += "\" t=\"s";
        out += value_;
        appendNumber(out, cell.index());
        break;
      case StoredKind::Inline:
        out += "\" t=\"inlineStr\">";
        model_.inlineTexts.appendItem(out, cell.index(), "is", prefix_);
        out += "</" + prefix_ + "c>";
        return;
      case StoredKind::Error:
        out += "\" t=\"e";
        out += value_;
        appendXml(out, model_.errorCodes[cell.index()]);
        break;
      case StoredKind::Special:
        return append(out, model_.specials[cell.index()]);
    }
    out += valueEnd_;
  }

  void append(std::string& out, const SpecialCell& special) {
    const bool raw = special.form == SpecialCell::Form::Raw;
    if (raw && special.type != "n") out += "\" t=\"" + special.type;
    out += '"';
    out += special.cellAttributes;
    out += '>';
    if (raw) {
      out += special.inner;
    } else {
      out += "<" + prefix_ + "f";
      if (special.form == SpecialCell::Form::Array) out += " t=\"array\" ref=\"" + rangeName(special.ref) + "\"";
      if (special.form == SpecialCell::Form::DataTable)
        out += " t=\"dataTable\" ref=\"" + rangeName(special.ref) + "\"";
      out += special.formulaAttributes;
      out += '>';
      appendXml(out, special.formula);
      out += "</" + prefix_ + "f>";
    }
    out += "</" + prefix_ + "c>";
  }

  const std::string& letters(int column) {
    const auto at = static_cast<std::size_t>(column);
    while (letters_.size() <= at) letters_.push_back(columnLetters(static_cast<int>(letters_.size())));
    return letters_[at];
  }

  const SheetModel& model_;
  std::string prefix_;
  std::string row_;
  std::string rowEnd_;
  std::string cell_;
  std::string value_;
  std::string valueEnd_;
  std::string_view rowDigits_;
  std::vector<std::string> letters_;
};

std::string mergesXml(const SheetModel& model) {
  if (model.merges.empty()) return "";
  const std::string prefix = model.xml.prefix();
  std::string out = "<" + prefix + "mergeCells count=\"" + std::to_string(model.merges.size()) + "\">";
  for (const CellRange& range : model.merges) out += "<" + prefix + "mergeCell ref=\"" + rangeName(range) + "\"/>";
  return out += "</" + prefix + "mergeCells>";
}

std::string columnsXml(const SheetModel& model) {
  if (model.columns.empty()) return "";
  const std::string prefix = model.xml.prefix();
  std::string out = "<" + prefix + "cols>";
  for (const ColumnSpan& span : model.columns) {
    out += "<" + prefix + "col min=\"" + std::to_string(span.first) + "\" max=\"" + std::to_string(span.last) +
           "\" width=\"";
    appendDouble(out, span.width >= 0 ? span.width : model.defaultColumnWidth);
    out += '"';
    if (span.style != 0) out += " style=\"" + std::to_string(span.style) + "\"";
    if (span.hidden) out += " hidden=\"1\"";
    if (span.customWidth) out += " customWidth=\"1\"";
    out += span.otherAttributes + "/>";
  }
  return out += "</" + prefix + "cols>";
}

std::string dimensionXml(const SheetModel& model) {
  int first = kMaxSheetColumn + 1;
  int last = 0;
  int firstRow = 0;
  int lastRow = 0;
  for (const StoredRow& row : model.rows) {
    if (row.cells.empty()) continue;
    if (firstRow == 0) firstRow = row.number;
    lastRow = row.number;
    first = std::min<int>(first, row.cells.front().column);
    last = std::max<int>(last, row.cells.back().column);
  }
  const CellRange range = last == 0 ? CellRange() : CellRange({firstRow, first}, {lastRow, last});
  return "<" + model.xml.prefix() + "dimension ref=\"" + cellName(range.first) +
         (range.first == range.last ? "" : ":" + cellName(range.last)) + "\"/>";
}

}  // namespace

PartSource SheetModel::source() const {
  struct State {
    const SheetModel& model;
    XmlSections xml;  // with the children that are made from records
    RowWriter writer;
    std::size_t item = 0;
    std::size_t row = 0;
    bool begun = false;
    bool ended = false;

    explicit State(const SheetModel& sheet) : model(sheet), xml(sheet.xml), writer(sheet) {
      const auto order = sheetElementOrder();
      xml.put("dimension", dimensionXml(sheet), order);
      if (sheet.mergesChanged) replace("mergeCells", mergesXml(sheet));
      if (sheet.columnsChanged) replace("cols", columnsXml(sheet));
    }
    void replace(std::string_view name, std::string text) {
      if (text.empty()) return xml.remove(name);
      xml.put(name, std::move(text), sheetElementOrder());
    }
    /// The rows up to a block's size; true when all are out.
    bool rows(std::string& out) {
      const std::size_t full = out.size() + (1U << 15);
      const std::string prefix = xml.prefix();
      if (model.rows.empty()) {
        out += "<" + prefix + "sheetData/>";
        return true;
      }
      if (row == 0) out += "<" + prefix + "sheetData>";
      for (; row < model.rows.size() && out.size() < full; ++row) writer.append(out, model.rows[row]);
      if (row < model.rows.size()) return false;
      out += "</" + prefix + "sheetData>";
      return true;
    }
    bool step(std::string& out) {
      if (ended) return false;
      if (!begun) out += xml.head;
      begun = true;
      for (; item < xml.items.size(); ++item) {
        if (xml.items[item].name != "sheetData") {
          out += xml.items[item].xml;
        } else if (!rows(out)) {
          return true;
        }
      }
      out += xml.tail;
      ended = true;
      return true;
    }
  };
  return [state = std::make_shared<State>(*this)](std::string& out) { return state->step(out); };
}

std::uint64_t SheetModel::xmlSize() const {
  std::uint64_t size = 4096 + merges.size() * 40 + inlineTexts.xmlSize();
  for (const XmlSection& item : xml.items) size += item.xml.size();
  for (const StoredRow& row : rows) size += 64 + row.cells.size() * 40;
  for (const SpecialCell& special : specials) size += special.formula.size() + special.inner.size();
  return size;
}

}  // namespace quillmarden
