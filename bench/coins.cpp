#include "coins.h"

#include <cmath>

namespace {

constexpr double kApart = 80.0;
constexpr std::int64_t kRow = 200;
constexpr double kTurn = 6.283185307179586;

}  // namespace

std::vector<gxVector<2>> gx_coin(std::int64_t number) {
  const double x = static_cast<double>(number % kRow) * kApart;
  const double y = static_cast<double>(number / kRow) * kApart;
  std::vector<gxVector<2>> points;
  points.reserve(gx_kCoinPoints);
  for (std::int64_t k = 0; k < gx_kCoinPoints; ++k) {
    const double turn = kTurn * static_cast<double>(k) / static_cast<double>(gx_kCoinPoints);
    const double radius = 25.0 + std::sin(static_cast<double>(number)) + 0.2 * std::sin(7.0 * turn);
    points.emplace_back(x + radius * std::cos(turn), y + radius * std::sin(turn));
  }
  return points;
}
