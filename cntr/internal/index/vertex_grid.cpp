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
// each is visited once and in order.  A table of groups of columns, about as many as vertices, says
// where in the list to look; it also makes the sorting a counting of groups and many short sorts.
//
// Without a grid every vertex is held against the tolerance, by its square first, and only of those that
// are found cells are computed, to put them in order.
#include <cntr/internal/index/vertex_grid.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numeric>

#if defined(__SSE2__)
#  include <emmintrin.h>
#endif

namespace {

// From here on neighbouring integers are not all doubles.
constexpr double kLastCell = 9007199254740992.0;  // 2^53

// So many entries are looked at one after the other before a place is looked up.
constexpr int kStep = 8;

// So many vertices are looked at, side by side, before those that may be near are looked at again.
constexpr std::size_t kBlock = 64;

inline double roundHalfAway(double value) {
  const double moved = value >= 0.0 ? value + 0.5 : value - 0.5;
  // Cut off through an integer, which takes no call; beyond, there are no digits to cut off.
  return std::abs(moved) < kLastCell ? static_cast<double>(static_cast<long long>(moved))
                                     : std::trunc(moved);
}

double scaleOf(double tolerance) {
  return std::min(1.0 / tolerance, std::numeric_limits<double>::max());
}

inline double cellOf(double coordinate, double scale) {
  return std::clamp(roundHalfAway(scale * coordinate), -kLastCell, kLastCell);
}

bool finite(const gxVector<2>& p) {
  return std::isfinite(p.x()) && std::isfinite(p.y());
}

// Returns a number that the square of no distance below the tolerance is above, however it is rounded.
// Squares of tolerances beyond these bounds may overflow or lose digits: they leave out nothing.
double squareAbove(double tolerance) {
  if (!(tolerance > 1e-140 && tolerance < 1e150)) return std::numeric_limits<double>::infinity();
  return tolerance * tolerance * (1.0 + 1e-12);
}

// Tells, bit by bit, of which of at most 64 points the squared distance is not above the limit.
std::uint64_t notAbove(const gxVector<2>* points, std::size_t count, const gxVector<2>& point,
                       double limit) {
  std::uint64_t result = 0;
  std::size_t i = 0;
#if defined(__SSE2__)
  const double* xy = reinterpret_cast<const double*>(points);
  const __m128d origin = _mm_set_pd(point.y(), point.x());
  for (; i + 2 <= count; i += 2) {
    const __m128d a = _mm_sub_pd(_mm_loadu_pd(xy + 2 * i), origin);
    const __m128d b = _mm_sub_pd(_mm_loadu_pd(xy + 2 * i + 2), origin);
    const __m128d aa = _mm_mul_pd(a, a);
    const __m128d bb = _mm_mul_pd(b, b);
    const __m128d square = _mm_add_pd(_mm_unpacklo_pd(aa, bb), _mm_unpackhi_pd(aa, bb));
    const int two = _mm_movemask_pd(_mm_cmple_pd(square, _mm_set1_pd(limit)));
    result |= static_cast<std::uint64_t>(two) << i;
  }
#endif
  for (; i < count; ++i) {
    const gxVector<2> d = points[i] - point;
    result |= static_cast<std::uint64_t>(d * d <= limit) << i;
  }
  return result;
}

}  // namespace

gx_VertexGrid::gx_VertexGrid(const std::vector<gxVector<2>>& points, double tolerance)
    : tolerance_(tolerance), scale_(scaleOf(tolerance)) {
  std::vector<Entry> unsorted;
  unsorted.reserve(points.size());
  double lastColumn = -kLastCell;
  firstColumn_ = kLastCell;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (!finite(points[i])) continue;  // at no distance below any tolerance
    const Entry entry{cell_(points[i].x()), cell_(points[i].y()), static_cast<int>(i)};
    firstColumn_ = std::min(firstColumn_, entry.x);
    lastColumn = std::max(lastColumn, entry.x);
    unsorted.push_back(entry);
  }
  if (unsorted.empty()) return;

  // Sort by groups of columns first, by counting, and then inside each group.
  const auto count = static_cast<double>(unsorted.size());
  groupsPerColumn_ = std::min(1.0, count / (lastColumn - firstColumn_ + 1.0));
  groups_.assign(group_(lastColumn) + 2, 0);
  for (const Entry& entry : unsorted) ++groups_[group_(entry.x) + 1];
  std::partial_sum(groups_.begin(), groups_.end(), groups_.begin());
  entries_.resize(unsorted.size());
  std::vector<std::uint32_t> next(groups_);
  for (const Entry& entry : unsorted) entries_[next[group_(entry.x)]++] = entry;
  for (std::size_t g = 0; g + 1 < groups_.size(); ++g) {
    if (groups_[g + 1] - groups_[g] < 2) continue;
    std::sort(entries_.begin() + groups_[g], entries_.begin() + groups_[g + 1], comesBefore_);
  }
}

bool gx_VertexGrid::comesBefore_(const Entry& a, const Entry& b) {
  if (a.x != b.x) return a.x < b.x;
  if (a.y != b.y) return a.y < b.y;
  return a.index < b.index;
}

inline double gx_VertexGrid::cell_(double coordinate) const {
  return cellOf(coordinate, scale_);
}

// The cells within a tolerance of the coordinate, moved outwards past all rounding.
inline gx_VertexGrid::Cells gx_VertexGrid::around_(double coordinate) const {
  constexpr double kSlack = 4.0 * std::numeric_limits<double>::epsilon();
  const double reach = tolerance_ + kSlack * (std::abs(coordinate) + tolerance_);
  const double own = cell_(coordinate);
  return {std::min(own - 1.0, cell_(coordinate - reach)),
          std::max(own + 1.0, cell_(coordinate + reach))};
}

// The group of a column between the first and the last; never decreases with the column.
inline std::size_t gx_VertexGrid::group_(double column) const {
  return static_cast<std::size_t>((column - firstColumn_) * groupsPerColumn_);
}

// The first entry of that column from that row on, or of a later column; the end of the entries where
// there is none.
inline const gx_VertexGrid::Entry* gx_VertexGrid::firstFrom_(double column, double row) const {
  const Entry* const begin = entries_.data();
  const Entry* from = begin;
  const Entry* to = begin;
  if (column >= firstColumn_) {
    const std::size_t group = std::min(group_(column), groups_.size() - 2);
    from = begin + groups_[group];
    to = begin + groups_[group + 1];
  }
  const auto liesBefore = [column, row](const Entry& e) {
    return e.x < column || (e.x == column && e.y < row);
  };
  if (to - from > kStep) return std::partition_point(from, to, liesBefore);
  while (from != to && liesBefore(*from)) ++from;
  return from;
}

std::vector<int> gx_VertexGrid::near(const std::vector<gxVector<2>>& points,
                                     const gxVector<2>& point) const {
  std::vector<int> found;
  if (!finite(point) || entries_.empty()) return found;
  const double limit = squareAbove(tolerance_);
  const Cells columns = around_(point.x());
  const Cells rows = around_(point.y());
  const Entry* const end = entries_.data() + entries_.size();
  int passedOver = 0;
  for (const Entry* at = firstFrom_(columns.first, rows.first); at != end && at->x <= columns.last;) {
    if (at->y >= rows.first && at->y <= rows.last) {
      const gxVector<2> d = points[static_cast<std::size_t>(at->index)] - point;
      if (d * d <= limit && d.len() < tolerance_) found.push_back(at->index);
      passedOver = 0;
      ++at;
    } else if (++passedOver < kStep) {
      ++at;
    } else {  // a column with much above or below the rows
      const bool below = at->y < rows.first;
      const double next = below ? at->x : std::nextafter(at->x, std::numeric_limits<double>::infinity());
      at = firstFrom_(next, rows.first);
      passedOver = 0;
    }
  }
  return found;
}

std::vector<int> gx_VertexGrid::scan(const std::vector<gxVector<2>>& points, double tolerance,
                                     const gxVector<2>& point) {
  const double limit = squareAbove(tolerance);
  std::vector<int> found;
  for (std::size_t begin = 0; begin < points.size(); begin += kBlock) {
    const std::size_t count = std::min(kBlock, points.size() - begin);
    std::uint64_t near = notAbove(points.data() + begin, count, point, limit);
    if (near == 0) continue;
    const auto most = static_cast<std::size_t>(std::popcount(near));
    if (found.capacity() - found.size() < most)
      found.reserve(std::max(found.size() + most, 2 * found.size()));
    for (; near != 0; near &= near - 1) {
      const std::size_t i = begin + static_cast<std::size_t>(std::countr_zero(near));
      if ((points[i] - point).len() < tolerance) found.push_back(static_cast<int>(i));
    }
  }
  if (found.size() > 1) sortByCells_(points, scaleOf(tolerance), found);
  return found;
}

// Puts vertices that ascend into the order of the grid.
void gx_VertexGrid::sortByCells_(const std::vector<gxVector<2>>& points, double scale,
                                 std::vector<int>& found) {
  const auto entryOf = [&points, scale](int index) {
    const gxVector<2>& p = points[static_cast<std::size_t>(index)];
    return Entry{cellOf(p.x(), scale), cellOf(p.y(), scale), index};
  };
  const auto isInOrder = [&] {
    Entry before = entryOf(found.front());
    for (const int index : found) {
      const Entry entry = entryOf(index);
      if (comesBefore_(entry, before)) return false;
      before = entry;
    }
    return true;
  };
  if (isInOrder()) return;
  std::vector<Entry> entries;
  entries.reserve(found.size());
  for (const int index : found) entries.push_back(entryOf(index));
  std::sort(entries.begin(), entries.end(), comesBefore_);
  std::transform(entries.begin(), entries.end(), found.begin(),
                 [](const Entry& entry) { return entry.index; });
}
