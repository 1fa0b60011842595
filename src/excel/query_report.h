#pragma once

#include <array>
#include <string>
#include <string_view>

#include "excel/book_run.h"
#include "screen/controls.h"
#include "screen/spread.h"

namespace quillmarden {

/// The report screen: stored queries of the Repository, run with up to two parameters.
struct frmReport {
  std::string caption;
  ComboBox CmbDataSource;
  std::array<TextBox, 2> TxtPara;
  std::array<std::string, 2> TxtParaTips;  ///< the parameters' names
  std::array<Label, 2> lblKata;            ///< the parameters' types
  Button CmdFind;
  Button CmdExcel;
  Button CmdAccess;
  Button CmdClose;
  quillmarden::Spread Spread;
  Label lblNum;  ///< the number of rows
  Picture PicMsg;
  Label lblMsg;
  int focusPara = -1;  ///< the parameter field that the last check found wrong
};

/// What the names of the offered queries begin with.
inline constexpr std::string_view kReportPrefix = "出力_";

void frmReport_Load(Session& session, Host& host, frmReport& screen);
/// Fills the list of queries.
void pGetQueryList(Session& session, frmReport& screen);
/// Readies the parameter fields of the chosen query. True when it can't be run: too many parameters, no query at all.
bool CmbDataSource_Click(Session& session, Host& host, frmReport& screen);
/// Tests the parameter fields by their types. True, after a message, when one is wrong.
bool pChkPara(Host& host, frmReport& screen);
/// Asks, checks and runs the query. True when the grid holds no new result.
bool CmdFind_Click(Session& session, Host& host, frmReport& screen);
/// Asks, and writes the grid to a workbook. Gives the file, "" after a message.
std::string CmdExcel_Click(Session& session, Host& host, BookRun& run, frmReport& screen, bool openAfter);
/// Opens the Repository with the program that the desktop has for it.
void CmdAccess_Click(Session& session, Host& host, frmReport& screen);

}  // namespace quillmarden
