/// Reference-counted objects and the handles that own them.
#pragma once

#include <velstd/exception.h>
#include <velstd/export.h>

#include <atomic>
#include <cstddef>
#include <type_traits>
#include <utility>

/// Adds 1 to the count, atomically, and returns the new value.
VELSTD_API long gfInterlockedIncrement(std::atomic<long>& count) noexcept;
/// Takes 1 from the count, atomically, and returns the new value.
VELSTD_API long gfInterlockedDecrement(std::atomic<long>& count) noexcept;

/// The base class of objects that handles can share.  It holds the number of handles, which is
/// neither copied, assigned nor moved: it belongs to the object, not to its value.
///
/// An object on the heap belongs to its handles: when the last one lets go, it is destroyed.  An
/// object that a handle never held is destroyed by its owner; never give a handle the address of an
/// object on the stack.  (`gfMakeHandle` makes object and handle in one step, and leaves nothing to get
/// wrong.)
///
/// The count sits in the object, not beside it as that of a `std::shared_ptr`: a handle is one pointer and
/// can be made again from the plain address of an object that other handles share.
class VELSTD_API gxRepBase {
 public:
  gxRepBase() noexcept = default;
  gxRepBase(const gxRepBase&) noexcept {}
  gxRepBase& operator=(const gxRepBase&) noexcept { return *this; }
  virtual ~gxRepBase();

  /// Returns how many handles share the object at this moment.
  long refCount() const noexcept { return count_.load(std::memory_order_relaxed); }

 private:
  friend class gx_PtrHandleBase_RepAccessor;

  mutable std::atomic<long> count_{0};
};

/// The one place that changes reference counts and destroys what is no longer held.
///
/// Destruction does not recurse without bound: an object that dies while 32 others of the same
/// thread are being destroyed waits in a list (threaded through the counts, so that no memory is
/// needed) until the outermost is gone.  A chain of a million objects dies on any stack.
class VELSTD_API gx_PtrHandleBase_RepAccessor {
 public:
  static void acquire(const gxRepBase* rep) noexcept;
  static void release(const gxRepBase* rep) noexcept;
};

/// What every handle has: shared ownership of one object, held as its reference-counted base, so
/// that a handle can be copied and destroyed where the object's class is not known.
class VELSTD_API gxPtrHandleBase_const {
 public:
  /// Tells whether the handle refers to no object.
  bool isNull() const noexcept { return rep_ == nullptr; }
  explicit operator bool() const noexcept { return rep_ != nullptr; }

 protected:
  /// Makes a handle to no object.
  gxPtrHandleBase_const() noexcept = default;
  /// Makes a handle to this object, or to none.
  explicit gxPtrHandleBase_const(const gxRepBase* rep) noexcept : rep_(rep) {
    gx_PtrHandleBase_RepAccessor::acquire(rep_);
  }
  gxPtrHandleBase_const(const gxPtrHandleBase_const& o) noexcept : gxPtrHandleBase_const(o.rep_) {}
  gxPtrHandleBase_const(gxPtrHandleBase_const&& o) noexcept : rep_(std::exchange(o.rep_, nullptr)) {}
  ~gxPtrHandleBase_const() { gx_PtrHandleBase_RepAccessor::release(rep_); }

  gxPtrHandleBase_const& operator=(const gxPtrHandleBase_const&) = delete;
  gxPtrHandleBase_const& operator=(gxPtrHandleBase_const&&) = delete;

  /// Exchanges the objects of two handles.
  void swapRep_(gxPtrHandleBase_const& o) noexcept { std::swap(rep_, o.rep_); }

 private:
  const gxRepBase* rep_ = nullptr;
};

/// The base of handles through which the object may be changed.
class VELSTD_API gxPtrHandleBase : public gxPtrHandleBase_const {
 protected:
  using gxPtrHandleBase_const::gxPtrHandleBase_const;
};

/// A shared owner of a `T` that may change it; null by default.
///
/// Copies share the object; the last one to let go destroys it.  Counting is atomic, so that
/// handles to one object may be copied and dropped on different threads; using the object itself
/// is not guarded: its const operations may run concurrently, any other one needs it to itself.
///
/// Two objects that hold handles to each other keep each other alive for ever: nothing looks for cycles.
template <class T>
class gxPtrHandle : public gxPtrHandleBase {
 public:
  gxPtrHandle() noexcept = default;
  /// Makes a handle to no object.
  gxPtrHandle(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)
  /// Takes part in owning an object on the heap (null gives a null handle).
  explicit gxPtrHandle(T* object) noexcept : gxPtrHandleBase(object), object_(object) {}
  /// Copies and moves, also from a handle to a derived class.
  gxPtrHandle(const gxPtrHandle&) noexcept = default;
  gxPtrHandle(gxPtrHandle&& o) noexcept
      : gxPtrHandleBase(std::move(o)), object_(std::exchange(o.object_, nullptr)) {}
  template <class D, class = std::enable_if_t<std::is_convertible_v<D*, T*>>>
  gxPtrHandle(const gxPtrHandle<D>& o) noexcept  // NOLINT(google-explicit-constructor)
      : gxPtrHandleBase(o), object_(o.get()) {}
  ~gxPtrHandle() = default;

  // By value: the old object is released last, after this handle holds the new one, so that
  // assigning from something that the old object owned is safe.
  /// Lets go of the present object and takes part in owning the other one.
  gxPtrHandle& operator=(gxPtrHandle o) noexcept {
    std::swap(object_, o.object_);
    this->swapRep_(o);
    return *this;
  }

  /// Returns the object's address, null for a null handle.
  T* get() const noexcept { return object_; }
  /// Gives the object.  Throws: gxBadPointer when the handle is null.
  T& operator*() const { return *checked_(); }
  /// Gives access to the object's members.  Throws: gxBadPointer when the handle is null.
  T* operator->() const { return checked_(); }

  /// Is true when both refer to the same object, or both to none.
  friend bool operator==(const gxPtrHandle& a, const gxPtrHandle& b) noexcept {
    return a.object_ == b.object_;
  }

 private:
  T* checked_() const {
    if (object_ == nullptr) throw gxBadPointer();
    return object_;
  }

  T* object_ = nullptr;
};

/// A shared owner of a `T` through which it is only read; null by default.  Otherwise as
/// `gxPtrHandle`, which turns into it by itself.
template <class T>
class gxPtrHandle_const : public gxPtrHandleBase_const {
 public:
  gxPtrHandle_const() noexcept = default;
  /// Makes a handle to no object, or to this one.
  gxPtrHandle_const(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)
  explicit gxPtrHandle_const(const T* object) noexcept
      : gxPtrHandleBase_const(object), object_(object) {}
  /// Copies and moves, also from a handle to a derived class or to one that may be written.
  gxPtrHandle_const(const gxPtrHandle_const&) noexcept = default;
  gxPtrHandle_const(gxPtrHandle_const&& o) noexcept
      : gxPtrHandleBase_const(std::move(o)), object_(std::exchange(o.object_, nullptr)) {}
  template <class D, class = std::enable_if_t<std::is_convertible_v<const D*, const T*>>>
  gxPtrHandle_const(const gxPtrHandle_const<D>& o) noexcept  // NOLINT(google-explicit-constructor)
      : gxPtrHandleBase_const(o), object_(o.get()) {}
  template <class D, class = std::enable_if_t<std::is_convertible_v<const D*, const T*>>>
  gxPtrHandle_const(const gxPtrHandle<D>& o) noexcept  // NOLINT(google-explicit-constructor)
      : gxPtrHandleBase_const(o), object_(o.get()) {}
  ~gxPtrHandle_const() = default;

  // By value: the old object is released last, after this handle holds the new one, so that
  // assigning from something that the old object owned is safe.
  /// Lets go of the present object and takes part in owning the other one.
  gxPtrHandle_const& operator=(gxPtrHandle_const o) noexcept {
    std::swap(object_, o.object_);
    this->swapRep_(o);
    return *this;
  }

  /// Returns the object's address, null for a null handle.
  const T* get() const noexcept { return object_; }
  /// Gives the object.  Throws: gxBadPointer when the handle is null.
  const T& operator*() const { return *checked_(); }
  /// Gives access to the object's members.  Throws: gxBadPointer when the handle is null.
  const T* operator->() const { return checked_(); }

  /// Is true when both refer to the same object, or both to none.
  friend bool operator==(const gxPtrHandle_const& a, const gxPtrHandle_const& b) noexcept {
    return a.object_ == b.object_;
  }

 private:
  const T* checked_() const {
    if (object_ == nullptr) throw gxBadPointer();
    return object_;
  }

  const T* object_ = nullptr;
};

/// Makes an object on the heap from these arguments and returns the handle that owns it.
/// Throws: what the constructor of the object throws.
template <class T, class... Arguments>
gxPtrHandle<T> gfMakeHandle(Arguments&&... arguments) {
  return gxPtrHandle<T>(new T(std::forward<Arguments>(arguments)...));
}
