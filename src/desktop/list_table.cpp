#include "desktop/list_table.h"

#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>

#include "desktop/list_model.h"

namespace quillmarden {

ListTable::ListTable(const ListBox& list, const QStringList& headings, QWidget* parent)
    : QTableView(parent), model_(new ListModel(list, headings, this)) {
  setModel(model_);
  setProperty("role", "rows");
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setWordWrap(false);
  setTabKeyNavigation(false);  // Tab leads on to the next control
  setCornerButtonEnabled(false);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setStretchLastSection(true);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  setPointSize(font().pointSizeF());
}

void ListTable::setPointSize(double points) {
  QFont own = font();
  own.setPointSizeF(points);
  setFont(own);
  verticalHeader()->setDefaultSectionSize(QFontMetrics(own).height() + 6);
}

void ListTable::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter || !entered || !currentIndex().isValid() || (event->modifiers() & ~Qt::KeypadModifier))
    return QTableView::keyPressEvent(event);
  event->accept();
  entered();
}

void ListTable::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::RightButton) {
    event->accept();
    return;
  }
  QTableView::mousePressEvent(event);
}

void ListTable::contextMenuEvent(QContextMenuEvent* event) {
  if (!popUp) return;
  const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
  const QModelIndex row = byMouse ? indexAt(viewport()->mapFromGlobal(event->globalPos())) : currentIndex();
  popUp(row.isValid() ? row.row() : -1,
        byMouse ? event->globalPos() : viewport()->mapToGlobal(visualRect(row).bottomLeft()));
}

void chooseForPopUp(ListBox& list, int row) {
  if (row < 0 || row >= list.count() || list.selected[static_cast<std::size_t>(row)]) return;
  std::fill(list.selected.begin(), list.selected.end(), false);
  list.selected[static_cast<std::size_t>(row)] = true;
  list.listIndex = row;
}

}  // namespace quillmarden
