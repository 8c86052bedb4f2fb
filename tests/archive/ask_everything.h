/// Asks an object every public question there is.  Whatever was loaded, each ends in an answer or in
/// one of the library's exceptions; everything else is a bug (the sanitizers look on).
#pragma once

#include <ch_core/cntrtmpl.h>
#include <cntr/contour.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <cntr/shapestat.h>
#include <veldispc/color.h>
#include <veldispc/tablet.h>
#include <velstd/circle.h>
#include <velstd/exception.h>
#include <velstd/line.h>
#include <velstd/line_seg.h>
#include <velstd/rect.h>
#include <velstd/xform_base.h>

#include <cstddef>
#include <vector>

namespace archive_test {

class EverythingAsker {
 public:
  /// Asks the object itself and copies of it, and returns how many questions were answered.
  static std::size_t ask(const gxPersistent& object) {
    EverythingAsker asker;
    asker.askOne(object);
    return asker.answered_;
  }

 private:
  class NoTablet : public gxUITablet {
   public:
    void drawLineSeg(const gxPair<double>&, const gxPair<double>&, const gxColor&, Layers) override {
      ++drawn;
    }
    std::size_t drawn = 0;
  };

  // The documented end of a question that has no answer.
  template <class Question>
  void q(const Question& question) {
    try {
      question();
      ++answered_;
    } catch (const gxException&) {
      ++refused_;
    }
  }

  void askOne(const gxPersistent& object) {
    if (const auto* contour = dynamic_cast<const gxContour*>(&object)) askContour(*contour);
    if (const auto* region = dynamic_cast<const gxRegion*>(&object)) askRegion(*region);
    if (const auto* edges = dynamic_cast<const gxContourT<gxEdgelet>*>(&object)) askEdges(*edges);
    if (const auto* region = dynamic_cast<const gxRegionT<gxEdgelet>*>(&object)) askEdgeRegion(*region);
    if (const auto* set = dynamic_cast<const gxRegionSet*>(&object)) askSet(*set);
    if (const auto* set = dynamic_cast<const gxRegionSetT<gxEdgelet>*>(&object)) askEdgeSet(*set);
    if (const auto* xform = dynamic_cast<const gx2XformBase*>(&object)) askXform(*xform);
    askBaseShape(object);
    if (const auto* exception = dynamic_cast<const gxException*>(&object)) q([&] { exception->what(); });
  }

  void askContour(const gxContour& c) {
    for (const bool again : {false, true}) {  // computed, then remembered
      static_cast<void>(again);
      q([&] { c.length(); });
      q([&] { c.isSelfIntersecting(); });
      q([&] { c.meanPosition(); });
      for (int mode = -1; mode <= 2; ++mode) {
        q([&] { c.encloseCircle(static_cast<gxContourDefs::DiameterMode>(mode)); });
        q([&] { c.diameter(static_cast<gxContourDefs::DiameterMode>(mode)); });
      }
      for (const bool flag : {false, true}) {
        q([&] { c.closestPoint(where_, flag); });
        q([&] { c.distToPoint(where_, flag); });
        q([&] { c.intersections(across_, flag); });
      }
      q([&] { c.closestVertexIndex(where_); });
      for (int i = 0; i < 5; ++i) {
        q([&] { c.extremalVertexIndex(gxRadian(i)); });
        q([&] { c.extremalVertexPosition(gxRadian(i)); });
        q([&] { c.encloseRect(gxXform<2>(gxMatrix<2>(1, i, -i, 1), where_)); });
        q([&] { c.vertexIndex(where_, i * 0.5); });
      }
      q([&] {
        gxRegion hull;
        c.convexHull(hull);
      });
      q([&] {
        gxEllipse ellipse;
        double residual = 0;
        c.fitEllipse(ellipse, residual);
      });
    }
    q([&] { c.intersections(c); });
    q([&] {
      gxContour mapped;
      c.map(gxXform<2>(gxMatrix<2>(1, 2, 3, 4), where_), mapped);
    });
    q([&] { gxContour(c.polygon()).length(); });
    q([&] { c.draw(tablet_, gxContourDefs::eDrawEdges, gxColor(), gxUITablet::Layers()); });
    q([&] {
      gxContour copy(c);
      copy.cachedVectorSize(1);
      copy.closestPoint(where_, false);
      copy.isClosed(!copy.isClosed());
      copy.length();
      gxContour moved(std::move(copy));
      static_cast<void>(moved == c);
      moved.points(c.points());
      moved.reInit();
    });
    q([&] { gf_Area(c.points()); });
    q([&] { gf_CenterOfMass(c.points()); });
    q([&] { gf_EllipseFromInertiaData(gf_InertiaDataPolygon(c.points())); });
    for (const int mode : {0, 1, 2}) {
      q([&] { gxRegion(c, static_cast<gxContourDefs::IntersectionMode>(mode)).area(false); });
    }
  }

  void askRegion(const gxRegion& r) {
    for (const bool holes : {false, true}) {
      q([&] { r.area(holes); });
      q([&] { r.centerOfMass(holes); });
      q([&] { r.inertiaMatrix(holes); });
      q([&] { r.inside(where_, holes); });
      for (const bool flag : {false, true}) {
        q([&] { r.closestPoint(where_, flag, holes); });
        q([&] { r.distToPoint(where_, flag, holes, true); });
        q([&] { r.distToPoint(where_, flag, holes, false); });
        q([&] { r.intersections(across_, flag, holes); });
      }
      q([&] {
        long hole = 0;
        r.closestVertexIndex(where_, holes, hole);
      });
      q([&] { r.intersections(static_cast<const gxContour&>(r), holes); });
    }
    if (!r.points().empty()) q([&] { r.inside(r.points().front(), true); });
    q([&] {
      gxRegion result;
      r.regularize(result);
    });
    q([&] {
      gxRegion result;
      r.outerHull(result);
    });
    q([&] {
      gxRegion mapped;
      r.map(gxXform<2>(gxMatrix<2>(0, -1, 1, 0), where_), mapped);
    });
    q([&] { r.draw(tablet_, gxColor(), gxUITablet::Layers()); });
    q([&] {
      gxRegion copy(r);
      copy.holes(r.holes());
    });
    q([&] {
      gxRegion copy(r);
      copy.regularize(copy);
      copy = copy.holes().empty() ? gxRegion() : *copy.holes().front();
      copy.reInit();
    });
    q([&] { gxRegionSet({gxPtrHandle_const<gxRegion>(new gxRegion(r))}).area(true); });
  }

  void askEdges(const gxContourT<gxEdgelet>& c) {
    q([&] { c.datum(where_); });
    q([&] { c.point(gxEdgelet(where_, 1, gxAngle8(2))); });
    q([&] {
      gxContourT<gxEdgelet> copy(c);
      static_cast<void>(copy == c);
      copy.data(c.data());
    });
    q([&] {
      gxContourT<gxEdgelet> copy(c);
      copy.points(c.points());
    });
    q([&] {
      gxContourT<gxEdgelet> result;
      c.mapT(gxXform<2>(), result);
    });
    q([&] {
      gxContourT<gxEdgelet> copy(c);
      static_cast<gxContour&>(copy) = gxContour(std::vector<gxVector<2>>(3));
    });
    q([&] {
      gxEllipse ellipse;
      double residual = 0;
      gf_FitEllipse(c.data(), ellipse, residual);
    });
    q([&] { gf_Area(c.data()); });
    q([&] { gf_CenterOfMass(c.data()); });
    q([&] { gxRegionT<gxEdgelet>(c, 5).area(true); });
    if (const gxPtrHandle_const<gx2XformBase> xform = c.dataFromPointsXform()) askXform(*xform);
  }

  void askEdgeRegion(const gxRegionT<gxEdgelet>& r) {
    q([&] { static_cast<void>(r.holes().size()); });
    q([&] {
      gxRegionT<gxEdgelet> copy(r);
      copy.holes({gxPtrHandle_const<gxRegionT<gxEdgelet>>(new gxRegionT<gxEdgelet>(r))});
      copy.points(r.points());
    });
    q([&] {
      gxRegionT<gxEdgelet> copy(r);
      copy.holes(r.gxRegion::holes());
    });
    q([&] {
      gxRegionT<gxEdgelet> result;
      r.regularizeT(result);
    });
    q([&] {
      gxRegionT<gxEdgelet> result;
      r.outerHull(result);
    });
  }

  void askSet(const gxRegionSet& s) {
    for (const bool again : {false, true}) {
      static_cast<void>(again);
      for (const bool holes : {false, true}) {
        q([&] { s.area(holes); });
        q([&] { s.centerOfMass(holes); });
        q([&] { s.inertiaMatrix(holes); });
        q([&] { s.inside(where_, holes); });
        for (const bool flag : {false, true}) {
          q([&] { s.distToPoint(where_, flag, holes, true); });
          q([&] { s.distToPoint(where_, flag, holes, false); });
        }
      }
      q([&] { s.encloseRect(gxXform<2>()); });
      q([&] { s.isSelfIntersecting(); });
      q([&] {
        gxRegionSet result;
        s.regularize(result);
      });
      q([&] {
        gxRegionSet result;
        s.outerHull(result);
      });
    }
    q([&] { s.draw(tablet_, gxColor(), gxUITablet::Layers()); });
    q([&] {
      gxRegionSet copy(s);
      static_cast<void>(copy == s);
      copy.regions(s.regions());
      for (const auto& region : s.regions()) copy.add(region);
      copy.reInit();
    });
    for (const auto& region : s.regions()) {
      if (!region.isNull()) askRegion(*region);
    }
  }

  void askEdgeSet(const gxRegionSetT<gxEdgelet>& s) {
    q([&] { static_cast<void>(s.regionsT().size()); });
    q([&] {
      gxRegionSetT<gxEdgelet> copy(s);
      static_cast<void>(copy == s);
      static_cast<gxRegionSet&>(copy) = s;
    });
    q([&] {
      gxRegionSetT<gxEdgelet> copy(s);
      for (const auto& region : s.regions()) copy.add(region);
    });
    q([&] {
      gxRegionSetT<gxEdgelet> result;
      s.outerHull(result);
    });
  }

  void askXform(const gx2XformBase& x) {
    q([&] { x.mapPoint(where_); });
    q([&] { x.linearXform(where_); });
    q([&] { x.clone()->isLinear(); });
    q([&] { x.composeBase(x)->mapPoint(where_); });
    q([&] { x.inverseBase()->mapPoint(where_); });
  }

  void askBaseShape(const gxPersistent& object) {
    if (const auto* line = dynamic_cast<const gxLine*>(&object)) {
      q([&] { line->distToPoint(where_); });
      q([&] { line->proj(where_); });
      q([&] { line->intersect(across_.line()); });
      q([&] { line->isParallel(*line); });
    }
    if (const auto* segment = dynamic_cast<const gxLineSeg*>(&object)) {
      q([&] { segment->distToPoint(where_); });
      q([&] { segment->line().intersect(across_.line()); });
    }
    if (const auto* rect = dynamic_cast<const gxRect*>(&object)) {
      q([&] { rect->within(where_); });
      q([&] { rect->enclose(gxRect(where_, where_)).overlaps(*rect); });
    }
    if (const auto* circle = dynamic_cast<const gxCircle*>(&object)) {
      q([&] { gxEllipse(*circle).point(gxRadian(1)); });
    }
  }

  const gxVector<2> where_{1.75, 2.5};
  const gxLineSeg across_{{-100, -90}, {100, 110}};
  NoTablet tablet_;
  std::size_t answered_ = 0;
  std::size_t refused_ = 0;
};

inline std::size_t askEverything(const gxPersistent& object) {
  return EverythingAsker::ask(object);
}

}  // namespace archive_test
