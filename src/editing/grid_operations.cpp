#include "editing/grid_operations.h"

#include <algorithm>
#include <functional>

#include "common/keys.h"
#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/frm_tb_detail_edit.h"

namespace quillmarden {

namespace {

namespace col = field_col;

/// The last row that the Repository holds.
int lastLoadedRow(const Spread& grid) {
  int row = grid.maxRows();
  while (row > 0 && grid.rowTag(row) == 0) --row;
  return row;
}

/// What is asked before rows come or go. A table that a database may already have gets the question of its structure,
/// whose Yes makes the plain one needless.
bool confirmed(Host& host, const frmTBDetail& screen, int row, std::string_view work, std::string_view title) {
  const std::string verb(work);
  const int style = kYesNo | kQuestionIcon | (work == "削除" ? kDefaultSecond : 0);
  if (gStr2Double(screen.lblNumSQL.caption) != 0 && row <= lastLoadedRow(screen.Spread)) {
    const std::string text =
        joinLines({"データベースにテーブル定義済の場合", "行" + verb + "するとデータベース上の構造と",
                   "Quillmardenの構造に差がでます.", "行" + verb + "しますか?"});
    return gMsgBox(host, text, style, "確認") == kYes;
  }
  return gMsgBox(host, "行を" + verb + "しますか?", style, title) == kYes;
}

/// The lowest grid row whose field belongs to an index; 0 when none does.
int lastIndexedRow(Session& session, const frmTBDetail& screen) {
  if (screen.lstIndex.count() == 0) return 0;
  std::vector<long> indexed;
  const std::string sql = "SELECT i.ROWNO FROM MAS_INDEX AS i WHERE i.ID = " + screen.lblID.caption;
  for (Recordset rows = session.gDB->openRecordset(sql); !rows.eof(); rows.moveNext())
    indexed.push_back(static_cast<long>(rows.integer(0)));
  for (int row = screen.Spread.maxRows(); row > 0; --row) {
    const long tag = screen.Spread.rowTag(row);
    if (tag != 0 && std::find(indexed.begin(), indexed.end(), tag) != indexed.end()) return row;
  }
  return 0;
}

void insertRows(frmTBDetail& screen, int row, int count) {
  changeGrid(screen, [&] {
    for (int i = 0; i < count; ++i) screen.Spread.insertRow(row);
    for (int i = 0; i < count; ++i) markRow(screen, row + i);
  });
}

/// Takes the rows away, given in order. The row that comes in the place of each block waits to be saved; behind the
/// last row that is a blank one, which carries the mark and is not stored.
void deleteRows(Spread& grid, const std::vector<int>& rows) {
  for (std::size_t i = rows.size(); i > 0; --i) {
    grid.deleteRow(rows[i - 1]);
    if (i == 1 || rows[i - 2] != rows[i - 1] - 1) grid.setText(col::kChanged, rows[i - 1], kChangedMark);
  }
}

std::vector<SpreadRow> asNewFields(std::vector<SpreadRow> rows) {
  for (SpreadRow& row : rows) {
    row.tag = 0;
    for (int number : {col::kAuthor, col::kCreated, col::kOrder})
      row.cells[static_cast<std::size_t>(number - 1)].text.clear();
    row.cells[static_cast<std::size_t>(col::kChanged - 1)].text = kChangedMark;
  }
  return rows;
}

// --- emptying cells

bool within(const GridSelection& selection, int number, int row) {
  return std::any_of(selection.begin(), selection.end(), [&](const GridBlock& block) {
    return row >= block.firstRow && row <= block.lastRow &&
           (block.wholeRows || (number >= block.firstCol && number <= block.lastCol));
  });
}

/// Who made the row and where it stands are not a person's to empty.
bool clearable(const Spread& grid, int number, int row) {
  if (grid.column(number).hidden) return false;
  switch (number) {
    case col::kChanged:
    case col::kOrder:
    case col::kAuthor:
    case col::kCreated:
      return false;
    case col::kValueList:
    case col::kDomainName:
    case col::kDomainId:
    case col::kForeign:
      return true;
    default:
      return grid.kind(number, row) != CellKind::Static;
  }
}

void clearCell(Session& session, frmTBDetail& screen, int number, int row) {
  Spread& grid = screen.Spread;
  if (grid.kind(number, row) != CellKind::Static) {
    putCell(session, screen, number, row, "");
  } else if (number == col::kDomainName || number == col::kDomainId) {
    linkDomain(session, screen, row, 0);
  } else if (grid.holds(number, row)) {
    grid.setText(number, row, "");
    // The reference that shows here is kept in two columns behind it.
    if (number == col::kForeign)
      for (int hidden : {col::kForeignTableId, col::kForeignRowNo}) grid.setText(hidden, row, "");
  }
}

void clearRow(Session& session, frmTBDetail& screen, const GridSelection& selection, int row) {
  Spread& grid = screen.Spread;
  // A link goes first: the cells that the domain owned can then be emptied as well.
  for (int number : {col::kDomainId, col::kDomainName})
    if (within(selection, number, row) && clearable(grid, number, row)) clearCell(session, screen, number, row);
  for (int number = 1; number <= grid.maxCols(); ++number)
    if (within(selection, number, row) && clearable(grid, number, row)) clearCell(session, screen, number, row);
  markRow(screen, row);
}

GridSelection orActiveCell(const frmTBDetail& screen, const GridSelection& selection) {
  if (!selection.empty()) return selection;
  return {{screen.activeCol, screen.activeRow, screen.activeCol, screen.activeRow, false}};
}

}  // namespace

std::vector<int> selectedRows(const frmTBDetail& screen, const GridSelection& selection) {
  std::vector<int> rows;
  for (const GridBlock& block : orActiveCell(screen, selection))
    for (int row = std::max(block.firstRow, 1); row <= std::min(block.lastRow, screen.Spread.maxRows()); ++row)
      rows.push_back(row);
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

void mnuInSert_Click(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection) {
  const std::vector<int> rows = selectedRows(screen, selection);
  if (!editable(screen) || rows.empty()) return;
  const int row = rows.front();
  try {
    if (const int indexed = lastIndexedRow(session, screen); row < indexed) {
      gMsgBox(host, joinLines({"Indexが作成されています。", " 行 : [ " + std::to_string(indexed) + " ] ",
                               "より小さい行に挿入することはできません."}));
      return;
    }
  } catch (const EngineError& error) {
    tellError(session, host, "mnuInSert", error);
    return;
  }
  if (!confirmed(host, screen, row, "挿入", "挿入確認")) return;
  insertRows(screen, row, static_cast<int>(rows.size()));
  screen.activeRow = row;
  showActiveRow(session, host, screen);
}

void mnuDelete_Click(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection) {
  const std::vector<int> rows = selectedRows(screen, selection);
  if (!editable(screen) || rows.empty() || !confirmed(host, screen, rows.front(), "削除", "削除確認")) return;
  changeGrid(screen, [&] { deleteRows(screen.Spread, rows); });
  screen.activeRow = rows.front();
  showActiveRow(session, host, screen);
}

void mnuAddLine_Click(Session& session, Host& host, frmTBDetail& screen) {
  if (!editable(screen)) return;
  Spread& grid = screen.Spread;
  changeGrid(screen, [&] { grid.setMaxRows(grid.maxRows() + 1); });
  activeCellChanged(session, host, screen, col::kJapaneseName, grid.maxRows());
}

void mnuDuplicate_Click(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection) {
  const std::vector<int> rows = selectedRows(screen, selection);
  if (!editable(screen) || rows.empty()) return;
  Spread& grid = screen.Spread;
  std::vector<SpreadRow> copies;
  for (int row : rows) copies.push_back(std::move(grid.rows(row, row).front()));
  const int behind = rows.back();
  changeGrid(screen, [&] { grid.replaceRows(behind + 1, behind, asNewFields(std::move(copies))); });
  activeCellChanged(session, host, screen, screen.activeCol, behind + 1);
}

void mnuClear_Click(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection) {
  if (!editable(screen)) return;
  if (gMsgBox(host, "選択された範囲をクリアします.", kYesNo | kQuestionIcon | kDefaultSecond, "確認") != kYes) return;
  clearCells(session, host, screen, selection);
}

void clearCells(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection) {
  if (!editable(screen)) return;
  const GridSelection cells = orActiveCell(screen, selection);
  try {
    changeGrid(screen, [&] {
      for (int row : selectedRows(screen, cells)) clearRow(session, screen, cells, row);
    });
  } catch (const EngineError& error) {
    tellError(session, host, "mnuClear", error);
  }
  showActiveRow(session, host, screen);
}

bool Spread_KeyDown(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection,
                    CopyHistory& history, std::string_view key, int shiftState) {
  const std::string word = toLower(key);
  if (shiftState == 0 && word == "delete") {
    clearCells(session, host, screen, selection);
  } else if (shiftState == 0 && word == "insert") {
    mnuInSert_Click(session, host, screen, selection);
  } else if (shiftState != kCtrlAlone) {
    return false;
  } else if (word == "c") {
    mnuCopy_Click(session, host, screen, selection, history);
  } else if (word == "v") {
    mnuPaste_Click(session, host, screen, selection, history);
  } else if (word == "z") {
    mnuUndo_Click(session, host, screen);
  } else if (word == "y") {
    mnuRedo_Click(session, host, screen);
  } else if (word == "d") {
    mnuDuplicate_Click(session, host, screen, selection);
  } else {
    return false;
  }
  return true;
}

}  // namespace quillmarden
