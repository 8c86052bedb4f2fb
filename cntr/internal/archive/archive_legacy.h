/// The base records inside contours and regions of version 0.
#pragma once

#include <cntr/internal/archive/archive_record.h>

/// A base class that contours and regions once had.  It has no fields of its own; only its version
/// byte, which must be 0, is left of it in old archives.  Each read makes an object of its own on the
/// stack: an object shared between reads would be "visited" after the first, and between threads it
/// would not even be safe.  It takes no part in the bookkeeping of visits.
class gx_LegacyBase : public gxPersistent {
 public:
  explicit gx_LegacyBase(const gx_VersionRefusal& refusal) : refusal_(refusal) {}

  /// Reads the record.  Throws: UnknownVersion for another version than 0.
  void read(gxArchive& archive) { dispatchSerialize(archive); }

 protected:
  void dispatchSerialize(gxArchive& archive) override {
    unsigned char version = 0;
    archive || version;
    if (version != 0) refusal_.raise();
    gxPersistent::dispatchSerialize(archive);
  }

 private:
  gx_VersionRefusal refusal_;
};

/// The one inside a contour.
class gxContourBase : public gx_LegacyBase {
 public:
  gxContourBase() : gx_LegacyBase(kContourBaseVersions) {}
};

/// The one inside a region.
class gxContourBase2 : public gx_LegacyBase {
 public:
  gxContourBase2() : gx_LegacyBase(kRegionBaseVersions) {}
};
