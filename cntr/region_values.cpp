// Holes given as values, and results as values.
//
// Mapping and unsharing build the region anew together with the holes that it reaches:
//   1. Walk down the holes with a stack of our own, since they may nest ten thousand deep.
//   2. A region whose holes are all built is built itself, from its new outline and those holes.
//   3. What was built is kept by the address of its source, so that a hole of several regions is built
//      once and shared as before.  A region that comes up among its own holes is a cycle.
#include <cntr/region.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace {

using Points = std::vector<gxVector<2>>;
using HoleHandle = gxRegion::HoleHandle;

std::vector<HoleHandle> handlesOf(const std::vector<gxRegion>& regions) {
  std::vector<HoleHandle> handles;
  handles.reserve(regions.size());
  for (const gxRegion& region : regions) handles.push_back(gfMakeHandle<gxRegion>(region));
  return handles;
}

std::vector<HoleHandle> handlesOf(const std::vector<Points>& outlines) {
  std::vector<HoleHandle> handles;
  handles.reserve(outlines.size());
  for (const Points& outline : outlines) handles.push_back(gfMakeHandle<gxRegion>(outline));
  return handles;
}

Points mappedPoints(const Points& points, const gxXform<2>& xform) {
  Points mapped(points.size());
  std::transform(points.begin(), points.end(), mapped.begin(),
                 [&xform](const gxVector<2>& p) { return xform * p; });
  return mapped;
}

// A region being built, and the holes that it has so far.
struct Unfinished {
  const gxRegion* source;
  std::vector<HoleHandle> holes;
};

}  // namespace

gxRegion::gxRegion(const Points& outline, const std::vector<Points>& holes)
    : gxContour(outline, true, 0) {
  setPoints(outline);
  this->holes(handlesOf(holes));
}

void gxRegion::holes(const std::vector<gxRegion>& holes) {
  this->holes(handlesOf(holes));
}

void gxRegion::addHole(const gxRegion& hole) {
  std::vector<HoleHandle> all(holes_);
  all.push_back(gfMakeHandle<gxRegion>(hole));
  holes(all);
}

void gxRegion::addHole(const Points& outline) {
  addHole(gxRegion(outline));
}

gxRegion gxRegion::regularized() const {
  gxRegion result;
  regularize(result);
  return result;
}

gxRegion gxRegion::outerHull() const {
  gxRegion result;
  outerHull(result);
  return result;
}

// ---- Building anew ------------------------------------------------------------------------------

template <class Outline>
gxRegion gxRegion::rebuilt_(const Outline& outline) const {
  std::unordered_map<const gxRegion*, HoleHandle> built;  // null while it is being built
  std::vector<Unfinished> path{{this, {}}};
  built.emplace(this, nullptr);
  for (;;) {
    const gxRegion& source = *path.back().source;
    std::vector<HoleHandle>& holes = path.back().holes;
    if (holes.size() < source.holes_.size()) {
      const gxRegion& hole = *source.holes_[holes.size()];
      const auto [known, isNew] = built.emplace(&hole, nullptr);
      if (isNew) {
        path.push_back({&hole, {}});
      } else if (known->second.isNull()) {
        throw gxContourDefs::BadParams(L"holes nest too deeply");
      } else {
        holes.push_back(known->second);
      }
      continue;
    }
    gxPtrHandle<gxRegion> made = gfMakeHandle<gxRegion>(outline(source.points()));
    made->label(source.label());
    made->cachedVectorSize(source.cachedVectorSize());
    made->holes_ = std::move(holes);
    path.pop_back();
    if (path.empty()) return std::move(*made);
    built[&source] = made;
  }
}

gxRegion gxRegion::mapped(const gxXform<2>& xform) const {
  return rebuilt_([&xform](const Points& points) { return mappedPoints(points, xform); });
}

gxRegion gxRegion::unshared() const {
  return rebuilt_([](const Points& points) { return points; });
}
