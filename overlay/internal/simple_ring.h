/// Rings that are right as they are.
#pragma once

#include <cntr/export.h>
#include <overlay/internal/steps.h>
#include <velstd/vector.h>

#include <vector>

/// Tells whether a closed ring meets itself nowhere: all points finite and different, edges without a common point
/// but the ends of neighbours, no fold.  Exact.
///  - fewer than 3 points, all points on one line: false
/// Throws: gxStopped.
/// Cost: that of all pairs of edges whose boxes meet; nothing is kept.
GXSHAPE_API bool gx_isSimpleRing(const std::vector<gxVector<2>>& points, gx_Steps& steps);

/// Brings a simple ring into the form of results: it begins at its first vertex by x, then y, and goes around
/// counter-clockwise.  Returns whether it did so before.
GXSHAPE_API bool gx_putInOrder(std::vector<gxVector<2>>& points);
