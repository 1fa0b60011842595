#pragma once

#include "desktop/spread_view.h"

namespace quillmarden {

class View;
struct frmTBDetail;

/// The field grid of a detail screen: a SpreadView whose keys and edits are the record's operations.
class DetailGrid : public SpreadView {
 public:
  DetailGrid(View& view, frmTBDetail& record);

  /// Shows the record: cells, font, and the place that its operations lead to.
  void showRecord();
  /// To be called in a handler: makes the first cell that a refused check painted the active one.
  void goToFault();

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void noteSelection();
  void setPoints(double points);
  // Handlers, to be run in their turn.
  void openLink();
  void chooseLink();
  void linkTo(int col, int row, const QString& file);

  View& view_;
  frmTBDetail& record_;
  double points_ = 0;
  double heightScale_ = 0;
};

}  // namespace quillmarden
