#include "excel/er_routing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>

namespace quillmarden {
namespace {

/// A piece of a line: from its upper or left end to its other one.
struct LinePiece {
  std::size_t link;
  bool across;
  double at;  ///< its y when it runs across, its x otherwise
  double from;
  double to;
};

std::vector<LinePiece> piecesOf(const ErPicture& picture) {
  std::vector<LinePiece> pieces;
  for (std::size_t link = 0; link < picture.routes.size(); ++link) {
    const std::vector<Point>& points = picture.routes[link].points;
    for (std::size_t i = 1; i < points.size(); ++i) {
      const bool across = i % 2 == 1;
      EXPECT_EQ(across ? points[i].y : points[i].x, across ? points[i - 1].y : points[i - 1].x) << "a slanting piece";
      const auto [from, to] =
          across ? std::minmax(points[i].x, points[i - 1].x) : std::minmax(points[i].y, points[i - 1].y);
      pieces.push_back({link, across, across ? points[i].y : points[i].x, from, to});
    }
  }
  return pieces;
}

/// How many pieces come nearer to a box than `room`; the ends of a line may touch its own boxes.
int piecesAtBoxes(const ErPicture& picture, const std::vector<ErLink>& links, double room) {
  int found = 0;
  for (const LinePiece& piece : piecesOf(picture)) {
    for (std::size_t i = 0; i < picture.boxes.size(); ++i) {
      const Box& box = picture.boxes[i];
      const double start = piece.across ? box.left : box.top;
      const double size = piece.across ? box.width : box.height;
      const double side = piece.across ? box.top : box.left;
      const double thick = piece.across ? box.height : box.width;
      const bool own = piece.across && (links[piece.link].from == i || links[piece.link].to == i);
      const double gap = own ? -0.01 : room;
      if (piece.at > side - gap && piece.at < side + thick + gap && piece.from < start + size + gap &&
          piece.to > start - gap) {
        ++found;
      }
    }
  }
  return found;
}

/// How many pairs of different lines run side by side nearer than `room`.
int crowdedPairs(const ErPicture& picture, double room) {
  const std::vector<LinePiece> pieces = piecesOf(picture);
  int found = 0;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    for (std::size_t k = i + 1; k < pieces.size(); ++k) {
      const LinePiece& a = pieces[i];
      const LinePiece& b = pieces[k];
      found +=
          a.across == b.across && a.link != b.link && std::abs(a.at - b.at) < room && a.from < b.to && b.from < a.to;
    }
  }
  return found;
}

bool overlap(const std::vector<Box>& boxes) {
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    for (std::size_t k = i + 1; k < boxes.size(); ++k) {
      if (boxes[i].left < boxes[k].left + boxes[k].width && boxes[k].left < boxes[i].left + boxes[i].width &&
          boxes[i].top < boxes[k].top + boxes[k].height && boxes[k].top < boxes[i].top + boxes[i].height)
        return true;
    }
  }
  return false;
}

double lineLength(const ErPicture& picture) {
  double sum = 0;
  for (const LinePiece& piece : piecesOf(picture)) sum += piece.to - piece.from;
  return sum;
}

struct Graph {
  std::vector<Box> sizes;
  std::vector<ErLink> links;
};

/// Tables of a business: most refer to a table before them, a few masters to which many do, some alone, some to
/// themselves.
Graph drawn(unsigned seed, std::size_t boxes) {
  std::mt19937 random(seed);
  const auto below = [&random](std::size_t end) { return static_cast<std::size_t>(random()) % end; };
  Graph graph;
  std::set<std::pair<std::size_t, std::size_t>> known;
  for (std::size_t i = 0; i < boxes; ++i) {
    graph.sizes.push_back({0, 0, 60.0 + static_cast<double>(below(120)), 24});
    for (std::size_t k = below(4); i > 0 && k > 0; --k) {
      const std::size_t to = below(3) == 0 ? below(3) % boxes : below(i + 1);
      if (known.emplace(i, to).second) graph.links.push_back({i, to});
    }
  }
  return graph;
}

TEST(ErRoutingTest, LinesKeepToTheLanesBetweenTheBoxes) {
  for (unsigned seed = 1; seed <= 14; ++seed) {
    const Graph graph = drawn(seed, 1 + seed * 5);
    const double share = seed % 2 == 0 ? 1 : 2.0 / 3;
    const ErPicture picture = drawErPicture(graph.sizes, graph.links, share, 1.5);
    ASSERT_EQ(picture.boxes.size(), graph.sizes.size());
    ASSERT_EQ(picture.routes.size(), graph.links.size());
    EXPECT_FALSE(overlap(picture.boxes)) << seed;
    EXPECT_EQ(piecesAtBoxes(picture, graph.links, 8), 0) << seed;
    EXPECT_EQ(crowdedPairs(picture, 5), 0) << seed;
    for (std::size_t i = 0; i < graph.links.size(); ++i) {
      const ErRoute& route = picture.routes[i];
      const auto endsOn = [&](const Point& end, const Point& next, std::size_t number, ShapeEdge edge) {
        const Box& box = picture.boxes[number];
        const bool right = edge == ShapeEdge::Right;
        EXPECT_EQ(end.x, right ? box.left + box.width : box.left) << seed;
        EXPECT_LT(std::abs(end.y - box.top - box.height / 2), box.height * share / 2) << seed;
        EXPECT_GE(right ? next.x - end.x : end.x - next.x, 12) << "an arrow head has room, seed " << seed;
      };
      const std::size_t count = route.points.size();
      endsOn(route.points[0], route.points[1], graph.links[i].from, route.fromEdge);
      endsOn(route.points[count - 1], route.points[count - 2], graph.links[i].to, route.toEdge);
    }
  }
}

TEST(ErRoutingTest, LinkedBoxesStandTogether) {
  const Graph graph = drawn(5, 60);
  const double lengthOfLists = lineLength(routeLinks(placeLinkedBoxes(60, {}, 6), graph.sizes, graph.links, 1));
  EXPECT_LT(lineLength(routeLinks(placeLinkedBoxes(60, graph.links, 6), graph.sizes, graph.links, 1)),
            lengthOfLists / 2);

  // Pairs that are far apart in the list become neighbours.
  std::vector<ErLink> pairs;
  for (std::size_t i = 0; i < 20; ++i) pairs.push_back({i, 39 - i});
  const ErGrid grid = placeLinkedBoxes(40, pairs, 5);
  for (const ErLink& pair : pairs) {
    const ErGrid::Cell from = grid.cells[pair.from];
    const ErGrid::Cell to = grid.cells[pair.to];
    EXPECT_LE(std::abs(from.row - to.row) + std::abs(from.column - to.column), 2) << pair.from;
  }
}

TEST(ErRoutingTest, APageOfSeventyTablesCanBeRead) {
  constexpr double kWidth = 1090;  // A3 across, between the margins
  constexpr double kHeight = 734;
  for (unsigned seed = 1; seed <= 5; ++seed) {
    Graph graph = drawn(seed, 71);
    const ErPicture picture = drawErPicture(graph.sizes, graph.links, 1, kWidth / kHeight);
    const double scale = std::min(kWidth / picture.width, kHeight / picture.height);
    EXPECT_GT(scale * 11, 5.5) << graph.links.size() << " lines: the points of the print";
  }
}

TEST(ErRoutingTest, ManyBoxesAreDrawnInBoundedTime) {
  const Graph graph = drawn(1, 3000);
  const ErPicture picture = drawErPicture(graph.sizes, graph.links, 1, 1.5);
  EXPECT_EQ(picture.routes.size(), graph.links.size());
}

}  // namespace
}  // namespace quillmarden
