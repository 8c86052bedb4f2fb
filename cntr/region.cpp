// The model of the region: construction, copying, comparison, closedness, holes.
//
// The outline is the contour part, which edge-point regions share with their edge-point contour;
// so copying and assigning name its two halves apart, the contour and the rest, and each class
// assigns each half once.
#include <cntr/region.h>

#include <typeinfo>
#include <utility>

gxRegion::gxRegion() = default;

gxRegion::gxRegion(const std::vector<gxVector<2>>& points, gxContourDefs::IntersectionMode mode)
    : gxContour(points, true) {
  applyMode_(mode);
}

gxRegion::gxRegion(std::vector<gxVector<2>>&& points, gxContourDefs::IntersectionMode mode)
    : gxContour(std::move(points), true) {
  applyMode_(mode);
}

gxRegion::gxRegion(const gxContour& contour, gxContourDefs::IntersectionMode mode) : gxContour(contour) {
  gxRegion::cleanCacheInfo();  // what the contour remembered may hold for an open one
  applyMode_(mode);
}

gxRegion::gxRegion(const gxPolygon& polygon, gxContourDefs::IntersectionMode mode) : gxContour(polygon) {
  applyMode_(mode);
}

gxRegion::gxRegion(const gxRegion& other) : gxPersistent(other), gxRepBase(other), gxContour() {
  assignContour_(other);
  assignRegion_(other);
}

gxRegion::gxRegion(gxRegion&& other) noexcept : gxPersistent(other), gxRepBase(other), gxContour() {
  assignContour_(std::move(other));
  assignRegion_(std::move(other));
  other.followEmptied_();  // the object may be more than a region, and is without points now
}

gxRegion::~gxRegion() = default;

gxRegion& gxRegion::operator=(const gxRegion& other) {
  if (this == &other) return *this;
  if (typeid(*this) == typeid(gxRegion)) {  // no derived class has to follow, and could fail to
    std::vector<HoleHandle> holes(other.holes_);
    gx_RegionMemory memory(other.memory_);
    assignContour_(other);  // from here on the source may be gone with what this region held
    holes_.swap(holes);
    memory_ = std::move(memory);
    return *this;
  }
  gxRegion copy(other);
  takeOver_(copy);
  return *this;
}

// NOLINTNEXTLINE(performance-noexcept-move-constructor): it throws where an object cannot follow
gxRegion& gxRegion::operator=(gxRegion&& other) {
  if (this != &other) takeOver_(other);
  return *this;
}

// Takes outline, holes and memory of `source`, which is left empty.  What this region held may own
// the source, so it stays alive to the end; where a derived class cannot follow, all is put back.
void gxRegion::takeOver_(gxRegion& source) {
  gxRegion old;
  old.swapContour_(*this);
  swapContour_(source);
  try {
    contourAssigned_();
  } catch (...) {
    swapContour_(source);
    old.swapContour_(*this);
    throw;
  }
  old.assignRegion_(std::move(*this));
  assignRegion_(std::move(source));
  source.followEmptied_();  // as in the constructor
}

void gxRegion::assignRegion_(const gxRegion& other) {
  std::vector<HoleHandle> holes(other.holes_);
  gx_RegionMemory memory(other.memory_);
  holes_.swap(holes);
  std::swap(memory_, memory);
}

void gxRegion::assignRegion_(gxRegion&& other) noexcept {
  std::vector<HoleHandle> holes = std::exchange(other.holes_, {});
  gx_RegionMemory memory = std::exchange(other.memory_, {});
  holes_.swap(holes);
  std::swap(memory_, memory);
}

void gxRegion::applyMode_(gxContourDefs::IntersectionMode mode) {
  if (mode == gxContourDefs::eOuterHull) outerHull(*this);
  if (mode == gxContourDefs::eRegularize) regularize(*this);
}

bool gxRegion::operator==(const gxRegion& other) const {
  return gxContour::operator==(other);
}

bool gxRegion::isClosed() const {
  return true;
}

void gxRegion::isClosed(bool closed) {
  if (!closed) throw gxContourDefs::RegionCannotBeSetOpen();
}

void gxRegion::reInit() {
  *this = gxRegion();
  mutating_();
}

void gxRegion::cleanCacheInfo() {
  gxContour::cleanCacheInfo();
  memory_.drop();
}

void gxRegion::contourAssigned_() {
  memory_.drop();
}

void gxRegion::checkEmptyContour() const {
  if (points().size() < 3) throw gxContourDefs::EmptyContour();
}

void gxRegion::checkHoles_(const std::vector<HoleHandle>& holes, gxBudget& budget) const {
  for (const HoleHandle& hole : holes) {
    if (meets_(*hole, budget)) {
      throw gxContourDefs::BadParams(L"holes cannot intersect region");
    }
  }
}

void gxRegion::holes(const std::vector<HoleHandle>& holes) {
  gxBudget unlimited;
  this->holes(holes, unlimited);
}

void gxRegion::holes(const std::vector<HoleHandle>& holes, gxBudget& budget) {
  std::vector<HoleHandle> copy(holes);
  cleanCacheInfo();
  checkHoles_(copy, budget);
  if (typeid(*this) == typeid(gxRegion)) {  // there are no data, and what the check computed stays
    mutating_();
  } else {
    makeDataConsistentWithPoints();
  }
  holes_.swap(copy);
}

void gxRegion::holes(const std::vector<gxPtrHandle<gxRegion>>& holes) {
  this->holes(std::vector<HoleHandle>(holes.begin(), holes.end()));
}

void gxRegion::holes(std::initializer_list<HoleHandle> holes) {
  this->holes(std::vector<HoleHandle>(holes));
}
