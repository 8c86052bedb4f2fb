#include <gxshape/interop/hash.h>

#include <gtest/gtest.h>
#include <support/random_shapes.h>
#include <support/region_shapes.h>

#include <cmath>
#include <limits>
#include <unordered_map>
#include <unordered_set>

namespace {

template <class T>
std::size_t hashOf(const T& value) {
  return std::hash<T>()(value);
}

// Equal values have equal hashes, and those that differ in one part have not.
template <class T>
void expectTold(const T& value, const T& equal, const std::vector<T>& others) {
  EXPECT_TRUE(value == equal);
  EXPECT_EQ(hashOf(value), hashOf(equal));
  for (std::size_t i = 0; i < others.size(); ++i) {
    SCOPED_TRACE("other " + std::to_string(i));
    EXPECT_FALSE(value == others[i]);
    EXPECT_NE(hashOf(value), hashOf(others[i]));
  }
}

TEST(Hash, OfPointsTakesBothZeroesForOne) {
  expectTold(V(0.0, 1.0), V(-0.0, 1.0), {V(1, 0), V(0, 2), V(0, -1), V(5e-324, 1)});
  expectTold(gxPoint(1, 0.0), gxPoint(1, -0.0), {gxPoint(0, 1), gxPoint(1, 1)});
  expectTold(gxPair<double>(0.0, 1), gxPair<double>(-0.0, 1), {{1, 0}, {0, 2}});
  expectTold(gxPair<long>(3, 4), gxPair<long>(3, 4), {{4, 3}, {3, 5}});
}

TEST(Hash, OfAnglesMatricesAndTransforms) {
  expectTold(gxRadian(0.5), gxRadian(0.5), {gxRadian(0.25), gxRadian(-0.5)});
  expectTold(gxDegree(90), gxDegree(90), {gxDegree(-90)});
  expectTold(gxMatrix<2>(1, 2, 3, 4), gxMatrix<2>(1, 2, 3, 4),
             {{9, 2, 3, 4}, {1, 9, 3, 4}, {1, 2, 9, 4}, {1, 2, 3, 9}});
  const auto xform = [](double a, double b, double c, double d, double x, double y) {
    return gxXform<2>(gxMatrix<2>(a, b, c, d), V(x, y));
  };
  expectTold(xform(1, 2, 3, 4, 5, 6), xform(1, 2, 3, 4, 5, 6),
             {xform(9, 2, 3, 4, 5, 6), xform(1, 9, 3, 4, 5, 6), xform(1, 2, 9, 4, 5, 6),
              xform(1, 2, 3, 9, 5, 6), xform(1, 2, 3, 4, 9, 6), xform(1, 2, 3, 4, 5, 9)});
}

TEST(Hash, OfSimpleShapes) {
  expectTold(
      gxRect(V(0, 1), V(2, 3)), gxRect(V(-0.0, 1), V(2, 3)),
      {gxRect(V(0, 2), V(2, 3)), gxRect(V(0, 1), V(2, 4)), gxRect::fromCorners(V(0, 1), V(3, 4))});
  // Of one origin and one size, with corners apart by a rounding.
  expectTold(gxRect(V(-5, 0), V(3.2, 1)), gxRect(V(-5, 0), V(3.2, 1)),
             {gxRect::fromCorners(V(-5, 0), V(-1.8, 1))});
  expectTold(gxLine(V(0, 0), V(1, 0)), gxLine(V(0, 0), V(1, 0)),
             {gxLine(V(0, 1), V(1, 0)), gxLine(V(0, 0), V(2, 0))});
  expectTold(gxLineSeg(V(0, 0), V(1, 0)), gxLineSeg(V(0, 0), V(1, 0)),
             {gxLineSeg(V(1, 0), V(0, 0)), gxLineSeg(V(0, 0), V(1, 1))});
  expectTold(gxCircle(V(1, 2), 3), gxCircle(V(1, 2), 3), {gxCircle(V(1, 3), 3), gxCircle(V(1, 2), 2)});
  const auto ellipse = [](const V& c, const V& r, double turn, bool clockwise, bool inverted) {
    return gxEllipse(gxEllipse::gxEllipseGeom{c, r, gxRadian(turn), clockwise, inverted});
  };
  expectTold(ellipse(V(1, 2), V(3, 4), 0.5, false, false), ellipse(V(1, 2), V(3, 4), 0.5, false, false),
             {ellipse(V(1, 1), V(3, 4), 0.5, false, false), ellipse(V(1, 2), V(3, 5), 0.5, false, false),
              ellipse(V(1, 2), V(3, 4), 0.6, false, false), ellipse(V(1, 2), V(3, 4), 0.5, true, false),
              ellipse(V(1, 2), V(3, 4), 0.5, false, true)});
  expectTold(ellipse(V(1, 2), V(3, 4), 0.5, true, false), ellipse(V(1, 2), V(3, 4), 0.5, true, false),
             {ellipse(V(1, 2), V(3, 4), 0.5, false, true)});
  const Points points = square(0, 0, 1);
  expectTold(
      gxPolygon(points, gxPolygon::eEvenOdd), gxPolygon(points, gxPolygon::eEvenOdd),
      {gxPolygon(points, gxPolygon::eNonZero), gxPolygon({{0, 0}}, gxPolygon::eEvenOdd), gxPolygon()});
}

TEST(Hash, OfEdgePointsAndColours) {
  expectTold(gxAngle8(3), gxAngle8(3), {gxAngle8(4)});
  expectTold(gxEdgelet(V(0.0, 1), 300, gxAngle8(5)), gxEdgelet(V(-0.0, 1), 300, gxAngle8(5)),
             {gxEdgelet(V(1, 1), 300, gxAngle8(5)), gxEdgelet(V(0, 1), 301, gxAngle8(5)),
              gxEdgelet(V(0, 1), 300, gxAngle8(6)), gxEdgelet(V(0, 1), 301, gxAngle8(4))});
  expectTold(gxColor(1, 2, 3), gxColor(1, 2, 3),
             {gxColor(2, 2, 3), gxColor(1, 3, 3), gxColor(1, 2, 4), gxColor(2, 1, 3), gxColor(1, 3, 2)});
  EXPECT_EQ(hashOf(gfGetCurrentThreadID()), hashOf(gfGetCurrentThreadID()));
}

TEST(Hash, OfContoursLooksAtWhatEqualityLooksAt) {
  gxContour contour(square(0, 0, 1), true, 5);
  const gxContour otherLabel(square(-0.0, 0, 1), true, 6);
  gxContour otherMemory = contour;
  otherMemory.cachedVectorSize(7);
  expectTold(contour, otherLabel,
             {gxContour(square(0, 0, 1), false), gxContour(square(0, 0, 2)), otherMemory, gxContour()});
  static_cast<void>(contour.length());  // what is remembered takes no part
  EXPECT_EQ(hashOf(contour), hashOf(otherLabel));
  Points turned = square(0, 0, 1);
  std::swap(turned[0], turned[1]);
  EXPECT_NE(hashOf(gxContour(turned)), hashOf(contour));
}

TEST(Hash, OfARegionLeavesItsHolesOut) {
  expectTold(squareWithHole(), gxRegion(square(0, 0, 10)), {gxRegion(square(0, 0, 9))});
  EXPECT_EQ(hashOf(squareWithHole()), hashOf(gxContour(square(0, 0, 10))));
}

TEST(Hash, OfASetHoldsTheOrderOfItsRegions) {
  const Handle a = shared(gxRegion(square(0, 0, 1)));
  const Handle b = shared(gxRegion(square(5, 0, 1)));
  expectTold(gxRegionSet({a, b}), gxRegionSet({shared(*a), shared(*b)}),
             {gxRegionSet({b, a}), gxRegionSet({a}), gxRegionSet()});
  EXPECT_THROW(hashOf(gxRegionSet({Handle()})), gxBadPointer);
}

TEST(Hash, OfEdgePointShapesKeepsToTheirEquality) {
  using Contour = gxContourT<gxEdgelet>;
  const std::vector<gxEdgelet> data{{V(0, 0), 1, gxAngle8(2)}, {V(1, 0), 3, gxAngle8(4)}};
  const Contour one(data);
  Contour copy(one);
  copy.label(9);
  copy.isClosed(!one.isClosed());
  EXPECT_TRUE(one == copy);
  EXPECT_EQ(hashOf(one), hashOf(copy));
  const gxRegionT<gxEdgelet> region(data);
  EXPECT_EQ(hashOf(region), hashOf(gxRegionT<gxEdgelet>(region)));
  EXPECT_NE(hashOf(region), hashOf(gxRegionT<gxEdgelet>(std::vector<gxEdgelet>{data[0]})));
  EXPECT_EQ(hashOf(gxRegionSetT<gxEdgelet>()), hashOf(gxRegionSetT<gxEdgelet>()));
}

TEST(Hash, OfHandlesIsThatOfTheObject) {
  const auto region = gfMakeHandle<gxRegion>(square(0, 0, 1));
  const auto same = region;
  const auto other = gfMakeHandle<gxRegion>(square(0, 0, 1));
  expectTold(region, same, {other, gxPtrHandle<gxRegion>()});
  expectTold(Handle(region), Handle(same), {Handle(other), Handle()});
}

TEST(Hash, ServesTables) {
  std::unordered_set<V> seen{{1, 2}, {0.0, 3}};
  EXPECT_EQ(seen.count(V(-0.0, 3)), 1U);
  EXPECT_EQ(seen.count(V(3, 0)), 0U);
  std::unordered_map<gxContour, int> names;
  names.emplace(gxContour(square(0, 0, 1)), 4);
  EXPECT_EQ(names.at(gxContour(square(0, 0, 1), true, 8)), 4);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  seen.insert(V(nan, 0));
  EXPECT_EQ(seen.count(V(nan, 0)), 0U);  // a NaN equals nothing
}

// Neighbouring lattice points, which are what keys are, must not share hashes.
TEST(Hash, SpreadsLatticePoints) {
  std::unordered_set<std::size_t> hashes;
  std::unordered_set<std::size_t> low;
  for (int x = 0; x < 256; ++x) {
    for (int y = 0; y < 256; ++y) {
      const std::size_t hash = hashOf(V(x, y));
      hashes.insert(hash);
      low.insert(hash % 65536);
    }
  }
  EXPECT_EQ(hashes.size(), 65536U);
  EXPECT_GT(low.size(), 40000U);  // 41,427 of random numbers
}

TEST(Hash, AgreesWithEqualityOnRandomShapes) {
  RandomShapes random("hashes and equality", 500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.outline();
    const gxContour contour(points);
    gxContour other = contour;
    EXPECT_EQ(hashOf(contour), hashOf(other));
    if (points.empty()) continue;
    Points moved = points;
    const auto index = static_cast<std::size_t>(random.integer(0, static_cast<int>(points.size()) - 1));
    moved[index] = V(std::nextafter(moved[index].x(), 1e308), moved[index].y());
    if (gxContour(moved) == contour || std::isnan(moved[index].x())) continue;
    EXPECT_NE(hashOf(contour), hashOf(gxContour(moved)));
  }
}

}  // namespace
