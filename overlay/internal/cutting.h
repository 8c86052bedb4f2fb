/// Open chains in an arrangement: what they cut, and into what they are cut.
#pragma once

#include <cntr/export.h>
#include <overlay/internal/ring_trace.h>

#include <cstdint>
#include <vector>

/// Returns for every position of a half-edge 1 where it belongs to an open chain that cuts kept faces apart,
/// in both directions, else 0: kept on both sides, on the way from border to border or around something.
GXSHAPE_API std::vector<unsigned char> gx_cuts(const gx_Graph& graph, const gx_FaceLabels& labels,
                                               const gx_Keep& keep);

/// A part of an open chain.
struct gx_ChainPart {
  enum Side : unsigned char { eInside, eOutside, eBorder };
  Side side = eOutside;
  std::vector<gxVector<2>> points;
};

/// Returns the parts of an open chain, in its order: between kept faces, between others, on their border.
GXSHAPE_API std::vector<gx_ChainPart> gx_partsOf(const gx_Graph& graph, const gx_FaceLabels& labels,
                                                 const gx_Keep& keep, std::uint32_t ring);
