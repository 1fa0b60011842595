#pragma once

#include <string>

#include "editing/frm_tb_detail.h"
#include "excel/book_run.h"

namespace quillmarden {

/// How a message names what belongs to a table: a place in it, or the field of a row of the grid.
std::string placeInTable(const frmTBDetail& detail, std::string_view place);
std::string placeInTable(const frmTBDetail& detail, int row);

// The other two forms of a layout. Both give the file, "" after a message, and throw what the workbook or the
// Repository throws.

/// The System's own template, filled where its Format file says.
std::string pPutCurrentTable2ExcelUserFormat(Session& session, Host& host, BookRun& run, const frmTBDetail& detail,
                                             const SystemRecord& system, std::string_view systemName);
/// The grid as it stands, for tables that keep the rows of a program.
std::string PutExcelFile2PGControl(Session& session, Host& host, BookRun& run, const frmTBDetail& detail);

}  // namespace quillmarden
