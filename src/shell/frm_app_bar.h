#pragma once

#include <filesystem>
#include <string>

#include "repository/session.h"
#include "screen/controls.h"
#include "screen/host.h"

namespace quillmarden {

struct Application;

/// The bar that is there as long as the session.
struct frmAppBar {
  std::string caption;
  Label lblLogin;  ///< user and Repository of the session
  std::string CmdLogOffCaption = "LogOff";
  std::string CmdSQLCaption = "SQL Editor";
  std::string CmdRepCaption = "レプリケーションの実行";
  std::string CmdMinCaption = "画面の隠す";  ///< "画面の表示" while all screens are hidden
  bool onTop = false;
  bool activated = false;  ///< its first activation is over
};

/// The bar's first activation: where the Repository lies; then the table list and a hidden detail screen open.
void frmAppBar_Activate(Application& app);

void CmdMin_Click(Application& app);
/// Does what CmdMin does.
void CmdSQL_Click(Application& app);
/// Starts the manager of replicas, which ends this program.
void CmdRep_Click(Application& app);
/// Opens the options. When they close, settings, fonts and colours are read and applied anew.
void CmdInfo_Click(Application& app);
void CmdHelp_Click(Application& app);
void CmdClose_Click(Application& app);
void mnuWindowTop_Click(Application& app);

/// Removes what runs left in the work folder of the session, in the order that the bar keeps to; this day's results
/// stay. Failures are ignored.
void sweepWorkFolder(const std::filesystem::path& folder, const DateTime& now);

}  // namespace quillmarden
