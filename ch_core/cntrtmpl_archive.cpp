// The records of the edge-point classes.
//
//   contour  the complete record of the contour, the edge points, and the transform, which version 0
//            (only read) did not have: the object that it is loaded into keeps the one it has
//   region   the complete record of the region and nothing else
//   set      the complete record of the set, then the same regions once more as edge-point regions
//
// A region's record holds neither edge points nor a transform nor edge-point holes.  Loading one
// leaves the region without them, whatever it held before: points of one shape and edge points of
// another would be worse than none.  Edge points and points are loaded as they are and not made from
// each other, so that a contour comes back bit by bit; but there must be one for each.  A contour whose
// loading fails half-way is left without edge points.
#include <ch_core/cntrtmpl.h>
#include <cntr/internal/archive/archive_record.h>

namespace {

constexpr unsigned char kContourVersion = 1;
constexpr unsigned char kRegionVersion = 0;
constexpr unsigned char kSetVersion = 0;

[[noreturn]] void refuseUnequal(std::size_t points, std::size_t data) {
  throw gxArchive::BadFormat(L"a contour of " + std::to_wstring(points) + L" points has " +
                             std::to_wstring(data) + L" edge points");
}

}  // namespace

// ---- The contour --------------------------------------------------------------------------------------

template <class T>
gxPersistent* gxContourT<T>::make() {
  return new gxContourT;
}

template <class T>
void gxContourT<T>::dispatchSerialize(gxArchive& archive) {
  gf_DispatchRecord(archive, this, eEdgeletContourLevel, kContourVersion,
                    [&](unsigned char version) { gxContourT::serialize_(archive, version); });
}

template <class T>
void gxContourT<T>::serialize_(gxArchive& archive, unsigned char version) {
  if (version > kContourVersion) kEdgeletContourVersions.raise();
  if (archive.isLoading()) {
    edges_.pointsFromData.drop();
    edges_.data.clear();
  }
  gxContour::dispatchSerialize(archive);
  if (archive.isStoring()) {
    archive || edges_.data;
  } else {
    std::vector<T> data;
    archive || data;
    if (data.size() != points().size()) refuseUnequal(points().size(), data.size());
    edges_.data.swap(data);
  }
  if (version > 0) archive || edges_.dataFromPoints;
}

// ---- The region ---------------------------------------------------------------------------------------

template <class T>
gxPersistent* gxRegionT<T>::make() {
  return new gxRegionT;
}

template <class T>
void gxRegionT<T>::dispatchSerialize(gxArchive& archive) {
  gf_DispatchRecord(archive, this, eEdgeletRegionLevel, kRegionVersion,
                    [&](unsigned char version) { gxRegionT::serialize_(archive, version); });
}

template <class T>
void gxRegionT<T>::serialize_(gxArchive& archive, unsigned char version) {
  if (version != kRegionVersion) kEdgeletRegionVersions.raise();
  if (archive.isLoading()) {
    this->assignData_(gxContourT<T>());
    holesT_.clear();
  }
  gxRegion::dispatchSerialize(archive);
}

// ---- The set ------------------------------------------------------------------------------------------

template <class T>
gxPersistent* gxRegionSetT<T>::make() {
  return new gxRegionSetT;
}

template <class T>
void gxRegionSetT<T>::dispatchSerialize(gxArchive& archive) {
  gf_DispatchRecord(archive, this, eEdgeletRegionSetLevel, kSetVersion,
                    [&](unsigned char version) { gxRegionSetT::serialize_(archive, version); });
}

template <class T>
void gxRegionSetT<T>::serialize_(gxArchive& archive, unsigned char version) {
  if (version != kSetVersion) kEdgeletRegionSetVersions.raise();
  gxRegionSet::dispatchSerialize(archive);
  archive || regionsT_;
}

// The classes as a whole are instantiated where their models are; here only what is defined here.
template gxPersistent* gxContourT<gxEdgelet>::make();
template void gxContourT<gxEdgelet>::dispatchSerialize(gxArchive&);
template void gxContourT<gxEdgelet>::serialize_(gxArchive&, unsigned char);
template gxPersistent* gxRegionT<gxEdgelet>::make();
template void gxRegionT<gxEdgelet>::dispatchSerialize(gxArchive&);
template void gxRegionT<gxEdgelet>::serialize_(gxArchive&, unsigned char);
template gxPersistent* gxRegionSetT<gxEdgelet>::make();
template void gxRegionSetT<gxEdgelet>::dispatchSerialize(gxArchive&);
template void gxRegionSetT<gxEdgelet>::serialize_(gxArchive&, unsigned char);
