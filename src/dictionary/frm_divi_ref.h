#pragma once

#include <string>
#include <string_view>

#include "repository/session.h"
#include "screen/controls.h"
#include "screen/host.h"
#include "screen/windows.h"

namespace quillmarden {

/// Chooses a value list for a field.
struct frmDiviRef {
  std::string caption = "値リスト一覧";
  Label lblKbn;  ///< the 種別 that is looked for
  CheckBox ChkAllSystem;
  ComboBox CmbWhere;  ///< "", "から始まる" or "を含む"
  TextBox TxtWhere;
  Button CmdFind;
  ListBox lstDivName;
  Button CmdMake;
  Button cmdOK;
  Button cmdCancel;
  std::string chosen;  ///< the name for the field; "" when the screen was left without one
  bool unloaded = false;
};

/// The screen as it opens from the field grid, for lists of this 種別.
void frmDiviRef_Load(frmDiviRef& screen, std::string_view kind);
/// The statement for what stands on the screen.
std::string divisionRefSql(const frmDiviRef& screen, std::string_view system);
/// Asks, unless the settings say not to, and fills lstDivName. True on failure, after its message, and on No.
bool CmdFind_Click(Session& session, Host& host, frmDiviRef& screen);
void CmdMake_Click(Windows& windows);
/// Leaves the chosen name in `chosen` and closes. True when the screen stays open.
bool cmdOK_Click(Host& host, frmDiviRef& screen);
void cmdCancel_Click(frmDiviRef& screen);

}  // namespace quillmarden
