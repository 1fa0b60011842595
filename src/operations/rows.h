#pragma once

#include <array>
#include <string>
#include <string_view>

#include "repository/session.h"
#include "screen/controls.h"
#include "screen/host.h"

namespace quillmarden {

/// What a user can change of a row-count definition.
struct KenSuRecord {
  std::string name;     ///< 定義名
  std::string outline;  ///< 概要
  std::string count;    ///< 件数
  std::array<std::string, 3> tables;
  bool allSystems = false;

  bool operator==(const KenSuRecord&) const = default;
};

/// The row-count definitions of a System.
struct frmKENSU {
  std::string caption;
  ListBox LstTeigi;  ///< rows of kenSuRow
  TextBox TxtName;
  TextBox Txtbiko;
  TextBox TxtSu;
  TextBox TxtTb1;
  TextBox TxtTb2;
  TextBox TxtTb3;
  CheckBox ChkAllSystem;
  Label lblEditSystem;  ///< the System of the definition on show
  Label lblID;          ///< its ID, "" for a new one
  ListBox lstTb;        ///< names of tables to be taken into TxtTb1 to TxtTb3
  bool lstTbVisible = false;
  int activeTb = 0;  ///< which of TxtTb1 to TxtTb3 had the cursor last; 0 for none
  Button CmdRef;     ///< shows and hides lstTb
  Button CmdUpDate;
  Button CmdAddNew;
  Button CmdClear;
  Button CmdClose;
  KenSuRecord loaded;  ///< as it was read
  bool unloaded = false;
};

/// The name, 51 blanks and the ID.
std::string kenSuRow(std::string_view name, std::string_view id);
/// The ID at the end of such a row, "" when there is none.
std::string_view kenSuRowId(std::string_view row);
/// What stands on the screen.
KenSuRecord kenSuRecord(const frmKENSU& screen);

/// The screen as it opens and after another System was chosen.
void frmKENSU_Load(Session& session, Host& host, frmKENSU& screen);
/// Fills LstTeigi with the System's own definitions and all common ones; the one on show is chosen. True on failure,
/// after its message.
bool pGetKenSuTeigi(Session& session, Host& host, frmKENSU& screen);
/// The commands follow gCanEdit; what is being typed stays.
void refreshRights(const Session& session, frmKENSU& screen);
/// Shows the chosen definition; asks first when the one on show has unsaved changes. True when it was not shown.
bool LstTeigi_Click(Session& session, Host& host, frmKENSU& screen);
void CmdRef_Click(frmKENSU& screen);
/// Takes the chosen table into the box that had the cursor last, else into the first blank one.
void lstTb_DblClick(frmKENSU& screen);

/// The checks before a save; true after the message about the first fault.
bool pChkKenSu(const Session& session, Host& host, const frmKENSU& screen);
/// Checks, asks and saves under the name on the screen. True when nothing was saved.
bool CmdUpDate_Click(Session& session, Host& host, frmKENSU& screen);
/// Both empty the screen for a new definition, after a question when there are unsaved changes.
void CmdAddNew_Click(Session& session, Host& host, frmKENSU& screen);
void CmdClear_Click(Session& session, Host& host, frmKENSU& screen);
/// True when the screen stays open.
bool CmdClose_Click(Host& host, frmKENSU& screen);

}  // namespace quillmarden
