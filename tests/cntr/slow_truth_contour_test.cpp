// Contours against the slow truth, bit for bit: edges, length, proximity, intersections, conversions.
#include <cntr/contour.h>
#include <support/exposed.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>
#include <support/slow_truth_contour.h>
#include <veldispc/recording_tablet.h>

#include <gtest/gtest.h>

namespace {

slow::Outline randomOutline(RandomShapes& random) {
  slow::Outline outline{random.outline(), true};
  outline.closed = random.chance(0.7);
  return outline;
}

ExposedContour contourOf(const slow::Outline& outline) {
  return ExposedContour(outline.points, outline.closed);
}

TEST(SlowTruthContour, EdgesAndLength) {
  RandomShapes random("contour edges and length", 600);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = randomOutline(random);
    const ExposedContour contour = contourOf(outline);
    EXPECT_TRUE(agree([&] { return contour.length(); }, [&] { return slow::length(outline); }));
    std::vector<gxLineSeg> segments;
    std::vector<bool> valid;
    for (const slow::Edge& edge : slow::lineSegs(outline)) {
      segments.push_back(edge.segment);
      valid.push_back(edge.valid);
    }
    EXPECT_TRUE(agree([&] { return contour.lineSegs(); }, [&] { return segments; }));
    EXPECT_EQ(contour.validLine(), valid);
  }
}

TEST(SlowTruthContour, Proximity) {
  RandomShapes random("contour proximity", 600);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = randomOutline(random);
    const ExposedContour contour = contourOf(outline);
    for (int query = 0; query < 8; ++query) {
      const gxVector<2> p = random.pointNear(outline.points);
      EXPECT_TRUE(agree([&] { return contour.closestVertexIndex(p); },
                        [&] { return slow::closestVertexIndex(outline.points, p); }));
      for (const bool vertexOnly : {false, true}) {
        EXPECT_TRUE(agree([&] { return contour.closestPoint(p, vertexOnly); },
                          [&] { return slow::closestPoint(outline, p, vertexOnly); }));
        EXPECT_TRUE(agree([&] { return contour.distToPoint(p, vertexOnly); },
                          [&] { return slow::distToPoint(outline, p, vertexOnly); }));
      }
    }
  }
}

TEST(SlowTruthContour, IntersectionsWithASegment) {
  RandomShapes random("contour and segment", 600);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = randomOutline(random);
    const ExposedContour contour = contourOf(outline);
    for (int query = 0; query < 8; ++query) {
      const gxLineSeg seg = random.segmentNear(outline.points);
      for (const bool ends : {false, true}) {
        EXPECT_TRUE(agree(
            [&] {
              slow::Hits hits;
              hits.points = contour.intersections(seg, hits.edges, ends);
              return hits;
            },
            [&] { return slow::intersections(outline, seg, ends); }));
        EXPECT_TRUE(agree([&] { return contour.intersections(seg, ends); },
                          [&] { return slow::intersections(outline, seg, ends).points; }));
      }
    }
  }
}

TEST(SlowTruthContour, IntersectionsWithAContour) {
  RandomShapes random("contour and contour", 600);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = randomOutline(random);
    slow::Outline other = randomOutline(random);
    if (random.chance(0.2)) other = outline;
    const ExposedContour contour = contourOf(outline);
    EXPECT_TRUE(agree([&] { return contour.intersections(contourOf(other)); },
                      [&] { return slow::intersections(outline, other); }));
  }
}

TEST(SlowTruthContour, SelfIntersection) {
  RandomShapes random("contour and itself", 1500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = randomOutline(random);
    const ExposedContour contour = contourOf(outline);
    EXPECT_TRUE(agree([&] { return contour.isSelfIntersecting(); },
                      [&] { return slow::isSelfIntersecting(outline); }));
  }
}

TEST(SlowTruthContour, MappingPolygonAndDrawing) {
  RandomShapes random("contour conversions", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const slow::Outline outline = randomOutline(random);
    const ExposedContour contour = contourOf(outline);
    const gxXform<2> xform = random.transform();
    EXPECT_TRUE(agree(
        [&] {
          gxContour result;
          contour.map(xform, result);
          return result.points();
        },
        [&] { return slow::map(xform, outline.points); }));
    EXPECT_TRUE(
        agree([&] { return contour.polygon().vertices(); }, [&] { return slow::polygon(outline); }));
    EXPECT_TRUE(agree(
        [&] {
          gxRecordingTablet tablet;
          contour.draw(tablet, gxContourDefs::eDrawEdges, gxColor(), gxUITablet::eImageLayer);
          std::vector<gxLineSeg> segments;
          for (const auto& s : tablet.segments()) {
            segments.emplace_back(gxVector<2>(s.from.x(), s.from.y()), gxVector<2>(s.to.x(), s.to.y()));
          }
          return segments;
        },
        [&] { return slow::drawn(outline); }));
  }
}

}  // namespace
