#include "cli/alter.h"

#include "cli/console_session.h"
#include "cli/row_list.h"
#include "sqlgen/alter.h"

namespace quillmarden {

ExitStatus runAlter(Run& run) {
  frmTBDetail detail;
  if (!enterSystem(run, run.options.system) || !openTable(run, run.options.table, detail)) return kFailed;
  const std::optional<GridSelection> rows = chosenRows(run, detail);
  if (!rows) return kFailed;
  printClipboard(run);
  const int index = run.options.alterMode == "add" ? 0 : 1;
  return mnuAlterTable_Click(run.session, run.host, detail, *rows, index) ? kFailed : kDone;
}

}  // namespace quillmarden
