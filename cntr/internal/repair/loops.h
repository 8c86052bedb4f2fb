/// The clean-up of a walked outline into a single loop.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/vertex_grid.h>
#include <velstd/budget.h>
#include <velstd/vector.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

/// An ordered list of closed loops, which are cut, dropped and joined by the vertices they share.
/// Vertices nearer to each other than 1e-6 are one point of the plane; which of several is met first
/// is decided as by `gxContour::vertexIndex`.
class GXSHAPE_API gx_Loops {
 public:
  using Points = std::vector<gxVector<2>>;

  /// Tells whether a point lies inside one closed outline.
  using Inside = std::function<bool(const gxVector<2>&)>;
  /// Returns that question for an outline; the outline need not outlive the call.
  using InsideOf = std::function<Inside(const Points&)>;

  /// All operations spend steps of the budget, where there is one; it must outlive the loops.
  explicit gx_Loops(const std::vector<Points>& loops, gxBudget* budget = nullptr);

  /// Cuts every loop at each point that it passes twice, until none does.  The part from the first
  /// pass up to the second keeps the loop's place and is scanned again from its first vertex; the part
  /// from the second pass on is appended and scanned in its turn.
  ///  - a part of one point is dropped, and the other keeps the place; where both are one point, the
  ///    loop is removed, unless it is the only one, which then stays as it is
  /// To be called once at most, before the others.
  void cutAtPinchPoints();

  /// Removes every loop whose test point, half way from its first point to its second, lies inside
  /// another loop.  The last loop takes the place of a removed one, and the scan starts again.
  /// What is inside another loop, `insideOf` says.
  void dropInnerLoops(const InsideOf& insideOf);

  /// Joins two loops that share a vertex into one that walks around the first, from the first vertex
  /// it shares with the second, and then around the second from there.  The joined loop takes the
  /// place of the first, the last loop that of the second, and the scan starts again.
  void joinTouchingLoops();

  std::size_t size() const { return order_.size(); }
  /// Returns the points of loop i in order.
  Points outline(std::size_t i) const { return pointsOf_(order_[i]); }

 private:
  friend class gx_LoopJoiner;

  using Index = std::uint32_t;

  // The ring of links that its first vertex lies on.  While loops are being cut, the vertices from
  // `scanned` to `end` are those that may still meet another one of the loop.
  struct Loop {
    Index first;
    Index count;
    Index scanned;
    Index end;
  };

  void spend_(std::size_t steps) const {
    if (budget_ != nullptr) budget_->spend(steps);
  }
  void findTwins_();
  void link_(Index from, Index to);
  Points pointsOf_(std::size_t loop) const;
  std::vector<Index> twinsOf_(Index vertex) const;
  std::optional<Index> firstTwinBetween_(Index vertex, Index end) const;
  std::optional<Index> findPinch_(Loop& loop) const;

  gxBudget* budget_;
  Points points_;  // of all loops, one after the other
  std::vector<Index> next_;
  std::vector<Index> previous_;
  std::vector<Loop> loops_;
  std::vector<std::size_t> order_;  // the loops that are left, by their place in the list

  // How many others share a vertex's point, kMany for more than one, and the only one.
  static constexpr std::uint8_t kMany = 2;
  std::vector<std::uint8_t> twinCount_;
  std::vector<Index> twin_;

  // Where there are many: all vertices that share their point, and a grid over these.
  std::vector<Index> crowd_;
  Points crowdPoints_;
  std::optional<gx_VertexGrid> crowdGrid_;
};
