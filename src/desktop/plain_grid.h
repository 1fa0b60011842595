#pragma once

#include <functional>

#include "desktop/binder.h"
#include "desktop/spread_view.h"

class QMenu;

namespace quillmarden {

class View;

/// The grid of a screen whose record keeps no steps to take back: this one keeps them. All that one press changes is a
/// step, also what the screen's handler does to other rows.
class PlainGrid : public SpreadView {
 public:
  /// `block` follows the selection; `changed` is the screen's handler for a cell that got another text. The records
  /// outlive the grid.
  PlainGrid(View& view, Spread& spread, CellBlock& block, std::function<void(int col, int row)> changed);

  /// Shows the record. `unsaved`: whether it holds work that is not saved; without any there is nothing to take back.
  void showRecord(bool unsaved);
  /// A handler that changes rows, as one step.
  Handler asStep(Handler handler);
  /// What a right click and the menu key open.
  void setPopUp(QMenu* menu) { popUp_ = menu; }

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  static SpreadActions actionsOf(PlainGrid* grid);
  void write(int col, int row, const TextRows& texts);
  void step(const Handler& body);
  void takeStep(const GridStep* (GridUndo::*take)(Spread&));
  void noteBlock();

  View& view_;
  Spread& spread_;
  CellBlock& block_;
  std::function<void(int col, int row)> changed_;
  GridUndo steps_;
  QMenu* popUp_ = nullptr;
};

}  // namespace quillmarden
