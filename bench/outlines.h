// The outlines and query points that all benchmarks share, so that every party works on the same input.
//
// All are made from fixed seeds: a second run times the same numbers.
#pragma once

#include <velstd/vector.h>

#include <cstdint>
#include <vector>

// What an edge finder gives for a smooth part: `count` points about one pixel apart, counterclockwise
// around (x, y), the radius a little uneven and noisy. Directions from the centre rise strictly, so
// the outline never crosses itself; its size grows with the number of points, as in a picture of
// higher resolution.
std::vector<gxVector<2>> gx_wobblyOutline(std::int64_t count, double x = 0.0, double y = 0.0);

// The mean radius of such an outline.
double gx_radiusOf(std::int64_t count);

// The same with every 20th point and its successor exchanged. Not every exchange makes the outline cross
// itself, only about count / 75 do: where the noise bends it the other way, it just turns back a little.
std::vector<gxVector<2>> gx_kinkedOutline(std::int64_t count);

// A band about 2 wide, wound up about its middle: out along one side, back along the other. Its boxes lie on
// each other, and it meets itself from 32 points on.
std::vector<gxVector<2>> gx_windingOutline(std::int64_t count);

// The smooth outline with every 20th point moved back along it by about two steps, so that it crosses itself
// there.
std::vector<gxVector<2>> gx_jitteredOutline(std::int64_t count);

// A random walk, which crosses itself all over.
std::vector<gxVector<2>> gx_tangledOutline(std::int64_t count);

// `count` points spread evenly over the square of 2.4 radii around an outline of `outlineSize` points.
std::vector<gxVector<2>> gx_pointsAround(std::int64_t outlineSize, std::int64_t count);

// `count` points within `reach` pixels of the vertices of an outline of `outlineSize` points.
std::vector<gxVector<2>> gx_pointsNear(std::int64_t outlineSize, std::int64_t count, double reach);
