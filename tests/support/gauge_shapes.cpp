#include <support/gauge_shapes.h>
#include <support/shape_text.h>

#include <cmath>
#include <numbers>

namespace {

using Handle = gxPtrHandle_const<gxRegion>;

constexpr double kPi = std::numbers::pi;
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::vector<gxVector<2>> square(double low, double high) {
  return {{low, low}, {high, low}, {high, high}, {low, high}};
}

std::vector<gxVector<2>> star() {
  // The corners of a five-pointed star of radius 1, the inner ones at 1 / φ².
  const double inner = 1.0 / (std::numbers::phi * std::numbers::phi);
  std::vector<gxVector<2>> points;
  for (int i = 0; i < 10; ++i) {
    const double angle = kPi / 2.0 + i * kPi / 5.0;
    const double r = i % 2 == 0 ? 1.0 : inner;
    points.emplace_back(r * std::cos(angle), r * std::sin(angle));
  }
  return points;
}

KnownShape regular(const std::string& name, int n) {
  const double a = n / 2.0 * std::sin(2.0 * kPi / n);
  const double p = 2.0 * n * std::sin(kPi / n);
  const bool even = n % 2 == 0;
  const double hu1 = (2.0 + std::cos(2.0 * kPi / n)) / (3.0 * n * std::sin(2.0 * kPi / n));
  KnownShape s{};
  s.name = name;
  s.outline = regularPolygon(n);
  s.area = s.filled = a;
  s.outer = s.total = p;
  s.euler = 1;
  s.circularity = kPi / n / std::tan(kPi / n);
  s.solidity = s.convexity = 1.0;
  s.feretMax = even ? 2.0 : 2.0 * std::cos(kPi / (2.0 * n));
  s.feretMin = even ? 2.0 * std::cos(kPi / n) : 1.0 + std::cos(kPi / n);
  s.circleRadius = 1.0;
  s.inscribed = std::cos(kPi / n);
  s.hu1 = hu1;
  s.hu2 = 0.0;
  s.eccentricity = 0.0;
  s.wall = kNaN;
  return s;
}

// A region of this outline with holes.
Handle regionOf(const std::vector<gxVector<2>>& outline, const std::vector<Handle>& holes = {}) {
  gxPtrHandle<gxRegion> region(new gxRegion(outline));
  region->holes(holes);
  return region;
}

std::vector<KnownShape> table() {
  const double r2 = std::sqrt(2.0);
  const double r3 = std::sqrt(3.0);
  const double r5 = std::sqrt(5.0);
  const double r10 = std::sqrt(10.0);
  const double phi = std::numbers::phi;
  const std::vector<gxVector<2>> none;
  std::vector<KnownShape> shapes;
  shapes.push_back({"square 2", square(0, 2), none, none, none, 4, 4, 8,       8, 1, kPi / 4, 1,
                    1,          2 * r2,       2,    r2,   2,    2, 1, 1.0 / 6, 0, 0, 2});
  shapes.push_back({"3 by 1",
                    pointsOf("0 0, 3 0, 3 1, 0 1"),
                    none,
                    none,
                    none,
                    3,
                    3,
                    8,
                    8,
                    1,
                    3 * kPi / 16,
                    1,
                    1,
                    r10,
                    1,
                    r10 / 2,
                    3,
                    1,
                    0.5,
                    5.0 / 18,
                    4.0 / 81,
                    std::sqrt(8.0) / 3,
                    1});
  shapes.push_back({"equilateral 2",
                    {{0, 0}, {2, 0}, {1, r3}},
                    none,
                    none,
                    none,
                    r3,
                    r3,
                    6,
                    6,
                    1,
                    kPi / (3 * r3),
                    1,
                    1,
                    2,
                    r3,
                    2 / r3,
                    2,
                    r3,
                    1 / r3,
                    r3 / 9,
                    0,
                    0,
                    kInf});
  shapes.push_back({"3-4-5",
                    pointsOf("0 0, 4 0, 0 3"),
                    none,
                    none,
                    none,
                    6,
                    6,
                    12,
                    12,
                    1,
                    kPi / 6,
                    1,
                    1,
                    5,
                    2.4,
                    2.5,
                    4,
                    3,
                    1,
                    25.0 / 108,
                    0.0165466392,
                    0.8452237807,
                    kInf});
  KnownShape pentagon = regular("pentagon", 5);
  pentagon.rectangleLength = 1.9021130326;
  pentagon.rectangleWidth = 1.8090169944;
  pentagon.wall = kInf;
  shapes.push_back(pentagon);
  KnownShape hexagon = regular("hexagon", 6);
  hexagon.rectangleLength = 2;
  hexagon.rectangleWidth = r3;
  hexagon.wall = r3;
  shapes.push_back(hexagon);
  KnownShape octagon = regular("octagon", 8);
  octagon.rectangleLength = octagon.rectangleWidth = 1.8477590650;
  octagon.wall = 1.8477590650;
  shapes.push_back(octagon);
  shapes.push_back({"rhombus",
                    pointsOf("4 0, 0 3, -4 0, 0 -3"),
                    none,
                    none,
                    none,
                    24,
                    24,
                    20,
                    20,
                    1,
                    6 * kPi / 25,
                    1,
                    1,
                    8,
                    4.8,
                    4,
                    6.4,
                    4.8,
                    2.4,
                    25.0 / 144,
                    49.0 / 20736,
                    std::sqrt(7.0) / 4,
                    4.8});
  shapes.push_back({"trapezoid",
                    pointsOf("0 0, 4 0, 3 2, 1 2"),
                    none,
                    none,
                    none,
                    6,
                    6,
                    6 + 2 * r5,
                    6 + 2 * r5,
                    1,
                    0.6875282865,
                    1,
                    1,
                    4,
                    2,
                    std::sqrt(65.0) / 4,
                    4,
                    2,
                    1,
                    0.192386831,
                    0.00729161374,
                    0.7841012784,
                    2});
  shapes.push_back({"L",
                    pointsOf("0 0, 3 0, 3 1, 1 1, 1 3, 0 3"),
                    none,
                    none,
                    none,
                    5,
                    5,
                    12,
                    12,
                    1,
                    5 * kPi / 36,
                    5.0 / 7,
                    (8 + 2 * r2) / 12,
                    3 * r2,
                    2 * r2,
                    3 / r2,
                    3,
                    3,
                    2 - r2,
                    217.0 / 750,
                    324.0 / 15625,
                    0.8152394646,
                    1});
  shapes.push_back({"T",
                    pointsOf("1 0, 2 0, 2 2, 3 2, 3 3, 0 3, 0 2, 1 2"),
                    none,
                    none,
                    none,
                    5,
                    5,
                    12,
                    12,
                    1,
                    5 * kPi / 36,
                    5.0 / 7,
                    0.8726779962,
                    std::sqrt(13.0),
                    3,
                    std::sqrt(130.0) / 6,
                    3,
                    3,
                    0.625,
                    181.0 / 750,
                    0.048 * 0.048,
                    0.5760184329,
                    1});
  shapes.push_back({"cross",
                    pointsOf("1 0, 2 0, 2 1, 3 1, 3 2, 2 2, 2 3, 1 3, 1 2, 0 2, 0 1, 1 1"),
                    none,
                    none,
                    none,
                    5,
                    5,
                    12,
                    12,
                    1,
                    5 * kPi / 36,
                    5.0 / 7,
                    (4 + 4 * r2) / 12,
                    r10,
                    2 * r2,
                    r10 / 2,
                    2 * r2,
                    2 * r2,
                    std::sqrt(0.5),
                    29.0 / 150,
                    0,
                    0,
                    1});
  shapes.push_back({"U",
                    pointsOf("0 0, 3 0, 3 3, 2 3, 2 1, 1 1, 1 3, 0 3"),
                    none,
                    none,
                    none,
                    7,
                    7,
                    16,
                    16,
                    1,
                    7 * kPi / 64,
                    7.0 / 9,
                    0.75,
                    3 * r2,
                    3,
                    3 / r2,
                    3,
                    3,
                    2 - r2,
                    0.245383868,
                    0.000543991,
                    0.4166515971,
                    1});
  const double s36 = std::sin(kPi / 5.0);
  const double t36 = std::tan(kPi / 5.0);
  shapes.push_back({"star",
                    star(),
                    none,
                    none,
                    none,
                    5 * s36 / (phi * phi),
                    5 * s36 / (phi * phi),
                    10 * t36 / (phi * phi) * 0,
                    0,
                    1,
                    0.2672398330,
                    2 * r5 - 4,
                    phi / 2,
                    1.9021130326,
                    1.8090169944,
                    1,
                    1.9021130326,
                    1.8090169944,
                    1 / (phi * phi),
                    0.216009559,
                    0,
                    0,
                    kNaN});
  std::vector<gxVector<2>> ellipse;
  for (const auto& p : regularPolygon(8)) ellipse.emplace_back(2 * p.x(), p.y());
  shapes.push_back({"ellipse 2:1",
                    ellipse,
                    none,
                    none,
                    none,
                    4 * r2,
                    4 * r2,
                    9.4498195444,
                    9.4498195444,
                    1,
                    0.7960453737,
                    1,
                    1,
                    4,
                    1.9584391121,
                    2,
                    3.9168782242,
                    1.9584391121,
                    0.9792195561,
                    0.199397246,
                    0.0143133342,
                    r3 / 2,
                    kNaN});
  shapes.push_back({"washer",
                    square(0, 4),
                    square(1, 3),
                    none,
                    none,
                    12,
                    16,
                    16,
                    24,
                    0,
                    kPi / 4,
                    0.75,
                    1,
                    4 * r2,
                    4,
                    2 * r2,
                    4,
                    4,
                    2 - r2,
                    5.0 / 18,
                    0,
                    0,
                    1});
  shapes.push_back({"6 by 4 with a hole",
                    pointsOf("0 0, 6 0, 6 4, 0 4"),
                    square(1, 3),
                    none,
                    none,
                    20,
                    24,
                    20,
                    28,
                    0,
                    6 * kPi / 25,
                    5.0 / 6,
                    1,
                    2 * std::sqrt(13.0),
                    4,
                    std::sqrt(13.0),
                    6,
                    4,
                    1.5,
                    181.0 / 750,
                    0.088 * 0.088,
                    0.7310355364,
                    1});
  shapes.push_back({"island",
                    square(0, 6),
                    square(1, 5),
                    square(2, 4),
                    none,
                    24,
                    36,
                    24,
                    48,
                    1,
                    kPi / 4,
                    2.0 / 3,
                    1,
                    6 * r2,
                    6,
                    3 * r2,
                    6,
                    6,
                    1,
                    11.0 / 36,
                    0,
                    0,
                    1});
  shapes.push_back({"set",
                    square(0, 2),
                    none,
                    none,
                    pointsOf("4 0, 6 0, 6 2, 4 2"),
                    8,
                    8,
                    16,
                    16,
                    2,
                    kPi / 8,
                    2.0 / 3,
                    kNaN,
                    2 * r10,
                    2,
                    r10,
                    6,
                    2,
                    1,
                    7.0 / 12,
                    0.25,
                    std::sqrt(12.0 / 13),
                    2});
  for (KnownShape& s : shapes) {
    if (s.name != "star") continue;
    // Ten sides, from a tip at 1 to an inner corner at 1 / φ².
    s.outer = s.total = 10 * (s.outline[1] - s.outline[0]).len();
    s.wall = (s.outline[5] - s.outline[1]).len();
  }
  return shapes;
}

gxVector<2> placedPoint(const gxVector<2>& p, bool turn, double scale, const gxVector<2>& offset) {
  const gxVector<2> q = turn ? gxVector<2>(0.8 * p.x() - 0.6 * p.y(), 0.6 * p.x() + 0.8 * p.y()) : p;
  return q * scale + offset;
}

}  // namespace

std::vector<gxVector<2>> regularPolygon(int corners) {
  std::vector<gxVector<2>> points;
  for (int i = 0; i < corners; ++i) {
    const double angle = 2.0 * kPi * i / corners;
    points.emplace_back(std::cos(angle), std::sin(angle));
  }
  return points;
}

const std::vector<KnownShape>& knownShapes() {
  static const std::vector<KnownShape> shapes = table();
  return shapes;
}

gxRegion KnownShape::region() const {
  std::vector<Handle> islands;
  if (!island.empty()) islands.push_back(regionOf(island));
  std::vector<Handle> holes;
  if (!hole.empty()) holes.push_back(regionOf(hole, islands));
  gxRegion region(outline);
  if (!holes.empty()) region.holes(holes);
  return region;
}

gxRegionSet KnownShape::set() const {
  gxRegionSet result;
  result.add(Handle(new gxRegion(region())));
  if (!second.empty()) result.add(regionOf(second));
  return result;
}

KnownShape placed(const KnownShape& shape, bool turn, double scale, const gxVector<2>& offset) {
  KnownShape s = shape;
  for (auto* points : {&s.outline, &s.hole, &s.island, &s.second}) {
    for (auto& p : *points) p = placedPoint(p, turn, scale, offset);
  }
  for (double* area : {&s.area, &s.filled}) *area *= scale * scale;
  for (double* length : {&s.outer, &s.total, &s.feretMax, &s.feretMin, &s.circleRadius,
                         &s.rectangleLength, &s.rectangleWidth, &s.inscribed, &s.wall}) {
    *length *= scale;
  }
  return s;
}
