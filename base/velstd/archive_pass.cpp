// The bookkeeping of a pass.  Visits are remembered per pass and class level, not per object alone:
// a region is handled as a region and, within that, once more as a contour, at two levels.
// Addresses identify objects, which is sound because every object of a pass lives until it ends: the
// pass holds what it loads, and what it stores too.  (It did not always hold the latter.  A class that
// makes its parts while it is stored lets go of each before it makes the next, at the same address, and
// all of them were written as the first.)
#include <velstd/internal/archive_pass.h>

#include <atomic>
#include <bit>

namespace {

thread_local gx_ArchivePass* innermost = nullptr;

std::uint64_t nextPassNumber() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

}  // namespace

bool gx_VisitSet::holds(const void* object, std::uint64_t level) const noexcept {
  return used_ != 0 && table_[slot_(object, level)].object != nullptr;
}

void gx_VisitSet::add(const void* object, std::uint64_t level) {
  if (object == nullptr) return;
  if (3 * (used_ + 1) > 2 * table_.size()) grow_();
  Visit& visit = table_[slot_(object, level)];
  if (visit.object == nullptr) ++used_;
  visit = {object, level};
}

std::size_t gx_VisitSet::slot_(const void* object, std::uint64_t level) const noexcept {
  // The table's size is a power of two; the multiplication spreads neighbouring addresses, and its
  // high bits, which all of them reach, choose the place.
  const std::uint64_t mixed =
      (std::bit_cast<std::uintptr_t>(object) + level * 0x3d4d51c2d82b14b1U) * 0x9e6c63d0676a9a99U;
  std::size_t at = static_cast<std::size_t>(mixed >> 32U) & (table_.size() - 1);
  while (table_[at].object != nullptr && (table_[at].object != object || table_[at].level != level)) {
    at = (at + 1) & (table_.size() - 1);
  }
  return at;
}

void gx_VisitSet::grow_() {
  std::vector<Visit> old(table_.empty() ? 16 : 2 * table_.size());
  old.swap(table_);
  for (const Visit& visit : old) {
    if (visit.object != nullptr) table_[slot_(visit.object, visit.level)] = visit;
  }
}

gx_ArchivePass::gx_ArchivePass() : number(nextPassNumber()), outer(innermost) {
  innermost = this;
}

gx_ArchivePass::~gx_ArchivePass() {
  innermost = outer;
  for (const auto& one : stored) gx_PtrHandleBase_RepAccessor::release(one.second.held);
  for (const gx_LoadedObject& one : loaded) {
    if (!one.owned) continue;
    if (one.counted != nullptr) {
      gx_PtrHandleBase_RepAccessor::release(one.counted);
    } else {
      delete one.object;
    }
  }
}

gx_ArchivePass* gx_ArchivePass::find(std::uint64_t number) noexcept {
  gx_ArchivePass* pass = innermost;
  while (pass != nullptr && pass->number != number) pass = pass->outer;
  return pass;
}
