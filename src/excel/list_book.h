#pragma once

#include <string>
#include <vector>

#include "editing/frm_tb_detail.h"
#include "editing/frm_tb_list.h"
#include "excel/book_run.h"

namespace quillmarden {

/// The rows of LstTableSel or, when it is empty, all rows of LstTable: what an output of the list is made for.
std::vector<std::string> outputRows(const frmTBList& list);

/// The rows of LstTableSel or, when it is empty, the selected ones of LstTable.
std::vector<std::string> chosenRows(const frmTBList& list);
/// The parameter [wanted] of a statement for one table.
std::vector<ParameterValue> wantedTable(std::string_view tableId);

/// The combined list of tables, "_TableLayout.xlsx": a line a table or, `withFields`, a line a field. Gives the file,
/// "" after a message. A stopped run saves what it has and says so.
std::string pPutTableListLayout2Excel(Session& session, Host& host, BookRun& run, const frmTBList& list,
                                      bool withFields, bool openAfter);

/// mnuExcelSelList and, with field rows, mnuExcelSelListLayout: the list of the rows in LstTableSel.
std::string mnuExcelSelList_Click(Session& session, Host& host, BookRun& run, const frmTBList& list, bool withFields,
                                  bool openAfter);

/// The layouts of the output rows, table by table, and all of them collected in one book, "_テーブル一覧.xls". Asks
/// first. A stopped run asks whether to collect and open what there is.
std::string mnuExcel_Click(Session& session, Host& host, BookRun& run, const frmTBList& list, frmTBDetail& detail,
                           bool openAfter);
/// The layouts alone, a book each; gives the number of files.
int putSeparateLayouts(Session& session, Host& host, BookRun& run, const frmTBList& list, frmTBDetail& detail,
                       bool openFolder);

/// Opens the folder of the System's layouts.
void mnuExcelPath_Click(Session& session, Host& host);

}  // namespace quillmarden
