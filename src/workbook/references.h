#pragma once

#include <functional>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "workbook/book_state.h"

namespace quillmarden {

/// What becomes of a formula on the sheet `home` ("" for names of the book and charts).
using FormulaEdit = std::function<std::string(std::string_view formula, std::string_view home)>;

/// Runs over all formulas of the book: cells, validations, conditional formats, links within the book, names, charts,
/// tables. Sheets other than `sheet` that don't speak of its name are left unread, and those where nothing changes
/// stay untouched.
void editBookFormulas(BookState& book, std::size_t sheet, const FormulaEdit& edit);

/// The same for one sheet's cells and elements; true when something changed.
bool editSheetFormulas(SheetModel& model, std::string_view home, const FormulaEdit& edit, std::string_view part);

/// Rewrites the elements of a part through `change`, which tells whether it changed something.
bool editPart(Package& package, std::string_view part, const std::function<bool(pugi::xml_node root)>& change);
/// The same for the children of a sheet's root element with this name; a child without elements left is dropped when
/// `dropEmpty`.
bool editSections(SheetModel& model, std::string_view name, std::string_view part,
                  const std::function<bool(pugi::xml_node root)>& change, bool dropEmpty = false);

/// The parts that a part relates to by a type's last word.
std::vector<std::string> relatedParts(const Package& package, std::string_view part, std::string_view word);

}  // namespace quillmarden
