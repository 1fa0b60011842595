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
  std::optional<TextEncoding> encoding;       ///< instead of the one that the script's form has by itself
};

/// What a run leaves behind.
struct RunResult {
  std::filesystem::path file;  ///< "" when none was opened; the partial one where the run did not come to its end
  int tables = 0;              ///< statements written, views included
  bool failed = false;         ///< a message has told why, or the System could not be read
  bool stopped = false;        ///< the person stopped it, which a message has told
  /// Characters that the file's encoding cannot hold, by table; "" for the file's head.
  std::vector<std::pair<std::string, std::u32string>> lost;
};

/// The rows of LstTable that a menu is for.
enum class SqlRows { Current, All };
/// Whether clauses follow their options, or all of them are written.
enum class SqlClauses { AsOptions, All };

RunResult mnuCreateSql_Click(Session& session, Host& host, frmTBList& list, frmTBDetail& detail, SqlRows rows,
                             SqlClauses clauses, const RunTarget& target = {});
/// Over the selected rows of LstTableSel.
RunResult mnuCreateSQLSel_Click(Session& session, Host& host, frmTBList& list, frmTBDetail& detail, SqlClauses clauses,
                                const RunTarget& target = {});
/// VIEW statements for the current row, whatever its kind.
RunResult mnuCreateView_Click(Session& session, Host& host, frmTBList& list, frmTBDetail& detail,
                              const RunTarget& target = {});
RunResult mnuCreateViewSel_Click(Session& session, Host& host, frmTBList& list, frmTBDetail& detail,
                                 const RunTarget& target = {});
/// Toggles the check of the back-up menu and stores it.
void mnuCreateSQLBack_Click(Session& session, frmTBList& list);
/// Toggles the form that a server takes as it stands, and stores it.
void mnuCreateSQLRunnable_Click(Session& session, frmTBList& list);

}  // namespace quillmarden
