// Shapes of some 10 units around (0, 0), from a handful of points, which are scanned, to a thousand, which
// are indexed.

#include "subjects.h"

#include <ch_core/cntrtmpl.h>
#include <cntr/contour.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <velstd/xform_base.h>

#include <cmath>

namespace threads_test {
namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Hole = gxPtrHandle_const<gxRegion>;
using EdgeRegion = gxRegionT<gxEdgelet>;
using EdgeHole = gxPtrHandle_const<EdgeRegion>;

Points wavy(int n, double radius, const V& centre = V(0, 0)) {
  Points points;
  for (int i = 0; i < n; ++i) {
    const double angle = 6.283185307179586 * i / n;
    const double r = radius * (1.0 + 0.125 * std::cos(5 * angle));
    points.emplace_back(centre.x() + r * std::cos(angle), centre.y() + r * std::sin(angle));
  }
  return points;
}

// Goes around twice, and crosses itself many times.
Points tangled(int n) {
  Points points;
  for (int i = 0; i < n; ++i) {
    const double angle = 6.283185307179586 * 3 * i / n;
    const double r = 7.0 + 2.5 * std::cos(2.0 * angle / 3.0 + 0.4);
    points.emplace_back(r * std::cos(angle), r * std::sin(angle));
  }
  return points;
}

Hole hole(const Points& points, const std::vector<Hole>& holes = {}) {
  gxPtrHandle<gxRegion> made(new gxRegion(points));
  made->holes(holes);
  return made;
}

gxRegion withHoles(int n) {
  gxRegion region(wavy(n, 10));
  region.holes({hole(wavy(7, 1, V(3, 2))), hole(wavy(90, 1.5, V(-3, -2)))});
  return region;
}

gxRegion nested(int n) {
  gxRegion region(wavy(n, 10));
  region.holes({hole(wavy(n, 6), {hole(wavy(n / 2 + 4, 4), {hole(wavy(12, 2))})})});
  return region;
}

std::vector<gxEdgelet> edgePoints(int n, double radius, const V& centre = V(0, 0)) {
  std::vector<gxEdgelet> edges;
  for (const V& point : wavy(n, radius, centre)) {
    edges.emplace_back(point, static_cast<unsigned short>(edges.size() % 1000),
                       gxAngle8(static_cast<unsigned char>(edges.size() % 256)));
  }
  return edges;
}

gxPtrHandle_const<gx2XformBase> world() {
  return gxPtrHandle_const<gx2XformBase>(
      new gx2XformLinear(gxXform<2>(gxMatrix<2>(2, 0.5, 0, 1), V(1, -1))));
}

gxRegionSet setOf(int count, int n) {
  std::vector<Hole> regions;
  for (int i = 0; i < count; ++i) {
    const V centre(5.0 * (i % 7) - 15.0, 5.0 * (i / 7) - 12.5);
    std::vector<Hole> holes;
    if (i % 5 == 0) holes.push_back(hole(wavy(6, 0.5, centre)));
    regions.push_back(hole(wavy(n, i % 9 == 4 ? 3.25 : 2.0, centre), holes));
  }
  return gxRegionSet(regions);
}

template <class Shape>
Subject one(Shape shape) {
  return {std::make_shared<const Shape>(std::move(shape))};
}

Subject sharingAHole() {
  const Hole common = hole(wavy(120, 2), {hole(wavy(80, 1))});
  Subject subject;
  for (int i = 0; i < 4; ++i) {
    auto region = std::make_shared<gxRegion>(wavy(40 + 60 * i, 8.0 + i));
    region->holes({common});
    subject.push_back(region);
  }
  return subject;
}

Subject copiesOfOne(bool askedBefore) {
  gxRegion region = nested(100);
  if (askedBefore) {
    region.area(true);
    region.convexHull(region);
    region.inside(V(1, 1), true);
    region.isSelfIntersecting();
  }
  Subject subject;
  for (int i = 0; i < 4; ++i) subject.push_back(std::make_shared<const gxRegion>(region));
  return subject;
}

Subject setsThatShareRegions() {
  const gxRegionSet set = setOf(41, 20);
  Subject subject = one(set);
  subject.push_back(std::make_shared<const gxRegionSet>(set.regions()));
  for (const auto& region : set.regions()) {
    if (subject.size() < 5) subject.push_back(std::make_shared<const gxRegion>(*region));
  }
  return subject;
}

EdgeRegion edgeRegion(int n) {
  EdgeRegion region(edgePoints(n, 10), world());
  region.holes({EdgeHole(new EdgeRegion(edgePoints(9, 1.5), world()))});
  return region;
}

gxRegionSetT<gxEdgelet> edgeSet() {
  std::vector<EdgeHole> regions;
  for (int i = 0; i < 6; ++i) {
    regions.push_back(EdgeHole(new EdgeRegion(edgePoints(30, 2, V(4.0 * i, i)), world())));
  }
  return gxRegionSetT<gxEdgelet>(regions);
}

// A region whose hole has too few points for most questions.
gxRegion throwing() {
  gxRegion region(wavy(20, 10));
  region.holes({hole(Points{V(1, 1)})});
  return region;
}

}  // namespace

const std::vector<Kind>& kinds() {
  static const std::vector<Kind> all = {
      {"NoPoints", [] { return one(gxRegion()); }},
      {"TwoPoints",
       [] {
         return one(gxRegion(Points{V(0, 0), V(3, 1)}));
       }},
      {"OpenContour", [] { return one(gxContour(wavy(6, 10), false)); }},
      {"Contour30", [] { return one(gxContour(wavy(30, 10))); }},
      {"Contour1000", [] { return one(gxContour(wavy(1000, 10))); }},
      {"Region4", [] { return one(gxRegion(wavy(4, 10))); }},
      {"Tangle60", [] { return one(gxRegion(tangled(60))); }},
      {"Tangle300", [] { return one(gxRegion(tangled(300))); }},
      {"RegionWithHoles", [] { return one(withHoles(50)); }},
      {"LargeRegionWithHoles", [] { return one(withHoles(900)); }},
      {"NestedHoles", [] { return one(nested(100)); }},
      {"HoleThatThrows", [] { return one(throwing()); }},
      {"RegionsThatShareAHole", [] { return sharingAHole(); }},
      {"Copies", [] { return copiesOfOne(false); }},
      {"CopiesThatShareAnswers", [] { return copiesOfOne(true); }},
      {"EmptySet", [] { return one(gxRegionSet()); }},
      {"Set5", [] { return one(setOf(5, 30)); }},
      {"Set41", [] { return one(setOf(41, 20)); }},
      {"SetsThatShareRegions", [] { return setsThatShareRegions(); }},
      {"EdgeContour", [] { return one(gxContourT<gxEdgelet>(edgePoints(40, 10), world())); }},
      {"EdgeRegion", [] { return one(edgeRegion(100)); }},
      {"EdgeSet", [] { return one(edgeSet()); }},
  };
  return all;
}

}  // namespace threads_test
