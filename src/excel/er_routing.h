#pragma once

#include <cstddef>
#include <vector>

#include "excel/er_placing.h"
#include "workbook/drawing.h"

namespace quillmarden {

/// A line between two boxes: 1, 3 or 5 pieces, across and down by turns.
struct ErRoute {
  ShapeEdge fromEdge = ShapeEdge::Right;
  ShapeEdge toEdge = ShapeEdge::Left;
  std::vector<Point> points;
};

/// Boxes with lines between them, in points. Lines run in the lanes between the rows and columns of boxes, each on a
/// track of its own: none meets a box but its own two, and none runs on another one.
struct ErPicture {
  std::vector<Box> boxes;
  std::vector<ErRoute> routes;  ///< of each link
  double width = 0;
  double height = 0;
};

/// Draws the boxes of a grid, as wide as `sizes` says and at least as high: a box grows where its sides have to hold
/// many lines. `straightShare` is the part of a side's height, around its middle, that lines can end on: 1 for a
/// rectangle.
ErPicture routeLinks(const ErGrid& grid, const std::vector<Box>& sizes, const std::vector<ErLink>& links,
                     double straightShare);

/// Places the boxes so that linked ones stand near each other, and routes the links, in the grid that is printed
/// largest on a page of this shape (width to height).
ErPicture drawErPicture(const std::vector<Box>& sizes, const std::vector<ErLink>& links, double straightShare,
                        double pageShape);

}  // namespace quillmarden
