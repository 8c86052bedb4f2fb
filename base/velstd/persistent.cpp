// Persistent objects as archives see them.  A record is handled by the class chain of its object:
// each class asks whether the pass has handled this object on its level, writes or reads its version
// byte and its fields, and notes the visit.  This base class ends the chain: its record is empty.
#include <velstd/archive.h>
#include <velstd/internal/archive_pass.h>
#include <velstd/persistent.h>

void gxPersistent::count_() const noexcept {
  std::uint32_t now = tracking_.load(std::memory_order_relaxed);
  while ((now & kMostChanges) != kMostChanges &&
         !tracking_.compare_exchange_weak(now, now + 1, std::memory_order_relaxed)) {}
}

gxPersistent::~gxPersistent() = default;

bool gxPersistent::haveVisited(const void* object, std::uint64_t passAndLevel) {
  const gx_ArchivePass* pass = gx_ArchivePass::find(passAndLevel >> kLevelBits);
  return pass != nullptr && pass->visits.holds(object, passAndLevel);
}

void gxPersistent::setVisited(const void* object, std::uint64_t passAndLevel) {
  gx_ArchivePass* pass = gx_ArchivePass::find(passAndLevel >> kLevelBits);
  if (pass != nullptr) pass->visits.add(object, passAndLevel);
}

void gxPersistent::serializePointer(gxArchive& archive, gxPersistent* pointer,
                                    gxPersistent*& pointerOut) {
  archive.reference_(pointer, pointerOut);
}

void gxPersistent::dispatchSerialize(gxArchive& /*archive*/) {}

void gxPersistent::reInit() {}

void gxPersistent::loadSimple(gxArchive& archive) {
  archive.loadSimple_(*this);
}
