/// Large parts of a shape that are made on demand and never changed: lists and indexes.
#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

/// Owns an object that any number of threads may make and read, or nothing.  Once made it is never
/// changed, so copies of the shape share it, each with a count.
///
/// `drop`, assignment and destruction belong to operations that have the object to themselves.
///
/// Only `get`, `made` and `madeUnlessBusy` need to know T: a header that holds one declares T and no more.
template <class T>
class gx_Shared {
 public:
  gx_Shared() noexcept = default;
  gx_Shared(const gx_Shared& o) noexcept : node_(o.counted_()) {}
  gx_Shared(gx_Shared&& o) noexcept : node_(o.released_()) {}
  gx_Shared& operator=(const gx_Shared& o) noexcept {
    if (this != &o) put_(o.counted_());
    return *this;
  }
  gx_Shared& operator=(gx_Shared&& o) noexcept {
    if (this != &o) put_(o.released_());
    return *this;
  }
  ~gx_Shared() { drop(); }

  /// Returns the object, null where there is none yet.
  const T* get() const noexcept { return valueOf(node_.load(std::memory_order_acquire)); }

  /// Returns the object, made by `make()` where there is none.  Threads that ask at the same time may
  /// each make one; one of these is kept.
  template <class Make>
  const T& made(const Make& make) const {
    if (const T* value = get()) return *value;
    return *valueOf(publish_(new Node(make()), nullptr));
  }

  /// Returns the object, made by `make()` where there is none and nobody is making it; null while
  /// another thread does.  Where `make` throws, nobody is making it any more.
  template <class Make>
  const T* madeUnlessBusy(const Make& make) const {
    if (const T* value = get()) return value;
    Counted* expected = nullptr;
    if (!node_.compare_exchange_strong(expected, claim(), std::memory_order_acquire)) {
      return valueOf(expected);
    }
    struct Guard {
      ~Guard() {
        Counted* claimed = claim();
        if (active) node.compare_exchange_strong(claimed, nullptr, std::memory_order_release);
      }
      std::atomic<Counted*>& node;
      bool active;
    } guard{node_, true};
    Counted* const node = new Node(make());
    guard.active = false;
    return valueOf(publish_(node, claim()));
  }

  void drop() noexcept { put_(nullptr); }

 private:
  struct Counted {
    explicit Counted(void (*d)(Counted*) noexcept) noexcept : destroy(d) {}

    std::atomic<std::uint32_t> count{1};
    void (*destroy)(Counted*) noexcept;
  };
  struct Node : Counted {
    explicit Node(T&& made)
        : Counted([](Counted* node) noexcept { delete static_cast<Node*>(node); }),
          value(std::move(made)) {}

    T value;
  };

  // Stands in the place of the object while one thread makes it.  A number, not the address of
  // something: it has to be the same in every library that this header is compiled into.
  static Counted* claim() noexcept {
    return reinterpret_cast<Counted*>(std::uintptr_t{1});  // NOLINT(performance-no-int-to-ptr)
  }
  static bool isReal(const Counted* node) noexcept { return node != nullptr && node != claim(); }
  static const T* valueOf(const Counted* node) noexcept {
    return isReal(node) ? &static_cast<const Node*>(node)->value : nullptr;
  }

  // Puts the node in the place of nothing or of a claim, or drops it where a node has come before it.
  Counted* publish_(Counted* node, Counted* expected) const noexcept {
    while (!node_.compare_exchange_weak(expected, node, std::memory_order_acq_rel,
                                        std::memory_order_acquire)) {
      if (isReal(expected)) {
        node->destroy(node);
        return expected;
      }
    }
    return node;
  }
  Counted* counted_() const noexcept {
    Counted* const node = node_.load(std::memory_order_acquire);
    if (!isReal(node)) return nullptr;
    node->count.fetch_add(1, std::memory_order_relaxed);
    return node;
  }
  // A load and a store, not an exchange, which would lock the bus: the object is this thread's alone.
  Counted* released_() noexcept {
    Counted* const node = node_.load(std::memory_order_relaxed);
    node_.store(nullptr, std::memory_order_relaxed);
    return node;
  }
  void put_(Counted* node) noexcept {
    Counted* const old = node_.load(std::memory_order_relaxed);
    node_.store(node, std::memory_order_relaxed);
    if (isReal(old) && old->count.fetch_sub(1, std::memory_order_acq_rel) == 1) old->destroy(old);
  }

  mutable std::atomic<Counted*> node_{nullptr};
};

/// Owns an object that guards itself, made by the first question and copied with the shape, or nothing.
template <class T>
class gx_Copied {
 public:
  gx_Copied() noexcept = default;
  gx_Copied(const gx_Copied& o) : object_(o.get() == nullptr ? nullptr : new T(*o.get())) {}
  gx_Copied(gx_Copied&& o) noexcept : object_(o.put_(nullptr)) {}
  gx_Copied& operator=(gx_Copied o) noexcept {
    o.put_(put_(o.object_.load(std::memory_order_relaxed)));
    return *this;
  }
  ~gx_Copied() { drop(); }

  /// Returns the object, null where there is none yet.
  T* get() const noexcept { return object_.load(std::memory_order_acquire); }
  /// Returns the object, made first where there is none.
  T& made() const {
    if (T* object = get()) return *object;
    T* const mine = new T();
    T* theirs = nullptr;
    if (object_.compare_exchange_strong(theirs, mine, std::memory_order_acq_rel,
                                        std::memory_order_acquire)) {
      return *mine;
    }
    delete mine;
    return *theirs;
  }
  void drop() noexcept { delete put_(nullptr); }

 private:
  // Not an exchange: the object is this thread's alone.
  T* put_(T* object) noexcept {
    T* const old = object_.load(std::memory_order_relaxed);
    object_.store(object, std::memory_order_relaxed);
    return old;
  }

  mutable std::atomic<T*> object_{nullptr};
};
