/// What is known of the tolerances that vertices were looked up with.
#pragma once

#include <cntr/internal/memo/latch.h>
#include <cntr/internal/memo/published.h>
#include <cntr/internal/memo/shared_part.h>

#include <cstddef>
#include <list>
#include <memory>
#include <utility>
#include <vector>

class gx_VertexGrid;

/// What is known of one tolerance.
struct gx_VertexLookup {
  explicit gx_VertexLookup(double t) : tolerance(t) {}

  double tolerance;
  gx_Effort questions;            // answered by looking at every vertex, before there was a grid
  gx_Shared<gx_VertexGrid> grid;  // made when the questions have cost as much as it does
};

/// The tolerances known, at most `limit` + 1 of them, in the order of their last use: a new one takes the
/// place of the one that was asked for the longest ago.
class gx_VertexLookups {
 public:
  using Known = std::shared_ptr<const gx_VertexLookup>;

  gx_VertexLookups() = default;
  gx_VertexLookups(const gx_VertexLookups& other) {
    for (const Known& known : other.all_())
      inOrder_.push_back(std::make_shared<gx_VertexLookup>(*known));
  }
  gx_VertexLookups& operator=(const gx_VertexLookups&) = delete;
  ~gx_VertexLookups() = default;

  /// Returns what is known of the tolerance, which is now the one used last.
  Known used(double tolerance, long limit) {
    if (Known known = find_(tolerance)) return known;
    std::list<Known> mine{std::make_shared<gx_VertexLookup>(tolerance)};
    std::list<Known> oldest;
    return insert_(mine, oldest, limit);
  }

  std::size_t size() const {
    const gx_Latch::Hold hold(latch_);
    return inOrder_.size();
  }

 private:
  Known find_(double tolerance) {
    const gx_Latch::Hold hold(latch_);
    return findHeld_(tolerance);
  }
  Known findHeld_(double tolerance) {
    for (auto at = inOrder_.end(); at != inOrder_.begin();) {
      --at;
      if ((*at)->tolerance != tolerance) continue;
      inOrder_.splice(inOrder_.end(), inOrder_, at);
      return inOrder_.back();
    }
    return nullptr;
  }
  // What is taken out dies with `oldest`, after the latch is given back.
  Known insert_(std::list<Known>& mine, std::list<Known>& oldest, long limit) {
    const gx_Latch::Hold hold(latch_);
    if (Known known = findHeld_(mine.front()->tolerance)) return known;
    if (static_cast<long>(inOrder_.size()) > limit) {
      oldest.splice(oldest.end(), inOrder_, inOrder_.begin());
    }
    inOrder_.splice(inOrder_.end(), mine);
    return inOrder_.back();
  }
  // Makes room before it takes the latch, and more where the list has grown meanwhile.
  std::vector<Known> all_() const {
    std::vector<Known> all;
    for (;;) {
      all.reserve(size());
      const gx_Latch::Hold hold(latch_);
      if (inOrder_.size() > all.capacity()) continue;
      all.assign(inOrder_.begin(), inOrder_.end());
      return all;
    }
  }

  mutable gx_Latch latch_;
  std::list<Known> inOrder_;  // the one used last at the end
};
