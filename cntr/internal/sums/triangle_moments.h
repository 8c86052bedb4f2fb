/// The moments of one triangle.
#pragma once

#include <cntr/export.h>
#include <cntr/shapestat.h>
#include <velstd/vector.h>

/// How far the foot of an altitude may lie outside its side, in terms of the distances from the
/// opposite corner to the side and to its line.
inline constexpr double gx_kFootSlack = 1e-10;

/// Returns the moments of the triangle c, p, q, computed in a frame whose x axis is one of its
/// sides; the area is negative where the corners run clockwise.
GXSHAPE_API gx_InertiaData gx_triangleMoments(gxVector<2> c, gxVector<2> p, gxVector<2> q);
