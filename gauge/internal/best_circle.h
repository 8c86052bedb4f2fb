/// The largest circle found so far in the material of a shape.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/outline/box.h>
#include <gauge/internal/locator_data.h>
#include <gauge/internal/segments.h>
#include <velstd/vector.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <queue>
#include <vector>

/// A circle in the material, its radius the distance of its centre from the nearest edge, and the ways to
/// make it larger.  Coordinates are those of the locator's scale.
class GXSHAPE_API gx_BestCircle {
 public:
  gx_BestCircle(const gx_LocatorAccess::Data& data, double tolerance, std::size_t maxLooks);

  /// What is nearest to a place.
  struct Look {
    double distance = 0.0;
    std::size_t nearest = 0;
  };
  /// Looks for the nearest edge.
  Look at(const gxVector<2>& p) {
    ++looks;
    Look look;
    look.nearest = data_.nearestEdge(p);
    look.distance = distanceFrom(look.nearest, p);
    return look;
  }
  /// Tells whether a place is in the material, borders left out.
  bool isInside(const gxVector<2>& p) const { return data_.locate(p).state == gxState::eInside; }
  const gx_Edge& edge(std::size_t i) const { return data_.tree.edges()[i]; }
  double distanceFrom(std::size_t i, const gxVector<2>& p) const {
    return gx_distanceFrom(edge(i).a, edge(i).b, p);
  }

  /// Tells whether more looks were taken than were granted.
  bool spent() const { return looks > maxLooks_; }
  /// How much larger than the best a circle has to be to count.
  double slack() const { return std::max(tolerance_ * radius, rounding_); }
  /// No circle is larger than the box by more than this.
  double widest() const {
    return 0.5 * std::min(box_.highX - box_.lowX, box_.highY - box_.lowY) - radius;
  }
  /// The longer side of the box.
  double size() const { return std::max(box_.highX - box_.lowX, box_.highY - box_.lowY); }

  /// Takes a circle in the material if it is larger, and pushes it.
  void offer(const gxVector<2>& p, double distance);
  /// Takes the largest circle that touches the border at s, its centre in that direction (of length 1), if it
  /// is larger, and pushes it.
  void touch(const gxVector<2>& s, const gxVector<2>& direction);

  /// Tries square cells, the one with the greatest bound first, until their bound is near the best.
  void searchCells();

  gxVector<2> centre;
  double radius = 0.0;
  std::size_t looks = 0;

 private:
  struct Cell {
    gxVector<2> centre;
    double half;
    double bound;
    bool operator<(const Cell& other) const { return bound < other.bound; }
  };
  using Cells = std::priority_queue<Cell>;

  void addCell(const gxVector<2>& middle, double half, Cells& cells);
  bool grow(const gxVector<2>& s, const gxVector<2>& direction);
  void push();
  std::vector<std::size_t> around();
  gxVector<2> awayFrom(std::size_t i) const;
  gxVector<2> farthestFrom(const std::vector<std::size_t>& held, double& reach) const;
  gxVector<2> equidistant(const std::array<std::size_t, 3>& edges) const;

  const gx_LocatorAccess::Data& data_;
  double tolerance_;
  std::size_t maxLooks_;
  gx_Box box_;
  double rounding_ = 0.0;
};
