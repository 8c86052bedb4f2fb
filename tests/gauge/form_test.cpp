// Form errors: figures from the literature and solved by hand; all pairs of pairs beside the search.
// Covers gauge/form_roundness.cpp
// Covers gauge/form_straightness.cpp
#include <gauge/form.h>
#include <gtest/gtest.h>
#include <support/placements.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <numbers>
#include <sstream>

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
using Points = std::vector<gxVector<2>>;
using R = gxFormReference;

Points lobed(int count, double amplitude, int lobes) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double angle = 2 * kPi * i / count;
    const double r = 10 + amplitude * std::cos(lobes * angle);
    points.emplace_back(r * std::cos(angle), r * std::sin(angle));
  }
  return points;
}

Points withFirst(Points points, const gxVector<2>& first) {
  points[0] = first;
  return points;
}

struct Figure {
  const char* name;
  Points points;
  double leastSquares, minimumZone, circumscribed, inscribed;
};

// Of the sets by the National Institute of Standards and Technology the least squares circle is the
// published reference; of the one by W. Gander, G. Golub and R. Strebel ("Least-squares fitting of circles
// and ellipses", BIT 34, 1994) likewise.  The zones were found by trying every candidate centre.
const Figure kFigures[] = {
    {"a cross", pointsOf("10 0, -10 0, 0 9, 0 -9"), 1, 1, 1, 1.9},
    {"seven points with a zone of a quarter",
     pointsOf("10 0, 5.85 7.8, -7.9 5.925, -9.6 -2.8, -5.925 -7.9, 3.75 -9, 7.9 -5.925"), 0.2747710800,
     0.25, 0.3733109180, 0.2950602405},
    {"three lobes", lobed(12, 0.1, 3), 0.2, 0.2, 0.2, 0.2},
    {"two lobes", lobed(8, 0.1, 2), 0.2, 0.2, 0.2, 0.3397142747},
    {"a chip", withFirst(lobed(12, 0, 1), {9, 0}), 0.9781899435,
     std::sqrt(100.25 + 5 * std::sqrt(3.0)) - 9.5, 1, 0.9999100413},
    {"a burr", withFirst(lobed(12, 0, 1), {11, 0}), 0.9771224801,
     10.5 - std::sqrt(100.25 - 5 * std::sqrt(3.0)), 0.9297468183, 1},
    {"a rectangle with two points", pointsOf("4 3, -4 3, -4 -3, 4 -3, 0 4, 0 -4"), 1, 1, 1, kNaN},
    {"corners and mid-sides of a square", pointsOf("1 1, 0 1, -1 1, -1 0, -1 -1, 0 -1, 1 -1, 1 0"),
     std::sqrt(2.0) - 1, std::sqrt(2.0) - 1, std::sqrt(2.0) - 1, std::sqrt(2.0) - 1},
    {"a zigzag", pointsOf("0 0, 1 1, 2 0, 3 1"), 0.8740320489, (std::sqrt(10.0) - std::sqrt(2.0)) / 2,
     kNaN, std::sqrt(5.0) - 1},
    {"Gander, Golub, Strebel", pointsOf("1 7, 2 6, 5 8, 7 7, 9 5, 3 7"), 1.413002714, 1.353615062, kNaN,
     kNaN},
    {"NIST cir2d25",
     pointsOf("-13.93285 6.62144, -10.04374 9.34289, -5.3716 8.5062, -2.64147 4.61692, "
              "-3.37999 -0.12926, -7.34141 -2.90926, -12.11852 -2.06743, -14.8844 1.92115"),
     0.05679179256, 0.05228254460, 0.05380961297, 0.05604240118},
    {"NIST cir2d16",
     pointsOf("-495.10298 -256.71324, -482.0437 -269.48596, -463.91281 -267.23694, "
              "-454.37411 -251.65384, -460.60945 -234.48887, -477.90962 -228.66262, "
              "-493.26078 -238.55044"),
     0.002852135342, 0.002552021951, 0.002639847838, 0.003651853521},
    {"NIST cir2d23",
     pointsOf("273.17073 -83.08709, 246.13144 -125.51215, 262.43964 -173.10488, 309.8175 -190.07646, "
              "352.63748 -163.55485, 358.60251 -113.54877, 323.2219 -77.71665"),
     0.03106734089, 0.02884718547, 0.03390748310, 0.03561271221}};

TEST(Roundness, FiguresOfTheLiteratureAndByHandInPlaceTurnedAndFarAway) {
  for (const Placement& placed : {kInPlace, kTurned345, kFarAway, kTurnedFarAway}) {
    const double slack = placed.shift.x() == 0.0 ? 2e-10 : 1e-8;
    for (const Figure& figure : kFigures) {
      SCOPED_TRACE(figure.name);
      const Points points = placed.of(figure.points);
      const auto check = [&](R reference, double expected) {
        const gxRoundness got = gfRoundness(points, reference);
        if (std::isnan(expected)) return;
        EXPECT_EQ(got.status, gxStatus::eOk);
        EXPECT_EQ(got.reference, reference);
        EXPECT_NEAR(got.roundness, expected, slack + 6e-10 * expected);
        EXPECT_NEAR(got.outerRadius - got.innerRadius, got.roundness, slack);
      };
      check(R::eLeastSquares, figure.leastSquares);
      check(R::eMinimumZone, figure.minimumZone);
      check(R::eMinimumCircumscribed, figure.circumscribed);
      check(R::eMaximumInscribed, figure.inscribed);
    }
  }
}

// Two pairs of points around the origin, whose zone is as wide from a stretch of centres.  The lowest that
// is computed is the origin itself; the least squares centre, a rounding beside it, was taken before.
TEST(Roundness, OfAZoneThatIsEvenlyWideIsNotDecidedByTheRoundingOfItsStart) {
  const Points cross{{10.0, 0.0}, {-10.0, 0.0}, {0.0, 9.0}, {0.0, -9.0}};
  const gxRoundness roundness = gfRoundness(cross, R::eMinimumZone);
  EXPECT_EQ(roundness.roundness, 1.0);
  EXPECT_EQ(roundness.centre, gxVector<2>(0.0, 0.0));
}

TEST(Roundness, CentresRadiiAndSupports) {
  const gxRoundness quarter = gfRoundness(kFigures[1].points);
  EXPECT_NEAR(quarter.centre.len(), 0.0, 1e-12);
  EXPECT_EQ(quarter.outerSupports, (std::vector<long>{0, 3}));
  EXPECT_EQ(quarter.innerSupports, (std::vector<long>{1, 5}));
  EXPECT_NEAR(gfRoundness(kFigures[4].points).centre.distance({-0.5, 0}), 0.0, 1e-12);
  EXPECT_NEAR(gfRoundness(kFigures[5].points).centre.distance({0.5, 0}), 0.0, 1e-12);
  EXPECT_NEAR(gfRoundness(kFigures[8].points).centre.distance({1.5, 0.5}), 0.0, 1e-12);
  EXPECT_NEAR(gfRoundness(kFigures[9].points).centre.distance({105.0 / 22, 9.0 / 22}), 0.0, 1e-11);
  const gxRoundness mic = gfRoundness(kFigures[0].points, R::eMaximumInscribed);
  EXPECT_NEAR(mic.innerRadius, 9.05, 1e-12);
  EXPECT_NEAR(mic.centre.distance({-0.95, 0}), 0.0, 1e-12);
  EXPECT_TRUE(mic.ties);
  EXPECT_EQ(mic.innerSupports.size(), 3u);
  const gxRoundness seven = gfRoundness(kFigures[6].points, R::eMaximumInscribed);
  EXPECT_NEAR(seven.innerRadius, 4.155192535, 1e-9);
  EXPECT_NEAR(seven.centre.distance({-1.125, 0}), 0.0, 1e-9);
  const gxRoundness gander = gfRoundness(kFigures[9].points, R::eMaximumInscribed);
  EXPECT_NEAR(gander.innerRadius, 1.0, 1e-12);
  EXPECT_NEAR(gander.centre.distance({2, 7}), 0.0, 1e-12);
  const gxRoundness mcc = gfRoundness(kFigures[1].points, R::eMinimumCircumscribed);
  EXPECT_NEAR(mcc.outerRadius, 9.980153479, 1e-9);
  EXPECT_EQ(mcc.outerSupports.size(), 3u);
  EXPECT_EQ(mcc.innerSupports.size(), 1u);
  EXPECT_NEAR(gfRoundness(kFigures[9].points, R::eMinimumCircumscribed).outerRadius, std::sqrt(17.0),
              1e-12);
}

TEST(Roundness, TheLeastSquaresCircleHasPeakValleyAndMeanSquare) {
  const gxRoundness cross = gfRoundness(kFigures[0].points, R::eLeastSquares);
  EXPECT_NEAR(cross.radius, 9.5, 1e-12);
  EXPECT_NEAR(cross.peak, 0.5, 1e-12);
  EXPECT_NEAR(cross.valley, 0.5, 1e-12);
  EXPECT_NEAR(cross.rms, 0.5, 1e-12);
  const gxRoundness nist = gfRoundness(kFigures[10].points, R::eLeastSquares);
  EXPECT_NEAR(nist.centre.distance({-8.72150433934852558, 3.19566257127441824}), 0.0, 1e-13);
  EXPECT_NEAR(2 * nist.radius, 12.5388401712971614, 1e-13);
  const gxRoundness second = gfRoundness(kFigures[11].points, R::eLeastSquares);
  EXPECT_NEAR(second.centre.distance({-475.314372911745688, -249.546250260804074}), 0.0, 2e-12);
  EXPECT_NEAR(2 * second.radius, 42.0919090133255383, 2e-12);
  EXPECT_NEAR(2 * gfRoundness(kFigures[12].points, R::eLeastSquares).radius, 116.017749600184435, 2e-12);
  EXPECT_TRUE(std::isnan(gfRoundness(kFigures[0].points).peak));
}

TEST(Roundness, PointsThatAreNotOnACircle) {
  for (const R reference :
       {R::eLeastSquares, R::eMinimumZone, R::eMinimumCircumscribed, R::eMaximumInscribed}) {
    EXPECT_EQ(gfRoundness(Points{}, reference).status, gxStatus::eEmpty);
    EXPECT_EQ(gfRoundness(Points{{0, 0}, {1, kNaN}}, reference).status, gxStatus::eNotFinite);
    EXPECT_EQ(gfRoundness(Points{{0, 0}, {kInfinity, 1}, {3, 3}}, reference).status,
              gxStatus::eNotFinite);
    EXPECT_EQ(gfRoundness(pointsOf("1 1, 1 1"), reference).status, gxStatus::eUndetermined);
    const gxStatus line = gfRoundness(pointsOf("0 0, 1 1, 3 3"), reference).status;
    EXPECT_EQ(line, reference == R::eMinimumZone ? gxStatus::eUnbounded : gxStatus::eUndetermined);
  }
  EXPECT_EQ(gfRoundness(pointsOf("0 0, 1 1, 3 3")).roundness, 0.0);
  EXPECT_NEAR(gfRoundness(pointsOf("0 0, 1 1, 3 3"), R::eMinimumCircumscribed).outerRadius,
              std::sqrt(4.5), 1e-12);
  EXPECT_EQ(gfRoundness(pointsOf("0 0, 4 0, 9 1"), R::eMaximumInscribed).status,
            gxStatus::eUndetermined);
  EXPECT_NEAR(gfRoundness(pointsOf("0 0, 4 0, 0 3")).roundness, 0.0, 1e-14);
}

TEST(Roundness, ANearlyStraightZigzagHasNoFiniteZone) {
  // Up and down by 1 over a length of 40: two parallel lines 1 apart are the best.
  Points points;
  for (int i = 0; i <= 40; ++i) points.emplace_back(i, i % 2);
  const gxRoundness got = gfRoundness(points);
  EXPECT_EQ(got.status, gxStatus::eUnbounded);
  EXPECT_NEAR(got.roundness, 1.0, 1e-12);
  EXPECT_TRUE(std::isnan(got.centre.x()));
}

// The least zone by all pairs of pairs: two equally far and two equally near, if all others lie between;
// and the least width of all strips along two points.
double plainZone(const Points& points) {
  const std::size_t n = points.size();
  double best = kInfinity;
  const auto zoneAt = [&](const gxVector<2>& c) {
    double outer = 0.0;
    double inner = kInfinity;
    for (const auto& p : points) {
      outer = std::max(outer, p.distance(c));
      inner = std::min(inner, p.distance(c));
    }
    return outer - inner;
  };
  const auto bisector = [](const gxVector<2>& a, const gxVector<2>& b, double& x, double& y,
                           double& rest) {
    x = 2 * (b.x() - a.x());
    y = 2 * (b.y() - a.y());
    rest = b * b - a * a;
  };
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = i + 1; j < n; ++j) {
      double x1 = 0.0;
      double y1 = 0.0;
      double r1 = 0.0;
      bisector(points[i], points[j], x1, y1, r1);
      const gxVector<2> along = (points[j] - points[i]).unit();
      double low = kInfinity;
      double high = -kInfinity;
      for (const auto& p : points) {
        low = std::min(low, gf_Cross(along, p));
        high = std::max(high, gf_Cross(along, p));
      }
      best = std::min(best, high - low);
      for (std::size_t k = i; k < n; ++k) {
        for (std::size_t l = k + 1; l < n; ++l) {
          double x2 = 0.0;
          double y2 = 0.0;
          double r2 = 0.0;
          bisector(points[k], points[l], x2, y2, r2);
          const double det = x1 * y2 - x2 * y1;
          if (std::abs(det) < 1e-9) continue;
          best = std::min(best, zoneAt({(r1 * y2 - r2 * y1) / det, (x1 * r2 - x2 * r1) / det}));
        }
      }
    }
  }
  return best;
}

TEST(Roundness, RandomPointsAsByAllPairsOfPairs) {
  RandomShapes random("roundness", 150);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    Points points;
    const int n = random.integer(3, 11);
    const double arc = random.chance(0.3) ? random.uniform(0.2, 2) : 2 * kPi;
    const double noise = random.chance(0.5) ? 0.02 : 0.6;
    for (int i = 0; i < n; ++i) {
      points.emplace_back(random.uniform(1 - noise, 1 + noise), gxRadian(random.uniform(0, arc)));
    }
    const gxRoundness got = gfRoundness(points);
    EXPECT_NEAR(got.roundness, plainZone(points), 1e-10);
    const gxRoundness back = gfRoundness(kTurned345.of(reversed(points)));
    EXPECT_NEAR(back.roundness, got.roundness, 1e-12);
    const double mcc = gfRoundness(points, R::eMinimumCircumscribed).roundness;
    EXPECT_GE(mcc, got.roundness - 1e-12);
  }
}

TEST(Roundness, ManyNoisyPoints) {
  RandomShapes random("roundness many", 3);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    Points points;
    for (int i = 0; i < 2000; ++i) {
      points.emplace_back(random.uniform(9.99, 10.01), gxRadian(2 * kPi * i / 2000));
    }
    const gxRoundness zone = gfRoundness(points);
    EXPECT_EQ(zone.status, gxStatus::eOk);
    EXPECT_EQ(zone.outerSupports.size() + zone.innerSupports.size(), 4u);
    for (const R reference : {R::eLeastSquares, R::eMinimumCircumscribed, R::eMaximumInscribed}) {
      EXPECT_GE(gfRoundness(points, reference).roundness, zone.roundness - 1e-12);
    }
    EXPECT_NEAR(zone.roundness, 0.02, 1e-3);
  }
}

struct Straight {
  const char* points;
  double minimumZone, leastSquares;
};

TEST(Straightness, FiguresByHandAndPearsons) {
  const Straight figures[] = {
      {"0 0, 1 1, 2 0, 3 1, 4 0", 1, 1},
      {"0 0, 1 0, 2 1, 3 1", 1 / std::sqrt(5.0), std::sqrt(1 - 1 / std::sqrt(2.0))},
      {"0 0, 1 0, 2 0, 3 1, 4 0, 5 0, 6 0", 1, 1},
      {"0 0, 4 3, 8 6, 5 5, 3 1", std::sqrt(2.0), 1.7114123373},
      {"0 5.9, 0.9 5.4, 1.8 4.4, 2.6 4.6, 3.3 3.5, 4.4 3.7, 5.2 2.8, 6.1 2.8, 6.5 2.4, 7.4 1.5",
       3 / std::sqrt(20.0), 0.7264886528}};
  for (const Placement& placed : {kInPlace, kTurned345, kFarAway, kTurnedFarAway}) {
    for (const Straight& figure : figures) {
      const Points points = placed.of(pointsOf(figure.points));
      const gxStraightness zone = gfStraightness(points);
      EXPECT_EQ(zone.status, gxStatus::eOk);
      EXPECT_NEAR(zone.straightness, figure.minimumZone, 1e-9);
      EXPECT_EQ(zone.supports.size(), 3u);
      const gxStraightness mean = gfStraightness(points, R::eLeastSquares);
      EXPECT_NEAR(mean.straightness, figure.leastSquares, 1e-9);
      EXPECT_NEAR(mean.peak + mean.valley, mean.straightness, 1e-9);
    }
  }
}

TEST(Straightness, LinesAnglesAndPeaks) {
  Points parabola;
  for (int x = -3; x <= 3; ++x) parabola.emplace_back(x, x * x / 9.0);
  const gxStraightness curve = gfStraightness(parabola, R::eLeastSquares);
  EXPECT_NEAR(curve.point.y(), 4.0 / 9, 1e-15);
  EXPECT_NEAR(curve.straightness, 1.0, 1e-14);
  EXPECT_NEAR(gfStraightness(parabola).straightness, 1.0, 1e-15);
  const gxStraightness zigzag = gfStraightness(pointsOf("0 0, 1 1, 2 0, 3 1, 4 0"), R::eLeastSquares);
  EXPECT_NEAR(zigzag.point.y(), 0.4, 1e-15);
  EXPECT_NEAR(zigzag.rms, std::sqrt(0.24), 1e-15);
  EXPECT_NEAR(zigzag.peak, 0.6, 1e-15);
  EXPECT_NEAR(zigzag.valley, 0.4, 1e-15);
  const gxStraightness step = gfStraightness(pointsOf("0 0, 1 0, 2 1, 3 1"), R::eLeastSquares);
  EXPECT_NEAR(step.angle, kPi / 8, 1e-15);
  const gxStraightness bump =
      gfStraightness(pointsOf("0 0, 1 0, 2 0, 3 1, 4 0, 5 0, 6 0"), R::eLeastSquares);
  EXPECT_NEAR(bump.peak, 6.0 / 7, 1e-14);
  const gxStraightness zone = gfStraightness(pointsOf("0 0, 1 1, 2 0, 3 1, 4 0"));
  EXPECT_NEAR(zone.angle, 0.0, 1e-15);
  EXPECT_NEAR(zone.point.y(), 0.5, 1e-15);
}

TEST(Straightness, WithoutDirectionOrPoints) {
  EXPECT_EQ(gfStraightness(Points{}).status, gxStatus::eEmpty);
  EXPECT_EQ(gfStraightness(Points{{0, kInfinity}}).status, gxStatus::eNotFinite);
  EXPECT_EQ(gfStraightness(pointsOf("1 1"), R::eMaximumInscribed).status, gxStatus::eBadArgument);
  for (const R reference : {R::eLeastSquares, R::eMinimumZone}) {
    EXPECT_EQ(gfStraightness(pointsOf("1 1, 1 1"), reference).status, gxStatus::eUndetermined);
    EXPECT_EQ(gfStraightness(pointsOf("1 1, 4 5"), reference).straightness, 0.0);
    EXPECT_EQ(gfStraightness(pointsOf("0 0, 1 1, 4 4"), reference).straightness, 0.0);
  }
  const gxStraightness square = gfStraightness(pointsOf("0 0, 1 0, 1 1, 0 1"), R::eLeastSquares);
  EXPECT_EQ(square.status, gxStatus::eUndetermined);
  EXPECT_EQ(square.angle, 0.0);
  EXPECT_NEAR(square.straightness, 1.0, 1e-15);
  EXPECT_NEAR(gfStraightness(pointsOf("0 0, 1 0, 1 1, 0 1")).straightness, 1.0, 1e-15);
  const Points triangle{{-1, 0}, {1, 0}, {0, std::sqrt(3.0)}};
  EXPECT_EQ(gfStraightness(triangle, R::eLeastSquares).status, gxStatus::eUndetermined);
  EXPECT_NEAR(gfStraightness(triangle).straightness, std::sqrt(3.0), 1e-15);
  for (const double scale : {0x1p-1000, 0x1p1000}) {
    const auto got =
        gfStraightness(Placement{1, 0, {0, 0}, scale}.of(pointsOf("0 0, 1 1, 2 0, 3 1, 4 0")));
    EXPECT_EQ(got.straightness, scale);
  }
}

TEST(FlatAngle, BetweenTwoFeatures) {
  const Points flat = pointsOf("0 0, 5 0, 10 0");
  const Points slope = pointsOf("0 0, 4 3, 8 6");
  EXPECT_NEAR(gfFlatAngle(flat, slope).flatAngle, std::atan2(3, 4), 1e-15);
  EXPECT_NEAR(gfFlatAngle(slope, pointsOf("0 0, -3 4")).flatAngle, kPi / 2, 1e-15);
  EXPECT_NEAR(gfFlatAngle(pointsOf("0 0, 10 1"), pointsOf("0 0, 10 -1")).flatAngle, 2 * std::atan(0.1),
              1e-14);
  // Directions just beyond a right angle are near each other.
  EXPECT_NEAR(gfFlatAngle(pointsOf("0 0, 1 10"), pointsOf("0 0, -1 10")).flatAngle, 2 * std::atan(0.1),
              1e-14);
  EXPECT_EQ(gfFlatAngle(Points{}, flat).status, gxStatus::eEmpty);
  EXPECT_EQ(gfFlatAngle(flat, pointsOf("1 1")).status, gxStatus::eUndetermined);
  EXPECT_TRUE(std::isnan(gfFlatAngle(flat, pointsOf("1 1")).flatAngle));
}

TEST(Parallelism, TheWidthAcrossTheDatum) {
  const Points datum = pointsOf("0 0, 5 0, 10 0");
  const gxParallelism got = gfParallelism(pointsOf("0 5, 5 5.2, 10 5.1"), datum);
  EXPECT_NEAR(got.parallelism, 0.2, 1e-14);
  EXPECT_GT(got.flatAngle, 0.0);
  EXPECT_LT(got.flatAngle, 0.05);
  const gxParallelism turned =
      gfParallelism(kTurnedFarAway.of(pointsOf("0 5, 5 5.2, 10 5.1")), kTurnedFarAway.of(datum));
  EXPECT_NEAR(turned.parallelism, 0.2, 1e-8);
  EXPECT_EQ(gfParallelism(pointsOf("1 1"), datum).parallelism, 0.0);
  EXPECT_TRUE(std::isnan(gfParallelism(pointsOf("1 1"), datum).flatAngle));
  EXPECT_EQ(gfParallelism(Points{}, datum).status, gxStatus::eEmpty);
  EXPECT_EQ(gfParallelism(Points{{kNaN, 0}}, datum).status, gxStatus::eNotFinite);
  EXPECT_EQ(gfParallelism(datum, pointsOf("1 1")).status, gxStatus::eUndetermined);
}

TEST(Profile, TwiceTheGreatestDeviation) {
  const Points nominal = pointsOf("0 0, 10 0, 10 10, 0 10");
  const Points worn = pointsOf("0 0, 4 0, 5 1, 6 0, 10 0, 10 10, 6 10, 5 10.5, 4 10, 0 10");
  const gxProfile got = gfProfile(worn, nominal);
  EXPECT_NEAR(got.profile, 2.0, 1e-14);
  EXPECT_NEAR(got.peak, 0.5, 1e-14);
  EXPECT_NEAR(got.valley, -1.0, 1e-14);
  EXPECT_NEAR(got.worst.point.distance({5, 1}), 0.0, 1e-12);
  EXPECT_EQ(gfProfile(nominal, nominal).profile, 0.0);
  EXPECT_EQ(gfProfile(Points{}, nominal).status, gxStatus::eEmpty);
  EXPECT_EQ(gfProfile(pointsOf("1 1"), nominal, true).status, gxStatus::eUndetermined);
  // Moved away, with the best fit: as good as in place, or a little better, as the fit gives way.
  const Points golden = pointsOf("0 0, 30 0, 30 10, 10 10, 10 40, 0 40");
  Points part = golden;
  part.insert(part.begin() + 1, {{14, 0}, {15, 1}, {16, 0}});
  const Placement moved{std::cos(0.05), std::sin(0.05), {2, 1}, 1};
  const gxProfile fitted = gfProfile(moved.of(part), golden, true);
  EXPECT_EQ(fitted.status, gxStatus::eOk);
  EXPECT_LT(fitted.profile, 2.0 + 1e-9);
  EXPECT_GT(fitted.profile, 1.5);
  EXPECT_NEAR(fitted.worst.point.distance(moved.of({15, 1})), 0.0, 1e-9);
}

TEST(Form, ResultsPrint) {
  std::ostringstream out;
  const Points line = pointsOf("0 0, 1 0, 2 0");
  out << gfRoundness(kFigures[0].points) << "; " << gfStraightness(line) << "; "
      << gfFlatAngle(line, line) << "; " << gfParallelism(line, line) << "; " << gfProfile(line, line);
  EXPECT_NE(out.str().find("radii 9 to 10 about"), std::string::npos) << out.str();
  EXPECT_NE(out.str().find("straightness 0 at angle 0, ok; flat angle 0, ok; parallelism 0"),
            std::string::npos)
      << out.str();
}

}  // namespace
