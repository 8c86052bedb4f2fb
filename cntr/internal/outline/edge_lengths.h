/// The lengths of consecutive edges.
#pragma once

#include <velstd/vector.h>

#include <cstddef>
#include <vector>

#if defined(__SSE2__)
#  include <emmintrin.h>
#endif

#if defined(__SSE2__)
/// Puts the lengths of the two edges a b, b c into `lengths`, as the plain root of the sum of squares
/// gives them; false where one of the squares is not safely inside the double range.
inline bool gx_twoLengths(const gxVector<2>* a, double* lengths) {
  constexpr double kSmallestSafeSquare = 1e-270;  // inside the range in which gxVector<2>::len is
  constexpr double kLargestSafeSquare = 1e290;    // the plain root
  const double* xy = reinterpret_cast<const double*>(a);
  const __m128d p = _mm_loadu_pd(xy);
  const __m128d q = _mm_loadu_pd(xy + 2);
  const __m128d r = _mm_loadu_pd(xy + 4);
  const __m128d pq = _mm_sub_pd(p, q);
  const __m128d qr = _mm_sub_pd(q, r);
  const __m128d first = _mm_mul_pd(pq, pq);
  const __m128d second = _mm_mul_pd(qr, qr);
  const __m128d square = _mm_add_pd(_mm_unpacklo_pd(first, second), _mm_unpackhi_pd(first, second));
  _mm_storeu_pd(lengths, _mm_sqrt_pd(square));
  const __m128d safe = _mm_and_pd(_mm_cmpge_pd(square, _mm_set1_pd(kSmallestSafeSquare)),
                                  _mm_cmple_pd(square, _mm_set1_pd(kLargestSafeSquare)));
  return _mm_movemask_pd(safe) == 3;
}
#endif

/// Calls `use(length, i)` for the edges (i − 1, i), i from 1 to the last point, in order, with the
/// lengths as `gxVector<2>::distance` gives them.  The roots are what takes the time; where the
/// machine has them, two are computed side by side.
template <class Use>
void gx_forEachLength(const std::vector<gxVector<2>>& points, const Use& use) {
  std::size_t i = 1;
#if defined(__SSE2__)
  for (; i + 2 <= points.size(); i += 2) {
    double lengths[2];
    if (!gx_twoLengths(&points[i - 1], lengths)) {
      lengths[0] = points[i - 1].distance(points[i]);
      lengths[1] = points[i].distance(points[i + 1]);
    }
    use(lengths[0], i);
    use(lengths[1], i + 1);
  }
#endif
  for (; i < points.size(); ++i) use(points[i - 1].distance(points[i]), i);
}
