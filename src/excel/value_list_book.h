#pragma once

#include <string>

#include "dictionary/frm_division.h"
#include "excel/book_run.h"

namespace quillmarden {

/// Asks, and writes the value list on show to a workbook. Gives the file, "" after a message.
std::string CmdExcel_Click(Session& session, Host& host, BookRun& run, const frmDivision& screen, bool openAfter);

}  // namespace quillmarden
