// Even-odd by a grid.
//
//  1. Every cell lists the edges that pass through it, with a margin above rounding, and knows whether its
//     centre is inside.
//  2. From a point, a path leads within its cell to the centre: first along x to below or above the
//     centre, then along y.  Each edge that crosses the path changes the answer.
//  3. Whether an edge crosses a leg is decided exactly: its ends lie on different sides of the leg's line,
//     and the leg's ends on different sides of the edge (`gx_Orientation`).  What would be a tie is decided
//     as if all points had been moved by the same very small step, up by ε and to the right by ε² (H.
//     Edelsbrunner and E. Mücke, "Simulation of simplicity", 1990): so both legs see the same plane.  A
//     point that lies on an edge is found by itself, before, and does not need the step.
//  4. The centres of a row are decided together: an edge that crosses the row's middle line changes all
//     centres to its left, as far as exact tests say.
//
// (A ray to the far side of the shape meets many edges; a straight path to the centre in any direction
// passes through vertices in ways that need case after case.)
#include <gauge/internal/parity_grid.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <cmath>

namespace {

using Point = gxVector<2>;

// Cells for each edge: more cells than 4 take longer to lay out than they save.
constexpr double kCellsPerEdge = 4.0;
constexpr double kMostCells = 16e6;

bool above(double value, double line) {
  return value > line;
}

// The side of the edge on which p lies after the step: never 0 for an edge that has a length.
int side(const gx_Edge& e, const Point& p) {
  const int turn = gx_Orientation(e.a, e.b, p);
  if (turn != 0) return turn;
  if (e.b.x() != e.a.x()) return e.b.x() > e.a.x() ? 1 : -1;
  return e.b.y() > e.a.y() ? -1 : 1;
}

bool isOn(const gx_Edge& e, const Point& p) {
  const bool inBox = std::min(e.a.x(), e.b.x()) <= p.x() && p.x() <= std::max(e.a.x(), e.b.x()) &&
                     std::min(e.a.y(), e.b.y()) <= p.y() && p.y() <= std::max(e.a.y(), e.b.y());
  return inBox && gx_Orientation(e.a, e.b, p) == 0;
}

// Tells whether a ray to the right crosses the edge.
bool crossesRay(const gx_Edge& e, const Point& p) {
  if (above(e.a.y(), p.y()) == above(e.b.y(), p.y())) return false;
  return (side(e, p) > 0) == (e.b.y() > e.a.y());
}

}  // namespace

gx_Parity gx_parityByScan(std::span<const gx_Edge> edges, const Point& p) {
  gx_Parity result;
  for (std::size_t i = 0; i < edges.size(); ++i) {
    const gx_Edge& e = edges[i];
    if (std::max(e.a.y(), e.b.y()) < p.y() || std::min(e.a.y(), e.b.y()) > p.y()) continue;
    if (std::max(e.a.x(), e.b.x()) < p.x()) continue;
    if (isOn(e, p)) return {false, true, i};
    result.odd ^= crossesRay(e, p);
  }
  return result;
}

gx_ParityGrid::gx_ParityGrid(std::span<const gx_Edge> edges) : edges_(edges) {
  for (const gx_Edge& e : edges_) box_.add(e.box());
  if (edges_.empty()) return;
  layOut_();
  std::vector<std::uint32_t> counts(columns_ * rows_ + 1, 0);
  for (const gx_Edge& e : edges_) {
    forEachCell_(e, [&](std::size_t cell) { ++counts[cell]; });
  }
  starts_.assign(columns_ * rows_ + 1, 0);
  for (const gx_Edge& e : edges_) toggle_(e);
  // So far a centre has been marked where an edge lies just to its right: sum up from the right.
  for (std::size_t r = 0; r < rows_; ++r) {
    std::uint32_t odd = 0;
    for (std::size_t c = columns_; c-- > 0;) {
      odd ^= starts_[r * columns_ + c];
      starts_[r * columns_ + c] = odd;
    }
  }
  std::uint32_t total = 0;
  for (std::size_t cell = 0; cell < counts.size(); ++cell) {
    const std::uint32_t count = counts[cell];
    counts[cell] = total;
    starts_[cell] |= total << 1U;
    total += count;
  }
  lists_.resize(total);
  for (std::size_t i = 0; i < edges_.size(); ++i) {
    forEachCell_(edges_[i],
                 [&](std::size_t cell) { lists_[counts[cell]++] = static_cast<std::uint32_t>(i); });
  }
}

void gx_ParityGrid::layOut_() {
  const double width = box_.highX - box_.lowX;
  const double height = box_.highY - box_.lowY;
  const double cells = std::clamp(kCellsPerEdge * static_cast<double>(edges_.size()), 4.0, kMostCells);
  const double shape =
      width > 0.0 && height > 0.0 ? std::clamp(width / height, 1.0 / cells, cells) : 1.0;
  columns_ = static_cast<std::size_t>(std::clamp(std::sqrt(cells * shape), 1.0, cells));
  rows_ = static_cast<std::size_t>(std::clamp(cells / static_cast<double>(columns_), 1.0, cells));
  if (!(width > 0.0)) columns_ = 1;
  if (!(height > 0.0)) rows_ = 1;
  cellX_ = width / static_cast<double>(columns_);
  cellY_ = height / static_cast<double>(rows_);
  perX_ = width > 0.0 ? static_cast<double>(columns_) / width : 0.0;
  perY_ = height > 0.0 ? static_cast<double>(rows_) / height : 0.0;
  // Far above the rounding of a coordinate, far below a cell.
  const double size = std::max(
      {std::fabs(box_.lowX), std::fabs(box_.highX), std::fabs(box_.lowY), std::fabs(box_.highY)});
  slack_ = 1e-9 * std::max(cellX_, cellY_) + 1e-14 * size;
}

// Both never decrease with their argument, so what lies between two points of a column lies in it.
std::size_t gx_ParityGrid::column_(double x) const {
  const double c = (x - box_.lowX) * perX_;
  return c > 0.0 ? std::min(static_cast<std::size_t>(c), columns_ - 1) : 0;
}
std::size_t gx_ParityGrid::row_(double y) const {
  const double r = (y - box_.lowY) * perY_;
  return r > 0.0 ? std::min(static_cast<std::size_t>(r), rows_ - 1) : 0;
}

Point gx_ParityGrid::centre_(std::size_t column, std::size_t row) const {
  return {box_.lowX + (static_cast<double>(column) + 0.5) * cellX_,
          box_.lowY + (static_cast<double>(row) + 0.5) * cellY_};
}

// Visits every cell that holds a point of the edge, and perhaps some next to it.
template <class Visit>
void gx_ParityGrid::forEachCell_(const gx_Edge& e, const Visit& visit) const {
  const bool up = e.a.y() <= e.b.y();
  const Point& low = up ? e.a : e.b;
  const Point& high = up ? e.b : e.a;
  const std::size_t firstRow = row_(low.y() - slack_);
  const std::size_t lastRow = row_(high.y() + slack_);
  const double rise = high.y() - low.y();
  const double run = high.x() - low.x();
  for (std::size_t r = firstRow; r <= lastRow; ++r) {
    double from = 0.0;
    double to = 1.0;
    if (rise > 0.0) {
      const double bottom = box_.lowY + static_cast<double>(r) * cellY_ - slack_;
      from = std::clamp((bottom - low.y()) / rise, 0.0, 1.0);
      to = std::clamp((bottom + cellY_ + 2.0 * slack_ - low.y()) / rise, 0.0, 1.0);
    }
    const double x1 = low.x() + from * run;
    const double x2 = low.x() + to * run;
    const std::size_t first = column_(std::min(x1, x2) - slack_);
    const std::size_t last = column_(std::max(x1, x2) + slack_);
    for (std::size_t c = first; c <= last; ++c) visit(r * columns_ + c);
  }
}

// Marks, in each row whose middle line the edge crosses, the last centre to its left.
void gx_ParityGrid::toggle_(const gx_Edge& e) {
  const double lowest = std::min(e.a.y(), e.b.y());
  const double highest = std::max(e.a.y(), e.b.y());
  for (std::size_t r = row_(lowest), last = row_(highest); r <= last; ++r) {
    const double y = centre_(0, r).y();
    if (above(e.a.y(), y) == above(e.b.y(), y)) continue;
    const double x = e.a.x() + (y - e.a.y()) / (e.b.y() - e.a.y()) * (e.b.x() - e.a.x());
    std::size_t left = column_(x) + 1;  // how many centres lie to the left: about
    while (left < columns_ && crossesRay(e, centre_(left, r))) ++left;
    while (left > 0 && !crossesRay(e, centre_(left - 1, r))) --left;
    if (left > 0) starts_[r * columns_ + left - 1] ^= kOdd;
  }
}

gx_Parity gx_ParityGrid::at(const Point& p) const {
  if (!box_.holds(p)) return {};
  const std::size_t column = column_(p.x());
  const std::size_t row = row_(p.y());
  const std::size_t cell = row * columns_ + column;
  gx_Parity result;
  result.odd = (starts_[cell] & kOdd) != 0;
  const std::uint32_t first = starts_[cell] >> 1U;
  const std::uint32_t end = starts_[cell + 1] >> 1U;
  if (first == end) return result;
  const Point centre = centre_(column, row);
  const Point corner(centre.x(), p.y());
  for (std::uint32_t k = first; k < end; ++k) {
    const gx_Edge& e = edges_[lists_[k]];
    if (isOn(e, p)) return {false, true, lists_[k]};
    const bool alongX = above(e.a.y(), p.y()) != above(e.b.y(), p.y());
    const bool alongY = above(e.a.x(), centre.x()) != above(e.b.x(), centre.x());
    if (!alongX && !alongY) continue;
    const int middle = side(e, corner);
    if (alongX && side(e, p) != middle) result.odd = !result.odd;
    if (alongY && side(e, centre) != middle) result.odd = !result.odd;
  }
  return result;
}
