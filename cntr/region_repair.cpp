// Regularization and outer hull.
//
// An outline that does not cross itself is copied as it is, holes and all.  Otherwise:
//   1. Find an edge on the outside, by probes 0.01 times the median edge length to either side.
//   2. Walk around the outside from there (internal/repair/outside_walk).
//   3. That is the regularized region, without holes.  For the outer hull, cut the walk at points
//      passed twice, drop inner loops, join touching ones (internal/repair/loops), and keep the first.
// The result is remembered; the flag is set only after the computation returned, and the assignment
// holds a handle of its own to the result, because the target may be this region.
#include <cntr/internal/memory/probe.h>
#include <cntr/internal/outline/edge_walk.h>
#include <cntr/internal/repair/loops.h>
#include <cntr/internal/repair/outside_walk.h>
#include <cntr/internal/search/crossing.h>
#include <cntr/internal/search/local_crossings.h>
#include <cntr/region.h>

#include <memory>
#include <optional>
#include <vector>

namespace {

// Half the length of a probe, in median edge lengths: short against the features of the outline,
// long against rounding.
constexpr double kProbe = 0.01;

// Returns the number of hits of a closed outline, or one that is above 2: it is only asked whether there
// are 1 or 2, and in a tangle an edge has as many as there are edges.
std::size_t countHits(const gx_EdgeIndex& index, const std::vector<gxVector<2>>& points,
                      const gx_CrossingQuery& query) {
  std::vector<gx_Hit> hits;
  index.forEachRun([&query](const gx_Box& box) { return query.mayMeet(box); },
                   [&](std::size_t first, std::size_t end) {
                     for (std::size_t k = first; k < end; ++k) {
                       query.test(points[gx_edgeStart(k, points.size(), true)], points[k], k, hits);
                     }
                     return hits.size() > 2;
                   });
  return hits.size();
}

}  // namespace

void gxRegion::regularize(gxRegion& result) const {
  if (!isSelfIntersecting()) {
    result = *this;
    return;
  }
  gxPtrHandle_const<gxRegion> known;  // of our own, because `result` may own or be this one
  if (const auto* published = memory_.regularized.get()) {
    known = *published;
  } else {
    gx_countComputation(gx_Computation::eRegularize);
    const auto made = gfMakeHandle<gxRegion>();
    outerHullRegularize(*made, false);
    memory_.regularized.publish(made);
    known = made;
  }
  result = *known;
}

void gxRegion::outerHull(gxRegion& result) const {
  if (!isSelfIntersecting()) {
    result = *this;
    return;
  }
  gxPtrHandle_const<gxRegion> known;  // of our own, because `result` may own or be this one
  if (const auto* published = memory_.outerHull.get()) {
    known = *published;
  } else {
    gx_countComputation(gx_Computation::eOuterHull);
    const auto made = gfMakeHandle<gxRegion>();
    outerHullRegularize(*made, true);
    memory_.outerHull.publish(made);
    known = made;
  }
  result = *known;
}

void gxRegion::outerHullRegularize(gxRegion& result, bool hull) const {
  checkEmptyContour();
  // Of many points, the walk's questions go to the edges nearby, where these give the same answers.
  std::optional<gx_LocalCrossings> local;
  if (indexPays_() && gx_LocalCrossings::covers(edgeIndex_())) local.emplace(edgeIndex_(), points());
  const gx_OutlineQuestions outline{
      [this, &local](const gxLineSeg& seg, std::size_t along, std::vector<int>& edges) {
        return local ? (*local)(seg, along, edges) : gxContour::intersections(seg, edges, false);
      },
      [this](const gxLineSeg& seg) {
        if (!indexPays_()) return gxContour::intersections(seg, true).size();
        const gx_CrossingQuery query(seg, true);
        if (!query.reaches(uprightBox_())) return std::size_t{0};
        return countHits(edgeIndex_(), points(), query);
      },
      [this](const gxVector<2>& point) { return insideCount(point, true); }};

  const std::size_t start = gx_findStartEdge(points(), kProbe * medianFeatureSize(), outline);
  const std::vector<gxVector<2>> walked = gx_walkOutside(points(), start, outline);
  if (!hull) {
    result = gxRegion(walked);
    return;
  }
  gx_Loops loops({walked});
  loops.cutAtPinchPoints();
  loops.dropInnerLoops([](const std::vector<gxVector<2>>& loop) {
    return [region = std::make_shared<const gxRegion>(loop)](const gxVector<2>& point) {
      return region->inside(point, true);
    };
  });
  loops.joinTouchingLoops();
  result = gxRegion(loops.outline(0));
}
