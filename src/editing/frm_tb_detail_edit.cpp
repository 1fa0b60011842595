#include "editing/frm_tb_detail_edit.h"

#include <algorithm>

#include "common/message.h"
#include "common/numbers.h"
#include "common/settings.h"
#include "common/text.h"
#include "dictionary/division.h"
#include "editing/detail_parts.h"
#include "editing/frm_tb_info.h"

namespace quillmarden {

namespace {

namespace col = field_col;

constexpr double kSmallestFont = 6;
constexpr double kLargestFont = 72;

bool blankRow(const Spread& grid, int row) {
  for (int number = 1; number <= grid.maxCols(); ++number)
    if (number != col::kOrder && number != col::kChanged && grid.holds(number, row)) return false;
  return true;
}

void numberRow(Spread& grid, int row) {
  if (!blankRow(grid, row)) grid.setText(col::kOrder, row, threeDigits(row));
}

void showChanged(frmTBDetail& screen) {
  screen.changed = !screen.undo.atSaved();
  screen.picRen.visible = screen.changed;
}

bool addStep(frmTBDetail& screen, GridStep step) {
  if (step.before.empty() && step.after.empty()) return false;
  step.col = screen.activeCol;
  step.row = screen.activeRow;
  screen.undo.add(std::move(step));
  showChanged(screen);
  return true;
}

/// After a step that was taken back or done again.
void goTo(Session& session, Host& host, frmTBDetail& screen, const GridStep* step) {
  if (step == nullptr) return;
  screen.activeCol = step->col;
  screen.activeRow = std::clamp(step->row, 1, std::max(screen.Spread.maxRows(), 1));
  showChanged(screen);
  showActiveRow(session, host, screen);
}

/// The value list is an aid: when it cannot be read, the table is still on show.
void showValueList(Session& session, Host& host, frmTBDetail& screen) {
  screen.lstAtai.clear();
  if (screen.mode != DetailMode::Table && screen.mode != DetailMode::Text) return;
  const std::string name(trim(screen.Spread.text(col::kValueList, screen.activeRow)));
  if (name.empty()) return;
  try {
    for (std::string& entry : pGetDivisionDetails2Text(*session.gDB, screen.lblSystemName.caption, name))
      screen.lstAtai.add(std::move(entry));
  } catch (const EngineError& error) {
    session.log.putError(host, "pGetDivisionDetails2Text", error.number(), error.what());
  }
}

void showRemark(frmTBDetail& screen) {
  const Spread& grid = screen.Spread;
  screen.lblBiko.caption = "備考 [ " + std::string(grid.text(col::kJapaneseName, screen.activeRow)) + " ]";
  screen.Txtbiko.text = grid.text(col::kRemark, screen.activeRow);
}

}  // namespace

void showActiveRow(Session& session, Host& host, frmTBDetail& screen) {
  screen.lblColRow.caption = threeDigits(screen.activeCol) + " : " + threeDigits(screen.activeRow);
  showRemark(screen);
  showValueList(session, host, screen);
}

bool changeGrid(frmTBDetail& screen, const std::function<void()>& change) {
  Spread& grid = screen.Spread;
  return addStep(screen, recordStep(grid, 1, std::max(grid.maxRows(), 1), [&] {
                   change();
                   for (int row = 1; row <= grid.maxRows(); ++row) numberRow(grid, row);
                 }));
}

bool changeRow(frmTBDetail& screen, int row, const std::function<void()>& change) {
  return addStep(screen, recordStep(screen.Spread, row, row, [&] {
                   change();
                   numberRow(screen.Spread, row);
                 }));
}

void markRow(frmTBDetail& screen, int row) { screen.Spread.setText(col::kChanged, row, kChangedMark); }

bool cellEdited(Session& session, Host& host, frmTBDetail& screen, int number, int row, std::string_view newText) {
  bool taken = false;
  // A cell of a text file's layout moves all fields behind it.
  const bool manyRows = screen.mode == DetailMode::Text;
  const auto put = [&] { taken = putCell(session, screen, number, row, newText); };
  try {
    if (manyRows ? changeGrid(screen, put) : changeRow(screen, row, put)) {
      if (row == screen.activeRow) showRemark(screen);
    }
  } catch (const EngineError& error) {
    taken = false;
    tellError(session, host, "cellEdited", error);
  }
  return taken;
}

void activeCellChanged(Session& session, Host& host, frmTBDetail& screen, int number, int row) {
  const bool sameRow = row == screen.activeRow;
  screen.activeCol = std::max(number, 1);
  screen.activeRow = std::max(row, 1);
  if (sameRow)
    screen.lblColRow.caption = threeDigits(screen.activeCol) + " : " + threeDigits(screen.activeRow);
  else
    showActiveRow(session, host, screen);
}

void Txtbiko_Change(Session& session, Host& host, frmTBDetail& screen, std::string_view text) {
  if (screen.Txtbiko.locked) return;
  const std::string typed(text);
  if (const std::string fault = cellFault(screen, col::kRemark, screen.activeRow, typed); !fault.empty()) {
    gMsgBox(host, fault, kOkOnly | kWarningIcon, "入力確認");
    return showRemark(screen);
  }
  if (!cellEdited(session, host, screen, col::kRemark, screen.activeRow, typed)) showRemark(screen);
}

bool setDomain(Session& session, Host& host, frmTBDetail& screen, int row, long domainId) {
  if (!editable(screen) || (screen.mode != DetailMode::Table && screen.mode != DetailMode::Text)) return true;
  bool found = false;
  try {
    changeRow(screen, row, [&] { found = linkDomain(session, screen, row, domainId); });
  } catch (const EngineError& error) {
    found = false;
    tellError(session, host, "setDomain", error);
  }
  if (row == screen.activeRow) showRemark(screen);
  return !found;
}

void setValueList(Session& session, Host& host, frmTBDetail& screen, int row, std::string_view name) {
  if (!editable(screen) || (screen.mode != DetailMode::Table && screen.mode != DetailMode::Text)) return;
  changeRow(screen, row, [&] {
    if (screen.Spread.text(col::kValueList, row) == trim(name)) return;
    screen.Spread.setText(col::kValueList, row, trim(name));
    markRow(screen, row);
  });
  if (row == screen.activeRow) showValueList(session, host, screen);
}

void mnuUndo_Click(Session& session, Host& host, frmTBDetail& screen) {
  if (editable(screen)) goTo(session, host, screen, screen.undo.undo(screen.Spread));
}

void mnuRedo_Click(Session& session, Host& host, frmTBDetail& screen) {
  if (editable(screen)) goTo(session, host, screen, screen.undo.redo(screen.Spread));
}

void cmdTBInfo_Click(Windows& windows, const frmTBDetail& screen) {
  if (!screen.lblID.caption.empty() && windows.show) windows.show("frmTBInfo");
}

void cmdRefFile_Click(Session& session, Host& host, const frmTBDetail& screen) {
  openRefFile(session, host, screen.txtRefFileNameRead.text);
}

void mnuPmark_Click(frmTBDetail& screen) {
  const bool table = screen.mode == DetailMode::Table || screen.mode == DetailMode::Text;
  if (!editable(screen) || !table || !screen.tableHasPmark || !screen.detailsHavePmark) return;
  screen.PicPmark.visible = true;
  screen.Spread.column(col::kPmark).hidden = false;
  screen.columnsFor.clear();
}

std::vector<CellPlace> badCells(const frmTBDetail& screen) {
  const Spread& grid = screen.Spread;
  std::vector<CellPlace> bad;
  const auto isFault = [&](int number, int row) {
    // A stored type that the catalogue lacks is red for as long as it stands, and stops no save.
    return grid.backColour(number, row) == kRed && !(number == col::kType && isUnknownType(screen, row));
  };
  for (int row = 1; row <= grid.maxRows(); ++row)
    for (int number = 1; number <= grid.maxCols(); ++number)
      if (!grid.column(number).hidden && isFault(number, row)) bad.push_back({number, row});
  return bad;
}

void columnResized(Session& session, frmTBDetail& screen, int number, double width) {
  if (number < 1 || number > screen.Spread.maxCols() || !(width > 0)) return;
  screen.Spread.column(number).width = width;
  if (session.ini) putFormSetting(*session.ini, "frmTBDetail", widthKey(screen.mode, number), plainNumber(width));
}

void gridFontChanged(Session& session, double points) {
  if (!(points >= kSmallestFont && points <= kLargestFont)) return;
  session.settings.fontSize2Spread = points;
  if (session.ini) putAppSetting(*session.ini, "FontSize2Spread", plainNumber(points));
}

}  // namespace quillmarden
