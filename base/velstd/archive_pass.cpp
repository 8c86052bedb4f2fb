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
  return used_ != 0 && table_()[slot_(object, level)].object != nullptr;
}

void gx_VisitSet::add(const void* object, std::uint64_t level) {
  if (object == nullptr) return;
  if (3 * (used_ + 1) > 2 * size_()) grow_();
  put_({object, level});
}

void gx_VisitSet::put_(const Visit& visit) noexcept {
  Visit* const table = grown_.empty() ? first_.data() : grown_.data();
  Visit& place = table[slot_(visit.object, visit.level)];
  if (place.object == nullptr) ++used_;
  place = visit;
}

std::size_t gx_VisitSet::slot_(const void* object, std::uint64_t level) const noexcept {
  // The table's size is a power of two; the multiplication spreads neighbouring addresses, and its
  // high bits, which all of them reach, choose the place.
  const std::uint64_t mixed =
      (std::bit_cast<std::uintptr_t>(object) + level * 0x3d4d51c2d82b14b1U) * 0x9e6c63d0676a9a99U;
  const Visit* const table = table_();
  const std::size_t last = size_() - 1;
  std::size_t at = static_cast<std::size_t>(mixed >> 32U) & last;
  while (table[at].object != nullptr && (table[at].object != object || table[at].level != level)) {
    at = (at + 1) & last;
  }
  return at;
}

void gx_VisitSet::grow_() {
  std::vector<Visit> old(2 * size_());
  old.swap(grown_);
  used_ = 0;
  const auto putAll = [this](const auto& visits) {
    for (const Visit& visit : visits) {
      if (visit.object != nullptr) put_(visit);
    }
  };
  if (old.empty()) {
    putAll(first_);
  } else {
    putAll(old);
  }
}

gx_StoredObjects::~gx_StoredObjects() {
  for (const Object& one : objects_) gx_PtrHandleBase_RepAccessor::release(one.held);
}

std::uint32_t gx_StoredObjects::find(const void* object) const {
  if (objects_.size() > kFew) {
    const auto found = numbers_.find(object);
    return found == numbers_.end() ? 0 : found->second;
  }
  for (std::size_t i = 0; i < objects_.size(); ++i) {
    if (objects_[i].address == object) return static_cast<std::uint32_t>(i + 1);
  }
  return 0;
}

std::uint32_t gx_StoredObjects::add(const void* object) {
  if (objects_.capacity() == 0) objects_.reserve(kFew);
  objects_.push_back({object});
  const auto number = static_cast<std::uint32_t>(objects_.size());
  if (number == kFew + 1) {
    for (std::uint32_t i = 0; i < number; ++i) numbers_.emplace(objects_[i].address, i + 1);
  } else if (number > kFew) {
    numbers_.emplace(object, number);
  }
  return number;
}

void gx_StoredObjects::hold(std::uint32_t number, const gxRepBase* counted) {
  gx_PtrHandleBase_RepAccessor::acquire(counted);
  objects_[number - 1].held = counted;
}

gx_ArchivePass::gx_ArchivePass() : number(nextPassNumber()), outer(innermost) {
  innermost = this;
}

gx_ArchivePass::~gx_ArchivePass() {
  innermost = outer;
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
