// Every operation of the contour on the outlines of letters and signs.
#include <cntr/contour.h>

#include <cntr/region.h>
#include <support/exposed.h>
#include <support/source_folder.h>
#include <veldispc/recording_tablet.h>
#include <velstd/orientation.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

struct Ring {
  std::string name;
  Points points;
};

Points pointsOfJson(const nlohmann::json& ring) {
  Points points;
  for (const auto& p : ring) points.emplace_back(p.at(0).get<double>(), p.at(1).get<double>());
  return points;
}

// All rings, outer ones and holes alike.
std::vector<Ring> readRings() {
  std::ifstream file(sourceFolder() + "/tests/data/glyphs/glyphs.jsonl");
  if (!file) throw std::runtime_error("tests/data/glyphs/glyphs.jsonl cannot be opened");
  std::vector<Ring> rings;
  for (std::string line; std::getline(file, line);) {
    const auto glyph = nlohmann::json::parse(line);
    const std::string name =
        glyph.at("name").get<std::string>() + " part " + std::to_string(glyph.at("part").get<int>());
    rings.push_back({name, pointsOfJson(glyph.at("outer"))});
    for (const auto& hole : glyph.at("holes")) rings.push_back({name + ", a hole", pointsOfJson(hole)});
  }
  return rings;
}

const std::vector<Ring>& rings() {
  static const std::vector<Ring> read = readRings();
  return read;
}

// Calls `test` with every ring, closed.
template <class Test>
void forEachGlyph(Test test) {
  for (const Ring& ring : rings()) {
    SCOPED_TRACE(ring.name);
    test(ExposedContour(ring.points));
    if (testing::Test::HasFailure()) return;
  }
}

TEST(ContoursOfGlyphs, AreAllThere) {
  EXPECT_EQ(rings().size(), 156u + 95u);
  std::size_t vertices = 0;
  for (const Ring& ring : rings()) vertices += ring.points.size();
  EXPECT_EQ(vertices, 15652u);
}

TEST(ContoursOfGlyphs, CircleOfAllPairsEqualsTheSearchOfAllPairsBitForBit) {
  forEachGlyph([](const ExposedContour& glyph) {
    double best = 0.0;
    gxCircle expected;
    for (const V& p : glyph.points()) {
      for (const V& q : glyph.points()) {
        const double distance = p.distance(q);
        if (distance > best) {
          best = distance;
          expected = gxCircle((p + q) * 0.5, distance * 0.5);
        }
      }
    }
    EXPECT_EQ(glyph.encloseCircle(gxContourDefs::eAllPairs), expected);
    EXPECT_EQ(glyph.diameter(gxContourDefs::eAllPairs), 2.0 * expected.radius());
  });
}

TEST(ContoursOfGlyphs, CircleAroundTheFirstPointReachesTheFarthestVertex) {
  forEachGlyph([](const ExposedContour& glyph) {
    const gxCircle circle = glyph.encloseCircle(gxContourDefs::eFirstPoint);
    EXPECT_EQ(circle.center(), glyph.points().front());
    double farthest = 0.0;
    for (const V& p : glyph.points()) farthest = std::max(farthest, p.distance(circle.center()));
    EXPECT_EQ(circle.radius(), farthest);
  });
}

TEST(ContoursOfGlyphs, HullHasNoPointOutsideByAnExactTestAndTurnsLeftAtEveryCorner) {
  forEachGlyph([](const ExposedContour& glyph) {
    gxRegion hull;
    glyph.convexHull(hull);
    const Points& corners = hull.points();
    const std::size_t n = corners.size();
    ASSERT_GE(n, 3u);
    for (std::size_t i = 0; i < n; ++i) {
      const V& a = corners[i];
      const V& b = corners[(i + 1) % n];
      EXPECT_EQ(gx_Orientation(a, b, corners[(i + 2) % n]), 1);
      EXPECT_NE(std::find(glyph.points().begin(), glyph.points().end(), a), glyph.points().end());
      for (const V& p : glyph.points()) EXPECT_GE(gx_Orientation(a, b, p), 0);
    }
    EXPECT_FALSE(hull.isSelfIntersecting());
  });
}

TEST(ContoursOfGlyphs, DoNotCrossThemselves) {
  forEachGlyph([](const ExposedContour& glyph) { EXPECT_FALSE(glyph.isSelfIntersecting()); });
}

TEST(ContoursOfGlyphs, DoCrossThemselvesWithTwoFarVerticesExchanged) {
  forEachGlyph([](const ExposedContour& glyph) {
    Points points = glyph.points();
    if (points.size() < 12) return;
    std::swap(points[1], points[points.size() / 2]);
    EXPECT_TRUE(gxContour(points).isSelfIntersecting());
  });
}

TEST(ContoursOfGlyphs, LengthIsTheSumOfTheEdgesWhereverTheOutlineBegins) {
  forEachGlyph([](const ExposedContour& glyph) {
    double sum = 0.0;
    for (const gxLineSeg& edge : glyph.lineSegs()) sum += edge.p1().distance(edge.p2());
    EXPECT_EQ(glyph.length(), sum);
    Points turned = glyph.points();
    std::rotate(turned.begin(), turned.begin() + 1, turned.end());
    EXPECT_NEAR(gxContour(turned).length(), sum, 1e-12 * sum);
    std::reverse(turned.begin(), turned.end());
    EXPECT_NEAR(gxContour(turned).length(), sum, 1e-12 * sum);
    const gxLineSeg closing(glyph.points().back(), glyph.points().front());
    EXPECT_NEAR(gxContour(glyph.points(), false).length() + closing.p1().distance(closing.p2()), sum,
                1e-12 * sum);
  });
}

TEST(ContoursOfGlyphs, EveryVertexIsItsOwnNearestPoint) {
  forEachGlyph([](const ExposedContour& glyph) {
    for (std::size_t i = 0; i < glyph.points().size(); ++i) {
      const V& p = glyph.points()[i];
      EXPECT_EQ(glyph.closestVertexIndex(p), static_cast<long>(i));
      EXPECT_EQ(glyph.closestPoint(p, true), p);
      EXPECT_EQ(glyph.distToPoint(p, false), 0.0);
    }
  });
}

TEST(ContoursOfGlyphs, EveryVertexIsFoundByLookUpWithItsNearNeighbours) {
  forEachGlyph([](const ExposedContour& glyph) {
    for (const double tolerance : {0.5, 40.0}) {
      for (const V& query : glyph.points()) {
        std::vector<int> found = glyph.vertexIndex(query, tolerance);
        std::sort(found.begin(), found.end());
        std::vector<int> expected;
        for (std::size_t i = 0; i < glyph.points().size(); ++i) {
          if (glyph.points()[i].distance(query) < tolerance) expected.push_back(static_cast<int>(i));
        }
        EXPECT_EQ(found, expected);
      }
    }
  });
}

TEST(ContoursOfGlyphs, ExtremalVerticesLieOnTheSidesOfTheTurnedRectangle) {
  forEachGlyph([](const ExposedContour& glyph) {
    for (int i = 0; i < 24; ++i) {
      const gxRadian angle(i * 0.26179938779914943);
      const gxXform<2> frame(gxMatrix<2>(-angle, -angle, 1, 1), V(0, 0));
      const gxRect rect = glyph.encloseRect(frame);
      EXPECT_NEAR((frame * glyph.extremalVertexPosition(angle)).x(), rect.corner().x(), 1e-9);
      for (const V& p : glyph.points()) EXPECT_TRUE(rect.within(frame * p));
    }
    const gxRect upright = glyph.encloseRect(gxXform<2>());
    for (const V& p : glyph.points()) EXPECT_TRUE(upright.within(p));
  });
}

TEST(ContoursOfGlyphs, ALineAcrossMeetsThemAnEvenNumberOfTimes) {
  forEachGlyph([](const ExposedContour& glyph) {
    const gxRect box = glyph.encloseRect(gxXform<2>());
    for (int i = 1; i < 10; ++i) {
      // A height that no vertex has: coordinates have three decimals at most.
      const double y = std::floor(box.origin().y() + box.size().y() * i / 10.0) + 0.00025;
      if (y < box.origin().y() || y > box.corner().y()) continue;
      const gxLineSeg line(V(box.origin().x() - 10, y), V(box.corner().x() + 10, y));
      std::vector<int> edges;
      const Points hits = glyph.intersections(line, edges, true);
      EXPECT_EQ(hits.size() % 2, 0u);
      EXPECT_FALSE(hits.empty());
      EXPECT_EQ(edges.size(), hits.size());
      for (std::size_t k = 1; k < hits.size(); ++k) EXPECT_LE(hits[k - 1].x(), hits[k].x());
      EXPECT_EQ(glyph.intersections(gxContour({line.p1(), line.p2()}, false)), hits);
    }
  });
}

TEST(ContoursOfGlyphs, MeanPositionLiesInTheRectangleAndTheMedianBetweenShortestAndLongestEdge) {
  forEachGlyph([](const ExposedContour& glyph) {
    EXPECT_TRUE(glyph.encloseRect(gxXform<2>()).within(glyph.meanPosition()));
    std::vector<double> lengths;
    for (const gxLineSeg& edge : glyph.lineSegs()) lengths.push_back(edge.p1().distance(edge.p2()));
    std::sort(lengths.begin(), lengths.end());
    EXPECT_EQ(glyph.medianFeatureSize(), lengths[lengths.size() / 2]);
  });
}

TEST(ContoursOfGlyphs, EachHasAnEllipseOrACircleOfFiniteSizeOrSaysThatItHasNone) {
  int none = 0;
  forEachGlyph([&none](const ExposedContour& glyph) {
    gxEllipse ellipse;
    double residual = -7.0;
    glyph.fitEllipse(ellipse, residual);
    if (residual == -1.0) {
      ++none;
      EXPECT_EQ(ellipse, gxEllipse());
      return;
    }
    EXPECT_GE(residual, 0.0);
    EXPECT_TRUE(std::isfinite(residual));
    const auto& geom = ellipse.geom();
    for (const double value :
         {geom.center.x(), geom.center.y(), geom.radii.x(), geom.radii.y(), geom.rotation.toDouble()}) {
      EXPECT_TRUE(std::isfinite(value));
    }
    EXPECT_GT(std::min(geom.radii.x(), geom.radii.y()), 0.0);
  });
  EXPECT_EQ(none, 0) << "at least a circle fits every glyph";
}

TEST(ContoursOfGlyphs, GoToAPolygonAndBackAndThroughATransformAndItsInverse) {
  const gxXform<2> there(gxMatrix<2>(0, -2, 2, 0), V(64, -128));
  const gxXform<2> back(gxMatrix<2>(0, 0.5, -0.5, 0), V(64, 32));
  forEachGlyph([&](const ExposedContour& glyph) {
    Points repeated = glyph.points();
    repeated.push_back(repeated.front());
    const gxContour fromPolygon(glyph.polygon());
    EXPECT_EQ(fromPolygon.points(), repeated);
    EXPECT_TRUE(fromPolygon.isClosed());
    gxContour mapped;
    glyph.map(there, mapped);
    EXPECT_NEAR(mapped.length(), 2 * glyph.length(), 1e-12 * mapped.length());
    mapped.map(back, mapped);
    for (std::size_t i = 0; i < mapped.points().size(); ++i) {
      EXPECT_LT(mapped.points()[i].distance(glyph.points()[i]), 1e-10);
    }
  });
}

TEST(ContoursOfGlyphs, AreDrawnEdgeByEdge) {
  forEachGlyph([](const ExposedContour& glyph) {
    gxRecordingTablet tablet;
    glyph.draw(tablet, gxContourDefs::eDrawEdges, gxColor(), gxUITablet::eImageLayer);
    ASSERT_EQ(tablet.segments().size(), glyph.points().size());
    for (std::size_t i = 0; i < glyph.points().size(); ++i) {
      EXPECT_EQ(tablet.segments()[i].to, gxPair<double>(glyph.points()[i].x(), glyph.points()[i].y()));
    }
  });
}

}  // namespace
