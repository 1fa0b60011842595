#include "cli/save.h"

#include <fmt/format.h>

#include "cli/console_session.h"
#include "cli/grid_file.h"
#include "cli/shown_rows.h"
#include "common/text.h"
#include "common/typed_cell.h"
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

namespace gridField = field_col;

const SpreadColumn kLinkNumber{.title = "", .kind = CellKind::Integer, .minimum = 0, .maximum = 2147483647};

bool domainExists(Database& database, const std::string& id) {
  return id == "0" || !database.openRecordset("SELECT ID FROM MAS_DOMAIN WHERE 削除フラグ = 0 AND ID = " + id).eof();
}

/// The columns for the cells of a file. Of a text file's layout the positions are computed by every save, and for a key
/// the Repository has a word in the place of one.
Spread fileColumns(const frmTBDetail& detail) {
  std::vector<SpreadColumn> columns;
  for (int column = 1; column <= detail.Spread.maxCols(); ++column) columns.push_back(detail.Spread.column(column));
  if (detail.mode == DetailMode::Text)
    for (const int position : {gridField::kLength, gridField::kNull})
      columns[static_cast<std::size_t>(position - 1)].kind = CellKind::Static;
  Spread grid;
  grid.setColumns(std::move(columns));
  return grid;
}

/// The columns that no cell of the screen takes by typing, but that links bring numbers into.
std::string linkFault(Run& run, const GridText& text, const Spread& grid, const LoadedCell& loaded) {
  for (std::size_t row = 0; row < text.rows.size(); ++row) {
    for (const int column : {gridField::kDomainId, gridField::kForeignTableId, gridField::kForeignRowNo}) {
      const auto place = static_cast<std::size_t>(column - 1);
      if (place >= text.rows[row].size()) break;
      const std::string_view cell = trim(text.rows[row][place]);
      if (cell.empty() || loaded(row, column, text.rows[row][place])) continue;
      const TypedCell number = typedCell(kLinkNumber, CellKind::Integer, cell);
      if (!number.fault.empty()) return cellName(row + 1, column, grid) + number.fault;
      if (column == gridField::kDomainId && !domainExists(*run.session.gDB, number.text))
        return cellName(row + 1, column, grid) + "がドメインにありません.";
    }
  }
  return "";
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
  std::string fault = grid.fault;
  const std::vector<int> continued = continuedRows(detail.Spread, grid.rows);
  if (fault.empty()) {
    const LoadedCell loaded = loadedByRow(detail.Spread, continued);
    fault = linkFault(run, grid, detail.Spread, loaded);
    if (fault.empty()) fault = takeCells(grid, fileColumns(detail), loaded);
  }
  if (!fault.empty()) return failure(run, fmt::format("{}\n {}", options.gridFile, fault));
  replaceRows(detail.Spread, std::move(grid.rows), continued);
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
