#pragma once

#include <string>
#include <string_view>

#include "repository/rights.h"
#include "repository/session.h"
#include "screen/controls.h"
#include "screen/host.h"

namespace quillmarden {

/// What a user can change of a value list's record.
struct DivisionRecord {
  std::string name;
  std::string kind;  ///< 種別: "フラグ" or "区分"
  std::string type;  ///< 型: "数値", "文字" or "Yes/No"
  std::string memo;  ///< 内容
  bool allSystems = false;

  bool operator==(const DivisionRecord&) const = default;
};

/// A value list's own record.
struct frmDiviInfo {
  std::string caption = "値リスト基本情報";
  Label lblSystemName;
  TextBox TxtDivName;
  ComboBox CmbClass;
  ComboBox CmbKata;
  TextBox Txtbiko;
  CheckBox ChkAllSystem;
  Label lblOld;  ///< the name as it was read; "" for a new list
  Button cmdOK;
  Button cmdCancel;
  DivisionRecord loaded;  ///< as it was read
  std::string focus;      ///< the control that a fault sends the cursor to
  bool saved = false;
  bool unloaded = false;
};

/// Whether a value list of this System may be changed: that of another System than the current one can be read here and
/// no more.
Right mayChangeList(Session& session, std::string_view owner);

/// Empties the screen for a new list.
void gClearForm(frmDiviInfo& screen);
/// The screen for a list of the current System, empty for the name "". True on failure, after its message: no such
/// list.
bool pGetDivisionInfo(Session& session, Host& host, frmDiviInfo& screen, std::string_view name);
/// What stands on the screen.
DivisionRecord divisionRecord(const frmDiviInfo& screen);

/// The checks before a save; true after the message about the first fault, whose control is then `focus`.
bool pChkDivisionInfo(Session& session, Host& host, frmDiviInfo& screen);
/// Writes the record; a renamed list's former record goes. True on failure, after its message; nothing is written then.
bool pPutDivisionInfo(Session& session, Host& host, frmDiviInfo& screen);
/// Checks, saves and closes. True when the screen stays open.
bool cmdOK_Click(Session& session, Host& host, frmDiviInfo& screen);
/// True when the screen stays open.
bool cmdCancel_Click(Host& host, frmDiviInfo& screen);

}  // namespace quillmarden
