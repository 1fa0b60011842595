#include "workbook/row_change.h"

#include <algorithm>

#include "workbook/anchors.h"
#include "workbook/references.h"
#include "workbook/xml_fragment.h"

namespace quillmarden {

namespace {

/// Ranges with blanks between them.
std::vector<CellRange> rangesOf(std::string_view list) {
  std::vector<CellRange> ranges;
  while (!list.empty()) {
    const std::size_t blank = std::min(list.find(' '), list.size());
    if (const auto range = parseRange(list.substr(0, blank))) ranges.push_back(*range);
    list.remove_prefix(std::min(blank + 1, list.size()));
  }
  return ranges;
}

std::string listOf(const std::vector<CellRange>& ranges) {
  std::string list;
  for (const CellRange& range : ranges) list += (list.empty() ? "" : " ") + rangeName(range);
  return list;
}

std::vector<CellRange> shifted(const std::vector<CellRange>& ranges, const RowChange& change) {
  std::vector<CellRange> kept;
  for (const CellRange& range : ranges)
    if (const auto moved = shiftRange(range, change)) kept.push_back(*moved);
  return kept;
}

enum class Outcome { Same, Changed, Gone };

/// An attribute with one or more ranges.
Outcome shiftAttribute(pugi::xml_attribute attribute, const RowChange& change) {
  const std::vector<CellRange> before = rangesOf(attribute.value());
  if (before.empty()) return Outcome::Same;
  const std::vector<CellRange> after = shifted(before, change);
  if (after.empty()) return Outcome::Gone;
  if (after == before) return Outcome::Same;
  attribute.set_value(listOf(after).c_str());
  return Outcome::Changed;
}

/// The children of `root` whose attribute names ranges; one whose cells went is removed, and a count is kept true.
bool shiftChildren(pugi::xml_node root, const char* attribute, const RowChange& change) {
  bool changed = false;
  for (pugi::xml_node child = root.first_child(); child;) {
    const pugi::xml_node next = child.next_sibling();
    const Outcome outcome = shiftAttribute(child.attribute(attribute), change);
    if (outcome == Outcome::Gone) root.remove_child(child);
    changed |= outcome != Outcome::Same;
    child = next;
  }
  if (changed && root.attribute("count")) {
    const auto count = std::count_if(root.begin(), root.end(),
                                     [](const pugi::xml_node& child) { return child.type() == pugi::node_element; });
    root.attribute("count").set_value(static_cast<long long>(count));
  }
  return changed;
}

/// "ref" of the element and of those within, as filters and sorts have them; Gone when the element's own cells went.
Outcome shiftRefs(pugi::xml_node root, const RowChange& change) {
  Outcome outcome = shiftAttribute(root.attribute("ref"), change);
  if (outcome == Outcome::Gone) return outcome;
  for (pugi::xml_node child = root.first_child(); child;) {
    const pugi::xml_node next = child.next_sibling();
    const Outcome inner = shiftRefs(child, change);
    if (inner == Outcome::Gone) root.remove_child(child);
    if (inner != Outcome::Same) outcome = Outcome::Changed;
    child = next;
  }
  return outcome;
}

bool shiftBreaks(pugi::xml_node root, const RowChange& change) {
  bool changed = false;
  int breaks = 0;
  int manual = 0;
  for (pugi::xml_node child = root.first_child(); child;) {
    const pugi::xml_node next = child.next_sibling();
    const int before = child.attribute("id").as_int();
    const auto after = shiftRow(before, change);
    if (after) {
      changed |= *after != before;
      if (*after != before) child.attribute("id").set_value(*after);
      ++breaks;
      manual += flag(child, "man") ? 1 : 0;
    } else {
      root.remove_child(child);
      changed = true;
    }
    child = next;
  }
  if (changed) {
    setAttribute(root, "count", std::to_string(breaks));
    setAttribute(root, "manualBreakCount", std::to_string(manual));
  }
  return changed;
}

/// The selections of the sheet's views; where the chosen cells went, what took their place.
bool shiftViews(pugi::xml_node root, const RowChange& change) {
  bool changed = false;
  forEachElement(root, [&](pugi::xml_node node) {
    if (localName(node) != "selection") return;
    const auto before = parseCell(node.attribute("activeCell").value());
    if (!before) return;
    const CellRef after{shiftRow(before->row, change).value_or(change.first), before->column};
    const Outcome outcome = shiftAttribute(node.attribute("sqref"), change);
    if (outcome == Outcome::Gone || after != *before) setAttribute(node, "activeCell", cellName(after));
    if (outcome == Outcome::Gone) setAttribute(node, "sqref", cellName(after));
    changed |= outcome != Outcome::Same || after != *before;
  });
  return changed;
}

/// Ranges that newer elements have as text.
bool shiftExtensions(pugi::xml_node root, const RowChange& change) {
  bool changed = false;
  forEachElement(root, [&](pugi::xml_node node) {
    if (localName(node) != "sqref") return;
    const std::vector<CellRange> before = rangesOf(node.text().get());
    std::vector<CellRange> after = shifted(before, change);
    if (after == before) return;
    // The rule itself is not ours to take away; it stays on the row that took the place.
    if (after.empty()) after.push_back(CellRange({change.first, before.front().first.column}));
    node.text().set(listOf(after).c_str());
    changed = true;
  });
  return changed;
}

void shiftElements(SheetModel& model, const RowChange& change, std::string_view part) {
  const auto children = [&](const char* section, const char* attribute) {
    editSections(
        model, section, part, [&](pugi::xml_node root) { return shiftChildren(root, attribute, change); }, true);
  };
  const auto refs = [&](const char* section) {
    bool gone = false;
    editSections(model, section, part, [&](pugi::xml_node root) {
      const Outcome outcome = shiftRefs(root, change);
      if (outcome == Outcome::Gone) gone = true;
      return outcome != Outcome::Same;
    });
    if (gone) model.xml.remove(section);
  };
  children("dataValidations", "sqref");
  children("ignoredErrors", "sqref");
  children("protectedRanges", "sqref");
  children("hyperlinks", "ref");
  children("cellWatches", "r");
  refs("sortState");
  refs("autoFilter");
  editSections(
      model, "conditionalFormatting", part,
      [&](pugi::xml_node root) {
        const Outcome outcome = shiftAttribute(root.attribute("sqref"), change);
        if (outcome == Outcome::Gone) root.remove_children();
        return outcome != Outcome::Same;
      },
      true);
  editSections(
      model, "rowBreaks", part, [&](pugi::xml_node root) { return shiftBreaks(root, change); }, true);
  editSections(model, "sheetViews", part, [&](pugi::xml_node root) { return shiftViews(root, change); });
  editSections(model, "extLst", part, [&](pugi::xml_node root) { return shiftExtensions(root, change); });
  for (const char* section : {"oleObjects", "controls"})
    editSections(model, section, part, [&](pugi::xml_node root) { return shiftAnchors(root, change); });
}

void shiftCells(SheetModel& model, const RowChange& change) {
  auto& rows = model.rows;
  if (!change.inserted)
    std::erase_if(rows,
                  [&](const StoredRow& row) { return row.number >= change.first && row.number <= change.last(); });
  for (StoredRow& row : rows)
    if (row.number >= change.first) row.number += change.inserted ? change.count : -change.count;
  for (SpecialCell& special : model.specials)
    if (special.form == SpecialCell::Form::Array || special.form == SpecialCell::Form::DataTable)
      special.ref = shiftRange(special.ref, change).value_or(special.ref);
  std::vector<CellRange> merges;
  for (const CellRange& range : model.merges) {
    const auto moved = shiftRange(range, change);
    if (moved && moved->first != moved->last) merges.push_back(*moved);
  }
  model.mergesChanged |= merges != model.merges;
  model.merges = std::move(merges);
}

/// The parts that belong to the sheet: drawings, notes, tables, pivots.
void shiftParts(Package& package, const std::string& part, const RowChange& change) {
  const auto anchors = [&](pugi::xml_node root) { return shiftAnchors(root, change); };
  const auto refs = [&](pugi::xml_node root) { return shiftRefs(root, change) == Outcome::Changed; };
  for (const std::string& drawing : relatedParts(package, part, "drawing")) editPart(package, drawing, anchors);
  for (const std::string& legacy : relatedParts(package, part, "vmlDrawing")) {
    if (!package.has(legacy)) continue;
    const std::string before = package.bytes(legacy);
    std::string after = shiftLegacyAnchors(before, change);
    if (after != before) package.set(legacy, std::move(after));
  }
  for (const std::string_view word : {"table", "comments", "threadedComment", "pivotTable"})
    for (const std::string& related : relatedParts(package, part, word)) editPart(package, related, refs);
}

/// Rows that pivots elsewhere in the book are made from.
void shiftPivotSources(BookState& book, const std::string& sheet, const RowChange& change) {
  for (const std::string& cache : relatedParts(book.package, book.workbookPart, "pivotCacheDefinition")) {
    editPart(book.package, cache, [&](pugi::xml_node root) {
      const pugi::xml_node source = childNamed(childNamed(root, "cacheSource"), "worksheetSource");
      if (!sameSheet(source.attribute("sheet").value(), sheet)) return false;
      return shiftAttribute(source.attribute("ref"), change) == Outcome::Changed;
    });
  }
}

}  // namespace

void changeRows(BookState& book, std::size_t sheet, const RowChange& change) {
  SheetSlot& slot = book.slots[sheet];
  SheetModel& model = book.editModel(sheet);
  if (change.inserted && !model.rows.empty() && model.rows.back().number >= change.first &&
      model.rows.back().number + change.count > kMaxSheetRow)
    throw WorkbookError(WorkbookFault::BadAddress, "", "行を挿入すると, シートの外に出るデータがあります.");
  shiftCells(model, change);
  shiftElements(model, change, slot.part);
  shiftParts(book.package, slot.part, change);
  shiftPivotSources(book, slot.name, change);
  const std::string name = slot.name;
  editBookFormulas(book, sheet, [&](std::string_view formula, std::string_view home) {
    return shiftFormula(formula, home, name, change);
  });
}

void extendRules(SheetModel& model, int from, int to, std::string_view part) {
  const auto extend = [&](pugi::xml_attribute attribute) {
    std::vector<CellRange> ranges = rangesOf(attribute.value());
    const std::size_t count = ranges.size();
    bool changed = false;
    for (std::size_t i = 0; i < count; ++i) {
      const CellRange range = ranges[i];
      if (from < range.first.row || from > range.last.row) continue;
      const CellRange copy({to, range.first.column}, {to, range.last.column});
      const bool covered = std::any_of(ranges.begin(), ranges.end(), [&](const CellRange& other) {
        return other.contains(copy.first) && other.contains(copy.last);
      });
      if (covered) continue;
      changed = true;
      if (to == range.last.row + 1) {
        ranges[i].last.row = to;
      } else {
        ranges.push_back(copy);
      }
    }
    if (changed) attribute.set_value(listOf(ranges).c_str());
    return changed;
  };
  editSections(model, "conditionalFormatting", part,
               [&](pugi::xml_node root) { return extend(root.attribute("sqref")); });
  editSections(model, "dataValidations", part, [&](pugi::xml_node root) {
    bool changed = false;
    for (pugi::xml_node child : root.children()) changed |= extend(child.attribute("sqref"));
    return changed;
  });
}

}  // namespace quillmarden
