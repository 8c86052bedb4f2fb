#include "outlines.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace {

constexpr double kTurn = 6.283185307179586;

}  // namespace

double gx_radiusOf(std::int64_t count) {
  return static_cast<double>(count) / kTurn;
}

std::vector<gxVector<2>> gx_wobblyOutline(std::int64_t count, double x, double y) {
  std::mt19937_64 engine(20250101);
  std::normal_distribution<double> noise(0.0, 0.1);
  const double radius = gx_radiusOf(count);
  std::vector<gxVector<2>> points;
  points.reserve(static_cast<std::size_t>(count));
  for (std::int64_t i = 0; i < count; ++i) {
    const double turn = kTurn * static_cast<double>(i) / static_cast<double>(count);
    const double uneven = 1.0 + 0.1 * std::sin(3.0 * turn) + 0.05 * std::cos(7.0 * turn + 1.0);
    const double r = radius * uneven + noise(engine);
    points.emplace_back(x + r * std::cos(turn), y + r * std::sin(turn));
  }
  return points;
}

std::vector<gxVector<2>> gx_kinkedOutline(std::int64_t count) {
  std::vector<gxVector<2>> points = gx_wobblyOutline(count);
  for (std::size_t i = 0; i + 1 < points.size(); i += 20) std::swap(points[i], points[i + 1]);
  return points;
}

std::vector<gxVector<2>> gx_windingOutline(std::int64_t count) {
  const std::int64_t half = std::max<std::int64_t>(count / 2, 2);
  const double turns = std::sqrt(static_cast<double>(half)) / 4.0;
  const auto at = [&](std::int64_t i, double off) {
    const double share = std::sqrt((static_cast<double>(i) + 1.0) / static_cast<double>(half));
    const double angle = kTurn * turns * share;
    const double r = 4.0 * turns * share + off;
    return gxVector<2>(r * std::cos(angle), r * std::sin(angle));
  };
  std::vector<gxVector<2>> points;
  for (std::int64_t i = 0; i < half; ++i) points.push_back(at(i, 0.0));
  for (std::int64_t i = half; i-- > 0;) points.push_back(at(i, -1.6 * std::min(1.0, turns)));
  return points;
}

std::vector<gxVector<2>> gx_jitteredOutline(std::int64_t count) {
  std::vector<gxVector<2>> points = gx_wobblyOutline(count);
  std::mt19937_64 engine(20250111);
  std::uniform_real_distribution<double> aside(0.2, 0.8);
  for (std::size_t i = 4; i + 4 < points.size(); i += 20) {
    const gxVector<2> along = points[i - 2] - points[i];
    const gxVector<2> across(-along.y(), along.x());
    points[i] = points[i] + along * 1.2 + across * aside(engine);
    points[i + 1] = points[i + 1] - across * aside(engine);
  }
  return points;
}

std::vector<gxVector<2>> gx_tangledOutline(std::int64_t count) {
  std::mt19937_64 engine(20250112);
  std::normal_distribution<double> step(0.0, 1.0);
  std::vector<gxVector<2>> points;
  gxVector<2> at(0.0, 0.0);
  for (std::int64_t i = 0; i < count; ++i) {
    const double x = step(engine);
    at = at + gxVector<2>(x, step(engine));
    points.push_back(at);
  }
  return points;
}

std::vector<gxVector<2>> gx_pointsAround(std::int64_t outlineSize, std::int64_t count) {
  std::mt19937_64 engine(20250102);
  const double half = 1.2 * gx_radiusOf(outlineSize);
  std::uniform_real_distribution<double> across(-half, half);
  std::vector<gxVector<2>> points;
  points.reserve(static_cast<std::size_t>(count));
  for (std::int64_t i = 0; i < count; ++i) {
    const double x = across(engine);
    points.emplace_back(x, across(engine));
  }
  return points;
}

std::vector<gxVector<2>> gx_pointsNear(std::int64_t outlineSize, std::int64_t count, double reach) {
  const std::vector<gxVector<2>> outline = gx_wobblyOutline(outlineSize);
  std::mt19937_64 engine(20250103);
  std::uniform_int_distribution<std::size_t> which(0, outline.size() - 1);
  std::uniform_real_distribution<double> off(-reach, reach);
  std::vector<gxVector<2>> points;
  points.reserve(static_cast<std::size_t>(count));
  for (std::int64_t i = 0; i < count; ++i) {
    const gxVector<2>& near = outline[which(engine)];
    const double x = near.x() + off(engine);
    points.emplace_back(x, near.y() + off(engine));
  }
  return points;
}
