// Containment and distance: the regions are asked one after the other, in order, so that the first
// region that fails is the one whose failure is seen.  Nothing is remembered here.
//
// Distance.  A region of many points whose box is farther away than the smallest distance so far
// need not be asked for its own: it cannot be smaller, and such a region cannot fail either (it has
// points enough, and no holes).  Whether it holds the point is asked all the same, where that counts,
// because the question is answered with a box that the region remembers, which may be another's.
#include <cntr/regionst.h>

#include <cmath>
#include <limits>

namespace {

// Tells whether every point of the box is farther away than `limit` for certain.  A distance is
// computed from a foot on an edge that is off by a few units in the last place of the coordinates;
// the slack is several hundred times that.
bool surelyFarther(const gx_Box& box, const gxVector<2>& point, double limit) {
  const double size = std::abs(box.lowX) + std::abs(box.highX) + std::abs(box.lowY) +
                      std::abs(box.highY) + std::abs(point.x()) + std::abs(point.y());
  const double reach = limit + gx_EdgeIndex::kSlack * (limit + size);
  const double square = reach * reach;
  return square > gx_EdgeIndex::kSmallestSquare && box.squareFrom(point) > square;
}

}  // namespace

bool gxRegionSet::inside(const gxVector<2>& point, bool considerHoles) const {
  for (const RegionHandle& region : state_.regions) {
    if (region->inside(point, considerHoles)) return true;
  }
  return false;
}

const gx_Box* gxRegionSet::boundsOf_(const gxRegion& region) {
  if (!region.indexPays_() || !region.holes().empty()) return nullptr;
  const gx_EdgeIndex& index = region.edgeIndex_();
  return index.hasNaN() ? nullptr : &index.bounds();
}

double gxRegionSet::distToPoint(const gxVector<2>& point, bool vertexOnly, bool considerHoles,
                                bool insideIsZero) const {
  checkEmptyRegionSet();
  double smallest = std::numeric_limits<double>::infinity();
  for (const RegionHandle& handle : state_.regions) {
    const gxRegion& region = *handle;
    const gx_Box* bounds = boundsOf_(region);
    double distance = 0.0;
    if (bounds == nullptr || !surelyFarther(*bounds, point, smallest)) {
      distance = region.distToPoint(point, vertexOnly, considerHoles, insideIsZero);
    } else if (!insideIsZero || !region.inside(point, considerHoles)) {
      continue;
    }
    if (smallest > distance) smallest = distance;  // never by a NaN
  }
  return smallest;
}
