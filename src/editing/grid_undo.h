#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "screen/spread.h"

namespace quillmarden {

/// One step of editing: rows of the grid as they were and as they became. All other rows stayed the same.
struct GridStep {
  int firstRow = 1;
  std::vector<SpreadRow> before;
  std::vector<SpreadRow> after;
  int col = 1;  ///< where the person stood
  int row = 1;
};

/// The steps since the table was loaded, to be taken back and done again. When they take more memory than the limit,
/// the oldest ones can no longer be taken back.
class GridUndo {
 public:
  static constexpr std::size_t kMaxBytes = 64U << 20;

  /// Forgets all steps. `saved`: the grid is now as the Repository holds it.
  void clear(bool saved = true);
  /// Adds a step that has been done; steps that were taken back are gone.
  void add(GridStep step);
  bool canUndo() const { return done_ > 0; }
  bool canRedo() const { return done_ < steps_.size(); }
  /// Whether the grid is again as it was when the table was loaded.
  bool atSaved() const { return saved_ == done_; }

  /// Takes the last step back, or does the next one again, in the grid. The step, or nullptr when there is none.
  const GridStep* undo(Spread& grid);
  const GridStep* redo(Spread& grid);

 private:
  std::vector<GridStep> steps_;
  std::size_t done_ = 0;
  std::optional<std::size_t> saved_ = 0;  ///< done_ at the load; nothing when no step leads back there
  std::size_t bytes_ = 0;
};

/// Runs a change of the rows from `firstRow` to `lastRow`, beyond the last row included; rows that the body adds or
/// removes must lie there too. Gives the step, without rows where nothing changed. A body that throws leaves no change.
GridStep recordStep(Spread& grid, int firstRow, int lastRow, const std::function<void()>& change);

}  // namespace quillmarden
