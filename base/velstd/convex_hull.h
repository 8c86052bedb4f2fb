/// The convex hull of a set of points.
#pragma once

#include <velstd/export.h>
#include <velstd/vector.h>

#include <vector>

VELSTD_API void gfConvexHull(const std::vector<gxVector<2>>& points, std::vector<gxVector<2>>& hull);
