#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "repository/session.h"
#include "screen/controls.h"
#include "screen/host.h"
#include "screen/windows.h"

namespace quillmarden {

/// The storage values of a table, by their places in frmTBInfo::TxtOra.
enum OraValue { kOraInitial, kOraNext, kOraMaxExtents, kOraMinExtents, kOraPctIncrease, kOraPctUsed, kOraPctFree };

/// "テーブル基本情報": the header of a table, new or to be changed.
struct frmTBInfo {
  std::string caption;
  Label lblID;  ///< "" until the first save
  Label lblSystemName;
  TextBox TxtJPN;
  TextBox TxtTableName;
  TextBox TxtRyaku;
  Label lblTableNameForm;  ///< the form that the System gives to table names, "" for none
  Label lblRyakuForm;
  ListBox lstRyaku;  ///< "略名の一覧": short names in use that begin like TxtRyaku
  TextBox TxtMemo;   ///< 概要
  ComboBox CmbBunrui;
  ComboBox CmbHost;
  ComboBox CmbFileType;  ///< the Database kind
  ComboBox CmbKanKaku;   ///< 作成間隔
  ComboBox CmbDataBunrui;
  ComboBox CmbDataBunrui2;
  ComboBox CmbInpData;              ///< データ入力元
  TextBox TxtInpForm;               ///< 画面名等
  ComboBox CmbStat;                 ///< 進捗状況
  TextBox TxtTanto;                 ///< 担当者名
  TextBox TxtMakeDate;              ///< 作成日; 参加日 of a member table
  TextBox TxtEndDate;               ///< 完了日; 終了予定日
  TextBox TxtChgDate;               ///< 変更日; 終了日
  std::array<TextBox, 4> TxtKensu;  ///< 現在数, 想定数, 現在保持, 想定保持
  ComboBox CmbKensu;                ///< the row-count definition
  std::vector<long> kensuIds;       ///< the ID behind each entry of CmbKensu
  std::array<TextBox, 7> TxtOra;    ///< in the order of OraValue
  TextBox TxtTbSpace;
  TextBox TxtIndexSpace;
  CheckBox ChkEditOK;  ///< 修正許可
  CheckBox ChkAllSystem;
  CheckBox ChkRecUpdate;  ///< レコード更新削除
  CheckBox ChkReverse;    ///< REVERSE_DB
  CheckBox ChkPmark;
  CheckBox ChkBRIN;
  CheckBox ChkTrigger;
  TextBox TxtRefFileName;
  Button cmdOK;
  Button cmdRefFileOpen;
  Button cmdClearRefFile;
  Button cmdFileMemo;
  ComboBox CmbMoveSystem;  ///< the System that the table is to move to
  Button cmdMoveSystem;
  // --- kept from the load
  std::string copyOf;  ///< the table whose fields go along with the first save; "" for none
  bool loading = false;
  std::string loadedJPN;     ///< with it a change of the name is seen
  bool loadedEditOK = true;  ///< the lock as it was loaded
  std::string loadedTableName;
  std::string loadedFileType;
  bool loadedReverse = false;
  std::vector<std::string> loadedInput;  ///< what stood in the boxes
  // --- for the view
  bool refused = false;    ///< a save was refused: what is still missing is marked
  std::string_view focus;  ///< the control that the last message was about; the view goes there and clears it
  // --- for the caller
  bool saved = false;  ///< the list is to be refreshed
  std::string savedTableName;
  std::string savedJPN;
};

/// Fills the screen for a table, or for a new one of the current System with the ID "". True when there is no such
/// table, after its message.
bool frmTBInfo_Load(Session& session, Host& host, frmTBInfo& screen, std::string_view tableId);
/// Save and move follow the rights as they are now.
void refreshRights(Session& session, frmTBInfo& screen);

/// Whether a person has changed what the save would write.
bool isChanged(const frmTBInfo& screen);
/// The end without a save, after a question where something is changed. True when the screen stays.
bool cmdCancel_Click(Host& host, frmTBInfo& screen);
/// The names of the boxes that must be filled and are blank, in the order of their messages.
std::vector<std::string_view> missingBoxes(const frmTBInfo& screen);

/// Checks, asks and saves. True when nothing was saved: the screen stays open.
bool cmdOK_Click(Session& session, Host& host, Windows& windows, frmTBInfo& screen);

/// The status was chosen: the work dates follow.
void CmbStat_Change(Host& host, frmTBInfo& screen);
/// The kind was chosen: of a table with field rows it goes back.
void CmbFileType_Change(Session& session, Host& host, frmTBInfo& screen);
/// The short name was typed: the list of those in use follows.
void TxtRyaku_Change(Session& session, Host& host, frmTBInfo& screen);
/// Gives the table to the System in CmbMoveSystem. True when it stays.
bool cmdMoveSystem_Click(Session& session, Host& host, Windows& windows, frmTBInfo& screen);

// --- the reference file; what these do is stored at once
void TxtRefFileName_Drop(Session& session, Host& host, frmTBInfo& screen, const std::vector<std::string>& files);
void cmdRefFileOpen_Click(Session& session, Host& host, frmTBInfo& screen);
void cmdClearRefFile_Click(Session& session, Host& host, frmTBInfo& screen);
void cmdFileMemo_Click(Session& session, Host& host, frmTBInfo& screen);

/// The checks of each sort of table. The first fault is shown; false when there is none.
bool pChkTableInfo(Session& session, Host& host, frmTBInfo& screen);
bool pChkPrjInfo(Session& session, Host& host, frmTBInfo& screen);
bool pChkMemberInfo(Session& session, Host& host, frmTBInfo& screen);

/// The names in the form in which they are stored: the System's rules applied to what was typed.
std::string storedTableName(const Session& session, std::string_view typed);
std::string storedRyaku(const Session& session, std::string_view typed);

/// The names of a table as they are stored; a blank one is not looked for.
struct TableNames {
  std::string table;
  std::string japanese;
  std::string shortName;
};
/// The names that the Repository has for the table; none when it has no such table. Lists of persons are told apart by
/// their short name alone.
TableNames storedNames(Database& database, const std::string& id);
/// Which of the names another live table of the System has, in the words of the checks; "" when none does. `id` is the
/// table's own, "" for a new one. Names are compared without case.
std::string tableNameInUse(Session& session, std::string_view system, std::string_view id, const TableNames& names);

/// Writes the row, and with `cascade` the texts of all references to it. True on failure, after its message.
bool pPutTableInfo(Session& session, Host& host, frmTBInfo& screen, bool cascade);

/// The folder of the reference files of this Repository, made when missing; with "/" between its levels.
std::string gGetRefFileFolder(const Session& session);
/// Opens a reference file by its bare name; a blank name does nothing, a missing file is told.
void openRefFile(Session& session, Host& host, std::string_view name);

}  // namespace quillmarden
