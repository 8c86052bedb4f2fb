/// The rings of a region or a set as the check sees them.
#pragma once

#include <cntr/internal/index/edge_index.h>
#include <overlay/internal/shape_rings.h>
#include <velstd/vector.h>

#include <cstddef>
#include <vector>

/// One ring with what the check makes of its points.
struct gx_CheckedRing : gx_ShapeRing {
  std::vector<gxVector<2>> points;    // without repeated ones
  std::vector<std::size_t> original;  // the number of each, which is that of the edge that ends there
  bool usable = false;                // finite, and not all on one line
  gx_Box box;

  std::size_t size() const { return points.size(); }
  std::size_t before(std::size_t i) const { return i == 0 ? points.size() - 1 : i - 1; }
  std::size_t after(std::size_t i) const { return i + 1 == points.size() ? 0 : i + 1; }
  /// Edge i ends at point i.
  const gxVector<2>& from(std::size_t i) const { return points[before(i)]; }
  const gxVector<2>& to(std::size_t i) const { return points[i]; }
};

/// Returns the ring's direction, +1 counter-clockwise: the turn at its lowest leftmost point.  Right for a
/// ring that does not cross itself.
int gx_directionOfRing(const gx_CheckedRing& ring);

/// Answers on which side of a ring points lie, by a ray to the left that is counted edge by edge, exactly.
class gx_RingSides {
 public:
  explicit gx_RingSides(const gx_CheckedRing& ring);

  /// Tells whether another ring, which crosses this one nowhere, lies inside.  Where they touch at every
  /// point of the other, the way its first edge leaves decides.
  bool holds(const gx_CheckedRing& other) const;

 private:
  enum class Side { eInside, eOutside, eBorder };
  Side sideOf_(const gxVector<2>& point, std::size_t& edge) const;

  const gx_CheckedRing& ring_;
  gx_EdgeIndex index_;
};

/// Tells whether the directions from v towards p and towards q are the same.
bool gx_sameDirection(const gxVector<2>& v, const gxVector<2>& p, const gxVector<2>& q);
/// Tells whether the direction from v towards q lies strictly between those towards `from` and `to`,
/// turning counter-clockwise.
bool gx_between(const gxVector<2>& v, const gxVector<2>& from, const gxVector<2>& to,
                const gxVector<2>& q);
