// The model of the contour: construction, copying, comparison, setters, and the one place where
// everything remembered is dropped.
//
// All data lie in one struct, so a copy is the copy of that struct and an assignment is a copy and
// a swap: the old state dies last, because the source may belong to it.
//
// A remembered result holds for the points and for the closedness under which it was computed, and
// the two sides of a copy need not agree on the latter: a region is always closed, whatever flag its
// contour part carries.  Where they disagree the copy starts with an empty memory.
//
// Moving.  Either side may be more than a contour and has to follow.  The target is asked first; where it
// cannot, both get back what they had.  Then the source, which has no points left to follow: what it
// throws all the same is not heard, because by then the target has changed and cannot go back without a
// loss.  The idea that failed was a move that never throws: where the target could not follow, nothing
// was moved, and nobody was told.
#include <cntr/contour.h>
#include <cntr/internal/outline/tolerances.h>
#include <cntr/region.h>
#include <velstd/real_eq.h>

#include <type_traits>
#include <utility>

namespace {

bool endsCoincide(const std::vector<gxVector<2>>& points) {
  return points.empty() || gfRealEq(points.front(), points.back(), gx_kCoincide);
}

}  // namespace

gxContour::gxContour() = default;

gxContour::gxContour(const std::vector<gxVector<2>>& points, bool closed, unsigned long label) {
  state_.label = label;
  state_.closed = closed;
  state_.points = points;
}

gxContour::gxContour(std::vector<gxVector<2>>&& points, bool closed, unsigned long label) {
  state_.label = label;
  state_.closed = closed;
  state_.points = std::move(points);
}

gxContour::gxContour(const gxPolygon& polygon, unsigned long label)
    : gxContour(polygon.vertices(), endsCoincide(polygon.vertices()), label) {}

gxContour::gxContour(const gxContour& other)
    : gxPersistent(other), gxRepBase(other), state_(other.state_) {
  if (other.isClosed() != state_.closed) state_.memory.drop();
}

gxContour::gxContour(gxContour&& other) noexcept : gxPersistent(other), gxRepBase(other) {
  static_assert(std::is_nothrow_move_constructible_v<State> && std::is_nothrow_move_assignable_v<State>);
  const bool closed = other.isClosed();
  state_ = std::exchange(other.state_, State());
  if (closed != state_.closed) state_.memory.drop();
  other.followEmptied_();
}

// The destructor stands in ch_core/registration.cpp, which says why.

gxContour& gxContour::operator=(const gxContour& other) {
  if (this == &other) return *this;
  State old(other.state_);
  std::swap(state_, old);
  if (other.isClosed() != isClosed()) state_.memory.drop();
  try {
    contourAssigned_();
  } catch (...) {
    std::swap(state_, old);
    throw;
  }
  return *this;
}

// NOLINTNEXTLINE(performance-noexcept-move-constructor): it throws where an object cannot follow
gxContour& gxContour::operator=(gxContour&& other) {
  if (this == &other) return *this;
  const bool closed = other.isClosed();
  State old = std::exchange(state_, std::exchange(other.state_, State()));
  if (closed != isClosed()) state_.memory.drop();
  try {
    contourAssigned_();
  } catch (...) {
    other.state_ = std::exchange(state_, std::move(old));
    throw;
  }
  other.followEmptied_();
  return *this;
}

// An object that is more than a contour follows the loss of its points.
void gxContour::followEmptied_() noexcept {
  try {
    contourAssigned_();
  } catch (...) {  // see above
  }
}

// Once the copy is made nothing is asked of the source any more, which what is dropped may own.
void gxContour::assignContour_(const gxContour& other) {
  if (this == &other) return;
  State copy(other.state_);
  const bool closed = other.isClosed();
  state_ = std::move(copy);
  if (closed != isClosed()) state_.memory.drop();
}

void gxContour::assignContour_(gxContour&& other) noexcept {
  if (this == &other) return;
  const bool closed = other.isClosed();
  const State old = std::exchange(state_, std::exchange(other.state_, State()));
  if (closed != isClosed()) state_.memory.drop();
}

void gxContour::swapContour_(gxContour& other) noexcept {
  const bool closed = isClosed();
  const bool otherClosed = other.isClosed();
  std::swap(state_, other.state_);
  if (isClosed() != otherClosed) state_.memory.drop();
  if (other.isClosed() != closed) other.state_.memory.drop();
}

void gxContour::contourAssigned_() {}

bool gxContour::operator==(const gxContour& other) const {
  return isClosed() == other.isClosed() && state_.points == other.state_.points &&
         state_.cachedVectorSize == other.state_.cachedVectorSize;
}

void gxContour::points(const std::vector<gxVector<2>>& points) {
  std::vector<gxVector<2>> old(points);  // a copy first: the argument may be our own list
  cleanCacheInfo();
  state_.points.swap(old);
  try {
    makeDataConsistentWithPoints();
  } catch (...) {
    state_.points.swap(old);
    state_.memory.drop();
    throw;
  }
}

void gxContour::setPoints(const std::vector<gxVector<2>>& points) {
  std::vector<gxVector<2>> copy(points);
  cleanCacheInfo();
  state_.points.swap(copy);
}

bool gxContour::isClosed() const {
  return state_.closed;
}

void gxContour::isClosed(bool closed) {
  state_.closed = closed;
  cleanCacheInfo();
}

void gxContour::label(unsigned long label) {
  state_.label = label;
  mutating_();
}

void gxContour::cachedVectorSize(long size) {
  if (size < 0) throw gxContourDefs::BadParams();
  state_.cachedVectorSize = size;
  mutating_();
}

void gxContour::reInit() {
  *this = gxContour();
  mutating_();
}

void gxContour::makeDataConsistentWithPoints() {
  cleanCacheInfo();
}

void gxContour::makePointsConsistentWithData() {
  cleanCacheInfo();
}

void gxContour::cleanCacheInfo() {
  mutating_();
  state_.memory.drop();
}

void gxContour::checkEmptyContour() const {
  if (state_.points.size() < 2) throw gxContourDefs::EmptyContour();
}
