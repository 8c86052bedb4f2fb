// The grid.  The cell of a coordinate c is R(c / tolerance), R rounding half away from zero.  Cell
// coordinates stay doubles: from 2^53 on neighbouring integers are no longer distinct, and they
// saturate there.
//
// Looking at the cell of the query and its neighbours on either side finds every vertex within the
// tolerance in exact arithmetic.  In rounded arithmetic a coordinate that is large against the
// tolerance can fall a cell farther away, so the cells looked at run from the cell of x − tolerance
// to that of x + tolerance, each moved outwards by a few units in the last place, and at least over
// the neighbours.  The map from coordinate to cell never decreases, so nothing within the tolerance
// lies outside.  The cells themselves are a sorted list, and only those that exist are visited, so
// each is visited once and in order.
#include <cntr/internal/vertex_grid.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// From here on neighbouring integers are not all doubles.
constexpr double kLastCell = 9007199254740992.0;  // 2^53

double roundHalfAway(double value) {
  return value >= 0.0 ? std::trunc(value + 0.5) : std::trunc(value - 0.5);
}

bool finite(const gxVector<2>& p) {
  return std::isfinite(p.x()) && std::isfinite(p.y());
}

}  // namespace

gx_VertexGrid::gx_VertexGrid(const std::vector<gxVector<2>>& points, double tolerance)
    : tolerance_(tolerance), scale_(std::min(1.0 / tolerance, std::numeric_limits<double>::max())) {
  entries_.reserve(points.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (!finite(points[i])) continue;  // at no distance below any tolerance
    entries_.push_back({cell_(points[i].x()), cell_(points[i].y()), static_cast<int>(i)});
  }
  std::sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) {
    if (a.x != b.x) return a.x < b.x;
    if (a.y != b.y) return a.y < b.y;
    return a.index < b.index;
  });
}

double gx_VertexGrid::cell_(double coordinate) const {
  return std::clamp(roundHalfAway(scale_ * coordinate), -kLastCell, kLastCell);
}

// The cell of the coordinate a tolerance away, moved outwards past all rounding.
double gx_VertexGrid::cellFor_(double coordinate, double towards) const {
  constexpr double kSlack = 4.0 * std::numeric_limits<double>::epsilon();
  const double reach = tolerance_ + kSlack * (std::abs(coordinate) + tolerance_);
  const double neighbour = cell_(coordinate) + towards;
  const double reached = cell_(coordinate + towards * reach);
  return towards < 0.0 ? std::min(neighbour, reached) : std::max(neighbour, reached);
}

std::vector<int> gx_VertexGrid::near(const std::vector<gxVector<2>>& points,
                                     const gxVector<2>& point) const {
  std::vector<int> found;
  if (!finite(point)) return found;
  const double lastX = cellFor_(point.x(), 1.0);
  const double firstY = cellFor_(point.y(), -1.0);
  const double lastY = cellFor_(point.y(), 1.0);
  double column = cellFor_(point.x(), -1.0);
  auto at = entries_.begin();
  while (true) {
    at = std::lower_bound(at, entries_.end(), column, [firstY](const Entry& e, double x) {
      return e.x < x || (e.x == x && e.y < firstY);
    });
    if (at == entries_.end() || at->x > lastX) return found;
    if (at->x != column) {  // no such column: go on with the next that exists
      column = at->x;
      continue;
    }
    for (; at != entries_.end() && at->x == column && at->y <= lastY; ++at) {
      if (points[static_cast<std::size_t>(at->index)].distance(point) < tolerance_) {
        found.push_back(at->index);
      }
    }
    column = std::nextafter(column, std::numeric_limits<double>::infinity());
  }
}
