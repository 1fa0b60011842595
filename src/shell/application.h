#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "dictionary/frm_divi_info.h"
#include "dictionary/frm_divi_ref.h"
#include "dictionary/frm_division.h"
#include "editing/frm_sp_sort.h"
#include "editing/frm_tb_detail.h"
#include "editing/frm_tb_info.h"
#include "editing/frm_tb_list.h"
#include "editing/grid_backup.h"
#include "editing/grid_operations.h"
#include "excel/query_report.h"
#include "operations/memo.h"
#include "operations/rows.h"
#include "repository/frm_system_inf.h"
#include "repository/login.h"
#include "repository/session.h"
#include "screen/host.h"
#include "screen/windows.h"
#include "shell/frm_about.h"
#include "shell/frm_app_bar.h"
#include "shell/frm_color.h"
#include "shell/frm_details_list.h"
#include "shell/frm_message_close.h"
#include "shell/frm_msg.h"
#include "shell/frm_options.h"
#include "shell/frm_splash.h"
#include "shell/frm_stop.h"
#include "shell/frm_task.h"
#include "shell/open_screens.h"

namespace quillmarden {

/// The detail screen for which frmSpSort or frmDiviRef stands open, and what it showed then.
struct Caller {
  std::string screen;
  std::string tableId;
  int row = 0;
};

/// The running program: the session, the seams to the outside, and the records of all screens. There is one a
/// process. A screen's record lives as long as the screen is open and is blank again afterwards.
struct Application {
  /// The front fills `display` before startProgram.
  explicit Application(Host& outside);
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  Host& host;
  Session session;
  Windows windows;  ///< connected to this record from the start
  Display display;

  OpenScreens open;  ///< which screens stand open, in their order
  bool ended = false;

  frmSplash splash;
  frmLogInNew logIn;
  frmAppBar bar;
  frmTASK task;
  frmDetailsList detailsList;
  frmMessageClose messageClose;
  frmAbout about;
  frmMSG msg;
  frmSTOP stop;
  frmOptions options;
  frmCOLOR color;
  frmTBList list;
  /// Every detail screen by its name. "frmTBDetail" is the one that the list and the generators fill.
  std::map<std::string, frmTBDetail, std::less<>> details;
  /// Beside each detail screen, the copy of its unsaved rows that outlives a crash.
  std::map<std::string, GridBackup, std::less<>> backups;
  /// Copies of a died program that the person has been asked about in this session.
  std::set<std::filesystem::path> askedLeftOvers;
  std::string toldSystem;  ///< the System that the screens were told of last
  CopyHistory copies;      ///< what the grids of all detail screens have copied
  frmTBInfo tbInfo;
  frmSystemInf systemInf;
  frmDivision division;
  frmDiviInfo diviInfo;
  frmDiviRef diviRef;
  frmKENSU kenSu;
  frmReport report;
  frmMemo memo;
  frmSpSort spSort;

  /// The table whose header opens next, "" for a new one; without a value that of the detail screen raised last.
  std::optional<std::string> tbInfoFor;
  Caller caller;

  /// The detail screen of this name, the main one when there is none of it.
  frmTBDetail& detail(std::string_view screen = "frmTBDetail");
  const frmTBDetail& detail(std::string_view screen = "frmTBDetail") const;
  /// The name of the detail screen that was raised last, "frmTBDetail" when there is none.
  std::string activeDetail() const;
  /// Notes the detail screen that another screen opens for.
  void callFrom(std::string_view screen);
  /// That detail screen, nullptr when it has gone or shows another table by now.
  frmTBDetail* callingDetail();
};

}  // namespace quillmarden
