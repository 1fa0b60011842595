#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "screen/controls.h"

namespace quillmarden {

enum class CellKind { Edit, Check, List, Static, Integer, Float };

/// How the cells of a column behave unless a cell says otherwise.
struct SpreadColumn {
  std::string title;
  CellKind kind = CellKind::Edit;
  int maxLength = 0;                      ///< of an Edit cell, in bytes of CP932 (full-width 2); 0 for no limit
  bool oneLine = false;                   ///< an Edit cell without line ends and tabs
  bool date = false;                      ///< an Edit cell that takes dates alone
  std::vector<std::string> entries = {};  ///< of a List cell
  bool open = false;                      ///< a List cell that takes other texts as well
  double minimum = 0;                     ///< of an Integer or Float cell
  double maximum = 0;
  bool hidden = false;
  double width = 0;  ///< in widths of the letter "W"
};

struct SpreadCell {
  std::string text;              ///< "" holds nothing; a check cell holds "-1" or "0"
  std::optional<CellKind> kind;  ///< overrides the column's
  std::optional<Colour> backColour;
  bool operator==(const SpreadCell&) const = default;
};

/// A row taken out of a grid: all its cells and its tag.
struct SpreadRow {
  std::vector<SpreadCell> cells;
  long tag = 0;
  bool operator==(const SpreadRow&) const = default;
};

/// The grid of a screen as a plain record. Columns and rows count from 1; row 0 holds the headings, which are
/// the columns' titles. Reading outside the grid gives an empty cell. Writing below the last row grows the grid;
/// writing elsewhere outside it, or beyond kMaxRows, does nothing.
class Spread {
 public:
  /// More rows than any table has fields: a row number from a damaged file must not take all memory.
  static constexpr int kMaxRows = 100'000;

  /// Drops all rows and takes these columns. A lock ends. Room for cells is kept for the next table.
  void setColumns(std::vector<SpreadColumn> columns);
  int maxCols() const { return static_cast<int>(columns_.size()); }
  int maxRows() const { return rows_; }
  void setMaxRows(int rows);  ///< drops or adds rows at the end; 0 empties the grid cheaply, its columns stay

  const SpreadColumn& column(int col) const { return columns_.at(static_cast<std::size_t>(col - 1)); }
  SpreadColumn& column(int col) { return columns_.at(static_cast<std::size_t>(col - 1)); }

  /// The cell's text; "" when it holds nothing, which every reader treats as nothing set. Valid until the next change.
  std::string_view text(int col, int row) const;
  bool holds(int col, int row) const { return !text(col, row).empty(); }
  void setText(int col, int row, std::string_view text);
  /// The cell's kind; Static for every cell of a locked grid and outside the grid.
  CellKind kind(int col, int row) const;
  void setKind(int col, int row, CellKind kind);
  std::optional<Colour> backColour(int col, int row) const;
  void setBackColour(int col, int row, std::optional<Colour> colour);

  /// A number that travels with the row through insertions, deletions and sorting; 0 for a new row.
  long rowTag(int row) const;
  void setRowTag(int row, long tag);

  void insertRow(int row);  ///< an empty row at this place, the others move down
  void deleteRow(int row);
  /// Copies of these rows; what lies outside the grid is left out.
  std::vector<SpreadRow> rows(int first, int last) const;
  /// Puts rows in the place of those from `first` to `last`, which may be none (`last` below `first`); the rows behind
  /// move. Rows beyond kMaxRows are dropped, missing cells are blank.
  void replaceRows(int first, int last, std::vector<SpreadRow> rows);
  /// Turns the whole grid into static cells, and back.
  void lockAll(bool locked = true);
  bool locked() const { return locked_; }

  /// Grows with every change, so that a view refreshes only then.
  long revision() const { return revision_; }

 private:
  const SpreadCell* find(int col, int row) const;
  /// The cell to write to, in a row that is made when missing; nullptr where nothing can be written.
  SpreadCell* reach(int col, int row);
  std::size_t offset(int row) const { return static_cast<std::size_t>(row - 1) * columns_.size(); }

  std::vector<SpreadColumn> columns_;
  // Row by row. Cells behind the last row are blank and wait there with their room for text: a run over thousands of
  // tables fills the same grid again and again.
  std::vector<SpreadCell> cells_;
  std::vector<long> rowTags_;
  int rows_ = 0;
  bool locked_ = false;
  long revision_ = 0;
};

}  // namespace quillmarden
