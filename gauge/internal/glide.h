/// Distances seen from a point that glides along a segment.
#pragma once

#include <cntr/export.h>
#include <gauge/internal/border_tree.h>
#include <velstd/vector.h>

#include <array>
#include <cstddef>

/// The square of the distance of a gliding point from a segment, on a stretch on which the same end, or
/// the inside, is the nearest part: a + b u + c u², with u counted from the start of the stretch.  Above
/// the inside it is the square of `at` + `slope` u, whose sign tells the side (positive on the left).
struct gx_GlideZone {
  bool inside = false;
  double a = 0.0;
  double b = 0.0;
  double c = 0.0;
  double at = 0.0;
  double slope = 0.0;
};

/// Returns the zone on a stretch that begins at t0 and holds `middle`; the point is at glide.at(t).
GXSHAPE_API gx_GlideZone gx_zoneOf(const gx_Piece& glide, const gx_Piece& segment, double t0,
                                   double middle);

/// Where a stretch is cut: a few parameters, ascending.
struct gx_Cuts {
  std::array<double, 6> t{};
  std::size_t count = 0;
  void add(double cut) {
    std::size_t i = count++;
    for (; i > 0 && t[i - 1] > cut; --i) t[i] = t[i - 1];
    t[i] = cut;
  }
};

/// Appends to `cuts` where, strictly between t0 and t1, the nearest part of the segment changes: where
/// the foot passes an end.
GXSHAPE_API void gx_addZoneCuts(const gx_Piece& glide, const gx_Piece& segment, double t0, double t1,
                                gx_Cuts& cuts);

/// The roots of two distances being equal, or of one being a given one; at most four, ascending.
struct gx_Roots {
  std::array<double, 4> u{};
  std::size_t count = 0;
  void add(double root) {
    std::size_t i = count++;
    for (; i > 0 && u[i - 1] > root; --i) u[i] = u[i - 1];
    u[i] = root;
  }
};

/// Returns where a + b u + c u² is 0, without cancellation; nothing where it always is, or never.
GXSHAPE_API void gx_addRoots(double a, double b, double c, gx_Roots& roots);

/// Returns where both zones, of the same stretch, are equally far.
GXSHAPE_API gx_Roots gx_equalRoots(const gx_GlideZone& f, const gx_GlideZone& g);

/// Of two segments, where on [t0, t1] the smaller of their distances is greatest, the ends aside where
/// there is a better place inside; and the square of that distance.
struct gx_Summit {
  double t = 0.0;
  double square = 0.0;
};
GXSHAPE_API gx_Summit gx_summitOf(const gx_Piece& glide, const gx_Piece& f, const gx_Piece& g, double t0,
                                  double t1);
