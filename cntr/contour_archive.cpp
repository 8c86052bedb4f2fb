// The record of a contour: label, closed flag, points, cachedVectorSize.  Version 0, which is only
// read, had no label, its fields in another order, and two leftovers: the record of a base class that
// is gone, and a byte that meant nothing.
//
// The memory is dropped before the first field is read, and again behind the last.  Before: a read
// that fails half-way leaves new points behind, which no remembered answer may outlive.  Behind: a
// derived class hears of it when everything is in place.
#include <cntr/contour.h>
#include <cntr/internal/archive/archive_legacy.h>
#include <cntr/internal/archive/archive_record.h>

namespace {

constexpr unsigned char kCurrentVersion = 1;
constexpr const char* kSizeField = "gxContour: cachedVectorSize";

}  // namespace

gxPersistent* gxContour::make() {
  return new gxContour;
}

void gxContour::dispatchSerialize(gxArchive& archive) {
  gf_DispatchRecord(archive, this, eContourLevel, kCurrentVersion,
                    [&](unsigned char version) { gxContour::serialize_(archive, version); });
}

void gxContour::serialize_(gxArchive& archive, unsigned char version) {
  if (version > kCurrentVersion) kContourVersions.raise();
  if (archive.isLoading()) cleanCacheInfo();
  if (version == 0) {
    gxContourBase().read(archive);
    unsigned char meaningless = 0;
    archive || state_.points || meaningless;
    gf_SerializeCachedVectorSize(archive, kSizeField, state_.cachedVectorSize);
    archive || state_.closed;
    state_.label = 0;
  } else {
    gxPersistent::dispatchSerialize(archive);
    archive.field("gxContour: label") || state_.label || state_.closed;
    archive || state_.points;
    gf_SerializeCachedVectorSize(archive, kSizeField, state_.cachedVectorSize);
  }
  if (archive.isLoading()) cleanCacheInfo();
}
