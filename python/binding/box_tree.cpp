// The tree over boxes: sorted by columns, and within a column by rows, then packed level by level.
#include "box_tree.h"

#include <algorithm>
#include <cmath>
#include <numeric>

void Box::add(const gxVector<2>& p) {
  x0 = std::fmin(x0, p.x());
  y0 = std::fmin(y0, p.y());
  x1 = std::fmax(x1, p.x());
  y1 = std::fmax(y1, p.y());
}

void Box::add(const Box& other) {
  x0 = std::fmin(x0, other.x0);
  y0 = std::fmin(y0, other.y0);
  x1 = std::fmax(x1, other.x1);
  y1 = std::fmax(y1, other.y1);
}

bool Box::holds(const gxVector<2>& p, double slack) const {
  return p.x() >= x0 - slack && p.x() <= x1 + slack && p.y() >= y0 - slack && p.y() <= y1 + slack;
}

// The factor is for rounding: no answer is lost by it, and few boxes more are looked at.
double Box::distance(const gxVector<2>& p) const {
  const double dx = std::fmax(std::fmax(x0 - p.x(), p.x() - x1), 0.0);
  const double dy = std::fmax(std::fmax(y0 - p.y(), p.y() - y1), 0.0);
  return std::hypot(dx, dy) * (1.0 - 1e-12);
}

BoxTree::BoxTree(const std::vector<Box>& boxes) : order_(boxes.size()) {
  if (boxes.empty()) return;
  std::iota(order_.begin(), order_.end(), std::size_t{0});
  // Boxes without points are infinite the wrong way; their middle is NaN, which no order likes.
  const auto middle = [&](std::size_t i, bool ofY) {
    const double sum = ofY ? boxes[i].y0 + boxes[i].y1 : boxes[i].x0 + boxes[i].x1;
    return std::isnan(sum) ? std::numeric_limits<double>::infinity() : sum;
  };
  const auto before = [&](bool ofY) {
    return [&, ofY](std::size_t a, std::size_t b) {
      const double left = middle(a, ofY);
      const double right = middle(b, ofY);
      return left < right || (left == right && a < b);
    };
  };
  std::sort(order_.begin(), order_.end(), before(false));
  const std::size_t leaves = (boxes.size() + kFan - 1) / kFan;
  const auto column = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(leaves)))) * kFan;
  for (std::size_t first = 0; first < order_.size(); first += column) {
    const auto end = (std::min)(first + column, order_.size());
    std::sort(order_.begin() + static_cast<std::ptrdiff_t>(first),
              order_.begin() + static_cast<std::ptrdiff_t>(end), before(true));
  }
  auto& lowest = levels_.emplace_back();
  for (const std::size_t i : order_) lowest.push_back(boxes[i]);
  while (levels_.back().size() > kFan) {
    std::vector<Box> above((levels_.back().size() + kFan - 1) / kFan);
    for (std::size_t i = 0; i < levels_.back().size(); ++i) above[i / kFan].add(levels_.back()[i]);
    levels_.push_back(std::move(above));
  }
}
