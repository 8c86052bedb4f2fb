// Tiles: sorted by left side, cut into vertical strips of about √(n / 8) leaves each, and every strip
// sorted by lower side, so that a leaf is about as wide as it is high.  Sides are never NaN: boxes
// pass NaN over.
#include <cntr/internal/box_tree.h>

#include <cmath>
#include <numeric>

gx_BoxTree::gx_BoxTree(const std::vector<gx_Box>& boxes) : order_(boxes.size()) {
  std::iota(order_.begin(), order_.end(), std::size_t{0});
  const auto sortBy = [&](std::size_t first, std::size_t end, double gx_Box::*side) {
    std::sort(order_.begin() + static_cast<std::ptrdiff_t>(first),
              order_.begin() + static_cast<std::ptrdiff_t>(end),
              [&](std::size_t a, std::size_t b) { return boxes[a].*side < boxes[b].*side; });
  };
  sortBy(0, boxes.size(), &gx_Box::lowX);
  const auto leavesAStrip =
      static_cast<std::size_t>(std::sqrt(static_cast<double>(boxes.size()) / static_cast<double>(kFan)));
  const std::size_t strip = kFan * std::max<std::size_t>(leavesAStrip, 1);
  for (std::size_t first = 0; first < boxes.size(); first += strip) {
    sortBy(first, std::min(first + strip, boxes.size()), &gx_Box::lowY);
  }

  starts_ = {0, boxes.size()};
  boxes_.reserve(boxes.size() + boxes.size() / (kFan - 1) + kFan);
  for (const std::size_t i : order_) boxes_.push_back(boxes[i]);
  while (starts_.back() - starts_[starts_.size() - 2] > kFan) {
    const std::size_t below = starts_[starts_.size() - 2];
    const std::size_t end = starts_.back();
    for (std::size_t first = below; first < end; first += kFan) {
      gx_Box node;
      for (std::size_t i = first; i < std::min(first + kFan, end); ++i) node.add(boxes_[i]);
      boxes_.push_back(node);
    }
    starts_.push_back(boxes_.size());
  }
}
