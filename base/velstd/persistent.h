/// The base of everything that can be archived and whose changes can be watched.
#pragma once

#include <velstd/export.h>

#include <atomic>
#include <cstdint>

class gxArchive;

/// The base class of persistent objects: it gives an object its place in an archive and lets a
/// caller see that the object changed.
///
/// Change tracking is off until `trackChanges(true)`; while it is on, the object counts what changes it.
/// A call that changes the object through one of its own members (a setter, loading, `reInit`) counts at
/// least once, and may count more than once; docs/conventions.md says what else counts, class by class.
/// The tracking state belongs to the object, not to its value: copies and moves start untracked,
/// assignment leaves it alone.
///
/// Threads: const operations may run on any number of threads at once; the others need the object alone.
class VELSTD_API gxPersistent {
 public:
  gxPersistent() noexcept = default;
  gxPersistent(const gxPersistent&) noexcept {}
  gxPersistent& operator=(const gxPersistent&) noexcept { return *this; }
  virtual ~gxPersistent();

  /// Reports a change of the object.  Counts only while tracking is on; saturates instead of
  /// wrapping around.  Const, because memories are filled and dropped by const members too.
  void mutating_() const noexcept {
    if (isTrackingChanges()) count_();
  }

  /// Turns change tracking on or off; either way the count starts again at 0.
  void trackChanges(bool on) const noexcept { tracking_.store(on ? kOn : 0, std::memory_order_relaxed); }
  /// Tells whether changes are being counted.
  bool isTrackingChanges() const noexcept {
    return (tracking_.load(std::memory_order_relaxed) & kOn) != 0;
  }
  /// Returns the number of changes reported since tracking was turned on; 0 while it is off.
  std::uint32_t changeCount() const noexcept {
    return tracking_.load(std::memory_order_relaxed) & kMostChanges;
  }

  /// Tells whether the record of `object` on the class level named by `passAndLevel` was already
  /// handled in that archive pass (see `gxArchive`).
  static bool haveVisited(const void* object, std::uint64_t passAndLevel);
  /// Remembers that it was.
  static void setVisited(const void* object, std::uint64_t passAndLevel);

  /// Stores the object that `pointer` refers to (or null) once per archive pass; when loading,
  /// gives the object, new or already read in this pass, in `pointerOut` (null for a stored null).
  static void serializePointer(gxArchive& archive, gxPersistent* pointer, gxPersistent*& pointerOut);

 protected:
  /// Stores or loads the complete record of the object: version byte, then fields.  The record of
  /// this base class itself is empty.
  virtual void dispatchSerialize(gxArchive& archive);

 public:
  /// Brings the object to its default-constructed state.
  virtual void reInit();
  /// Reads the object's record from the archive without the bookkeeping of references.
  virtual void loadSimple(gxArchive& archive);

 private:
  friend class gxArchive;

  static constexpr std::uint32_t kMostChanges = 0x7fffffff;

  static constexpr std::uint32_t kOn = 0x80000000;

  void count_() const noexcept;

  // The top bit tells whether changes are counted, the others count them: several threads may fill
  // memories, which report changes, at the same time.
  mutable std::atomic<std::uint32_t> tracking_{0};
};
