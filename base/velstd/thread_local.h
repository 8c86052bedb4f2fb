/// Values of which every thread has its own, and functions that run when a thread ends.
#pragma once

#include <velstd/export.h>

#include <cstddef>
#include <cstdint>
#include <functional>

/// Names a thread of the process.  Numbers are never used again, so that the name of a thread that
/// ended is not taken for another's.
class VELSTD_API gxThreadID {
 public:
  /// Compares.
  friend bool operator==(const gxThreadID&, const gxThreadID&) = default;

  /// Returns the thread's number: 1, 2, 3 … in the order in which threads first asked.
  std::uint64_t number() const { return number_; }

  /// Has `function` run when the calling thread ends, last registered first; on the main thread,
  /// when the program returns from main or calls std::exit.  Functions that these register run too.
  /// What a function throws is dropped.
  ///  - registered later still, by the destructor of a thread-local object that outlives them, a
  ///    function is never run
  static void atexit(std::function<void()> function);

 private:
  friend VELSTD_API gxThreadID gfGetCurrentThreadID();
  explicit gxThreadID(std::uint64_t number) : number_(number) {}
  std::uint64_t number_;
};

/// Returns the name of the calling thread.
VELSTD_API gxThreadID gfGetCurrentThreadID();

/// A pointer of which every thread has its own value, null until the thread sets it.  The object
/// does not own what the pointers refer to: `gxThreadID::atexit` is the place to free it.  A thread
/// keeps room for at most as many values as there are such objects at a time.
class VELSTD_API gx_ThreadLocal {
 public:
  gx_ThreadLocal();
  gx_ThreadLocal(const gx_ThreadLocal&) = delete;
  gx_ThreadLocal& operator=(const gx_ThreadLocal&) = delete;
  ~gx_ThreadLocal();

  /// Returns the calling thread's value.
  void* OSValue() const;
  /// Sets the calling thread's value.
  void OSValue(void* value);

 private:
  std::size_t slot_;      // the place of its values, which a later object takes over
  std::uint64_t number_;  // never used again: a value of an earlier object in the place has another
};
