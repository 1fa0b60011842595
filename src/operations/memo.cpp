#include "operations/memo.h"

#include <algorithm>

#include "common/message.h"
#include "common/text.h"
#include "repository/rights.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

namespace col = memo_col;

/// Blank rows below the lines, to type into.
constexpr int kSpareRows = 10;

void tellMemoError(Session& session, Host& host, std::string_view routine, std::string_view text,
                   const EngineError& error) {
  session.log.putError(host, routine, error.number(), error.what());
  gMsgBox(host, joinLines({text, std::string(" ") + error.what(), "のエラーがありました."}), kOkOnly | kStopIcon);
}

void setChanged(frmMemo& screen, bool changed) { screen.changed = screen.lblEdit.visible = changed; }

void fillGrid(frmMemo& screen, const std::vector<MemoLine>& lines) {
  Spread& grid = screen.Spread;
  grid.setColumns(memoColumns());
  grid.setMaxRows(static_cast<int>(lines.size()));
  for (int row = 1; row <= grid.maxRows(); ++row) {
    const MemoLine& line = lines[static_cast<std::size_t>(row - 1)];
    grid.setText(col::kSymbol, row, line.symbol);
    grid.setText(col::kText, row, line.text);
    grid.setText(col::kCreated, row, line.created);
  }
}

bool isBlank(const Spread& grid, int row) {
  return trim(grid.text(col::kSymbol, row)).empty() && trim(grid.text(col::kText, row)).empty();
}

void writeMemo(Session& session, const frmMemo& screen, const std::string& now) {
  Database& database = *session.gDB;
  const Spread& grid = screen.Spread;
  database.execute("Delete * FROM MAS_TABLEBIKO Where ID = " + screen.tableId);
  Recordset rows = database.openTable("MAS_TABLEBIKO");
  for (int row = 1; row <= grid.maxRows(); ++row) {
    if (isBlank(grid, row)) continue;
    const auto created = parseDateTime(grid.text(col::kCreated, row));
    const std::string stamp = created ? formatDateTime(*created, "yyyy/mm/dd hh:nn:ss") : now;
    const std::string symbol(grid.text(col::kSymbol, row));
    rows.addNew();
    rows.set("ID", screen.tableId);
    rows.set("NUM", std::int64_t{row});
    rows.set("備考", std::string(grid.text(col::kText, row)));
    rows.set("システム名", screen.systemName);
    rows.set("ファイル名", stamp);
    rows.set("日本語名", trim(symbol).empty() ? " " : symbol);
    rows.set("作成年月日", stamp);
    // A Repository that another tool has made may be without it.
    if (rows.fieldIndex("更新年月日") >= 0) rows.set("更新年月日", now);
    rows.set("make_server", std::string("False"));
    rows.update();
  }
}

}  // namespace

std::vector<MemoLine> readTableMemo(Database& database, std::string_view tableId) {
  std::vector<MemoLine> lines;
  for (Recordset rows =
           database.openRecordset("Select * From MAS_TABLEBIKO  Where ID = " + std::string(tableId) + " Order By Num ");
       !rows.eof(); rows.moveNext()) {
    MemoLine line{std::string(rows.text("日本語名")), std::string(rows.text("備考")),
                  std::string(rows.text("ファイル名"))};
    if (trim(line.symbol).empty() && trim(line.text).empty()) continue;
    if (line.symbol.empty()) line.symbol = " ";
    lines.push_back(std::move(line));
  }
  return lines;
}

std::vector<SpreadColumn> memoColumns() {
  return {{.title = "記号", .kind = CellKind::Edit, .maxLength = 255, .width = 5},
          {.title = "備考", .kind = CellKind::Edit, .width = 30},
          {.title = "作成日", .kind = CellKind::Static, .width = 10}};
}

bool gGetMasTableMemo(Session& session, Host& host, frmMemo& screen, std::string_view tableId, std::string_view system,
                      bool editable) {
  screen = frmMemo{};
  screen.lblEdit.caption = "修正";
  screen.tableId = tableId;
  screen.systemName = system;
  screen.mnuClear.enabled = screen.CmdUpDate.enabled = editable;
  setChanged(screen, false);
  bool failed = false;
  std::vector<MemoLine> lines;
  try {
    lines = readTableMemo(*session.gDB, tableId);
  } catch (const EngineError& error) {
    tellMemoError(session, host, "GetTableMemo", "付帯メモ読込みに失敗しました.", error);
    // A save would take the place of lines that nobody has seen.
    screen.mnuClear.enabled = screen.CmdUpDate.enabled = editable = false;
    failed = true;
  }
  fillGrid(screen, lines);
  if (editable) screen.Spread.setMaxRows(screen.Spread.maxRows() + kSpareRows);
  screen.Spread.lockAll(!editable);
  return failed;
}

void refreshRights(Session& session, frmMemo& screen) {
  const bool editable = static_cast<bool>(mayChangeTable(session, screen.tableId, TableChange::kFields));
  screen.mnuClear.enabled = screen.CmdUpDate.enabled = editable;
  screen.Spread.lockAll(!editable);
}

void Spread_Change(frmMemo& screen, int, int) { setChanged(screen, true); }

void mnuClear_Click(Host& host, frmMemo& screen) {
  if (!screen.mnuClear.enabled ||
      gMsgBox(host, "選択された範囲をクリアします.", kYesNo | kQuestionIcon | kDefaultSecond) != kYes)
    return;
  const int lastRow = std::min(screen.block.lastRow, screen.Spread.maxRows());
  for (int row = screen.block.firstRow; row <= lastRow; ++row)
    for (int column = screen.block.firstCol; column <= screen.block.lastCol; ++column)
      screen.Spread.setText(column, row, "");
  setChanged(screen, true);
}

bool CmdUpDate_Click(Session& session, Host& host, frmMemo& screen) {
  if (refused(host, mayChangeTable(session, screen.tableId, TableChange::kFields)) || !screen.CmdUpDate.enabled)
    return true;
  const std::string now = formatDateTime(host.clock.now(), "yyyy/mm/dd hh:nn:ss");
  try {
    inTransaction(*session.gDB, [&] { writeMemo(session, screen, now); });
  } catch (const EngineError& error) {
    tellMemoError(session, host, "WriteTableMemo", "付帯メモ更新に失敗しました.", error);
    return true;
  }
  for (int row = 1; row <= screen.Spread.maxRows(); ++row)
    if (!isBlank(screen.Spread, row) && !parseDateTime(screen.Spread.text(col::kCreated, row)))
      screen.Spread.setText(col::kCreated, row, now);
  setChanged(screen, false);
  return false;
}

bool CmdClose_Click(Host& host, frmMemo& screen) {
  if (screen.changed && gMsgBox(host, "画面を閉じます.", kYesNo | kQuestionIcon | kDefaultSecond) != kYes) return true;
  screen.unloaded = true;
  return false;
}

}  // namespace quillmarden
