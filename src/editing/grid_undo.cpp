#include "editing/grid_undo.h"

#include <algorithm>
#include <utility>

namespace quillmarden {

namespace {

int count(const std::vector<SpreadRow>& rows) { return static_cast<int>(rows.size()); }

std::size_t bytesOf(const std::vector<SpreadRow>& rows) {
  std::size_t bytes = rows.capacity() * sizeof(SpreadRow);
  for (const SpreadRow& row : rows) {
    bytes += row.cells.capacity() * sizeof(SpreadCell);
    for (const SpreadCell& cell : row.cells) bytes += cell.text.capacity();
  }
  return bytes;
}

std::size_t bytesOf(const GridStep& step) { return sizeof(GridStep) + bytesOf(step.before) + bytesOf(step.after); }

/// Drops the rows at both ends that the change left alone.
void cutToChange(GridStep& step) {
  const auto [before, after] =
      std::mismatch(step.before.begin(), step.before.end(), step.after.begin(), step.after.end());
  step.firstRow += static_cast<int>(before - step.before.begin());
  step.before.erase(step.before.begin(), before);
  step.after.erase(step.after.begin(), after);
  const auto [lastBefore, lastAfter] =
      std::mismatch(step.before.rbegin(), step.before.rend(), step.after.rbegin(), step.after.rend());
  step.before.erase(lastBefore.base(), step.before.end());
  step.after.erase(lastAfter.base(), step.after.end());
  // What stays in memory for a whole session is to be no larger than it must.
  step.before.shrink_to_fit();
  step.after.shrink_to_fit();
}

}  // namespace

void GridUndo::clear(bool saved) {
  steps_.clear();
  done_ = 0;
  bytes_ = 0;
  saved_.reset();
  if (saved) saved_ = 0;
}

void GridUndo::add(GridStep step) {
  for (std::size_t i = done_; i < steps_.size(); ++i) bytes_ -= bytesOf(steps_[i]);
  steps_.resize(done_);
  if (saved_ && *saved_ > done_) saved_.reset();
  steps_.push_back(std::move(step));
  bytes_ += bytesOf(steps_.back());
  done_ = steps_.size();

  std::size_t forgotten = 0;
  while (bytes_ > kMaxBytes && forgotten < steps_.size()) bytes_ -= bytesOf(steps_[forgotten++]);
  if (forgotten == 0) return;
  steps_.erase(steps_.begin(), steps_.begin() + static_cast<std::ptrdiff_t>(forgotten));
  done_ -= forgotten;
  if (saved_ && *saved_ >= forgotten)
    *saved_ -= forgotten;
  else
    saved_.reset();
}

const GridStep* GridUndo::undo(Spread& grid) {
  if (!canUndo()) return nullptr;
  const GridStep& step = steps_[--done_];
  grid.replaceRows(step.firstRow, step.firstRow + count(step.after) - 1, step.before);
  return &step;
}

const GridStep* GridUndo::redo(Spread& grid) {
  if (!canRedo()) return nullptr;
  const GridStep& step = steps_[done_++];
  grid.replaceRows(step.firstRow, step.firstRow + count(step.before) - 1, step.after);
  return &step;
}

GridStep recordStep(Spread& grid, int firstRow, int lastRow, const std::function<void()>& change) {
  firstRow = std::clamp(firstRow, 1, grid.maxRows() + 1);
  const int behind = std::max(grid.maxRows() - lastRow, 0);
  GridStep step;
  step.firstRow = firstRow;
  step.before = grid.rows(firstRow, grid.maxRows() - behind);
  try {
    change();
  } catch (...) {
    grid.replaceRows(firstRow, grid.maxRows() - behind, std::move(step.before));
    throw;
  }
  step.after = grid.rows(firstRow, grid.maxRows() - behind);
  cutToChange(step);
  return step;
}

}  // namespace quillmarden
