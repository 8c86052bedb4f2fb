// Every operation of the contour on coordinates of every kind: nothing hangs, nothing is thrown that
// is not documented, and what must hold for any numbers holds.
#include <cntr/contour.h>

#include <cntr/region.h>
#include <support/exposed.h>
#include <support/random_doubles.h>
#include <support/shape_text.h>
#include <veldispc/recording_tablet.h>
#include <velstd/real_eq.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// What a coordinate may be.
const double kCoordinates[] = {0.0,
                               -0.0,
                               1.0,
                               -3.5,
                               1e-15,
                               5e-324,
                               -1e-320,
                               2.3e-308,
                               1e-154,
                               1e154,
                               -1e160,
                               1e300,
                               1e308,
                               -1e308,
                               std::numeric_limits<double>::max(),
                               std::numeric_limits<double>::lowest(),
                               kInf,
                               -kInf,
                               kNaN};

class AnyNumbers {
 public:
  explicit AnyNumbers(std::uint64_t seed) : random_(seed) {}

  double coordinate() { return kCoordinates[random_.whole(static_cast<int>(std::size(kCoordinates)))]; }
  V point() {
    const double x = coordinate();
    return {x, coordinate()};
  }
  Points points(int count) {
    Points result;
    for (int i = 0; i < count; ++i) {
      const bool repeats = i > 0 && random_.whole(6) == 0;
      result.push_back(repeats ? result.back() : point());
    }
    return result;
  }
  int whole(int count) { return random_.whole(count); }

 private:
  RandomDoubles random_;
};

bool within(long index, const gxContour& contour) {
  return index >= 0 && index < static_cast<long>(contour.points().size());
}

bool sameBits(const V& a, const V& b) {
  const auto same = [](double p, double q) { return p == q || (std::isnan(p) && std::isnan(q)); };
  return same(a.x(), b.x()) && same(a.y(), b.y());
}

long nearestByLooking(const Points& points, const V& query) {
  long nearest = 0;
  double best = kInf;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (const double distance = query.distance(points[i]); distance < best) {
      best = distance;
      nearest = static_cast<long>(i);
    }
  }
  return nearest;
}

void askProximity(const gxContour& contour, const V& query) {
  const long index = contour.closestVertexIndex(query);
  ASSERT_TRUE(within(index, contour));
  EXPECT_EQ(index, nearestByLooking(contour.points(), query));
  EXPECT_TRUE(
      sameBits(contour.closestPoint(query, true), contour.points()[static_cast<std::size_t>(index)]));
  const V nearest = contour.closestPoint(query, false);
  const double distance = contour.distToPoint(query, false);
  EXPECT_TRUE(std::isnan(distance) || distance == query.distance(nearest));
  EXPECT_FALSE(distance < 0.0);
  EXPECT_FALSE(contour.length() < 0.0);
}

void askIntersections(const ExposedContour& contour, const gxLineSeg& seg, const gxContour& other) {
  for (const bool contacts : {true, false}) {
    std::vector<int> edges;
    const Points hits = contour.intersections(seg, edges, contacts);
    ASSERT_EQ(hits.size(), edges.size());
    for (const int edge : edges) {
      ASSERT_GE(edge, 0);
      ASSERT_LT(static_cast<std::size_t>(edge), contour.validLine().size());
      EXPECT_TRUE(contour.validLine()[static_cast<std::size_t>(edge)]);
    }
    for (const V& hit : hits) EXPECT_LT(seg.distToPoint(hit), 1e-6);
  }
  contour.intersections(other);
  EXPECT_EQ(contour.isSelfIntersecting(),
            ExposedContour(contour.points(), contour.isClosed()).isSelfIntersecting());
}

gxRect boxByLooking(const Points& points, const gxXform<2>& frame) {
  const bool upright = gfRealEq(frame, gxXform<2>(), 1e-15);
  const auto spot = [&](const V& p) { return gxRect(upright ? p : frame * p, V(0, 0)); };
  gxRect box = spot(points.front());
  for (const V& p : points) box = box.enclose(spot(p));
  return box;
}

bool sameRect(const gxRect& a, const gxRect& b) {
  return sameBits(a.origin(), b.origin()) && sameBits(a.corner(), b.corner());
}

void askExtremes(const gxContour& contour, double angle, const gxXform<2>& frame) {
  const long index = contour.extremalVertexIndex(gxRadian(angle));
  EXPECT_TRUE(index == -1 || within(index, contour));
  const V position = contour.extremalVertexPosition(gxRadian(angle));
  EXPECT_TRUE(
      sameBits(position, index < 0 ? V(kNaN, kNaN) : contour.points()[static_cast<std::size_t>(index)]));
  contour.encloseRect(frame);  // may be answered with the identity's, where they differ in yx alone
  EXPECT_TRUE(
      sameRect(gxContour(contour.points()).encloseRect(frame), boxByLooking(contour.points(), frame)));
  const gxRect box = gxContour(contour.points()).encloseRect(gxXform<2>());
  EXPECT_TRUE(sameRect(box, boxByLooking(contour.points(), gxXform<2>())));
  const auto isNumber = [](const V& p) { return !std::isnan(p.x()) && !std::isnan(p.y()); };
  for (const V& p : contour.points()) {
    EXPECT_TRUE(!isNumber(p) || !isNumber(contour.points().front()) || box.within(p));
  }
}

gxCircle circleByLooking(const Points& points) {
  gxCircle circle;
  double best = 0.0;
  for (const V& p : points) {
    for (const V& q : points) {
      if (const double distance = p.distance(q); distance > best) {
        best = distance;
        circle = gxCircle((p + q) * 0.5, distance * 0.5);
      }
    }
  }
  return circle;
}

void askCircles(const gxContour& contour) {
  const gxCircle expected = circleByLooking(contour.points());
  const gxCircle circle = contour.encloseCircle(gxContourDefs::eAllPairs);
  EXPECT_TRUE(sameBits(circle.center(), expected.center()));
  EXPECT_EQ(circle.radius(), expected.radius());
  for (const auto mode : {gxContourDefs::eAllPairs, gxContourDefs::eFirstPoint}) {
    EXPECT_GE(contour.encloseCircle(mode).radius(), 0.0);
    EXPECT_EQ(contour.diameter(mode), 2 * contour.encloseCircle(mode).radius());
  }
}

void askRest(const ExposedContour& contour, const V& query, double tolerance) {
  gxRegion hull;
  contour.convexHull(hull);
  for (const V& corner : hull.points())
    EXPECT_TRUE(std::isfinite(corner.x()) && std::isfinite(corner.y()));
  contour.meanPosition();
  EXPECT_FALSE(contour.medianFeatureSize() < 0.0);
  gxEllipse ellipse;
  double residual = 0;
  contour.fitEllipse(ellipse, residual);
  EXPECT_TRUE(residual >= 0.0 || residual == -1.0) << residual;
  std::size_t near = 0;
  for (const V& p : contour.points()) near += p.distance(query) < tolerance ? 1u : 0u;
  EXPECT_EQ(contour.vertexIndex(query, tolerance).size(), near);
}

void askConversions(const gxContour& contour, const gxXform<2>& frame) {
  gxContour mapped;
  contour.map(frame, mapped);
  EXPECT_EQ(mapped.points().size(), contour.points().size());
  const auto closing = contour.isClosed() ? 1 : 0;
  EXPECT_EQ(contour.polygon().size(), static_cast<int>(contour.points().size()) + closing);
  gxRecordingTablet tablet;
  contour.draw(tablet, gxContourDefs::eDrawEdges, gxColor(), gxUITablet::eImageLayer);
  EXPECT_EQ(tablet.segments().size() + 1, contour.points().size() + static_cast<std::size_t>(closing));
}

void askEverything(const ExposedContour& contour, AnyNumbers& any) {
  const V query = any.point();
  const gxLineSeg seg(any.point(), any.point());
  const gxXform<2> frame(
      gxMatrix<2>(any.coordinate(), any.coordinate(), any.coordinate(), any.coordinate()), any.point());
  askProximity(contour, query);
  askIntersections(contour, seg, gxContour(any.points(3)));
  askExtremes(contour, any.coordinate(), frame);
  askCircles(contour);
  askRest(contour, query, any.coordinate());
  askConversions(contour, frame);
}

class ContourOfAnyNumbers : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(PointCounts, ContourOfAnyNumbers, testing::Values(2, 3, 4, 6, 9, 70, 200));

TEST_P(ContourOfAnyNumbers, AnswersEveryQuestion) {
  const std::uint64_t seed = 20260000 + static_cast<std::uint64_t>(GetParam());
  SCOPED_TRACE(seed);
  AnyNumbers any(seed);
  const int rounds = GetParam() < 10 ? 1500 : 40;
  for (int i = 0; i < rounds; ++i) {
    const ExposedContour contour(any.points(GetParam()), any.whole(2) == 0);
    askEverything(contour, any);
    if (HasFailure()) FAIL() << "round " << i << " of " << testing::PrintToString(contour.points());
  }
}

TEST(ContourWithOneOddPoint, AnswersEveryQuestion) {
  AnyNumbers any(77);
  for (const std::size_t count : {std::size_t{8}, std::size_t{100}}) {
    Points circle;
    for (std::size_t i = 0; i < count; ++i) {
      const double t = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(count);
      circle.emplace_back(10 * std::cos(t), 10 * std::sin(t));
    }
    for (const double x : kCoordinates) {
      for (const double y : kCoordinates) {
        Points points = circle;
        points[static_cast<std::size_t>(any.whole(static_cast<int>(count)))] = V(x, y);
        askEverything(ExposedContour(points), any);
        if (HasFailure()) FAIL() << "with (" << x << ", " << y << ") among " << count << " points";
      }
    }
  }
}

}  // namespace
