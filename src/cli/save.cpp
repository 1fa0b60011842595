#include "cli/save.h"

#include <fmt/format.h>

#include "cli/console_session.h"
#include "cli/grid_file.h"
#include "editing/frm_tb_detail.h"

namespace quillmarden {

ExitStatus runSave(Run& run) {
  frmTBDetail detail;
  std::string text;
  if (!readFile(run, run.options.gridFile, text) || !enterSystem(run, run.options.system) ||
      !openTable(run, run.options.table, detail))
    return kFailed;
  if (detail.readOnly || !run.session.gCanEdit)
    return failure(run, fmt::format("このテーブルは編集できません.\n {}", detail.caption));

  GridText grid = parseGridText(text, detail.Spread);
  if (!grid.fault.empty()) return failure(run, fmt::format("{}\n {}", run.options.gridFile, grid.fault));
  replaceRows(detail.Spread, std::move(grid.rows));
  for (int row = 1; row <= detail.Spread.maxRows(); ++row)
    detail.Spread.setText(field_col::kChanged, row, std::string(kChangedMark));
  detail.changed = true;
  return CmdUpDate_Click(run.session, run.host, detail) ? kFailed : kDone;
}

}  // namespace quillmarden
