/// What the records of contours, regions and sets have in common: who refuses an unknown version,
/// the class levels of the visit bookkeeping, and the frame of a record.
#pragma once

#include <velstd/archive.h>
#include <velstd/persistent.h>

#include <cstdint>

/// The place that an unknown version is reported with.  These are fixed names and numbers, not
/// places in today's files: programs compare them, and they must not move with the source text.
struct gx_VersionRefusal {
  const char* source;
  int line;

  /// Throws: UnknownVersion with this place.
  [[noreturn]] void raise() const { throw gxArchive::UnknownVersion(source, line); }
};

constexpr gx_VersionRefusal kContourVersions{"cntr/contour", 904};
constexpr gx_VersionRefusal kContourBaseVersions{"cntr/contour", 894};
constexpr gx_VersionRefusal kRegionVersions{"cntr/region", 819};
constexpr gx_VersionRefusal kRegionBaseVersions{"cntr/region", 809};
constexpr gx_VersionRefusal kRegionSetVersions{"cntr/regionst", 479};
constexpr gx_VersionRefusal kEdgeletContourVersions{"ch_core/cntrtmpl", 98};
constexpr gx_VersionRefusal kEdgeletRegionVersions{"ch_core/cntrtmpl", 186};
constexpr gx_VersionRefusal kEdgeletRegionSetVersions{"ch_core/cntrtmpl", 283};
constexpr gx_VersionRefusal kErrorsVersions{"gxContourDefs::Errors", 0};
constexpr gx_VersionRefusal kEmptyContourVersions{"gxContourDefs::EmptyContour", 0};
constexpr gx_VersionRefusal kEmptyRegionSetVersions{"gxContourDefs::EmptyRegionSet", 0};
constexpr gx_VersionRefusal kBadParamsVersions{"gxContourDefs::BadParams", 0};
constexpr gx_VersionRefusal kCannotBeSetOpenVersions{"gxContourDefs::RegionCannotBeSetOpen", 0};

/// The class levels of this library in the bookkeeping of visits; velstd has those below 0x10.
enum gx_ArchiveLevel : std::uint16_t {
  eContourLevel = 0x10,
  eRegionLevel,
  eRegionSetLevel,
  eEdgeletContourLevel,
  eEdgeletRegionLevel,
  eEdgeletRegionSetLevel,
  eErrorsLevel,
  eEmptyContourLevel,
  eEmptyRegionSetLevel,
  eBadParamsLevel,
  eCannotBeSetOpenLevel,
};

/// Stores or loads the record of one class level of `object`, once per pass: the version byte,
/// which is `current` when storing, then what `fields(version)` does.
template <class Fields>
void gf_DispatchRecord(gxArchive& archive, const void* object, gx_ArchiveLevel level,
                       unsigned char current, const Fields& fields) {
  const std::uint64_t key = archive.passAndLevel(level);
  if (gxPersistent::haveVisited(object, key)) return;
  unsigned char version = current;
  archive || version;
  fields(version);
  gxPersistent::setVisited(object, key);
}

/// Stores or loads the bound on remembered answers, a signed 32-bit number.
/// Throws: BadFormat for a negative one, which no shape can have.
inline void gf_SerializeCachedVectorSize(gxArchive& archive, const char* field, long& size) {
  long number = size;
  archive.field(field) || number;
  if (number < 0) throw gxArchive::BadFormat(L"a negative cachedVectorSize");
  if (archive.isLoading()) size = number;
}
