/// A tree over the boxes of many shapes.
#pragma once

#include <velstd/vector.h>

#include <cstddef>
#include <limits>
#include <vector>

/// An upright box; one without points holds nothing and is infinitely far from everything.
struct Box {
  double x0 = std::numeric_limits<double>::infinity(), y0 = x0;
  double x1 = -std::numeric_limits<double>::infinity(), y1 = x1;

  void add(const gxVector<2>& p);
  void add(const Box& other);
  bool holds(const gxVector<2>& p, double slack) const;
  /// Returns a distance that is never more than that of a point in the box.
  double distance(const gxVector<2>& p) const;
};

/// The tree: boxes sorted into tiles of columns and rows (S. Leutenegger and others, "STR: a simple and
/// efficient algorithm for R-tree packing", 1997), `kFan` to a node, level upon level.
class BoxTree {
 public:
  explicit BoxTree(const std::vector<Box>& boxes);

  /// Calls `use(index)` for every box that holds the point, in no order.
  template <class Use>
  void holding(const gxVector<2>& point, double slack, const Use& use) const {
    if (levels_.empty()) return;
    std::vector<Node> waiting{{levels_.size() - 1, 0}};
    while (!waiting.empty()) {
      const Node node = waiting.back();
      waiting.pop_back();
      const auto& level = levels_[node.level];
      const std::size_t end = endOf(node);
      for (std::size_t i = node.first; i < end; ++i) {
        if (!level[i].holds(point, slack)) continue;
        if (node.level == 0) {
          use(order_[i]);
        } else {
          waiting.push_back({node.level - 1, i * kFan});
        }
      }
    }
  }

  /// Calls `use(index, bound)` for boxes that lie no farther than `bound()` at that moment, near ones first
  /// within a node.
  template <class Bound, class Use>
  void nearest(const gxVector<2>& point, const Bound& bound, const Use& use) const {
    if (!levels_.empty()) near(point, {levels_.size() - 1, 0}, bound, use);
  }

 private:
  static constexpr std::size_t kFan = 16;
  struct Node {
    std::size_t level, first;
  };
  struct Found {
    double distance;
    std::size_t index;
  };

  std::size_t endOf(const Node& node) const {
    const std::size_t size = levels_[node.level].size();
    return node.first + kFan < size ? node.first + kFan : size;
  }

  template <class Bound, class Use>
  void near(const gxVector<2>& point, const Node& node, const Bound& bound, const Use& use) const {
    Found found[kFan];
    std::size_t count = 0;
    for (std::size_t i = node.first; i < endOf(node); ++i) {
      const double distance = levels_[node.level][i].distance(point);
      std::size_t at = count++;
      for (; at > 0 && found[at - 1].distance > distance; --at) found[at] = found[at - 1];
      found[at] = {distance, i};
    }
    for (std::size_t k = 0; k < count && found[k].distance <= bound(); ++k) {
      if (node.level == 0) {
        use(order_[found[k].index]);
      } else {
        near(point, {node.level - 1, found[k].index * kFan}, bound, use);
      }
    }
  }

  std::vector<std::size_t> order_;        // of the boxes of the lowest level
  std::vector<std::vector<Box>> levels_;  // the boxes themselves first, a single node's worth last
};
