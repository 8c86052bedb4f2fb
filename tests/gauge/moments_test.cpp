// Covers gauge/internal/ring_moments.cpp
#include <cntr/shapestat.h>
#include <gauge/internal/frame.h>
#include <gauge/moments.h>
#include <gtest/gtest.h>
#include <support/gauge_shapes.h>
#include <support/plain_gauges.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <numbers>
#include <sstream>

namespace {

using Points = std::vector<gxVector<2>>;
constexpr double kPi = std::numbers::pi;

gxMoments momentsOf(const Points& points) {
  return gfMoments(std::span<const gxVector<2>>(points));
}

std::vector<double> centralOf(const gxMoments& m) {
  return {m.moment20, m.moment11, m.moment02, m.moment30, m.moment21, m.moment12, m.moment03};
}
std::vector<double> rawOf(const gxMoments& m) {
  return {m.raw10, m.raw01, m.raw20, m.raw11, m.raw02, m.raw30, m.raw21, m.raw12, m.raw03};
}

TEST(Moments, NoPoints) {
  const auto m = momentsOf({});
  EXPECT_EQ(m.status, gxStatus::eEmpty);
  EXPECT_EQ(m.area, 0.0);
  EXPECT_EQ(m.moment20, 0.0);
  EXPECT_TRUE(std::isnan(m.centre.x()) && std::isnan(m.eta20) && std::isnan(m.hu[0]));
  EXPECT_EQ(gfMoments(gxRegionSet()).status, gxStatus::eEmpty);
}

TEST(Moments, NaNAndInfinityAnywhere) {
  for (const char* text : {"nan 0, 1 0, 1 1", "0 0, 1 0, inf 1"}) {
    const auto m = momentsOf(pointsOf(text));
    EXPECT_EQ(m.status, gxStatus::eNotFinite);
    EXPECT_TRUE(std::isnan(m.area) && std::isnan(m.centre.x()) && std::isnan(m.raw03) &&
                std::isnan(m.moment30) && std::isnan(m.principal2) && std::isnan(m.ellipseA));
  }
}

TEST(Moments, AnOpenContourHasNone) {
  const auto m = gfMoments(gxContour(pointsOf("0 0, 1 0, 1 1"), false));
  EXPECT_EQ(m.status, gxStatus::eNotClosed);
  EXPECT_TRUE(std::isnan(m.area));
  EXPECT_EQ(gfMoments(gxContour(pointsOf("0 0, 1 0, 1 1"))).area, 0.5);
}

TEST(Moments, WithoutAreaTheCentreIsThatOfTheBorder) {
  for (const auto& [text, x, y] :
       {std::tuple("7 8", 7.0, 8.0),
        {"7 8, 7 8, 7 8", 7.0, 8.0},
        {"0 0, 4 2", 2.0, 1.0},
        {"0 0, 1 1, 4 4", 2.0, 2.0},
        {"0.1 0.1, 0.3 0.3, 0.7 0.7", 0.4, 0.4},
        {"0 0, 2 0, 0 2, 2 2", 1.0, 1.0}}) {  // the last: two turns that cancel
    const auto m = momentsOf(pointsOf(text));
    EXPECT_EQ(m.status, gxStatus::eFlat) << text;
    EXPECT_EQ(m.area, 0.0);
    EXPECT_EQ(m.moment20, 0.0);
    EXPECT_EQ(m.raw10, 0.0);
    EXPECT_TRUE(std::isnan(m.eta20) && std::isnan(m.hu[6]) && std::isnan(m.ellipseB));
    EXPECT_DOUBLE_EQ(m.centre.x(), x) << text;
    EXPECT_DOUBLE_EQ(m.centre.y(), y) << text;
  }
}

TEST(Moments, OfTheTriangle345) {
  const auto m = momentsOf(pointsOf("0 0, 4 0, 0 3"));
  EXPECT_EQ(m.status, gxStatus::eOk);
  EXPECT_DOUBLE_EQ(m.area, 6.0);
  EXPECT_DOUBLE_EQ(m.centre.x(), 4.0 / 3);
  EXPECT_DOUBLE_EQ(m.centre.y(), 1.0);
  // ∫ x^p y^q over the triangle is 4^(p+1) 3^(q+1) p! q! / (p + q + 2)!.
  const std::vector<double> raw = {8, 6, 16, 6, 9, 38.4, 9.6, 7.2, 16.2};
  for (std::size_t k = 0; k < raw.size(); ++k) EXPECT_NEAR(rawOf(m)[k], raw[k], 1e-13);
  EXPECT_DOUBLE_EQ(m.moment20, 6 * 16 / 18.0);
  EXPECT_DOUBLE_EQ(m.moment11, -6 * 12 / 36.0);
  EXPECT_DOUBLE_EQ(m.moment02, 6 * 9 / 18.0);
  EXPECT_NEAR(m.ellipseAngle, -29.871781 * kPi / 180, 1e-8);
}

TEST(Moments, KnownShapesInAnyPlace) {
  for (const KnownShape& known : knownShapes()) {
    for (const bool turn : {false, true}) {
      for (const double scale : {1e-3, 1.0, 1e6}) {
        for (const gxVector<2> offset : {gxVector<2>(0, 0), gxVector<2>(1e6, -1e6)}) {
          const KnownShape s = placed(known, turn, scale, offset);
          const auto m = gfMoments(s.set());
          // The table has nine digits; coordinates are rounded where they lie.
          const double slack = 3e-9 + offset.len() / s.feretMax * 4e-16;
          EXPECT_NEAR(m.area / s.area, 1.0, slack) << s.name;
          EXPECT_NEAR(m.hu[0], s.hu1, slack) << s.name;
          EXPECT_NEAR(m.hu[1], s.hu2, slack) << s.name;
          EXPECT_NEAR(1.0 - m.principal2 / m.principal1, s.eccentricity * s.eccentricity, 4 * slack)
              << s.name;
          EXPECT_LE(m.principal2, m.principal1);
          EXPECT_EQ(m.status, gxStatus::eOk);
          if (known.second.empty()) {
            const auto single = gfMoments(s.region());
            EXPECT_EQ(single.area, m.area);
            EXPECT_EQ(single.moment30, m.moment30);
          }
        }
      }
    }
  }
}

TEST(Moments, ATinyHoleDoesNotSetTheScaleOfALargeOutline) {
  const gxRegion plate(pointsOf("-1e150 -1e150, 1e150 -1e150, 1e150 1e150, -1e150 1e150"),
                       {pointsOf("-1 -1, 1 -1, 1 1, -1 1")});
  const auto m = gfMoments(plate);
  EXPECT_EQ(m.status, gxStatus::eOk);
  EXPECT_DOUBLE_EQ(m.area, 4e300);
  EXPECT_NEAR(m.centre.x(), 0.0, 1e135);
  EXPECT_NEAR(m.centre.y(), 0.0, 1e135);
  EXPECT_NEAR(m.eta20, 1.0 / 12.0, 1e-15);
  EXPECT_NEAR(m.hu[0], 1.0 / 6.0, 1e-15);
}

TEST(Moments, BeyondTheRangeAMomentOfZeroStaysZero) {
  const auto m = momentsOf(pointsOf("0 0, 0x1p1000 0, 0x1p1000 0x1p1000, 0 0x1p1000"));
  EXPECT_EQ(m.status, gxStatus::eOk);
  EXPECT_EQ(m.moment11, 0.0);
  EXPECT_EQ(m.moment20, HUGE_VAL);
  EXPECT_DOUBLE_EQ(m.eta20, 1.0 / 12.0);
}

TEST(Moments, TheHigherInvariantsOfShapesWithoutSymmetry) {
  // Symmetric shapes have zeros there, in which errors hide.
  const auto triangle = momentsOf(pointsOf("0 0, 2 0, 1 0x1.bb67ae8584caap0"));
  EXPECT_NEAR(triangle.hu[2], 0.0045617799, 1e-10);
  const auto l = momentsOf(pointsOf("0 0, 3 0, 3 1, 1 1, 1 3, 0 3"));
  EXPECT_NEAR(l.hu[2], 0.014017536, 1e-12);
  EXPECT_NEAR(l.hu[3], 0.001115136, 1e-12);
  // By hand from the moments in whole numbers, of a shape whose invariants are all different from 0.
  const auto m = momentsOf(pointsOf("0 0, 5 0, 5 1, 2 1, 2 2, 1 2, 1 4, 0 4"));
  const double a = m.eta30 + m.eta12;
  const double b = m.eta21 + m.eta03;
  const double c = m.eta30 - 3 * m.eta12;
  const double d = 3 * m.eta21 - m.eta03;
  EXPECT_NEAR(m.hu[4], c * a * (a * a - 3 * b * b) + d * b * (3 * a * a - b * b), 1e-18);
  EXPECT_NEAR(m.hu[5], (m.eta20 - m.eta02) * (a * a - b * b) + 4 * m.eta11 * a * b, 1e-18);
  EXPECT_NEAR(m.hu[6], d * a * (a * a - 3 * b * b) - c * b * (3 * a * a - b * b), 1e-18);
  for (const double h : m.hu) EXPECT_GT(std::fabs(h), 1e-9);
}

TEST(Moments, InvariantsStayUnderMotionAndTheSeventhChangesSignInTheMirror) {
  const Points points = pointsOf("0 0, 5 0, 5 1, 2 1, 2 2, 1 2, 1 4, 0 4");
  const auto m = momentsOf(points);
  Points mirrored;
  for (const auto& p : points) mirrored.emplace_back(-p.x(), p.y());
  const auto other = momentsOf(mirrored);
  KnownShape shape = knownShapes()[0];
  shape.outline = points;
  const auto moved = momentsOf(placed(shape, true, 1e-3, {17, -4}).outline);
  for (std::size_t k = 0; k < 7; ++k) {
    EXPECT_NEAR(other.hu[k], k == 6 ? -m.hu[k] : m.hu[k], 1e-15);
    EXPECT_NEAR(moved.hu[k], m.hu[k], 1e-11);
  }
}

TEST(Moments, DirectionAndStartDoNotMatter) {
  RandomShapes random("moments direction", 100);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto points = random.star(random.integer(3, 90), {3, -2}, 0.5, 2.0);
    const auto m = momentsOf(points);
    for (const auto& other : {reversed(points), rotatedStart(points, 2)}) {
      const auto o = momentsOf(other);
      EXPECT_NEAR(o.area, m.area, 1e-14 * m.area);
      for (std::size_t k = 0; k < 7; ++k)
        EXPECT_NEAR(centralOf(o)[k], centralOf(m)[k], 1e-13 * m.moment20);
    }
  }
}

TEST(Moments, RandomOutlinesAgainstTheGeneralFormula) {
  const std::pair<int, int> orders[] = {{2, 0}, {1, 1}, {0, 2}, {3, 0}, {2, 1}, {1, 2}, {0, 3}};
  RandomShapes random("moments", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto points = random.finiteOutline();
    const auto m = momentsOf(points);
    if (m.status != gxStatus::eOk) continue;
    const gx_Frame frame(points);
    const double size = frame.lengthFrom(2.0);
    const auto from = points[0];
    const long double signedArea = plain::moment(points, from, 0, 0);
    const long double sign = signedArea < 0 ? -1 : 1;
    EXPECT_NEAR(m.area / (size * size), static_cast<double>(sign * signedArea / size / size), 1e-13);
    if (m.area / (size * size) < 1e-3) continue;  // the centre of little area has few digits
    const long double x = plain::moment(points, from, 1, 0) / signedArea;
    const long double y = plain::moment(points, from, 0, 1) / signedArea;
    EXPECT_NEAR((m.centre.x() - from.x()) / size, static_cast<double>(x / size),
                1e-12 + m.centre.len() / size * 1e-15);
    EXPECT_NEAR((m.centre.y() - from.y()) / size, static_cast<double>(y / size),
                1e-12 + m.centre.len() / size * 1e-15);
    // About the true centre, which has more digits than a double: seen from the first point.
    Points seen;
    for (const auto& p : points) {
      seen.emplace_back(static_cast<double>((static_cast<long double>(p.x()) - from.x() - x) / size),
                        static_cast<double>((static_cast<long double>(p.y()) - from.y() - y) / size));
    }
    for (std::size_t k = 0; k < 7; ++k) {
      const auto [p, q] = orders[k];
      EXPECT_NEAR(centralOf(m)[k] / std::pow(size, p + q + 2),
                  static_cast<double>(sign * plain::moment(seen, {0, 0}, p, q)), 3e-13);
    }
  }
}

TEST(Moments, AgreeWithTheClassesWhereTheseAnswer) {
  RandomShapes random("moments and classes", 100);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto shape = random.outlineWithHoles();
    gxRegion region(shape.outline);
    std::vector<gxPtrHandle_const<gxRegion>> holes;
    for (const auto& hole : shape.holes) holes.emplace_back(new gxRegion(hole));
    const auto outline = gfMoments(region);
    const auto inertia = gf_InertiaDataPolygon(shape.outline);
    EXPECT_NEAR(outline.moment20, inertia.inertiaMatrix().m00(), 1e-9 * outline.principal1);
    EXPECT_NEAR(outline.moment11, inertia.inertiaMatrix().m01(), 1e-9 * outline.principal1);
    EXPECT_EQ(outline.inertia().m10(), outline.moment11);
    region.holes(holes);
    const auto m = gfMoments(region);
    EXPECT_NEAR(m.area, region.area(true), 1e-12 * outline.area);
    EXPECT_NEAR(m.centre.distance(region.centerOfMass(true)), 0.0, 1e-9);
    // Holes taken away and put in again make the whole.
    double second = m.moment20 + m.area * std::pow(m.centre.x() - outline.centre.x(), 2);
    for (const auto& hole : holes) {
      const auto h = gfMoments(*hole);
      second += h.moment20 + h.area * std::pow(h.centre.x() - outline.centre.x(), 2);
    }
    EXPECT_NEAR(second, outline.moment20, 1e-12 * outline.principal1);
  }
}

TEST(Moments, HolesThatTakeAwayMoreThanThereIs) {
  gxRegion region(pointsOf("0 0, 1 0, 1 1, 0 1"));
  region.holes({gxRegion::HoleHandle(new gxRegion(pointsOf("5 5, 7 5, 7 7, 5 7")))});
  const auto m = gfMoments(region);
  EXPECT_EQ(m.status, gxStatus::eNegative);
  EXPECT_DOUBLE_EQ(m.area, -3.0);
}

TEST(Moments, TheCentreIsAsGoodFarAwayAsAtTheOrigin) {
  const Points points = pointsOf("0 0, 3 0, 3 1, 1 1, 1 3, 0 3");
  const auto at = momentsOf(points);
  for (const double offset : {0x1p20, 0x1p30, 0x1p40}) {
    Points moved;
    for (const auto& p : points) moved.emplace_back(p.x() + offset, p.y() - offset);
    const auto m = momentsOf(moved);
    EXPECT_EQ(m.moment20, at.moment20);
    EXPECT_EQ(m.moment21, at.moment21);
    EXPECT_NEAR(m.centre.x() - offset, at.centre.x(), offset * 1.2e-16);
  }
}

TEST(Moments, TheEndsOfTheRange) {
  const auto at = momentsOf(pointsOf("0 0, 4 0, 0 3"));
  for (const double scale : {0x1p996, 0x1p-996, 0x1p-1020}) {
    const auto m = momentsOf({{0, 0}, {4 * scale, 0}, {0, 3 * scale}});
    EXPECT_EQ(m.status, gxStatus::eOk);
    EXPECT_DOUBLE_EQ(m.centre.x() / scale, 4.0 / 3);
    for (std::size_t k = 0; k < 7; ++k) EXPECT_NEAR(m.hu[k], at.hu[k], 1e-16);
    EXPECT_DOUBLE_EQ(m.ellipseA / scale, at.ellipseA);
    EXPECT_EQ(m.area, scale > 1 ? HUGE_VAL : 0.0);
  }
}

TEST(Moments, AThinShapeKeepsItsSmallerAxis) {
  // 1 by 2^-20, lying along the axis: the smaller semi-axis is 2^-20 / √3.
  const auto m = momentsOf(pointsOf("0 0, 1 0, 1 0x1p-20, 0 0x1p-20"));
  EXPECT_DOUBLE_EQ(m.ellipseB, 0x1p-20 / std::sqrt(3.0));
  EXPECT_DOUBLE_EQ(m.ellipseA, 1 / std::sqrt(3.0));
  EXPECT_EQ(m.ellipse().geom().radii.x(), m.ellipseA);
  EXPECT_EQ(m.ellipse().geom().rotation.toDouble(), 0.0);
}

TEST(Moments, AMillionPointsLoseNoDigits) {
  const auto m = momentsOf(regularPolygon(1000000));
  EXPECT_NEAR(m.area, kPi, 1e-10);
  EXPECT_NEAR(m.centre.len(), 0.0, 1e-14);
  EXPECT_NEAR(m.ellipseA, 1.0, 1e-10);
  EXPECT_NEAR(m.area, 500000 * std::sin(2 * kPi / 1000000), 1e-14);
}

TEST(Moments, Prints) {
  std::ostringstream out;
  out << momentsOf(pointsOf("0 0, 2 0, 2 2, 0 2"));
  EXPECT_EQ(
      out.str().substr(0, 94),
      "area 4 centre (1, 1) central 1.33333 0 1.33333 ellipse 1.1547 by 1.1547 angle 0 hu 0.166667 0 ");
}

}  // namespace
