/// Edge points: what an edge detector reports.
#pragma once

#include <velip/angle8.h>
#include <velip/export.h>
#include <velstd/vector.h>

#include <cstddef>
#include <vector>

class gxArchive;
template <class T>
struct gx_LeastEncodedSize;

/// An edge point: a position, the edge's magnitude there and the direction of its gradient.
/// The default is at (0, 0) with magnitude 0 and angle 0.
class VELIP_API gxEdgelet {
 public:
  constexpr gxEdgelet() = default;
  /// Makes an edge point of its three parts.
  constexpr gxEdgelet(const gxVector<2>& position, unsigned short magnitude, const gxAngle8& angle)
      : position_(position), magnitude_(magnitude), angle_(angle) {}

  /// Return the three parts.
  constexpr gxVector<2> position() const { return position_; }
  constexpr unsigned short magnitude() const { return magnitude_; }
  constexpr gxAngle8 angle() const { return angle_; }

  /// Is true when position, magnitude and angle are equal, exactly.
  friend constexpr bool operator==(const gxEdgelet&, const gxEdgelet&) = default;

 private:
  gxVector<2> position_;
  unsigned short magnitude_ = 0;
  gxAngle8 angle_;
};

/// Stores or loads an edge point: position, magnitude, angle.
VELIP_API gxArchive& operator||(gxArchive& archive, gxEdgelet& edgelet);
/// Stores or loads a sequence of edge points.
VELIP_API gxArchive& operator||(gxArchive& archive, std::vector<gxEdgelet>& edgelets);

template <>
struct gx_LeastEncodedSize<gxEdgelet> {
  static constexpr std::size_t value = 19;
};
