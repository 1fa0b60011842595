#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "repository/rights.h"
#include "repository/session.h"
#include "screen/controls.h"
#include "screen/host.h"
#include "screen/windows.h"

namespace quillmarden {

/// The screen of one System: its record, the settings of its Database kind, how names are stored, and the tools that
/// work on all of its tables.
struct frmSystemInf {
  std::string caption = "システム基本情報";
  SystemRecord record;     ///< as read; its id is 0 and its name blank for a new System
  std::string_view focus;  ///< the control that the last message was about; the view goes there and clears it
  bool unloaded = false;   ///< the screen is done
  bool made = false;       ///< its save has made a System
  std::vector<std::string> loadedInput;  ///< what stood in the boxes
  bool hasAccessFile = false;            ///< this Repository has the column of the default Access file
  bool letterCaseChosen = false;         ///< a person said how names of fields are stored: no preset any more

  TextBox TxtSystemName;  ///< locked for a System that exists: its name changes through cmdChange alone
  TextBox TxtMemo;
  ComboBox CmbDBType;
  ComboBox CmbEdit;
  CheckBox ChkChangeData;  ///< システム全体を編集できないように設定します.
  CheckBox ChkNoPut;
  CheckBox ChkDataBase;
  TextBox TxtDataSource;
  TextBox txtUserName;
  TextBox TxtPassword;
  TextBox TxtLayoutFile;

  // --- the settings of the Database kind. A box is visible where its label is.
  Button CmdOracleSetting;
  std::string settingCaption;  ///< of CmdOracleSetting, which opens and closes the panel of the kind
  Picture FraDBSetting;
  Label lblSetName;
  Label lblDBBlock;
  Label lblTableSpace;
  Label lblIndex;
  TextBox TxtBlockSize;
  TextBox TxtTableSpace;
  TextBox TxtIndexSpace;
  Picture FraAccess;  ///< the panel of the kind Access
  TextBox TxtAccessFileName;
  TextBox TxtUserNameAccess;  ///< locked; shows the default Access file again

  // --- その他設定
  Button CmdOther;
  Picture FraOther;
  CheckBox ChkTableNameUcase;
  CheckBox ChkNarrow;  ///< テーブル名を常に半角として登録する
  CheckBox ChkFieldNameLcase;
  CheckBox ChkFieldNameUcase;
  CheckBox ChkFieldNameAsTyped;  ///< 項目名(物理)を入力のまま登録する
  CheckBox ChkFieldNameNarrow;
  CheckBox ChkRyakuLower;
  CheckBox ChkDelMoji;
  CheckBox chkReplaceJPNSpace;
  CheckBox chkFileLinkCopy;

  // --- tools. None works where the System can't be changed, and those on tables not before the System is saved.
  Button CmdProtect;
  Button CmdUnProtect;
  Button CmdChk;
  Button CmdCalc;
  Button CmdNarrow;
  Button CmdLowerCase;
  Button CmdDef0;
  Button CmdDel;
  Button cmdConvAccessSQLServer;
  Button CmdLayoutInfo;
  Button CmdLayoutCheck;
  Button CmdOpenFolder;
  Picture fraSystemChange;
  TextBox TxtSystemNameOld;  ///< locked
  TextBox TxtSystemNameNew;
  Button cmdChange;

  Button cmdOK;
  Button cmdCancel;
};

/// A column of MAS_SYSTEM that a text box edits, and one that a check box edits.
struct SystemTextColumn {
  std::string_view column;
  TextBox frmSystemInf::*control;
  std::string SystemRecord::*field;
};
struct SystemFlagColumn {
  std::string_view column;
  CheckBox frmSystemInf::*control;
  bool SystemRecord::*field;
};
std::span<const SystemTextColumn> systemTextColumns();
std::span<const SystemFlagColumn> systemFlagColumns();

/// The texts of CmbEdit; the place of each is what ユーザー制限 holds.
std::span<const std::string_view> userLimitTexts();

/// Fills the screen with a System; a blank name or kNewSystem opens it empty. False when there is no such System: the
/// screen is then that of a new one.
bool frmSystemInf_Load(Session& session, Host& host, frmSystemInf& screen, std::string_view systemName);
/// What follows when the screen is gone: the current System is read anew, and its screens are told.
void frmSystemInf_Unload(Session& session, Host& host, Windows& windows, const frmSystemInf& screen);

// --- changes on the screen
/// Another Database kind: labels and boxes of its settings, the port that a kind begins with, and for a new System how
/// its names of fields are stored.
void CmbDBType_Click(Session& session, Host& host, frmSystemInf& screen);
void CmdOracleSetting_Click(Session& session, Host& host, frmSystemInf& screen);
void CmdOther_Click(Session& session, Host& host, frmSystemInf& screen);
/// One of the three ways to store names of fields puts the others out.
void ChkFieldNameLcase_Click(Session& session, Host& host, frmSystemInf& screen);
void ChkFieldNameUcase_Click(Session& session, Host& host, frmSystemInf& screen);
void ChkFieldNameAsTyped_Click(Session& session, Host& host, frmSystemInf& screen);
void TxtAccessFileName_Change(Session& session, Host& host, frmSystemInf& screen);

// --- saving
/// Whether the record on show may be saved.
Right mayChangeRecord(Session& session, const frmSystemInf& screen);
/// The checks before a save. False after the message of the first fault.
bool checkSystemInf(Session& session, Host& host, frmSystemInf& screen);
/// Checks, asks and saves. True when the row is written; the screen is then done.
bool cmdOK_Click(Session& session, Host& host, frmSystemInf& screen);
/// Whether a person has changed what the save would write.
bool isChanged(const frmSystemInf& screen);
/// Asks about changes that are not saved. True when the screen is to stay.
bool keepsEditing(Host& host, const frmSystemInf& screen);
/// The end without a save, after that question.
void cmdCancel_Click(Session& session, Host& host, frmSystemInf& screen);

// --- tools on all tables of the System. Each asks first and tells how many rows it changed. What is in a locked or a
// deleted table stays as it is.
void CmdProtect_Click(Session& session, Host& host, frmSystemInf& screen);
void CmdUnProtect_Click(Session& session, Host& host, frmSystemInf& screen);
void CmdChk_Click(Session& session, Host& host, frmSystemInf& screen);
void CmdNarrow_Click(Session& session, Host& host, frmSystemInf& screen);
void CmdLowerCase_Click(Session& session, Host& host, frmSystemInf& screen);
void CmdDef0_Click(Session& session, Host& host, frmSystemInf& screen);
void CmdDel_Click(Session& session, Host& host, frmSystemInf& screen);
/// Opens the folder of the templates.
void CmdOpenFolder_Click(Session& session, Host& host, frmSystemInf& screen);

/// The checks before a rename to TxtSystemNameNew. False after the message of the first fault.
bool checkNewSystemName(Session& session, Host& host, frmSystemInf& screen);
/// Renames the System in every table and logs off. True when that was done.
bool cmdChange_Click(Session& session, Host& host, Windows& windows, frmSystemInf& screen);

}  // namespace quillmarden
