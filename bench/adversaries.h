// Outlines that are made to be awkward for indexes: see gx_adversary.
#pragma once

#include <velstd/line_seg.h>
#include <velstd/vector.h>

#include <cstdint>
#include <string>
#include <vector>

// The names of gx_adversary, `smooth` excepted.
const std::vector<std::string>& gx_adversaryNames();

// `count` points, of the size of an outline of that many points one pixel apart:
//   polygon  a regular one: from its centre all vertices are equally far
//   line     random places on one line, forth and back
//   comb     a simple outline with long teeth a pixel wide
//   spiral   a simple outline: a strip that winds inwards
//   equal    all points equal
//   outlier  a smooth outline, one vertex at 1e12
//   nan      a smooth outline, one vertex not a number
//   tangle   random points in a square: about a quarter of all pairs of edges cross
//   smooth   an ordinary one, gx_wobblyOutline
std::vector<gxVector<2>> gx_adversary(const std::string& name, std::int64_t count);

// What is asked of an outline.
struct gx_Questions {
  gxVector<2> middle;  // off the middle of the box of its vertices, those far away excepted
  gxVector<2> nearby;  // half a pixel off a vertex
  gxLineSeg across;    // from corner to corner of that box, and a little beyond
};
gx_Questions gx_questionsTo(const std::vector<gxVector<2>>& outline);

// The outline turned by that many radians, then moved.
std::vector<gxVector<2>> gx_turned(const std::vector<gxVector<2>>& outline, double radians,
                                   const gxVector<2>& shift);
