// Lines.  All formulas work on differences of coordinates: with d the direction, o the line's
// point and w = p − o,
//
//   distance     |d × w| / |d|
//   projection   o + d (w · d) / (d · d)
//   intersection o + d t with t = (w × e) / (d × e), e the other direction, w from o to its point
//   parallel     |d × e| <= sine |d| |e|
//
// The two cross products of the intersection cancel when the lines are nearly parallel or nearly
// through each other's points, so they are taken with fused multiply-adds, and what rounding took
// from w is put back; centroids are built on this.  The other formulas lose at most a few units of |w|, and stay plain.
//
// Where a product leaves the range in which it has all its digits (it overflowed, or is so small that
// it may have underflowed), the formula is taken once more with every vector scaled to size 1, which
// is exact and changes nothing else.  Coordinates of 1e308 and of 1e-320 are so as good as any.
#include <velstd/internal/scaled_vector.h>
#include <velstd/line.h>

#include <cmath>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Returns what rounding took from the difference a − b, exactly (Møller and Knuth's two-sum).
double lostBySubtraction(double a, double b, double difference) {
  const double minusB = difference - a;
  return (a - (difference - minusB)) - (b + minusB);
}

// Tells whether the two products of a cross product that is 0 have all their digits: they are equal then at
// any scale.
bool losesNothing(const gxVector<2>& d, const gxVector<2>& w) {
  const bool bothAreNothing = (d.x() == 0.0 || w.y() == 0.0) && (d.y() == 0.0 || w.x() == 0.0);
  return bothAreNothing || gf_IsSafe(d.x() * w.y());
}

}  // namespace

gxLine::~gxLine() = default;

void gxLine::reInit() {
  point_ = gxVector<2>();
  direction_ = gxVector<2>(1.0, 0.0);
  mutating_();
}

void gxLine::scaleDirection_() noexcept {
  direction_ = gf_Scaled(direction_).vector;
}

bool gxLine::isParallel(const gxLine& other) const {
  const double cross = gf_Cross(direction_, other.direction_);
  return std::abs(cross) <= kParallelSine * (direction_.len() * other.direction_.len());
}

bool gxLine::isFinite_() const {
  return gf_IsFinite(point_) && gf_IsFinite(direction_);
}

gxPoint gxLine::intersect(const gxLine& other) const {
  const gxVector<2>& d = direction_;
  const gxVector<2>& e = other.direction_;
  const gxVector<2> w = other.point_ - point_;
  const double denominator = gf_DifferenceOfProducts(d.x(), e.y(), d.y(), e.x());
  const gxVector<2> lost(lostBySubtraction(other.point_.x(), point_.x(), w.x()),
                         lostBySubtraction(other.point_.y(), point_.y(), w.y()));
  const double numerator = gf_DifferenceOfProducts(w.x(), e.y(), w.y(), e.x()) + gf_Cross(lost, e);
  const double t = numerator / denominator;
  if (gf_IsSafe(denominator) && gf_IsSafe(numerator) && gf_IsSafe(t)) {
    const gxVector<2> meeting = point_ + d * t;
    if (gf_IsFinite(meeting)) return gxPoint(meeting);
  }
  return intersectScaled_(other);
}

gxPoint gxLine::intersectScaled_(const gxLine& other) const {
  if (!isFinite_() || !other.isFinite_()) return {kNaN, kNaN};
  const gxVector<2> d = gf_Scaled(direction_).vector;
  const gxVector<2> e = gf_Scaled(other.direction_).vector;
  const gx_ScaledVector w = gf_ScaledDifference(other.point_, point_);
  const double denominator = gf_DifferenceOfProducts(d.x(), e.y(), d.y(), e.x());
  const double numerator = gf_DifferenceOfProducts(w.vector.x(), e.y(), w.vector.y(), e.x());
  if (denominator == 0.0) return proj(other.point_);
  const gxVector<2> meeting = gf_Moved(point_, d * (numerator / denominator), w.exponent);
  return gf_IsFinite(meeting) ? gxPoint(meeting) : proj(other.point_);
}

gxPoint gxLine::proj(const gxVector<2>& point) const {
  const double square = direction_ * direction_;
  if (square == 0.0) return gxPoint(point_);
  const double along = (point - point_) * direction_;
  const double t = along / square;
  if (gf_IsSafe(along) && gf_IsSafe(t)) {
    const gxVector<2> foot = point_ + direction_ * t;
    if (gf_IsFinite(foot)) return gxPoint(foot);
  }
  return projScaled_(point);
}

gxPoint gxLine::projScaled_(const gxVector<2>& point) const {
  if (!isFinite_() || !gf_IsFinite(point)) return {kNaN, kNaN};
  const gxVector<2> d = gf_Scaled(direction_).vector;
  const gx_ScaledVector w = gf_ScaledDifference(point, point_);
  const gxVector<2> foot = gf_Moved(point_, d * ((w.vector * d) / (d * d)), w.exponent);
  return gxPoint(gf_IsFinite(foot) ? foot : point_);
}

double gxLine::distToPoint(const gxVector<2>& point) const {
  const gxVector<2> w = point - point_;
  const double length = direction_.len();
  if (length == 0.0) return w.len();
  const double cross = std::abs(gf_Cross(direction_, w));
  if (cross == 0.0 && losesNothing(direction_, w)) return 0.0;  // as of a place that two lines share
  if (gf_IsSafe(cross) || !isFinite_() || !gf_IsFinite(point)) return cross / length;

  const gxVector<2> d = gf_Scaled(direction_).vector;
  const gx_ScaledVector scaled = gf_ScaledDifference(point, point_);
  return std::scalbn(std::abs(gf_Cross(d, scaled.vector)) / d.len(), scaled.exponent);
}
