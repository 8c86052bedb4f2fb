/// How two shapes lie to each other, from their edges as they are.
#pragma once

#include <cntr/export.h>
#include <overlay/limits.h>
#include <velstd/vector.h>

#include <cstddef>
#include <vector>

/// A shape as its rings: outlines, holes, islands in any order.
struct gx_RelationShape {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  struct Ring {
    const std::vector<gxVector<2>>* points;
    int level;          ///< 0 outlines, 1 holes, 2 islands …
    std::size_t owner;  ///< the ring that this one is a hole of
  };
  std::vector<Ring> rings;
  /// Known to be valid: rings meet in vertices only, and nest as their levels say.
  bool trusted = false;
};

/// What is known of two shapes A and B.
struct gx_Relation {
  bool interiorsMeet = false;  ///< they have area in common
  bool bordersMeet = false;
  bool firstBeyond = false;   ///< A has area outside B
  bool secondBeyond = false;  ///< B has area outside A
  /// The shapes that cannot be asked as they are, as their own rings meet or nest wrongly; then nothing
  /// above counts.
  bool unclean[2] = {false, false};
};

/// Returns how the shapes lie to each other, exactly.
/// Throws: BadParams for a coordinate that is not finite; gxStopped, gxLimitExceeded.
GXSHAPE_API gx_Relation gx_relate(const gx_RelationShape& a, const gx_RelationShape& b,
                                  const gxOverlayLimits& limits);
