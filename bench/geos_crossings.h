// All crossings with a prepared outline through GEOS: its edges as monotone chains in a tree, the
// index that its prepared geometries use too.
#pragma once

#ifdef GXSHAPE_HAVE_GEOS

#  include "geos_outline.h"

#  include <geos/algorithm/LineIntersector.h>
#  include <geos/noding/BasicSegmentString.h>
#  include <geos/noding/MCIndexSegmentSetMutualIntersector.h>
#  include <geos/noding/SegmentIntersector.h>

#  include <memory>
#  include <utility>
#  include <vector>

// A polyline as GEOS nodes it.
class gx_GeosString {
 public:
  explicit gx_GeosString(std::unique_ptr<geos::geom::CoordinateSequence> points)
      : points_(std::move(points)), string_(points_.get(), nullptr), list_{&string_} {}

  geos::noding::SegmentString::ConstVect* list() { return &list_; }

 private:
  std::unique_ptr<geos::geom::CoordinateSequence> points_;
  geos::noding::BasicSegmentString string_;
  geos::noding::SegmentString::ConstVect list_;
};

// Collects every crossing.
class gx_GeosCollector : public geos::noding::SegmentIntersector {
 public:
  void processIntersections(geos::noding::SegmentString* e0, std::size_t i0,
                            geos::noding::SegmentString* e1, std::size_t i1) override {
    line_.computeIntersection(e0->getCoordinate(i0), e0->getCoordinate(i0 + 1), e1->getCoordinate(i1),
                              e1->getCoordinate(i1 + 1));
    for (std::size_t k = 0; k < line_.getIntersectionNum(); ++k) {
      found.push_back(line_.getIntersection(k));
    }
  }

  std::vector<geos::geom::Coordinate> found;

 private:
  geos::algorithm::LineIntersector line_;
};

// An outline prepared for being crossed.
class gx_GeosCrossings {
 public:
  explicit gx_GeosCrossings(gx_GeosString& outline) {
    intersector_.setBaseSegments(outline.list());
    intersector_.setSegmentIntersector(&collector_);
  }

  const std::vector<geos::geom::Coordinate>& with(gx_GeosString& other) {
    collector_.found.clear();
    intersector_.process(other.list());
    return collector_.found;
  }

 private:
  gx_GeosCollector collector_;
  geos::noding::MCIndexSegmentSetMutualIntersector intersector_;
};

#endif
