/// What an archive remembers while one call of `store` or `load` runs.
#pragma once

#include <velstd/handle.h>
#include <velstd/persistent.h>
#include <velstd/registry.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

/// The set of visits of a pass: pairs of an address and a class level, in an open table that is at
/// most two thirds full.  A hash set of the standard library takes three times the memory, and what
/// loading takes is bounded by what the archive's bytes pay for.
class gx_VisitSet {
 public:
  bool holds(const void* object, std::uint64_t level) const noexcept;
  void add(const void* object, std::uint64_t level);

 private:
  struct Visit {
    const void* object = nullptr;
    std::uint64_t level = 0;
  };
  std::size_t slot_(const void* object, std::uint64_t level) const noexcept;
  void grow_();

  std::vector<Visit> table_;
  std::size_t used_ = 0;
};

/// An object that the pass has read.  The pass holds it: by a reference count where it has one, as
/// its only owner otherwise.
struct gx_LoadedObject {
  gxPersistent* object = nullptr;
  const gxRepBase* counted = nullptr;
  bool complete = false;
  bool owned = true;
};

/// A running pass.  Passes of one thread form a chain, so that the static members of
/// `gxPersistent` find theirs by its number.
struct gx_ArchivePass {
  gx_ArchivePass();
  gx_ArchivePass(const gx_ArchivePass&) = delete;
  gx_ArchivePass& operator=(const gx_ArchivePass&) = delete;
  ~gx_ArchivePass();

  /// Finds the running pass of this thread with that number, null if there is none.
  static gx_ArchivePass* find(std::uint64_t number) noexcept;

  /// An object that the pass has written.  Its address stands for it until the pass ends, so the pass
  /// holds it that long, where it has a count to be held by.
  struct StoredObject {
    std::uint32_t number = 0;
    bool complete = false;
    const gxRepBase* held = nullptr;
  };

  std::uint64_t number;
  gx_ArchivePass* outer;
  bool simple = false;      // references to earlier objects are refused
  std::uint32_t depth = 0;  // objects being stored or loaded, one inside the other
  gx_VisitSet visits;
  std::unordered_map<const void*, StoredObject> stored;
  std::unordered_map<std::string, std::uint32_t> storedClasses;
  std::vector<gx_LoadedObject> loaded;
  struct LoadedClass {
    std::string name;
    gx_Instantiator::Factory make = nullptr;
  };
  std::vector<LoadedClass> loadedClasses;
};

/// The key of a visit: the pass's number above, the class level in the lowest 16 bits.
constexpr int kLevelBits = 16;
