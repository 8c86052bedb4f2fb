#include "adversaries.h"

#include "outlines.h"

#include <velstd/matrix.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

constexpr double kTurn = 6.283185307179586;

double real(std::int64_t i) {
  return static_cast<double>(i);
}

Points polygon(std::int64_t count) {
  Points points;
  for (std::int64_t i = 0; i < count; ++i) {
    const double turn = kTurn * real(i) / real(count);
    points.emplace_back(gx_radiusOf(count) * std::cos(turn), gx_radiusOf(count) * std::sin(turn));
  }
  return points;
}

// Whole numbers, so that they lie on the line exactly.
Points line(std::int64_t count) {
  std::mt19937_64 engine(20250111);
  std::uniform_int_distribution<std::int64_t> place(0, count * count);
  Points points;
  for (std::int64_t i = 0; i < count; ++i) {
    const double x = real(place(engine));
    points.emplace_back(2.0 * x, x);
  }
  return points;
}

// Along the tips, then back below.
Points comb(std::int64_t count) {
  const double height = real(count) / 8.0;
  Points points;
  for (std::int64_t i = 0; i + 2 < count; ++i) {
    const double x = real((i + 1) / 2);
    points.emplace_back(x, i / 2 % 2 == 0 ? 0.0 : height);
  }
  points.emplace_back(real(count) / 2.0, -1.0);
  points.emplace_back(0.0, -1.0);
  return points;
}

// The middle line of the strip has radius r = 2 turns; in along the outer side, out along the inner.
Points spiral(std::int64_t count) {
  const std::int64_t half = count / 2;
  const double turns = std::sqrt(real(count) / kTurn);
  const auto at = [&](std::int64_t i, double off) {
    const double share = std::sqrt(real(i + 1) / real(half));
    const double angle = kTurn * turns * share;
    const double r = 2.0 * turns * share + 2.0 + off;
    return V(r * std::cos(angle), r * std::sin(angle));
  };
  Points points;
  for (std::int64_t i = half - 1; i >= 0; --i) points.push_back(at(i, 0.4));
  for (std::int64_t i = 0; i < count - half; ++i) points.push_back(at(std::min(i, half - 1), -0.4));
  return points;
}

Points tangle(std::int64_t count) {
  std::mt19937_64 engine(20250112);
  std::uniform_real_distribution<double> place(0.0, 2.0 * gx_radiusOf(count));
  Points points;
  for (std::int64_t i = 0; i < count; ++i) {
    const double x = place(engine);
    points.emplace_back(x, place(engine));
  }
  return points;
}

Points withOne(std::int64_t count, const V& vertex) {
  Points points = gx_wobblyOutline(count);
  points[static_cast<std::size_t>(count / 3)] = vertex;
  return points;
}

}  // namespace

const std::vector<std::string>& gx_adversaryNames() {
  static const std::vector<std::string> names{"polygon", "line",    "comb", "spiral",
                                              "equal",   "outlier", "nan",  "tangle"};
  return names;
}

Points gx_adversary(const std::string& name, std::int64_t count) {
  if (name == "polygon") return polygon(count);
  if (name == "line") return line(count);
  if (name == "comb") return comb(count);
  if (name == "spiral") return spiral(count);
  if (name == "equal") return Points(static_cast<std::size_t>(count), V(1.0, 1.0));
  if (name == "outlier") return withOne(count, {1e12, 0.4e12});
  if (name == "nan") return withOne(count, {std::numeric_limits<double>::quiet_NaN(), 0.0});
  if (name == "tangle") return tangle(count);
  return gx_wobblyOutline(count);
}

gx_Questions gx_questionsTo(const Points& outline) {
  V low(1e9, 1e9);
  V high(-1e9, -1e9);
  for (const V& p : outline) {
    if (!(std::abs(p.x()) < 1e9)) continue;
    low = {std::min(low.x(), p.x()), std::min(low.y(), p.y())};
    high = {std::max(high.x(), p.x()), std::max(high.y(), p.y())};
  }
  const V size = high - low;
  gx_Questions questions;
  questions.middle = low + size * 0.5;
  if (size.x() > 0.0) questions.middle = questions.middle + V(0.137, 0.071);
  questions.nearby = outline.front() + V(0.3, 0.4);
  questions.across = gxLineSeg(low - size * 0.05 - V(0.5, 0.7), high + size * 0.05 + V(0.6, 0.5));
  return questions;
}

Points gx_turned(const Points& outline, double radians, const V& shift) {
  const gxRadian angle(radians);
  const gxMatrix<2> rotation(angle, angle, 1.0, 1.0);
  Points turned;
  turned.reserve(outline.size());
  for (const V& p : outline) turned.push_back(rotation * p + shift);
  return turned;
}
