#include <algorithm>

#include "workbook/book_state.h"
#include "workbook/formula_shift.h"
#include "workbook/page_setup_xml.h"
#include "workbook/section_editor.h"
#include "workbook/worksheet.h"

namespace quillmarden {

namespace {

constexpr std::string_view kTitles = "_xlnm.Print_Titles";
constexpr std::string_view kArea = "_xlnm.Print_Area";

DefinedName* findName(BookState& book, std::string_view name, int sheet) {
  for (DefinedName& defined : book.names)
    if (defined.name == name && defined.sheet == sheet) return &defined;
  return nullptr;
}

/// The ranges that a print name tells, without the sheet.
std::vector<CellRange> rangesIn(const DefinedName* name) {
  std::vector<CellRange> ranges;
  if (name == nullptr) return ranges;
  editReferences(name->formula, [&](const FormulaReference& reference) {
    if (const auto range = parseRange(reference.target)) ranges.push_back(*range);
    return std::string();
  });
  return ranges;
}

}  // namespace

PageSetup Worksheet::pageSetup() const {
  PageSetup setup = readPageSetup(model(), book_.slots[index_].part);
  for (const CellRange& range : rangesIn(findName(book_, kTitles, index())))
    (range.wholeRows() ? setup.titleRows : setup.titleColumns) = range;
  const std::vector<CellRange> areas = rangesIn(findName(book_, kArea, index()));
  if (!areas.empty()) setup.printArea = areas.front();
  return setup;
}

void Worksheet::setPageSetup(const PageSetup& setup) {
  const PageSetup before = pageSetup();
  if (setup == before) return;
  checkPageSetup(setup);
  writePageSetup(edit(), before, setup, book_.slots[index_].part);
  setPrintNames(before, setup);
}

void Worksheet::setPrintNames(const PageSetup& before, const PageSetup& setup) {
  const std::string sheet = sheetInFormula(name()) + "!";
  const auto put = [&](std::string_view name, std::string formula) {
    DefinedName* present = findName(book_, name, index());
    book_.namesChanged = true;
    if (formula.empty()) {
      std::erase_if(book_.names,
                    [&](const DefinedName& defined) { return defined.name == name && defined.sheet == index(); });
    } else if (present != nullptr) {
      present->formula = std::move(formula);
    } else {
      book_.names.push_back({std::string(name), index(), std::move(formula), ""});
    }
  };
  if (setup.titleRows != before.titleRows || setup.titleColumns != before.titleColumns) {
    std::string formula;
    if (const auto& columns = setup.titleColumns)
      formula = sheet + absoluteName({{1, columns->first.column}, {kMaxSheetRow, columns->last.column}});
    if (const auto& rows = setup.titleRows)
      formula += (formula.empty() ? "" : ",") + sheet +
                 absoluteName({{rows->first.row, 1}, {rows->last.row, kMaxSheetColumn}});
    put(kTitles, std::move(formula));
  }
  if (setup.printArea != before.printArea) put(kArea, setup.printArea ? sheet + absoluteName(*setup.printArea) : "");
}

void Worksheet::addRowBreak(int row) {
  check(CellRef{row, 1});
  SheetModel& sheet = edit();
  SectionEditor breaks(sheet, "rowBreaks", book_.slots[index_].part);
  pugi::xml_node place;
  int count = 1;
  for (const pugi::xml_node child : breaks.root().children()) {
    const int id = child.attribute("id").as_int();
    if (id == row) return;
    if (id < row) place = child;
    ++count;
  }
  const std::string element = breaks.element("brk");
  pugi::xml_node made =
      place ? breaks.root().insert_child_after(element.c_str(), place) : breaks.root().prepend_child(element.c_str());
  setAttribute(made, "id", std::to_string(row));
  setAttribute(made, "max", std::to_string(kMaxSheetColumn - 1));
  setAttribute(made, "man", "1");
  setAttribute(breaks.root(), "count", std::to_string(count));
  setAttribute(breaks.root(), "manualBreakCount",
               std::to_string(breaks.root().attribute("manualBreakCount").as_int() + 1));
  breaks.put();
}

}  // namespace quillmarden
