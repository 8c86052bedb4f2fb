// Edge points of results: kept ones, interpolated ones, holes, transforms.
#include <overlay/boolean.h>
#include <overlay/edge_points.h>
#include <overlay/offset.h>
#include <overlay/repair.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>
#include <velstd/xform_base.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Region = gxRegionT<gxEdgelet>;
using Handle = gxPtrHandle_const<Region>;

// Edge points at these places, the k-th with magnitude `first` + 10 k and angle `angle` + 20 k.
std::vector<gxEdgelet> edgePoints(const Points& points, int first, int angle) {
  std::vector<gxEdgelet> data;
  for (std::size_t k = 0; k < points.size(); ++k) {
    const int i = static_cast<int>(k);
    data.emplace_back(points[k], static_cast<unsigned short>(first + 10 * i),
                      gxAngle8(static_cast<unsigned char>((angle + 20 * i) & 0xff)));
  }
  return data;
}

Handle regionOf(const char* text, int first = 100, int angle = 0) {
  return Handle(new Region(edgePoints(pointsOf(text), first, angle)));
}

// The edge point of a region at that place; one of magnitude 65535 where it has none.
gxEdgelet at(const Region& region, const V& p) {
  for (std::size_t i = 0; i < region.points().size(); ++i) {
    if (region.points()[i] == p) return region.data()[i];
  }
  return {p, 65535, gxAngle8()};
}

TEST(EdgePoints, KeptVerticesKeepTheirsAndCrossingsLieBetween) {
  const Handle a = regionOf("0 0, 4 0, 4 4, 0 4");
  const Handle b = regionOf("1 2, 5 2, 5 6, 1 6", 500, 100);
  const auto set = gfWithEdgePoints(gfUnion(*a, *b), {a, b});
  ASSERT_EQ(set.regionsT().size(), 1U);
  const Region& united = *set.regionsT()[0];
  EXPECT_EQ(united.points(), gfUnion(*a, *b).regions()[0]->points());
  EXPECT_EQ(at(united, {0, 0}), a->data()[0]);
  EXPECT_EQ(at(united, {4, 0}), a->data()[1]);
  EXPECT_EQ(at(united, {0, 4}), a->data()[3]);
  EXPECT_EQ(at(united, {5, 2}), b->data()[1]);
  EXPECT_EQ(at(united, {5, 6}), b->data()[2]);
  EXPECT_EQ(at(united, {1, 6}), b->data()[3]);
  // Half way from (4, 0) to (4, 4), and three quarters from (4, 4) to (0, 4), both of the first source.
  EXPECT_EQ(at(united, {4, 2}), gxEdgelet({4, 2}, 115, gxAngle8(30)));
  EXPECT_EQ(at(united, {1, 4}), gxEdgelet({1, 4}, 128, gxAngle8(55)));
}

TEST(EdgePoints, AnglesGoTheShorterWayAround) {
  const auto half = [](int from, int to) {
    const std::vector<gxEdgelet> data{{{0, 0}, 10, gxAngle8(static_cast<unsigned char>(from))},
                                      {{4, 0}, 10, gxAngle8(static_cast<unsigned char>(to))},
                                      {{4, 4}, 10, gxAngle8(7)},
                                      {{0, 4}, 10, gxAngle8(7)}};
    const Handle a{new Region(data)};
    const auto set = gfWithEdgePoints(gfClip(*a, gxRect({0, 0}, {2, 4})), {a});
    return static_cast<int>(at(*set.regionsT()[0], {2, 0}).angle().toByte());
  };
  EXPECT_EQ(half(10, 30), 20);
  EXPECT_EQ(half(30, 10), 20);
  EXPECT_EQ(half(250, 10), 2);
  EXPECT_EQ(half(10, 250), 2);
  EXPECT_EQ(half(0, 128), 64);
  EXPECT_EQ(half(128, 0), 192);
  EXPECT_EQ(half(0, 130), 193);
}

TEST(EdgePoints, OfSharedPlacesTheFirstSourcesCount) {
  const Handle a = regionOf("0 0, 4 0, 4 4, 0 4");
  const Handle b = regionOf("4 0, 8 0, 8 4, 4 4", 500, 100);
  const Handle c = regionOf("0 0, 2 0, 4 0, 4 4, 0 4", 900, 100);
  const auto set = gfWithEdgePoints(gfUnion(*a, *b), {a, b});
  EXPECT_EQ(at(*set.regionsT()[0], {4, 0}), a->data()[1]);
  const auto other = gfWithEdgePoints(gfUnion(*a, *b), {b, a});
  EXPECT_EQ(at(*other.regionsT()[0], {4, 0}), b->data()[0]);
  // A vertex of the second source on an edge of the first is a vertex.
  const auto third = gfWithEdgePoints(gfUnion(*a, *c), {a, c});
  EXPECT_EQ(at(*third.regionsT()[0], {2, 0}), c->data()[1]);
}

TEST(EdgePoints, HolesHaveTheirsAndCount) {
  const Handle a = regionOf("0 0, 9 0, 9 9, 0 9");
  const Handle b = regionOf("2 2, 5 2, 5 5, 2 5", 500, 100);
  const gxRegionSet difference = gfDifference(*a, *b);
  const auto set = gfWithEdgePoints(difference, {a, b});
  const Region& plate = *set.regionsT()[0];
  ASSERT_EQ(plate.holes().size(), 1U);
  ASSERT_EQ(plate.gxRegion::holes().size(), 1U);
  EXPECT_EQ(static_cast<const gxContour*>(&*plate.holes()[0]),
            static_cast<const gxContour*>(&*plate.gxRegion::holes()[0]));
  EXPECT_EQ(at(*plate.holes()[0], {5, 2}), b->data()[1]);
  EXPECT_EQ(set.area(true), difference.area(true));
  // Once more, from what came out: the hole's edge points are those of an edge-point hole.
  const auto again = gfWithEdgePoints(gfRepair(plate).regions, set.regionsT());
  ASSERT_EQ(again.regionsT()[0]->holes().size(), 1U);
  EXPECT_EQ(at(*again.regionsT()[0]->holes()[0], {5, 2}), b->data()[1]);
}

TEST(EdgePoints, UnderATransformThePlacesAreThoseOfThePicture) {
  const gxPtrHandle_const<gx2XformBase> camera(
      new gx2XformLinear(gxXform<2>(gxMatrix<2>(2.4, -3.2, 3.2, 2.4), {640, 480})));
  const auto made = [&](const char* text, int first) {
    Points seen;
    for (const V& p : pointsOf(text)) seen.push_back(camera->mapPoint(p));
    return Handle(new Region(edgePoints(seen, first, 0), camera));
  };
  const Handle a = made("0 0, 4 0, 4 4, 0 4", 100);
  const Handle b = made("1 2, 5 2, 5 6, 1 6", 500);
  const auto set = gfWithEdgePoints(gfUnion(*a, *b), {a, b});
  const Region& united = *set.regionsT()[0];
  ASSERT_EQ(united.points().size(), 8U);
  const auto near = [&](const V& p) {
    for (std::size_t i = 0; i < united.points().size(); ++i) {
      if (united.points()[i].distance(p) < 1e-12) return united.data()[i];
    }
    return gxEdgelet();
  };
  EXPECT_EQ(near({0, 0}), a->data()[0]);
  EXPECT_EQ(near({5, 6}).magnitude(), b->data()[2].magnitude());
  EXPECT_LT(near({5, 6}).position().distance(b->data()[2].position()), 1e-9);
  EXPECT_LT(near({4, 2}).position().distance(camera->mapPoint({4, 2})), 1e-9);
  EXPECT_EQ(near({4, 2}).magnitude(), 115);
}

TEST(EdgePoints, WhatNoSourceHasIsEmpty) {
  const Handle a = regionOf("0 0, 4 0, 4 4, 0 4");
  gxOffsetForm mitre;
  mitre.join = gxJoin::eMitre;
  const auto grown = gfWithEdgePoints(gfOffset(*a, 1.0, mitre), {a});
  ASSERT_EQ(grown.regionsT().size(), 1U);
  for (const gxEdgelet& e : grown.regionsT()[0]->data()) {
    EXPECT_EQ(e.magnitude(), 0);
    EXPECT_EQ(e.angle().toByte(), 0);
  }
  EXPECT_EQ(grown.regionsT()[0]->points(), gfOffset(*a, 1.0, mitre).regions()[0]->points());
}

TEST(EdgePoints, ASourceAmongItsOwnHolesIsLookedAtOnce) {
  const gxPtrHandle<Region> a(new Region(*regionOf("0 0, 4 0, 4 4, 0 4")));
  a->holes({Region::HoleHandleT(a)});
  const auto set = gfWithEdgePoints(gfRepair(gxRegion(a->points())).regions, {a});
  EXPECT_EQ(set.regionsT()[0]->data(), a->data());
  a->holes(std::vector<Region::HoleHandleT>());
}

TEST(EdgePoints, WithoutSourcesOrRegions) {
  EXPECT_TRUE(gfWithEdgePoints(gxRegionSet(), {}).regionsT().empty());
  const Handle a = regionOf("0 0, 4 0, 4 4, 0 4");
  EXPECT_THROW(gfWithEdgePoints(gfUnion(*a, *a), {}), gxBadPointer);
  EXPECT_THROW(gfWithEdgePoints(gfUnion(*a, *a), {Handle()}), gxBadPointer);
  EXPECT_THROW(gfWithEdgePoints(gfUnion(*a, *a), {Handle(new Region())}), gxBadPointer);
  EXPECT_EQ(gfWithEdgePoints(gfUnion(*a, *a), {Handle(new Region()), a}).regionsT().size(), 1U);
}

TEST(EdgePoints, RandomUnionsHaveOneForEveryVertex) {
  RandomShapes random("edge points", 40);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto made = [&random](const V& centre) {
      return Handle(new Region(edgePoints(random.star(12, centre, 3, 9), 100, 0)));
    };
    // Far away, crossings lie beside their edges by what a coordinate is rounded by.
    const V place = random.chance(0.5) ? V(0, 0) : random.chance(0.5) ? V(0, -1e6) : V(-1e6, 0);
    const Handle a = made(place);
    const Handle b = made(place + V(random.uniform(-5, 5), random.uniform(-5, 5)));
    for (const gxRegionSet& plain :
         {gfUnion(*a, *b), gfIntersection(*a, *b), gfSymmetricDifference(*a, *b)}) {
      const auto set = gfWithEdgePoints(plain, {a, b});
      ASSERT_EQ(set.regionsT().size(), plain.regions().size());
      for (std::size_t i = 0; i < plain.regions().size(); ++i) {
        const Region& region = *set.regionsT()[i];
        EXPECT_EQ(region.points(), plain.regions()[i]->points());
        ASSERT_EQ(region.data().size(), region.points().size());
        for (std::size_t k = 0; k < region.points().size(); ++k) {
          const gxEdgelet& got = region.data()[k];
          EXPECT_EQ(got.position(), region.points()[k]);
          // Every vertex is one of a source or a crossing: none is without a magnitude.
          EXPECT_GE(got.magnitude(), 100);
          EXPECT_LE(got.magnitude(), 210);
          const gxEdgelet ofB = at(*b, region.points()[k]);
          const gxEdgelet ofA = at(*a, region.points()[k]);
          if (ofA.magnitude() != 65535) {
            EXPECT_EQ(got, ofA);
          } else if (ofB.magnitude() != 65535) {
            EXPECT_EQ(got, ofB);
          }
        }
      }
    }
  }
}

}  // namespace
