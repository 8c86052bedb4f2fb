// The centre of a triangle is where two of its medians meet, each triangle counts with twice its
// signed area, and all is added up in the order of the edges.
//
// On machines that have them, four triangles are computed side by side in vector registers with
// fused multiply-add.  The operations on each triangle are the very ones of the plain form, whose
// accurate cross products are fused multiply-adds too, so the bits are the same; the additions stay
// one after the other.  Four triangles of which one is out of the ordinary (a direction so long or
// short that lines are scaled, medians that do not meet) are left to the plain form.  The last ones are
// filled up to four with the last point again, a triangle of weight 0, which counts for nothing.
//
// The sum of the weights is the sum behind the area, term by term and in the same order, where every
// triangle left out has the weight 0: adding it would change nothing.  Whether that is so is kept beside
// the sum, so computing the centre also yields the area.
#include <cntr/internal/sums/centroid_sum.h>
#include <velstd/line_seg.h>

#include <algorithm>
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

// An outline of less than this, doubled, has none either.
constexpr double kEmptyPolygon = 1e-6;

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
  if (!(std::abs(weight) > kEmptyTriangle)) {
    sum.whole = sum.whole && weight == 0.0;
    return;
  }
  const gxVector<2> g = triangleCentroid(gxVector<2>(), previous, current);
  sum.weight += weight;
  sum.x += g.x() * weight;
  sum.y += g.y() * weight;
}

#if defined(GX_HAVE_VECTORS)

// Of a triangle that counts, whose coordinates are below this, no line needs scaling: the directions
// of two medians whose cross product is that large cannot be shorter than 1e-120.
constexpr double kLargest = 1e100;

// Along a median, the centre lies at 2/3.  Lines that are parallel within rounding meet anywhere; what
// is up to here is within the double range.
constexpr double kFarthest = 1e150;

#  define GX_WITH_VECTORS __attribute__((target("avx2,fma"), always_inline)) inline

// a d − b c, as gf_DifferenceOfProducts.
GX_WITH_VECTORS __m256d differenceOfProducts(__m256d a, __m256d d, __m256d b, __m256d c) {
  const __m256d bc = _mm256_mul_pd(b, c);
  const __m256d error = _mm256_fnmadd_pd(b, c, bc);
  const __m256d difference = _mm256_fmsub_pd(a, d, bc);
  return _mm256_add_pd(difference, error);
}

GX_WITH_VECTORS __m256d magnitude(__m256d v) {
  return _mm256_andnot_pd(_mm256_set1_pd(-0.0), v);
}

GX_WITH_VECTORS __m256d notAbove(__m256d v, double limit) {
  return _mm256_cmp_pd(v, _mm256_set1_pd(limit), _CMP_LE_OQ);
}

// Four points, seen from the first of all; lane by lane the points 0, 2, 1, 3, which saves moving them.
struct Lanes {
  __m256d x;
  __m256d y;
};

GX_WITH_VECTORS Lanes lanes(__m256d first, __m256d second) {
  return {_mm256_unpacklo_pd(first, second), _mm256_unpackhi_pd(first, second)};
}

// The sum in registers: the centres as a pair, the weight in the lower half of its own.
struct Sum {
  __m128d xy = _mm_setzero_pd();
  __m128d weight = _mm_setzero_pd();
};

// Adds the four triangles of the edges from p to q; false, with nothing added, where one of them is out
// of the ordinary.  Half sums and halves of coordinates are taken twofold, which changes no digit.
GX_WITH_VECTORS bool addFour(const Lanes& p, const Lanes& q, __m256d& largest, __m256d& leftOut,
                             Sum& sum) {
  const __m256d weight = _mm256_sub_pd(_mm256_mul_pd(q.y, p.x), _mm256_mul_pd(p.y, q.x));
  const __m256d counts = _mm256_cmp_pd(magnitude(weight), _mm256_set1_pd(kEmptyTriangle), _CMP_GT_OQ);

  const __m256d minusTwo = _mm256_set1_pd(-2.0);
  const __m256d dx = _mm256_add_pd(p.x, q.x);
  const __m256d dy = _mm256_add_pd(p.y, q.y);
  const __m256d ex = _mm256_fmadd_pd(minusTwo, p.x, q.x);
  const __m256d ey = _mm256_fmadd_pd(minusTwo, p.y, q.y);
  const __m256d t =
      _mm256_div_pd(differenceOfProducts(p.x, ey, p.y, ex), differenceOfProducts(dx, ey, dy, ex));

  largest = _mm256_max_pd(magnitude(q.x), _mm256_max_pd(magnitude(q.y), largest));
  const __m256d parallel = _mm256_andnot_pd(notAbove(magnitude(t), kFarthest), counts);
  const __m256d tooLarge = _mm256_cmp_pd(largest, _mm256_set1_pd(kLargest), _CMP_GT_OQ);
  if (_mm256_movemask_pd(_mm256_or_pd(parallel, tooLarge)) != 0) return false;
  leftOut = _mm256_or_pd(leftOut, _mm256_andnot_pd(counts, magnitude(weight)));

  // In the order of the points; a triangle that does not count adds 0, which changes nothing.
  const __m256d x = _mm256_and_pd(_mm256_mul_pd(_mm256_mul_pd(dx, t), weight), counts);
  const __m256d y = _mm256_and_pd(_mm256_mul_pd(_mm256_mul_pd(dy, t), weight), counts);
  const __m256d w = _mm256_and_pd(weight, counts);
  const __m256d first = _mm256_unpacklo_pd(x, y);
  const __m256d second = _mm256_unpackhi_pd(x, y);
  sum.xy = _mm_add_pd(sum.xy, _mm256_castpd256_pd128(first));
  sum.xy = _mm_add_pd(sum.xy, _mm256_extractf128_pd(first, 1));
  sum.xy = _mm_add_pd(sum.xy, _mm256_castpd256_pd128(second));
  sum.xy = _mm_add_pd(sum.xy, _mm256_extractf128_pd(second, 1));
  const __m128d even = _mm256_castpd256_pd128(w);
  const __m128d odd = _mm256_extractf128_pd(w, 1);
  sum.weight = _mm_add_sd(sum.weight, even);
  sum.weight = _mm_add_sd(sum.weight, odd);
  sum.weight = _mm_add_sd(sum.weight, _mm_unpackhi_pd(even, even));
  sum.weight = _mm_add_sd(sum.weight, _mm_unpackhi_pd(odd, odd));
  return true;
}

gx_CentroidSum asNumbers(const Sum& sum) {
  return {_mm_cvtsd_f64(sum.weight), _mm_cvtsd_f64(sum.xy),
          _mm_cvtsd_f64(_mm_unpackhi_pd(sum.xy, sum.xy)), true};
}

// The sum with the triangles of the edges that end at the points from `first` up to `end`, and whether
// those are all in it.
gx_CentroidSum withTriangles(const Points& points, std::size_t first, std::size_t end,
                             const Sum& before) {
  const gxVector<2> origin = points.front();
  gx_CentroidSum sum = asNumbers(before);
  for (std::size_t i = first; i < end; ++i) {
    addTriangle(points[i - 1] - origin, points[i] - origin, sum);
  }
  return sum;
}

// What goes from four points to the next.
struct Running {
  Sum sum;
  // The largest coordinates so far; NaN is passed over, a triangle that holds one does not count.
  __m256d largest = {};
  __m256d leftOut = {};  // bits of the weights of triangles that did not count
  __m256d before = {};   // two points each, the upper half the one before the next two
};

// Adds the triangles of the edges that end at four points, two and two, of which those from `first` up to
// `end` are points of the outline.
GX_WITH_VECTORS void addFourPoints(const __m256d& two, const __m256d& twoMore, const __m256d& from,
                                   const Points& points, std::size_t first, std::size_t end,
                                   Running& running) {
  const __m256d a = _mm256_sub_pd(two, from);
  const __m256d b = _mm256_sub_pd(twoMore, from);
  const Lanes p =
      lanes(_mm256_permute2f128_pd(running.before, a, 0x21), _mm256_permute2f128_pd(a, b, 0x21));
  running.before = b;
  if (addFour(p, lanes(a, b), running.largest, running.leftOut, running.sum)) return;
  const gx_CentroidSum with = withTriangles(points, first, end, running.sum);
  if (!with.whole) running.leftOut = _mm256_set1_pd(1.0);
  running.sum.xy = _mm_set_pd(with.y, with.x);
  running.sum.weight = _mm_set_sd(with.weight);
}

__attribute__((target("avx2,fma"))) void addAllByFours(const Points& points, gx_CentroidSum& result) {
  const gxVector<2> origin = points.front();
  const double* xy = reinterpret_cast<const double*>(points.data());
  const __m256d from = _mm256_setr_pd(origin.x(), origin.y(), origin.x(), origin.y());
  const std::size_t size = points.size();
  Running running;
  // The first triangle, from the last point to the first, is the first point twice: nothing to add,
  // but what is not finite makes its weight NaN.
  const gxVector<2> last = points.back() - origin;
  if (last.x() - last.x() != 0.0 || last.y() - last.y() != 0.0) running.leftOut = _mm256_set1_pd(1.0);
  std::size_t i = 1;
  for (; i + 4 <= size; i += 4) {
    const double* four = xy + 2 * i;
    addFourPoints(_mm256_loadu_pd(four), _mm256_loadu_pd(four + 4), from, points, i, i + 4, running);
  }
  if (i < size) {
    const auto at = [xy, last = size - 1](std::size_t k) {
      return _mm_loadu_pd(xy + 2 * std::min(k, last));
    };
    addFourPoints(_mm256_set_m128d(at(i + 1), at(i)), _mm256_set_m128d(at(i + 3), at(i + 2)), from,
                  points, i, size, running);
  }
  const __m256i bits = _mm256_castpd_si256(running.leftOut);
  result = asNumbers(running.sum);
  result.whole = _mm256_testz_si256(bits, bits) != 0;
}

#  undef GX_WITH_VECTORS
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

gx_CentreAndArea gx_centreAndArea(const Points& points) {
  if (points.size() <= 2) return {};
  const gx_CentroidSum sum = gx_sumCentroids(points);
  gx_CentreAndArea result;
  result.area = std::abs(sum.weight * 0.5);
  result.areaIsKnown = sum.whole;
  if (!(std::abs(sum.weight) > kEmptyPolygon)) return result;
  const double share = 1.0 / sum.weight;
  result.hasCentre = true;
  result.centre = points.front() + gxVector<2>(share * sum.x, share * sum.y);
  return result;
}
