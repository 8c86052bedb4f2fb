// The model of the edge-point region: construction, copying, comparison, the two lists of holes.
//
// The region part and the edge-point part share one contour.  Copying and assigning name three parts
// apart, the contour, the region's own and the data, and each is copied or moved once.
#include <ch_core/cntrtmpl.h>
#include <velip/pel.h>

#include <utility>

template <class T>
gxRegionT<T>::gxRegionT() = default;

template <class T>
gxRegionT<T>::gxRegionT(const gxContourT<T>& contour, unsigned long label) {
  this->assignContour_(contour);
  this->assignData_(contour);
  this->label(label);
}

template <class T>
gxRegionT<T>::gxRegionT(const std::vector<T>& data, unsigned long label)
    : gxRegionT(gxContourT<T>(data), label) {}

template <class T>
gxRegionT<T>::gxRegionT(const std::vector<T>& data, const XformHandle& dataFromPoints,
                        unsigned long label)
    : gxRegionT(gxContourT<T>(data, dataFromPoints), label) {}

template <class T>
gxRegionT<T>::gxRegionT(const gxRegionT& other)
    : gxPersistent(other),
      gxRepBase(other),
      gxContour(),
      gxRegion(),
      gxContourT<T>(),
      holesT_(other.holesT_) {
  this->assignContour_(other);
  this->assignRegion_(other);
  this->assignData_(other);
}

template <class T>
gxRegionT<T>::gxRegionT(gxRegionT&& other) noexcept
    : gxPersistent(other),
      gxRepBase(other),
      gxContour(),
      gxRegion(),
      gxContourT<T>(),
      holesT_(std::exchange(other.holesT_, {})) {
  this->assignContour_(std::move(other));
  this->assignRegion_(std::move(other));
  this->assignData_(std::move(other));
}

template <class T>
gxRegionT<T>::~gxRegionT() = default;

template <class T>
gxRegionT<T>& gxRegionT<T>::operator=(const gxRegionT& other) {
  if (this == &other) return *this;
  gxRegionT copy(other);
  return *this = std::move(copy);
}

// What this region held may own the source, so it stays alive to the end.
template <class T>
// NOLINTNEXTLINE(performance-noexcept-move-constructor): it throws where an object cannot follow
gxRegionT<T>& gxRegionT<T>::operator=(gxRegionT&& other) {
  if (this == &other) return *this;
  const gxRegionT old(std::move(*this));
  this->assignContour_(std::move(other));
  this->assignRegion_(std::move(other));
  this->assignData_(std::move(other));
  holesT_ = std::exchange(other.holesT_, {});
  return *this;
}

template <class T>
bool gxRegionT<T>::operator==(const gxRegionT& other) const {
  return gxContourT<T>::operator==(other);
}

template <class T>
const std::vector<typename gxRegionT<T>::HoleHandleT>& gxRegionT<T>::holes() const {
  return holesT_;
}

template <class T>
void gxRegionT<T>::holes(const std::vector<HoleHandleT>& holes) {
  std::vector<HoleHandleT> copy(holes);
  holesT_.swap(copy);
  cleanCacheInfo();
}

template <class T>
void gxRegionT<T>::holes(const std::vector<gxPtrHandle<gxRegionT>>& holes) {
  this->holes(std::vector<HoleHandleT>(holes.begin(), holes.end()));
}

template <class T>
void gxRegionT<T>::holes(std::initializer_list<HoleHandleT> holes) {
  this->holes(std::vector<HoleHandleT>(holes));
}

template <class T>
void gxRegionT<T>::holes(const std::vector<HoleHandle>& holes) {
  gxRegion::holes(holes);
}

template <class T>
void gxRegionT<T>::holes(const std::vector<gxPtrHandle<gxRegion>>& holes) {
  gxRegion::holes(holes);
}

template <class T>
void gxRegionT<T>::mapT(const gxXform<2>& /*xform*/, gxRegionT& /*result*/) const {
  throw gxPel::BadWindow();
}

template <class T>
void gxRegionT<T>::regularizeT(gxRegionT& /*result*/) const {
  throw gxPel::BadWindow();
}

template <class T>
void gxRegionT<T>::reInit() {
  *this = gxRegionT();
  this->mutating_();
}

template <class T>
void gxRegionT<T>::makeDataConsistentWithPoints() {
  gxContourT<T>::makeDataConsistentWithPoints();
}

template <class T>
void gxRegionT<T>::makePointsConsistentWithData() {
  gxContourT<T>::makePointsConsistentWithData();
}

template <class T>
void gxRegionT<T>::cleanCacheInfo() {
  gxRegion::cleanCacheInfo();
}

template <class T>
void gxRegionT<T>::contourAssigned_() {
  gxContourT<T>::contourAssigned_();
  gxRegion::contourAssigned_();
}

template <class T>
void gxRegionT<T>::dataAssigned_() {
  gxRegion::contourAssigned_();
}

template class gxRegionT<gxEdgelet>;
