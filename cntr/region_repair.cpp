// Regularization and outer hull.
//
// An outline that does not cross itself is copied as it is, holes and all.  Otherwise:
//   1. Find an edge on the outside, by probes 0.01 times the median edge length to either side.
//   2. Walk around the outside from there (internal/repair/outside_walk).
//   3. That is the regularized region, without holes.  For the outer hull, cut the walk at points
//      passed twice, drop inner loops, join touching ones (internal/repair/loops), and keep the first.
// The result is remembered; the flag is set only after the computation returned, and the assignment
// holds a handle of its own to the result, because the target may be this region.
//
// Every question that the walk asks spends steps of the budget, about as many as it costs.
#include <cntr/internal/memory/repaired.h>
#include <cntr/internal/outline/outline.h>
#include <cntr/internal/repair/loops.h>
#include <cntr/internal/repair/outside_walk.h>
#include <cntr/internal/search/crossing.h>
#include <cntr/internal/search/local_crossings.h>
#include <cntr/region.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace {

// Half the length of a probe, in median edge lengths: short against the features of the outline,
// long against rounding.
constexpr double kProbe = 0.01;

// A step of the budget, as what rays have cost is counted: in nanoseconds.
constexpr std::uint64_t kEffortOfAStep = 40;

// Returns the number of hits of a closed outline, or one that is above 2: it is only asked whether there
// are 1 or 2, and in a tangle an edge has as many as there are edges.
std::size_t countHits(const gx_EdgeIndex& index, const gx_Outline& outline,
                      const gx_CrossingQuery& query, gxBudget& budget) {
  std::vector<gx_Hit> hits;
  index.forEachRun([&query](const gx_Box& box) { return query.mayMeet(box); },
                   [&](std::size_t first, std::size_t end) {
                     budget.spend();
                     for (std::size_t k = first; k < end; ++k) {
                       query.test(outline.from(k), outline.to(k), k, hits);
                     }
                     return hits.size() > 2;
                   });
  return hits.size();
}

}  // namespace

void gxRegion::regularize(gxRegion& result) const {
  gxBudget unlimited;
  regularize(result, unlimited);
}

void gxRegion::outerHull(gxRegion& result) const {
  gxBudget unlimited;
  outerHull(result, unlimited);
}

void gxRegion::outerHullRegularize(gxRegion& result, bool hull) const {
  gxBudget unlimited;
  repair_(result, hull, unlimited);
}

void gxRegion::regularize(gxRegion& result, gxBudget& budget) const {
  repairOnce_(result, false, budget);
}

void gxRegion::outerHull(gxRegion& result, gxBudget& budget) const {
  repairOnce_(result, true, budget);
}

void gxRegion::repairOnce_(gxRegion& result, bool hull, gxBudget& budget) const {
  if (!isSelfIntersecting(budget)) {
    result = *this;
    return;
  }
  const gx_SeldomOfRegion& memory = memory_.seldom.made();
  gx_assignRepaired(
      hull ? memory.outerHull : memory.regularized,
      hull ? gx_Computation::eOuterHull : gx_Computation::eRegularize,
      [&](gxRegion& form) { repair_(form, hull, budget); }, [] {}, result);
}

void gxRegion::repair_(gxRegion& result, bool hull, gxBudget& budget) const {
  checkEmptyContour();
  // Of many points, the walk's questions go to the edges nearby, where these give the same answers.
  std::optional<gx_LocalCrossings> local;
  if (indexPays_() && gx_LocalCrossings::covers(edgeIndex_())) {
    local.emplace(edgeIndex_(), outline_(), budget);
  }
  const gx_OutlineQuestions outline{
      [this, &local, &budget](const gxLineSeg& seg, std::size_t along, std::vector<int>& edges) {
        budget.spend();
        return local ? (*local)(seg, along, edges) : gxContour::intersections(seg, edges, false);
      },
      [this, &budget](const gxLineSeg& seg) {
        budget.spend();
        if (!indexPays_()) return gxContour::intersections(seg, true).size();
        const gx_CrossingQuery query(seg, true);
        if (!query.reaches(uprightBox_())) return std::size_t{0};
        return countHits(edgeIndex_(), outline_(), query, budget);
      },
      [this, &budget](const gxVector<2>& point) {
        std::uint64_t effort = 0;
        const long hits = countAlongRay_(point, true, effort);
        budget.spend(effort / kEffortOfAStep + static_cast<std::uint64_t>(hits));
        return hits;
      }};

  const std::size_t start = gx_findStartEdge(points(), kProbe * medianFeatureSize(), outline);
  const std::vector<gxVector<2>> walked = gx_walkOutside(points(), start, outline);
  if (!hull) {
    result = gxRegion(walked);
    return;
  }
  gx_Loops loops({walked}, &budget);
  loops.cutAtPinchPoints();
  loops.dropInnerLoops([](const std::vector<gxVector<2>>& loop) {
    return [region = std::make_shared<const gxRegion>(loop)](const gxVector<2>& point) {
      return region->inside(point, true);
    };
  });
  loops.joinTouchingLoops();
  result = gxRegion(loops.outline(0));
}
