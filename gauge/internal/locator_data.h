/// What a locator keeps.
#pragma once

#include <cntr/internal/index/box_tree.h>
#include <cntr/internal/index/edge_index.h>
#include <gauge/internal/edge_tree.h>
#include <gauge/internal/frame.h>
#include <gauge/internal/parity_grid.h>
#include <gauge/internal/rings.h>
#include <gauge/locate.h>

#include <memory>
#include <vector>

/// The indexes over one shape, in its scale.
struct gxLocator::Data {
  /// Makes them of rings, whose points are copied.
  explicit Data(const std::vector<gx_Ring>& rings);
  Data(const Data&) = delete;
  Data& operator=(const Data&) = delete;
  ~Data() = default;

  gxVector<2> to(const gxVector<2>& p) const { return scaled ? frame.scaled(p) : p; }
  gxVector<2> from(const gxVector<2>& p) const { return scaled ? frame.unscaled(p) : p; }
  double lengthTo(double d) const { return scaled ? frame.lengthTo(d) : d; }
  double lengthFrom(double d) const { return scaled ? frame.lengthFrom(d) : d; }

  /// The place on an edge, mapped back.
  gxPlace place(const gx_Edge& edge, double t, const gxVector<2>& point) const;
  gxNearest nearestOn(const gx_Edge& edge, const gxVector<2>& p) const;
  /// The edge nearest to a point (in the scale); of equal ones the first.
  std::size_t nearestEdge(const gxVector<2>& p) const;
  /// Tells whether the point lies in the material or on the border of a region, and of which.
  gxLocation locate(const gxVector<2>& p) const;
  /// The same of one region; `eOutside` where it has nothing to do with it.
  gxLocation locateIn(std::size_t region, const gxVector<2>& p) const;

  gxStatus status = gxStatus::eEmpty;
  gx_Frame frame;
  bool scaled = false;
  std::vector<std::vector<gxVector<2>>> points;  // of each ring, in the scale
  std::vector<gx_Ring> rings;                    // they look at these
  std::vector<gx_EdgeIndex> nearestIndex;        // of the ring, where there is one
  gx_EdgeTree tree;
  // A grid for each region; open contours have one too, for their border.
  std::vector<gx_ParityGrid> grids;
  std::vector<gx_Box> regionBoxes;
  std::unique_ptr<gx_BoxTree> regionTree;  // where there are many
  std::vector<std::size_t> firstOfRegion;  // its first edge
};

/// The way in for other gauges.
class gx_LocatorAccess {
 public:
  using Data = gxLocator::Data;
  static const Data& data(const gxLocator& locator) { return *locator.data_; }
};
