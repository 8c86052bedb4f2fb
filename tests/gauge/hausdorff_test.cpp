// The Hausdorff distance: figures worked out by hand, shapes that are none, random shapes beside dense
// sampling.
#include <gauge/hausdorff.h>
#include <gtest/gtest.h>
#include <support/placements.h>
#include <support/plain_distance.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <sstream>
#include <string>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct Figure {
  const char* name;
  bool closed;
  const char* shape;
  const char* golden;
  double forward;
  gxVector<2> at;
  double back;
};

const double kRoot5 = std::sqrt(5.0);

// Each pair can be worked out with pencil and paper; the last but one is the example of an issue of
// shapely, number 2458, the one before it that of the GEOS manual.
const Figure kFigures[] = {
    {"a segment under a square without its lower side",
     false,
     "0 0, 10 0",
     "0 0, 0 10, 10 10, 10 0",
     5,
     {5, 0},
     10},
    {"a segment under a roof",
     false,
     "0 0, 10 0",
     "0 0, 4 3, 10 0",
     30 / (5 + 3 * kRoot5),
     {4.270509831248422, 0},
     3},
    {"a plateau", false, "0 0, 8 0", "0 0, 0 3, 8 3, 8 0", 3, {3, 0}, 3},
    {"a wall and a vertex",
     false,
     "0 0, 10 0",
     "0 0, 0 5, 6 2, 10 5, 10 0",
     5 * (kRoot5 - 1) / 2,
     {5 * (kRoot5 - 1) / 2, 0},
     5},
    {"a square with a dent",
     true,
     "0 0, 10 0, 10 10, 0 10",
     "0 0, 10 0, 10 10, 5 2, 0 10",
     40 / std::sqrt(89.0),
     {5, 10},
     50.0 / 13},
    {"ends beside", false, "0 0, 10 0", "0 1, 5 7, 10 1", 35 / std::sqrt(61.0), {5, 0}, 7},
    {"two vertices", false, "0 0, 10 0", "0 2, 0 9, 10 9, 10 2", std::sqrt(29.0), {5, 0}, 9},
    {"the diagonal of two sides", false, "0 0, 8 8", "0 0, 8 0, 8 8", 4, {4, 4}, 4 * std::sqrt(2.0)},
    {"a wall and a needle's tip",
     false,
     "0 0, 10 0",
     "0 0, 0 10, 6 10, 6 2, 6 10, 10 10, 10 0",
     10.0 / 3,
     {10.0 / 3, 0},
     10},
    {"poly-lines that cross",
     false,
     "26 8, 13 -2, 13 19, 10 19, 10 23, 1 17",
     "15 1, 28 11, 13 26, 1 18",
     9.9177842200,
     {13, 11.974135},
     9.3666923472},
    {"two angles",
     false,
     "130 0, 0 0, 0 150",
     "10 10, 10 150, 130 10",
     55.8779333829,
     {kNaN, kNaN},
     970.0 / 13},
    {"a square with a slot",
     true,
     "0 0, 12 0, 12 12, 0 12",
     "0 0, 5 0, 5 6, 7 6, 7 0, 12 0, 12 12, 0 12",
     1,
     {6, 0},
     6},
};

TEST(Hausdorff, FiguresWorkedOutByHandInPlaceTurnedAndFarAway) {
  for (const Placement& placed : {kInPlace, kTurned345, kFarAway, kTurnedFarAway}) {
    for (const Figure& figure : kFigures) {
      SCOPED_TRACE(figure.name);
      const auto shape = placed.of(pointsOf(figure.shape));
      const auto golden = placed.of(pointsOf(figure.golden));
      const gxHausdorff got = gfHausdorff({shape, figure.closed}, {golden, figure.closed});
      EXPECT_EQ(got.status, gxStatus::eOk);
      EXPECT_NEAR(got.hausdorffForward, figure.forward, 1.1e-9);
      EXPECT_NEAR(got.hausdorffBack, figure.back, 1.1e-9);
      EXPECT_EQ(got.hausdorff, std::max(got.hausdorffForward, got.hausdorffBack));
      if (std::isfinite(figure.at.x())) {
        EXPECT_NEAR(got.forward.from.point.distance(placed.of(figure.at)), 0.0, 1e-6);
      }
      EXPECT_NEAR(got.forward.from.point.distance(got.forward.to.point), got.hausdorffForward, 2e-9);
      EXPECT_NEAR(got.back.from.point.distance(got.back.to.point), got.hausdorffBack, 2e-9);
    }
  }
}

TEST(Hausdorff, FiguresInPlaceHoldToRounding) {
  for (const Figure& figure : kFigures) {
    if (figure.forward == 9.9177842200 || figure.forward == 55.8779333829) continue;
    SCOPED_TRACE(figure.name);
    const auto shape = pointsOf(figure.shape);
    const auto golden = pointsOf(figure.golden);
    EXPECT_NEAR(gfDirectedHausdorff({shape, figure.closed}, {golden, figure.closed}).distance,
                figure.forward, 4e-15 * figure.forward);
  }
}

TEST(Hausdorff, OfAPlateauTheFirstPlaceIsGiven) {
  const auto golden = pointsOf("0 0, 0 3, 8 3, 8 0");
  const auto first = gfDirectedHausdorff({pointsOf("0 0, 8 0"), false}, {golden, false});
  EXPECT_NEAR(first.from.point.x(), 3.0, 1e-13);
  const auto back = gfDirectedHausdorff({pointsOf("8 0, 0 0"), false}, {golden, false});
  EXPECT_NEAR(back.from.point.x(), 5.0, 1e-13);
  // An outline begins with its closing edge: this one from (0, 1) to (0, 0), all of it 5 away.
  const auto square = pointsOf("0 0, 1 0, 1 1, 0 1");
  const auto line = pointsOf("-5 -9, -5 9");
  const auto far = pointsOf("6 -9, 6 9");
  EXPECT_EQ(gfDirectedHausdorff({square, true}, {line, false}).from.edge, 1);
  EXPECT_EQ(gfDirectedHausdorff({square, true}, {far, false}).from.edge, 0);
}

TEST(Hausdorff, OfAShapeAndItselfIsNothing) {
  const auto shape = pointsOf("0 0, 4 0, 4 3");
  const gxHausdorff got = gfHausdorff(shape, shape);
  EXPECT_EQ(got.hausdorff, 0.0);
  EXPECT_EQ(got.forward.from.edge, 0);
  EXPECT_EQ(got.forward.from.t, 0.0);
}

TEST(Hausdorff, PointsAreEdgesOfNoLength) {
  const auto point = pointsOf("3 4");
  const auto origin = pointsOf("0 0");
  for (const bool closed : {false, true}) {
    EXPECT_EQ(gfHausdorff({point, closed}, {origin, closed}).hausdorff, 5.0);
    const auto square = pointsOf("0 0, 6 0, 6 8, 0 8");
    const gxHausdorff got = gfHausdorff({point, closed}, {square, true});
    EXPECT_EQ(got.hausdorffForward, 3.0);
    EXPECT_EQ(got.hausdorffBack, 5.0);
    EXPECT_EQ(got.forward.from.edge, 0);
  }
  EXPECT_EQ(gfHausdorff(pointsOf("1 1, 1 1, 1 1"), pointsOf("1 1")).hausdorff, 0.0);
}

TEST(Hausdorff, WithoutPointsOrWithBadOnesThereIsNone) {
  const std::vector<gxVector<2>> none;
  const auto some = pointsOf("0 0, 1 0, 1 1");
  EXPECT_EQ(gfHausdorff(none, some).status, gxStatus::eEmpty);
  EXPECT_EQ(gfHausdorff(some, none).status, gxStatus::eEmpty);
  EXPECT_EQ(gfDirectedHausdorff(none, none).status, gxStatus::eEmpty);
  EXPECT_TRUE(std::isnan(gfHausdorff(some, none).hausdorff));
  for (const double bad : {kNaN, kInfinity, -kInfinity}) {
    auto spoiled = some;
    spoiled[1] = {0.0, bad};
    for (const gxHausdorff& got :
         {gfHausdorff(some, spoiled), gfHausdorff(spoiled, some), gfHausdorff(spoiled, none)}) {
      EXPECT_EQ(got.status, gxStatus::eNotFinite);
      EXPECT_TRUE(std::isnan(got.hausdorff));
      EXPECT_FALSE(got.forward.from.valid());
      EXPECT_FALSE(got.back.to.valid());
    }
  }
}

TEST(Hausdorff, HolesCountAndRingsWithoutPointsDoNot) {
  gxRegion plate(pointsOf("0 0, 20 0, 20 10, 0 10"));
  gxRegion moved = plate;
  const auto drill = [](double x) {
    return gxRegion::HoleHandle(
        new gxRegion(std::vector<gxVector<2>>{{x, 4}, {x + 2, 4}, {x + 2, 6}, {x, 6}}));
  };
  plate.holes({drill(4)});
  moved.holes({drill(4.5)});
  const gxHausdorff got = gfHausdorff(moved, plate);
  EXPECT_EQ(got.hausdorff, 0.5);
  EXPECT_EQ(got.forward.from.ring, 0);
  EXPECT_EQ(got.forward.to.ring, 0);
  gxRegion without(pointsOf("0 0, 20 0, 20 10, 0 10"));
  EXPECT_EQ(gfDirectedHausdorff(without, plate).distance, 0.0);
  EXPECT_EQ(gfDirectedHausdorff(plate, without).distance, 5.0);
}

TEST(Hausdorff, ThousandsOfHolesAreFoundByTheirBoxes) {
  std::vector<gxRegion::HoleHandle> first;
  std::vector<gxRegion::HoleHandle> second;
  for (int i = 0; i < 60; ++i) {
    for (int j = 0; j < 60; ++j) {
      const auto ring = [&](double x) {
        return gxRegion::HoleHandle(new gxRegion(std::vector<gxVector<2>>{
            {10.0 * i + x, 10.0 * j}, {10.0 * i + x + 4, 10.0 * j}, {10.0 * i + x + 2, 10.0 * j + 3}}));
      };
      first.push_back(ring(3.0));
      second.push_back(ring(i == 41 && j == 17 ? 3.75 : 3.0));
    }
  }
  const std::vector<gxVector<2>> outline{{-5, -5}, {605, -5}, {605, 605}, {-5, 605}};
  gxRegion golden(outline);
  gxRegion part(outline);
  golden.holes(first);
  part.holes(second);
  const gxHausdorff got = gfHausdorff(part, golden);
  EXPECT_NEAR(got.hausdorff, 0.75, 1e-12);
  EXPECT_EQ(got.forward.from.ring, 41 * 60 + 17);
}

TEST(Hausdorff, ScalesFromTheSmallestToTheLargestAreOne) {
  const auto shape = pointsOf("0 0, 10 0");
  const auto golden = pointsOf("0 0, 4 3, 10 0");
  const double unit = gfDirectedHausdorff({shape, false}, {golden, false}).distance;
  for (const int exponent : {-1040, -1000, -500, -10, 20, 500, 1000, 1018}) {
    const double scale = std::ldexp(1.0, exponent);
    const Placement placed{1.0, 0.0, {0.0, 0.0}, scale};
    const auto got = gfDirectedHausdorff({placed.of(shape), false}, {placed.of(golden), false});
    EXPECT_EQ(got.distance, unit * scale) << exponent;
  }
}

TEST(Hausdorff, RandomShapesHaveThePlaceAndNoPointIsFarther) {
  RandomShapes random("hausdorff", 150);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto shape = random.finiteOutline();
    auto golden = random.chance(0.5) ? random.finiteOutline() : shape;
    if (shape.empty() || golden.empty()) continue;
    if (random.chance(0.5)) golden = random.placed(golden);
    const bool closed = random.chance(0.7);
    const bool goldenClosed = random.chance(0.7);
    const gxDirectedHausdorff got = gfDirectedHausdorff({shape, closed}, {golden, goldenClosed});
    double size = 0.0;
    for (const auto& p : shape) size = std::max({size, std::abs(p.x()), std::abs(p.y())});
    for (const auto& p : golden) size = std::max({size, std::abs(p.x()), std::abs(p.y())});
    const double least = plain::directedHausdorff({shape, closed}, {golden, goldenClosed}, 40);
    EXPECT_GE(got.distance, least - 4e-15 * size);
    const double there = plain::distance(plain::segmentsOf({golden, goldenClosed}), got.from.point);
    EXPECT_NEAR(got.distance, there, 2e-14 * size);
  }
}

TEST(Hausdorff, DirectionStartAndMotionDoNotMatter) {
  RandomShapes random("hausdorff invariance", 100);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto shape = random.star(random.integer(3, 60), {0, 0}, 3, 9);
    const auto golden = random.star(random.integer(3, 60), {1, 0}, 3, 9);
    const double truth = gfHausdorff(shape, golden).hausdorff;
    const auto start = static_cast<std::size_t>(random.integer(0, static_cast<int>(shape.size()) - 1));
    EXPECT_NEAR(gfHausdorff(reversed(shape), golden).hausdorff, truth, 1e-14);
    EXPECT_NEAR(gfHausdorff(rotatedStart(shape, start), reversed(golden)).hausdorff, truth, 1e-14);
    EXPECT_NEAR(gfHausdorff(kTurned345.of(shape), kTurned345.of(golden)).hausdorff, truth, 2e-14);
    EXPECT_NEAR(gfHausdorff(golden, shape).hausdorff, truth, 1e-14);
  }
}

TEST(Hausdorff, ResultsPrint) {
  std::ostringstream out;
  out << gfHausdorff(pointsOf("0 0, 1 0"), pointsOf("0 2, 1 2"));
  EXPECT_NE(out.str().find("hausdorff 2, forward 2 from ring -1 edge 0"), std::string::npos)
      << out.str();
  std::ostringstream one;
  one << gfDirectedHausdorff(pointsOf("0 0, 1 0"), pointsOf("0 2, 1 2"));
  EXPECT_NE(one.str().find("directed hausdorff 2 from ring"), std::string::npos) << one.str();
}

}  // namespace
