#pragma once

#include <cstddef>
#include <vector>

namespace quillmarden {

/// A reference from one box to another, or to itself; boxes count from 0.
struct ErLink {
  std::size_t from = 0;
  std::size_t to = 0;
};

/// Boxes in the cells of a grid, at most one in each.
struct ErGrid {
  struct Cell {
    int row = 0;
    int column = 0;
  };
  int rows = 0;
  int columns = 0;
  std::vector<Cell> cells;  ///< of each box
};

/// Places so many boxes in a grid of so many columns, boxes that a link joins near each other; those without links fill
/// what is left, in their order. The same input gives the same grid. The effort is bounded, however many boxes there
/// are.
ErGrid placeLinkedBoxes(std::size_t boxes, const std::vector<ErLink>& links, int columns);

}  // namespace quillmarden
