// Outlines as GEOS geometries.  To be included before any header of GEOS: it says that the C++ interface
// is wanted.
#pragma once

#ifdef GXSHAPE_HAVE_GEOS

#  define USE_UNSTABLE_GEOS_CPP_API
#  include <geos/geom/CoordinateArraySequence.h>
#  include <geos/geom/GeometryFactory.h>
#  include <geos/geom/LinearRing.h>
#  include <geos/geom/Polygon.h>
#  include <velstd/vector.h>

#  include <memory>
#  include <utility>
#  include <vector>

inline std::unique_ptr<geos::geom::CoordinateArraySequence> gx_geosSequence(
    const std::vector<gxVector<2>>& outline) {
  std::vector<geos::geom::Coordinate> coordinates;
  coordinates.reserve(outline.size() + 1);
  for (const gxVector<2>& p : outline) coordinates.emplace_back(p.x(), p.y());
  coordinates.push_back(coordinates.front());
  return std::make_unique<geos::geom::CoordinateArraySequence>(std::move(coordinates), 2);
}

inline std::unique_ptr<geos::geom::LinearRing> gx_geosRing(const std::vector<gxVector<2>>& outline) {
  return geos::geom::GeometryFactory::getDefaultInstance()->createLinearRing(gx_geosSequence(outline));
}

inline std::unique_ptr<geos::geom::Polygon> gx_geosPolygon(const std::vector<gxVector<2>>& outline) {
  return geos::geom::GeometryFactory::getDefaultInstance()->createPolygon(gx_geosRing(outline));
}

#endif
