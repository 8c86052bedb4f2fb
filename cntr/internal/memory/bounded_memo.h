/// A bounded memory of answers by their argument.
#pragma once

#include <cntr/internal/memory/eviction.h>
#include <velstd/xform.h>

#include <cmath>
#include <map>

/// The order of angles as keys: their numbers.  A NaN is no key.
struct gx_AngleKey {
  static bool usable(double angle) { return !std::isnan(angle); }
  bool operator()(double a, double b) const { return a < b; }
};

/// The order of transforms as keys: the first five of the seven stored numbers, exactly, one after
/// the other.  Transforms that differ in yx alone are one key, on purpose: yx and the determinant
/// take no part.  A NaN among the five makes no key.
struct gx_XformKey {
  static constexpr int kCompared = 5;

  static bool usable(const gxXform<2>& x) {
    for (int i = 0; i < kCompared; ++i) {
      if (std::isnan(x.stored(i))) return false;
    }
    return true;
  }
  bool operator()(const gxXform<2>& a, const gxXform<2>& b) const {
    for (int i = 0; i < kCompared; ++i) {
      if (a.stored(i) < b.stored(i)) return true;
      if (b.stored(i) < a.stored(i)) return false;
    }
    return false;
  }
};

/// Answers remembered by their argument, at most `limit` + 1 of them: while the number of entries
/// is not above the limit, a new one is added; after that it takes the place of one drawn at
/// random, so that no pattern of questions can make the memory useless for ever.
template <class Key, class Value, class Order>
class gx_BoundedMemo {
 public:
  /// Returns the remembered answer, null where there is none.
  const Value* find(const Key& key) const {
    if (!Order::usable(key)) return nullptr;
    const auto found = entries_.find(key);
    return found == entries_.end() ? nullptr : &found->second;
  }

  /// Remembers an answer that `find` did not know.
  void insert(const Key& key, const Value& value, long limit) {
    if (!Order::usable(key)) return;
    const long size = static_cast<long>(entries_.size());
    if (size <= limit) {
      entries_.insert_or_assign(key, value);
      return;
    }
    const long evicted = gx_drawEvicted(size);
    auto place = entries_.emplace(key, value).first;  // made first: when it throws, nothing is lost
    auto victim = entries_.begin();
    for (long passed = 0;; ++victim) {  // the position drawn counts the old entries only
      if (victim == place) continue;
      if (passed == evicted) break;
      ++passed;
    }
    entries_.erase(victim);
  }

  long size() const { return static_cast<long>(entries_.size()); }

 private:
  std::map<Key, Value, Order> entries_;
};
