#include "cli/save.h"

#include <fmt/format.h>

#include "cli/console_session.h"
#include "cli/grid_file.h"
#include "cli/shown_rows.h"
#include "editing/frm_tb_detail.h"
#include "repository/rights.h"

namespace quillmarden {

namespace {

struct SaveOptions {
  std::string system;
  std::string table;
  std::string gridFile;
  bool over = false;
  bool yesRemove = false;
};

void addSaveOptions(OptionSet& set, SaveOptions& options) {
  addSystem(set, options.system);
  addTable(set, options.table);
  set.text("--grid", options.gridFile, "FILE", "項目のファイル(必須)。見出しなし、行末のセルは省略できる").required();
  set.flag("--over", options.over, "表示の後に他で更新されていても、上書きする");
  set.flag("--yes-remove", options.yesRemove, "半数を超える項目が削除されるときも、更新する");
}

ExitStatus runSave(Run& run, const SaveOptions& options) {
  frmTBDetail detail;
  std::string text;
  if (!readFile(run, options.gridFile, text) || !enterSystem(run, options.system) ||
      !openTable(run, options.table, detail))
    return kFailed;
  if (const Right right = mayChangeTable(run.session, detail.lblID.caption, TableChange::kFields); !right)
    return failure(run, fmt::format("このテーブルは編集できません.\n {}\n{}", detail.caption, right.reason));

  takeShownRows(run, detail);
  detail.leave = {.asks = false, .over = options.over, .removal = options.yesRemove};
  GridText grid = parseGridText(text, detail.Spread);
  if (!grid.fault.empty()) return failure(run, fmt::format("{}\n {}", options.gridFile, grid.fault));
  replaceRows(detail.Spread, std::move(grid.rows));
  for (int row = 1; row <= detail.Spread.maxRows(); ++row)
    detail.Spread.setText(field_col::kChanged, row, std::string(kChangedMark));
  detail.changed = true;
  if (CmdUpDate_Click(run.session, run.host, detail)) return kFailed;
  keepShownRows(run, detail);
  return kDone;
}

}  // namespace

constinit const Command kSaveCommand{
    .name = "save",
    .group = CommandGroup::Tables,
    .help = "showと同じ形式のファイル(UTF-8)の項目で、テーブルの項目をチェックして保存する",
    .prepare = prepareCommand<SaveOptions, addSaveOptions, runSave>};

}  // namespace quillmarden
