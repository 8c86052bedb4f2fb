// Which side of the outline a point lies on, without the ray.
//
// Containment counts the hits of one ray of length 2R from the point, R the radius of the circle
// around the first vertex that holds all others.  The ray keeps an angle of more than π / 2n to the
// direction of every vertex.  The number of hits is the number of edges that truly cross the ray,
// and its parity that of plain even-odd, where
//   a. no vertex is nearer to the point than 1e-6 / sin(π / 2n), nor than 3e-6: then the ray passes
//      no vertex within the tolerance of 1e-6, and an edge that comes close to the ray crosses it
//      well inside both, or not at all;
//   b. no edge is nearer to the point than 1e-6: then none is left out for touching the ray's start;
//   c. the point is nearer to the first vertex than R − 1e-6: then the far end of the ray lies
//      outside, and no edge is left out for touching it;
//   d. edges are shorter than 2e6: an edge that crosses the ray has its ends more than 1e-6 to either
//      side, so it makes an angle with the ray that the parallel test sees;
//   e. coordinates are so small that a computed crossing is within 1e-6 of the true one, and so are
//      computed distances.
// All tolerances are taken a tenth larger than needed (gx_kSurelyApart), and coordinates up to 5e5, which
// bounds edges at 1.5e6 and leaves the rounding of crossings and distances below 1e-8.  A point
// beyond R, with the same slack, is outside.  A point of which any of this is not sure, and an
// outline with a greater or no finite coordinate, is left to the ray count.
//
// The grid.  Each cell knows the edges that come near it, within the distances of a and b, and
// whether its centre is inside, by the exact sign of every edge that crosses the centre's row.  A
// cell without edges answers with its centre.  In any other the point is first held against a and b
// for the cell's edges, and then the edges that cross the way from the centre to the point are
// counted, again by exact signs: a vertex on that way counts as lying on its right, for both its
// edges, and so no crossing is lost or counted twice.
//
// (A tree of boxes needs no more memory, and was tried first: a ray through it costs several times
// as much as a cell, and more with every level.)
#include <cntr/internal/index/containment_grid.h>
#include <cntr/internal/outline/edge_walk.h>
#include <cntr/internal/outline/tolerances.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using Points = std::vector<gxVector<2>>;

// Cells an edge, and how many entries an edge may have in the cells' lists on average: where long
// edges cross many cells, a coarser grid is tried.
constexpr double kCellsPerEdge = 1.0;
constexpr double kFewestCells = 16.0;
constexpr std::uint64_t kMostEntriesPerEdge = 12;

// Rounding of the arithmetic that finds cells, for coordinates up to the largest.
constexpr double kRounding = 1e-8;

bool covered(const gx_EdgeIndex& index) {
  return !index.hasNaN() && index.bounds().isWithin(gx_kLargestExact);
}

double square(double x) {
  return x * x;
}

bool isOn(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& p) {
  return p.x() >= std::min(a.x(), b.x()) && p.x() <= std::max(a.x(), b.x()) &&
         p.y() >= std::min(a.y(), b.y()) && p.y() <= std::max(a.y(), b.y()) &&
         gx_Orientation(a, b, p) == 0;
}

// Stands for the home of an edge that is near more than one cell.
constexpr std::uint32_t kNoHome = static_cast<std::uint32_t>(-1);

}  // namespace

gx_ContainmentGrid::gx_ContainmentGrid(const Points& points, const gx_EdgeIndex& index, double reach) {
  const gx_Box& bounds = index.bounds();
  if (!covered(index) || !(bounds.highX > bounds.lowX) || !(bounds.highY > bounds.lowY)) return;
  const double count = static_cast<double>(points.size());
  const double vertexReach =
      std::max(gx_kSurelyApart / std::sin(std::numbers::pi / (2.0 * count)), 3.0 * gx_kSurelyApart);
  bounds_ = bounds;
  first_ = points.front();
  surelyReached_ = reach > 2.0 * gx_kSurelyApart ? square(reach - 2.0 * gx_kSurelyApart) : 0.0;
  surelyBeyond_ = square(reach + 2.0 * gx_kSurelyApart);
  nearVertex_ = square(vertexReach);
  margin_ = vertexReach + kRounding;
  double cells = std::max(kCellsPerEdge * count, kFewestCells);
  std::vector<std::uint32_t> homes(points.size());
  while (cells >= 4.0 && !layOut_(points, bounds, cells, homes)) cells *= 0.125;
  if (cells < 4.0) {
    columns_ = rows_ = 0;
    return;
  }
  sumUp_();
  fill_(points, homes);
}

// The cell of a coordinate, the first or last where it lies outside, and the first for NaN: on a slope of
// a denormal rise it may be infinite, which only as a double can be held against the number of cells.
std::uint32_t gx_ContainmentGrid::column_(double x) const {
  const double at = (x - lowX_) * perX_;
  return at >= 0.0 ? static_cast<std::uint32_t>(std::min(at, columns_ - 1.0)) : 0;
}

std::uint32_t gx_ContainmentGrid::row_(double y) const {
  const double at = (y - lowY_) * perY_;
  return at >= 0.0 ? static_cast<std::uint32_t>(std::min(at, rows_ - 1.0)) : 0;
}

gxVector<2> gx_ContainmentGrid::centre_(std::uint32_t column, std::uint32_t row) const {
  return {lowX_ + (column + 0.5) * cellX_, lowY_ + (row + 0.5) * cellY_};
}

// Calls `visit(cell)` for every cell that the edge comes within the margin of, and perhaps a few
// more: row by row, with the columns between the ends of the edge's part in that row.
template <class Visit>
void gx_ContainmentGrid::forEachCell_(const gxVector<2>& a, const gxVector<2>& b,
                                      const Visit& visit) const {
  const gxVector<2>& low = a.y() <= b.y() ? a : b;
  const gxVector<2>& high = a.y() <= b.y() ? b : a;
  const std::uint32_t lastRow = row_(high.y() + margin_);
  const double slope = high.y() > low.y() ? (high.x() - low.x()) / (high.y() - low.y()) : 0.0;
  const double leftEnd = std::min(low.x(), high.x());
  const double rightEnd = std::max(low.x(), high.x());
  for (std::uint32_t row = row_(low.y() - margin_); row <= lastRow; ++row) {
    double from = leftEnd;
    double to = rightEnd;
    if (high.y() - low.y() > cellY_) {  // shorter edges gain nothing from being cut to the row
      const double y0 = std::max(lowY_ + row * cellY_ - margin_, low.y());
      const double y1 = std::min(lowY_ + (row + 1.0) * cellY_ + margin_, high.y());
      const double x0 = low.x() + slope * (y0 - low.y());
      const double x1 = low.x() + slope * (y1 - low.y());
      from = std::max(std::min(x0, x1), leftEnd);
      to = std::min(std::max(x0, x1), rightEnd);
    }
    const std::uint32_t lastColumn = column_(to + margin_);
    for (std::uint32_t column = column_(from - margin_); column <= lastColumn; ++column) {
      visit(row * columns_ + column);
    }
  }
}

// Chooses cells about as many as asked for, as square as can be, counts the entries of each cell's
// list, and marks the cells before which an edge crosses the row of centres; false where the lists
// would be too long or the margin covers whole cells.  Most edges are near one cell only: that is
// their home, and all there is to do for them is done there.
bool gx_ContainmentGrid::layOut_(const Points& points, const gx_Box& bounds, double cells,
                                 std::vector<std::uint32_t>& homes) {
  const double width = bounds.highX - bounds.lowX;
  const double height = bounds.highY - bounds.lowY;
  const double columns = std::clamp(std::sqrt(cells * width / height), 1.0, cells);
  columns_ = static_cast<std::uint32_t>(columns);
  rows_ = static_cast<std::uint32_t>(std::max(cells / columns, 1.0));
  lowX_ = bounds.lowX;
  lowY_ = bounds.lowY;
  cellX_ = width / columns_;
  cellY_ = height / rows_;
  perX_ = columns_ / width;
  perY_ = rows_ / height;
  if (margin_ > 2.0 * std::min(cellX_, cellY_)) return false;

  const std::uint64_t most =
      std::min<std::uint64_t>(kMostEntriesPerEdge * points.size() + 256, 1U << 29U);
  std::uint64_t entries = 0;
  cells_.assign(std::size_t{columns_} * rows_ + 1, 0);
  gxVector<2> a = points.back();
  for (std::size_t k = 0; k < points.size() && entries <= most; ++k) {
    const gxVector<2> b = points[k];
    const std::uint32_t column = column_(std::min(a.x(), b.x()) - margin_);
    const std::uint32_t row = row_(std::min(a.y(), b.y()) - margin_);
    if (column_(std::max(a.x(), b.x()) + margin_) == column &&
        row_(std::max(a.y(), b.y()) + margin_) == row) {
      const std::uint32_t cell = row * columns_ + column;
      homes[k] = cell;
      cells_[cell] += 1U << kShift;
      ++entries;
      const gxVector<2> centre = centre_(column, row);
      if ((a.y() > centre.y()) != (b.y() > centre.y())) markCrossing_(a, b, row);
      markOn_(a, b, cell, centre);
    } else {
      homes[k] = kNoHome;
      forEachCell_(a, b, [&](std::uint32_t cell) {
        cells_[cell] += 1U << kShift;
        ++entries;
        markOn_(a, b, cell, centre_(cell % columns_, cell / columns_));
      });
      markCrossings_(a, b);
    }
    a = b;
  }
  return entries <= most;
}

// An edge that crosses the row of centres turns over all of them to its right.
void gx_ContainmentGrid::markCrossing_(const gxVector<2>& a, const gxVector<2>& b, std::uint32_t row) {
  const gxVector<2>& low = a.y() <= b.y() ? a : b;
  const gxVector<2>& high = a.y() <= b.y() ? b : a;
  const double y = centre_(0, row).y();
  const double x = low.x() + (y - low.y()) * ((high.x() - low.x()) / (high.y() - low.y()));
  std::uint32_t column = column_(x);
  while (column > 0 && gx_Orientation(low, high, centre_(column - 1, row)) < 0) --column;
  while (column < columns_ && gx_Orientation(low, high, centre_(column, row)) >= 0) ++column;
  if (column < columns_) cells_[row * columns_ + column] ^= kParity;
}

void gx_ContainmentGrid::markCrossings_(const gxVector<2>& a, const gxVector<2>& b) {
  const std::uint32_t lastRow = row_(std::max(a.y(), b.y()));
  for (std::uint32_t row = row_(std::min(a.y(), b.y())); row <= lastRow; ++row) {
    const double y = centre_(0, row).y();
    if ((a.y() > y) != (b.y() > y)) markCrossing_(a, b, row);
  }
}

// A centre on an edge is found here, where every edge of a cell comes by.
void gx_ContainmentGrid::markOn_(const gxVector<2>& a, const gxVector<2>& b, std::uint32_t cell,
                                 const gxVector<2>& centre) {
  if (isOn(a, b, centre)) cells_[cell] |= kOnEdge;
}

// Finds for every centre whether it is inside, from the edges to its left, and turns the counts of
// entries into the places where lists end.
void gx_ContainmentGrid::sumUp_() {
  std::uint32_t total = 0;
  std::size_t cell = 0;
  for (std::uint32_t row = 0; row < rows_; ++row) {
    std::uint32_t parity = 0;
    for (std::uint32_t column = 0; column < columns_; ++column, ++cell) {
      const std::uint32_t word = cells_[cell];
      parity ^= word & kParity;
      total += word >> kShift;
      cells_[cell] = parity | (word & kOnEdge) | (total << kShift);
    }
  }
  cells_[cell] = total << kShift;
  edges_.resize(total);
}

// Fills the lists from their ends; then each word holds where its list begins.
void gx_ContainmentGrid::fill_(const Points& points, const std::vector<std::uint32_t>& homes) {
  const auto put = [this](std::uint32_t cell, std::size_t k) {
    cells_[cell] -= 1U << kShift;
    edges_[cells_[cell] >> kShift] = static_cast<std::uint32_t>(k);
  };
  for (std::size_t k = points.size(); k-- > 0;) {
    if (homes[k] != kNoHome) {
      put(homes[k], k);
    } else {
      forEachCell_(points[gx_edgeStart(k, points.size(), true)], points[k],
                   [&](std::uint32_t cell) { put(cell, k); });
    }
  }
}

bool gx_ContainmentGrid::nearOutline_(const gxVector<2>& a, const gxVector<2>& b,
                                      const gxVector<2>& point) const {
  const gxVector<2> w = point - a;
  const gxVector<2> v = point - b;
  if (w * w <= nearVertex_ || v * v <= nearVertex_) return true;
  const gxVector<2> d = b - a;
  const double along = w * d;
  const double length = d * d;
  if (along <= 0.0 || along >= length) return false;
  return square(gf_Cross(d, w)) <= square(gx_kSurelyApart) * length;
}

gx_ContainmentGrid::Answer gx_ContainmentGrid::locate(const Points& points,
                                                      const gxVector<2>& point) const {
  if (columns_ == 0) return Answer::eUnsure;
  if (!bounds_.holds(point)) return Answer::eOutside;
  const gxVector<2> fromFirst = point - first_;
  const double distance = fromFirst * fromFirst;
  if (!(distance < surelyReached_)) return distance > surelyBeyond_ ? Answer::eOutside : Answer::eUnsure;

  const std::uint32_t column = column_(point.x());
  const std::uint32_t row = row_(point.y());
  const std::size_t cell = std::size_t{row} * columns_ + column;
  const std::uint32_t word = cells_[cell];
  std::uint32_t odd = word & kParity;
  const std::uint32_t end = cells_[cell + 1] >> kShift;
  if ((word >> kShift) == end) return odd != 0 ? Answer::eInside : Answer::eOutside;
  if ((word & kOnEdge) != 0) return Answer::eUnsure;

  const gxVector<2> centre = centre_(column, row);
  for (std::uint32_t e = word >> kShift; e < end; ++e) {
    const std::size_t k = edges_[e];
    const gxVector<2>& a = points[gx_edgeStart(k, points.size(), true)];
    const gxVector<2>& b = points[k];
    if (nearOutline_(a, b, point)) return Answer::eUnsure;
    if ((gx_Orientation(centre, point, a) > 0) == (gx_Orientation(centre, point, b) > 0)) continue;
    odd ^= gx_Orientation(a, b, centre) != gx_Orientation(a, b, point) ? 1U : 0U;
  }
  return odd != 0 ? Answer::eInside : Answer::eOutside;
}
