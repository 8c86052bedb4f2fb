/// The side of a line on which a point lies, decided exactly.
#pragma once

#include <velstd/export.h>
#include <velstd/vector.h>

#include <cmath>
#include <limits>

/// Decides `gx_Orientation` for every finite input by integer arithmetic.  Called where the
/// floating-point filter cannot tell.
VELSTD_API int gx_OrientationExact(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c);

/// Returns +1 where a, b, c make a left turn (counterclockwise with y up), −1 for a right turn, 0
/// where the three points lie on one line or two of them coincide: the exact sign of
/// (b − a) × (c − a), without tolerance, for every finite input from the smallest subnormal to the
/// largest double.
///  - a NaN or infinite coordinate gives 0
/// Cost: two products and a comparison nearly always; where the points are collinear within
/// rounding, some dozen nanoseconds for coordinates of similar size.
inline int gx_Orientation(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c) {
  // The error of the rounded determinant is below 3u (|left| + |right|) with u = 2^-53 (Ozaki,
  // Bünger, Ogita, Oishi and Rump, "Simple floating-point filters for the two-dimensional
  // orientation problem", BIT 56, 2016); 4u leaves room for a machine that rounds twice.  The
  // smallest normal number covers products that underflow, and overflow makes the comparison
  // false.
  constexpr double kBound = 4.0 * (std::numeric_limits<double>::epsilon() / 2.0);
  const double left = (b.x() - a.x()) * (c.y() - a.y());
  const double right = (b.y() - a.y()) * (c.x() - a.x());
  const double det = left - right;
  const double error =
      kBound * (std::fabs(left) + std::fabs(right)) + (std::numeric_limits<double>::min)();
  if (det > error) return 1;
  if (-det > error) return -1;
  return gx_OrientationExact(a, b, c);
}
