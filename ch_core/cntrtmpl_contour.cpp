// The model of the edge-point contour: construction, copying, comparison, and keeping the two views
// in step.
//
//   points -> data   the transform's image of the point, magnitude 0, angle 0
//   data -> points   the inverse's image of the position
//
// Each direction builds the whole new list first and swaps it in last, so that a failure half way
// leaves the old one.  The inverse is made when it is first needed.
#include <ch_core/cntrtmpl.h>
#include <velip/pel.h>

#include <type_traits>
#include <utility>

template <class T>
gxContourT<T>::gxContourT() = default;

template <class T>
gxContourT<T>::gxContourT(const std::vector<T>& data) : gxContourT(data, XformHandle()) {}

template <class T>
gxContourT<T>::gxContourT(const std::vector<T>& data, const XformHandle& dataFromPoints) {
  edges_.dataFromPoints =
      dataFromPoints.isNull() ? gxPtrHandle<gx2XformBase>(new gx2XformLinear) : dataFromPoints->clone();
  edges_.data = data;
  gxContourT::makePointsConsistentWithData();
}

template <class T>
gxContourT<T>::gxContourT(const gxContourT& other)
    : gxPersistent(other), gxRepBase(other), gxContour(), edges_(other.edges_) {
  assignContour_(other);
}

template <class T>
gxContourT<T>::gxContourT(gxContourT&& other) noexcept
    : gxPersistent(other), gxRepBase(other), gxContour() {
  static_assert(std::is_nothrow_move_constructible_v<Edges> && std::is_nothrow_move_assignable_v<Edges>);
  assignContour_(std::move(other));
  assignData_(std::move(other));
  other.followDataMoved_();  // the object may be more than a contour
}

template <class T>
gxContourT<T>::~gxContourT() = default;

template <class T>
gxContourT<T>& gxContourT<T>::operator=(const gxContourT& other) {
  if (this == &other) return *this;
  gxContourT copy(other);
  return *this = std::move(copy);
}

// Points and data come together, so that nothing has to be made anew.  What this contour held lives to
// the end, and goes back where a derived class cannot follow.
template <class T>
// NOLINTNEXTLINE(performance-noexcept-move-constructor): it throws where an object cannot follow
gxContourT<T>& gxContourT<T>::operator=(gxContourT&& other) {
  if (this == &other) return *this;
  gxContourT old;
  old.swapBoth_(*this);
  swapBoth_(other);
  try {
    dataAssigned_();
  } catch (...) {
    swapBoth_(other);
    old.swapBoth_(*this);
    throw;
  }
  other.followDataMoved_();
  return *this;
}

template <class T>
void gxContourT<T>::swapBoth_(gxContourT& other) noexcept {
  swapContour_(other);
  std::swap(edges_, other.edges_);
}

template <class T>
void gxContourT<T>::followDataMoved_() noexcept {
  try {
    dataAssigned_();
  } catch (...) {  // as `followEmptied_` of the contour
  }
}

template <class T>
void gxContourT<T>::assignData_(const gxContourT& other) {
  Edges edges(other.edges_);
  std::swap(edges_, edges);
}

template <class T>
void gxContourT<T>::assignData_(gxContourT&& other) noexcept {
  const Edges old = std::exchange(edges_, std::exchange(other.edges_, Edges()));
}

template <class T>
void gxContourT<T>::dataAssigned_() {}

template <class T>
bool gxContourT<T>::operator==(const gxContourT& other) const {
  return points() == other.points() && edges_.dataFromPoints == other.edges_.dataFromPoints;
}

template <class T>
const std::vector<T>& gxContourT<T>::data() const {
  return edges_.data;
}

template <class T>
void gxContourT<T>::data(const std::vector<T>& data) {
  std::vector<T> old(data);
  edges_.data.swap(old);
  try {
    makePointsConsistentWithData();
  } catch (...) {
    edges_.data.swap(old);
    throw;
  }
}

template <class T>
typename gxContourT<T>::XformHandle gxContourT<T>::dataFromPointsXform() const {
  return edges_.dataFromPoints;
}

template <class T>
T gxContourT<T>::datum(const gxVector<2>& point) const {
  return {edges_.dataFromPoints->mapPoint(point), 0, gxAngle8(0)};
}

template <class T>
gxVector<2> gxContourT<T>::point(const T& edgelet) const {
  if (const auto* inverse = edges_.pointsFromData.get()) return (*inverse)->mapPoint(edgelet.position());
  const gxPtrHandle_const<gx2XformBase> inverse = edges_.dataFromPoints->inverseBase();
  edges_.pointsFromData.publish(inverse);
  return inverse->mapPoint(edgelet.position());
}

template <class T>
void gxContourT<T>::convexHullT(gxRegionT<T>& /*hull*/) const {
  throw gxPel::BadWindow();
}

template <class T>
void gxContourT<T>::mapT(const gxXform<2>& /*xform*/, gxContourT& /*result*/) const {
  throw gxPel::BadWindow();
}

template <class T>
void gxContourT<T>::reInit() {
  *this = gxContourT();
  mutating_();
}

template <class T>
std::vector<T> gxContourT<T>::dataOfPoints_() const {
  std::vector<T> data;
  data.reserve(points().size());
  for (const gxVector<2>& point : points()) data.push_back(datum(point));
  return data;
}

template <class T>
void gxContourT<T>::makeDataConsistentWithPoints() {
  cleanCacheInfo();
  std::vector<T> data = dataOfPoints_();
  edges_.data.swap(data);
}

template <class T>
void gxContourT<T>::makePointsConsistentWithData() {
  cleanCacheInfo();
  std::vector<gxVector<2>> points;
  points.reserve(edges_.data.size());
  for (const T& edgelet : edges_.data) points.push_back(point(edgelet));
  setPoints(points);
}

template <class T>
void gxContourT<T>::contourAssigned_() {
  std::vector<T> data = dataOfPoints_();
  edges_.data.swap(data);
}

template class gxContourT<gxEdgelet>;
