#pragma once

#include "workbook/sheet_model.h"

namespace quillmarden {

/// Reads the rows and cells of a sheet: the scanner stands behind the start tag of sheetData and is taken behind its
/// end. `texts` is how many texts the book's pool holds.
void readSheetData(SheetModel& model, XmlScanner& scanner, std::size_t texts);

}  // namespace quillmarden
