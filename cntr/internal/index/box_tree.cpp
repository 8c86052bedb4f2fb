// Tiles: sorted by left side, cut into vertical strips of about √(n / 8) leaves each, and every strip
// sorted by lower side, so that a leaf is about as wide as it is high.  Sides are never NaN: boxes
// pass NaN over.
#include <cntr/internal/index/box_tree.h>

#include <algorithm>
#include <cmath>

namespace {

// Returns the numbers of the boxes, tile by tile.
std::vector<std::size_t> inTiles(const std::vector<gx_Box>& boxes) {
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
  const auto leavesAStrip = static_cast<std::size_t>(
      std::sqrt(static_cast<double>(boxes.size()) / static_cast<double>(gx_kFan)));
  const std::size_t strip = gx_kFan * std::max<std::size_t>(leavesAStrip, 1);
  for (std::size_t first = 0; first < boxes.size(); first += strip) {
    sort(first, std::min(first + strip, boxes.size()));
  }
  std::vector<std::size_t> order(boxes.size());
  for (std::size_t i = 0; i < boxes.size(); ++i) order[i] = keys[i].number;
  return order;
}

std::vector<gx_Box> inOrder(const std::vector<gx_Box>& boxes, const std::vector<std::size_t>& order) {
  std::vector<gx_Box> result;
  result.reserve(boxes.size() + boxes.size() / (gx_kFan - 1) + gx_kFan);  // room for the levels above
  for (const std::size_t i : order) result.push_back(boxes[i]);
  return result;
}

}  // namespace

gx_BoxTree::gx_BoxTree(const std::vector<gx_Box>& boxes)
    : order_(inTiles(boxes)), boxes_(inOrder(boxes, order_)) {}
