// The sides of four ends decide what two edges have in common; nothing else is computed from the
// coordinates, they are only compared.
//
// The sign of an area: the sum of the cross products of neighbours, about the first point, and a bound on
// its rounding.  Where the sum is not above the bound, all products are added up without error.
#include <overlay/internal/long_sum.h>
#include <overlay/internal/predicates.h>

#include <cmath>
#include <limits>

gx_EdgeMeeting gx_meetingAtEnds(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c,
                                const gxVector<2>& d, int sideOfC, int sideOfD) {
  const int sideOfA = gx_Orientation(c, d, a);
  const int sideOfB = gx_Orientation(c, d, b);
  if (sideOfA * sideOfB > 0) return {};
  if (sideOfC != 0 && sideOfD != 0 && sideOfA != 0 && sideOfB != 0)
    return {gx_EdgeMeeting::eCrossing, 0};

  unsigned ends = 0;
  if (sideOfA == 0 && gx_isBetween(a, c, d)) ends |= gx_EdgeMeeting::eA;
  if (sideOfB == 0 && gx_isBetween(b, c, d)) ends |= gx_EdgeMeeting::eB;
  if (sideOfC == 0 && gx_isBetween(c, a, b)) ends |= gx_EdgeMeeting::eC;
  if (sideOfD == 0 && gx_isBetween(d, a, b)) ends |= gx_EdgeMeeting::eD;
  if (ends == 0) return {};

  const bool onOneLine = sideOfA == 0 && sideOfB == 0 && sideOfC == 0 && sideOfD == 0;
  // On one line they overlap unless all that they share is one point, an end of both.
  const bool atOnePoint = ((ends & gx_EdgeMeeting::eA) == 0 || a == c || a == d) &&
                          ((ends & gx_EdgeMeeting::eB) == 0 || b == c || b == d) &&
                          ((ends & gx_EdgeMeeting::eC) == 0 || c == a || c == b) &&
                          ((ends & gx_EdgeMeeting::eD) == 0 || d == a || d == b) &&
                          !((a == c && b == d) || (a == d && b == c));
  const bool overlap = onOneLine && !atOnePoint && !(a == b) && !(c == d);
  return {overlap ? gx_EdgeMeeting::eOverlap : gx_EdgeMeeting::eTouching,
          static_cast<unsigned char>(ends)};
}

namespace {

int exactSignOfArea(const gxVector<2>* points, std::size_t count) {
  gx_LongSum sum;
  for (std::size_t i = 0; i < count; ++i) {
    const gxVector<2>& p = points[i];
    const gxVector<2>& q = points[i + 1 == count ? 0 : i + 1];
    sum.add(p.x(), q.y());
    sum.add(-p.y(), q.x());
  }
  return sum.sign();
}

}  // namespace

int gx_signOfArea(const gxVector<2>* points, std::size_t count) {
  if (count < 3) return 0;
  double sum = 0.0;
  double size = 0.0;
  const gxVector<2> origin = points[0];
  gxVector<2> previous = points[1] - origin;
  for (std::size_t i = 2; i < count; ++i) {
    const gxVector<2> next = points[i] - origin;
    const double left = previous.x() * next.y();
    const double right = previous.y() * next.x();
    sum += left - right;
    size += std::fabs(left) + std::fabs(right);
    previous = next;
  }
  // Each product has two rounded differences and its own rounding, the subtraction one; the sum of n terms
  // adds n roundings of at most `size`.  The smallest normal number covers products that underflow.
  constexpr double kUnit = std::numeric_limits<double>::epsilon();
  const double n = static_cast<double>(count);
  const double bound = kUnit * (n + 8.0) * size + n * std::numeric_limits<double>::min();
  if (sum > bound) return 1;
  if (-sum > bound) return -1;
  return exactSignOfArea(points, count);
}
