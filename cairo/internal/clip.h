/// Cutting lines and rings to a box.
#pragma once

#include <cairo/export.h>
#include <velstd/pair.h>

#include <vector>

/// An upright box.
struct gx_CutBox {
  gxPair<double> low, high;
  bool contains(const gxPair<double>& p) const {
    return p.x() >= low.x() && p.x() <= high.x() && p.y() >= low.y() && p.y() <= high.y();
  }
};

/// Cuts a segment to the box; false where nothing of it is within.  Both ends must be finite.
GXSHAPE_CAIRO_API bool gf_ClipSegment(const gx_CutBox& box, gxPair<double>& from, gxPair<double>& to);
/// Cuts a ring to the box: the result goes around each point within as often as the ring does.  Where it
/// leaves the box, edges run along the border.
GXSHAPE_CAIRO_API std::vector<gxPair<double>> gf_ClipRing(const gx_CutBox& box,
                                                          std::vector<gxPair<double>> ring);
