// Arc lengths: there and back, parts, degenerate ways.
#include <gauge/arc.h>
#include <gtest/gtest.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
using Points = std::vector<gxVector<2>>;

const Points kRectangle = pointsOf("0 0, 4 0, 4 3, 0 3");

TEST(Arc, OfAnOutlineEdge1ComesFirstAndTheClosingEdgeLast) {
  const gxArcLength arc(kRectangle, true);
  EXPECT_EQ(arc.length(), 14.0);
  EXPECT_EQ(arc.at(0), gxVector<2>(0, 0));
  EXPECT_EQ(arc.placeAt(0).edge, 1);
  EXPECT_EQ(arc.placeAt(0).t, 0.0);
  EXPECT_EQ(arc.placeAt(1).edge, 1);
  EXPECT_EQ(arc.placeAt(1).t, 0.25);
  EXPECT_EQ(arc.at(1), gxVector<2>(1, 0));
  EXPECT_EQ(arc.placeAt(12.5).edge, 0);
  EXPECT_EQ(arc.at(12.5), gxVector<2>(0, 1.5));
  EXPECT_EQ(arc.lengthTo(3), 11.0);
  EXPECT_EQ(arc.lengthTo(4), 14.0);
}

TEST(Arc, AVertexIsTheEndOfTheEdgeThatArrives) {
  const gxArcLength arc(kRectangle, true);
  EXPECT_EQ(arc.placeAt(4).edge, 1);
  EXPECT_EQ(arc.placeAt(4).t, 1.0);
  EXPECT_EQ(arc.at(4), gxVector<2>(4, 0));
  EXPECT_EQ(arc.placeAt(14).edge, 0);
  EXPECT_EQ(arc.placeAt(14).t, 1.0);
  EXPECT_EQ(arc.at(14), gxVector<2>(0, 0));
}

TEST(Arc, AnOutlineGoesAroundAndAPolyLineStops) {
  const gxArcLength outline(kRectangle, true);
  EXPECT_EQ(outline.at(15), gxVector<2>(1, 0));
  EXPECT_EQ(outline.at(-1), gxVector<2>(0, 1));
  EXPECT_EQ(outline.at(28 + 5), gxVector<2>(4, 1));
  const gxArcLength line(kRectangle, false);
  EXPECT_EQ(line.length(), 11.0);
  EXPECT_EQ(line.at(-1), gxVector<2>(0, 0));
  EXPECT_EQ(line.at(12), gxVector<2>(0, 3));
  EXPECT_EQ(line.at(kInfinity), gxVector<2>(0, 3));
  EXPECT_EQ(line.placeAt(12).edge, 2);
  EXPECT_EQ(line.placeAt(1).edge, 0);
}

TEST(Arc, EdgesOfNoLengthArePassedOver) {
  const gxArcLength arc(pointsOf("0 0, 0 0, 4 0, 4 0, 4 3, 4 3"), false);
  EXPECT_EQ(arc.length(), 7.0);
  EXPECT_EQ(arc.placeAt(0).edge, 1);
  EXPECT_EQ(arc.placeAt(4).edge, 1);
  EXPECT_EQ(arc.placeAt(5).edge, 3);
  EXPECT_EQ(arc.at(7), gxVector<2>(4, 3));
  EXPECT_EQ(gxArcLength(pointsOf("0 0, 4 0, 0 0"), true).placeAt(8).edge, 2);
}

TEST(Arc, WaysWithoutLengthHaveTheirPointEverywhere) {
  for (const bool closed : {false, true}) {
    const gxArcLength arc(pointsOf("2 3, 2 3"), closed);
    EXPECT_EQ(arc.length(), 0.0);
    for (const double s : {-1.0, 0.0, 5.0, kInfinity}) EXPECT_EQ(arc.at(s), gxVector<2>(2, 3));
    EXPECT_EQ(gxArcLength(pointsOf("2 3"), closed).at(1), gxVector<2>(2, 3));
    EXPECT_EQ(arc.part(0, 1), pointsOf("2 3"));
  }
}

TEST(Arc, WithoutPointsOrWithBadOnesThereIsNoPlace) {
  const gxArcLength none(Points{}, true);
  EXPECT_EQ(none.status(), gxStatus::eEmpty);
  EXPECT_EQ(none.length(), 0.0);
  EXPECT_FALSE(none.placeAt(0).valid());
  EXPECT_TRUE(none.part(0, 1).empty());
  EXPECT_TRUE(std::isnan(none.lengthAt({})));
  const gxArcLength bad(pointsOf("0 0, nan 1, 1 1"), true);
  EXPECT_EQ(bad.status(), gxStatus::eNotFinite);
  EXPECT_TRUE(std::isnan(bad.length()));
  EXPECT_TRUE(std::isnan(bad.at(1).x()));
  const gxArcLength arc(kRectangle, true);
  EXPECT_FALSE(arc.placeAt(kNaN).valid());
  EXPECT_FALSE(arc.placeAt(kInfinity).valid());
  EXPECT_TRUE(arc.part(kNaN, 1).empty());
  const gxArcLength huge(pointsOf("-1e308 -1e308, 1e308 1e308, -1e308 1e308"), true);
  EXPECT_EQ(huge.length(), kInfinity);
  EXPECT_FALSE(huge.placeAt(1).valid());
}

TEST(Arc, PlacesThatThereAreNotHaveNoLength) {
  const gxArcLength arc(kRectangle, true);
  gxPlace place;
  EXPECT_TRUE(std::isnan(arc.lengthAt(place)));
  place.edge = 4;
  place.t = 0.5;
  EXPECT_TRUE(std::isnan(arc.lengthAt(place)));
  place.edge = 3;
  EXPECT_EQ(arc.lengthAt(place), 9.0);
  place.edge = 0;
  EXPECT_EQ(arc.lengthAt(place), 12.5);
  place.t = 1.0;
  EXPECT_EQ(arc.lengthAt(place), 14.0);
  place.t = kNaN;
  EXPECT_TRUE(std::isnan(arc.lengthAt(place)));
}

TEST(Arc, PartsOfAnOutlineGoForwardAcrossTheStart) {
  const gxArcLength arc(kRectangle, true);
  EXPECT_EQ(arc.part(1, 5), pointsOf("1 0, 4 0, 4 1"));
  EXPECT_EQ(arc.part(13, 5), pointsOf("0 1, 0 0, 4 0, 4 1"));
  EXPECT_EQ(arc.part(5, 1), pointsOf("4 1, 4 3, 0 3, 0 0, 1 0"));
  EXPECT_EQ(arc.part(4, 7), pointsOf("4 0, 4 3"));
  EXPECT_EQ(arc.part(2, 2), pointsOf("2 0"));
  EXPECT_EQ(arc.part(0, 14), pointsOf("0 0, 4 0, 4 3, 0 3, 0 0"));
}

TEST(Arc, PartsOfAPolyLineGoBothWays) {
  const gxArcLength arc(kRectangle, false);
  EXPECT_EQ(arc.part(1, 5), pointsOf("1 0, 4 0, 4 1"));
  EXPECT_EQ(arc.part(5, 1), pointsOf("4 1, 4 0, 1 0"));
  EXPECT_EQ(arc.part(-3, 100), kRectangle);
}

TEST(Arc, ThereAndBackIsTheSameLength) {
  RandomShapes random("arc", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.finiteOutline();
    const bool closed = random.chance(0.5);
    const gxArcLength arc(points, closed);
    if (!(arc.length() > 0.0)) continue;
    long double sum = 0;
    for (std::size_t i = 0; i + (closed ? 0 : 1) < points.size(); ++i) {
      sum += points[i].distance(points[(i + 1) % points.size()]);
    }
    EXPECT_NEAR(arc.length(), static_cast<double>(sum), 4e-16 * arc.length());
    double largest = 0.0;
    for (const auto& p : points) largest = std::max({largest, std::abs(p.x()), std::abs(p.y())});
    double before = 0.0;
    gxVector<2> last = points[0];
    for (int k = 1; k <= 20; ++k) {
      const double s = k == 20 ? arc.length() : arc.length() * k / 20;
      const gxPlace place = arc.placeAt(s);
      EXPECT_NEAR(arc.lengthAt(place), s, 1e-14 * arc.length());
      const Points part = arc.part(before, s);
      double length = 0.0;
      for (std::size_t i = 1; i < part.size(); ++i) length += part[i - 1].distance(part[i]);
      EXPECT_NEAR(length, s - before, 1e-13 * arc.length() + 8e-16 * largest);
      EXPECT_EQ(part.front(), last);
      last = part.back();
      before = s;
    }
    EXPECT_EQ(last, closed ? points.front() : points.back());
  }
}

TEST(Arc, AMillionPointsLoseNoDigits) {
  Points points(1000001);
  for (std::size_t i = 0; i < points.size(); ++i) points[i] = {0.1 * static_cast<double>(i), 0.0};
  EXPECT_EQ(gxArcLength(points, false).length(), points.back().x());
}

}  // namespace
