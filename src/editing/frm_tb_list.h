#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "editing/frm_tb_detail.h"
#include "repository/session.h"
#include "screen/controls.h"
#include "screen/host.h"
#include "screen/windows.h"

namespace quillmarden {

/// The table list, the program's main window.
struct frmTBList {
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
  ListBox LstTable;     ///< "padded first name<TAB>second name<TAB>ID"
  ListBox LstTableSel;  ///< rows chosen for selective output
  ListBox lstTableWK;
  ListBox lstForm;
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

/// One row of the list's query.
struct TableRow {
  std::string tableName;
  std::string japaneseName;
  std::string id;
  std::string systemName;
  std::string fileType;
};

/// The statement for the filters on the screen. Search text goes in as typed.
std::string tableListSql(const frmTBList& screen);
/// The list's text for a row: prefix, padding to 50 bytes, tabs.
std::string tableListRow(const TableRow& row, const frmTBList& screen);
/// The ID behind the last tab of a list row; "" when there is none.
std::string_view tableListId(std::string_view row);
/// The first tab-separated part, trimmed.
std::string_view tableListName(std::string_view row);

/// The screen as it opens: fixed lists, switches, the Systems.
void frmTBList_Load(Session& session, Host& host, frmTBList& screen);
/// Makes a System current: record, connection, filter lists, rights; then the list.
void CmbSystem_Click(Session& session, Host& host, Windows& windows, frmTBList& screen);
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

// --- clipboard
void mnuCopyClipBord_Click(Host& host, const frmTBList& screen);
void mnuCopyAllClipBord_Click(Host& host, const frmTBList& screen);
void mnuClipBordJPN_Click(Host& host, const frmTBList& screen);
void mnuClipBordUS_Click(Host& host, const frmTBList& screen);
/// index 0: selected rows, 1: all rows, 2: selected rows with a marker
void mnuClipBord_Click(Host& host, const frmTBList& screen, int index);

/// A click on a row: loads it into the detail screen, asking first when that has unsaved changes. True when nothing
/// was loaded.
bool pReadTbDetailsData(Session& session, Host& host, frmTBList& screen, frmTBDetail& detail);

}  // namespace quillmarden
