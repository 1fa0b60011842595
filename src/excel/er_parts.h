#pragma once

#include <string>

#include "editing/frm_tb_list.h"
#include "excel/book_run.h"
#include "excel/er_tables.h"

namespace quillmarden {

// What the forms of an ER sheet share.

/// The font of the boxes.
SizedFont erFont();
/// The name of the sheet with embedded books: the filters that chose the tables.
std::string erSheetName(const frmTBList& list);
namespace er_paper {
inline constexpr int kA3 = 8;
inline constexpr int kA4 = 9;
}  // namespace er_paper
/// One landscape page with the times in its head.
void setUpErPage(Worksheet& sheet, const DateTime& now, int paper = er_paper::kA4);
/// Without the reference marks < > [ ].
std::string gFileNameTrim(std::string_view name);
/// The file for an ER sheet in the System's folder; "" after a message.
std::string erFile(Session& session, Host& host, const BookRun& run, const std::string& bookName,
                   std::string_view ending);
/// Logs what ended the run, and tells it with `tell`.
void noteErError(Session& session, Host& host, const std::exception& error, bool tell);

/// Runs a form of the sheet with its wait text, its error path and, if asked for, the opening of the file.
template <typename Form>
std::string runErForm(Session& session, Host& host, BookRun& run, bool openAfter, bool tellFailure, Form&& form) {
  const WaitText wait(host, "Excel出力中です....");
  try {
    const std::string path = form();
    if (openAfter && !path.empty()) {
      session.log.gPutLog(host, "OpenFileExcel:" + path);
      openFinished(host, path);
    }
    return path;
  } catch (const WorkbookError& error) {
    if (error.fault() == WorkbookFault::Stopped) return endStopped(host, run);
    noteErError(session, host, error, tellFailure);
    return "";
  } catch (const std::exception& error) {
    noteErError(session, host, error, tellFailure);
    return "";
  }
}

}  // namespace quillmarden
