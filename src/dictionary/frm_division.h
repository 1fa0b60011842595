#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "dictionary/frm_divi_info.h"
#include "repository/session.h"
#include "screen/cell_block.h"
#include "screen/controls.h"
#include "screen/host.h"
#include "screen/spread.h"
#include "screen/windows.h"

namespace quillmarden {

/// The columns of the entry grid.
namespace division_col {
inline constexpr int kPreset = 1;   ///< 初期値: "-1" on the default entry, else "0" or ""
inline constexpr int kValue = 2;    ///< 値
inline constexpr int kOutline = 3;  ///< 概要
inline constexpr int kChanged = 4;  ///< hidden; "変更" on a row that waits to be saved
inline constexpr int kAuthor = 5;
inline constexpr int kCreated = 6;
inline constexpr int kUpdater = 7;
inline constexpr int kUpdated = 8;
inline constexpr int kCount = 8;
}  // namespace division_col

/// What the values of a numeric list may be; the screen shows it below the grid.
inline constexpr std::string_view kDivisionRange = "※  型が数値のときは、-999≦値≦999の範囲となります.";
/// Characters that a value or its outline may have.
inline constexpr int kDivisionTextSize = 255;

/// The value lists of a System and the entries of one of them.
struct frmDivision {
  std::string caption;
  // --- which lists
  ComboBox CmbClass;      ///< "", "フラグ" or "区分"
  ComboBox CmbKata;       ///< "", "数値", "文字" or "Yes/No"
  CheckBox ChkAllSystem;  ///< 全システム共通も表示する.
  Button CmdFind;
  ListBox lstDivision;  ///< rows of valueListRow
  // --- the list on show
  Label fraKIHON;     ///< the frame around what follows
  Label lblClass;     ///< 種別
  Label lblKata;      ///< 型
  TextBox TxtMemo;    ///< 内容, never edited here
  Label lblAtai;      ///< 値名称; "" when no list is on show
  Label lblNum;       ///< how many lists were found
  Label lblRange;     ///< the range of numeric values, as a note
  std::string owner;  ///< its System
  quillmarden::Spread Spread;
  CellBlock block;  ///< what is selected in the grid; the view keeps it up to date
  // --- commands
  Button CmdUpDate;
  Button CmdExcel;
  Button CmdClose;
  MenuItem mnuAdd;     ///< 新規作成: a list's record from nothing
  MenuItem mnuEdit;    ///< the record of the list that is chosen
  MenuItem mnuDelete;  ///< deletes the list that is chosen
  MenuItem mnuSpreadClear;
  MenuItem mnuSpreadAdd;
  MenuItem mnuSpreadDel;
  // --- marks
  Label lblEdit;    ///< "編集不可" on picEdit
  Picture picEdit;  ///< shown in a session that may not edit
  Picture picRen;   ///< "変更あり"
  Picture PicMsg;
  Label lblMsg;  ///< wait text
  bool changed = false;
  bool unloaded = false;
};

/// One value list as the list box holds it.
struct ValueListItem {
  std::string name;
  std::string system;
  std::string kind;  ///< 種別
  std::string type;  ///< 型
  std::string memo;  ///< 内容
};

/// The trimmed name, 35 blanks and a tab, then the other parts with tabs between them.
std::string valueListRow(const ValueListItem& item);
/// Takes such a row apart; parts that are missing are empty.
ValueListItem splitValueListRow(std::string_view row);
/// The statement for the filters on the screen.
std::string divisionListSql(const frmDivision& screen, std::string_view system);

/// The screen as it opens and after another System was chosen: caption, rights, an empty grid, the lists.
void frmDivision_Load(Session& session, Host& host, frmDivision& screen);
/// Rebuilds lstDivision; the chosen row stays chosen. True on failure, after its message; the list is then as it was.
bool pGetDivisionList(Session& session, Host& host, frmDivision& screen);
/// The commands follow gCanEdit; what is being typed stays.
void refreshRights(const Session& session, frmDivision& screen);
void CmdFind_Click(Session& session, Host& host, frmDivision& screen);
/// Shows the chosen list; asks first when the one on show has unsaved changes. True when it was not shown.
bool lstDivision_Click(Session& session, Host& host, frmDivision& screen);
/// Shows a list as the Repository holds it; changes to the one on show are gone. True on failure, after its message.
bool showValueList(Session& session, Host& host, frmDivision& screen, const ValueListItem& item);
/// The list on show.
ValueListItem valueListOnShow(const frmDivision& screen);

// --- the record of a list: fill `info` and open its screen
void mnuAdd_Click(Session& session, Windows& windows, frmDiviInfo& info);
void mnuEdit_Click(Session& session, Host& host, Windows& windows, frmDivision& screen, frmDiviInfo& info);
/// What follows when the screen of a list's record has closed: the lists anew, the saved one on show.
void frmDiviInfo_Unload(Session& session, Host& host, frmDivision& screen, const frmDiviInfo& info);
void mnuDelete_Click(Session& session, Host& host, frmDivision& screen);

// --- the grid
/// A cell has got another text: marks its row, and lets one row alone be the default entry.
void Spread_Change(frmDivision& screen, int col, int row);
void mnuSpreadClear_Click(Host& host, frmDivision& screen);
void mnuSpreadAdd_Click(Host& host, frmDivision& screen);
void mnuSpreadDel_Click(Host& host, frmDivision& screen);

/// The checks before a save; true after the message about the first fault.
bool pChkDivision(Host& host, const frmDivision& screen);
/// Checks, asks, writes all entries of the list anew and shows them. True on failure, when the user declined, and for a
/// list that cannot be saved here: a Yes/No list, another System's, or in a session that may not edit.
bool CmdUpDate_Click(Session& session, Host& host, frmDivision& screen);
/// True when the screen stays open.
bool CmdClose_Click(Host& host, frmDivision& screen);

/// What a workbook holds of the list on show: five lines of a heading and its text for columns A and B, then the grid
/// under its titles. "○" marks the default entry.
struct ValueListSheet {
  std::vector<std::array<std::string, 2>> heading;
  std::vector<std::string> titles;
  std::vector<std::vector<std::string>> rows;
};
ValueListSheet valueListSheet(const frmDivision& screen, std::string_view system);
/// The words of CmdExcel before a workbook is made: nothing to print, the question, no System. True when there is
/// none to be made.
bool pChkDivisionExcel(const Session& session, Host& host, const frmDivision& screen);

}  // namespace quillmarden
