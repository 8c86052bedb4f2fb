/// How two rings lie to each other, where one look settles it.
#pragma once

#include <cntr/export.h>
#include <overlay/internal/relation.h>
#include <overlay/limits.h>
#include <velstd/vector.h>

#include <optional>
#include <vector>

/// Returns how the insides of two closed rings, by the even-odd rule, lie to each other, where that can be
/// told without knowing whether the rings cross themselves: an edge of one crosses an edge of the other
/// where no other edge passes, or the rings have no point in common.  Exact; nothing where it takes more
/// than that, and for rings of fewer than 3 points or with a coordinate that is not finite.
/// Throws: gxStopped.
/// Cost: O(n) for boxes, and then little: the first crossing ends the search.
GXSHAPE_API std::optional<gx_Relation> gx_relateTwoRings(const std::vector<gxVector<2>>& a,
                                                         const std::vector<gxVector<2>>& b,
                                                         const gxOverlayLimits& limits);
