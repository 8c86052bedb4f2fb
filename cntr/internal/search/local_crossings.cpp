// A segment is asked of all edges whose box touches its own.  Where it lies in the widened box of a
// run of edges, these are among the edges that touch the widened box; a segment that does not goes
// through the index like any other.
//
// Most of the few that are left share an end with the segment: the edge that it lies on, and the next
// one.  Their distance from that end is exactly 0 (gxLineSeg::distToPoint: the foot lies at the start
// or at the end of the edge), so they touch the segment's end and are left out, as are all edges that
// do; for coordinates that are finite nothing else need be known.  A segment from vertex to vertex
// mostly has no other edge in its way, and then its own line is not even computed.
//
// The first test of a crossing query, whether the segment's box touches that of the outline, passes
// for every segment that ends on a vertex.
#include <cntr/internal/outline/break_even.h>
#include <cntr/internal/outline/tolerances.h>
#include <cntr/internal/search/crossing.h>
#include <cntr/internal/search/local_crossings.h>

namespace {

// A crossing lies within 1e-6 of the edge that it is found on, and the walk goes on from there.
constexpr double kReach = 4.0 * gx_kTouch;

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

bool isWithin(const gx_Box& inner, const gx_Box& outer) {
  return inner.lowX >= outer.lowX && inner.lowY >= outer.lowY && inner.highX <= outer.highX &&
         inner.highY <= outer.highY;
}

}  // namespace

bool gx_LocalCrossings::covers(const gx_EdgeIndex& index) {
  return !index.hasNaN() && index.bounds().isWithin(gx_kLargestExact);
}

gx_LocalCrossings::gx_LocalCrossings(const gx_EdgeIndex& index, const gx_Outline& outline,
                                     gxBudget& budget)
    : index_(index), outline_(outline), budget_(budget), run_(kNone) {}

void gx_LocalCrossings::moveTo_(std::size_t run) {
  run_ = run;
  reach_ = index_.box(0, run);
  reach_ = {reach_.lowX - kReach, reach_.lowY - kReach, reach_.highX + kReach, reach_.highY + kReach};
  near_.clear();
  nearBoxes_.clear();
  const auto touches = [this](const gx_Box& box) { return box.meets(reach_); };
  const auto note = [this](std::size_t first, std::size_t end) {
    for (std::size_t k = first; k < end; ++k) {
      gx_Box box;
      box.add(outline_.from(k));
      box.add(outline_.to(k));
      if (!box.meets(reach_)) continue;
      // In a tangle the index, which leaves out what the segment's line passes by, is faster.
      if (near_.size() == gx_kMostNear) return true;
      near_.push_back(k);
      nearBoxes_.push_back(box);
    }
    return false;
  };
  const bool tooMany = index_.forEachRun(touches, note);
  if (tooMany) reach_ = gx_Box();  // no segment lies in it
}

gx_LocalCrossings::Points gx_LocalCrossings::operator()(const gxLineSeg& seg, std::size_t along,
                                                        std::vector<int>& edges) {
  budget_.spend();
  edges.clear();
  gx_Box box;
  box.add(seg.p1());
  box.add(seg.p2());
  const std::size_t run = along / gx_EdgeIndex::kFan;
  if (run != run_ && run < index_.size(0)) moveTo_(run);
  std::vector<gx_Hit> hits;
  if (run != run_ || !isWithin(box, reach_)) {
    gx_findHits(index_, outline_, gx_CrossingQuery(seg, false), hits, budget_);
    return gx_inOrderAlong(seg, hits, edges);
  }
  inTheWay_.clear();
  for (std::size_t i = 0; i < near_.size(); ++i) {
    if (!nearBoxes_[i].meets(box)) continue;
    const std::size_t k = near_[i];
    const gxVector<2>& from = outline_.from(k);
    const gxVector<2>& to = outline_.to(k);
    if (from == seg.p1() || from == seg.p2() || to == seg.p1() || to == seg.p2()) continue;
    inTheWay_.push_back(k);
  }
  if (inTheWay_.empty()) return {};
  const gx_CrossingQuery query(seg, false);
  for (const std::size_t k : inTheWay_) {
    query.test(outline_.from(k), outline_.to(k), k, hits);
  }
  return gx_inOrderAlong(seg, hits, edges);
}
