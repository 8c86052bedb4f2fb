// Nearest edge and vertex, with the very answer of the scan over all of them.
//
// The scan takes each distance as the base library rounds it, and the first of the smallest wins.
// Here runs of edges come in any order, so the first of the smallest is found by comparing numbers
// too: a candidate wins when its distance is smaller, or equal and its number lower.
//
//   1. The runs come from the slab tree, or from the upright boxes of the edge index where that does not
//      answer; without an index all runs of 16 come one after the other.  Runs are left out with a slack
//      far above rounding.
//   2. Of a run, the squared distances of all edges are measured side by side: from v, the start seen
//      from the point, along the edge d by t = −v · d / d · d, kept within [0, 1], to the foot v + t d.
//   3. Those not above the smallest of them, nor above the best so far, by a slack of the same kind,
//      are asked for the exact distance, with its square root and division: one or two of a run.
//
// The slack of a run is in proportion to its farthest point, and where squares might overflow all
// edges of the run are asked.  Of a handful of points everything is asked straight away.
#include <cntr/internal/outline/break_even.h>
#include <cntr/internal/outline/tolerances.h>
#include <cntr/internal/search/nearest.h>
#include <velstd/line_seg.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#if defined(__SSE2__)
#  include <emmintrin.h>
#endif

namespace {

using Points = std::vector<gxVector<2>>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Sums of squares of smaller numbers do not overflow.
constexpr double kLargestPlain = 1e150;
constexpr double kLargestSquare = 1e300;

// The longest run: what a leaf of an index holds, and what is scanned at a time without one.  One point
// far from all others costs the run that it is in, and no more.
constexpr std::size_t kLongestRun = 16;

// What is measured of a run of edges or vertices.
struct Measured {
  double squares[kLongestRun + 1];  // of the distances, about; NaN where a coordinate is
  double smallest = kInfinity;      // of the squares
  double size = 0.0;                // |x| + |y| of no point seen from the query is larger
};

#if defined(__SSE2__)

// Keeps the larger of each component; a NaN leaves it as it was.
inline void widen(__m128d& size, __m128d v) {
  size = _mm_max_pd(_mm_andnot_pd(_mm_set1_pd(-0.0), v), size);
}

// Measures the edges between consecutive points, two by two.
void measureEdges(const gxVector<2>* points, std::size_t edges, const gxVector<2>& point, Measured& m) {
  const double* xy = reinterpret_cast<const double*>(points);
  const __m128d origin = _mm_set_pd(point.y(), point.x());
  const __m128d sign = _mm_set1_pd(-0.0);
  __m128d smallest = _mm_set1_pd(kInfinity);
  __m128d size = _mm_setzero_pd();
  __m128d a = _mm_sub_pd(_mm_loadu_pd(xy), origin);
  widen(size, a);
  for (std::size_t i = 0; i < edges; i += 2) {
    const __m128d b = _mm_sub_pd(_mm_loadu_pd(xy + 2 * (i + 1)), origin);
    // After an odd last edge it comes once more, backwards.
    const __m128d c = _mm_sub_pd(_mm_loadu_pd(xy + 2 * (i + 2 <= edges ? i + 2 : i)), origin);
    widen(size, b);
    widen(size, c);
    const __m128d ab = _mm_sub_pd(b, a);
    const __m128d bc = _mm_sub_pd(c, b);
    const __m128d vx = _mm_unpacklo_pd(a, b);
    const __m128d vy = _mm_unpackhi_pd(a, b);
    const __m128d dx = _mm_unpacklo_pd(ab, bc);
    const __m128d dy = _mm_unpackhi_pd(ab, bc);
    const __m128d along = _mm_add_pd(_mm_mul_pd(vx, dx), _mm_mul_pd(vy, dy));
    const __m128d whole = _mm_add_pd(_mm_mul_pd(dx, dx), _mm_mul_pd(dy, dy));
    const __m128d part = _mm_div_pd(_mm_xor_pd(along, sign), whole);
    const __m128d t = _mm_min_pd(_mm_max_pd(part, _mm_setzero_pd()), _mm_set1_pd(1.0));  // NaN: 0
    const __m128d rx = _mm_add_pd(vx, _mm_mul_pd(t, dx));
    const __m128d ry = _mm_add_pd(vy, _mm_mul_pd(t, dy));
    const __m128d square = _mm_add_pd(_mm_mul_pd(rx, rx), _mm_mul_pd(ry, ry));
    _mm_storeu_pd(m.squares + i, square);
    smallest = _mm_min_pd(square, smallest);
    a = c;
  }
  m.smallest = std::min(_mm_cvtsd_f64(smallest), _mm_cvtsd_f64(_mm_unpackhi_pd(smallest, smallest)));
  m.size = _mm_cvtsd_f64(size) + _mm_cvtsd_f64(_mm_unpackhi_pd(size, size));
}

void measureVertices(const gxVector<2>* points, std::size_t count, const gxVector<2>& point,
                     Measured& m) {
  const double* xy = reinterpret_cast<const double*>(points);
  const __m128d origin = _mm_set_pd(point.y(), point.x());
  __m128d smallest = _mm_set1_pd(kInfinity);
  for (std::size_t i = 0; i < count; i += 2) {
    const __m128d a = _mm_sub_pd(_mm_loadu_pd(xy + 2 * i), origin);
    const __m128d b = _mm_sub_pd(_mm_loadu_pd(xy + 2 * std::min(i + 1, count - 1)), origin);
    const __m128d aa = _mm_mul_pd(a, a);
    const __m128d bb = _mm_mul_pd(b, b);
    const __m128d square = _mm_add_pd(_mm_unpacklo_pd(aa, bb), _mm_unpackhi_pd(aa, bb));
    _mm_storeu_pd(m.squares + i, square);
    smallest = _mm_min_pd(square, smallest);
  }
  m.smallest = std::min(_mm_cvtsd_f64(smallest), _mm_cvtsd_f64(_mm_unpackhi_pd(smallest, smallest)));
}

// Tells, bit by bit, which squares are not above the limit.
std::uint64_t notAbove(const Measured& m, std::size_t count, double limit) {
  std::uint64_t result = 0;
  for (std::size_t i = 0; i < count; i += 2) {
    const int two = _mm_movemask_pd(_mm_cmpngt_pd(_mm_loadu_pd(m.squares + i), _mm_set1_pd(limit)));
    result |= static_cast<std::uint64_t>(two) << i;
  }
  return count % 2 == 0 ? result : result & ~(std::uint64_t{1} << count);
}

#else

void measureEdges(const gxVector<2>* points, std::size_t edges, const gxVector<2>& point, Measured& m) {
  gxVector<2> a = points[0] - point;
  for (std::size_t i = 0; i <= edges; ++i) {
    const gxVector<2> b = points[i] - point;
    m.size = std::max(m.size, std::abs(b.x()) + std::abs(b.y()));
    if (i == 0) continue;
    const gxVector<2> d = b - a;
    const double part = -(a * d) / (d * d);
    const gxVector<2> r = a + d * (part > 0.0 ? std::min(part, 1.0) : 0.0);
    m.squares[i - 1] = r * r;
    m.smallest = std::min(m.smallest, m.squares[i - 1]);
    a = b;
  }
}

void measureVertices(const gxVector<2>* points, std::size_t count, const gxVector<2>& point,
                     Measured& m) {
  for (std::size_t i = 0; i < count; ++i) {
    const gxVector<2> d = points[i] - point;
    m.squares[i] = d * d;
    m.smallest = std::min(m.smallest, m.squares[i]);
  }
}

std::uint64_t notAbove(const Measured& m, std::size_t count, double limit) {
  std::uint64_t result = 0;
  for (std::size_t i = 0; i < count; ++i) {
    result |= std::uint64_t{!(m.squares[i] > limit)} << i;
  }
  return result;
}

#endif

// The best so far of what is asked for, edges or vertices.
struct Best {
  double distance = kInfinity;
  std::size_t number = 0;

  void offer(double d, std::size_t k) {
    if (d < distance || (d == distance && k < number && distance < kInfinity)) {
      distance = d;
      number = k;
    }
  }

  // Whether nothing numbered from `first` on can win any more.
  bool isBefore(std::size_t first) const { return distance == 0.0 && number < first; }
};

// The length of the vector, as it rounds its own, mostly without a call.
inline double distanceOf(const gxVector<2>& v) {
  const double square = v * v;
  return square > gx_EdgeIndex::kSmallestSquare && square < kLargestSquare ? std::sqrt(square) : v.len();
}

// Asks the edges between consecutive points, numbered from `number`.
void askEdges(const gxVector<2>* points, std::size_t edges, std::size_t number, const gxVector<2>& point,
              Best& best) {
  if (best.isBefore(number)) return;
  Measured m;
  measureEdges(points, edges, point, m);
  const double slack = m.size < kLargestPlain ? gx_kRounding * m.size : kInfinity;
  double reach = best.distance * (1.0 + gx_kRounding) + slack;
  if (m.smallest > std::max(reach * reach, gx_EdgeIndex::kSmallestSquare)) return;
  reach = std::min(reach, std::sqrt(m.smallest) * (1.0 + gx_kRounding) + 2.0 * slack);
  const double limit = std::max(reach * reach, gx_EdgeIndex::kSmallestSquare);
  for (std::uint64_t left = notAbove(m, edges, limit); left != 0; left &= left - 1) {
    const auto i = static_cast<std::size_t>(std::countr_zero(left));
    best.offer(gxLineSeg(points[i], points[i + 1]).distToPoint(point), number + i);
    if (best.isBefore(number + i + 1)) return;
  }
}

// Asks vertices numbered from `number`.
void askVertices(const gxVector<2>* points, std::size_t count, std::size_t number,
                 const gxVector<2>& point, Best& best) {
  if (best.isBefore(number)) return;
  Measured m;
  measureVertices(points, count, point, m);
  const double smallest = std::min(m.smallest, best.distance * best.distance);
  const double limit = std::max(smallest * (1.0 + gx_kRounding), gx_EdgeIndex::kSmallestSquare);
  if (m.smallest > limit) return;
  // Of two squares that have kept their digits the lower one's root is not above the other's.
  double lowest = kInfinity;
  for (std::uint64_t left = notAbove(m, count, limit); left != 0; left &= left - 1) {
    const auto i = static_cast<std::size_t>(std::countr_zero(left));
    if (lowest < kInfinity && m.squares[i] >= lowest) continue;
    best.offer(distanceOf(points[i] - point), number + i);
    if (best.isBefore(number + i + 1)) return;
    if (m.squares[i] > gx_EdgeIndex::kSmallestSquare && m.squares[i] < kLargestSquare)
      lowest = m.squares[i];
  }
}

// Asks the edges from `first` up to `end`.
void askEdges(const gx_Outline& outline, std::size_t first, std::size_t end, const gxVector<2>& point,
              Best& best) {
  if (outline.closed && first == 0) {
    const gxVector<2> closing[] = {outline.points.back(), outline.points.front()};
    askEdges(closing, 1, 0, point, best);
    first = 1;
  }
  if (first < end) askEdges(&outline.from(first), end - first, first, point, best);
}

// Calls `visit(first, end)` for the runs of edges that may be nearest.
template <class Visit>
void forEachRunNear(const gx_EdgeIndex& index, const gx_Outline& outline, const gxVector<2>& point,
                    const double& limit, const Visit& visit) {
  const gx_SlabTree* slabs = index.slabs(outline);
  if (slabs != nullptr && slabs->answers(point)) {
    slabs->forEachRunNear(point, limit, visit);
  } else {
    index.forEachRunNear(point, limit, visit);
  }
}

}  // namespace

std::size_t gx_nearestEdge(const gx_EdgeIndex& index, const gx_Outline& outline,
                           const gxVector<2>& point) {
  Best best{kInfinity, index.edges()};
  forEachRunNear(index, outline, point, best.distance, [&](std::size_t first, std::size_t end) {
    askEdges(outline, first, end, point, best);
  });
  return best.number;
}

std::size_t gx_nearestVertex(const gx_EdgeIndex& index, const gx_Outline& outline,
                             const gxVector<2>& point) {
  Best best;
  // Of an open outline the one vertex that no edge ends at.
  if (!outline.closed) best.offer(point.distance(outline.points[0]), 0);
  forEachRunNear(index, outline, point, best.distance, [&](std::size_t first, std::size_t end) {
    askVertices(&outline.to(first), end - first, outline.end(first), point, best);
  });
  return best.number;
}

std::size_t gx_nearestEdge(const gx_Outline& outline, const gxVector<2>& point) {
  const std::size_t edges = outline.edges();
  Best best{kInfinity, edges};
  if (edges <= gx_kHandful) {
    outline.forEachEdge([&](std::size_t from, std::size_t to, std::size_t k) {
      best.offer(gxLineSeg(outline.points[from], outline.points[to]).distToPoint(point), k);
    });
    return best.number;
  }
  for (std::size_t first = 0; first < edges; first += kLongestRun) {
    askEdges(outline, first, std::min(first + kLongestRun, edges), point, best);
  }
  return best.number;
}

std::size_t gx_nearestVertex(const Points& points, const gxVector<2>& point) {
  Best best;
  if (points.size() <= gx_kHandful) {
    for (std::size_t i = 0; i < points.size(); ++i) {
      const double distance = distanceOf(points[i] - point);
      if (!(distance < best.distance)) continue;
      best = {distance, i};
    }
    return best.number;
  }
  for (std::size_t first = 0; first < points.size(); first += kLongestRun) {
    askVertices(&points[first], std::min(kLongestRun, points.size() - first), first, point, best);
  }
  return best.number;
}
