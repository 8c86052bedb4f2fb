// The model of the region set: construction, copying, comparison, setters, and the one place where
// everything remembered is dropped.
//
// All data lie in one struct, so a copy is the copy of that struct and an assignment is a copy and a
// swap: the old state dies last, because the source may belong to it.
//
// A change of the regions has two steps that may fail after the list was changed: a derived class
// brings its own view in step, and the mode repairs the set.  Either puts the old list back.
#include <cntr/regionst.h>

#include <type_traits>
#include <utility>

gxRegionSet::gxRegionSet() = default;

gxRegionSet::gxRegionSet(const std::vector<RegionHandle>& regions,
                         gxContourDefs::IntersectionMode mode) {
  state_.regions = regions;
  applyMode_(mode);
}

gxRegionSet::gxRegionSet(const std::vector<gxPtrHandle<gxRegion>>& regions,
                         gxContourDefs::IntersectionMode mode)
    : gxRegionSet(std::vector<RegionHandle>(regions.begin(), regions.end()), mode) {}

gxRegionSet::gxRegionSet(std::initializer_list<RegionHandle> regions,
                         gxContourDefs::IntersectionMode mode)
    : gxRegionSet(std::vector<RegionHandle>(regions), mode) {}

gxRegionSet::gxRegionSet(const gxRegionSet& other) = default;

gxRegionSet::gxRegionSet(gxRegionSet&& other) noexcept : gxPersistent(other), gxRepBase(other) {
  static_assert(std::is_nothrow_move_constructible_v<State> && std::is_nothrow_move_assignable_v<State>);
  state_ = std::exchange(other.state_, State());
  other.followEmptied_();  // the object may be more than a set, and is without regions now
}

gxRegionSet::~gxRegionSet() = default;

gxRegionSet& gxRegionSet::operator=(const gxRegionSet& other) {
  if (this == &other) return *this;
  State old(other.state_);
  std::swap(state_, old);
  try {
    setAssigned_();
  } catch (...) {
    std::swap(state_, old);
    throw;
  }
  return *this;
}

// NOLINTNEXTLINE(performance-noexcept-move-constructor): it throws where an object cannot follow
gxRegionSet& gxRegionSet::operator=(gxRegionSet&& other) {
  if (this == &other) return *this;
  State old = std::exchange(state_, std::exchange(other.state_, State()));
  try {
    setAssigned_();
  } catch (...) {
    other.state_ = std::exchange(state_, std::move(old));
    throw;
  }
  other.followEmptied_();
  return *this;
}

// As a contour follows, and for the same reasons.
void gxRegionSet::followEmptied_() noexcept {
  try {
    setAssigned_();
  } catch (...) {  // the target has changed, and cannot go back without a loss
  }
}

void gxRegionSet::assignSet_(const gxRegionSet& other) {
  if (this == &other) return;
  State old(other.state_);
  std::swap(state_, old);
}

void gxRegionSet::assignSet_(gxRegionSet&& other) noexcept {
  if (this == &other) return;
  const State old = std::exchange(state_, std::exchange(other.state_, State()));
}

void gxRegionSet::setAssigned_() {}

std::function<void()> gxRegionSet::viewKeeper_() {
  return {};
}

bool gxRegionSet::operator==(const gxRegionSet& other) const {
  const std::vector<RegionHandle>& mine = state_.regions;
  const std::vector<RegionHandle>& theirs = other.state_.regions;
  if (mine.size() != theirs.size()) return false;
  for (std::size_t i = 0; i < mine.size(); ++i) {
    const gxRegion& their = *theirs[i];  // examined first
    if (!(*mine[i] == their)) return false;
  }
  return true;
}

void gxRegionSet::regions(const std::vector<RegionHandle>& regions,
                          gxContourDefs::IntersectionMode mode) {
  std::vector<RegionHandle> old(regions);
  cleanCacheInfo();
  state_.regions.swap(old);
  try {
    regionsChanged_(mode);
  } catch (...) {
    state_.regions.swap(old);
    state_.memory.drop();
    throw;
  }
}

void gxRegionSet::regions(const std::vector<gxPtrHandle<gxRegion>>& regions,
                          gxContourDefs::IntersectionMode mode) {
  this->regions(std::vector<RegionHandle>(regions.begin(), regions.end()), mode);
}

void gxRegionSet::regions(std::initializer_list<RegionHandle> regions,
                          gxContourDefs::IntersectionMode mode) {
  this->regions(std::vector<RegionHandle>(regions), mode);
}

void gxRegionSet::add(const RegionHandle& region, gxContourDefs::IntersectionMode mode) {
  cleanCacheInfo();
  state_.regions.push_back(region);
  try {
    regionsChanged_(mode);
  } catch (...) {
    state_.regions.pop_back();
    state_.memory.drop();
    throw;
  }
}

// Brings a derived class's view in step, then applies the mode.  When the mode fails, the view is
// put back; when the view itself fails, it has not changed.
void gxRegionSet::regionsChanged_(gxContourDefs::IntersectionMode mode) {
  if (mode != gxContourDefs::eOuterHull && mode != gxContourDefs::eRegularize) {
    makeDataConsistentWithPoints();
    return;
  }
  const std::function<void()> putViewBack = viewKeeper_();
  makeDataConsistentWithPoints();
  try {
    applyMode_(mode);
  } catch (...) {
    if (putViewBack) putViewBack();
    throw;
  }
}

void gxRegionSet::applyMode_(gxContourDefs::IntersectionMode mode) {
  if (mode == gxContourDefs::eOuterHull) outerHull(*this);
  if (mode == gxContourDefs::eRegularize) regularize(*this);
}

void gxRegionSet::setRegions(const std::vector<RegionHandle>& regions) {
  std::vector<RegionHandle> copy(regions);
  state_.regions.swap(copy);
  state_.memory.index.drop();
}

void gxRegionSet::cachedVectorSize(long size) {
  if (size < 0) throw gxContourDefs::BadParams();
  state_.cachedVectorSize = size;
  mutating_();
}

void gxRegionSet::reInit() {
  *this = gxRegionSet();
  mutating_();
}

void gxRegionSet::makeDataConsistentWithPoints() {}

void gxRegionSet::makePointsConsistentWithData() {}

void gxRegionSet::cleanCacheInfo() {
  mutating_();
  state_.memory.drop();
}

void gxRegionSet::checkEmptyRegionSet() const {
  if (state_.regions.empty()) throw gxContourDefs::EmptyRegionSet();
}
