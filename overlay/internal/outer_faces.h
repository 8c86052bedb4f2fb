/// What cannot be reached from infinity.
#pragma once

#include <cntr/export.h>
#include <overlay/internal/ring_trace.h>

#include <vector>

/// Returns the regions, without holes, that cannot be reached from infinity without crossing an arc of the
/// graph, in their order; and in `labels` 1 for the faces that are bounded, as far as their own component
/// goes, 0 for the others.
GXSHAPE_API std::vector<gx_ResultRegion> gx_outerRegions(const gx_Graph& graph, gx_FaceLabels& labels);
