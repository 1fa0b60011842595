#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/script_file.h"
#include "editing/frm_tb_detail.h"
#include "editing/frm_tb_list.h"
#include "repository/session.h"
#include "screen/host.h"

namespace quillmarden {

/// How a run differs from the plain menu: where the script goes, in which encoding.
struct RunTarget {
  std::optional<std::filesystem::path> file;  ///< instead of the one in the System's folder
  TextEncoding encoding = TextEncoding::Cp932;
};

/// What a run leaves behind.
struct RunResult {
  std::filesystem::path file;  ///< "" when none was opened
  int tables = 0;              ///< statements written, views included
  bool failed = false;         ///< a message has told why, or the System could not be read
  /// Characters that the file's encoding cannot hold, by table; "" for the file's head.
  std::vector<std::pair<std::string, std::u32string>> lost;
};

// The menus. `index` is the menu's: 0 and 2 the current row, 1 and 3 all rows, 2 and 3 with every clause;
// 98 and 99 append the current row without a question.
RunResult mnuCreateSql_Click(Session& session, Host& host, frmTBList& list, frmTBDetail& detail, int index,
                             const RunTarget& target = {});
/// index 0 or, with every clause, 1, over the selected rows of LstTableSel.
RunResult mnuCreateSQLSel_Click(Session& session, Host& host, frmTBList& list, frmTBDetail& detail, int index,
                                const RunTarget& target = {});
/// index 0: the current row; above, it is appended without head and question.
RunResult mnuCreateView_Click(Session& session, Host& host, frmTBList& list, frmTBDetail& detail, int index,
                              const RunTarget& target = {});
RunResult mnuCreateViewSel_Click(Session& session, Host& host, frmTBList& list, frmTBDetail& detail, int index,
                                 const RunTarget& target = {});
/// Toggles the check of the back-up menu and stores it.
void mnuCreateSQLBack_Click(Session& session, frmTBList& list);
/// Toggles the form that a server takes as it stands, and stores it.
void mnuCreateSQLRunnable_Click(Session& session, frmTBList& list);

}  // namespace quillmarden
