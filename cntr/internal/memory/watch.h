/// Hearing that something has changed which others rely on.
#pragma once

#include <cntr/export.h>

#include <atomic>
#include <cstdint>

/// A watch over a value that lies beside it, for owners of many such values who keep something made
/// from all of them, as a set of regions keeps a tree over their boxes.  Asking every value whether
/// it is still the same costs as much as the tree saves; so there is one count of the changes of all
/// watched values, `gx_Watch::epoch`, and while that stands still nothing has changed.  Where it has
/// moved, each value tells whether it was its own change.
///
/// A value that is not watched never moves the count.  A watch does not follow its value into
/// another object: copies and the source and target of a move are not watched, and the change of a
/// watched source or target counts.
class GXSHAPE_API gx_Watch {
 public:
  gx_Watch() noexcept = default;
  gx_Watch(const gx_Watch&) noexcept {}
  gx_Watch(gx_Watch&& other) noexcept { other.changed(); }
  gx_Watch& operator=(const gx_Watch& other) noexcept {
    if (this != &other) changed();
    return *this;
  }
  gx_Watch& operator=(gx_Watch&& other) noexcept {
    if (this != &other) {
      changed();
      other.changed();
    }
    return *this;
  }
  ~gx_Watch() = default;

  /// Returns the number of changes of watched values so far, of all threads; at least 1.
  static std::uint64_t epoch() noexcept;

  /// Watches the value from now on.
  void begin() const noexcept {
    if (isOn()) return;
    std::uint64_t expected = 0;
    since_.compare_exchange_strong(expected, epoch(), std::memory_order_release,
                                   std::memory_order_relaxed);
  }
  /// Notes a change of the value; it is not watched then.
  void changed() noexcept {
    if (isOn()) count_();
  }
  bool isOn() const noexcept { return since_.load(std::memory_order_relaxed) != 0; }
  /// Tells whether the value is watched and has not changed since that epoch.
  bool sameSince(std::uint64_t epoch) const noexcept {
    const std::uint64_t since = since_.load(std::memory_order_acquire);
    return since != 0 && since <= epoch;
  }

 private:
  void count_() noexcept;

  mutable std::atomic<std::uint64_t> since_{0};  // the epoch at which watching began, 0 when not watched
};
