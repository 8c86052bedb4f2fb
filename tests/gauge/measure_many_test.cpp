// Covers gauge/areas_many.cpp
// Covers gauge/enclose_many.cpp
// Covers gauge/locate_many.cpp
// Covers gauge/measure_many.cpp
// Covers gauge/print_many.cpp
#include <cntr/shapestat.h>
#include <gauge/fit_many.h>
#include <gauge/measure_many.h>

#include <cntr/contourdefs.h>
#include <gauge/descriptors.h>
#include <gauge/enclosing.h>
#include <gauge/measure.h>
#include <gauge/moments.h>
#include <support/outline_files.h>
#include <support/printed.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>
#include <support/shape_text.h>
#include <support/source_folder.h>
#include <velstd/convex_hull.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <thread>
#include <vector>

namespace {

using Points = std::vector<gxVector<2>>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Outlines in one array.
struct Many {
  Points points;
  std::vector<std::size_t> offsets{0};

  void add(const Points& outline) {
    points.insert(points.end(), outline.begin(), outline.end());
    offsets.push_back(points.size());
  }
  gxOutlines all() const { return {points, offsets}; }
};

Many manyOf(const std::vector<Points>& outlines) {
  Many many;
  for (const Points& outline : outlines) many.add(outline);
  return many;
}

std::vector<Points> degenerate() {
  return {{},
          {{3, 4}},
          {{1, 1}, {1, 1}, {1, 1}},
          {{0, 0}, {4, 0}},
          {{0, 0}, {4, 0}, {2, 0}},
          {{0, 0}, {2, 2}, {kNaN, 1}},
          {{0, 0}, {kInfinity, 2}, {1, 1}},
          {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}, {0, 1}, {1, 1}, {1, 0}},  // turns that cancel
          {{0, 0}, {1e-300, 0}, {1e-300, 1e-300}, {0, 1e-300}},
          {{0, 0}, {1e300, 0}, {1e300, 1e300}, {-1e300, 1e300}},
          {{-1e308, -1e308}, {1e308, -1e308}, {1e308, 1e308}},
          {{0, 0}, {5e-324, 0}, {5e-324, 5e-324}},
          {{0, 0}, {1, 0}, {1, 1e-200}, {1, 1}, {0, 1}},  // an edge whose square vanishes
          {{0, 0}, {1, 0}, {1, 0}, {1, 1}, {1, 1}, {0, 1}},
          {{-0.0, 0.0}, {-1, -0.0}, {-1, -1}, {0.0, -1}},
          {{0, 0}, {0, 3}, {4, 0}},  // clockwise
          {{0, 0}, {2, 2}, {2, 0}, {0, 2}, {-1, 3}}};
}

void expectRow(const gxMeasureColumns& c, std::size_t k, const Points& outline) {
  SCOPED_TRACE(testing::Message() << "row " << k << " of " << outline.size() << " points");
  const gxMeasure one = gfMeasure(outline);
  const gxMoments moments = gfMoments(outline);
  EXPECT_EQ(c.status[k], one.status);
  EXPECT_TRUE(sameBits(c.area[k], one.area)) << c.area[k] << " " << one.area;
  EXPECT_TRUE(sameBits(c.length[k], one.length)) << c.length[k] << " " << one.length;
  EXPECT_TRUE(sameBits(c.centreX[k], one.centre.x())) << c.centreX[k] << " " << one.centre.x();
  EXPECT_TRUE(sameBits(c.centreY[k], one.centre.y())) << c.centreY[k] << " " << one.centre.y();
  EXPECT_TRUE(sameBits(c.boxXMin[k], one.low.x()));
  EXPECT_TRUE(sameBits(c.boxYMin[k], one.low.y()));
  EXPECT_TRUE(sameBits(c.boxXMax[k], one.high.x()));
  EXPECT_TRUE(sameBits(c.boxYMax[k], one.high.y()));
  EXPECT_TRUE(sameBits(c.moment20[k], moments.moment20));
  EXPECT_TRUE(sameBits(c.moment11[k], moments.moment11));
  EXPECT_TRUE(sameBits(c.moment02[k], moments.moment02));
}

void expectRows(const std::vector<Points>& outlines) {
  const Many many = manyOf(outlines);
  const gxMeasureColumns columns = gfMeasureMany(many.all());
  ASSERT_EQ(columns.size(), outlines.size());
  for (std::size_t k = 0; k < outlines.size(); ++k) expectRow(columns, k, outlines[k]);
}

Points randomOutline(RandomShapes& random) {
  const gxVector<2> centre(random.uniform(-1000, 1000), random.uniform(-1000, 1000));
  return random.star(random.integer(3, random.chance(0.1) ? 400 : 60), centre, 1.0, 20.0);
}

TEST(MeasureMany, OutlinesAndColumnsPrintHowManyThereAre) {
  const auto points = pointsOf("0 0, 2 0, 2 2, 1 1, 1 1");
  const std::vector<std::size_t> offsets{0, 3, 5, 9};
  const gxOutlines outlines(points, offsets);
  EXPECT_EQ(printed(outlines), "3 outlines in 5 points");
  EXPECT_EQ(printed(gfMeasureMany(outlines)), "measures of 3 outlines, 2 not ok");
  EXPECT_EQ(printed(gfEncloseMany(outlines)), "enclosures of 3 outlines, 1 not ok");
  EXPECT_EQ(printed(gfAreasMany(outlines)), "areas of 3 outlines, 2 not ok");
  EXPECT_EQ(printed(gfHullsMany(outlines)), "hulls of 3 outlines, 2 not ok");
  EXPECT_EQ(printed(gfFitLinesMany(outlines)), "lines of 3 outlines, 2 not ok");
  EXPECT_EQ(printed(gfFitCirclesMany(outlines)), "circles of 3 outlines, 2 not ok");
  EXPECT_EQ(printed(gfFitEllipsesMany(outlines)), "ellipses of 3 outlines, 3 not ok");
}

}  // namespace

TEST(MeasureMany, NothingHasNoRows) {
  EXPECT_EQ(gfMeasureMany(gxOutlines()).size(), 0U);
  const std::vector<std::size_t> one{0};
  EXPECT_EQ(gfMeasureMany(gxOutlines({}, one)).size(), 0U);
}

TEST(MeasureMany, ASquareBesideATriangle) {
  const Many many = manyOf({{{0, 0}, {2, 0}, {2, 2}, {0, 2}}, {{0, 0}, {3, 0}, {0, 4}}});
  const gxMeasureColumns c = gfMeasureMany(many.all());
  EXPECT_EQ(c.area, (std::vector<double>{4.0, 6.0}));
  EXPECT_EQ(c.length, (std::vector<double>{8.0, 12.0}));
  EXPECT_EQ(c.centreX[0], 1.0);
  EXPECT_EQ(c.boxYMax, (std::vector<double>{2.0, 4.0}));
  EXPECT_NEAR(c.moment20[0], 16.0 / 12.0, 1e-15);
}

TEST(MeasureMany, DegenerateOutlinesAreAnsweredAsAlone) {
  expectRows(degenerate());
}

TEST(MeasureMany, DegenerateOutlinesBesideOrdinaryOnesSpoilNothing) {
  // Of each degenerate outline, three ordinary ones of about its size would share its four.
  RandomShapes random("measures of many, degenerate", 1);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    for (const Points& odd : degenerate()) {
      const int size = std::max(3, static_cast<int>(odd.size()));
      std::vector<Points> outlines(3);
      for (Points& outline : outlines) outline = random.star(size, {5, 5}, 1.0, 2.0);
      outlines.insert(outlines.begin() + random.integer(0, 3), odd);
      expectRows(outlines);
    }
  }
}

TEST(MeasureMany, EveryOutlineKeepsTheBitsThatItHasAlone) {
  RandomShapes random("measures of many", 40);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<Points> outlines;
    for (int i = random.integer(1, 150); i > 0; --i) {
      Points outline = randomOutline(random);
      if (random.chance(0.3)) std::reverse(outline.begin(), outline.end());
      if (random.chance(0.1)) outline.push_back(outline.back());
      if (random.chance(0.1)) {
        const double scale = std::pow(10.0, random.uniform(-300.0, 300.0));
        for (gxVector<2>& p : outline) p = p * scale;
      }
      outlines.push_back(outline);
    }
    expectRows(outlines);
  }
}

TEST(MeasureMany, BlocksOfTheSumsEndWhereTheyEndAlone) {
  // Sums are made in blocks of 32 and 64 edges.
  RandomShapes random("measures of many, blocks", 2);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<Points> outlines;
    for (const int size : {3, 31, 32, 33, 34, 35, 63, 64, 65, 66, 67, 96, 98, 129, 130, 1000}) {
      outlines.push_back(random.star(size, {100, 50}, 1.0, 30.0));
    }
    expectRows(outlines);
  }
}

TEST(MeasureMany, GlyphsAndCountries) {
  for (const char* path :
       {"/tests/data/glyphs/glyphs.jsonl", "/tests/data/countries/countries_110m.jsonl"}) {
    SCOPED_TRACE(path);
    std::vector<Points> outlines;
    for (const FiledShape& shape : filedShapes(sourceFolder() + path)) outlines.push_back(shape.outline);
    expectRows(outlines);
  }
}

TEST(MeasureMany, OffsetsThatFallOrReachTooFarAreTold) {
  const Points points{{0, 0}, {2, 0}, {2, 2}, {0, 0}, {1, 0}, {1, 1}};
  const std::vector<std::size_t> offsets{0, 3, 6, 4, 7, 3, 6};
  const gxOutlines outlines(points, offsets);
  ASSERT_EQ(outlines.size(), 6U);
  const gxMeasureColumns c = gfMeasureMany(outlines);
  const gxEnclosureColumns e = gfEncloseMany(outlines);
  for (const std::size_t k : {2U, 3U, 4U}) {
    EXPECT_FALSE(outlines.valid(k));
    EXPECT_EQ(c.status[k], gxStatus::eBadArgument);
    EXPECT_TRUE(std::isnan(c.area[k]) && std::isnan(c.length[k]) && std::isnan(c.moment11[k]));
    EXPECT_EQ(e.status[k], gxStatus::eBadArgument);
    EXPECT_TRUE(std::isnan(e.circleRadius[k]) && std::isnan(e.diameter[k]));
  }
  EXPECT_EQ(c.area[0], 2.0);
  EXPECT_EQ(c.area[1], 0.5);
  EXPECT_EQ(c.area[5], 0.5);
}

TEST(MeasureMany, ARangeWritesItsRowsAlone) {
  RandomShapes random("measures of many, ranges", 1);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    Many many;
    for (int i = 0; i < 20; ++i) many.add(randomOutline(random));
    const gxMeasureColumns whole = gfMeasureMany(many.all());
    gxMeasureColumns part;
    part.resize(20);
    for (double& area : part.area) area = -7.0;
    gfMeasureMany(many.all(), 5, 12, part);
    for (std::size_t k = 0; k < 20; ++k) {
      EXPECT_EQ(part.area[k], k >= 5 && k < 12 ? whole.area[k] : -7.0);
    }
    gfMeasureMany(many.all(), 12, 1000, part);
    EXPECT_EQ(part.area[19], whole.area[19]);
    gfMeasureMany(many.all(), 1000, 2000, part);
    part.resize(11);
    const std::vector<double> before = part.area;
    EXPECT_THROW(gfMeasureMany(many.all(), 0, 12, part), gxContourDefs::BadParams);
    EXPECT_EQ(part.area, before);
  }
}

TEST(MeasureMany, ThreadsWorkOnRangesOfTheirOwn) {
  RandomShapes random("measures of many, threads", 1);
  while (random.next()) {
    Many many;
    for (int i = 0; i < 900; ++i) many.add(randomOutline(random));
    const gxMeasureColumns whole = gfMeasureMany(many.all());
    gxMeasureColumns parts;
    parts.resize(900);
    std::vector<std::thread> threads;
    for (std::size_t k = 0; k < 3; ++k) {
      threads.emplace_back([&, k] { gfMeasureMany(many.all(), k * 300, k * 300 + 300, parts); });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(parts.area, whole.area);
    EXPECT_EQ(parts.length, whole.length);
    EXPECT_EQ(parts.status, whole.status);
    EXPECT_EQ(parts.moment02, whole.moment02);
  }
}

// ---- Places ----------------------------------------------------------------------------------------

TEST(LocateMany, InsideOutsideAndOnTheBorderOfASquare) {
  const Many outlines =
      manyOf({{{0, 0}, {2, 0}, {2, 2}, {0, 2}}, {{5, 5}}, {}, {{0, 0}, {1, kNaN}, {2, 2}}});
  const Many queries = manyOf({{{1, 1}, {2, 1}, {0, 0}, {1, 2}, {3, 1}, {1, kNaN}, {-1, 2}, {2, 2}},
                               {{5, 5}, {5, 6}},
                               {{0, 0}},
                               {{1, 1}}});
  const auto in = gxState::eInside;
  const auto on = gxState::eBorder;
  const auto out = gxState::eOutside;
  EXPECT_EQ(gfLocateMany(outlines.all(), queries.all()),
            (std::vector<gxState>{in, on, on, on, out, out, out, on, on, out, out, out}));
}

TEST(LocateMany, WhatHasNoPartnerIsLeftAlone) {
  const Many one = manyOf({{{0, 0}, {2, 0}, {2, 2}, {0, 2}}});
  const Many queries = manyOf({{{1, 1}}, {{1, 1}}});
  EXPECT_EQ(gfLocateMany(one.all(), queries.all()),
            (std::vector<gxState>{gxState::eInside, gxState::eOutside}));
  std::vector<gxState> states(1, gxState::eBorder);
  EXPECT_THROW(gfLocateMany(one.all(), queries.all(), 0, 1, states), gxContourDefs::BadParams);
  EXPECT_EQ(states[0], gxState::eBorder);
  states.assign(2, gxState::eBorder);
  gfLocateMany(one.all(), queries.all(), 0, 5, states);
  EXPECT_EQ(states, (std::vector<gxState>{gxState::eInside, gxState::eBorder}));
  EXPECT_EQ(gfLocateMany(one.all(), gxOutlines()).size(), 0U);
}

TEST(LocateMany, IsThatOfALocator) {
  RandomShapes random("places of many", 60);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<Points> outlines = degenerate();
    // Whole coordinates, so that queries lie on borders and on the levels of vertices.
    for (int i = 0; i < 20; ++i) {
      Points outline;
      for (int n = random.integer(1, 12); n > 0; --n) {
        outline.emplace_back(random.integer(0, 5), random.integer(0, 5));
      }
      outlines.push_back(outline);
    }
    std::vector<Points> queries;
    for (std::size_t k = 0; k < outlines.size(); ++k) {
      Points list;
      for (int n = random.integer(0, 12); n > 0; --n) {
        list.emplace_back(random.integer(-2, 12) * 0.5, random.integer(-2, 12) * 0.5);
      }
      queries.push_back(list);
    }
    const Many shapes = manyOf(outlines);
    const Many asked = manyOf(queries);
    const std::vector<gxState> states = gfLocateMany(shapes.all(), asked.all());
    std::size_t j = 0;
    for (std::size_t k = 0; k < outlines.size(); ++k) {
      const gxLocator locator{std::span<const gxVector<2>>(outlines[k])};
      for (const gxVector<2>& p : queries[k]) {
        EXPECT_EQ(states[j++], locator.locate(p).state)
            << "outline " << k << ", " << testing::PrintToString(p);
      }
    }
  }
}

// ---- Enclosures ------------------------------------------------------------------------------------

TEST(EncloseMany, IsWhatTheSingleFormsFind) {
  RandomShapes random("enclosures of many", 20);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<Points> outlines = degenerate();
    for (int i = 0; i < 10; ++i) outlines.push_back(randomOutline(random));
    const Many many = manyOf(outlines);
    const gxEnclosureColumns c = gfEncloseMany(many.all());
    ASSERT_EQ(c.size(), outlines.size());
    for (std::size_t k = 0; k < outlines.size(); ++k) {
      SCOPED_TRACE(k);
      const gxEnclosingCircle circle = gfEnclosingCircle(std::span<const gxVector<2>>(outlines[k]));
      const gxDescriptors d = gfDescribe(std::span<const gxVector<2>>(outlines[k]));
      EXPECT_EQ(c.status[k], circle.status);
      EXPECT_TRUE(sameBits(c.circleX[k], circle.centre.x()));
      EXPECT_TRUE(sameBits(c.circleY[k], circle.centre.y()));
      EXPECT_TRUE(sameBits(c.circleRadius[k], circle.radius));
      EXPECT_TRUE(sameBits(c.diameter[k], d.feretMax)) << c.diameter[k] << " " << d.feretMax;
      EXPECT_TRUE(sameBits(c.hullArea[k], d.hullArea)) << c.hullArea[k] << " " << d.hullArea;
      if (circle.status == gxStatus::eOk) {
        EXPECT_EQ(c.hullSize[k] > 0, !outlines[k].empty());
      }
    }
    EXPECT_EQ(c.hullSize[1], 1);
    EXPECT_EQ(c.hullSize[4], 2);
    EXPECT_EQ(c.hullSize[15], 3);
  }
}

// ---- Areas -----------------------------------------------------------------------------------------

namespace {

void expectAreaRow(const gxAreaColumns& c, std::size_t k, const Points& outline) {
  SCOPED_TRACE(testing::Message() << "row " << k << " of " << outline.size() << " points");
  const gxMeasure one = gfMeasure(outline);
  ASSERT_EQ(c.status[k], one.status);
  // Far from ordinary sizes, too, gfMeasure answers.
  if (one.status != gxStatus::eOk || !(one.area > 1e-121 && one.area < 1e121)) {
    EXPECT_TRUE(sameBits(c.area[k], one.area)) << c.area[k] << " " << one.area;
    EXPECT_TRUE(sameBits(c.centreX[k], one.centre.x())) << c.centreX[k] << " " << one.centre.x();
    EXPECT_TRUE(sameBits(c.centreY[k], one.centre.y())) << c.centreY[k] << " " << one.centre.y();
    return;
  }
  const double size = std::max(one.high.x() - one.low.x(), one.high.y() - one.low.y());
  const double place = 2e-16 * std::max(std::abs(one.centre.x()), std::abs(one.centre.y()));
  EXPECT_LE(std::abs(c.area[k] - one.area), 1e-12 * one.area);
  EXPECT_LE(std::abs(c.centreX[k] - one.centre.x()), 1e-12 * size + place);
  EXPECT_LE(std::abs(c.centreY[k] - one.centre.y()), 1e-12 * size + place);
}

void expectAreaRows(const std::vector<Points>& outlines) {
  const Many many = manyOf(outlines);
  const gxAreaColumns columns = gfAreasMany(many.all());
  ASSERT_EQ(columns.size(), outlines.size());
  for (std::size_t k = 0; k < outlines.size(); ++k) expectAreaRow(columns, k, outlines[k]);
}

}  // namespace

TEST(AreasMany, ASquareATriangleAndNothing) {
  const Many many =
      manyOf({{{1, 1}, {3, 1}, {3, 3}, {1, 3}}, {{0, 0}, {0, 3}, {6, 0}}, {}, {{0, 0}, {2, 2}, {4, 4}}});
  const gxAreaColumns c = gfAreasMany(many.all());
  EXPECT_EQ(c.status,
            (std::vector<gxStatus>{gxStatus::eOk, gxStatus::eOk, gxStatus::eEmpty, gxStatus::eFlat}));
  EXPECT_EQ(c.area, (std::vector<double>{4.0, 9.0, 0.0, 0.0}));
  EXPECT_EQ(c.centreX[0], 2.0);
  EXPECT_EQ(c.centreY[0], 2.0);
  EXPECT_EQ(c.centreX[1], 2.0);
  EXPECT_EQ(c.centreY[1], 1.0);
  EXPECT_TRUE(std::isnan(c.centreX[2]));
  EXPECT_EQ(c.centreX[3], 2.0);
  EXPECT_EQ(gfAreasMany(gxOutlines()).size(), 0U);
}

TEST(AreasMany, DegenerateOutlinesAreAnsweredAsAlone) {
  expectAreaRows(degenerate());
}

// Doubling is exact, so these lie on a line through the origin; the differences between them are rounded, and make areas.
TEST(AreasMany, PointsExactlyOnALineAreFlatHoweverTheirDifferencesRound) {
  RandomShapes random("areas of many, on a line", 200);
  int notZero = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const gxVector<2> p(random.uniform(1.0, 2.0), random.uniform(1.0, 2.0));
    const Points line{p, p * 8.0, p * 2.0, p * 64.0};
    const gxAreaColumns c = gfAreasMany(manyOf({line}).all());
    EXPECT_EQ(c.status[0], gxStatus::eFlat);
    EXPECT_EQ(c.area[0], 0.0);
    notZero += gf_Area(line) != 0.0 ? 1 : 0;
  }
  EXPECT_GT(notZero, 0);  // else nothing was rounded
}

TEST(AreasMany, EveryPlaceOfTheLastFourEdgesAndTheEndOfABlock) {
  RandomShapes random("areas of many, blocks", 2);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<Points> outlines;
    for (int size = 3; size < 20; ++size) outlines.push_back(random.star(size, {100, 50}, 1.0, 30.0));
    for (int size = 255; size < 264; ++size) outlines.push_back(random.star(size, {100, 50}, 1.0, 30.0));
    for (int size = 511; size < 518; ++size) outlines.push_back(random.star(size, {-7, 5}, 1.0, 30.0));
    expectAreaRows(outlines);
  }
}

TEST(AreasMany, AreThoseOfGfMeasureToRounding) {
  RandomShapes random("areas of many", 40);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<Points> outlines;
    for (int i = random.integer(1, 60); i > 0; --i) {
      Points outline = randomOutline(random);
      if (random.chance(0.3)) std::reverse(outline.begin(), outline.end());
      if (random.chance(0.2)) std::shuffle(outline.begin(), outline.end(), std::minstd_rand(7));
      if (random.chance(0.2)) {
        const double scale = std::pow(10.0, random.uniform(-300.0, 300.0));
        for (gxVector<2>& p : outline) p = p * scale;
      }
      outlines.push_back(outline);
    }
    expectAreaRows(outlines);
  }
}

TEST(AreasMany, ManyPointsLoseNoDigits) {
  // A circle of 200,000 points around a far place: the area of the regular polygon, to a part in 1e13.
  constexpr int kCount = 200000;
  Points circle;
  for (int i = 0; i < kCount; ++i) {
    const double angle = 2.0 * 3.141592653589793 * i / kCount;
    circle.emplace_back(64.0 + std::cos(angle), -32.0 + std::sin(angle));
  }
  const Many many = manyOf({circle});
  const gxAreaColumns c = gfAreasMany(many.all());
  const double expected = 0.5 * kCount * std::sin(2.0 * 3.141592653589793 / kCount);
  EXPECT_NEAR(c.area[0], expected, 1e-13 * expected);
  EXPECT_NEAR(c.centreX[0], 64.0, 1e-12);
  EXPECT_NEAR(c.centreY[0], -32.0, 1e-12);
}

TEST(AreasMany, WhereMostCancelsTheNumbersAreThoseOfGfMeasure) {
  // Two loops of opposite turns whose areas differ by a thousandth of their sum.
  const Points bow{{0, 0}, {1, 0.1}, {1, 0.9}, {0, 1.002}, {2, 1.1}, {2, 0.1}, {1.1, 0.3}};
  std::vector<Points> outlines{
      bow, {{0, 0}, {3, 3}, {3, 0}, {0, 3.001}}, {{0.1, 0.2}, {3, 3}, {3, 0}, {0, 3.2}}};
  const Many many = manyOf(outlines);
  const gxAreaColumns c = gfAreasMany(many.all());
  for (const std::size_t k : {1U, 2U}) {
    const gxMeasure one = gfMeasure(outlines[k]);
    EXPECT_TRUE(sameBits(c.area[k], one.area));
    EXPECT_TRUE(sameBits(c.centreX[k], one.centre.x()));
  }
  expectAreaRows(outlines);
}

TEST(AreasMany, ARangeWritesItsRowsAlone) {
  const Many many =
      manyOf({{{0, 0}, {1, 0}, {1, 1}}, {{0, 0}, {2, 0}, {2, 2}}, {{0, 0}, {4, 0}, {4, 4}}});
  gxAreaColumns c;
  c.resize(3);
  gfAreasMany(many.all(), 1, 2, c);
  EXPECT_EQ(c.area, (std::vector<double>{0.0, 2.0, 0.0}));
  EXPECT_EQ(c.status[2], gxStatus::eEmpty);
  c.resize(2);
  EXPECT_THROW(gfAreasMany(many.all(), 0, 9, c), gxContourDefs::BadParams);
  EXPECT_EQ(c.area, (std::vector<double>{0.0, 2.0}));
  gfAreasMany(many.all(), 7, 9, c = gfAreasMany(many.all()));
  EXPECT_EQ(c.area, (std::vector<double>{0.5, 2.0, 8.0}));
}

TEST(AreasMany, OffsetsThatFallAreTold) {
  const Points points{{0, 0}, {2, 0}, {2, 2}};
  const std::vector<std::size_t> offsets{0, 3, 1, 9};
  const gxAreaColumns c = gfAreasMany(gxOutlines(points, offsets));
  EXPECT_EQ(c.area[0], 2.0);
  for (const std::size_t k : {1U, 2U}) {
    EXPECT_EQ(c.status[k], gxStatus::eBadArgument);
    EXPECT_TRUE(std::isnan(c.area[k]) && std::isnan(c.centreX[k]) && std::isnan(c.centreY[k]));
  }
}

// ---- Coordinates as bare numbers ---------------------------------------------------------------------

TEST(OutlinesOfCoordinates, LookAtTheNumbersWhereTheyLie) {
  const std::vector<double> xy{0, 0, 2, 0, 2, 2, 5, 6, 7, 6, 7, 9, 11};
  const std::vector<std::size_t> offsets{0, 3, 6};
  const gxOutlines outlines = gxOutlines::ofCoordinates(xy, offsets);
  ASSERT_EQ(outlines.points().size(), 6U) << "the odd number at the end belongs to no point";
  EXPECT_EQ(outlines[1][2], gxVector<2>(7, 9));
  EXPECT_EQ(gfMeasureMany(outlines).area, (std::vector<double>{2.0, 3.0}));
  EXPECT_EQ(gfAreasMany(outlines).area, (std::vector<double>{2.0, 3.0}));
  EXPECT_EQ(gxOutlines::ofCoordinates({}, {}).size(), 0U);
}

// ---- Hulls -----------------------------------------------------------------------------------------

TEST(HullsMany, AreThoseOfTheSingleForm) {
  RandomShapes random("hulls of many", 10);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<Points> outlines = degenerate();
    for (int i = 0; i < 10; ++i) outlines.push_back(randomOutline(random));
    const Many many = manyOf(outlines);
    const gxHullLists hulls = gfHullsMany(many.all());
    ASSERT_EQ(hulls.size(), outlines.size());
    ASSERT_EQ(hulls.outlines().size(), outlines.size());
    const gxHullLists part = gfHullsMany(many.all(), 3, 9);
    ASSERT_EQ(part.size(), 6U);
    for (std::size_t k = 0; k < outlines.size(); ++k) {
      SCOPED_TRACE(k);
      Points expected;
      if (gfMeasure(outlines[k]).status != gxStatus::eNotFinite) gfConvexHull(outlines[k], expected);
      const auto found = hulls.outlines()[k];
      EXPECT_EQ(Points(found.begin(), found.end()), expected);
      if (k < 3 || k >= 9) continue;
      const auto again = part.outlines()[k - 3];
      EXPECT_EQ(Points(again.begin(), again.end()), expected);
    }
  }
}

TEST(HullsMany, TheStatusSaysWhatKindOfHull) {
  const Points points{{0, 0}, {2, 0}, {2, 2}, {0, 0}, {1, 1}, {2, 2}, {5, 5}, {kNaN, 1}};
  const std::vector<std::size_t> offsets{0, 3, 6, 7, 7, 8, 6};
  const gxHullLists hulls = gfHullsMany(gxOutlines(points, offsets));
  EXPECT_EQ(hulls.status,
            (std::vector<gxStatus>{gxStatus::eOk, gxStatus::eFlat, gxStatus::eFlat, gxStatus::eEmpty,
                                   gxStatus::eNotFinite, gxStatus::eBadArgument}));
  EXPECT_EQ(hulls.offsets, (std::vector<std::size_t>{0, 3, 5, 6, 6, 6, 6}));
  EXPECT_EQ(gfHullsMany(gxOutlines()).size(), 0U);
  EXPECT_EQ(gfHullsMany(gxOutlines(points, offsets), 4, 2).offsets, (std::vector<std::size_t>{0}));
}
