/// Answers without an argument: computed by whoever asks first, published, and dropped together.
///
/// A const operation may run on any number of threads at once, so what it remembers is put in place in
/// a way that readers and copiers may watch.  Nobody waits: a thread that finds nothing computes the
/// answer itself, and of two that do the second drops its own.  That rests on one thing, that every
/// thread computes the same bits from the same object.
///
/// `drop`, assignment and destruction belong to operations that have the object to themselves.
#pragma once

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

/// An answer of N doubles.
///
/// Each word is unknown while it has one bit pattern, a signalling NaN, which no arithmetic gives; the
/// answer is known when no word is unknown.  So there is no flag and no order between stores: every
/// thread stores the same bits.  A word that has that very pattern all the same (an archive can bring a
/// coordinate of any bits) is never known: the answer is then right, and computed each time.
template <std::size_t N>
class gx_Numbers {
 public:
  gx_Numbers() noexcept { drop(); }
  gx_Numbers(const gx_Numbers& o) noexcept { take_(o); }
  gx_Numbers& operator=(const gx_Numbers& o) noexcept {
    take_(o);
    return *this;
  }
  ~gx_Numbers() = default;

  /// Puts the numbers into `out` and returns true; where they are not known, returns false and leaves
  /// anything in `out`.
  bool get(std::array<double, N>& out) const noexcept {
    bool known = true;
    for (std::size_t i = 0; i < N; ++i) {
      const std::uint64_t word = words_[i].load(std::memory_order_relaxed);
      known &= word != kUnknown;
      out[i] = std::bit_cast<double>(word);
    }
    return known;
  }
  /// The same of the number at I alone, where no more is wanted.
  template <std::size_t I>
  bool get(double& out) const noexcept {
    static_assert(I < N);
    const std::uint64_t word = words_[I].load(std::memory_order_relaxed);
    out = std::bit_cast<double>(word);
    return word != kUnknown;
  }
  bool known() const noexcept {
    std::array<double, N> ignored;
    return get(ignored);
  }

  /// Publishes the numbers.
  void set(const std::array<double, N>& numbers) const noexcept {
    for (std::size_t i = 0; i < N; ++i) {
      words_[i].store(std::bit_cast<std::uint64_t>(numbers[i]), std::memory_order_relaxed);
    }
  }

  /// Publishes the numbers and tells whether this call made them known, for whoever has to count that
  /// once.  One thread does the telling: the one that fills the first word, which it does last.
  bool setFirst(const std::array<double, N>& numbers) const noexcept {
    for (std::size_t i = 1; i < N; ++i) {
      words_[i].store(std::bit_cast<std::uint64_t>(numbers[i]), std::memory_order_relaxed);
    }
    std::uint64_t expected = kUnknown;
    return words_[0].compare_exchange_strong(expected, std::bit_cast<std::uint64_t>(numbers[0]),
                                             std::memory_order_relaxed);
  }

  void drop() noexcept {
    for (auto& word : words_) word.store(kUnknown, std::memory_order_relaxed);
  }

  /// The pattern of a word that is not known.
  static constexpr std::uint64_t kUnknown = 0x7ff4'6778'5f6e'6f74;

 private:
  static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

  void take_(const gx_Numbers& o) noexcept {
    for (std::size_t i = 0; i < N; ++i) {
      words_[i].store(o.words_[i].load(std::memory_order_relaxed), std::memory_order_relaxed);
    }
  }

  mutable std::array<std::atomic<std::uint64_t>, N> words_;
};

/// An answer of yes or no.
class gx_YesNo {
 public:
  gx_YesNo() noexcept = default;
  gx_YesNo(const gx_YesNo& o) noexcept : byte_(o.byte_.load(std::memory_order_relaxed)) {}
  gx_YesNo& operator=(const gx_YesNo& o) noexcept {
    byte_.store(o.byte_.load(std::memory_order_relaxed), std::memory_order_relaxed);
    return *this;
  }
  ~gx_YesNo() = default;

  /// Puts the answer into `out` and returns true where it is known.
  bool get(bool& out) const noexcept {
    const std::uint8_t byte = byte_.load(std::memory_order_relaxed);
    out = byte == kYes;
    return byte != kUnknown;
  }
  /// Publishes the answer.
  void set(bool yes) const noexcept { byte_.store(yes ? kYes : kNo, std::memory_order_relaxed); }
  /// Publishes the answer and tells whether this call made it known.
  bool setFirst(bool yes) const noexcept {
    std::uint8_t expected = kUnknown;
    return byte_.compare_exchange_strong(expected, yes ? kYes : kNo, std::memory_order_relaxed);
  }
  void drop() noexcept { byte_.store(kUnknown, std::memory_order_relaxed); }

 private:
  static constexpr std::uint8_t kUnknown = 0;
  static constexpr std::uint8_t kNo = 1;
  static constexpr std::uint8_t kYes = 2;

  mutable std::atomic<std::uint8_t> byte_{kUnknown};
};

/// What questions have cost so far, which decides when an index pays.  It is read and written back
/// without care for other threads: a count that gets lost makes an index a little later, and a thread
/// on its own loses none.
class gx_Effort {
 public:
  gx_Effort() noexcept = default;
  gx_Effort(const gx_Effort& o) noexcept : spent_(o.spent()) {}
  gx_Effort& operator=(const gx_Effort& o) noexcept {
    set(o.spent());
    return *this;
  }
  ~gx_Effort() = default;

  std::uint64_t spent() const noexcept { return spent_.load(std::memory_order_relaxed); }
  void add(std::uint64_t effort) const noexcept { set(spent() + effort); }
  void set(std::uint64_t effort) const noexcept { spent_.store(effort, std::memory_order_relaxed); }
  void drop() noexcept { set(0); }

 private:
  mutable std::atomic<std::uint64_t> spent_{0};
};

/// An answer kept in place that is copied without failing: a handle.
template <class T>
class gx_Once {
 public:
  static_assert(std::is_nothrow_copy_constructible_v<T> && std::is_nothrow_copy_assignable_v<T>);

  gx_Once() noexcept = default;
  gx_Once(const gx_Once& o) noexcept { take_(o); }
  gx_Once& operator=(const gx_Once& o) noexcept {
    if (this == &o) return *this;
    drop();
    take_(o);
    return *this;
  }
  ~gx_Once() = default;

  /// Returns the answer, null where there is none that is wholly in place.
  const T* get() const noexcept {
    return state_.load(std::memory_order_acquire) == kPublished ? &value_ : nullptr;
  }
  /// Publishes an answer, unless another thread has done so or is about to; tells whether it did.
  bool publish(const T& value) const noexcept {
    std::uint8_t expected = kEmpty;
    if (!state_.compare_exchange_strong(expected, kBeingWritten, std::memory_order_acquire,
                                        std::memory_order_relaxed)) {
      return false;
    }
    value_ = value;
    state_.store(kPublished, std::memory_order_release);
    return true;
  }
  void drop() noexcept {
    state_.store(kEmpty, std::memory_order_relaxed);
    value_ = T();
  }

 private:
  static constexpr std::uint8_t kEmpty = 0;
  static constexpr std::uint8_t kBeingWritten = 1;
  static constexpr std::uint8_t kPublished = 2;

  // The object has just been made or emptied, and belongs to this thread.
  void take_(const gx_Once& o) noexcept {
    if (const T* value = o.get()) {
      value_ = *value;
      state_.store(kPublished, std::memory_order_relaxed);
    }
  }

  mutable T value_{};
  mutable std::atomic<std::uint8_t> state_{kEmpty};
};
