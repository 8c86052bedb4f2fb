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

/// The border of the kept faces: half-edges with a kept face on their left and none on their right, and
/// those, of both directions, that are said to cut.  Positions are the first ones of bundles.
class gx_Border {
 public:
  /// `cuts`, one entry for each position, may be null.
  gx_Border(const gx_Graph& graph, const gx_FaceLabels& labels, const gx_Keep& keep,
            const std::vector<unsigned char>* cuts)
      : graph_(graph), labels_(labels), keep_(keep), cuts_(cuts) {}

  /// Tells whether the half-edge is border in its direction.
  bool holds(std::uint32_t position) const {
    return keep_.holds(labels_.left[position]) &&
           (!keep_.holds(labels_.right[position]) || isCut_(position));
  }
  /// Tells whether it is border in either direction.
  bool isSide(std::uint32_t position) const {
    return keep_.holds(labels_.left[position]) != keep_.holds(labels_.right[position]) ||
           isCut_(position);
  }
  /// Returns the one that a walk leaves by after it came along the one at `position`: the first clockwise from
  /// the way back.
  std::uint32_t next(std::uint32_t position) const {
    const std::uint32_t back = graph_.leaving(position).half ^ 1U;
    const std::uint32_t node = graph_.nodeOf(back);
    std::uint32_t i = graph_.bundleBegin(graph_.positionOf(back));
    do {
      i = graph_.bundleBegin((i == graph_.begin(node) ? graph_.end(node) : i) - 1);
    } while (!holds(i));
    return i;
  }

 private:
  bool isCut_(std::uint32_t position) const { return cuts_ != nullptr && (*cuts_)[position] != 0; }

  const gx_Graph& graph_;
  const gx_FaceLabels& labels_;
  gx_Keep keep_;
  const std::vector<unsigned char>* cuts_;
};

/// Returns the regions that the kept faces make, in the order of their outlines' vertices: the interior of
/// each connected, no ring passing a vertex twice, rings touching each other in single vertices at most.
/// A node at which the border goes straight on is left out, unless it is a vertex of the ring that the
/// border follows there.
///  - `withOrigins`: the results tell where their vertices come from
///  - `cuts`: half-edges along which faces are parted too (see `gx_Border`)
GXSHAPE_API std::vector<gx_ResultRegion> gx_traceRegions(
    const gx_Graph& graph, const gx_FaceLabels& labels, const gx_Keep& keep, bool withOrigins = false,
    const std::vector<unsigned char>* cuts = nullptr);
