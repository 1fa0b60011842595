#pragma once

#include <string>
#include <string_view>

#include "editing/frm_tb_detail.h"
#include "excel/book_run.h"

namespace quillmarden {

/// The form that layouts are printed on, in the program's folder.
inline constexpr std::string_view kBlankBook = "t白紙.xls";

/// When a table was made and changed, "yyyy/mm/dd hh:nn", and by whom; empty where that is not known.
struct TableDates {
  std::string created;
  std::string changed;
  std::string author;
  std::string changer;
};

TableDates GetTableName作成変更日(Session& session, std::string_view tableId);

/// Writes the layout of the table on the screen: the grid as it stands for a PG管理 table, the System's own template
/// where it names one, the blank book otherwise. `openAfter`: tells so and opens it. Gives the file, "" after a
/// message (or, for a faulty Format file, after a line in the log).
std::string pPutCurrentTable2ExcelFile(Session& session, Host& host, BookRun& run, const frmTBDetail& detail,
                                       std::string_view system, bool openAfter);

}  // namespace quillmarden
