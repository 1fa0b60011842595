#include "cli/memo.h"

#include <fmt/format.h>

#include "cli/console_session.h"
#include "cli/grid_file.h"
#include "common/text.h"
#include "operations/memo.h"
#include "repository/rights.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

struct MemoOptions {
  std::string system;
  std::string table;
  std::string saveFile;
};

void addMemoOptions(OptionSet& set, MemoOptions& options) {
  addSystem(set, options.system);
  addTable(set, options.table);
  set.text("--save", options.saveFile, "FILE", "表示と同じ形式のファイル(UTF-8)で保存する。作成日は省略できる");
}

namespace memoCol = memo_col;

void putMemo(std::string& output, const Spread& grid) {
  for (int row = 1; row <= grid.maxRows(); ++row) {
    if (trim(grid.text(memoCol::kSymbol, row)).empty() && trim(grid.text(memoCol::kText, row)).empty()) continue;
    for (int column = 1; column <= memoCol::kCount; ++column) {
      if (column > 1) output += '\t';
      putCell(output, grid.text(column, row));
    }
    output += '\n';
  }
}

std::string memoFault(GridText& text, const Spread& grid) {
  if (!text.fault.empty()) return text.fault;
  for (std::size_t row = 0; row < text.rows.size(); ++row) {
    const auto& cells = text.rows[row];
    if (cells.size() < memoCol::kCount || trim(cells[memoCol::kCreated - 1]).empty()) continue;
    if (!parseDateTime(trim(cells[memoCol::kCreated - 1])))
      return cellName(row + 1, memoCol::kCreated, grid) + "が日時ではありません.";
  }
  return takeCells(text, grid, loadedByColumn(grid));
}

ExitStatus runMemo(Run& run, const MemoOptions& options) {
  frmTBDetail detail;
  std::string text;
  const bool saves = !options.saveFile.empty();
  if ((saves && !readFile(run, options.saveFile, text)) || !enterSystem(run, options.system) ||
      !openTable(run, options.table, detail))
    return kFailed;
  const Right right = mayChangeTable(run.session, detail.lblID.caption, TableChange::kFields);
  if (saves && !right)
    return failure(run, fmt::format("このテーブルは編集できません.\n {}\n{}", detail.caption, right.reason));

  frmMemo memo;
  if (gGetMasTableMemo(run.session, run.host, memo, detail.lblID.caption, detail.lblSystemName.caption,
                       static_cast<bool>(right)))
    return kFailed;
  if (!saves) {
    putMemo(run.output, memo.Spread);
    return kDone;
  }
  GridText lines = parseGridText(text, memo.Spread);
  if (const std::string fault = memoFault(lines, memo.Spread); !fault.empty())
    return failure(run, fmt::format("{}\n {}", options.saveFile, fault));
  memo.Spread.setMaxRows(0);
  memo.Spread.setMaxRows(static_cast<int>(lines.rows.size()));
  for (std::size_t row = 0; row < lines.rows.size(); ++row)
    for (std::size_t cell = 0; cell < lines.rows[row].size(); ++cell)
      memo.Spread.setText(static_cast<int>(cell) + 1, static_cast<int>(row) + 1, lines.rows[row][cell]);
  return CmdUpDate_Click(run.session, run.host, memo) ? kFailed : kDone;
}

}  // namespace

constinit const Command kMemoCommand{
    .name = "memo",
    .group = CommandGroup::Tables,
    .help = "テーブルの付帯メモ(1行に、記号、備考、作成日)を表示、保存する。タブで区切る",
    .prepare = prepareCommand<MemoOptions, addMemoOptions, runMemo>};

}  // namespace quillmarden
