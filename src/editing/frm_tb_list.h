#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "editing/frm_tb_detail.h"
#include "repository/session.h"
#include "screen/controls.h"
#include "screen/host.h"
#include "screen/windows.h"

namespace quillmarden {

/// One row of the list's query.
struct TableRow {
  std::string tableName;
  std::string japaneseName;
  std::string id;
  std::string systemName;
  std::string fileType;
};

/// The table list, the program's main window.
struct frmTBList {
  std::string caption;
  Label lblDbServer;  ///< where the Repository lies
  ComboBox CmbSystem;
  ComboBox CmbHost;
  ComboBox CmbBunrui;
  ComboBox CmbDataBunrui;
  ComboBox CmbDataBunrui2;
  ComboBox CmbTitle;  ///< "日本語名" or "テーブル名": which name comes first
  ComboBox CmbWhere;  ///< "から始まる" or "を含む"
  ComboBox CmbWhereMoji;
  OptionButton OptAll;
  OptionButton OptTb;
  OptionButton OptReverse;
  CheckBox ChkAllSys;
  CheckBox ChkRefTb;
  CheckBox ChkSosikiNm;
  TextBox TxtConnect;
  TextBox TxtUserName;
  TextBox TxtPassword;
  ListBox LstTable;              ///< "padded first name<TAB>second name<TAB>ID"
  std::vector<TableRow> tables;  ///< of the rows of LstTable, with names that the list may have cut
  ListBox LstTableSel;           ///< rows chosen for selective output
  ListBox lstTableWK;
  ListBox lstForm;  ///< open screens: "caption<TAB>name"
  bool lstFormVisible = false;
  bool narrow = true;     ///< without LstTableSel
  int dividerAt = 0;      ///< width of LstTable beside LstTableSel, in the view's units; 0: the view's own
  std::string popupKind;  ///< ファイル種別 of the row that the popup was opened on
  Button CmdSystem;
  MenuItem mnuAdd;
  MenuItem mnuUpDate;
  MenuItem mnuDelete;
  MenuItem mnutsSetting;
  MenuItem mnuCreateSQLBack;
  MenuItem mnuCreateSQLRunnable;  ///< 実行可能形式で出力: the form that a server takes as it stands
  int rowCount = 0;
  bool running = false;    ///< a generation run is under way
  bool errorMark = false;  ///< the last run of a menu ended with an error
};

/// The statement for the filters on the screen. Search text goes in as typed.
std::string tableListSql(const frmTBList& screen);
/// The list's text for a row: prefix, padding to 50 bytes, tabs. A longer name is cut there, unless it is to be whole.
std::string tableListRow(const TableRow& row, const frmTBList& screen, bool whole = false);
/// The ID behind the last tab of a list row; "" when there is none.
std::string_view tableListId(std::string_view row);
/// The first tab-separated part, trimmed.
std::string_view tableListName(std::string_view row);

/// The screen as it opens: fixed lists, switches, the Systems.
void frmTBList_Load(Session& session, Host& host, frmTBList& screen);
/// The entries of CmbSystem; its text stays.
void fillSystems(Session& session, frmTBList& screen);
/// Makes a System current: record, connection, filter lists, rights; then the list.
void CmbSystem_Click(Session& session, Host& host, Windows& windows, frmTBList& screen);
/// The current System's rights as they are now, and the commands that follow them.
void refreshRights(Session& session, Host& host, frmTBList& screen);
/// Rebuilds LstTable; `selectId` is the row to select, "" for the one that was selected. True on failure, after its
/// message; the list is then as it was.
bool pGetTableList(Session& session, Host& host, frmTBList& screen, std::string_view selectId = "");
/// The search: notes the search text in the history, then rebuilds the list.
void CmdFind_Click(Session& session, Host& host, frmTBList& screen);
void CmdClearWherMoji_Click(Session& session, Host& host, frmTBList& screen);

// --- row commands on the selected rows; each asks first and rebuilds the list
void mnuDelete_Click(Session& session, Host& host, frmTBList& screen);
void mnutbEdit_Click(Session& session, Host& host, frmTBList& screen, bool editable);
void mnuUpDateAllSystem_Click(Session& session, Host& host, frmTBList& screen);
void mnuCheckPoint_Click(Session& session, Host& host, frmTBList& screen);
/// Tests the selection and gives the ID to change, "" after a message.
std::string mnuUpDate_Click(Host& host, frmTBList& screen);

/// Opens the Repository with the program that the desktop has for it.
void mnuOpenDB_Click(Session& session, Host& host);
/// Asks, then opens the Access file of the current System.
void mnuOpenDBConnect_Click(Session& session, Host& host);

// --- clipboard
void mnuCopyClipBord_Click(Host& host, const frmTBList& screen);
void mnuCopyAllClipBord_Click(Host& host, const frmTBList& screen);
void mnuClipBordJPN_Click(Host& host, const frmTBList& screen);
void mnuClipBordUS_Click(Host& host, const frmTBList& screen);
/// index 0: selected rows, 1: all rows, 2: selected rows with a marker
void mnuClipBord_Click(Host& host, const frmTBList& screen, int index);

// --- the rows chosen for output, LstTableSel
/// Adds the selected rows of LstTable that are not there yet, all of them selected; the number that it added.
int addToSelection(frmTBList& screen);
void mnuExcelSel_Click(frmTBList& screen);
void mnuExcelSelCancel_Click(frmTBList& screen);
/// index 0 selects all rows of LstTableSel, 1 none.
void mnuSelAll_Click(frmTBList& screen, int index);
/// Takes the selected rows out of LstTableSel.
void removeFromSelection(frmTBList& screen);
/// Takes the selected rows over and shows them for output. True when there are none, after its message.
bool mnuSelectPut_Click(Host& host, frmTBList& screen);

// --- what is seen of the screen
/// Notes the kind of the current row, by which the popup is adjusted.
void LstTable_RightClick(Session& session, Host& host, frmTBList& screen);
/// Whether a menu entry, or a submenu, means anything for a row of this kind.
bool appliesToKind(std::string_view menu, std::string_view fileType);
/// A menu entry that a key on LstTable stands for.
struct ListKey {
  std::string_view menu;
  int index = -1;
};
/// `key` is the letter in either case, `shift` as gShiftState gives it. Nothing for a key without a meaning.
std::optional<ListKey> LstTable_KeyDown(char key, int shift);
/// lstForm from the open screens, each a caption and a name. Those that no list shows are left out.
void pRefrashListForm(frmTBList& screen, const std::vector<std::pair<std::string, std::string>>& openScreens);
/// Shows or hides lstForm and keeps that.
void CmdFormList_Click(Session& session, frmTBList& screen);
void CmdWidth_Click(frmTBList& screen);
void ImageMove_Drag(frmTBList& screen, int dividerAt);

/// Keeps filters and layout for the next session.
void keepListScreen(Session& session, frmTBList& screen);
/// Brings them back, the System with its list first. A value that its box does not offer is left out.
void restoreListScreen(Session& session, Host& host, Windows& windows, frmTBList& screen);

/// Asks whether the editing of a changed detail screen goes on. False for one without changes.
bool keepsEditing(Host& host, const frmTBDetail& detail);
/// A click on a row: loads it into the detail screen, asking first when that has unsaved changes. True when nothing
/// was loaded.
bool pReadTbDetailsData(Session& session, Host& host, frmTBList& screen, frmTBDetail& detail);

}  // namespace quillmarden
