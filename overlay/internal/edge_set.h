/// The edges of many rings in one list, and a tree of boxes over them.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/outline/box.h>
#include <velstd/vector.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#if defined(__SSE2__)
#  include <emmintrin.h>
#endif

/// Tells whether two boxes share a point, borders included.
inline bool gx_boxesMeet(const gx_Box& a, const gx_Box& b) {
#if defined(__SSE2__)
  const __m128d one = _mm_cmple_pd(_mm_loadu_pd(&a.lowX), _mm_loadu_pd(&b.highX));
  const __m128d two = _mm_cmple_pd(_mm_loadu_pd(&b.lowX), _mm_loadu_pd(&a.highX));
  return _mm_movemask_pd(_mm_and_pd(one, two)) == 3;
#else
  return (a.lowX <= b.highX) & (b.lowX <= a.highX) & (a.lowY <= b.highY) & (b.lowY <= a.highY);
#endif
}

/// The box of two finite points.  (Made of single numbers, it would be read as pairs before it is written.)
inline gx_Box gx_boxOfEdge(const gxVector<2>& p, const gxVector<2>& q) {
#if defined(__SSE2__)
  const __m128d first = _mm_loadu_pd(reinterpret_cast<const double*>(&p));
  const __m128d second = _mm_loadu_pd(reinterpret_cast<const double*>(&q));
  gx_Box box;
  _mm_storeu_pd(&box.lowX, _mm_min_pd(first, second));
  _mm_storeu_pd(&box.highX, _mm_max_pd(first, second));
  return box;
#else
  return {p.x() < q.x() ? p.x() : q.x(), p.y() < q.y() ? p.y() : q.y(), p.x() > q.x() ? p.x() : q.x(),
          p.y() > q.y() ? p.y() : q.y()};
#endif
}

/// The points of closed rings and open chains, one behind the other, without points that repeat the one
/// before them.  Edge i runs from point i to point i + 1; behind a closed ring its first point stands
/// once more, so that this holds for its closing edge too.  The number behind the last edge of a ring
/// belongs to no edge.
///
/// Over the edges lies a tree of boxes: a leaf is a run of up to 8 edges of one ring, a node above it a
/// run of 8 leaves, and so on.  Of many rings those that lie close together stand close together.
class GXSHAPE_API gx_EdgeSet {
 public:
  static constexpr std::size_t kFan = 8;
  static constexpr std::uint32_t kNone = 0xffffffffU;

  struct Ring {
    std::uint32_t first = 0;  ///< its first point and edge
    std::uint32_t end = 0;    ///< behind its last edge; of a closed ring its first point's repetition
    bool closed = true;
    std::uint32_t firstLeaf = 0;
    std::uint32_t endLeaf = 0;
    gx_Box box;

    std::uint32_t edges() const { return end - first; }
  };

  /// Adds a closed ring or an open chain, and returns its number, counted from 0.  The points (and the
  /// sources, a number for each point that `source` gives back; without them twice the index) must stay
  /// where they are until `finish`.
  std::uint32_t add(const gxVector<2>* points, std::size_t count, bool closed,
                    const std::uint32_t* sources = nullptr);

  /// Lays out what was added and builds the tree.
  /// Throws: BadParams for a coordinate that is not finite, with its ring and index, and for more than
  /// 2^30 points.
  void finish();

  std::size_t rings() const { return rings_.size(); }
  const Ring& ring(std::size_t number) const { return rings_[number]; }
  /// Returns the numbers of the rings in the order in which their edges stand.
  const std::vector<std::uint32_t>& order() const { return order_; }
  /// Returns how many numbers points and edges take up.
  std::uint32_t size() const { return static_cast<std::uint32_t>(points_.size()); }
  const gxVector<2>& point(std::uint32_t i) const { return points_[i]; }
  const gxVector<2>& from(std::uint32_t edge) const { return points_[edge]; }
  const gxVector<2>& to(std::uint32_t edge) const { return points_[edge + 1]; }
  gx_Box boxOf(std::uint32_t edge) const { return gx_boxOfEdge(points_[edge], points_[edge + 1]); }
  /// Returns the ring of a point or edge.
  std::uint32_t ringOf(std::uint32_t point) const {
    if (order_.size() > 2) return ringAmongMany_(point);
    return order_[order_.size() == 2 && point >= rings_[order_[1]].first ? 1 : 0];
  }
  /// Returns the source of a point: of the kept one, where repetitions were dropped.
  std::uint32_t source(std::uint32_t point) const { return sources_[point]; }
  /// Returns the box of all points.
  const gx_Box& box() const { return box_; }

  /// Calls `visit(i, j)`, i < j, once for every pair of edges whose boxes meet, those excepted that follow
  /// each other in a ring, until one visit returns true; tells whether one did.  `tick(count)` hears of
  /// every few pairs of boxes that were looked at.
  template <class Visit, class Tick>
  bool forEachPair(const Visit& visit, const Tick& tick) const {
    const std::size_t top = levels() - 1;
    return !leafRing_.empty() && among_(top, 0, count_(top), visit, tick);
  }

  /// Calls `visit(i, j)` for every edge i and the edge j that follows it in its ring; not behind the last
  /// edge of an open chain.  Of a ring of one edge, or none, for nothing.
  template <class Visit>
  void forEachJoint(const Visit& visit) const {
    for (const Ring& ring : rings_) {
      for (std::uint32_t i = ring.first; i + 1 < ring.end; ++i) visit(i, i + 1);
      if (ring.closed && ring.edges() > 1) visit(ring.end - 1, ring.first);
    }
  }

  /// Calls `visit(edge)` for every edge whose box meets `box`.
  template <class Visit>
  void forEachMeeting(const gx_Box& box, const Visit& visit) const {
    if (!leafRing_.empty()) {
      within_(
          levels() - 1, 0, count_(levels() - 1), 0, leafRing_.size(),
          [&box](const gx_Box& b) { return gx_boxesMeet(b, box); }, visit);
    }
  }

  /// Calls `visit(edge)` for every edge of one ring whose box, and whose boxes above, pass `meets`.
  template <class Meets, class Visit>
  void forEachOfRing(const Ring& ring, const Meets& meets, const Visit& visit) const {
    if (ring.firstLeaf != ring.endLeaf) {
      within_(levels() - 1, 0, count_(levels() - 1), ring.firstLeaf, ring.endLeaf, meets, visit);
    }
  }

 private:
  struct Given {
    const gxVector<2>* points;
    std::size_t count;
    bool closed;
    const std::uint32_t* sources;
  };
  struct Edges {
    std::uint32_t first;
    std::uint32_t end;
  };

  void orderRings_();
  void copy_(std::uint32_t number);
  void build_();
  std::uint32_t ringAmongMany_(std::uint32_t point) const;

  std::size_t levels() const { return starts_.size() - 1; }
  std::size_t count_(std::size_t level) const { return starts_[level + 1] - starts_[level]; }
  const gx_Box& node_(std::size_t level, std::size_t i) const { return boxes_[starts_[level] + i]; }
  Edges leaf_(std::size_t leaf) const {
    const Ring& ring = rings_[leafRing_[leaf]];
    const auto first = static_cast<std::uint32_t>(ring.first + (leaf - ring.firstLeaf) * kFan);
    return {first, std::min(first + static_cast<std::uint32_t>(kFan), ring.end)};
  }
  // Tells whether edge i, of leaf a, and edge j > i, of leaf b, share an end by following each other.
  bool areNeighbours_(std::size_t a, std::uint32_t i, std::size_t b, std::uint32_t j) const {
    if (j == i + 1) return true;
    if (leafRing_[a] != leafRing_[b]) return false;
    const Ring& ring = rings_[leafRing_[a]];
    return ring.closed && i == ring.first && j + 1 == ring.end;
  }

  template <class Visit, class Tick>
  bool among_(std::size_t level, std::size_t first, std::size_t end, const Visit& visit,
              const Tick& tick) const {
    for (std::size_t a = first; a < end; ++a) {
      const std::size_t below = a * kFan;
      if (level == 0
              ? edgesAmong_(a, visit, tick)
              : among_(level - 1, below, std::min(below + kFan, count_(level - 1)), visit, tick)) {
        return true;
      }
      for (std::size_t b = a + 1; b < end; ++b) {
        if (gx_boxesMeet(node_(level, a), node_(level, b)) && between_(level, a, b, visit, tick))
          return true;
      }
    }
    return false;
  }

  template <class Visit, class Tick>
  bool between_(std::size_t level, std::size_t a, std::size_t b, const Visit& visit,
                const Tick& tick) const {
    if (level == 0) return edgesBetween_(a, b, visit, tick);
    const gx_Box& boxA = node_(level, a);
    const gx_Box& boxB = node_(level, b);
    std::size_t those[kFan];
    std::size_t count = 0;
    const std::size_t endB = std::min((b + 1) * kFan, count_(level - 1));
    for (std::size_t j = b * kFan; j < endB; ++j) {
      those[count] = j;
      count += gx_boxesMeet(node_(level - 1, j), boxA) ? 1U : 0U;
    }
    const std::size_t endA = std::min((a + 1) * kFan, count_(level - 1));
    for (std::size_t i = a * kFan; count != 0 && i < endA; ++i) {
      if (!gx_boxesMeet(node_(level - 1, i), boxB)) continue;
      for (std::size_t c = 0; c < count; ++c) {
        if (gx_boxesMeet(node_(level - 1, i), node_(level - 1, those[c])) &&
            between_(level - 1, i, those[c], visit, tick)) {
          return true;
        }
      }
    }
    return false;
  }

  template <class Visit, class Tick>
  bool edgesAmong_(std::size_t leaf, const Visit& visit, const Tick& tick) const {
    const Edges run = leaf_(leaf);
    tick(static_cast<std::size_t>(kFan));
    gx_Box boxes[kFan];
    for (std::uint32_t i = run.first; i < run.end; ++i) boxes[i - run.first] = boxOf(i);
    for (std::uint32_t j = run.first + 2; j < run.end; ++j) {
      const gx_Box& box = boxes[j - run.first];
      for (std::uint32_t i = run.first; i + 1 < j; ++i) {
        if (gx_boxesMeet(boxes[i - run.first], box) && !areNeighbours_(leaf, i, leaf, j) &&
            visit(i, j)) {
          return true;
        }
      }
    }
    return false;
  }

  template <class Visit, class Tick>
  bool edgesBetween_(std::size_t a, std::size_t b, const Visit& visit, const Tick& tick) const {
    const Edges inA = leaf_(a);
    const Edges inB = leaf_(b);
    const gx_Box& boxA = node_(0, a);
    const gx_Box& boxB = node_(0, b);
    tick(static_cast<std::size_t>(kFan));
    std::uint32_t those[kFan];
    gx_Box boxes[kFan];
    std::size_t count = 0;
    for (std::uint32_t j = inB.first; j < inB.end; ++j) {
      boxes[count] = boxOf(j);
      those[count] = j;
      count += gx_boxesMeet(boxes[count], boxA) ? 1U : 0U;
    }
    if (count == 0) return false;
    for (std::uint32_t i = inA.first; i < inA.end; ++i) {
      const gx_Box box = boxOf(i);
      if (!gx_boxesMeet(box, boxB)) continue;
      for (std::size_t c = 0; c < count; ++c) {
        if (gx_boxesMeet(box, boxes[c]) && !areNeighbours_(a, i, b, those[c]) && visit(i, those[c]))
          return true;
      }
    }
    return false;
  }

  // Of the nodes first to end of a level, what lies above the leaves from firstLeaf to endLeaf.
  template <class Meets, class Visit>
  void within_(std::size_t level, std::size_t first, std::size_t end, std::size_t firstLeaf,
               std::size_t endLeaf, const Meets& meets, const Visit& visit) const {
    for (std::size_t i = first; i < end; ++i) {
      const std::size_t leaves = i << (3 * level);
      if (leaves >= endLeaf) return;
      if (leaves + (std::size_t{1} << (3 * level)) <= firstLeaf || !meets(node_(level, i))) continue;
      if (level != 0) {
        within_(level - 1, i * kFan, std::min((i + 1) * kFan, count_(level - 1)), firstLeaf, endLeaf,
                meets, visit);
        continue;
      }
      const Edges run = leaf_(i);
      for (std::uint32_t edge = run.first; edge < run.end; ++edge) {
        if (meets(boxOf(edge))) visit(edge);
      }
    }
  }

  std::vector<Given> given_;
  std::vector<Ring> rings_;
  std::vector<std::uint32_t> order_;
  std::vector<gxVector<2>> points_;
  std::vector<std::uint32_t> sources_;   // of every point
  std::vector<std::uint32_t> leafRing_;  // the ring of every leaf
  std::vector<std::size_t> starts_;      // where each level begins in `boxes_`, and the end of the last
  std::vector<gx_Box> boxes_;
  gx_Box box_;
};
