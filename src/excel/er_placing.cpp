#include "excel/er_placing.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <random>

namespace quillmarden {
namespace {

using Neighbours = std::vector<std::vector<std::size_t>>;

constexpr std::size_t kNobody = static_cast<std::size_t>(-1);
// A step across costs more than one down: boxes are wider than high.
constexpr int kAcross = 2;

Neighbours neighboursOf(std::size_t boxes, const std::vector<ErLink>& links) {
  Neighbours neighbours(boxes);
  for (const ErLink& link : links) {
    if (link.from == link.to) continue;
    neighbours[link.from].push_back(link.to);
    neighbours[link.to].push_back(link.from);
  }
  return neighbours;
}

/// The linked boxes, group by group from the largest one, each group from its most linked box outwards along the links.
std::vector<std::size_t> walkOrder(const Neighbours& neighbours) {
  std::vector<bool> seen(neighbours.size(), false);
  std::vector<std::vector<std::size_t>> groups;
  std::vector<std::size_t> byDegree(neighbours.size());
  std::iota(byDegree.begin(), byDegree.end(), std::size_t{0});
  std::ranges::stable_sort(byDegree,
                           [&](std::size_t a, std::size_t b) { return neighbours[a].size() > neighbours[b].size(); });
  for (const std::size_t start : byDegree) {
    if (seen[start] || neighbours[start].empty()) continue;
    std::vector<std::size_t>& group = groups.emplace_back();
    std::vector<std::size_t> open{start};
    while (!open.empty()) {
      const std::size_t box = open.back();
      open.pop_back();
      if (seen[box]) continue;
      seen[box] = true;
      group.push_back(box);
      for (const std::size_t next : neighbours[box])
        if (!seen[next]) open.push_back(next);
    }
  }
  std::ranges::stable_sort(groups, [](const auto& a, const auto& b) { return a.size() > b.size(); });
  std::vector<std::size_t> order;
  for (const auto& group : groups) order.insert(order.end(), group.begin(), group.end());
  return order;
}

/// The cells along a curve that stays in one part of the grid before it goes to the next, so that what is near in the
/// list is near in the grid (Hilbert's).
std::vector<ErGrid::Cell> curve(int rows, int columns) {
  int side = 1;
  while (side < rows || side < columns) side *= 2;
  std::vector<ErGrid::Cell> cells;
  cells.reserve(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns));
  const std::int64_t count = static_cast<std::int64_t>(side) * side;
  for (std::int64_t place = 0; place < count; ++place) {
    int x = 0;
    int y = 0;
    std::int64_t rest = place;
    for (int s = 1; s < side; s *= 2) {
      const int right = static_cast<int>((rest / 2) & 1);
      const int down = static_cast<int>((rest ^ right) & 1);
      if (down == 0) {
        if (right == 1) {
          x = s - 1 - x;
          y = s - 1 - y;
        }
        std::swap(x, y);
      }
      x += s * right;
      y += s * down;
      rest /= 4;
    }
    if (x < columns && y < rows) cells.push_back({y, x});
  }
  return cells;
}

/// A grid whose linked boxes change places until their links are short.
class Arrangement {
 public:
  Arrangement(ErGrid& grid, const Neighbours& neighbours)
      : grid_(grid), neighbours_(neighbours), holder_(static_cast<std::size_t>(grid.rows * grid.columns), kNobody) {}

  void put(std::size_t box, ErGrid::Cell cell) {
    grid_.cells[box] = cell;
    holder(cell) = box;
  }
  std::size_t& holder(ErGrid::Cell cell) {
    return holder_[static_cast<std::size_t>(cell.row * grid_.columns + cell.column)];
  }

  /// Tries to move a box to a cell, where another box may stand: they change places when that is no worse than `loss`.
  void tryMove(std::size_t box, ErGrid::Cell to, double loss) {
    const ErGrid::Cell from = grid_.cells[box];
    const std::size_t other = holder(to);
    if (other == box) return;
    const int before = length(box) + (other == kNobody ? 0 : length(other));
    exchange(box, from, to, other);
    const int after = length(box) + (other == kNobody ? 0 : length(other));
    if (after - before > loss) exchange(box, to, from, other);
  }

 private:
  void exchange(std::size_t box, ErGrid::Cell from, ErGrid::Cell to, std::size_t other) {
    grid_.cells[box] = to;
    if (other != kNobody) grid_.cells[other] = from;
    holder(to) = box;
    holder(from) = other;
  }

  int length(std::size_t box) const {
    const ErGrid::Cell at = grid_.cells[box];
    int sum = 0;
    for (const std::size_t other : neighbours_[box]) {
      const ErGrid::Cell there = grid_.cells[other];
      sum += kAcross * std::abs(at.column - there.column) + std::abs(at.row - there.row);
    }
    return sum;
  }

  ErGrid& grid_;
  const Neighbours& neighbours_;
  std::vector<std::size_t> holder_;
};

/// Moves boxes towards their neighbours. Early on a move may make links longer, so that a group can get out of a corner
/// that it was put in.
void shortenLinks(Arrangement& arrangement, ErGrid& grid, const std::vector<std::size_t>& linked,
                  const Neighbours& neighbours) {
  constexpr std::size_t kTries = 2000;  // for each box
  constexpr std::size_t kMostTries = 2'000'000;
  const std::size_t tries = std::min(kTries * linked.size(), kMostTries);
  const double start = std::sqrt(static_cast<double>(grid.rows * grid.columns)) / 2;
  std::mt19937 random(1);
  const auto below = [&random](std::size_t end) { return static_cast<std::size_t>(random()) % end; };
  const auto near = [&](int at, int size) { return std::clamp(at - 2 + static_cast<int>(below(5)), 0, size - 1); };
  for (std::size_t i = 0; i < tries; ++i) {
    const std::size_t box = linked[below(linked.size())];
    const ErGrid::Cell goal = grid.cells[neighbours[box][below(neighbours[box].size())]];
    const double heat = start * std::pow(1 - static_cast<double>(i) / static_cast<double>(tries), 3);
    const double chance = static_cast<double>(below(1000) + 1) / 1000;
    arrangement.tryMove(box, {near(goal.row, grid.rows), near(goal.column, grid.columns)}, -heat * std::log(chance));
  }
}

}  // namespace

ErGrid placeLinkedBoxes(std::size_t boxes, const std::vector<ErLink>& links, int columns) {
  ErGrid grid;
  if (boxes == 0) return grid;
  grid.columns = std::clamp(columns, 1, static_cast<int>(boxes));
  grid.rows = (static_cast<int>(boxes) + grid.columns - 1) / grid.columns;
  grid.cells.resize(boxes);
  const Neighbours neighbours = neighboursOf(boxes, links);
  const std::vector<std::size_t> linked = walkOrder(neighbours);
  Arrangement arrangement(grid, neighbours);
  if (!linked.empty()) {
    const std::vector<ErGrid::Cell> cells = curve(grid.rows, grid.columns);
    for (std::size_t i = 0; i < linked.size(); ++i) arrangement.put(linked[i], cells[i]);
    shortenLinks(arrangement, grid, linked, neighbours);
  }
  int next = 0;
  const auto cell = [&](int number) { return ErGrid::Cell{number / grid.columns, number % grid.columns}; };
  for (std::size_t box = 0; box < boxes; ++box) {
    if (!neighbours[box].empty()) continue;
    while (arrangement.holder(cell(next)) != kNobody) ++next;
    arrangement.put(box, cell(next));
  }
  return grid;
}

}  // namespace quillmarden
