/// The edges of a contour as a range.
#pragma once

#include <cntr/contour.h>
#include <velstd/line_seg.h>
#include <velstd/vector.h>

#include <compare>
#include <cstddef>
#include <iterator>
#include <ranges>
#include <span>
#include <vector>

/// One edge: where it begins and where it ends.
struct gxEdge {
  gxVector<2> from;  ///< its first end
  gxVector<2> to;    ///< its second end

  /// Returns the edge as the library's segment.
  gxLineSeg segment() const { return {from, to}; }
  /// Is true when both ends are equal, exactly.
  friend constexpr bool operator==(const gxEdge&, const gxEdge&) = default;
};

/// The edges of a list of points, made while they are asked for: nothing is stored.  They are numbered as
/// everywhere in the library: of a closed list edge 0 is the closing one, from the last point to the first,
/// and edge k ends at point k; of an open list edge k begins at point k.
///  - fewer than 2 points: no edges
///
/// It looks at the points and is used while they stay; copying it copies two words.
///
///   for (const auto [from, to] : gfEdges(contour)) total += from.distance(to);
class gxEdgeRange {
 public:
  /// Walks from edge to edge, in any steps; an edge is made where it is asked for.
  class Iterator {
   public:
    using iterator_concept = std::random_access_iterator_tag;
    using iterator_category =
        std::input_iterator_tag;  // edges are values, which older rules want referred to
    using value_type = gxEdge;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = gxEdge;

    constexpr Iterator() = default;

    /// Return the edge here, and the one `n` further on.
    constexpr gxEdge operator*() const {
      return edgeAt_(points_, closed_, static_cast<std::size_t>(at_));
    }
    constexpr gxEdge operator[](difference_type n) const { return *(*this + n); }

    /// Step as pointers do.
    constexpr Iterator& operator+=(difference_type n) {
      at_ += n;
      return *this;
    }
    constexpr Iterator& operator-=(difference_type n) { return *this += -n; }
    constexpr Iterator& operator++() { return *this += 1; }
    constexpr Iterator& operator--() { return *this -= 1; }
    constexpr Iterator operator++(int) {
      const Iterator old = *this;
      ++*this;
      return old;
    }
    constexpr Iterator operator--(int) {
      const Iterator old = *this;
      --*this;
      return old;
    }
    friend constexpr Iterator operator+(Iterator i, difference_type n) { return i += n; }
    friend constexpr Iterator operator+(difference_type n, Iterator i) { return i += n; }
    friend constexpr Iterator operator-(Iterator i, difference_type n) { return i -= n; }
    friend constexpr difference_type operator-(const Iterator& a, const Iterator& b) {
      return a.at_ - b.at_;
    }

    /// Compare by place; both are of one range.
    friend constexpr bool operator==(const Iterator& a, const Iterator& b) { return a.at_ == b.at_; }
    friend constexpr auto operator<=>(const Iterator& a, const Iterator& b) { return a.at_ <=> b.at_; }

   private:
    friend class gxEdgeRange;
    constexpr Iterator(std::span<const gxVector<2>> points, bool closed, difference_type at)
        : points_(points), closed_(closed), at_(at) {}

    std::span<const gxVector<2>> points_;
    bool closed_ = true;
    difference_type at_ = 0;
  };

  constexpr gxEdgeRange() = default;
  /// Looks at these points.
  constexpr explicit gxEdgeRange(std::span<const gxVector<2>> points, bool closed = true)
      : points_(points), closed_(closed) {}

  /// Returns the number of edges.
  constexpr std::size_t size() const {
    if (points_.size() < 2) return 0;
    return closed_ ? points_.size() : points_.size() - 1;
  }
  /// Tells whether there are none.
  constexpr bool empty() const { return size() == 0; }

  /// Returns edge k, which must be below `size()`.
  constexpr gxEdge operator[](std::size_t k) const { return edgeAt_(points_, closed_, k); }

  /// Return where the edges begin and end; the iterators hold while the points do.
  constexpr Iterator begin() const { return {points_, closed_, 0}; }
  constexpr Iterator end() const { return {points_, closed_, static_cast<std::ptrdiff_t>(size())}; }

 private:
  static constexpr gxEdge edgeAt_(std::span<const gxVector<2>> points, bool closed, std::size_t k) {
    if (!closed) return {points[k], points[k + 1]};
    return {points[k == 0 ? points.size() - 1 : k - 1], points[k]};
  }

  std::span<const gxVector<2>> points_;
  bool closed_ = true;
};

template <>
inline constexpr bool std::ranges::enable_borrowed_range<gxEdgeRange> = true;
template <>
inline constexpr bool std::ranges::enable_view<gxEdgeRange> = true;

/// Returns the edges of a contour, or of the outline of a region, by their numbers.
inline gxEdgeRange gfEdges(const gxContour& contour) {
  return gxEdgeRange(contour.points(), contour.isClosed());
}
/// Returns the edges of a list of points.
inline gxEdgeRange gfEdges(const std::vector<gxVector<2>>& points, bool closed = true) {
  return gxEdgeRange(points, closed);
}
/// The edges of a contour that is about to go would refer to nothing.
inline gxEdgeRange gfEdges(gxContour&&) = delete;
inline gxEdgeRange gfEdges(std::vector<gxVector<2>>&&, bool = true) = delete;
