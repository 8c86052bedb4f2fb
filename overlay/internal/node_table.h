/// The nodes of an arrangement by their coordinates.
#pragma once

#include <velstd/vector.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

/// Points, each once, with a number in the order of their coming.  0 and −0 are one coordinate; it is kept
/// as +0 where one of those that came was +0.
///
/// Open addressing with a table at least twice as large as the number of points.
class gx_NodeTable {
 public:
  /// Returns the number of the point, after adding it where it is new.
  std::uint32_t add(const gxVector<2>& p) {
    if (2 * (nodes_.size() + 1) > slots_.size()) grow_();
    const std::size_t slot = slotOf_(p);
    if (slots_[slot] != 0) {
      gxVector<2>& node = nodes_[slots_[slot] - 1];
      if (node.x() == 0.0 || node.y() == 0.0)
        node = {zeroOf_(node.x(), p.x()), zeroOf_(node.y(), p.y())};
      return slots_[slot] - 1;
    }
    nodes_.push_back(p);
    slots_[slot] = static_cast<std::uint32_t>(nodes_.size());
    return slots_[slot] - 1;
  }

  std::size_t size() const { return nodes_.size(); }
  const gxVector<2>& at(std::uint32_t node) const { return nodes_[node]; }
  void clear() {
    nodes_.clear();
    slots_.clear();
  }

 private:
  static double zeroOf_(double kept, double came) { return kept == 0.0 ? kept + came : kept; }

  std::size_t slotOf_(const gxVector<2>& p) const {
    const auto x = std::bit_cast<std::uint64_t>(p.x() + 0.0);
    const auto y = std::bit_cast<std::uint64_t>(p.y() + 0.0);
    std::uint64_t h = (x ^ (y << 32U | y >> 32U)) * 0x9e3779b97f4a7c15U + y;
    h = (h ^ (h >> 32U)) * 0xd6e8feb86659fd93U;
    std::size_t slot = static_cast<std::size_t>(h >> 20U) & (slots_.size() - 1);
    while (slots_[slot] != 0 && !(nodes_[slots_[slot] - 1] == p))
      slot = (slot + 1) & (slots_.size() - 1);
    return slot;
  }

  void grow_() {
    slots_.assign(slots_.empty() ? 32 : 4 * slots_.size(), 0);
    if (nodes_.empty()) nodes_.reserve(slots_.size() / 2);
    for (std::size_t i = 0; i < nodes_.size(); ++i)
      slots_[slotOf_(nodes_[i])] = static_cast<std::uint32_t>(i + 1);
  }

  std::vector<gxVector<2>> nodes_;
  std::vector<std::uint32_t> slots_;  // a number and one, 0 where free
};
