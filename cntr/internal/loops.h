/// The clean-up of a walked outline into a single loop.
#pragma once

#include <cntr/export.h>
#include <cntr/region.h>

#include <vector>

/// Cuts every loop at each point that it passes twice (within 1e-6), until none does.  The part
/// from the first pass up to the second keeps the loop's place and is scanned again from its first
/// vertex; the part from the second pass on is appended and scanned in its turn.
///  - a part of one point is dropped, and the other keeps the place; where both are one point, the
///    loop is removed, unless it is the only one, which then stays as it is
GXSHAPE_API void gx_cutAtPinchPoints(std::vector<gxRegion>& loops);

/// Removes every loop whose test point, half way from its first point to its second, lies inside
/// another loop.  The last loop takes the place of a removed one, and the scan starts again.
GXSHAPE_API void gx_dropInnerLoops(std::vector<gxRegion>& loops);

/// Joins two loops that share a vertex (within 1e-6) into one that walks around the first and then
/// around the second.  The joined loop takes the place of the first, the last loop that of the
/// second, and the scan starts again.
GXSHAPE_API void gx_joinTouchingLoops(std::vector<gxRegion>& loops);
