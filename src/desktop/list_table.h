#pragma once

#include <QStringList>
#include <QTableView>
#include <functional>

#include "screen/controls.h"

namespace quillmarden {

class ListModel;

/// A list of rows with columns, as all screens show them: whole rows are chosen, their height follows the font, and a
/// long list costs nothing.
class ListTable : public QTableView {
 public:
  /// The last column takes the room that is left.
  ListTable(const ListBox& list, const QStringList& headings, QWidget* parent = nullptr);

  ListModel& rows() { return *model_; }
  void setPointSize(double points);

  /// [Enter] on the current row; without it the key goes on to the window.
  std::function<void()> entered;
  /// A right click, or the menu key: the row under it, -1 for none. A right press alone chooses nothing: it is no
  /// click.
  std::function<void(int row, const QPoint& globalPlace)> popUp;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  ListModel* model_;
};

/// Makes the row the only chosen one of the record unless it is among the chosen ones; a row of -1 changes nothing.
void chooseForPopUp(ListBox& list, int row);

}  // namespace quillmarden
