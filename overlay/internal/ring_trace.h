/// The rings around the faces that are kept, and their order as regions with holes.
#pragma once

#include <cntr/export.h>
#include <overlay/internal/graph.h>
#include <overlay/internal/winding.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// Where a vertex of a result comes from: a point of the edge set, or a node of the graph.
struct gx_VertexOrigin {
  std::uint32_t number = 0;
  bool isNode = false;
};

/// A simple ring of a result.  Its first vertex is the one that comes first by x, then y.
struct gx_ResultRing {
  std::vector<gxVector<2>> points;
  std::vector<gx_VertexOrigin> origins;  ///< one for each point, where they were asked for
};

/// An outline, counter-clockwise, with its holes, clockwise, in the order of their vertices.
struct gx_ResultRegion {
  gx_ResultRing outline;
  std::vector<gx_ResultRing> holes;
};

/// What is kept of an arrangement: the faces whose label has a true entry in `labels`.
struct gx_Keep {
  bool labels[4] = {false, true, false, false};
  bool holds(unsigned char label) const { return labels[label & 3U]; }
};

/// Returns the regions that the kept faces make, in the order of their outlines' vertices: the interior of
/// each connected, no ring passing a vertex twice, rings touching each other in single vertices at most.
/// A node at which the border goes straight on is left out, unless it is a vertex of the ring that the
/// border follows there.
///  - `withOrigins`: the results tell where their vertices come from
GXSHAPE_API std::vector<gx_ResultRegion> gx_traceRegions(const gx_Graph& graph,
                                                         const gx_FaceLabels& labels,
                                                         const gx_Keep& keep, bool withOrigins = false);

/// Sorts rings to regions: outlines (counter-clockwise) and the holes that belong to them by the place of
/// both.  Rings are simple, do not cross, and every hole lies in an outline.
GXSHAPE_API std::vector<gx_ResultRegion> gx_inOrder(std::vector<gx_ResultRegion> regions);
