// Calipers around a convex hull.
//
// For each edge in turn, three corners are kept: the farthest onward along the edge, the farthest across
// it, and the farthest back.  From edge to edge each of them only ever moves on, by the sign of a dot or
// cross product with the next edge at that corner, so that once around costs O(corners).  Where rounding
// takes the sign wrong, the extent misses by no more than that rounding: behind a step that was taken for
// none come only steps that turn further away.  No angle is computed and no root taken before the end.
//
// Two results are equal where they agree to 1e-14, the rounding of an area or width; then the first wins.
#include <gauge/internal/exact.h>
#include <gauge/internal/hull.h>
#include <velstd/convex_hull.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kEqual = 1e-14;

}  // namespace

gx_Hull::gx_Hull(std::span<const gxVector<2>> points) : gx_Hull(points, gx_boxOf(points)) {}

gx_Hull::gx_Hull(std::span<const gxVector<2>> points, const gx_Box& box)
    : frame_(box), corners_(points.begin(), points.end()) {
  gfConvexHull(corners_, corners_);
  scaled_.reserve(corners_.size());
  for (const auto& p : corners_) scaled_.push_back(frame_.scaled(p));
}

double gx_Hull::perimeter() const {
  double sum = 0.0;
  for (std::size_t i = 0; i < size(); ++i) {
    const gxVector<2> e = edge(i);
    sum += std::sqrt(e * e);
  }
  return sum;
}

double gx_Hull::area() const {
  double sum = 0.0;
  for (std::size_t i = 2; i < size(); ++i) {
    sum += gf_Cross(scaled_[i - 1] - scaled_[0], scaled_[i] - scaled_[0]);
  }
  return 0.5 * sum;
}

// Calls visit(i, e, onward, across, back) for every edge e with the corners farthest in each direction.
template <class Visit>
void gx_Hull::aroundWithCalipers(const Visit& visit) const {
  std::size_t onward = 1;
  std::size_t across = 1;
  std::size_t back = 1;
  for (std::size_t i = 0; i < size(); ++i) {
    const gxVector<2> e = direction(i);
    // None of them may lag behind the edge, or behind the one before it.
    if (onward == i) onward = next(i);
    while (e * edge(onward) > 0.0) onward = next(onward);
    if (i == 0) across = onward;
    while (gf_Cross(e, edge(across)) > 0.0) across = next(across);
    if (i == 0) back = across;
    while (e * edge(back) < 0.0) back = next(back);
    visit(i, e, onward, across, back);
  }
}

template <class Better>
gx_HullRectangle gx_Hull::rectangle(const Better& size) const {
  double best = std::numeric_limits<double>::infinity();
  std::size_t corner[4] = {0, 0, 0, 0};
  aroundWithCalipers([&](std::size_t i, const gxVector<2>& e, std::size_t onward, std::size_t across,
                         std::size_t back) {
    const double length = e * (scaled_[onward] - scaled_[back]);
    const double height = gf_Cross(e, scaled_[across] - scaled_[i]);
    const double value = size(length, height, e * e);
    if (!(value < best * (1.0 - kEqual)) && best < std::numeric_limits<double>::infinity()) return;
    best = value;
    corner[0] = i;
    corner[1] = onward;
    corner[2] = across;
    corner[3] = back;
  });
  const gxVector<2> e = direction(corner[0]);
  const double length = e.len();
  gx_HullRectangle result;
  result.edge = static_cast<long>(corner[0]);
  result.along = e * (1.0 / length);
  const double high = e * (scaled_[corner[1]] - scaled_[corner[0]]) / length;
  const double low = e * (scaled_[corner[3]] - scaled_[corner[0]]) / length;
  result.onward = e * (scaled_[corner[1]] - scaled_[corner[3]]) / length;
  result.across = gf_Cross(e, scaled_[corner[2]] - scaled_[corner[0]]) / length;
  const gxVector<2> up(-result.along.y(), result.along.x());
  result.centre =
      scaled_[corner[0]] + (result.along * (0.5 * (low + high)) + up * (0.5 * result.across));
  return result;
}

gx_HullRectangle gx_Hull::leastArea() const {
  return rectangle([](double length, double height, double square) { return length / square * height; });
}

gx_HullRectangle gx_Hull::leastWidth() const {
  return rectangle(
      [](double /*length*/, double height, double square) { return height / std::sqrt(square); });
}

gx_HullWidth gx_Hull::greatest() const {
  gx_HullWidth best;
  double square = -1.0;
  const auto offer = [&](std::size_t i, std::size_t j) {
    const std::size_t from = std::min(i, j);
    const std::size_t to = std::max(i, j);
    const gxVector<2> d = scaled_[to] - scaled_[from];
    const double s = d * d;
    if (s < square * (1.0 - kEqual)) return;
    if (s <= square * (1.0 + kEqual)) {
      if (from == best.from && to == best.to) return;  // the calipers meet a pair up to four times
      const int order =
          gx_CompareDistances(corners_[from], corners_[to], corners_[best.from], corners_[best.to]);
      if (order < 0) return;
      if (order == 0 && (from > best.from || (from == best.from && to >= best.to))) return;
    }
    square = s;
    best.from = from;
    best.to = to;
  };
  if (size() < 3) {
    offer(0, size() - 1);
  } else {
    std::size_t across = 1;
    for (std::size_t i = 0; i < size(); ++i) {
      const gxVector<2> e = direction(i);
      if (across == i) across = next(i);
      // Each corner that the calipers pass is opposite to both ends of the edge; one more on either side
      // makes up for a sign that rounding took wrong.
      while (gf_Cross(e, edge(across)) > 0.0) {
        offer(i, across);
        across = next(across);
      }
      offer(i, across);
      offer(next(i), across);
      offer(i, next(across));
      offer(next(i), next(across));
    }
  }
  best.width = (scaled_[best.to] - scaled_[best.from]).len();
  return best;
}

gx_HullWidth gx_Hull::least() const {
  gx_HullWidth best;
  best.width = std::numeric_limits<double>::infinity();
  std::size_t across = 1;
  for (std::size_t i = 0; i < size(); ++i) {
    const gxVector<2> e = direction(i);
    if (across == i) across = next(i);
    while (gf_Cross(e, edge(across)) > 0.0) across = next(across);
    const double width = gf_Cross(e, scaled_[across] - scaled_[i]) / std::sqrt(e * e);
    if (width < best.width * (1.0 - kEqual) || i == 0) best = {width, i, across};
  }
  return best;
}

double gx_Hull::along(const gxVector<2>& direction) const {
  double low = 0.0;
  double high = 0.0;
  for (const auto& p : scaled_) {
    const double d = direction * (p - scaled_[0]);
    low = std::min(low, d);
    high = std::max(high, d);
  }
  return high - low;
}
