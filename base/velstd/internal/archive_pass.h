/// What an archive remembers while one call of `store` or `load` runs.
#pragma once

#include <velstd/handle.h>
#include <velstd/persistent.h>
#include <velstd/registry.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <typeinfo>
#include <unordered_map>
#include <vector>

/// The set of visits of a pass: pairs of an address and a class level, in an open table that is at
/// most two thirds full.  A hash set of the standard library takes three times the memory, and what
/// loading takes is bounded by what the archive's bytes pay for.  The first table is the set's own, as
/// most passes see one shape.
class gx_VisitSet {
 public:
  bool holds(const void* object, std::uint64_t level) const noexcept;
  void add(const void* object, std::uint64_t level);

 private:
  struct Visit {
    const void* object = nullptr;
    std::uint64_t level = 0;
  };
  const Visit* table_() const noexcept { return grown_.empty() ? first_.data() : grown_.data(); }
  std::size_t size_() const noexcept { return grown_.empty() ? first_.size() : grown_.size(); }
  std::size_t slot_(const void* object, std::uint64_t level) const noexcept;
  void put_(const Visit& visit) noexcept;
  void grow_();

  std::array<Visit, 8> first_{};
  std::vector<Visit> grown_;  // takes over from the first table
  std::size_t used_ = 0;
};

/// The objects that a pass has written, numbered from 1.  An object's address stands for it until the pass
/// ends, so the pass holds it that long, where it has a count to be held by.
class gx_StoredObjects {
 public:
  gx_StoredObjects() = default;
  gx_StoredObjects(const gx_StoredObjects&) = delete;
  gx_StoredObjects& operator=(const gx_StoredObjects&) = delete;
  ~gx_StoredObjects();

  /// Returns the number of the object at that address, 0 where it is new.
  std::uint32_t find(const void* object) const;
  /// Enters a new one and returns its number.
  std::uint32_t add(const void* object);
  /// Holds object `number` until the end; null holds nothing.
  void hold(std::uint32_t number, const gxRepBase* counted);
  bool isComplete(std::uint32_t number) const { return objects_[number - 1].complete; }
  void complete(std::uint32_t number) { objects_[number - 1].complete = true; }

 private:
  // Up to here the addresses are compared one by one.
  static constexpr std::size_t kFew = 8;

  struct Object {
    const void* address = nullptr;
    const gxRepBase* held = nullptr;
    bool complete = false;
  };
  std::vector<Object> objects_;
  std::unordered_map<const void*, std::uint32_t> numbers_;  // of all, once there are more than a few
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

  std::uint64_t number;
  gx_ArchivePass* outer;
  bool simple = false;      // references to earlier objects are refused
  std::uint32_t depth = 0;  // objects being stored or loaded, one inside the other
  gx_VisitSet visits;
  gx_StoredObjects stored;
  struct StoredClass {
    const std::type_info* type = nullptr;
    std::string name;
    std::uint32_t number = 0;
  };
  std::vector<StoredClass> storedClasses;  // a type each; a pass meets a handful
  std::uint32_t storedNames = 0;           // the different names among them
  std::vector<gx_LoadedObject> loaded;
  struct LoadedClass {
    std::string name;
    gx_Instantiator::Factory make = nullptr;
  };
  std::vector<LoadedClass> loadedClasses;
};

/// The key of a visit: the pass's number above, the class level in the lowest 16 bits.
constexpr int kLevelBits = 16;
