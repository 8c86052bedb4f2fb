// The frame around a box: the middle and the half sides are made of halves, so that a box from -1e308
// to 1e308 does not overflow.
#include <cntr/internal/outline/paired_box.h>
#include <gauge/internal/frame.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

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
  gx_PairedBox even;
  gx_PairedBox odd;
  std::size_t i = 0;
  for (; i + 2 <= points.size(); i += 2) {
    even.add(points[i]);
    odd.add(points[i + 1]);
  }
  if (i < points.size()) even.add(points[i]);
  even.add(odd);
  return even.box();
}

bool gx_finiteBoxOf(std::span<const gxVector<2>> points, gx_Box& box) {
  gx_PairedBox even;
  gx_PairedBox odd;
  const auto add = [](gx_PairedBox& to, const gxVector<2>& p) {
    to.add(p);
    to.note(p);
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
