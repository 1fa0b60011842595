#include "excel/value_list_book.h"

#include "excel/grid_sheet.h"

namespace quillmarden {
namespace {

std::string pPutCurrentAtaiList2ExcelFile(Session& session, Host& host, BookRun& run, const frmDivision& screen) {
  const WaitText wait(host, "Excel出力中です....");
  const std::string path = workFile(session, run, "temptemp.xlsx");
  if (!mayReplaceOrTell(session, host, path)) return "";
  const ValueListSheet list = valueListSheet(screen, session.gCurrentSystemName);
  const SheetGrid grid = {.titles = list.titles,
                          .rows = static_cast<int>(list.rows.size()),
                          .text = [&list](int column, int row) -> std::string_view {
                            return list.rows[static_cast<std::size_t>(row - 1)][static_cast<std::size_t>(column - 1)];
                          },
                          // The codes of a list of texts stay what they are, leading zeros and signs included.
                          .numbers = screen.lblKata.caption != "文字"};
  Workbook book = gridBook(run, list.heading, grid);
  saveBook(session, host, book, screen.lblAtai.caption, path);
  tellCutTexts(host, run);
  return path;
}

}  // namespace

std::string CmdExcel_Click(Session& session, Host& host, BookRun& run, const frmDivision& screen, bool openAfter) {
  if (pChkDivisionExcel(session, host, screen)) return "";
  return runOutput(session, host, "pPutCurrentAtaiList2ExcelFile", openAfter,
                   [&] { return pPutCurrentAtaiList2ExcelFile(session, host, run, screen); });
}

}  // namespace quillmarden
