/// The exact area of an overlay of rings on whole numbers.
#pragma once

#include <support/overlay_judge.h>

namespace judge {

/// The largest coordinate, in magnitude, that `judgeBySlabs` takes: all its whole numbers then fit.
constexpr int kMostWhole = 4096;

/// Cuts the plane into upright slabs at the x of every vertex and crossing, sorts the edges of a slab by
/// their height in its middle, and adds up the trapezoids between them that the answer holds.  All
/// comparisons are of fractions of 128-bit integers; the sum is of 113 bits.
/// Throws: std::invalid_argument for coordinates that are no whole numbers of that size.
Answer judgeBySlabs(const Question& question);

}  // namespace judge
