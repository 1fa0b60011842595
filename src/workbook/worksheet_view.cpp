#include "workbook/book_state.h"
#include "workbook/formula_shift.h"
#include "workbook/section_editor.h"
#include "workbook/worksheet.h"

namespace quillmarden {

namespace {

constexpr std::string_view kFilterName = "_xlnm._FilterDatabase";

/// The first view of the sheet, made when there is none.
pugi::xml_node viewOf(const SectionEditor& views) {
  pugi::xml_node view = views.child(views.root(), "sheetView");
  if (!view.attribute("workbookViewId")) setAttribute(view, "workbookViewId", "0");
  return view;
}

/// Sets the selection of a pane; of the whole view for "".
void selectIn(const SectionEditor& views, pugi::xml_node view, std::string_view pane, const std::string& cell) {
  pugi::xml_node selection;
  for (const pugi::xml_node child : view.children())
    if (localName(child) == "selection" && pane == child.attribute("pane").value()) selection = child;
  if (!selection) {
    const std::string element = views.element("selection");
    const pugi::xml_node before = childNamed(view, "pane");
    selection = before ? view.insert_child_after(element.c_str(), before) : view.prepend_child(element.c_str());
    if (!pane.empty()) setAttribute(selection, "pane", std::string(pane));
  }
  setAttribute(selection, "activeCell", cell);
  selection.remove_attribute("activeCellId");
  setAttribute(selection, "sqref", cell);
}

}  // namespace

void Worksheet::select(CellRef cell) {
  check(cell);
  SectionEditor views(edit(), "sheetViews", book_.slots[index_].part);
  pugi::xml_node view = viewOf(views);
  const pugi::xml_node pane = childNamed(view, "pane");
  if (!pane) view.remove_attribute("topLeftCell");
  const std::string active = pane ? pane.attribute("activePane").as_string("topLeft") : "";
  selectIn(views, view, active == "topLeft" ? "" : active, cellName(cell));
  views.put();
}

void Worksheet::freeze(CellRef cell) {
  check(cell);
  SectionEditor views(edit(), "sheetViews", book_.slots[index_].part);
  pugi::xml_node view = viewOf(views);
  view.remove_child(childNamed(view, "pane"));
  while (const pugi::xml_node selection = childNamed(view, "selection")) view.remove_child(selection);
  const int rows = cell.row - 1;
  const int columns = cell.column - 1;
  if (rows > 0 || columns > 0) {
    const std::string active = rows > 0 && columns > 0 ? "bottomRight" : rows > 0 ? "bottomLeft" : "topRight";
    pugi::xml_node pane = view.prepend_child(views.element("pane").c_str());
    if (columns > 0) setAttribute(pane, "xSplit", std::to_string(columns));
    if (rows > 0) setAttribute(pane, "ySplit", std::to_string(rows));
    setAttribute(pane, "topLeftCell", cellName(cell));
    setAttribute(pane, "activePane", active);
    setAttribute(pane, "state", "frozen");
    selectIn(views, view, active, cellName(cell));
  }
  views.put();
}

void Worksheet::setShowGridLines(bool show) {
  SectionEditor views(edit(), "sheetViews", book_.slots[index_].part);
  pugi::xml_node view = viewOf(views);
  if (show) {
    view.remove_attribute("showGridLines");
  } else {
    setAttribute(view, "showGridLines", "0");
  }
  views.put();
}

void Worksheet::setAutoFilter(const CellRange& range) {
  check(range);
  SectionEditor filter(edit(), "autoFilter", book_.slots[index_].part);
  filter.root().remove_children();
  setAttribute(filter.root(), "ref", rangeName(range));
  filter.put();
  // Programs look for the filtered range under a hidden name as well.
  std::erase_if(book_.names,
                [&](const DefinedName& defined) { return defined.name == kFilterName && defined.sheet == index(); });
  book_.names.push_back({std::string(kFilterName), index(), sheetInFormula(name()) + "!" + absoluteName(range),
                         xmlAttribute("hidden", "1")});
  book_.namesChanged = true;
}

}  // namespace quillmarden
