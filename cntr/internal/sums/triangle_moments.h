/// The moments of one triangle.
#pragma once

#include <cntr/export.h>
#include <cntr/shapestat.h>
#include <velstd/vector.h>

/// Returns the moments of the triangle c, p, q, computed in a frame whose x axis is one of its
/// sides; the area is negative where the corners run clockwise.
GXSHAPE_API gx_InertiaData gx_triangleMoments(gxVector<2> c, gxVector<2> p, gxVector<2> q);
