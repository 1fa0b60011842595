#include "desktop/detail_grid.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QMenu>
#include <QMimeData>

#include "desktop/binder.h"
#include "desktop/menus.h"
#include "desktop/view.h"
#include "editing/file_link.h"
#include "editing/frm_tb_detail_edit.h"
#include "editing/grid_operations.h"

namespace quillmarden {

namespace {

/// The grid's menus of the menu map, one behind the other.
QMenu* makePopUp(View& view) {
  auto* popUp = new QMenu(&view);
  for (const Menu& menu : menuMap()) {
    if (menu.screen != "frmTBDetail" || menu.popupOf != "Spread") continue;
    if (!popUp->isEmpty()) popUp->addSeparator();
    QMenu* part = makeMenu(view, menu);
    part->setParent(popUp, part->windowFlags());  // its entries are shown here and go with it
    popUp->addActions(part->actions());
  }
  return popUp;
}

SpreadActions detailActions(View& view, frmTBDetail& record) {
  Application& app = view.app();
  const auto run = [&view](const Handler& handler) { view.front().turn().run(handler); };
  SpreadActions actions;
  actions.writeCell = [=, &app, &record](int col, int row, std::string_view text) {
    run([&] { cellEdited(app.session, app.host, record, col, row, text); });
  };
  actions.writeBlock = [=, &app, &record](int col, int row, const TextRows& texts) {
    run([&] { putBlock(app.session, app.host, record, col, row, texts); });
  };
  actions.clear = [=, &app, &record] { run([&] { clearCells(app.session, app.host, record, record.selection); }); };
  actions.copy = [=, &app, &record] {
    run([&] { mnuCopy_Click(app.session, app.host, record, record.selection, app.copies); });
  };
  actions.paste = [=, &app, &record] {
    run([&] { mnuPaste_Click(app.session, app.host, record, record.selection, app.copies); });
  };
  actions.undo = [=, &app, &record] { run([&] { mnuUndo_Click(app.session, app.host, record); }); };
  actions.redo = [=, &app, &record] { run([&] { mnuRedo_Click(app.session, app.host, record); }); };
  actions.moved = [=, &app, &record](int col, int row) {
    if (col == record.activeCol && row == record.activeRow) return;
    run([&] { activeCellChanged(app.session, app.host, record, col, row); });
  };
  actions.widthSet = [&app, &record](int col, double width) { columnResized(app.session, record, col, width); };
  return actions;
}

}  // namespace

DetailGrid::DetailGrid(View& view, frmTBDetail& record)
    : SpreadView(record.Spread, detailActions(view, record)), view_(view), record_(record) {
  setObjectName(QStringLiteral("Spread"));
  setAcceptDrops(true);
  viewport()->setAcceptDrops(true);
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { noteSelection(); });
}

void DetailGrid::noteSelection() {
  record_.selection = blocks();
  for (CellBlock& block : record_.selection)
    block.wholeRows = block.firstCol == 1 && block.lastCol == record_.Spread.maxCols();
}

void DetailGrid::showRecord() {
  const AppSettings& settings = view_.app().session.settings;
  if (points_ != settings.fontSize2Spread || heightScale_ != settings.spreadRowHeightScale) {
    points_ = settings.fontSize2Spread;
    heightScale_ = settings.spreadRowHeightScale;
    setLook(points_, heightScale_);
  }
  setLatinOnMove(settings.imeControlIsOff);
  spreadModel().setGrows(!record_.readOnly && !record_.lblID.caption.empty());
  refresh();
  if (currentCol() != record_.activeCol || currentRow() != record_.activeRow)
    goTo(record_.activeCol, record_.activeRow);
  noteSelection();
}

void DetailGrid::goToFault() {
  const auto faults = badCells(record_);
  if (faults.empty()) return;
  activeCellChanged(view_.app().session, view_.app().host, record_, faults.front().col, faults.front().row);
}

void DetailGrid::setPoints(double points) {
  gridFontChanged(view_.app().session, points);
  view_.front().turn().refresh();
}

void DetailGrid::keyPressEvent(QKeyEvent* event) {
  const bool control = event->modifiers() & Qt::ControlModifier;
  if (control && (event->key() == Qt::Key_Plus || event->key() == Qt::Key_Semicolon)) return setPoints(points_ + 1);
  if (control && event->key() == Qt::Key_Minus) return setPoints(points_ - 1);
  if (control && event->key() == Qt::Key_Return && isFileLinkCell(record_, currentCol(), currentRow()))
    return view_.later([this] { openLink(); });
  SpreadView::keyPressEvent(event);
}

void DetailGrid::wheelEvent(QWheelEvent* event) {
  if (event->modifiers() == Qt::ControlModifier && event->angleDelta().y() != 0)
    return setPoints(points_ + (event->angleDelta().y() > 0 ? 1 : -1));
  SpreadView::wheelEvent(event);
}

void DetailGrid::contextMenuEvent(QContextMenuEvent* event) {
  endEdit();
  const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
  if (byMouse) {
    const QModelIndex cell = indexAt(viewport()->mapFromGlobal(event->globalPos()));
    if (cell.isValid() && !selectionModel()->isSelected(cell)) goTo(cell.column() + 1, cell.row() + 1);
  }
  const QPoint place = byMouse ? event->globalPos() : viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft());
  QMenu* menu = makePopUp(view_);
  if (isFileLinkCell(record_, currentCol(), currentRow())) {
    menu->addSeparator();
    const auto add = [&](const char* caption, void (DetailGrid::*press)()) {
      connect(menu->addAction(QString::fromUtf8(caption)), &QAction::triggered, this,
              [this, press] { view_.later([this, press] { (this->*press)(); }); });
    };
    add("ファイルを開く\tCtrl+Enter", &DetailGrid::openLink);
    if (!record_.readOnly) add("ファイルの選択", &DetailGrid::chooseLink);
  }
  popUpOnce(menu, place);
}

void DetailGrid::openLink() {
  Application& app = view_.app();
  openFileLink(app.session, app.host, record_, currentCol(), currentRow());
}

void DetailGrid::chooseLink() {
  const QString file = QFileDialog::getOpenFileName(this, QStringLiteral("ファイルの選択"));
  if (!file.isEmpty()) linkTo(currentCol(), currentRow(), file);
}

void DetailGrid::linkTo(int col, int row, const QString& file) {
  Application& app = view_.app();
  linkFile(app.session, app.host, record_, col, row, fromQt(file));
}

void DetailGrid::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void DetailGrid::dragMoveEvent(QDragMoveEvent* event) {
  const QModelIndex cell = indexAt(event->position().toPoint());
  if (event->mimeData()->hasUrls() && isFileLinkCell(record_, cell.column() + 1, cell.row() + 1))
    event->acceptProposedAction();
  else
    event->ignore();
}

void DetailGrid::dropEvent(QDropEvent* event) {
  const QModelIndex cell = indexAt(event->position().toPoint());
  const QList<QUrl> files = event->mimeData()->urls();
  if (!cell.isValid() || files.size() != 1 || !files.front().isLocalFile()) return event->ignore();
  event->acceptProposedAction();
  view_.later([this, col = cell.column() + 1, row = cell.row() + 1, file = files.front().toLocalFile()] {
    linkTo(col, row, file);
  });
}

}  // namespace quillmarden
