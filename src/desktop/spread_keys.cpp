#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QWheelEvent>

#include "desktop/spread_view.h"

// What the keys do in a grid.

namespace quillmarden {

namespace {

bool isUndo(const QKeyEvent& event) { return event.matches(QKeySequence::Undo); }

bool isRedo(const QKeyEvent& event) {
  return event.matches(QKeySequence::Redo) || (event.key() == Qt::Key_Y && event.modifiers() == Qt::ControlModifier);
}

bool isPlain(const QKeyEvent& event) { return (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier; }

}  // namespace

void SpreadView::keyPressEvent(QKeyEvent* event) {
  if (pressShortcut(*event) || pressStep(*event) || pressOnCell(*event)) {
    event->accept();
    return;
  }
  QTableView::keyPressEvent(event);
}

void SpreadView::inputMethodEvent(QInputMethodEvent* event) {
  // A text that comes without having been composed before, such as a full-width sign, is typed like any other. Qt
  // begins an edit for a composition alone.
  const bool atOnce = state() != EditingState && event->preeditString().isEmpty() && !event->commitString().isEmpty();
  if (!atOnce) return QTableView::inputMethodEvent(event);
  if (edit(currentIndex(), AnyKeyPressed, nullptr)) QApplication::sendEvent(indexWidget(currentIndex()), event);
}

bool SpreadView::pressShortcut(QKeyEvent& event) {
  const bool control = event.modifiers() == Qt::ControlModifier;
  if (event.matches(QKeySequence::Copy)) {
    copy();
  } else if (event.matches(QKeySequence::Cut)) {
    cut();
  } else if (event.matches(QKeySequence::Paste)) {
    paste();
  } else if (isUndo(event)) {
    undo();
  } else if (isRedo(event)) {
    redo();
  } else if (control && event.key() == Qt::Key_D) {
    fillDown();
  } else if (control && event.key() == Qt::Key_R) {
    fillRight();
  } else if (event.key() == Qt::Key_Tab && control) {
    QWidget::focusNextPrevChild(true);
  } else if (event.key() == Qt::Key_Backtab && event.modifiers() & Qt::ControlModifier) {
    QWidget::focusNextPrevChild(false);
  } else {
    return false;
  }
  return true;
}

bool SpreadView::pressStep(QKeyEvent& event) {
  const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
  const bool shift = modifiers == Qt::ShiftModifier;
  if (modifiers == Qt::NoModifier || shift) {
    switch (event.key()) {
      case Qt::Key_Return:
      case Qt::Key_Enter:
        step(shift ? CellStep::Up : CellStep::Down);
        return true;
      case Qt::Key_Tab:
        step(CellStep::Next);
        return true;
      case Qt::Key_Backtab:
        step(CellStep::Previous);
        return true;
      default:
        return false;
    }
  }
  if (!(modifiers & Qt::ControlModifier) || (modifiers & ~(Qt::ControlModifier | Qt::ShiftModifier))) return false;
  const bool select = modifiers & Qt::ShiftModifier;
  switch (event.key()) {
    case Qt::Key_Up:
      jump(0, -1, select);
      return true;
    case Qt::Key_Down:
      jump(0, 1, select);
      return true;
    case Qt::Key_Left:
      jump(-1, 0, select);
      return true;
    case Qt::Key_Right:
      jump(1, 0, select);
      return true;
    default:
      return false;
  }
}

bool SpreadView::pressOnCell(QKeyEvent& event) {
  const QModelIndex cell = currentIndex();
  if (event.key() == Qt::Key_Delete && isPlain(event)) {
    clearSelected();
    return true;
  }
  if (!cell.isValid()) return false;
  const CellKind kind = model_.kindAt(cell);
  if (event.key() == Qt::Key_Backspace && isPlain(event)) {
    if (edit(cell, AnyKeyPressed, nullptr)) QApplication::sendEvent(indexWidget(cell), &event);
    return true;
  }
  if (kind == CellKind::Check && event.key() == Qt::Key_Space && isPlain(event)) {
    toggleChecks();
    return true;
  }
  if (kind == CellKind::List && event.modifiers() & Qt::AltModifier &&
      (event.key() == Qt::Key_Down || event.key() == Qt::Key_Up)) {
    openList();
    return true;
  }
  return false;
}

void SpreadView::openList() {
  if (!edit(currentIndex(), EditKeyPressed, nullptr)) return;
  if (auto* list = qobject_cast<QComboBox*>(indexWidget(currentIndex()))) list->showPopup();
}

void SpreadView::toggleChecks() {
  const Qt::CheckState wanted =
      currentIndex().data(Qt::CheckStateRole).toInt() == Qt::Checked ? Qt::Unchecked : Qt::Checked;
  QModelIndexList cells = selectionModel()->selectedIndexes();
  if (!cells.contains(currentIndex())) cells = {currentIndex()};
  for (const QModelIndex& cell : cells)
    if (model_.kindAt(cell) == CellKind::Check) model_.setData(cell, wanted, Qt::CheckStateRole);
}

QModelIndex SpreadView::besideVisible(const QModelIndex& from, int columns) const {
  const int way = columns < 0 ? -1 : 1;
  int row = from.row();
  int column = from.column();
  for (;;) {
    column += way;
    if (column < 0 || column >= model_.columnCount()) {
      row += way;
      column = way > 0 ? 0 : model_.columnCount() - 1;
      if (row < 0 || row >= model_.rowCount()) return {};
    }
    if (!isColumnHidden(column)) return model_.index(row, column);
  }
}

bool SpreadView::stepWithin(CellStep step) {
  const QItemSelection selection = selectionModel()->selection();
  const auto range = std::find_if(selection.begin(), selection.end(),
                                  [this](const auto& candidate) { return candidate.contains(currentIndex()); });
  if (range == selection.end() || range->width() * range->height() < 2) return false;
  const int width = range->width();
  const int height = range->height();
  const bool byRow = step == CellStep::Next || step == CellStep::Previous;
  const int way = step == CellStep::Next || step == CellStep::Down ? 1 : -1;
  QModelIndex next = currentIndex();
  do {
    const int x = next.column() - range->left();
    const int y = next.row() - range->top();
    const int count = width * height;
    const int place = ((byRow ? y * width + x : x * height + y) + way + count) % count;
    next = byRow ? model_.index(range->top() + place / width, range->left() + place % width)
                 : model_.index(range->top() + place % height, range->left() + place / height);
  } while (isColumnHidden(next.column()) && next != currentIndex());
  selectionModel()->setCurrentIndex(next, QItemSelectionModel::NoUpdate);
  scrollTo(next);
  return true;
}

void SpreadView::step(CellStep step) {
  const QModelIndex from = currentIndex();
  if (!from.isValid()) return;
  const bool arrow = step == CellStep::Left || step == CellStep::Right;
  if (!arrow && stepWithin(step)) return;
  const bool tab = step == CellStep::Next || step == CellStep::Previous;
  QModelIndex to;
  if (tab || arrow) {
    to = besideVisible(from, step == CellStep::Next || step == CellStep::Right ? 1 : -1);
  } else {
    const int column = step == CellStep::Down && tabStart_ ? *tabStart_ : from.column();
    to = model_.index(from.row() + (step == CellStep::Down ? 1 : -1), column);
  }
  if (!to.isValid()) return;
  const std::optional<int> start = tab ? tabStart_.value_or(from.column()) : std::optional<int>();
  stepping_ = true;
  goTo(to.column() + 1, to.row() + 1);
  stepping_ = false;
  tabStart_ = start;
}

QModelIndex SpreadView::edgeFrom(const QModelIndex& from, int columns, int rows) const {
  const auto beside = [&](const QModelIndex& cell) {
    int column = cell.column() + columns;
    while (columns != 0 && column >= 0 && column < model_.columnCount() && isColumnHidden(column)) column += columns;
    return model_.index(cell.row() + rows, column);
  };
  const auto holds = [](const QModelIndex& cell) { return !cell.data(Qt::EditRole).toString().isEmpty(); };
  QModelIndex at = beside(from);
  if (!at.isValid()) return from;
  // From within filled cells to their last one, else over the gap to the next filled cell.
  const bool alongFilled = holds(from) && holds(at);
  for (QModelIndex next = beside(at); next.isValid(); next = beside(next)) {
    if (alongFilled && !holds(next)) break;
    if (!alongFilled && holds(at)) break;
    at = next;
  }
  return at;
}

void SpreadView::jump(int columns, int rows, bool select) {
  if (!currentIndex().isValid()) return;
  const QModelIndex to = edgeFrom(currentIndex(), columns, rows);
  if (!select) return goTo(to.column() + 1, to.row() + 1);
  const QItemSelection between(selectionModel()->currentIndex(), to);
  selectionModel()->select(between, QItemSelectionModel::Select);
  selectionModel()->setCurrentIndex(to, QItemSelectionModel::NoUpdate);
  scrollTo(to);
}

void SpreadView::wheelEvent(QWheelEvent* event) {
  // Wheel turns with Shift move sideways, as in a spreadsheet.
  if (event->modifiers() != Qt::ShiftModifier || event->angleDelta().y() == 0) return QTableView::wheelEvent(event);
  QWheelEvent sideways(event->position(), event->globalPosition(), event->pixelDelta().transposed(),
                       event->angleDelta().transposed(), event->buttons(), Qt::NoModifier, event->phase(),
                       event->inverted());
  QTableView::wheelEvent(&sideways);
}

}  // namespace quillmarden
