// The smallest circle around points.
//
//  1. Begin with the circle of the four outermost points to the left, right, below and above.
//  2. Find the point farthest from the centre, in rounded numbers.  If it lies outside beyond rounding,
//     take the circle of that point and the supports so far, of which at most two stay, and repeat.  The
//     radius grows each time, and three to five rounds do for outlines of any size.
//  3. Where many points lie within rounding of the border, as those of a regular polygon do, step 2 is
//     done for these in numbers of more digits, which leaves a few.
//  4. The points within rounding of the border are gone through with exact tests, in an order mixed by a
//     fixed generator.  One that lies outside changes the circle and comes first from then on, as in
//     Welzl's algorithm.  Then step 2 again, until nothing changes.
//  5. Of all points exactly on the circle the first two or three in index order that determine it become
//     the supports, so that the answer does not depend on the way there.
//
// (Welzl's recursion over all points, or over the corners of the hull, needs an exact test a point; the
// rounds of step 2 need five operations.)
#include <gauge/enclosing.h>
#include <gauge/internal/exact.h>
#include <gauge/internal/frame.h>
#include <gauge/internal/shape_points.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <ostream>
#include <vector>

namespace {

using Point = gxVector<2>;

// Squares of distances that differ by less than this part may differ in the other direction.
constexpr double kNear = 1e-13;

// More points near the border than this, as of a regular polygon, are first looked at in more digits.
constexpr std::size_t kFew = 16;
// After so many rounds without an end the exact tests take over; six do for a regular polygon.
constexpr int kRefinements = 64;

// The points that determine a circle: one, the ends of a diameter, or the corners of an acute triangle.
struct Basis {
  std::array<std::size_t, 3> at{};
  int count = 0;
};

class Search {
 public:
  explicit Search(std::span<const Point> points, const gx_Box& box)
      : points_(points), box_(box), frame_(box) {}

  gxEnclosingCircle find() {
    std::vector<std::size_t> near = outermost();
    basis_ = {{near[0]}, 1};
    solveExactly(near);
    for (bool changed = true; changed;) {
      const std::size_t farthest = pass<double>(
          points_.size(), [](std::size_t k) { return k; }, kNear, near);
      if (farthest < points_.size()) {
        basis_ = withPoint(farthest);
        continue;
      }
      const Basis before = basis_;
      if (near.size() > kFew) refine(near);
      solveExactly(near);
      changed = basis_.at != before.at || basis_.count != before.count;
    }
    chooseSupports(near);
    return answer();
  }

 private:
  const Point& at(std::size_t i) const { return points_[i]; }
  const Point& support(int k) const { return points_[basis_.at[static_cast<std::size_t>(k)]]; }

  std::vector<std::size_t> outermost() const {
    std::array<std::size_t, 4> found{};
    for (std::size_t i = points_.size(); i-- > 0;) {
      if (at(i).x() == box_.lowX) found[0] = i;
      if (at(i).x() == box_.highX) found[1] = i;
      if (at(i).y() == box_.lowY) found[2] = i;
      if (at(i).y() == box_.highY) found[3] = i;
    }
    return {found.begin(), found.end()};
  }

  // ---- Rounded numbers --------------------------------------------------------------------------

  // The circle of the basis, seen from the first support.
  template <class Real>
  struct Placed {
    Real x = 0;  // the first support, scaled
    Real y = 0;
    Real toX = 0;  // from there to the centre
    Real toY = 0;
    Real square = 0;

    Real squareFrom(const Point& scaled) const {
      const Real dx = static_cast<Real>(scaled.x()) - x - toX;
      const Real dy = static_cast<Real>(scaled.y()) - y - toY;
      return dx * dx + dy * dy;
    }
  };

  template <class Real>
  Placed<Real> place() const {
    const Point a = frame_.scaled(support(0));
    Placed<Real> result{static_cast<Real>(a.x()), static_cast<Real>(a.y())};
    if (basis_.count == 1) return result;
    const Point b = frame_.scaled(support(1));
    const Real bx = static_cast<Real>(b.x()) - result.x;
    const Real by = static_cast<Real>(b.y()) - result.y;
    result.toX = bx / 2;
    result.toY = by / 2;
    if (basis_.count == 3) {
      const Point c = frame_.scaled(support(2));
      const Real cx = static_cast<Real>(c.x()) - result.x;
      const Real cy = static_cast<Real>(c.y()) - result.y;
      const Real twice = 2 * (bx * cy - by * cx);
      const Real b2 = bx * bx + by * by;
      const Real c2 = cx * cx + cy * cy;
      result.toX = (cy * b2 - by * c2) / twice;
      result.toY = (bx * c2 - cx * b2) / twice;
    }
    result.square = result.toX * result.toX + result.toY * result.toY;
    return result;
  }

  // Collects those of `count` points that are near the border, and returns the one farthest outside, if
  // there is one that is outside beyond rounding; `points_.size()` if not.
  template <class Real, class Number>
  std::size_t pass(std::size_t count, const Number& number, Real part,
                   std::vector<std::size_t>& near) const {
    const Placed<Real> circle = place<Real>();
    const Real low = circle.square * (1 - part);
    Real high = circle.square * (1 + part);
    std::size_t farthest = points_.size();
    near.clear();
    for (std::size_t k = 0; k < count; ++k) {
      const std::size_t i = number(k);
      const Real square = circle.squareFrom(frame_.scaled(at(i)));
      if (square < low) continue;
      if (square > high) {
        high = square;
        farthest = i;
      }
      if (farthest == points_.size()) near.push_back(i);
    }
    return farthest;
  }

  // Makes a long list of points near the border shorter, in more digits.
  void refine(std::vector<std::size_t>& near) {
    const std::vector<std::size_t> all(near);
    for (int round = 0; round < kRefinements; ++round) {
      const std::size_t farthest = pass<long double>(
          all.size(), [&all](std::size_t k) { return all[k]; },
          64 * std::numeric_limits<long double>::epsilon(), near);
      if (farthest == points_.size()) return;
      if (side(basis_, farthest) >= 0) break;
      basis_ = withPoint(farthest);
    }
    near = all;
  }

  // ---- Exact tests ------------------------------------------------------------------------------

  // +1 inside the circle of these supports, 0 on it, −1 outside.  A support is on it; the tests would say so
  // by whole numbers alone.
  int side(const Basis& basis, std::size_t i) const {
    const Point& a = points_[basis.at[0]];
    if (at(i) == a) return 0;
    if (basis.count == 1) return -1;
    const Point& b = points_[basis.at[1]];
    if (at(i) == b) return 0;
    if (basis.count == 2) return -gx_DotSign(at(i), a, b);
    const Point& c = points_[basis.at[2]];
    return at(i) == c ? 0 : gx_InCircle(a, b, c, at(i));
  }

  // Tells whether the candidate is a basis: of three points, an acute triangle.
  bool stands(const Basis& c) const {
    if (c.count < 3) return at(c.at[0]) != at(c.at[1]);
    return gx_DotSign(at(c.at[0]), at(c.at[1]), at(c.at[2])) > 0 &&
           gx_DotSign(at(c.at[1]), at(c.at[2]), at(c.at[0])) > 0 &&
           gx_DotSign(at(c.at[2]), at(c.at[0]), at(c.at[1])) > 0 &&
           gx_Orientation(at(c.at[0]), at(c.at[1]), at(c.at[2])) != 0;
  }

  bool holdsAll(const Basis& candidate) const {
    for (int k = 0; k < basis_.count; ++k) {
      if (side(candidate, basis_.at[static_cast<std::size_t>(k)]) < 0) return false;
    }
    return true;
  }

  // Returns the basis of the supports so far together with a point outside their circle.
  Basis withPoint(std::size_t p) const {
    const auto count = static_cast<std::size_t>(basis_.count);
    for (std::size_t i = 0; i < count; ++i) {
      const Basis pair{{basis_.at[i], p}, 2};
      if (stands(pair) && holdsAll(pair)) return pair;
    }
    for (std::size_t i = 0; i < count; ++i) {
      for (std::size_t j = i + 1; j < count; ++j) {
        const Basis triple{{basis_.at[i], basis_.at[j], p}, 3};
        if (stands(triple) && holdsAll(triple)) return triple;
      }
    }
    return basis_;  // not reached: one of them is the smallest circle of at most four points
  }

  // Makes the basis that of these points together.
  void solveExactly(const std::vector<std::size_t>& near) {
    std::uint64_t state = 0x9e3779b97f4a7c15U;
    std::vector<std::size_t> mixed(near);
    for (std::size_t i = mixed.size(); i > 1; --i) {
      state = state * 6364136223846793005U + 1442695040888963407U;
      std::swap(mixed[i - 1], mixed[static_cast<std::size_t>(state >> 33U) % i]);
    }
    for (std::size_t i = 0; i < mixed.size();) {
      if (side(basis_, mixed[i]) >= 0) {
        ++i;
        continue;
      }
      basis_ = withPoint(mixed[i]);
      std::rotate(mixed.begin(), mixed.begin() + static_cast<std::ptrdiff_t>(i),
                  mixed.begin() + static_cast<std::ptrdiff_t>(i) + 1);
      i = 0;
    }
  }

  // ---- The supports -----------------------------------------------------------------------------

  // The points on the circle, each once with its first index, by index.
  std::vector<std::size_t> onCircle(const std::vector<std::size_t>& near) const {
    std::vector<std::size_t> on;
    for (const std::size_t i : near) {
      if (side(basis_, i) == 0) on.push_back(i);
    }
    const auto before = [this](std::size_t i, std::size_t j) {
      if (at(i).x() != at(j).x()) return at(i).x() < at(j).x();
      if (at(i).y() != at(j).y()) return at(i).y() < at(j).y();
      return i < j;
    };
    std::sort(on.begin(), on.end(), before);
    on.erase(std::unique(on.begin(), on.end(),
                         [this](std::size_t i, std::size_t j) { return at(i) == at(j); }),
             on.end());
    std::sort(on.begin(), on.end());
    return on;
  }

  void chooseSupports(const std::vector<std::size_t>& near) {
    const std::vector<std::size_t> on = onCircle(near);
    const std::size_t count = on.size();
    if (count <= 2) {
      std::copy(on.begin(), on.end(), basis_.at.begin());
      return;
    }
    for (std::size_t i = 0; i < count; ++i) {
      for (std::size_t j = i + 1; j < count; ++j) {
        // Two points of a circle are opposite where any third one sees them at a right angle.
        const std::size_t k = i > 0 ? 0 : j > 1 ? 1 : 2;
        if (gx_DotSign(at(on[k]), at(on[i]), at(on[j])) != 0) continue;
        basis_ = {{on[i], on[j]}, 2};
        return;
      }
    }
    for (std::size_t j = 1; j < count; ++j) {
      for (std::size_t k = j + 1; k < count; ++k) {
        const Basis triple{{on[0], on[j], on[k]}, 3};
        if (!stands(triple)) continue;
        basis_ = triple;
        return;
      }
    }
  }

  // ---- The answer -------------------------------------------------------------------------------

  // Tells whether a number near the length of d is below it.  With x the longer side, the sign is that of
  // (length − x) (length + x) − y², where the first difference is exact; next to each other, the two products
  // cancel, and their rounding errors decide.
  static bool isBelow(double length, const Point& d) {
    const double x = std::max(std::fabs(d.x()), std::fabs(d.y()));
    const double y = std::min(std::fabs(d.x()), std::fabs(d.y()));
    const double minus = length - x;
    const double plus = length + x;
    const double plusRest = (x - (plus - length)) + (length - (plus - (plus - length)));
    const double left = minus * plus;
    const double right = y * y;
    const double rest = (std::fma(minus, plus, -left) - std::fma(y, y, -right)) + minus * plusRest;
    const double sum = (left - right) + rest;
    const bool isSure = minus >= 0.0 && right > 1e-200 && left < 1e200 && left <= 2.0 * right &&
                        right <= 2.0 * left && std::fabs(sum) > 1e-28 * right;
    if (isSure) return sum < 0.0;
    const Point origin;
    return gx_CompareDistances(origin, {length, 0.0}, origin, d) < 0;
  }

  // The length, rounded up.
  static double lengthUp(const Point& d) {
    const double length = d.len();
    const bool below = isBelow(length, d);
    return std::max(below ? std::nextafter(length, HUGE_VAL) : length, std::hypot(d.x(), d.y()));
  }

  // The centre, in the scale.  What the formula leaves of error is taken away by one step: seen from the
  // first centre, the squares of the supports' distances differ by little, and that is computed exactly
  // enough.
  Point centre() const {
    const Placed<double> circle = place<double>();
    const Point first = frame_.scaled(support(0)) + Point(circle.toX, circle.toY);
    if (basis_.count < 3) return first;
    const Point a = frame_.scaled(support(0)) - first;
    const Point b = frame_.scaled(support(1)) - first;
    const Point c = frame_.scaled(support(2)) - first;
    const Point ab = b - a;
    const Point ac = c - a;
    const double forB = 0.5 * (ab * (a + b));
    const double forC = 0.5 * (ac * (a + c));
    const double cross = gf_Cross(ab, ac);
    return first +
           Point((forB * ac.y() - forC * ab.y()) / cross, (forC * ab.x() - forB * ac.x()) / cross);
  }

  gxEnclosingCircle answer() const {
    gxEnclosingCircle result;
    result.status = gxStatus::eOk;
    result.supports = basis_.count;
    for (int k = 0; k < basis_.count; ++k) {
      result.support[static_cast<std::size_t>(k)] =
          static_cast<long>(basis_.at[static_cast<std::size_t>(k)]);
    }
    if (basis_.count == 1) {
      result.centre = support(0);
      return result;
    }
    result.centre = frame_.unscaled(centre());
    double largest = 0.0;
    for (const Point& p : points_) largest = std::max(largest, squareOf(p - result.centre));
    for (const Point& p : points_) {
      const Point d = p - result.centre;
      if (squareOf(d) >= largest * (1.0 - kNear)) result.radius = std::max(result.radius, lengthUp(d));
    }
    return result;
  }

  double squareOf(const Point& d) const {
    const Point s(frame_.lengthTo(d.x()), frame_.lengthTo(d.y()));
    return s * s;
  }

  std::span<const Point> points_;
  gx_Box box_;
  gx_Frame frame_;
  Basis basis_;
};

}  // namespace

gxEnclosingCircle gfEnclosingCircle(std::span<const gxVector<2>> points) {
  gxEnclosingCircle result;
  if (points.empty()) return result;
  if (!gx_allFinite(points)) {
    result.status = gxStatus::eNotFinite;
    result.radius = std::numeric_limits<double>::quiet_NaN();
    return result;
  }
  return Search(points, gx_boxOf(points)).find();
}

gxEnclosingCircle gfEnclosingCircle(const gxContour& contour) {
  return gfEnclosingCircle(std::span(contour.points()));
}

gxEnclosingCircle gfEnclosingCircle(const gxRegionSet& set) {
  return gfEnclosingCircle(std::span<const gxVector<2>>(gx_outlinePoints(set)));
}

std::ostream& operator<<(std::ostream& out, const gxEnclosingCircle& circle) {
  out << "centre (" << circle.centre.x() << ", " << circle.centre.y() << ") radius " << circle.radius
      << " supports";
  for (int k = 0; k < circle.supports; ++k) out << ' ' << circle.support[static_cast<std::size_t>(k)];
  if (circle.status != gxStatus::eOk) out << ' ' << circle.status;
  return out;
}
