// The record of a region set: its regions, each an object that others may share, and
// cachedVectorSize, which version 0 (only read) did not have.
#include <cntr/internal/archive/archive_record.h>
#include <cntr/regionst.h>

namespace {

constexpr unsigned char kCurrentVersion = 1;

}  // namespace

gxPersistent* gxRegionSet::make() {
  return new gxRegionSet;
}

void gxRegionSet::dispatchSerialize(gxArchive& archive) {
  gf_DispatchRecord(archive, this, eRegionSetLevel, kCurrentVersion,
                    [&](unsigned char version) { gxRegionSet::serialize_(archive, version); });
}

void gxRegionSet::serialize_(gxArchive& archive, unsigned char version) {
  if (version > kCurrentVersion) kRegionSetVersions.raise();
  if (archive.isLoading()) cleanCacheInfo();
  gxPersistent::dispatchSerialize(archive);
  archive || state_.regions;
  if (version > 0) {
    gf_SerializeCachedVectorSize(archive, "gxRegionSet: cachedVectorSize", state_.cachedVectorSize);
  }
  if (archive.isLoading()) cleanCacheInfo();
}
