/// The raw curve of an offset: closed walks whose winding numbers tell what it covers.
#pragma once

#include <cntr/export.h>
#include <overlay/offset.h>
#include <velstd/vector.h>

#include <cstddef>
#include <vector>

/// The directions of a full circle from which all round joins of one offset take theirs.
class GXSHAPE_API gx_ArcDirections {
 public:
  /// As many as keep chords within the tolerance of a circle of that radius, a multiple of four; at most
  /// `kMost`.
  gx_ArcDirections(double radius, double tolerance);

  static constexpr std::size_t kMost = 65536;

  std::size_t count() const { return directions_.size(); }
  /// Calls `visit(direction)` for every direction strictly between two unit vectors, counter-clockwise
  /// from the first to the second; for half a turn and less.
  template <class Visit>
  void between(const gxVector<2>& from, const gxVector<2>& to, const Visit& visit) const {
    const std::size_t n = directions_.size();
    std::size_t i = after_(from);
    for (std::size_t k = 0; k < n; ++k, i = i + 1 == n ? 0 : i + 1) {
      // In front of `to`, and not behind `from`.
      if (!(gf_Cross(directions_[i], to) > 0.0) || !(gf_Cross(from, directions_[i]) > 0.0)) return;
      visit(directions_[i]);
    }
  }

 private:
  std::size_t after_(const gxVector<2>& from) const;

  std::vector<gxVector<2>> directions_;
};

/// Appends the walk around a ring at a distance above 0 on its right: what lies on the left of the ring,
/// which is its inside, and every point within the distance of the ring have winding numbers above
/// 0 in it, all others that of the ring's outside.
///
/// The ring has no repeated points and 2 or more of them; with 2 it is a line there and back.  Where it
/// turns back by half a turn, a corner of it, or, with `ends`, an end of a line, is gone around.
/// Throws: BadParams where a coordinate would not be finite.
GXSHAPE_API void gx_walkAround(const std::vector<gxVector<2>>& ring, double distance,
                               const gxOffsetForm& form, const gx_ArcDirections& arcs, bool ends,
                               std::vector<std::vector<gxVector<2>>>& walks);
