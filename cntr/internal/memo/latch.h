/// A lock of one byte for a handful of instructions.
#pragma once

#include <atomic>
#include <cstdint>

#if defined(__has_include)
#  if __has_include(<sys/single_threaded.h>)
#    include <sys/single_threaded.h>
#    define GXSHAPE_KNOWS_SINGLE_THREADED 1
#  endif
#endif

/// Lets one thread at a time look into a small memory.  Under it nothing is allocated, released or
/// drawn that could wait, nothing of a user's is called, and no second latch is taken: so there is no
/// order of latches to keep and nothing to wait for in a circle.
///
/// A thread that does not get it sleeps: with real-time priorities one that spins above the holder
/// would never let the holder go on.  A process that has only ever had one thread skips it; nothing
/// under it can start another.
class gx_Latch {
 public:
  gx_Latch() noexcept = default;
  gx_Latch(const gx_Latch&) = delete;
  gx_Latch& operator=(const gx_Latch&) = delete;
  ~gx_Latch() = default;

  /// Holds the latch as long as it lives.
  class Hold {
   public:
    explicit Hold(gx_Latch& latch) noexcept : latch_(isOnlyThread() ? nullptr : &latch) {
      if (latch_ != nullptr) latch_->take_();
    }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    ~Hold() {
      if (latch_ != nullptr) latch_->give_();
    }

   private:
    gx_Latch* latch_;
  };

 private:
  static constexpr std::uint8_t kFree = 0;
  static constexpr std::uint8_t kHeld = 1;
  static constexpr std::uint8_t kAwaited = 2;  // held, and some thread sleeps

  static bool isOnlyThread() noexcept {
#ifdef GXSHAPE_KNOWS_SINGLE_THREADED
    return __libc_single_threaded != 0;
#else
    return false;
#endif
  }

  void take_() noexcept {
    std::uint8_t expected = kFree;
    if (byte_.compare_exchange_strong(expected, kHeld, std::memory_order_acquire,
                                      std::memory_order_relaxed)) {
      return;
    }
    while (byte_.exchange(kAwaited, std::memory_order_acquire) != kFree) {
      byte_.wait(kAwaited, std::memory_order_relaxed);
    }
  }
  void give_() noexcept {
    if (byte_.exchange(kFree, std::memory_order_release) == kAwaited) byte_.notify_one();
  }

  std::atomic<std::uint8_t> byte_{kFree};
};
