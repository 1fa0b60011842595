#include "screen/spread.h"

#include <algorithm>
#include <utility>

namespace quillmarden {

namespace {

void blank(SpreadCell& cell) {
  cell.text.clear();
  cell.kind.reset();
  cell.backColour.reset();
}

}  // namespace

void Spread::setColumns(std::vector<SpreadColumn> columns) {
  setMaxRows(0);
  columns_ = std::move(columns);
  locked_ = false;
  ++revision_;
}

void Spread::setMaxRows(int rows) {
  rows = std::clamp(rows, 0, kMaxRows);
  if (rows == rows_) return;
  const auto count = static_cast<std::size_t>(rows);
  for (std::size_t i = count * columns_.size(); i < static_cast<std::size_t>(rows_) * columns_.size(); ++i)
    blank(cells_[i]);
  if (cells_.size() < count * columns_.size()) cells_.resize(count * columns_.size());
  rowTags_.resize(count);
  rows_ = rows;
  ++revision_;
}

const SpreadCell* Spread::find(int col, int row) const {
  if (col < 1 || col > maxCols() || row < 1 || row > rows_) return nullptr;
  return &cells_[offset(row) + static_cast<std::size_t>(col - 1)];
}

SpreadCell* Spread::reach(int col, int row) {
  if (col < 1 || col > maxCols() || row < 1 || row > kMaxRows) return nullptr;
  if (row > rows_) setMaxRows(row);
  return &cells_[offset(row) + static_cast<std::size_t>(col - 1)];
}

std::string_view Spread::text(int col, int row) const {
  if (row == 0 && col >= 1 && col <= maxCols()) return column(col).title;
  const SpreadCell* cell = find(col, row);
  return cell ? std::string_view(cell->text) : std::string_view();
}

void Spread::setText(int col, int row, std::string_view text) {
  if (col < 1 || col > maxCols()) return;
  if (row > rows_ && row <= kMaxRows) {
    // Growing moves the cells, and the text may well be one of them.
    const std::string kept(text);
    setMaxRows(row);
    return setText(col, row, kept);
  }
  std::string* target = nullptr;
  if (row == 0)
    target = &column(col).title;
  else if (SpreadCell* cell = reach(col, row))
    target = &cell->text;
  if (!target || *target == text) return;
  target->assign(text);
  ++revision_;
}

CellKind Spread::kind(int col, int row) const {
  const SpreadCell* cell = find(col, row);
  if (!cell || locked_) return CellKind::Static;
  return cell->kind.value_or(column(col).kind);
}

void Spread::setKind(int col, int row, CellKind kind) {
  SpreadCell* cell = reach(col, row);
  if (!cell || cell->kind == kind) return;
  cell->kind = kind;
  ++revision_;
}

std::optional<Colour> Spread::backColour(int col, int row) const {
  const SpreadCell* cell = find(col, row);
  return cell ? cell->backColour : std::nullopt;
}

void Spread::setBackColour(int col, int row, std::optional<Colour> colour) {
  SpreadCell* cell = reach(col, row);
  if (!cell || cell->backColour == colour) return;
  cell->backColour = colour;
  ++revision_;
}

long Spread::rowTag(int row) const {
  if (row < 1 || row > rows_) return 0;
  return rowTags_[static_cast<std::size_t>(row - 1)];
}

void Spread::setRowTag(int row, long tag) {
  if (row < 1 || row > kMaxRows) return;
  if (row > rows_) setMaxRows(row);
  rowTags_[static_cast<std::size_t>(row - 1)] = tag;
  ++revision_;
}

void Spread::insertRow(int row) {
  if (row < 1 || row > kMaxRows || rows_ == kMaxRows) return;
  if (row > rows_) {
    setMaxRows(row);
    return;
  }
  setMaxRows(rows_ + 1);
  const auto cells = cells_.begin();
  std::rotate(cells + static_cast<std::ptrdiff_t>(offset(row)), cells + static_cast<std::ptrdiff_t>(offset(rows_)),
              cells + static_cast<std::ptrdiff_t>(offset(rows_ + 1)));
  std::rotate(rowTags_.begin() + (row - 1), rowTags_.end() - 1, rowTags_.end());
}

void Spread::deleteRow(int row) {
  if (row < 1 || row > rows_) return;
  const auto cells = cells_.begin();
  std::rotate(cells + static_cast<std::ptrdiff_t>(offset(row)), cells + static_cast<std::ptrdiff_t>(offset(row + 1)),
              cells + static_cast<std::ptrdiff_t>(offset(rows_ + 1)));
  rowTags_.erase(rowTags_.begin() + (row - 1));
  rowTags_.push_back(0);
  setMaxRows(rows_ - 1);
}

std::vector<SpreadRow> Spread::rows(int first, int last) const {
  first = std::max(first, 1);
  last = std::min(last, rows_);
  std::vector<SpreadRow> taken;
  if (last < first) return taken;
  taken.reserve(static_cast<std::size_t>(last - first + 1));
  for (int row = first; row <= last; ++row) {
    const auto begin = cells_.begin() + static_cast<std::ptrdiff_t>(offset(row));
    taken.push_back({{begin, begin + maxCols()}, rowTag(row)});
  }
  return taken;
}

void Spread::replaceRows(int first, int last, std::vector<SpreadRow> rows) {
  first = std::clamp(first, 1, rows_ + 1);
  last = std::clamp(last, first - 1, rows_);
  const int former = last - first + 1;
  const int count = std::min(static_cast<int>(std::min<std::size_t>(rows.size(), kMaxRows)), kMaxRows - rows_ + former);
  const auto at = [&](int row) { return cells_.begin() + static_cast<std::ptrdiff_t>(offset(row)); };
  const auto tagAt = [&](int row) { return rowTags_.begin() + (row - 1); };
  if (count > former) {
    const int end = rows_ + 1;
    setMaxRows(rows_ + count - former);
    std::rotate(at(last + 1), at(end), at(rows_ + 1));
    std::rotate(tagAt(last + 1), tagAt(end), rowTags_.end());
  } else if (count < former) {
    std::rotate(at(first + count), at(last + 1), at(rows_ + 1));
    std::rotate(tagAt(first + count), tagAt(last + 1), rowTags_.end());
    setMaxRows(rows_ + count - former);
  }
  for (int i = 0; i < count; ++i) {
    SpreadRow& row = rows[static_cast<std::size_t>(i)];
    row.cells.resize(columns_.size());
    std::move(row.cells.begin(), row.cells.end(), at(first + i));
    *tagAt(first + i) = row.tag;
  }
  ++revision_;
}

void Spread::lockAll(bool locked) {
  if (locked_ == locked) return;
  locked_ = locked;
  ++revision_;
}

}  // namespace quillmarden
