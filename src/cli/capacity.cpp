#include "cli/capacity.h"

#include <array>

#include "cli/console_session.h"
#include "common/message.h"
#include "operations/capacity.h"
#include "repository/rights.h"

namespace quillmarden {

namespace {

struct CapacityOptions {
  std::string system;
};

void addCapacityOptions(OptionSet& set, CapacityOptions& options) { addSystem(set, options.system); }

constexpr std::array<std::string_view, 7> kColumns = {"テーブル名", "日本語名", "レコード長", "ブロック格納件数",
                                                      "必要容量",   "項目数",   "ORA_INITIAL"};

void putTableValues(Run& run) {
  std::string select;
  for (std::string_view column : kColumns) {
    run.output += (select.empty() ? "" : "\t");
    run.output += column;
    select.append(select.empty() ? "SELECT a." : ", a.").append(column);
  }
  run.output += '\n';
  Recordset rows = run.session.gDB->openRecordset(
      select +
          " FROM MAS_TABLEINFO AS a WHERE a.削除フラグ = 0 AND a.システム名 = paraSystem ORDER BY a.テーブル名, a.ID",
      {{"paraSystem", run.session.gCurrentSystemName}});
  for (; !rows.eof(); rows.moveNext()) {
    for (int i = 0; i < rows.fieldCount(); ++i) {
      if (i > 0) run.output += '\t';
      putCell(run.output, rows.text(i));
    }
    run.output += '\n';
  }
}

ExitStatus runCapacity(Run& run, const CapacityOptions& options) {
  if (options.system == kAllSystems) return failure(run, "システムを選択して下さい.");
  if (!enterSystem(run, options.system)) return kFailed;
  if (const Right right = mayChangeSystem(run.session, run.session.gCurrentSystemName); !right)
    return failure(run, right.reason);
  if (gMsgBox(run.host, "各テーブルのレコード長を再計算します.", kYesNo | kQuestionIcon, "処理確認") != kYes)
    return failure(run, "中止しました.");
  if (recalculateSystem(run.session, run.host, run.session.gCurrentSystemName)) return kFailed;
  gMsgBox(run.host, "終了しました.");
  putTableValues(run);
  return kDone;
}

}  // namespace

constinit const Command kCapacityCommand{
    .name = "capacity",
    .group = CommandGroup::Tables,
    .help = "レコード長と容量を再計算し、見出しの行と、テーブルごとの値をタブ区切りで表示する",
    .prepare = prepareCommand<CapacityOptions, addCapacityOptions, runCapacity>};

}  // namespace quillmarden
