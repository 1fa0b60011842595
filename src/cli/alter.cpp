#include "cli/alter.h"

#include "cli/console_session.h"
#include "cli/row_list.h"
#include "sqlgen/alter.h"

namespace quillmarden {

namespace {

struct AlterOptions {
  std::string system;
  std::string table;
  std::string rows;
  AlterMode mode = AlterMode::Add;
};

void addAlterOptions(OptionSet& set, AlterOptions& options) {
  addSystem(set, options.system);
  addTable(set, options.table);
  addRows(set, options.rows, "項目の行(必須)。1,3-5 の形で指定する。全ての行を続けては指定できない").required();
  set.choice("--mode", options.mode, "add|change", "add: 項目の追加、change: 項目の変更(必須)",
             {{"add", AlterMode::Add}, {"change", AlterMode::Change}})
      .required();
}

ExitStatus runAlter(Run& run, const AlterOptions& options) {
  frmTBDetail detail;
  if (!enterSystem(run, options.system) || !openTable(run, options.table, detail)) return kFailed;
  const std::optional<GridSelection> rows = chosenRows(run, detail, options.rows);
  if (!rows) return kFailed;
  const std::optional<std::string> text = alterTextOfRows(run.session, run.host, detail, *rows, options.mode);
  if (!text) return kFailed;
  putText(run.output, *text);
  return kDone;
}

}  // namespace

constinit const Command kAlterCommand{.name = "alter",
                                      .group = CommandGroup::Scripts,
                                      .help = "ALTER TABLE文を表示する",
                                      .prepare = prepareCommand<AlterOptions, addAlterOptions, runAlter>};

}  // namespace quillmarden
