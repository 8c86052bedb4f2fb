/// The points of a set's outlines, for gauges that look at outer points only.
#pragma once

#include <cntr/export.h>
#include <cntr/regionst.h>
#include <velstd/vector.h>

#include <vector>

/// Returns the points of all outlines, one after the other; holes have no part in them.
/// Throws: gxBadPointer for a null handle.
GXSHAPE_API std::vector<gxVector<2>> gx_outlinePoints(const gxRegionSet& set);
