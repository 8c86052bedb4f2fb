/// The distance of a gliding point from a whole shape, stretch by stretch.
#pragma once

#include <cntr/export.h>
#include <gauge/internal/border_tree.h>
#include <gauge/internal/glide.h>

#include <cstddef>
#include <vector>

/// A stretch of an edge on which one edge of the other shape is the nearest.
struct gx_Stretch {
  double t0 = 0.0;
  double t1 = 1.0;
  std::size_t feature = 0;
};

/// Finds, along one edge after the other, which edge of a shape is the nearest where.
class GXSHAPE_API gx_Envelope {
 public:
  explicit gx_Envelope(const gx_BorderTree& shape) : shape_(shape) {}

  /// Returns, up to the next call, the stretches of the segment in order, from t 0 to 1; neighbours have
  /// different edges.
  const std::vector<gx_Stretch>& along(const gx_Piece& glide);

 private:
  using Stretches = std::vector<gx_Stretch>;

  void part_(const gx_Piece& glide, double t0, std::size_t f, double t1, std::size_t g,
             std::size_t parents, int depth);
  Stretches lowest_(const gx_Piece& glide, double t0, double t1, std::size_t first,
                    std::size_t end) const;
  Stretches merged_(const gx_Piece& glide, const Stretches& a, const Stretches& b) const;
  void append_(Stretches& stretches, const gx_Stretch& next) const;

  const gx_BorderTree& shape_;
  std::size_t guess_ = 0;
  std::vector<std::size_t> candidates_;
  Stretches found_;
};
