#include "desktop/spread_view.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "common/typed_cell.h"
#include "desktop/binder.h"

namespace quillmarden {

namespace {

constexpr double kPointsPerInch = 72;
constexpr int kRowPadding = 4;

CellBlock blockOf(const QItemSelectionRange& range) {
  return {range.left() + 1, range.top() + 1, range.right() + 1, range.bottom() + 1};
}

}  // namespace

SpreadView::SpreadView(Spread& spread, SpreadActions actions, QWidget* parent)
    : QTableView(parent),
      actions_(std::move(actions)),
      spread_(spread),
      model_(spread),
      delegate_(new SpreadDelegate(this)) {
  model_.writeCell = [this](int col, int row, std::string_view text) {
    if (actions_.writeCell) return actions_.writeCell(col, row, text);
    change(row, row, [&] { spread_.setText(col, row, text); });
  };
  model_.refused = [this](const QModelIndex& index, const QString& fault) { tellFault(index, fault); };
  model_.columnsChanged = [this] { applyColumns(); };
  setModel(&model_);
  setItemDelegate(delegate_);
  delegate_->faultOf = [this](const QModelIndex& index, const QString& text) { return model_.faultOf(index, text); };
  delegate_->tellFault = [this](const QModelIndex& index, const QString& fault) { tellFault(index, fault); };
  delegate_->leaveCell = [this](CellStep next) { step(next); };
  setSelectionMode(ExtendedSelection);
  setSelectionBehavior(SelectItems);
  setEditTriggers(AnyKeyPressed | DoubleClicked | EditKeyPressed);
  setHorizontalScrollMode(ScrollPerPixel);
  setWordWrap(false);
  setCornerButtonEnabled(true);
  horizontalHeader()->setHighlightSections(true);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  horizontalHeader()->setMinimumSectionSize(16);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setHighlightSections(true);
  connect(horizontalHeader(), &QHeaderView::sectionResized, this,
          [this](int section, int, int pixels) { noteWidth(section, pixels); });
  setLook(font().pointSizeF(), 1.3);
}

void SpreadView::refresh() { model_.refresh(); }

double SpreadView::letterWidth() const { return QFontMetricsF(font()).horizontalAdvance('W'); }

void SpreadView::setLook(double fontSize, double rowHeightScale) {
  QFont wanted = font();
  if (fontSize > 0) wanted.setPointSizeF(fontSize);
  setFont(wanted);
  const double pixels = wanted.pointSizeF() * rowHeightScale * logicalDpiY() / kPointsPerInch;
  const int height = std::max(static_cast<int>(std::lround(pixels)), QFontMetrics(wanted).height() + kRowPadding);
  verticalHeader()->setMinimumSectionSize(height);
  verticalHeader()->setDefaultSectionSize(height);
  applyColumns();
}

void SpreadView::applyColumns() {
  applying_ = true;
  for (int col = 1; col <= std::min(spread_.maxCols(), model_.columnCount()); ++col) {
    setColumnHidden(col - 1, spread_.column(col).hidden);
    if (const double width = spread_.column(col).width; width > 0)
      setColumnWidth(col - 1, static_cast<int>(std::lround(width * letterWidth())));
  }
  applying_ = false;
}

void SpreadView::noteWidth(int section, int pixels) {
  // Hiding a column counts as resizing it to nothing.
  if (applying_ || pixels <= 0 || !actions_.widthSet) return;
  const double letters = pixels / letterWidth();
  actions_.widthSet(section + 1, std::round(letters * 100) / 100);
}

void SpreadView::setLatinOnMove(bool on) {
  latinOnMove_ = on;
  setInputMethodHints(on ? Qt::ImhPreferLatin : Qt::ImhNone);
}

void SpreadView::tellFault(const QModelIndex& index, const QString& fault) {
  QApplication::beep();
  QToolTip::showText(viewport()->mapToGlobal(visualRect(index).bottomLeft()), fault, viewport());
}

void SpreadView::endEdit() {
  if (state() != EditingState) return;
  QWidget* editor = indexWidget(currentIndex());
  if (!editor) return;
  commitData(editor);
  closeEditor(editor, QAbstractItemDelegate::NoHint);
}

void SpreadView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  if (!stepping_) tabStart_.reset();
  if (previous.isValid()) update(previous);
  if (latinOnMove_) QGuiApplication::inputMethod()->reset();
  if (current.isValid() && actions_.moved) actions_.moved(current.column() + 1, current.row() + 1);
}

bool SpreadView::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
  const bool opened = QTableView::edit(index, trigger, event);
  if (!opened) return opened;
  const bool typed = trigger == AnyKeyPressed;
  delegate_->setTyping(typed);
  if (typed) return opened;
  // A double click or F2 goes on with the text, and doesn't offer it for replacement.
  if (auto* line = qobject_cast<QLineEdit*>(indexWidget(index))) line->end(false);
  return opened;
}

std::vector<CellBlock> SpreadView::blocks() const {
  std::vector<CellBlock> blocks;
  for (const QItemSelectionRange& range : selectionModel()->selection())
    if (range.isValid()) blocks.push_back(blockOf(range));
  if (blocks.empty() && currentIndex().isValid())
    blocks.push_back({currentCol(), currentRow(), currentCol(), currentRow()});
  return blocks;
}

void SpreadView::goTo(int col, int row) {
  const QModelIndex index = model_.index(row - 1, col - 1);
  if (!index.isValid()) return;
  selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
  scrollTo(index);
}

// --- blocks

TextRows SpreadView::textsOf(const CellBlock& block) const {
  TextRows rows;
  for (int row = block.firstRow; row <= std::min(block.lastRow, spread_.maxRows()); ++row) {
    auto& cells = rows.emplace_back();
    for (int col = block.firstCol; col <= block.lastCol; ++col)
      if (!isColumnHidden(col - 1)) cells.emplace_back(spread_.text(col, row));
  }
  return rows;
}

void SpreadView::change(int firstRow, int lastRow, const std::function<void()>& body) {
  forgetForeignSteps();
  GridStep step = recordStep(spread_, firstRow, lastRow, body);
  ownRevision_ = spread_.revision();
  if (step.before.empty() && step.after.empty()) return;
  step.col = std::max(currentCol(), 1);
  step.row = std::max(currentRow(), 1);
  undo_.add(std::move(step));
}

void SpreadView::forgetForeignSteps() {
  // The screen has changed the rows since, as when it loads others: the steps belong to rows that are gone.
  if (spread_.revision() != ownRevision_) undo_.clear();
}

void SpreadView::showStep(const GridStep* step) {
  if (!step) return;
  ownRevision_ = spread_.revision();
  refresh();
  goTo(step->col, step->row);
}

void SpreadView::undo() {
  if (!actions_.undo) {
    forgetForeignSteps();
    return showStep(undo_.undo(spread_));
  }
  actions_.undo();
  refresh();
}

void SpreadView::redo() {
  if (!actions_.redo) {
    forgetForeignSteps();
    return showStep(undo_.redo(spread_));
  }
  actions_.redo();
  refresh();
}

void SpreadView::writeBlock(int col, int row, const TextRows& texts) {
  if (texts.empty()) return;
  if (actions_.writeBlock) {
    actions_.writeBlock(col, row, texts);
    return refresh();
  }
  const int lastRow =
      std::min(row + static_cast<int>(texts.size()) - 1, model_.grows() ? Spread::kMaxRows : spread_.maxRows());
  QString fault;
  change(row, lastRow, [&] {
    for (int target = row; target <= lastRow; ++target) {
      const QString found = writeRow(col, target, texts[static_cast<std::size_t>(target - row)]);
      if (fault.isEmpty()) fault = found;
    }
  });
  refresh();
  if (!fault.isEmpty()) tellFault(model_.index(row - 1, col - 1), fault);
}

QString SpreadView::writeRow(int col, int row, const std::vector<std::string>& texts,
                             const std::function<void(int col, int row)>& changed) {
  QString fault;
  for (const std::string& text : texts) {
    while (col <= spread_.maxCols() && spread_.column(col).hidden) ++col;
    if (col > spread_.maxCols()) break;
    const CellKind kind = row > spread_.maxRows() ? spread_.column(col).kind : spread_.kind(col, row);
    const TypedCell cell = typedCell(spread_.column(col), kind, text);
    if (!cell.fault.empty()) {
      if (fault.isEmpty() && kind != CellKind::Static) fault = toQt("[" + spread_.column(col).title + "]" + cell.fault);
    } else if (cell.text != spread_.text(col, row)) {
      spread_.setText(col, row, cell.text);
      if (changed) changed(col, row);
    }
    ++col;
  }
  return fault;
}

void SpreadView::copy() {
  const auto selected = blocks();
  if (selected.empty()) return;
  if (actions_.copy) return actions_.copy();
  QApplication::clipboard()->setText(toQt(toTabText(textsOf(selected.front()))));
}

void SpreadView::cut() {
  copy();
  clearSelected();
}

void SpreadView::paste() {
  const auto selected = blocks();
  if (selected.empty()) return;
  if (actions_.paste) {
    actions_.paste();
    return refresh();
  }
  writeBlock(selected.front().firstCol, selected.front().firstRow,
             fromTabText(fromQt(QApplication::clipboard()->text())));
}

void SpreadView::clearSelected() {
  if (actions_.clear) {
    actions_.clear();
    return refresh();
  }
  for (const CellBlock& block : blocks()) {
    const std::size_t width = static_cast<std::size_t>(block.lastCol - block.firstCol + 1);
    const std::size_t height = static_cast<std::size_t>(block.lastRow - block.firstRow + 1);
    writeBlock(block.firstCol, block.firstRow, TextRows(height, std::vector<std::string>(width)));
  }
}

void SpreadView::fill(bool down) {
  for (const CellBlock& block : blocks()) {
    TextRows rows = textsOf(block);
    if (rows.empty()) continue;
    if (down) {
      std::fill(rows.begin() + 1, rows.end(), rows.front());
    } else {
      for (auto& row : rows) std::fill(row.begin(), row.end(), row.empty() ? std::string() : std::string(row.front()));
    }
    writeBlock(block.firstCol, block.firstRow, rows);
  }
}

void SpreadView::fillDown() { fill(true); }

void SpreadView::fillRight() { fill(false); }

}  // namespace quillmarden
