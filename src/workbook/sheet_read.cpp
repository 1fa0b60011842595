#include <algorithm>
#include <map>

#include "workbook/formula_shift.h"
#include "workbook/sheet_read.h"
#include "workbook/workbook_error.h"
#include "workbook/xml_text.h"
#include "workbook/xml_values.h"

namespace quillmarden {

namespace {

using Token = XmlScanner::Token;

// Shared formulas are written out for each cell; a few bytes of XML must not become gigabytes.
constexpr std::size_t kMaxFormulaBytes = std::size_t{256} << 20;

class SheetReader {
 public:
  SheetReader(SheetModel& model, std::size_t texts) : model_(model), pool_(model.inlineTexts), texts_(texts) {}

  /// The children of sheetData.
  void read(XmlScanner& scanner) {
    if (scanner.selfClosing()) return;
    const std::size_t outside = scanner.depth() - 1;
    while (scanner.depth() > outside) {
      const Token token = scanner.next();
      if (token != Token::Start) continue;
      if (scanner.local() == "row") {
        readRow(scanner);
      } else {
        scanner.skip();
      }
    }
    order(scanner);
  }

 private:
  struct Master {
    std::string formula;
    CellRef cell;
  };

  /// A cell as it is read.
  struct Draft {
    CellRef at;
    StyleId style = 0;
    std::string_view type = "n";
    std::string otherAttributes;
    bool hasValue = false;
    bool hasOther = false;
    bool hasFormula = false;
    std::string value;
    StringItem inlineText;
    SpecialCell special;
  };

  template <class Number>
  Number number(XmlScanner& scanner, std::string_view text) {
    Number value{};
    if (!readNumber(text, value)) scanner.fail("「" + std::string(text.substr(0, 40)) + "」は数ではありません.");
    return value;
  }

  void readRow(XmlScanner& scanner) {
    StoredRow row;
    row.number = lastRow_ + 1;
    std::string others;
    std::string_view name;
    std::string_view value;
    while (scanner.nextAttribute(name, value)) {
      if (name == "r") {
        row.number = number<int>(scanner, value);
      } else if (name == "s") {
        row.style = number<StyleId>(scanner, value);
      } else if (name == "customFormat") {
        row.put(StoredRow::HasStyle, isTrue(value));
      } else if (name == "ht") {
        row.height = number<double>(scanner, value);
        row.put(StoredRow::HasHeight, true);
      } else if (name == "customHeight") {
        row.put(StoredRow::CustomHeight, isTrue(value));
      } else if (name == "hidden") {
        row.put(StoredRow::Hidden, isTrue(value));
      } else if (name != "spans") {
        others += kept(name, value);
      }
    }
    if (row.number < 1 || row.number > kMaxSheetRow) scanner.fail("行番号が範囲の外です.");
    sorted_ = sorted_ && row.number > lastRow_;
    lastRow_ = row.number;
    row.extra = extraNumber(others);
    readCells(scanner, row);
    model_.rows.push_back(std::move(row));
  }

  std::uint16_t extraNumber(const std::string& others) {
    auto& extras = model_.rowExtras;
    if (others == extras[lastExtra_]) return lastExtra_;
    auto found = std::find(extras.begin(), extras.end(), others);
    // A hostile part could hold more kinds of rows than numbers; what they add is of no weight.
    if (found == extras.end() && extras.size() >= 1000) return 0;
    if (found == extras.end()) found = extras.insert(extras.end(), others);
    return lastExtra_ = static_cast<std::uint16_t>(found - extras.begin());
  }

  void readCells(XmlScanner& scanner, StoredRow& row) {
    if (scanner.selfClosing()) return;
    const std::size_t outside = scanner.depth() - 1;
    int lastColumn = 0;
    bool inOrder = true;
    while (scanner.depth() > outside) {
      if (scanner.next() != Token::Start) continue;
      if (scanner.local() != "c") {
        scanner.skip();
        continue;
      }
      row.cells.push_back(readCell(scanner, {row.number, lastColumn + 1}));
      inOrder = inOrder && row.cells.back().column > lastColumn;
      lastColumn = row.cells.back().column;
    }
    if (inOrder) return;
    std::stable_sort(row.cells.begin(), row.cells.end(),
                     [](const StoredCell& a, const StoredCell& b) { return a.column < b.column; });
    const auto same = [](const StoredCell& a, const StoredCell& b) { return a.column == b.column; };
    if (std::adjacent_find(row.cells.begin(), row.cells.end(), same) != row.cells.end())
      scanner.fail("行 " + std::to_string(row.number) + " に同じセルが 2 つあります.");
  }

  StoredCell readCell(XmlScanner& scanner, CellRef expected) {
    Draft draft;
    draft.at = expected;
    std::string_view name;
    std::string_view value;
    while (scanner.nextAttribute(name, value)) {
      if (name == "r") {
        const auto cell = parseCell(value);
        if (!cell || cell->row != expected.row)
          scanner.fail("セル「" + std::string(value) + "」の番地が正しくありません.");
        draft.at = *cell;
      } else if (name == "s") {
        draft.style = number<StyleId>(scanner, value);
      } else if (name == "t") {
        draft.type = value;
      } else {
        draft.otherAttributes += kept(name, value);
      }
    }
    if (draft.at.column > kMaxSheetColumn) scanner.fail("列番号が範囲の外です.");
    const std::size_t begin = scanner.end();
    const std::size_t end = readCellChildren(scanner, draft);
    StoredCell cell;
    cell.column = static_cast<std::uint16_t>(draft.at.column);
    cell.style = draft.style;
    store(scanner, draft, scanner.xml().substr(begin, end - begin), cell);
    return cell;
  }

  /// Where the cell's end tag begins.
  std::size_t readCellChildren(XmlScanner& scanner, Draft& draft) {
    if (scanner.selfClosing()) return scanner.end();
    const std::size_t outside = scanner.depth() - 1;
    for (;;) {
      const Token token = scanner.next();
      if (scanner.depth() == outside) return scanner.begin();
      if (token != Token::Start) continue;
      const std::string_view name = scanner.local();
      if (name == "v") {
        draft.value = scanner.content();
        draft.hasValue = true;
      } else if (name == "f") {
        readFormula(scanner, draft);
      } else if (name == "is") {
        draft.inlineText = readStringItem(scanner);
      } else {
        draft.hasOther = true;
        scanner.skip();
      }
    }
  }

  void readFormula(XmlScanner& scanner, Draft& draft) {
    std::string_view form;
    std::string_view ref;
    std::string_view shared;
    std::string others;
    std::string_view name;
    std::string_view value;
    while (scanner.nextAttribute(name, value)) {
      if (name == "t") {
        form = value;
      } else if (name == "ref") {
        ref = value;
      } else if (name == "si") {
        shared = value;
      } else {
        others += kept(name, value);
      }
    }
    std::string formula = scanner.content();
    draft.hasFormula = true;
    if (form == "shared") {
      formula = sharedFormula(scanner, std::string(shared), std::move(formula), draft.at);
      draft.hasFormula = !formula.empty();
    } else if (form == "array" || form == "dataTable") {
      draft.special.form = form == "array" ? SpecialCell::Form::Array : SpecialCell::Form::DataTable;
      draft.special.ref = parseRange(ref).value_or(CellRange(draft.at));
    }
    formulaBytes_ += formula.size();
    if (formulaBytes_ > kMaxFormulaBytes)
      throw WorkbookError(WorkbookFault::TooLarge, std::string(scanner.part()), "数式が多すぎます.");
    draft.special.formula = std::move(formula);
    draft.special.formulaAttributes = std::move(others);
  }

  /// The formula that a cell of a group has, written out for it.
  std::string sharedFormula(XmlScanner& scanner, const std::string& group, std::string formula, CellRef at) {
    if (!formula.empty()) {
      masters_[group] = {formula, at};
      return formula;
    }
    const auto master = masters_.find(group);
    if (master == masters_.end()) return "";
    try {
      return offsetFormula(master->second.formula, at.row - master->second.cell.row,
                           at.column - master->second.cell.column);
    } catch (const WorkbookError& error) {
      scanner.fail(error.what());
    }
  }

  void store(XmlScanner& scanner, Draft& draft, std::string_view inner, StoredCell& cell) {
    const auto put = [&](StoredKind kind, std::uint64_t bits) { cell.set(kind, bits); };
    if (draft.hasFormula && !draft.hasOther) {
      draft.special.cellAttributes = std::move(draft.otherAttributes);
      return put(StoredKind::Special, model_.addSpecial(std::move(draft.special)));
    }
    const bool modelled = draft.type == "n" || draft.type == "s" || draft.type == "str" || draft.type == "b" ||
                          draft.type == "e" || draft.type == "inlineStr";
    if (draft.hasOther || !draft.otherAttributes.empty() || !modelled) {
      SpecialCell raw;
      raw.form = SpecialCell::Form::Raw;
      raw.cellAttributes = std::move(draft.otherAttributes);
      raw.type = draft.type;
      raw.inner = inner;
      return put(StoredKind::Special, model_.addSpecial(std::move(raw)));
    }
    if (draft.type == "inlineStr") {
      const StringItem& item = draft.inlineText;
      return put(StoredKind::Inline, item.rich ? pool_.internRich(item.text) : pool_.intern(item.text));
    }
    if (!draft.hasValue) return;
    if (draft.type == "s") {
      const auto index = number<std::uint32_t>(scanner, draft.value);
      if (index >= texts_) scanner.fail("文字列の番号 " + std::to_string(index) + " がありません.");
      put(StoredKind::Text, index);
    } else if (draft.type == "str") {
      put(StoredKind::Inline, pool_.intern(cellTextDecode(draft.value)));
    } else if (draft.type == "b") {
      put(StoredKind::Boolean, isTrue(draft.value) ? 1 : 0);
    } else if (draft.type == "e") {
      put(StoredKind::Error, model_.errorNumber(draft.value));
    } else if (!draft.value.empty()) {
      put(StoredKind::Number, std::bit_cast<std::uint64_t>(number<double>(scanner, draft.value)));
    }
  }

  /// Rows are in order as programs write them; where they are not, they are put so.
  void order(XmlScanner& scanner) {
    if (sorted_) return;
    auto& rows = model_.rows;
    std::stable_sort(rows.begin(), rows.end(),
                     [](const StoredRow& a, const StoredRow& b) { return a.number < b.number; });
    const auto same = [](const StoredRow& a, const StoredRow& b) { return a.number == b.number; };
    if (std::adjacent_find(rows.begin(), rows.end(), same) != rows.end()) scanner.fail("同じ行が 2 つあります.");
  }

  SheetModel& model_;
  StringPool& pool_;
  std::size_t texts_;
  int lastRow_ = 0;
  bool sorted_ = true;
  std::uint16_t lastExtra_ = 0;
  std::size_t formulaBytes_ = 0;
  std::map<std::string, Master> masters_;
};

}  // namespace

void readSheetData(SheetModel& model, XmlScanner& scanner, std::size_t texts) {
  SheetReader(model, texts).read(scanner);
}

}  // namespace quillmarden
