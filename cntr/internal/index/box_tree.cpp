// Tiles: sorted by left side, cut into vertical strips of about √(n / 8) leaves each, and every strip
// sorted by lower side, so that a leaf is about as wide as it is high.  Sides are never NaN: boxes
// pass NaN over.
#include <cntr/internal/index/box_tree.h>

#include <cmath>

gx_BoxTree::gx_BoxTree(const std::vector<gx_Box>& boxes) : order_(boxes.size()) {
  struct Key {
    double side;
    std::size_t number;
  };
  std::vector<Key> keys(boxes.size());  // sides beside the numbers, so that sorting stays in one place
  for (std::size_t i = 0; i < boxes.size(); ++i) keys[i] = {boxes[i].lowX, i};
  const auto sort = [&keys](std::size_t first, std::size_t end) {
    std::sort(keys.begin() + static_cast<std::ptrdiff_t>(first),
              keys.begin() + static_cast<std::ptrdiff_t>(end),
              [](const Key& a, const Key& b) { return a.side < b.side; });
  };
  sort(0, boxes.size());
  for (Key& key : keys) key.side = boxes[key.number].lowY;
  const auto leavesAStrip =
      static_cast<std::size_t>(std::sqrt(static_cast<double>(boxes.size()) / static_cast<double>(kFan)));
  const std::size_t strip = kFan * std::max<std::size_t>(leavesAStrip, 1);
  for (std::size_t first = 0; first < boxes.size(); first += strip) {
    sort(first, std::min(first + strip, boxes.size()));
  }
  for (std::size_t i = 0; i < boxes.size(); ++i) order_[i] = keys[i].number;

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
