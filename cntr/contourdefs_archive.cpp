// The records of the library's exceptions: a version byte of each class and one of their base.  The
// message is not written: it lives in a base class that has no record.
#include <cntr/contourdefs.h>
#include <cntr/internal/archive/archive_record.h>

namespace {

constexpr unsigned char kCurrentVersion = 0;

}  // namespace

void gxContourDefs::Errors::dispatchSerialize(gxArchive& archive) {
  gf_DispatchRecord(archive, this, eErrorsLevel, kCurrentVersion,
                    [&](unsigned char version) { Errors::serialize_(archive, version); });
}

void gxContourDefs::Errors::serialize_(gxArchive& archive, unsigned char version) {
  if (version != kCurrentVersion) kErrorsVersions.raise();
  gxException::dispatchSerialize(archive);
}

gxPersistent* gxContourDefs::EmptyContour::make() {
  return new EmptyContour;
}

void gxContourDefs::EmptyContour::dispatchSerialize(gxArchive& archive) {
  gf_DispatchRecord(archive, this, eEmptyContourLevel, kCurrentVersion,
                    [&](unsigned char version) { EmptyContour::serialize_(archive, version); });
}

void gxContourDefs::EmptyContour::serialize_(gxArchive& archive, unsigned char version) {
  if (version != kCurrentVersion) kEmptyContourVersions.raise();
  Errors::dispatchSerialize(archive);
}

gxPersistent* gxContourDefs::EmptyRegionSet::make() {
  return new EmptyRegionSet;
}

void gxContourDefs::EmptyRegionSet::dispatchSerialize(gxArchive& archive) {
  gf_DispatchRecord(archive, this, eEmptyRegionSetLevel, kCurrentVersion,
                    [&](unsigned char version) { EmptyRegionSet::serialize_(archive, version); });
}

void gxContourDefs::EmptyRegionSet::serialize_(gxArchive& archive, unsigned char version) {
  if (version != kCurrentVersion) kEmptyRegionSetVersions.raise();
  Errors::dispatchSerialize(archive);
}

gxPersistent* gxContourDefs::BadParams::make() {
  return new BadParams;
}

void gxContourDefs::BadParams::dispatchSerialize(gxArchive& archive) {
  gf_DispatchRecord(archive, this, eBadParamsLevel, kCurrentVersion,
                    [&](unsigned char version) { BadParams::serialize_(archive, version); });
}

void gxContourDefs::BadParams::serialize_(gxArchive& archive, unsigned char version) {
  if (version != kCurrentVersion) kBadParamsVersions.raise();
  Errors::dispatchSerialize(archive);
}

gxPersistent* gxContourDefs::RegionCannotBeSetOpen::make() {
  return new RegionCannotBeSetOpen;
}

void gxContourDefs::RegionCannotBeSetOpen::dispatchSerialize(gxArchive& archive) {
  gf_DispatchRecord(archive, this, eCannotBeSetOpenLevel, kCurrentVersion,
                    [&](unsigned char version) { RegionCannotBeSetOpen::serialize_(archive, version); });
}

void gxContourDefs::RegionCannotBeSetOpen::serialize_(gxArchive& archive, unsigned char version) {
  if (version != kCurrentVersion) kCannotBeSetOpenVersions.raise();
  Errors::dispatchSerialize(archive);
}
