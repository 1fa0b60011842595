#include <algorithm>
#include <set>

#include "workbook/book_state.h"
#include "workbook/formula_shift.h"
#include "workbook/part_graph.h"
#include "workbook/part_name.h"
#include "workbook/references.h"
#include "workbook/xml_fragment.h"
#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

constexpr std::size_t kMaxSheetName = 31;

[[noreturn]] void badName(std::string_view name, const std::string& why) {
  throw WorkbookError(WorkbookFault::BadSheetName, "", "シート名「" + std::string(name) + "」" + why);
}

/// The first free number for a sheet's id.
std::string freeSheetId(const BookState& book) {
  int highest = 0;
  for (const SheetSlot& slot : book.slots) {
    const std::size_t at = slot.otherAttributes.find("sheetId=\"");
    if (at == std::string::npos) continue;
    const std::string digits = slot.otherAttributes.substr(at + 9, 9);
    highest = std::max(highest, std::atoi(digits.c_str()));
  }
  return std::to_string(highest + 1);
}

/// The titles of the sheets among the document's properties went stale; they need not be there.
void dropTitles(BookState& book) {
  for (const std::string& part : relatedParts(book.package, "", "extended-properties")) {
    editPart(book.package, part, [](pugi::xml_node root) {
      const bool pairs = root.remove_child(childNamed(root, "HeadingPairs"));
      return root.remove_child(childNamed(root, "TitlesOfParts")) || pairs;
    });
  }
}

/// Sheets that stand at or behind `from` have another number: what names them by number follows.
void renumber(BookState& book, int from, int by) {
  for (DefinedName& name : book.names)
    if (name.sheet >= from) name.sheet += by;
  book.namesChanged |= !book.names.empty();
  if (const XmlSection* views = book.xml.find("bookViews")) {
    XmlFragment fragment(views->xml, book.workbookPart);
    for (pugi::xml_node view : fragment.root().children()) {
      for (const char* name : {"activeTab", "firstSheet"}) {
        const int tab = view.attribute(name).as_int();
        if (tab >= from && (tab > 0 || by > 0)) setAttribute(view, name, std::to_string(std::max(tab + by, 0)));
      }
    }
    book.xml.put("bookViews", fragment.xml(), workbookElementOrder());
    book.xmlChanged = true;
  }
}

/// Whether the sheet's own view says that it is chosen; several chosen sheets would be edited together.
bool isChosen(const BookState& book, std::size_t index) {
  const XmlSection* views = book.model(index).xml.find("sheetViews");
  return views != nullptr && views->xml.find("tabSelected=\"1\"") != std::string::npos;
}

}  // namespace

bool isReservedSheetName(std::string_view name) { return sameSheet(name, "History") || name == "履歴"; }

void checkSheetName(std::string_view name) {
  if (name.empty()) badName(name, "が空です.");
  if (utf16Length(name) > kMaxSheetName) badName(name, "が長すぎます. 最大 31 文字です.");
  const bool control = std::any_of(name.begin(), name.end(), [](char c) { return c >= 0 && c < 0x20; });
  if (control || xmlSafe(name) != name || name.find_first_of(":\\/?*[]") != std::string_view::npos)
    badName(name, "に使えない文字があります.");
  if (name.front() == '\'' || name.back() == '\'') badName(name, "の端に ' は使えません.");
  if (isReservedSheetName(name)) badName(name, "は予約されています.");
}

std::string freeSheetName(const BookState& book, std::string_view wanted) {
  std::string name(wanted);
  for (int number = 2; book.find(name) >= 0; ++number) {
    const std::string ending = " (" + std::to_string(number) + ")";
    std::string stem(wanted);
    while (!stem.empty() && utf16Length(stem) + ending.size() > kMaxSheetName) {
      while ((stem.back() & 0xC0) == 0x80) stem.pop_back();
      stem.pop_back();
    }
    name = stem + ending;
  }
  return name;
}

Worksheet& insertSheet(BookState& book, int before, const std::string& name, SheetModel model) {
  checkSheetName(name);
  if (book.find(name) >= 0) badName(name, "は既にあります.");
  SheetSlot slot;
  slot.name = name;
  slot.part = book.package.add(std::string(partFolder(book.workbookPart)) + "worksheets/sheet", "xml",
                               "application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml", "");
  slot.relation = book.package.relate(book.workbookPart, book.relationType("worksheet"), slot.part);
  slot.otherAttributes = xmlAttribute("sheetId", freeSheetId(book));
  slot.touched = true;
  slot.model.set(std::move(model));
  if (before < static_cast<int>(book.slots.size())) renumber(book, before, 1);
  book.slots.insert(book.slots.begin() + before, std::move(slot));
  book.sheetsChanged = true;
  book.renewHandles();
  dropTitles(book);
  return *book.slots[static_cast<std::size_t>(before)].handle;
}

void chooseSheet(BookState& book, std::size_t index, bool chosen) {
  if (!book.slots[index].cells || isChosen(book, index) == chosen) return;
  SheetModel& model = book.editModel(index);
  const std::string prefix = model.xml.prefix();
  if (!model.xml.find("sheetViews")) {
    model.xml.put(
        "sheetViews",
        "<" + prefix + "sheetViews><" + prefix + "sheetView workbookViewId=\"0\"/></" + prefix + "sheetViews>",
        sheetElementOrder());
  }
  editSections(model, "sheetViews", book.slots[index].part, [&](pugi::xml_node root) {
    for (pugi::xml_node view : root.children()) {
      view.remove_attribute("tabSelected");
      if (chosen) setAttribute(view, "tabSelected", "1");
    }
    return true;
  });
}

Worksheet& Workbook::addSheet(std::string_view name) {
  return insertSheet(*state_, sheetCount(), std::string(name), SheetModel::empty(state_->styles().at(0).font));
}

void Workbook::renameSheet(int index, std::string_view name) {
  SheetSlot& slot = state_->slot(index);
  if (slot.name == name) return;
  checkSheetName(name);
  const int taken = state_->find(name);
  if (taken >= 0 && taken != index) badName(name, "は既にあります.");
  const std::string from = slot.name;
  editBookFormulas(*state_, static_cast<std::size_t>(index),
                   [&](std::string_view formula, std::string_view) { return renameInFormula(formula, from, name); });
  for (const std::string& cache : relatedParts(state_->package, state_->workbookPart, "pivotCacheDefinition")) {
    editPart(state_->package, cache, [&](pugi::xml_node root) {
      pugi::xml_attribute sheet = childNamed(childNamed(root, "cacheSource"), "worksheetSource").attribute("sheet");
      return sheet && sameSheet(sheet.value(), from) && sheet.set_value(std::string(name).c_str());
    });
  }
  slot.name = name;
  state_->sheetsChanged = true;
  dropTitles(*state_);
}

void Workbook::removeSheet(int index) {
  const SheetSlot& slot = state_->slot(index);
  if (sheetCount() == 1) throw WorkbookError(WorkbookFault::BadValue, "", "最後のシートは削除できません.");
  const std::string name = slot.name;
  const int active = activeSheet();
  const auto place = static_cast<std::size_t>(index);
  std::erase_if(state_->names, [&](const DefinedName& defined) { return defined.sheet == index; });
  editBookFormulas(*state_, place, [&](std::string_view formula, std::string_view) {
    return dropSheets(formula, [&](std::string_view sheet) { return !sameSheet(sheet, name); });
  });
  Package& package = state_->package;
  Relationships relationships = package.relationships(state_->workbookPart);
  std::erase_if(relationships.items, [&](const Relationship& item) { return item.id == slot.relation; });
  package.setRelationships(state_->workbookPart, relationships);
  removeUnreached(package);
  state_->slots.erase(state_->slots.begin() + index);
  renumber(*state_, index + 1, -1);
  state_->renewHandles();
  state_->sheetsChanged = true;
  state_->namesChanged = true;
  if (active == index) setActiveSheet(std::min(index, sheetCount() - 1));
  dropTitles(*state_);
}

int Workbook::activeSheet() const {
  const XmlSection* views = state_->xml.find("bookViews");
  if (views == nullptr) return 0;
  const XmlFragment fragment(views->xml, state_->workbookPart);
  const int tab = childNamed(fragment.root(), "workbookView").attribute("activeTab").as_int();
  return tab >= 0 && tab < sheetCount() ? tab : 0;
}

void Workbook::setActiveSheet(int index) {
  state_->slot(index);
  const int before = activeSheet();
  const std::string prefix = state_->xml.prefix();
  const XmlSection* views = state_->xml.find("bookViews");
  XmlFragment fragment(views != nullptr
                           ? views->xml
                           : "<" + prefix + "bookViews><" + prefix + "workbookView/></" + prefix + "bookViews>",
                       state_->workbookPart);
  setAttribute(childNamed(fragment.root(), "workbookView"), "activeTab", std::to_string(index));
  state_->xml.put("bookViews", fragment.xml(), workbookElementOrder());
  state_->xmlChanged = true;
  if (before != index) chooseSheet(*state_, static_cast<std::size_t>(before), false);
  chooseSheet(*state_, static_cast<std::size_t>(index), true);
}

}  // namespace quillmarden
