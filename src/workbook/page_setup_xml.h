#pragma once

#include <string>

#include "workbook/page_setup.h"
#include "workbook/sheet_model.h"

namespace quillmarden {

/// What the sheet's elements say of the page; titles and print area are names of the book.
PageSetup readPageSetup(const SheetModel& sheet, const std::string& part);
/// Sets what differs from `before`; other attributes of the elements stay.
void writePageSetup(SheetModel& sheet, const PageSetup& before, const PageSetup& setup, const std::string& part);
/// Throws WorkbookError (BadValue) for numbers out of range and texts that are too long.
void checkPageSetup(const PageSetup& setup);

}  // namespace quillmarden
