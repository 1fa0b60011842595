#pragma once

#include <string>

#include "editing/frm_tb_detail.h"
#include "editing/frm_tb_list.h"
#include "excel/book_run.h"

namespace quillmarden {

/// Which fields the boxes of an ER sheet show.
enum class ErFields {
  All,  ///< one column
  KeysOnly,
  TitleOnly,
  TwoColumns  ///< field and remark
};

struct ErChoice {
  ErFields fields = ErFields::All;
  bool foreignOnly = false;  ///< fields without a foreign key are left out
  std::string bookName{};    ///< of the file; blank for the System's name
  bool dotTitle = false;     ///< titles end in a full stop
  bool openAfter = false;
};

// Each draws the chosen tables (see readErTables), and those that their foreign keys name, as one sheet, and gives the
// file; "" after a message or when the person stopped it.

/// Each table as a small workbook that is embedded in the sheet: "_ER.xlsx".
std::string pPutExcel2ER(Session& session, Host& host, BookRun& run, const frmTBList& list, frmTBDetail& detail,
                         const ErChoice& choice);
/// The same as the older form has it: "_ER.xls", no full stop in titles, titles of two columns' width at most, and a
/// failure is told in the log alone.
std::string pPutExcel2ERMemoryExtend(Session& session, Host& host, BookRun& run, const frmTBList& list,
                                     frmTBDetail& detail, const ErChoice& choice);
/// Each table as a text box, joined by connectors that follow the boxes: "_ER.xls".
std::string pPutExcel2ERTextBox(Session& session, Host& host, BookRun& run, const frmTBList& list, frmTBDetail& detail,
                                const ErChoice& choice);
/// Each table as a disk, joined in the same way, in a work file.
std::string pPutCurrentTable2ExcelDisk(Session& session, Host& host, BookRun& run, const frmTBList& list,
                                       frmTBDetail& detail, bool openAfter);

}  // namespace quillmarden
