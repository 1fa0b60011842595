#include <algorithm>
#include <set>
#include <unordered_map>

#include "workbook/book_state.h"
#include "workbook/formula_shift.h"
#include "workbook/part_graph.h"
#include "workbook/part_name.h"
#include "workbook/references.h"
#include "workbook/xml_fragment.h"
#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

/// Parts that stand on others of their whole book and can't follow a sheet.
bool canFollow(const Relationship& item) {
  for (const std::string_view word : {"pivotTable", "queryTable", "slicer", "timeline", "threadedComment"})
    if (item.is(word)) return false;
  return true;
}

/// Translates what a sheet's model says by number from one book to another.
class ModelTranslation {
 public:
  ModelTranslation(const BookState& source, BookState& target)
      : source_(source), target_(target), differences_(source.styles().differences()) {}

  void apply(SheetModel& model, const std::string& part) {
    for (StoredRow& row : model.rows) {
      row.style = style(row.style);
      for (StoredCell& cell : row.cells) {
        cell.style = style(cell.style);
        if (cell.kind == StoredKind::Text) cell.set(StoredKind::Text, text(cell.index()));
        if (cell.kind == StoredKind::Special) translate(model.specials[cell.index()]);
      }
    }
    for (ColumnSpan& span : model.columns) span.style = style(span.style);
    model.columnsChanged |= !model.columns.empty();
    for (const char* section : {"conditionalFormatting", "autoFilter", "sortState"})
      editSections(model, section, part, [&](pugi::xml_node root) { return translateDifferences(root); });
  }

  bool translateDifferences(pugi::xml_node root) {
    bool changed = false;
    forEachElement(root, [&](pugi::xml_node node) {
      for (pugi::xml_attribute attribute : node.attributes()) {
        const std::string_view name(attribute.name());
        if (name != "dxfId" && !name.ends_with("DxfId")) continue;
        attribute.set_value(difference(attribute.as_int()));
        changed = true;
      }
    });
    return changed;
  }

 private:
  StyleId style(StyleId id) {
    const auto known = styles_.find(id);
    if (known != styles_.end()) return known->second;
    CellStyle wanted = source_.styles().at(id);
    try {
      return styles_.emplace(id, target_.editStyles().add(wanted)).first->second;
    } catch (const WorkbookError&) {
      // A named style that this book lacks: the cell's own format says all that is seen.
      wanted.named.clear();
      return styles_.emplace(id, target_.editStyles().add(wanted)).first->second;
    }
  }

  std::uint32_t text(std::uint32_t index) {
    const auto known = texts_.find(index);
    if (known != texts_.end()) return known->second;
    const StringPool& strings = source_.strings();
    StringPool& own = target_.editStrings();
    const bool rich = strings.isRich(index) && strings.prefix() == own.prefix();
    const std::uint32_t number = rich ? own.internRich(strings.stored(index)) : own.intern(strings.text(index));
    return texts_.emplace(index, number).first->second;
  }

  /// Numbers of the book's metadata mean nothing elsewhere.
  void translate(SpecialCell& special) {
    special.cellAttributes.clear();
    if (special.form != SpecialCell::Form::Raw || special.type != "s") return;
    const std::size_t open = special.inner.find('>');
    const std::uint32_t index = static_cast<std::uint32_t>(std::atoi(special.inner.c_str() + open + 1));
    special.type = "inlineStr";
    special.inner = "<is><t xml:space=\"preserve\">";
    if (index < source_.strings().size()) appendCellText(special.inner, source_.strings().text(index));
    special.inner += "</t></is>";
  }

  int difference(int id) {
    if (id < 0 || id >= static_cast<int>(differences_.size())) return 0;
    return target_.editStyles().addDifference(differences_[static_cast<std::size_t>(id)]);
  }

  const BookState& source_;
  BookState& target_;
  std::vector<std::string> differences_;
  std::unordered_map<StyleId, StyleId> styles_;
  std::unordered_map<std::uint32_t, std::uint32_t> texts_;
};

/// A copy of a table needs a name and a number of its own in the book.
void renameTables(Package& package, const std::string& sheetPart) {
  std::set<std::string> names;
  int highest = 0;
  const std::vector<std::string> own = relatedParts(package, sheetPart, "table");
  if (own.empty()) return;
  const auto isOwn = [&](const std::string& part) { return std::find(own.begin(), own.end(), part) != own.end(); };
  for (const std::string& part : package.names()) {
    if (package.contentTypes().typeOf(part).find("spreadsheetml.table+xml") == std::string_view::npos || isOwn(part))
      continue;
    const XmlFragment table(xmlAsUtf8(package.bytes(part), part), part);
    highest = std::max(highest, table.root().attribute("id").as_int());
    names.insert(partKey(table.root().attribute("displayName").value()));
  }
  for (const std::string& part : own) {
    editPart(package, part, [&](pugi::xml_node root) {
      const std::string stem = root.attribute("displayName").as_string("Table");
      std::string name = stem;
      for (int number = 2; !names.insert(partKey(name)).second; ++number) name = stem + "_" + std::to_string(number);
      setAttribute(root, "id", std::to_string(++highest));
      setAttribute(root, "name", name);
      setAttribute(root, "displayName", name);
      return true;
    });
  }
}

/// A book that has no theme of its own takes the one of the first book that a sheet comes from.
void copyTheme(const BookState& source, BookState& target) {
  if (!relatedParts(target.package, target.workbookPart, "theme").empty()) return;
  for (const std::string& theme : relatedParts(source.package, source.workbookPart, "theme")) {
    if (!source.package.has(theme)) continue;
    const std::string part =
        target.package.add(std::string(partFolder(target.workbookPart)) + "theme/theme", "xml",
                           "application/vnd.openxmlformats-officedocument.theme+xml", source.package.bytes(theme));
    target.package.relate(target.workbookPart, target.relationType("theme"), part);
    copyRelated(source.package, theme, target.package, part, [](const Relationship&) { return true; });
  }
}

/// What would point at things of the old book: the macro's name for the sheet, lists of slicers.
void dropTies(SheetModel& model, const std::string& part) {
  editSections(model, "sheetPr", part, [](pugi::xml_node root) { return root.remove_attribute("codeName"); });
  editSections(
      model, "extLst", part,
      [](pugi::xml_node root) {
        bool changed = false;
        for (pugi::xml_node ext = root.first_child(); ext;) {
          const pugi::xml_node next = ext.next_sibling();
          bool tied = false;
          forEachElement(ext, [&](pugi::xml_node node) {
            tied |= localName(node) == "slicerList" || localName(node) == "timelineRefs";
          });
          changed |= tied && root.remove_child(ext);
          ext = next;
        }
        return changed;
      },
      true);
}

}  // namespace

Worksheet& Workbook::copySheetFrom(const Workbook& source, int sheet, int before) {
  const BookState& from = *source.state_;
  BookState& book = *state_;
  const SheetSlot slot{from.slot(sheet).name, from.slot(sheet).part, "", "", true, false, {}, {}, {}, nullptr};
  if (before < 0 || before > sheetCount())
    throw WorkbookError(WorkbookFault::BadValue, "", "シートの位置が正しくありません.");
  SheetModel model = from.model(static_cast<std::size_t>(sheet));
  const bool elsewhere = &from != &book;
  if (elsewhere) copyTheme(from, book);
  std::optional<ModelTranslation> translation;
  if (elsewhere) translation.emplace(from, book).apply(model, slot.part);
  dropTies(model, slot.part);

  const std::string name = freeSheetName(book, slot.name);
  const FormulaEdit edit = [&](std::string_view formula, std::string_view) {
    const std::string known = dropSheets(formula, [&](std::string_view mentioned) {
      return sameSheet(mentioned, slot.name) || book.find(mentioned) >= 0;
    });
    return renameInFormula(known, slot.name, name);
  };
  editSheetFormulas(model, slot.name, edit, slot.part);
  std::vector<DefinedName> names;
  std::copy_if(from.names.begin(), from.names.end(), std::back_inserter(names),
               [&](const DefinedName& defined) { return defined.sheet == sheet; });

  Worksheet& copy = insertSheet(book, before, name, std::move(model));
  const std::string part = book.slots[static_cast<std::size_t>(before)].part;
  for (const std::string& made : copyRelated(from.package, slot.part, book.package, part, canFollow)) {
    if (book.package.contentTypes().typeOf(made).find("chart") == std::string_view::npos) continue;
    editPart(book.package, made, [&](pugi::xml_node root) {
      bool changed = false;
      forEachElement(root, [&](pugi::xml_node node) {
        if (localName(node) != "f") return;
        node.text().set(edit(node.text().get(), "").c_str());
        changed = true;
      });
      return changed;
    });
  }
  for (const std::string& table : relatedParts(book.package, part, "table"))
    if (translation)
      editPart(book.package, table, [&](pugi::xml_node root) { return translation->translateDifferences(root); });
  renameTables(book.package, part);
  for (DefinedName& defined : names) {
    defined.sheet = before;
    defined.formula = edit(defined.formula, "");
    book.names.push_back(std::move(defined));
    book.namesChanged = true;
  }
  chooseSheet(book, static_cast<std::size_t>(before), false);
  return copy;
}

}  // namespace quillmarden
