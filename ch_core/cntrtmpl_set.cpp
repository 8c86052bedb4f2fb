// The model of the edge-point region set: construction, copying, and keeping the two lists in step.
//
//   edge-point regions -> regions   the very same objects
//   regions -> edge-point regions   new objects with the same points; these have no transform, so
//                                   points they cannot take, and the call fails
//
// The second direction is what the setters of the region set run into: an edge-point set is meant to
// be filled with edge-point regions, by its constructors.
#include <ch_core/cntrtmpl.h>
#include <velip/pel.h>

#include <utility>

template <class T>
gxRegionSetT<T>::gxRegionSetT() = default;

template <class T>
gxRegionSetT<T>::gxRegionSetT(const std::vector<RegionHandleT>& regions) : regionsT_(regions) {
  gxRegionSetT::makePointsConsistentWithData();
}

template <class T>
gxRegionSetT<T>::gxRegionSetT(const std::vector<gxPtrHandle<gxRegionT<T>>>& regions)
    : gxRegionSetT(std::vector<RegionHandleT>(regions.begin(), regions.end())) {}

template <class T>
gxRegionSetT<T>::gxRegionSetT(std::initializer_list<RegionHandleT> regions)
    : gxRegionSetT(std::vector<RegionHandleT>(regions)) {}

template <class T>
gxRegionSetT<T>::gxRegionSetT(const gxRegionSetT& other)
    : gxPersistent(other), gxRepBase(other), gxRegionSet(other), regionsT_(other.regionsT_) {}

template <class T>
gxRegionSetT<T>::gxRegionSetT(gxRegionSetT&& other) noexcept
    : gxPersistent(other), gxRepBase(other), regionsT_(std::exchange(other.regionsT_, {})) {
  assignSet_(std::move(other));
}

template <class T>
gxRegionSetT<T>::~gxRegionSetT() = default;

template <class T>
gxRegionSetT<T>& gxRegionSetT<T>::operator=(const gxRegionSetT& other) {
  if (this == &other) return *this;
  gxRegionSetT copy(other);
  return *this = std::move(copy);
}

// What this set held may own the source, so it stays alive to the end.
template <class T>
// NOLINTNEXTLINE(performance-noexcept-move-constructor): it throws where an object cannot follow
gxRegionSetT<T>& gxRegionSetT<T>::operator=(gxRegionSetT&& other) {
  if (this == &other) return *this;
  const gxRegionSetT old(std::move(*this));
  assignSet_(std::move(other));
  regionsT_ = std::exchange(other.regionsT_, {});
  return *this;
}

template <class T>
bool gxRegionSetT<T>::operator==(const gxRegionSetT& other) const {
  return gxRegionSet::operator==(other);
}

template <class T>
std::vector<typename gxRegionSetT<T>::RegionHandleT> gxRegionSetT<T>::regionsT() const {
  return regionsT_;
}

template <class T>
void gxRegionSetT<T>::mapT(const gxXform<2>& /*xform*/, gxRegionSetT& /*result*/) const {
  throw gxPel::BadWindow();
}

template <class T>
void gxRegionSetT<T>::regularizeT(gxRegionSetT& /*result*/) const {
  throw gxPel::BadWindow();
}

template <class T>
void gxRegionSetT<T>::reInit() {
  *this = gxRegionSetT();
  mutating_();
}

namespace {

template <class T>
gxPtrHandle_const<gxRegionT<T>> withPointsOf(const gxRegion& region) {
  const gxPtrHandle<gxRegionT<T>> made(new gxRegionT<T>);
  made->points(region.points());
  return made;
}

}  // namespace

template <class T>
void gxRegionSetT<T>::makeDataConsistentWithPoints() {
  cleanCacheInfo();
  const std::vector<RegionHandle> plain = regions();
  std::vector<RegionHandleT> typed;
  typed.reserve(plain.size());
  for (const RegionHandle& region : plain) typed.push_back(withPointsOf<T>(*region));
  regionsT_.swap(typed);
}

template <class T>
void gxRegionSetT<T>::makePointsConsistentWithData() {
  cleanCacheInfo();
  setRegions(std::vector<RegionHandle>(regionsT_.begin(), regionsT_.end()));
}

template <class T>
void gxRegionSetT<T>::cleanCacheInfo() {
  gxRegionSet::cleanCacheInfo();
}

// A null handle can stand in both lists, as the constructors let it.
template <class T>
void gxRegionSetT<T>::setAssigned_() {
  const std::vector<RegionHandle> plain = regions();
  std::vector<RegionHandleT> typed;
  typed.reserve(plain.size());
  for (const RegionHandle& region : plain) {
    const RegionHandleT same(dynamic_cast<const gxRegionT<T>*>(region.get()));
    typed.push_back(region.isNull() || !same.isNull() ? same : withPointsOf<T>(*region));
  }
  regionsT_.swap(typed);
}

template <class T>
std::function<void()> gxRegionSetT<T>::viewKeeper_() {
  return [this, kept = regionsT_]() mutable { regionsT_.swap(kept); };
}

template class gxRegionSetT<gxEdgelet>;
