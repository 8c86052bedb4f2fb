// One question to bare points, answered by looking at everything once and nothing else.
//
// What plain_scan.h remembers pays for many questions; for a single one it would be made in vain.
#pragma once

#include <velstd/vector.h>

#include <vector>

// The vertex nearest to the point.
gxVector<2> gx_plainNearestVertex(const std::vector<gxVector<2>>& points, const gxVector<2>& point);

// The point of the closed outline nearest to the point.
gxVector<2> gx_plainNearestPoint(const std::vector<gxVector<2>>& points, const gxVector<2>& point);

// The outside of the closed outline, walked around, or the outline itself where it does not cross
// itself.  Throws BadParams where there is no way around.
std::vector<gxVector<2>> gx_plainRegularize(const std::vector<gxVector<2>>& points);
