/// The moments of one triangle, and of a polygon as a fan of triangles.
#pragma once

#include <cntr/export.h>
#include <cntr/shapestat.h>
#include <velstd/vector.h>

#include <vector>

/// Returns the moments of the triangle c, p, q, computed in a frame whose x axis is one of its
/// sides; the area is negative where the corners run clockwise.
GXSHAPE_API gx_InertiaData gx_triangleMoments(gxVector<2> c, gxVector<2> p, gxVector<2> q);

/// Returns the moments of a closed polygon of at least 3 points from the fan around `apex`: what
/// `gf_InertiaDataPolygon` gives, where that is the centre of mass, or the first point for want of area.
gx_InertiaData gx_inertiaAround(const gxVector<2>& apex, const std::vector<gxVector<2>>& points);

/// The same, each triangle a record of its own, whatever the figure.
GXSHAPE_API gx_InertiaData gx_inertiaByTriangles(const gxVector<2>& apex,
                                                 const std::vector<gxVector<2>>& points);
