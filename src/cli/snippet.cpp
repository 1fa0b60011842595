#include "cli/snippet.h"

#include "cli/console_session.h"
#include "cli/row_list.h"
#include "sqlgen/snippet.h"

namespace quillmarden {

ExitStatus runSnippet(Run& run) {
  frmTBDetail detail;
  if (!enterSystem(run, run.options.system) || !openTable(run, run.options.table, detail)) return kFailed;
  const std::optional<GridSelection> rows = chosenRows(run, detail);
  if (!rows) return kFailed;
  printClipboard(run);
  mnuCopyCode_Click(run.session, run.host, detail, *rows, run.options.snippetIndex);
  return kDone;
}

}  // namespace quillmarden
