#include <utility>

#include "common/message.h"
#include "common/paths.h"
#include "excel/layout_names.h"
#include "excel/list_book.h"
#include "excel/table_layout.h"

namespace quillmarden {
namespace {

/// A layout that a run has made.
struct MadeLayout {
  std::string table;
  std::string path;
};

/// The layouts of the rows, a book each. False when the person stopped it.
bool putLayouts(Session& session, Host& host, BookRun& run, const std::vector<std::string>& rows, frmTBDetail& detail,
                std::vector<MadeLayout>& made) {
  SystemRecord system;
  if (!readOutputSystem(session, host, session.gCurrentSystemName, system)) return true;
  // Named, so that the tables of programs don't share one work file.
  if (run.outputFolder.empty()) run.outputFolder = toPath(system.workFolder);
  long done = 0;
  for (const std::string& row : rows) {
    if (host.dialogs.stopRequested()) {
      run.stopped = true;
      return false;
    }
    const std::string id(tableListId(row));
    std::string path;
    if (!id.empty() && !pGet_TableID2TableDetails(session, host, detail, id))
      path = pPutCurrentTable2ExcelFile(session, host, run, detail, session.gCurrentSystemName, false);
    if (path.empty())
      ++run.missing;
    else
      made.push_back({detail.txtTableNameJPN.text, std::move(path)});
    host.dialogs.progress(++done, static_cast<long>(rows.size()));
    host.dialogs.yield();
  }
  return true;
}

/// Collects the first sheet of each book in one: the newest stands first.
std::string pPutTableList2Excel(Session& session, Host& host, BookRun& run, const std::vector<MadeLayout>& layouts) {
  const WaitText wait(host, "Excel出力中です...");
  SystemRecord system;
  if (!readOutputSystem(session, host, session.gCurrentSystemName, system)) return "";
  std::string path = layoutFile(session, run, system, session.gCurrentSystemName + "_テーブル一覧.xls");
  if (!mayReplaceOrTell(session, host, path)) return "";
  Workbook book = Workbook::open(layouts.front().path);
  for (std::size_t i = 1; i < layouts.size(); ++i) {
    // Who has stopped the layouts has just asked for this book of those that there are.
    if (!run.stopped && host.dialogs.stopRequested()) {
      run.stopped = true;
      gMsgBox(host, "Excel出力を中止しました.");
      break;
    }
    host.dialogs.waitText("Excel.まとめ中です...");
    book.copySheetFrom(Workbook::open(layouts[i].path), 0, 0);
    host.dialogs.progress(static_cast<long>(i + 1), static_cast<long>(layouts.size()));
    host.dialogs.yield();
  }
  book.setActiveSheet(0);
  if (run.stopped) path = stoppedFile(session, host, path);
  saveBook(session, host, book, session.gCurrentSystemName, path);
  return path;
}

}  // namespace

std::string mnuExcel_Click(Session& session, Host& host, BookRun& run, const frmTBList& list, frmTBDetail& detail,
                           bool openAfter) {
  if (gMsgBox(host, "Excelファイルを作成します.", kYesNo | kQuestionIcon) != kYes) return "";
  std::vector<MadeLayout> layouts;
  // The file of the run is the collection's; what goes into it keeps names of its own.
  std::filesystem::path collection = std::exchange(run.outputFile, {});
  const bool whole = putLayouts(session, host, run, outputRows(list), detail, layouts);
  run.outputFile = std::move(collection);
  if (!whole &&
      gMsgBox(host, joinLines({"Excel出力を中止しました.", "ファイルを開きますか?"}), kYesNo | kQuestionIcon) != kYes) {
    return "";
  }
  tellNumbered(host, run);
  if (layouts.empty()) return "";
  return runOutput(session, host, "pPutTableList2Excel", openAfter,
                   [&] { return pPutTableList2Excel(session, host, run, layouts); });
}

int putSeparateLayouts(Session& session, Host& host, BookRun& run, const frmTBList& list, frmTBDetail& detail,
                       bool openFolder) {
  if (gMsgBox(host, "Excelファイルを作成します.", kYesNo | kQuestionIcon) != kYes) return 0;
  std::vector<MadeLayout> layouts;
  if (!putLayouts(session, host, run, outputRows(list), detail, layouts)) gMsgBox(host, "Excel出力を中止しました.");
  tellNumbered(host, run);
  if (openFolder && !layouts.empty()) mnuExcelPath_Click(session, host);
  return static_cast<int>(layouts.size());
}

}  // namespace quillmarden
