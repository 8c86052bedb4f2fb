// The frame around a box: the middle and the half sides are made of halves, so that a box from -1e308
// to 1e308 does not overflow.
#include <gauge/internal/frame.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#if defined(__SSE2__)
#  include <emmintrin.h>
#endif

bool gx_allFinite(std::span<const gxVector<2>> points) {
  // Zero times a finite number is 0, times any other NaN; four sums run side by side.
  double sums[4] = {0.0, 0.0, 0.0, 0.0};
  std::size_t i = 0;
  for (; i + 2 <= points.size(); i += 2) {
    sums[0] += points[i].x() * 0.0;
    sums[1] += points[i].y() * 0.0;
    sums[2] += points[i + 1].x() * 0.0;
    sums[3] += points[i + 1].y() * 0.0;
  }
  if (i < points.size()) {
    sums[0] += points[i].x() * 0.0;
    sums[1] += points[i].y() * 0.0;
  }
  return (sums[0] + sums[1]) + (sums[2] + sums[3]) == 0.0;
}

namespace {

#if defined(__SSE2__)
// A box as gx_Box::add widens it, both coordinates in one register: of two, the minimum and maximum
// instructions take the first where it is strictly beyond the second, else the second, NaN or not.
struct PairedBox {
  __m128d low = _mm_set1_pd(std::numeric_limits<double>::infinity());
  __m128d high = _mm_set1_pd(-std::numeric_limits<double>::infinity());

  void add(const gxVector<2>& p) {
    const __m128d xy = _mm_loadu_pd(reinterpret_cast<const double*>(&p));
    low = _mm_min_pd(xy, low);
    high = _mm_max_pd(xy, high);
  }
  // NaN from the first coordinate on that is not finite.
  void addZeros(const gxVector<2>& p) {
    zeros = _mm_add_pd(zeros,
                       _mm_mul_pd(_mm_loadu_pd(reinterpret_cast<const double*>(&p)), _mm_setzero_pd()));
  }
  bool isFinite() const { return _mm_movemask_pd(_mm_cmpeq_pd(zeros, zeros)) == 3; }
  gx_Box box() const {
    gx_Box result;
    result.lowX = _mm_cvtsd_f64(low);
    result.lowY = _mm_cvtsd_f64(_mm_unpackhi_pd(low, low));
    result.highX = _mm_cvtsd_f64(high);
    result.highY = _mm_cvtsd_f64(_mm_unpackhi_pd(high, high));
    return result;
  }

  __m128d zeros = _mm_setzero_pd();
};
#else
struct PairedBox : gx_Box {
  void addZeros(const gxVector<2>& p) { zeros += p.x() * 0.0 + p.y() * 0.0; }
  bool isFinite() const { return zeros == 0.0; }
  gx_Box box() const { return *this; }

  double zeros = 0.0;
};
#endif

// 2 to the power of e, which is from -1000 to 1000.
double powerOfTwo(int e) {
  return std::bit_cast<double>(static_cast<std::uint64_t>(e + 1023) << 52U);
}

// The exponent of a positive number that is not subnormal.
int exponentOf(double value) {
  return static_cast<int>(std::bit_cast<std::uint64_t>(value) >> 52U) - 1023;
}

}  // namespace

gx_Box gx_boxOf(std::span<const gxVector<2>> points) {
  PairedBox even;
  PairedBox odd;
  std::size_t i = 0;
  for (; i + 2 <= points.size(); i += 2) {
    even.add(points[i]);
    odd.add(points[i + 1]);
  }
  if (i < points.size()) even.add(points[i]);
  gx_Box box = even.box();
  box.add(odd.box());
  return box;
}

bool gx_finiteBoxOf(std::span<const gxVector<2>> points, gx_Box& box) {
  PairedBox even;
  PairedBox odd;
  const auto add = [](PairedBox& to, const gxVector<2>& p) {
    to.add(p);
    to.addZeros(p);
  };
  std::size_t i = 0;
  for (; i + 2 <= points.size(); i += 2) {
    add(even, points[i]);
    add(odd, points[i + 1]);
  }
  if (i < points.size()) add(even, points[i]);
  box = even.box();
  box.add(odd.box());
  return even.isFinite() && odd.isFinite();
}

bool gx_onOneLine(std::span<const gxVector<2>> points) {
  std::size_t second = 1;
  while (second < points.size() && points[second] == points[0]) ++second;
  for (std::size_t i = second + 1; i < points.size(); ++i) {
    if (gx_Orientation(points[0], points[second], points[i]) != 0) return false;
  }
  return true;
}

gx_Frame::gx_Frame(const gx_Box& box)
    : middle_(box.lowX * 0.5 + box.highX * 0.5, box.lowY * 0.5 + box.highY * 0.5) {
  const double half = std::max(box.highX * 0.5 - box.lowX * 0.5, box.highY * 0.5 - box.lowY * 0.5);
  if (!(half > 0.0)) {
    // A single point, or two neighbouring subnormals: a half that has vanished is no scale.
    const double whole = std::max(box.highX - box.lowX, box.highY - box.lowY);
    if (!(whole > 0.0)) {
      middle_ = {box.lowX, box.lowY};
      return;
    }
  }
  int exponent = -1074;
  if (half > 0.0) exponent = half < 0x1p-1022 ? std::ilogb(half) : exponentOf(half);
  const int first = std::clamp(exponent, -1000, 1000);
  up_ = powerOfTwo(-first);
  down_ = powerOfTwo(first);
  upAgain_ = powerOfTwo(first - exponent);
  downAgain_ = powerOfTwo(exponent - first);
}
