#include "workbook/references.h"

#include <algorithm>

#include "workbook/xml_fragment.h"
#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

/// A formula that stands as an element's text.
bool editText(pugi::xml_node node, std::string_view home, const FormulaEdit& edit) {
  const std::string before = node.text().get();
  if (before.empty()) return false;
  const std::string after = edit(before, home);
  if (after == before) return false;
  node.text().set(after.c_str());
  return true;
}

bool editAttribute(pugi::xml_attribute attribute, std::string_view home, const FormulaEdit& edit) {
  const std::string before = attribute.value();
  if (before.empty()) return false;
  const std::string after = edit(before, home);
  if (after == before) return false;
  attribute.set_value(after.c_str());
  return true;
}

bool editElements(pugi::xml_node root, std::string_view home, const FormulaEdit& edit) {
  bool changed = false;
  forEachElement(root, [&](pugi::xml_node node) {
    const std::string_view name = localName(node);
    if (name == "formula" || name == "formula1" || name == "formula2" || name == "f" ||
        name == "calculatedColumnFormula" || name == "totalsRowFormula") {
      changed |= editText(node, home, edit);
    } else if (name == "cfvo" && std::string_view(node.attribute("type").value()) == "formula") {
      changed |= editAttribute(node.attribute("val"), home, edit);
    } else if (name == "hyperlink") {
      changed |= editAttribute(node.attribute("location"), home, edit);
    }
  });
  return changed;
}

bool editCells(SheetModel& model, std::string_view home, const FormulaEdit& edit) {
  bool changed = false;
  for (SpecialCell& special : model.specials) {
    if (special.formula.empty()) continue;
    std::string after = edit(special.formula, home);
    changed |= after != special.formula;
    special.formula = std::move(after);
  }
  return changed;
}

/// Whether the part's text can speak of the sheet: its name stands in it.
bool mentions(std::string_view xml, std::string_view sheet) {
  // These have several forms in XML and formulas; there is no telling without reading.
  if (sheet.find_first_of("'\"&<>") != std::string_view::npos) return true;
  // Some programs write all but ASCII as references to characters.
  if (xml.find("&#") != std::string_view::npos) return true;
  const auto small = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; };
  return std::search(xml.begin(), xml.end(), sheet.begin(), sheet.end(),
                     [&](char a, char b) { return small(a) == small(b); }) != xml.end();
}

bool hasType(std::string_view type, std::string_view ending) { return type.find(ending) != std::string_view::npos; }

}  // namespace

bool editPart(Package& package, std::string_view part, const std::function<bool(pugi::xml_node root)>& change) {
  if (!package.has(part)) return false;
  const std::string xml = xmlAsUtf8(package.bytes(part), part);
  // A tree is walked and taken down level by level; the scanner refuses what is nested too deeply for that.
  XmlScanner scanner(xml, part);
  while (scanner.next() != XmlScanner::Token::Finish) continue;
  XmlFragment fragment(xml, part);
  if (!change(fragment.root())) return false;
  package.set(part, "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n" + fragment.xml());
  return true;
}

bool editSections(SheetModel& model, std::string_view name, std::string_view part,
                  const std::function<bool(pugi::xml_node root)>& change, bool dropEmpty) {
  bool changed = false;
  for (XmlSection& section : model.xml.items) {
    if (section.name != name) continue;
    XmlFragment fragment(section.xml, part);
    if (!change(fragment.root())) continue;
    changed = true;
    const bool empty = dropEmpty && !fragment.root().find_child(
                                        [](const pugi::xml_node& child) { return child.type() == pugi::node_element; });
    section.xml = empty ? "" : fragment.xml();
  }
  if (changed)
    std::erase_if(model.xml.items, [](const XmlSection& item) {
      return !item.name.empty() && item.name != "sheetData" && item.xml.empty();
    });
  return changed;
}

std::vector<std::string> relatedParts(const Package& package, std::string_view part, std::string_view word) {
  std::vector<std::string> parts;
  for (const Relationship& item : package.relationships(part).items)
    if (!item.external && item.is(word)) parts.push_back(resolveTarget(part, item.target));
  return parts;
}

bool editSheetFormulas(SheetModel& model, std::string_view home, const FormulaEdit& edit, std::string_view part) {
  bool changed = editCells(model, home, edit);
  const auto elements = [&](pugi::xml_node root) { return editElements(root, home, edit); };
  for (const std::string_view name : {"conditionalFormatting", "dataValidations", "hyperlinks", "extLst"})
    changed |= editSections(model, name, part, elements);
  return changed;
}

void editBookFormulas(BookState& book, std::size_t sheet, const FormulaEdit& edit) {
  const std::string name = book.slots[sheet].name;
  for (std::size_t i = 0; i < book.slots.size(); ++i) {
    SheetSlot& slot = book.slots[i];
    if (!slot.cells) continue;
    if (!slot.touched && i != sheet &&
        (!book.hasFormulas(i) || !mentions(xmlAsUtf8(book.package.bytes(slot.part), slot.part), name)))
      continue;
    if (slot.touched) {
      editSheetFormulas(book.editModel(i), slot.name, edit, slot.part);
    } else {
      SheetModel trial = book.model(i);
      if (editSheetFormulas(trial, slot.name, edit, slot.part)) book.editModel(i) = std::move(trial);
    }
    for (const std::string& table : relatedParts(book.package, slot.part, "table"))
      editPart(book.package, table, [&](pugi::xml_node root) { return editElements(root, slot.name, edit); });
  }
  for (DefinedName& defined : book.names) {
    const std::string home = defined.sheet < 0 ? "" : book.slots[static_cast<std::size_t>(defined.sheet)].name;
    std::string after = edit(defined.formula, home);
    book.namesChanged |= after != defined.formula;
    defined.formula = std::move(after);
  }
  for (const std::string& part : book.package.names()) {
    const std::string_view type = book.package.contentTypes().typeOf(part);
    if (!hasType(type, "drawingml.chart+xml") && !hasType(type, "chartex+xml")) continue;
    editPart(book.package, part, [&](pugi::xml_node root) { return editElements(root, "", edit); });
  }
}

}  // namespace quillmarden
