#include "cli/save.h"

#include <fmt/format.h>

#include "cli/console_session.h"
#include "cli/grid_file.h"
#include "editing/frm_tb_detail.h"

namespace quillmarden {

namespace {

struct SaveOptions {
  std::string system;
  std::string table;
  std::string gridFile;
};

void addSaveOptions(OptionSet& set, SaveOptions& options) {
  addSystem(set, options.system);
  addTable(set, options.table);
  set.text("--grid", options.gridFile, "FILE", "項目のファイル(必須)。見出しなし、行末のセルは省略できる").required();
}

ExitStatus runSave(Run& run, const SaveOptions& options) {
  frmTBDetail detail;
  std::string text;
  if (!readFile(run, options.gridFile, text) || !enterSystem(run, options.system) ||
      !openTable(run, options.table, detail))
    return kFailed;
  if (detail.readOnly || !run.session.gCanEdit)
    return failure(run, fmt::format("このテーブルは編集できません.\n {}", detail.caption));

  GridText grid = parseGridText(text, detail.Spread);
  if (!grid.fault.empty()) return failure(run, fmt::format("{}\n {}", options.gridFile, grid.fault));
  replaceRows(detail.Spread, std::move(grid.rows));
  for (int row = 1; row <= detail.Spread.maxRows(); ++row)
    detail.Spread.setText(field_col::kChanged, row, std::string(kChangedMark));
  detail.changed = true;
  return CmdUpDate_Click(run.session, run.host, detail) ? kFailed : kDone;
}

}  // namespace

constinit const Command kSaveCommand{
    .name = "save",
    .group = CommandGroup::Tables,
    .help = "showと同じ形式のファイル(UTF-8)の項目で、テーブルの項目をチェックして保存する",
    .prepare = prepareCommand<SaveOptions, addSaveOptions, runSave>};

}  // namespace quillmarden
