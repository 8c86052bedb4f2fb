/// Boxes over the edges of one ring.
#pragma once

#include <cntr/internal/outline/paired_box.h>
#include <overlay/internal/edge_set.h>
#include <overlay/internal/predicates.h>
#include <velstd/vector.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <vector>

/// The edges of one closed ring, which stays where it is, and boxes over them: around runs of 8 edges, around 8 of
/// these and so on.  Edge i runs from point i to the next one.
class gx_RingBoxes {
 public:
  static constexpr std::size_t kFan = 8;

  /// Of a ring that has points and must outlive this object.
  explicit gx_RingBoxes(const std::vector<gxVector<2>>& points) : points_(points) {
    const std::size_t n = points.size();
    // The levels together have less than n / 7 boxes, and one that is not full each.
    boxes_.reserve(n / (kFan - 1) + kMostLevels);
    for (std::size_t first = 0; first < n; first += kFan) {
      gx_PairedBox box;
      const std::size_t end = std::min(first + kFan, n);
      for (std::size_t i = first; i < end; ++i) {
        box.add(points[i]);
        box.note(points[i]);
      }
      isFinite_ = isFinite_ && box.isFinite();
      box.add(points[end == n ? 0 : end]);
      boxes_.push_back(box.box());
    }
    addLevels_();
  }

  /// Tells whether all coordinates are finite; else the boxes say nothing.
  bool isFinite() const { return isFinite_; }
  std::size_t size() const { return points_.size(); }
  const gxVector<2>& from(std::size_t edge) const { return points_[edge]; }
  const gxVector<2>& to(std::size_t edge) const {
    return points_[edge + 1 == points_.size() ? 0 : edge + 1];
  }
  gx_Box boxOf(std::size_t edge) const { return gx_boxOfEdge(from(edge), to(edge)); }

  /// Return the highest level, which has one box; how many boxes a level has; a box.
  std::size_t top() const { return levels_ - 1; }
  std::size_t count(std::size_t level) const { return starts_[level + 1] - starts_[level]; }
  const gx_Box& box(std::size_t level, std::size_t i) const { return boxes_[starts_[level] + i]; }
  /// Return what lies below box i: the first of the level below (of the edges below level 0), and the one
  /// behind the last.
  std::size_t below(std::size_t i) const { return i * kFan; }
  std::size_t behind(std::size_t level, std::size_t i) const {
    return std::min((i + 1) * kFan, level == 0 ? size() : count(level - 1));
  }

  /// Calls visit(edge) for every edge whose box meets `box`, until one returns true; tells whether one did.
  template <class Visit>
  bool search(const gx_Box& box, const Visit& visit) const {
    return search_(top(), 0, box, visit);
  }

  /// Returns the first vertex by x, then y.
  std::size_t first() const {
    std::size_t first = 0;
    for (std::size_t i = 1; i < size(); ++i) {
      if (gx_before(points_[i], points_[first])) first = i;
    }
    return first;
  }

  /// Calls `visit(i, j)`, i < j, for every pair of edges that may have a point in common, by their boxes and
  /// directions, those excepted that follow each other, until one returns true; tells whether one did.
  /// `tick(count)` hears of every few pairs that were looked at.
  ///
  /// A run that goes only to the right, only up and so on meets itself nowhere, and neither do two such runs one
  /// behind the other.
  template <class Visit, class Tick>
  bool forEachPair(const Visit& visit, const Tick& tick) const {
    std::vector<unsigned char> ways(count(0));
    for (std::size_t run = 0; run < ways.size(); ++run) ways[run] = waysOf_(run);
    return within_(top(), 0, ways, visit, tick);
  }

 private:
  static constexpr std::size_t kMostLevels = 24;  // 8^24 edges are more than there can be

  void addLevels_() {
    starts_[0] = 0;
    starts_[1] = boxes_.size();
    levels_ = 1;
    while (count(top()) > 1) {
      const std::size_t first = starts_[levels_ - 1];
      const std::size_t end = starts_[levels_];
      for (std::size_t at = first; at < end; at += kFan) {
        gx_Box box;
        for (std::size_t i = at; i < std::min(at + kFan, end); ++i) box.add(boxes_[i]);
        boxes_.push_back(box);
      }
      starts_[++levels_] = boxes_.size();
    }
  }

  template <class Visit>
  bool search_(std::size_t level, std::size_t i, const gx_Box& within, const Visit& visit) const {
    if (!gx_boxesMeet(box(level, i), within)) return false;
    for (std::size_t k = below(i); k < behind(level, i); ++k) {
      if (level != 0) {
        if (search_(level - 1, k, within, visit)) return true;
      } else if (gx_boxesMeet(boxOf(k), within) && visit(k)) {
        return true;
      }
    }
    return false;
  }

  using Ways = std::vector<unsigned char>;

  // The ways that all edges of a run go: 1 right, 2 left, 4 up, 8 down, in a sum.
  unsigned char waysOf_(std::size_t run) const {
    unsigned ways = 15;
    for (std::size_t i = below(run); i < behind(0, run); ++i) {
      const gxVector<2>& p = from(i);
      const gxVector<2>& q = to(i);
      ways &= static_cast<unsigned>(q.x() > p.x()) | static_cast<unsigned>(q.x() < p.x()) << 1U |
              static_cast<unsigned>(q.y() > p.y()) << 2U | static_cast<unsigned>(q.y() < p.y()) << 3U;
    }
    return static_cast<unsigned char>(ways);
  }

  // Tells whether two runs one behind the other go one way together.
  bool goOneWay_(std::size_t a, std::size_t b, const Ways& ways) const {
    return (ways[a] & ways[b]) != 0 && (b == a + 1 || (a == 0 && b + 1 == count(0)));
  }

  template <class Visit, class Tick>
  bool within_(std::size_t level, std::size_t i, const Ways& ways, const Visit& visit,
               const Tick& tick) const {
    if (level == 0) return ways[i] == 0 && edgesAmong_(i, visit, tick);
    const std::size_t end = behind(level, i);
    for (std::size_t a = below(i); a < end; ++a) {
      if (within_(level - 1, a, ways, visit, tick)) return true;
      for (std::size_t b = a + 1; b < end; ++b) {
        if (between_(level - 1, a, b, ways, visit, tick)) return true;
      }
    }
    return false;
  }

  template <class Visit, class Tick>
  bool between_(std::size_t level, std::size_t a, std::size_t b, const Ways& ways, const Visit& visit,
                const Tick& tick) const {
    if (!gx_boxesMeet(box(level, a), box(level, b))) return false;
    if (level == 0) return !goOneWay_(a, b, ways) && edgesBetween_(a, b, visit, tick);
    for (std::size_t i = below(a); i < behind(level, a); ++i) {
      if (!gx_boxesMeet(box(level - 1, i), box(level, b))) continue;
      for (std::size_t j = below(b); j < behind(level, b); ++j) {
        if (between_(level - 1, i, j, ways, visit, tick)) return true;
      }
    }
    return false;
  }

  // The boxes of a run's edges.
  std::array<gx_Box, kFan> boxesOf_(std::size_t run) const {
    std::array<gx_Box, kFan> boxes;
    for (std::size_t i = below(run); i < behind(0, run); ++i) boxes[i - below(run)] = boxOf(i);
    return boxes;
  }

  template <class Visit, class Tick>
  bool edgesAmong_(std::size_t run, const Visit& visit, const Tick& tick) const {
    tick(kFan);
    const std::array<gx_Box, kFan> boxes = boxesOf_(run);
    const std::size_t first = below(run);
    for (std::size_t j = 2; j < behind(0, run) - first; ++j) {
      for (std::size_t i = 0; i + 1 < j; ++i) {
        if (gx_boxesMeet(boxes[i], boxes[j]) && !areNeighbours_(first + i, first + j) &&
            visit(first + i, first + j)) {
          return true;
        }
      }
    }
    return false;
  }

  template <class Visit, class Tick>
  bool edgesBetween_(std::size_t a, std::size_t b, const Visit& visit, const Tick& tick) const {
    tick(kFan);
    std::array<gx_Box, kFan> boxes;
    std::array<std::size_t, kFan> those{};
    std::size_t count = 0;
    for (std::size_t j = below(b); j < behind(0, b); ++j) {
      boxes[count] = boxOf(j);
      those[count] = j;
      count += gx_boxesMeet(boxes[count], box(0, a)) ? 1U : 0U;
    }
    if (count == 0) return false;
    for (std::size_t i = below(a); i < behind(0, a); ++i) {
      const gx_Box one = boxOf(i);
      if (!gx_boxesMeet(one, box(0, b))) continue;
      for (std::size_t c = 0; c < count; ++c) {
        if (gx_boxesMeet(one, boxes[c]) && !areNeighbours_(i, those[c]) && visit(i, those[c]))
          return true;
      }
    }
    return false;
  }

  bool areNeighbours_(std::size_t i, std::size_t j) const {
    return j == i + 1 || (i == 0 && j + 1 == size());
  }

  const std::vector<gxVector<2>>& points_;
  std::vector<gx_Box> boxes_;
  std::array<std::size_t, kMostLevels + 1> starts_{};
  std::size_t levels_ = 0;
  bool isFinite_ = true;
};
