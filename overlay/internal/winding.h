/// The labels of the faces of an arrangement.
#pragma once

#include <cntr/export.h>
#include <overlay/internal/graph.h>
#include <overlay/internal/membership.h>

#include <cstdint>
#include <vector>

/// For every half-edge of a graph, by its position, the label (`gx_Membership::label`) of the face on its
/// left and of that on its right.  Of the half-edges of a bundle all have those beside the bundle.
struct gx_FaceLabels {
  std::vector<unsigned char> left;
  std::vector<unsigned char> right;
};

/// Returns the labels of a graph; `membership` has stepped nowhere, and is left so.
/// Cost: linear in the half-edges; for every component beside others, a search for what covers it.
GXSHAPE_API gx_FaceLabels gx_labelFaces(const gx_Graph& graph, gx_Membership& membership);

/// Returns how often the noded ring goes around the point, which does not lie on it; counter-clockwise
/// positive, 0 for an open chain.
GXSHAPE_API int gx_windingOf(const gx_Noding& noding, std::uint32_t ring, const gxVector<2>& point);
