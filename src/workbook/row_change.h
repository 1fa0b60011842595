#pragma once

#include "workbook/book_state.h"
#include "workbook/formula_shift.h"

namespace quillmarden {

/// Lets rows come or go on a sheet, with all that hangs on them in the whole book.
void changeRows(BookState& book, std::size_t sheet, const RowChange& change);

/// Lets the validations and conditional formats that hold for row `from` hold for row `to` as well.
void extendRules(SheetModel& model, int from, int to, std::string_view part);

}  // namespace quillmarden
