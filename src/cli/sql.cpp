#include "cli/sql.h"

#include "cli/generate.h"

namespace quillmarden {

ExitStatus runSql(Run& run) {
  bool full = run.options.full;
  return generate(run, {.current = mnuCreateSql_Click,
                        .currentIndex = full ? 2 : 0,
                        .selection = mnuCreateSQLSel_Click,
                        .selectionIndex = full ? 1 : 0,
                        .all = mnuCreateSql_Click,
                        .allIndex = full ? 3 : 1});
}

}  // namespace quillmarden
