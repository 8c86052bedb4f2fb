/// A pointer to an optional part of a value.
#pragma once

#include <memory>
#include <utility>

/// Owns an object or nothing, and copies the object with itself: a part of a value that is made
/// only when it is needed.
template <class T>
class gx_DeepPtr {
 public:
  gx_DeepPtr() noexcept = default;
  gx_DeepPtr(const gx_DeepPtr& o) : object_(o.object_ ? std::make_unique<T>(*o.object_) : nullptr) {}
  gx_DeepPtr(gx_DeepPtr&&) noexcept = default;
  gx_DeepPtr& operator=(gx_DeepPtr o) noexcept {
    object_ = std::move(o.object_);
    return *this;
  }
  ~gx_DeepPtr() = default;

  /// Returns the object, null where there is none.
  T* get() const noexcept { return object_.get(); }
  /// Returns the object, made first where there is none.
  template <class... Arguments>
  T& made(Arguments&&... arguments) {
    if (!object_) object_ = std::make_unique<T>(std::forward<Arguments>(arguments)...);
    return *object_;
  }
  void reset() noexcept { object_.reset(); }
  explicit operator bool() const noexcept { return object_ != nullptr; }

 private:
  std::unique_ptr<T> object_;
};
