/// An arrangement of rings, from their points to labelled faces: what all operations begin with.
#pragma once

#include <cntr/export.h>
#include <overlay/internal/edge_set.h>
#include <overlay/internal/graph.h>
#include <overlay/internal/membership.h>
#include <overlay/internal/noding.h>
#include <overlay/internal/ring_trace.h>
#include <overlay/internal/winding.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

/// Rings with their roles, as they go into an arrangement.  Roles are needed for closed rings; an open
/// chain may have any.
struct gx_RingList {
  /// Adds a ring, whose points must stay where they are, and returns its number.
  std::uint32_t add(const std::vector<gxVector<2>>& points, const gx_RingRole& role,
                    bool closed = true) {
    points_.push_back(&points);
    closed_.push_back(closed ? 1 : 0);
    roles.push_back(role);
    return static_cast<std::uint32_t>(points_.size() - 1);
  }
  std::size_t size() const { return points_.size(); }
  const std::vector<gxVector<2>>& points(std::size_t ring) const { return *points_[ring]; }
  bool isClosed(std::size_t ring) const { return closed_[ring] != 0; }

  std::vector<gx_RingRole> roles;

 private:
  std::vector<const std::vector<gxVector<2>>*> points_;
  std::vector<unsigned char> closed_;
};

/// The noded graph of a list of rings with the labels of its faces.
///
/// Where noding in rounds does not come to an end, the rings concerned are put on a grid (snap.h); the edges
/// then are those of the moved rings, and sources tell where their points come from: 2 i for vertex i of a
/// ring as it was given, 2 i + 1 for a point on its edge from vertex i to the next.
class GXSHAPE_API gx_Arrangement {
 public:
  /// Of rings that must outlive this object.
  /// Throws: BadParams for a coordinate that is not finite; gxStopped, gxLimitExceeded.
  gx_Arrangement(const gx_RingList& rings, gx_Steps& steps);
  ~gx_Arrangement();
  gx_Arrangement(const gx_Arrangement&) = delete;
  gx_Arrangement& operator=(const gx_Arrangement&) = delete;

  /// Labels the faces; `operands` is one more than the highest operand of a role.
  gx_FaceLabels label(std::size_t operands, gx_Membership::Question question) const;
  /// Returns the regions of the kept faces (see `gx_traceRegions`).
  std::vector<gx_ResultRegion> regions(const gx_FaceLabels& labels, const gx_Keep& keep,
                                       bool withOrigins = false) const {
    return gx_traceRegions(*graph_, labels, keep, withOrigins);
  }

  const gx_EdgeSet& edges() const { return *edges_; }
  const gx_Noding& noding() const { return *noding_; }
  const gx_Graph& graph() const { return *graph_; }

  /// Returns the number of rounds of the last noding.
  std::uint32_t rounds() const { return noding_->rounds(); }
  /// Returns how many rings were put on a grid, and the largest move of a vertex by that.
  std::size_t snappedRings() const { return snappedRings_; }
  double largestMove() const { return largestMove_; }

 private:
  const gx_RingList& rings_;
  std::unique_ptr<gx_EdgeSet> edges_;
  std::unique_ptr<gx_Noding> noding_;
  std::unique_ptr<gx_Graph> graph_;
  std::size_t snappedRings_ = 0;
  double largestMove_ = 0.0;
};
