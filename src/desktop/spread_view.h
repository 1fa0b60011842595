#pragma once

#include <QTableView>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "desktop/spread_delegate.h"
#include "desktop/spread_model.h"
#include "editing/grid_undo.h"
#include "screen/cell_block.h"
#include "screen/spread.h"
#include "screen/tab_text.h"

namespace quillmarden {

/// What a screen does when a person works in its grid; columns and rows count from 1. Without them the view writes to
/// the record by itself and keeps its own steps to take back.
struct SpreadActions {
  std::function<void(int col, int row, std::string_view text)> writeCell;
  /// Texts from this cell on to the right and down: pasted or filled ones.
  std::function<void(int col, int row, const TextRows& texts)> writeBlock;
  std::function<void()> clear;  ///< empties the selected blocks
  std::function<void()> copy;   ///< puts them on the clipboard
  std::function<void()> paste;
  std::function<void()> undo;
  std::function<void()> redo;
  std::function<void(int col, int row)> moved;          ///< another cell is the current one
  std::function<void(int col, double width)> widthSet;  ///< in widths of "W", by a person
};

/// A grid as people know it from a spreadsheet: typing replaces, F2 edits, Enter and Tab go on, Shift goes back, Delete
/// empties, blocks travel through the clipboard, Ctrl+D and Ctrl+R fill. Ctrl+Tab leaves the grid.
class SpreadView : public QTableView {
 public:
  /// The record outlives the view.
  SpreadView(Spread& spread, SpreadActions actions, QWidget* parent = nullptr);

  /// Shows what changed in the record.
  void refresh();
  /// Font size in points, row height as a multiple of it; a row is never lower than its text.
  void setLook(double fontSize, double rowHeightScale);
  /// Whether moving to a cell turns the input method to Latin letters.
  void setLatinOnMove(bool on);
  /// Tells beside a cell why it does not take a text.
  void tellFault(const QModelIndex& index, const QString& fault);
  /// Takes the text of an open editor into the record.
  void endEdit();

  /// The selected blocks, or the current cell alone when nothing is selected; empty without a current cell.
  std::vector<CellBlock> blocks() const;
  void goTo(int col, int row);
  int currentCol() const { return currentIndex().isValid() ? currentIndex().column() + 1 : 0; }
  int currentRow() const { return currentIndex().isValid() ? currentIndex().row() + 1 : 0; }

  void copy();
  void cut();
  void paste();
  void clearSelected();
  void undo();
  void redo();
  void fillDown();
  void fillRight();

  SpreadModel& spreadModel() { return model_; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  /// Puts texts into the visible cells from this one on and calls `changed` for each that got another text. Why the
  /// first cell that does not take its text does not; "" for none.
  QString writeRow(int col, int row, const std::vector<std::string>& texts,
                   const std::function<void(int col, int row)>& changed = {});

 private:
  bool pressShortcut(QKeyEvent& event);
  bool pressStep(QKeyEvent& event);
  bool pressOnCell(QKeyEvent& event);
  void openList();
  void toggleChecks();
  void step(CellStep step);
  bool stepWithin(CellStep step);
  void jump(int columns, int rows, bool select);
  QModelIndex besideVisible(const QModelIndex& from, int columns) const;
  QModelIndex edgeFrom(const QModelIndex& from, int columns, int rows) const;
  void fill(bool down);
  void writeBlock(int col, int row, const TextRows& texts);
  TextRows textsOf(const CellBlock& block) const;
  void change(int firstRow, int lastRow, const std::function<void()>& body);
  void forgetForeignSteps();
  void showStep(const GridStep* step);
  void applyColumns();
  void noteWidth(int section, int pixels);
  double letterWidth() const;

  SpreadActions actions_;
  Spread& spread_;
  SpreadModel model_;
  SpreadDelegate* delegate_;
  GridUndo undo_;                ///< of a grid whose screen keeps none
  long ownRevision_ = -1;        ///< of the record after the last of these steps
  std::optional<int> tabStart_;  ///< the column where a run of Tabs began, to which Enter goes back
  bool stepping_ = false;
  bool applying_ = false;  ///< widths come from the record, not from a person
  bool latinOnMove_ = false;
};

}  // namespace quillmarden
