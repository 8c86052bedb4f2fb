// The edges or the vertices of an outline in Boost.Geometry's R-tree, filled at once by its packing
// constructor.
#pragma once

#ifdef GXSHAPE_HAVE_BOOST

#  include <velstd/vector.h>
#  include <boost/geometry.hpp>
#  include <boost/geometry/geometries/point_xy.hpp>
#  include <boost/geometry/geometries/segment.hpp>
#  include <boost/geometry/index/rtree.hpp>

#  include <cstdint>
#  include <utility>
#  include <vector>

using gx_BoostPoint = boost::geometry::model::d2::point_xy<double>;
using gx_BoostSegment = boost::geometry::model::segment<gx_BoostPoint>;
using gx_BoostVertex = std::pair<gx_BoostPoint, std::uint32_t>;
// The packing constructor fills nodes to the maximal number of children: of 4, 8,
// 16 and 32 the fastest to find the nearest edge and vertex of 100,000 is 8 (16 fills a fifth faster).
using gx_BoostRule = boost::geometry::index::quadratic<8>;
using gx_BoostEdgeTree = boost::geometry::index::rtree<gx_BoostSegment, gx_BoostRule>;
using gx_BoostVertexTree = boost::geometry::index::rtree<gx_BoostVertex, gx_BoostRule>;

inline gx_BoostPoint gx_boostPoint(const gxVector<2>& p) {
  return {p.x(), p.y()};
}

inline std::vector<gx_BoostSegment> gx_boostEdges(const std::vector<gxVector<2>>& outline) {
  std::vector<gx_BoostSegment> edges;
  edges.reserve(outline.size());
  for (std::size_t i = 0; i < outline.size(); ++i) {
    edges.emplace_back(gx_boostPoint(outline[i]), gx_boostPoint(outline[(i + 1) % outline.size()]));
  }
  return edges;
}

inline std::vector<gx_BoostVertex> gx_boostVertices(const std::vector<gxVector<2>>& outline) {
  std::vector<gx_BoostVertex> vertices;
  vertices.reserve(outline.size());
  for (const gxVector<2>& p : outline) {
    vertices.emplace_back(gx_boostPoint(p), static_cast<std::uint32_t>(vertices.size()));
  }
  return vertices;
}

// A closed linestring, the first point repeated.
inline boost::geometry::model::linestring<gx_BoostPoint> gx_boostLine(
    const std::vector<gxVector<2>>& outline) {
  boost::geometry::model::linestring<gx_BoostPoint> line;
  for (const gxVector<2>& p : outline) line.push_back(gx_boostPoint(p));
  line.push_back(line.front());
  return line;
}

#endif
