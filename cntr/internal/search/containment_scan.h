/// Point in polygon by one look at every edge, for few edges or few questions.
#pragma once

#include <cntr/export.h>
#include <cntr/internal/index/containment_grid.h>
#include <velstd/rect.h>
#include <velstd/vector.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// What a scan over so many points costs, about, in nanoseconds.
constexpr std::uint64_t gx_scanEffort(std::size_t points) {
  return 20 + 2 * static_cast<std::uint64_t>(points);
}

/// Tells on which side of the closed outline of at least 3 points a point lies, with the answer of the
/// counted ray, or that it cannot tell (see containment_grid.cpp for what must be so for that).
/// `box` is the upright box of the points, `reach` the radius of the circle around the first point that
/// holds all others.  Not `wide`: without the widest registers of the machine; the answers are the same.
GXSHAPE_API gx_ContainmentGrid::Answer gx_scanContainment(const std::vector<gxVector<2>>& points,
                                                          const gxRect& box, double reach,
                                                          const gxVector<2>& point, bool wide = true);
