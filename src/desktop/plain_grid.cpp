#include "desktop/plain_grid.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <algorithm>

#include "desktop/view.h"

namespace quillmarden {

SpreadActions PlainGrid::actionsOf(PlainGrid* grid) {
  SpreadActions actions;
  actions.writeCell = [grid](int col, int row, std::string_view text) { grid->write(col, row, {{std::string(text)}}); };
  actions.writeBlock = [grid](int col, int row, const TextRows& texts) { grid->write(col, row, texts); };
  actions.undo = [grid] { grid->takeStep(&GridUndo::undo); };
  actions.redo = [grid] { grid->takeStep(&GridUndo::redo); };
  return actions;
}

PlainGrid::PlainGrid(View& view, Spread& spread, CellBlock& block, std::function<void(int col, int row)> changed)
    : SpreadView(spread, actionsOf(this)), view_(view), spread_(spread), block_(block), changed_(std::move(changed)) {
  setObjectName(QStringLiteral("Spread"));
  const AppSettings& settings = view_.app().session.settings;
  setLook(settings.fontSize2Spread, settings.spreadRowHeightScale);
  setLatinOnMove(settings.imeControlIsOff);
  horizontalHeader()->setStretchLastSection(true);
  // More rows than the record has ready can be typed.
  spreadModel().setGrows(true);
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { noteBlock(); });
}

void PlainGrid::noteBlock() {
  const auto selected = blocks();
  block_ = selected.empty() ? CellBlock{} : selected.front();
  block_.wholeRows = block_.firstCol == 1 && block_.lastCol == spread_.maxCols();
}

void PlainGrid::showRecord(bool unsaved) {
  if (!unsaved) steps_.clear();
  refresh();
  noteBlock();
}

void PlainGrid::step(const Handler& body) {
  GridStep made = recordStep(spread_, 1, spread_.maxRows(), body);
  if (made.before.empty() && made.after.empty()) return;
  made.col = std::max(currentCol(), 1);
  made.row = std::max(currentRow(), 1);
  steps_.add(std::move(made));
}

Handler PlainGrid::asStep(Handler handler) {
  return [this, handler = std::move(handler)] { step(handler); };
}

void PlainGrid::write(int col, int row, const TextRows& texts) {
  QString fault;
  view_.front().turn().run([&] {
    step([&] {
      for (std::size_t i = 0; i < texts.size(); ++i) {
        const QString found = writeRow(col, row + static_cast<int>(i), texts[i], changed_);
        if (fault.isEmpty()) fault = found;
      }
    });
  });
  if (!fault.isEmpty()) tellFault(spreadModel().index(row - 1, col - 1), fault);
}

void PlainGrid::takeStep(const GridStep* (GridUndo::*take)(Spread&)) {
  const GridStep* taken = nullptr;
  view_.front().turn().run([&] { taken = (steps_.*take)(spread_); });
  if (taken) goTo(taken->col, taken->row);
}

void PlainGrid::contextMenuEvent(QContextMenuEvent* event) {
  if (!popUp_) return;
  endEdit();
  const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
  if (byMouse) {
    const QModelIndex cell = indexAt(viewport()->mapFromGlobal(event->globalPos()));
    if (cell.isValid() && !selectionModel()->isSelected(cell)) goTo(cell.column() + 1, cell.row() + 1);
  }
  popUp_->popup(byMouse ? event->globalPos() : viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft()));
}

}  // namespace quillmarden
