// Twenty thousand small outlines, as a line sees them in a second: 5 to 120 points each.
#pragma once

#include <velstd/vector.h>

#include <cstddef>
#include <vector>

constexpr std::size_t gx_kSmallOutlines = 20000;

// The outlines, the same in every run.  Three in four are real ones, the coins, countries and glyphs of
// tests/data: every so many-th point of those above 120 points, turned, stretched by up to a tenth and
// moved to a place in a picture of 2,000 pixels, so that no two are alike.  The fourth is made of points
// around a centre at uneven radii.  Seen from the first to the last the four kinds take turns.
const std::vector<std::vector<gxVector<2>>>& gx_smallOutlines();

// Returns `count` points spread over the box of an outline enlarged by a fifth; of outlines with equally
// many points, at the same places in their boxes.
std::vector<gxVector<2>> gx_pointsAcross(const std::vector<gxVector<2>>& outline, std::size_t count);
