// The centre of a triangle is where two of its medians meet, each triangle counts with twice its
// signed area, and all is added up in the order of the edges.
//
// On machines that have them, four triangles are computed side by side in vector registers with
// fused multiply-add.  The operations on each triangle are the very ones of the plain form, whose
// accurate cross products are fused multiply-adds too, so the bits are the same; the additions stay
// one after the other.  Four triangles of which one is out of the ordinary (a direction so long or
// short that lines are scaled, medians that do not meet) are left to the plain form.
#include <cntr/internal/centroid_sum.h>
#include <velstd/line_seg.h>

#include <cmath>
#include <cstddef>

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#  define GX_HAVE_VECTORS 1
#  include <immintrin.h>
#endif

namespace {

using Points = std::vector<gxVector<2>>;

// A triangle of less than this, doubled, has no centre worth the name.
constexpr double kEmptyTriangle = 1e-15;

gxVector<2> middle(const gxVector<2>& u, const gxVector<2>& v) {
  return {(u.x() + v.x()) * 0.5, (u.y() + v.y()) * 0.5};
}

gxVector<2> triangleCentroid(const gxVector<2>& o, const gxVector<2>& p, const gxVector<2>& q) {
  const gxLineSeg fromO(o, middle(p, q));
  const gxLineSeg fromP(p, middle(o, q));
  return fromO.line().intersect(fromP.line());
}

void addTriangle(const gxVector<2>& previous, const gxVector<2>& current, gx_CentroidSum& sum) {
  const double weight = current.y() * previous.x() - previous.y() * current.x();
  if (!(std::abs(weight) > kEmptyTriangle)) return;
  const gxVector<2> g = triangleCentroid(gxVector<2>(), previous, current);
  sum.weight += weight;
  sum.x += g.x() * weight;
  sum.y += g.y() * weight;
}

#if defined(GX_HAVE_VECTORS)

// The range of |x| + |y| in which a line keeps its direction as given.
constexpr double kShortest = 1e-120;
constexpr double kLongest = 1e120;

struct Lanes {
  __m256d x;
  __m256d y;
};

__attribute__((target("avx2,fma"))) inline Lanes relative(const double* xy, __m256d originX,
                                                          __m256d originY) {
  const __m256d a = _mm256_loadu_pd(xy);
  const __m256d b = _mm256_loadu_pd(xy + 4);
  const __m256d x = _mm256_permute4x64_pd(_mm256_unpacklo_pd(a, b), 0xd8);
  const __m256d y = _mm256_permute4x64_pd(_mm256_unpackhi_pd(a, b), 0xd8);
  return {_mm256_sub_pd(x, originX), _mm256_sub_pd(y, originY)};
}

// a d − b c, as gf_DifferenceOfProducts.
__attribute__((target("avx2,fma"))) inline __m256d differenceOfProducts(__m256d a, __m256d d, __m256d b,
                                                                        __m256d c) {
  const __m256d bc = _mm256_mul_pd(b, c);
  const __m256d error = _mm256_fnmadd_pd(b, c, bc);
  const __m256d difference = _mm256_fmsub_pd(a, d, bc);
  return _mm256_add_pd(difference, error);
}

__attribute__((target("avx2,fma"))) inline __m256d magnitude(__m256d v) {
  return _mm256_andnot_pd(_mm256_set1_pd(-0.0), v);
}

__attribute__((target("avx2,fma"))) inline __m256d inRange(__m256d v, double low, double high) {
  return _mm256_and_pd(_mm256_cmp_pd(v, _mm256_set1_pd(low), _CMP_GE_OQ),
                       _mm256_cmp_pd(v, _mm256_set1_pd(high), _CMP_LE_OQ));
}

// Adds four triangles, from the edges that end at the points `current` … ; false, with nothing
// added, where one of them is out of the ordinary.
__attribute__((target("avx2,fma"))) bool addFour(const Lanes& p, const Lanes& q, gx_CentroidSum& sum) {
  const __m256d half = _mm256_set1_pd(0.5);
  const __m256d weight = _mm256_sub_pd(_mm256_mul_pd(q.y, p.x), _mm256_mul_pd(p.y, q.x));
  const __m256d counts = _mm256_cmp_pd(magnitude(weight), _mm256_set1_pd(kEmptyTriangle), _CMP_GT_OQ);

  const __m256d dx = _mm256_mul_pd(_mm256_add_pd(p.x, q.x), half);
  const __m256d dy = _mm256_mul_pd(_mm256_add_pd(p.y, q.y), half);
  const __m256d ex = _mm256_sub_pd(_mm256_mul_pd(q.x, half), p.x);
  const __m256d ey = _mm256_sub_pd(_mm256_mul_pd(q.y, half), p.y);
  const __m256d t =
      _mm256_div_pd(differenceOfProducts(p.x, ey, p.y, ex), differenceOfProducts(dx, ey, dy, ex));
  const __m256d gx = _mm256_mul_pd(dx, t);
  const __m256d gy = _mm256_mul_pd(dy, t);

  const __m256d plainLines =
      _mm256_and_pd(inRange(_mm256_add_pd(magnitude(dx), magnitude(dy)), kShortest, kLongest),
                    inRange(_mm256_add_pd(magnitude(ex), magnitude(ey)), kShortest, kLongest));
  const __m256d meet = inRange(_mm256_add_pd(magnitude(gx), magnitude(gy)), 0.0, 1e300);
  const __m256d ordinary = _mm256_and_pd(plainLines, meet);
  if (_mm256_movemask_pd(_mm256_andnot_pd(ordinary, counts)) != 0) return false;

  alignas(32) double w[4];
  alignas(32) double x[4];
  alignas(32) double y[4];
  _mm256_store_pd(w, _mm256_and_pd(weight, counts));
  _mm256_store_pd(x, _mm256_and_pd(_mm256_mul_pd(gx, weight), counts));
  _mm256_store_pd(y, _mm256_and_pd(_mm256_mul_pd(gy, weight), counts));
  for (int i = 0; i < 4; ++i) {  // a triangle that does not count adds 0, which changes nothing
    sum.weight += w[i];
    sum.x += x[i];
    sum.y += y[i];
  }
  return true;
}

__attribute__((target("avx2,fma"))) void addAllByFours(const Points& points, gx_CentroidSum& result) {
  const gxVector<2> origin = points.front();
  const double* xy = reinterpret_cast<const double*>(points.data());
  const __m256d originX = _mm256_set1_pd(origin.x());
  const __m256d originY = _mm256_set1_pd(origin.y());
  gx_CentroidSum sum;
  addTriangle(points.back() - origin, points.front() - origin, sum);
  std::size_t i = 1;
  for (; i + 4 <= points.size(); i += 4) {
    const Lanes p = relative(xy + 2 * (i - 1), originX, originY);
    const Lanes q = relative(xy + 2 * i, originX, originY);
    if (addFour(p, q, sum)) continue;
    for (std::size_t k = i; k < i + 4; ++k) addTriangle(points[k - 1] - origin, points[k] - origin, sum);
  }
  for (; i < points.size(); ++i) addTriangle(points[i - 1] - origin, points[i] - origin, sum);
  result = sum;
}

#endif

}  // namespace

gx_CentroidSum gx_sumCentroids(const Points& points) {
  gx_CentroidSum sum;
#if defined(GX_HAVE_VECTORS)
  static const bool vectors = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  if (vectors) {
    addAllByFours(points, sum);
    return sum;
  }
#endif
  const gxVector<2> origin = points.front();
  gxVector<2> previous = points.back() - origin;
  for (const gxVector<2>& point : points) {
    const gxVector<2> current = point - origin;
    addTriangle(previous, current, sum);
    previous = current;
  }
  return sum;
}
