/// A bounded memory of answers by their argument, for any number of threads.
#pragma once

#include <cntr/internal/memo/eviction.h>
#include <cntr/internal/memo/latch.h>
#include <velstd/xform.h>

#include <cmath>
#include <cstddef>
#include <iterator>
#include <map>
#include <utility>
#include <vector>

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
///
/// Look-ups, insertions and draws of one thread are those of a plain map.  Under the latch nothing is
/// allocated or released: entries are made before and die after.  Which of two threads that insert at
/// the same time comes first is chance, and so is then which entry goes.
template <class Key, class Value, class Order>
class gx_KeyedMemo {
 public:
  gx_KeyedMemo() = default;
  gx_KeyedMemo(const gx_KeyedMemo& other) { copyFrom_(other); }
  gx_KeyedMemo& operator=(const gx_KeyedMemo&) = delete;
  ~gx_KeyedMemo() = default;

  /// Puts the remembered answer into `value` and returns true; returns false where there is none.
  bool find(const Key& key, Value& value) const {
    if (!Order::usable(key)) return false;
    const gx_Latch::Hold hold(latch_);
    const auto found = entries_.find(key);
    if (found == entries_.end()) return false;
    value = found->second;
    return true;
  }

  /// Remembers an answer that `find` did not know; where another thread has done so since, nothing
  /// happens, and nothing is drawn.
  void insert(const Key& key, const Value& value, long limit) {
    if (!Order::usable(key)) return;
    Node mine = nodeOf_(key, value);
    bool mayDraw = false;
    Node victim;
    while (!insert_(mine, limit, mayDraw, victim)) {
      gx_prepareDraw();  // allocates, at a thread's first draw, and so not under the latch
      mayDraw = true;
    }
  }

  long size() const {
    const gx_Latch::Hold hold(latch_);
    return static_cast<long>(entries_.size());
  }

 private:
  using Entries = std::map<Key, Value, Order>;
  using Node = typename Entries::node_type;

  static Node nodeOf_(const Key& key, const Value& value) {
    Entries one;
    one.emplace(key, value);
    return one.extract(one.begin());
  }

  // Returns false where there is something to be drawn first and `mayDraw` is false.
  bool insert_(Node& mine, long limit, bool mayDraw, Node& victim) {
    const gx_Latch::Hold hold(latch_);
    if (entries_.find(mine.key()) != entries_.end()) return true;
    const long size = static_cast<long>(entries_.size());
    if (size > limit) {
      if (!mayDraw) return false;
      victim = entries_.extract(std::next(entries_.begin(), gx_drawEvicted(size)));
    }
    entries_.insert(std::move(mine));
    return true;
  }

  // Makes as many nodes as the other memo has entries, fills them under its latch, and makes more where
  // it has grown meanwhile.
  void copyFrom_(const gx_KeyedMemo& other) {
    std::vector<Node> nodes;
    std::size_t filled = 0;
    std::size_t wanted = static_cast<std::size_t>(other.size());
    for (;;) {
      nodes.reserve(wanted);
      while (nodes.size() < wanted) nodes.push_back(nodeOf_(Key(), Value()));
      const gx_Latch::Hold hold(other.latch_);
      if (other.entries_.size() <= nodes.size()) {
        for (const auto& [key, value] : other.entries_) {
          nodes[filled].key() = key;
          nodes[filled].mapped() = value;
          ++filled;
        }
        break;
      }
      wanted = other.entries_.size();
    }
    for (std::size_t i = 0; i < filled; ++i) entries_.insert(entries_.end(), std::move(nodes[i]));
  }

  mutable gx_Latch latch_;
  Entries entries_;
};
