// The record of a region: the complete record of its outline, then its holes, each an object that
// other regions may share.  A region of version 0, which is only read, had no holes and no label and
// held the points itself.
#include <cntr/internal/archive/archive_legacy.h>
#include <cntr/internal/archive/archive_record.h>
#include <cntr/region.h>

namespace {

constexpr unsigned char kCurrentVersion = 1;

}  // namespace

gxPersistent* gxRegion::make() {
  return new gxRegion;
}

void gxRegion::dispatchSerialize(gxArchive& archive) {
  gf_DispatchRecord(archive, this, eRegionLevel, kCurrentVersion,
                    [&](unsigned char version) { gxRegion::serialize_(archive, version); });
}

void gxRegion::serialize_(gxArchive& archive, unsigned char version) {
  if (version > kCurrentVersion) kRegionVersions.raise();
  if (archive.isLoading()) cleanCacheInfo();
  if (version == 0) {
    gxContourBase2().read(archive);
    std::vector<gxVector<2>> points;
    unsigned char meaningless = 0;
    long size = cachedVectorSize();
    archive || points || meaningless;
    gf_SerializeCachedVectorSize(archive, "gxRegion: cachedVectorSize", size);
    holes_.clear();
    setPoints(points);
    cachedVectorSize(size);
    gxContour::isClosed(false);  // as it stood in those records; a region reports itself closed anyway
    label(0);
  } else {
    gxContour::dispatchSerialize(archive);
    archive || holes_;
  }
  if (archive.isLoading()) cleanCacheInfo();
}
