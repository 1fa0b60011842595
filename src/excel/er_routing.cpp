#include "excel/er_routing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <utility>

namespace quillmarden {
namespace {

constexpr double kTrack = 8;       ///< points from one track of a lane to the next
constexpr double kBeside = 14;     ///< between a box and the first track beside it: an arrow head has room there
constexpr double kAbove = 10;      ///< between a row of boxes and the first track above or below it
constexpr double kLeastGap = 24;   ///< between boxes without a line between them
constexpr double kPort = 7;        ///< between the ends of lines on one side of a box
constexpr double kPortMargin = 6;  ///< between the corner of a box and the first end

/// The way of a link: out into the lane beside its first box, along a lane between two rows if that is not the lane
/// beside its second box as well, and in. Lane n lies before column or row n.
struct Way {
  int firstLane = 0;
  int rowLane = -1;  ///< none when both boxes stand at one lane
  int lastLane = 0;
};

/// The end of a link at a box, in the lane that it comes out into.
struct Port {
  std::size_t link;
  bool last;          ///< at the second box of the link
  double turn;        ///< where the line goes in the lane, as rowPlace counts
  double offset = 0;  ///< from the middle of the row, in points
};

/// A piece of a line on a track of a lane, by where it begins and ends in the lane.
struct Piece {
  std::size_t link;
  double from;
  double to;
  bool early;  ///< better on the tracks at the lane's beginning
  bool loop;   ///< both ends leave the lane to one side
  int track = 0;
};

// Places along a lane before points are known: row n is 2n+1, the lane before it 2n.
double rowPlace(int row) { return 2.0 * row + 1; }
double lanePlace(int lane) { return 2.0 * lane; }

/// Gives each piece a track of its lane so that pieces on one track don't meet. Gives the number of tracks.
int assignTracks(std::vector<Piece>& pieces, double apart) {
  std::vector<std::size_t> order(pieces.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  // From the two borders of the lane inwards. So the fewest cross: loops lie within longer ones, and what goes through
  // the lane turns off the sooner the shorter its way in it.
  std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) {
    const Piece& one = pieces[a];
    const Piece& other = pieces[b];
    if (one.loop != other.loop) return one.loop;
    const double difference = (one.to - one.from) - (other.to - other.from);
    return one.loop ? difference < 0 : difference > 0;
  });
  struct Track {
    bool early;
    std::vector<std::pair<double, double>> taken;
  };
  std::vector<Track> tracks;
  std::vector<int> trackOf(pieces.size());
  for (const std::size_t i : order) {
    Piece& piece = pieces[i];
    const auto free = [&](const Track& track) {
      return track.early == piece.early && std::ranges::none_of(track.taken, [&](const auto& other) {
               return piece.from < other.second + apart && other.first < piece.to + apart;
             });
    };
    auto track = std::ranges::find_if(tracks, free);
    if (track == tracks.end()) track = tracks.insert(tracks.end(), {piece.early, {}});
    track->taken.emplace_back(piece.from, piece.to);
    trackOf[i] = static_cast<int>(track - tracks.begin());
  }
  std::vector<int> places(tracks.size());
  int first = 0;
  int last = static_cast<int>(tracks.size()) - 1;
  for (std::size_t i = 0; i < tracks.size(); ++i) places[i] = tracks[i].early ? first++ : last--;
  for (std::size_t i = 0; i < pieces.size(); ++i) pieces[i].track = places[static_cast<std::size_t>(trackOf[i])];
  return static_cast<int>(tracks.size());
}

double laneSize(int tracks, double beside) {
  return tracks == 0 ? kLeastGap : std::max(kLeastGap, 2 * beside + (tracks - 1) * kTrack);
}

class Router {
 public:
  Router(const ErGrid& grid, const std::vector<Box>& sizes, const std::vector<ErLink>& links, double straightShare)
      : grid_(grid), sizes_(sizes), links_(links), share_(straightShare) {}

  ErPicture draw() {
    chooseWays();
    placePorts();
    sizeRows();
    placeColumns();
    placeRows();
    return picture();
  }

 private:
  using Lane = std::vector<Piece>;

  ErGrid::Cell cell(std::size_t box) const { return grid_.cells[box]; }

  /// The lanes that a link may take, the shortest way by columns; of equal ones that with the fewest lines so far.
  void chooseWays() {
    ways_.resize(links_.size());
    columnLoad_.assign(static_cast<std::size_t>(grid_.columns) + 1, 0);
    rowLoad_.assign(static_cast<std::size_t>(grid_.rows) + 1, 0);
    for (std::size_t i = 0; i < links_.size(); ++i) {
      const ErGrid::Cell from = cell(links_[i].from);
      const ErGrid::Cell to = cell(links_[i].to);
      Way& way = ways_[i];
      if (from.column == to.column) {
        way.firstLane = way.lastLane = lighter(columnLoad_, from.column, from.column + 1);
      } else {
        way.firstLane = to.column > from.column ? from.column + 1 : from.column;
        way.lastLane = to.column > from.column ? to.column : to.column + 1;
        if (way.firstLane != way.lastLane) {
          const int top = std::min(from.row, to.row);
          const int bottom = std::max(from.row, to.row);
          way.rowLane = top == bottom ? top : top + 1;
          for (int lane = way.rowLane + 1; lane <= std::max(bottom, top + 1); ++lane)
            way.rowLane = lighter(rowLoad_, way.rowLane, lane);
          ++rowLoad_[static_cast<std::size_t>(way.rowLane)];
        }
      }
      ++columnLoad_[static_cast<std::size_t>(way.firstLane)];
      if (way.lastLane != way.firstLane) ++columnLoad_[static_cast<std::size_t>(way.lastLane)];
    }
  }

  static int lighter(const std::vector<int>& load, int one, int other) {
    return load[static_cast<std::size_t>(other)] < load[static_cast<std::size_t>(one)] ? other : one;
  }

  /// Whether the line runs straight from one box to its neighbour.
  bool straight(std::size_t link) const {
    const ErGrid::Cell from = cell(links_[link].from);
    const ErGrid::Cell to = cell(links_[link].to);
    return ways_[link].rowLane < 0 && from.row == to.row && from.column != to.column;
  }

  /// The ends of lines that come out into one lane between two neighbours of a row stand at heights of their own, in
  /// the order in which the lines go on.
  void placePorts() {
    offsets_.resize(links_.size());
    std::map<std::pair<int, int>, std::vector<Port>> faces;  // by row and lane
    for (std::size_t i = 0; i < links_.size(); ++i) {
      const Way& way = ways_[i];
      const int fromRow = cell(links_[i].from).row;
      const int toRow = cell(links_[i].to).row;
      const double firstTurn = way.rowLane < 0 ? rowPlace(toRow) : lanePlace(way.rowLane);
      faces[{fromRow, way.firstLane}].push_back({i, false, firstTurn});
      if (straight(i)) continue;  // both ends are at one height
      const double lastTurn = way.rowLane < 0 ? rowPlace(fromRow) : lanePlace(way.rowLane);
      faces[{toRow, way.lastLane}].push_back({i, true, lastTurn});
    }
    for (auto& [place, ports] : faces) {
      std::ranges::stable_sort(ports, {}, &Port::turn);
      const double middle = (static_cast<double>(ports.size()) - 1) / 2;
      for (std::size_t k = 0; k < ports.size(); ++k) {
        const double offset = (static_cast<double>(k) - middle) * kPort;
        std::array<double, 2>& ends = offsets_[ports[k].link];
        ends[ports[k].last ? 1 : 0] = offset;
        if (straight(ports[k].link)) ends[1] = offset;
      }
    }
  }

  void sizeRows() {
    heights_.resize(sizes_.size());
    for (std::size_t i = 0; i < sizes_.size(); ++i) heights_[i] = sizes_[i].height;
    const auto reach = [this](std::size_t box, double offset) {
      heights_[box] = std::max(heights_[box], 2 * (std::abs(offset) + kPortMargin) / share_);
    };
    for (std::size_t i = 0; i < links_.size(); ++i) {
      reach(links_[i].from, offsets_[i][0]);
      reach(links_[i].to, offsets_[i][1]);
    }
    rowHeights_.assign(static_cast<std::size_t>(grid_.rows), 0);
    columnWidths_.assign(static_cast<std::size_t>(grid_.columns), 0);
    for (std::size_t i = 0; i < sizes_.size(); ++i) {
      double& height = rowHeights_[static_cast<std::size_t>(cell(i).row)];
      double& width = columnWidths_[static_cast<std::size_t>(cell(i).column)];
      height = std::max(height, heights_[i]);
      width = std::max(width, sizes_[i].width);
    }
  }

  /// Where in a lane between columns a line's end lies, before rows are placed: its row, and how far down in it.
  double portPlace(std::size_t box, double offset) const {
    const int row = cell(box).row;
    return rowPlace(row) + 0.49 * offset / std::max(1.0, rowHeights_[static_cast<std::size_t>(row)]);
  }

  void placeColumns() {
    std::vector<Lane> lanes(static_cast<std::size_t>(grid_.columns) + 1);
    const auto add = [&](int lane, std::size_t link, double one, double other, bool early, bool loop) {
      lanes[static_cast<std::size_t>(lane)].push_back({link, std::min(one, other), std::max(one, other), early, loop});
    };
    for (std::size_t i = 0; i < links_.size(); ++i) {
      if (straight(i)) continue;
      const Way& way = ways_[i];
      const double from = portPlace(links_[i].from, offsets_[i][0]);
      const double to = portPlace(links_[i].to, offsets_[i][1]);
      const bool fromLeft = cell(links_[i].from).column < way.firstLane;
      const bool toLeft = cell(links_[i].to).column < way.lastLane;
      if (way.rowLane < 0) {
        add(way.firstLane, i, from, to, fromLeft, fromLeft == toLeft);
        continue;
      }
      // Its track in the row's lane is not known yet: it may take all of it.
      const double lane = lanePlace(way.rowLane);
      const auto reach = [lane](double port) { return port < lane ? lane + 0.5 : lane - 0.5; };
      add(way.firstLane, i, from, reach(from), fromLeft, false);
      add(way.lastLane, i, to, reach(to), toLeft, false);
    }
    lefts_.resize(columnWidths_.size());
    laneLefts_.resize(lanes.size());
    firstTracks_.resize(links_.size());
    lastTracks_.resize(links_.size());
    double at = 0;
    for (std::size_t lane = 0; lane < lanes.size(); ++lane) {
      constexpr double kApart = 0.02;
      const int tracks = assignTracks(lanes[lane], kApart);
      const bool outer = lane == 0 || lane + 1 == lanes.size();
      const double size = outer && tracks == 0 ? 0 : laneSize(tracks, kBeside);
      // Few tracks stand in the middle of a lane that has more room.
      laneLefts_[lane] = at + (size - std::max(0, tracks - 1) * kTrack) / 2;
      for (const Piece& piece : lanes[lane]) {
        const double x = laneLefts_[lane] + piece.track * kTrack;
        const Way& way = ways_[piece.link];
        if (static_cast<int>(lane) == way.firstLane) firstTracks_[piece.link] = x;
        if (static_cast<int>(lane) == way.lastLane) lastTracks_[piece.link] = x;
      }
      at += size;
      if (lane < lefts_.size()) {
        lefts_[lane] = at;
        at += columnWidths_[lane];
      }
    }
    width_ = at;
  }

  void placeRows() {
    std::vector<Lane> lanes(static_cast<std::size_t>(grid_.rows) + 1);
    for (std::size_t i = 0; i < links_.size(); ++i) {
      const Way& way = ways_[i];
      if (way.rowLane < 0) continue;
      const auto [left, right] = std::minmax(firstTracks_[i], lastTracks_[i]);
      const bool fromAbove = cell(links_[i].from).row < way.rowLane;
      const bool toAbove = cell(links_[i].to).row < way.rowLane;
      lanes[static_cast<std::size_t>(way.rowLane)].push_back({i, left, right, fromAbove, fromAbove == toAbove});
    }
    tops_.resize(rowHeights_.size());
    rowTracks_.resize(links_.size());
    double at = 0;
    for (std::size_t lane = 0; lane < lanes.size(); ++lane) {
      const int tracks = assignTracks(lanes[lane], kTrack / 2);
      const bool outer = lane == 0 || lane + 1 == lanes.size();
      const double size = outer && tracks == 0 ? 0 : laneSize(tracks, kAbove);
      const double first = at + (size - std::max(0, tracks - 1) * kTrack) / 2;
      for (const Piece& piece : lanes[lane]) rowTracks_[piece.link] = first + piece.track * kTrack;
      at += size;
      if (lane < tops_.size()) {
        tops_[lane] = at;
        at += rowHeights_[lane];
      }
    }
    height_ = at;
  }

  Box place(std::size_t box) const {
    const auto row = static_cast<std::size_t>(cell(box).row);
    const auto column = static_cast<std::size_t>(cell(box).column);
    return {lefts_[column] + (columnWidths_[column] - sizes_[box].width) / 2,
            tops_[row] + (rowHeights_[row] - heights_[box]) / 2, sizes_[box].width, heights_[box]};
  }

  /// Where a line meets a box, on the side of the lane.
  Point end(const Box& box, bool right, double offset) const {
    return {right ? box.left + box.width : box.left, box.top + box.height / 2 + offset};
  }

  ErPicture picture() const {
    ErPicture made;
    made.width = width_;
    made.height = height_;
    for (std::size_t i = 0; i < sizes_.size(); ++i) made.boxes.push_back(place(i));
    for (std::size_t i = 0; i < links_.size(); ++i) {
      const Way& way = ways_[i];
      const bool fromRight = way.firstLane > cell(links_[i].from).column;
      const bool toRight = way.lastLane > cell(links_[i].to).column;
      const Point from = end(made.boxes[links_[i].from], fromRight, offsets_[i][0]);
      const Point to = end(made.boxes[links_[i].to], toRight, offsets_[i][1]);
      ErRoute route{
          fromRight ? ShapeEdge::Right : ShapeEdge::Left, toRight ? ShapeEdge::Right : ShapeEdge::Left, {from}};
      if (!straight(i)) route.points.push_back({firstTracks_[i], from.y});
      if (way.rowLane >= 0) {
        route.points.push_back({firstTracks_[i], rowTracks_[i]});
        route.points.push_back({lastTracks_[i], rowTracks_[i]});
      }
      if (!straight(i)) route.points.push_back({lastTracks_[i], to.y});
      route.points.push_back(to);
      made.routes.push_back(std::move(route));
    }
    return made;
  }

  const ErGrid& grid_;
  const std::vector<Box>& sizes_;
  const std::vector<ErLink>& links_;
  const double share_;
  std::vector<Way> ways_;
  std::vector<int> columnLoad_;
  std::vector<int> rowLoad_;
  std::vector<std::array<double, 2>> offsets_;  ///< of a link's ends, from the middle of their boxes
  std::vector<double> heights_;                 ///< of the boxes
  std::vector<double> rowHeights_;
  std::vector<double> columnWidths_;
  std::vector<double> lefts_;  ///< of the columns
  std::vector<double> tops_;   ///< of the rows
  std::vector<double> laneLefts_;
  std::vector<double> firstTracks_;  ///< of a link in the lanes between columns
  std::vector<double> lastTracks_;
  std::vector<double> rowTracks_;  ///< in the lane between rows
  double width_ = 0;
  double height_ = 0;
};

}  // namespace

ErPicture routeLinks(const ErGrid& grid, const std::vector<Box>& sizes, const std::vector<ErLink>& links,
                     double straightShare) {
  return Router(grid, sizes, links, straightShare).draw();
}

ErPicture drawErPicture(const std::vector<Box>& sizes, const std::vector<ErLink>& links, double straightShare,
                        double pageShape) {
  ErPicture best;
  if (sizes.empty()) return best;
  // Rows are lower than columns are wide, so a grid on a page has fewer columns than rows.
  const double root = std::sqrt(static_cast<double>(sizes.size()));
  constexpr std::size_t kManyBoxes = 600;  // of which one try is enough
  double largest = 0;
  int former = 0;
  for (const double share : {0.75, 0.5, 0.6, 0.9, 1.1, 1.4}) {
    const int columns = std::max(1, static_cast<int>(std::lround(root * share)));
    if (columns == former) continue;
    former = columns;
    ErPicture picture = routeLinks(placeLinkedBoxes(sizes.size(), links, columns), sizes, links, straightShare);
    const double scale = 1 / std::max(picture.width / pageShape, picture.height);
    if (scale > largest) {
      largest = scale;
      best = std::move(picture);
    }
    if (sizes.size() > kManyBoxes) break;
  }
  return best;
}

}  // namespace quillmarden
