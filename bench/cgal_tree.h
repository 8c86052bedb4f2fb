// The edges of an outline in CGAL's tree of boxes.  The tree of this version is one of space, so the
// outline lies in the plane z = 0; coordinates are plain doubles, the fastest that CGAL offers.
#pragma once

#ifdef GXSHAPE_HAVE_CGAL

#  include <CGAL/AABB_segment_primitive.h>
#  include <CGAL/AABB_traits.h>
#  include <CGAL/AABB_tree.h>
#  include <CGAL/Simple_cartesian.h>
#  include <velstd/vector.h>

#  include <memory>
#  include <vector>

using gx_CgalKernel = CGAL::Simple_cartesian<double>;
using gx_CgalSegments = std::vector<gx_CgalKernel::Segment_3>;
using gx_CgalPrimitive = CGAL::AABB_segment_primitive<gx_CgalKernel, gx_CgalSegments::const_iterator>;
using gx_CgalTree = CGAL::AABB_tree<CGAL::AABB_traits<gx_CgalKernel, gx_CgalPrimitive>>;

inline gx_CgalKernel::Point_3 gx_cgalPoint(const gxVector<2>& p) {
  return {p.x(), p.y(), 0.0};
}

inline gx_CgalSegments gx_cgalEdges(const std::vector<gxVector<2>>& outline) {
  gx_CgalSegments edges;
  edges.reserve(outline.size());
  for (std::size_t i = 0; i < outline.size(); ++i) {
    edges.emplace_back(gx_cgalPoint(outline[i]), gx_cgalPoint(outline[(i + 1) % outline.size()]));
  }
  return edges;
}

inline std::unique_ptr<gx_CgalTree> gx_cgalTree(const gx_CgalSegments& edges) {
  auto tree = std::make_unique<gx_CgalTree>(edges.begin(), edges.end());
  tree->build();
  return tree;
}

#endif
