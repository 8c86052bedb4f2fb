// The convex hull the textbook's way.
#pragma once

#include <velstd/vector.h>

#include <vector>

// The corners counterclockwise from the lowest x on, of several the lowest y; without those in line
// with their neighbours.  Points that are not finite are left out.
std::vector<gxVector<2>> gx_plainHull(const std::vector<gxVector<2>>& points);
