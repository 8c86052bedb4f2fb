// Descriptors: one hull, one walk for the lengths, one for the moments, and their ratios.
//
// Everything is taken in the scale of one frame, and ratios are made there, so that none of them depends
// on the size of the shape.
#include <gauge/descriptors.h>
#include <gauge/internal/border_length.h>
#include <gauge/internal/hull.h>
#include <gauge/internal/ring_moments.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <ostream>

namespace {

constexpr double kNaN = gxDescriptors::kNaN;
constexpr double kPi = std::numbers::pi;

// Principal moments that agree to this are equal, as in gfMoments.
constexpr double kIsotropic = 1e-13;

// The lengths and areas of a shape in the scale of its frame.
struct Sizes {
  double area = 0.0;
  double filled = 0.0;
  double perimeter = 0.0;
  double length = 0.0;
};

void fillWith(double value, gxDescriptors& d) {
  for (double* number :
       {&d.area, &d.filledArea, &d.perimeter, &d.length, &d.equivalentDiameter, &d.feretMax, &d.feretMin,
        &d.feretAcross, &d.feretMean, &d.hullArea, &d.hullPerimeter}) {
    *number = value;
  }
}

void fillHull(const gx_Hull& hull, const Sizes& s, gxDescriptors& d) {
  const gx_Frame& frame = hull.frame();
  const double perimeter = hull.perimeter();
  d.hullPerimeter = frame.lengthFrom(perimeter);
  d.feretMean = frame.lengthFrom(perimeter / kPi);
  d.convexity = perimeter / s.perimeter;
  const gx_HullWidth greatest = hull.greatest();
  d.feretMax = frame.lengthFrom(greatest.width);
  d.compactness = 2.0 * std::sqrt(s.filled / kPi) / greatest.width;
  if (hull.size() < 2) return;
  if (hull.size() == 2) {
    d.aspectRatio = std::numeric_limits<double>::infinity();
    d.elongation = 1.0;
    return;
  }
  const gxVector<2> along = hull.scaled(greatest.to) - hull.scaled(greatest.from);
  d.feretAcross =
      frame.lengthFrom(hull.along(gxVector<2>(-along.y(), along.x()) * (1.0 / greatest.width)));
  d.feretMin = frame.lengthFrom(hull.least().width);
  const gx_HullRectangle rectangle = hull.leastArea();
  const double a = std::max(rectangle.onward, rectangle.across);
  const double b = std::min(rectangle.onward, rectangle.across);
  const double area = hull.area();
  d.hullArea = frame.areaFrom(area);
  d.solidity = s.area / area;
  d.rectangularity = s.area / (a * b);
  d.aspectRatio = a / b;
  d.elongation = 1.0 - b / a;
}

void fillBox(const gx_Box& box, const gx_Frame& frame, const Sizes& s, gxDescriptors& d) {
  d.box = gxRect::fromCorners({box.lowX, box.lowY}, {box.highX, box.highY});
  const gxVector<2> size = frame.scaled({box.highX, box.highY}) - frame.scaled({box.lowX, box.lowY});
  if (size.x() * size.y() > 0.0) d.extent = s.area / (size.x() * size.y());
}

void fillAxes(const gx_MomentSums& m, gxDescriptors& d) {
  const double middle = 0.5 * (m.m20 + m.m02);
  const double half = std::hypot(0.5 * (m.m20 - m.m02), m.m11);
  const bool equal = !(half > kIsotropic * std::fabs(middle));
  d.eccentricity = equal ? 0.0 : std::sqrt(2.0 * half / (middle + half));
  d.orientation = equal ? 0.0 : 0.5 * std::atan2(2.0 * m.m11, m.m20 - m.m02);
  if (d.orientation <= -kPi / 2.0) d.orientation = kPi / 2.0;
}

// What only closed shapes have.
Sizes fillMaterial(const std::vector<gx_Ring>& rings, const gx_Frame& frame, const gxVector<2>& first,
                   gxDescriptors& d) {
  const gx_MomentSums m = gx_momentsOf(rings, frame, first, false);
  Sizes s;
  s.area = m.area;
  for (const gx_Ring& ring : rings) {
    const double length = gx_ringLength(ring, frame);
    s.length += length;
    if (ring.depth == 0) s.perimeter += length;
    if (ring.depth == 0 && rings.size() > 1) {
      s.filled += gx_ringMoments(ring.points, frame, first, false).area;
    }
  }
  if (rings.size() == 1) s.filled = s.area;
  d.area = frame.areaFrom(s.area);
  d.filledArea = frame.areaFrom(s.filled);
  d.perimeter = frame.lengthFrom(s.perimeter);
  d.length = frame.lengthFrom(s.length);
  d.equivalentDiameter = frame.lengthFrom(2.0 * std::sqrt(s.area / kPi));
  d.circularity = 4.0 * kPi * s.filled / (s.perimeter * s.perimeter);
  if (s.area != 0.0) fillAxes(m, d);
  return s;
}

long eulerNumberOf(const std::vector<gx_Ring>& rings) {
  long number = 0;
  for (const gx_Ring& ring : rings) {
    if (!ring.points.empty()) number += ring.depth % 2 == 0 ? 1 : -1;
  }
  return number;
}

// The points of all outlines; of a single one the ring's own, without a copy.
std::span<const gxVector<2>> outlinePoints(const std::vector<gx_Ring>& rings,
                                           std::vector<gxVector<2>>& store) {
  if (rings.size() == 1 || rings.back().region == 0) return rings[0].points;
  for (const gx_Ring& ring : rings) {
    if (ring.depth == 0) store.insert(store.end(), ring.points.begin(), ring.points.end());
  }
  return store;
}

gxDescriptors notAnswered(gxStatus status) {
  gxDescriptors d;
  d.status = status;
  d.box = gxRect::fromCorners({kNaN, kNaN}, {kNaN, kNaN});
  if (status != gxStatus::eEmpty) fillWith(kNaN, d);
  return d;
}

void openContour(const gx_Ring& ring, const gx_Frame& frame, const gx_Hull& hull, const gx_Box& box,
                 gxDescriptors& d) {
  fillHull(hull, {kNaN, kNaN, kNaN, kNaN}, d);
  fillBox(box, frame, {kNaN, kNaN, kNaN, kNaN}, d);
  d.area = d.filledArea = d.perimeter = d.equivalentDiameter = d.aspectRatio = d.elongation = kNaN;
  d.length = frame.lengthFrom(gx_ringLength(ring, frame));
  d.status = gxStatus::eNotClosed;
}

gxDescriptors describe(const std::vector<gx_Ring>& rings) {
  std::vector<gxVector<2>> store;
  if (rings.empty()) return notAnswered(gxStatus::eEmpty);
  const auto points = outlinePoints(rings, store);
  if (points.empty()) return notAnswered(gxStatus::eEmpty);
  if (!gx_allFinite(rings)) {
    gxDescriptors d = notAnswered(gxStatus::eNotFinite);
    d.eulerNumber = eulerNumberOf(rings);
    return d;
  }
  gxDescriptors d;
  const gx_Box box = gx_boxOf(points);
  const gx_Hull hull(points, box);
  const gx_Frame& frame = hull.frame();
  if (!rings[0].closed) {
    openContour(rings[0], frame, hull, box, d);
    return d;
  }
  const Sizes s = fillMaterial(rings, frame, points[0], d);
  fillHull(hull, s, d);
  fillBox(box, frame, s, d);
  d.eulerNumber = eulerNumberOf(rings);
  d.status = s.area < 0.0 ? gxStatus::eNegative : gxStatus::eOk;
  if (hull.size() < 3 || s.area == 0.0) d.status = gxStatus::eFlat;
  if (hull.size() < 3) {
    // What rounding leaves of the area of a line is none.
    d.area = d.filledArea = d.equivalentDiameter = 0.0;
    d.eccentricity = d.orientation = kNaN;
    d.circularity = d.compactness = hull.size() == 2 ? 0.0 : kNaN;
  }
  return d;
}

void append(const gxDescriptors& d, gxDescriptorColumns& c) {
  c.status.push_back(d.status);
  c.area.push_back(d.area);
  c.filledArea.push_back(d.filledArea);
  c.perimeter.push_back(d.perimeter);
  c.length.push_back(d.length);
  c.boxXMin.push_back(d.box.origin().x());
  c.boxYMin.push_back(d.box.origin().y());
  c.boxXMax.push_back(d.box.corner().x());
  c.boxYMax.push_back(d.box.corner().y());
  c.equivalentDiameter.push_back(d.equivalentDiameter);
  c.circularity.push_back(d.circularity);
  c.compactness.push_back(d.compactness);
  c.convexity.push_back(d.convexity);
  c.solidity.push_back(d.solidity);
  c.extent.push_back(d.extent);
  c.rectangularity.push_back(d.rectangularity);
  c.aspectRatio.push_back(d.aspectRatio);
  c.elongation.push_back(d.elongation);
  c.eccentricity.push_back(d.eccentricity);
  c.orientation.push_back(d.orientation);
  c.eulerNumber.push_back(d.eulerNumber);
  c.feretMax.push_back(d.feretMax);
  c.feretMin.push_back(d.feretMin);
  c.feretAcross.push_back(d.feretAcross);
  c.feretMean.push_back(d.feretMean);
  c.hullArea.push_back(d.hullArea);
  c.hullPerimeter.push_back(d.hullPerimeter);
}

gxDescriptors describeOrFail(const gxPtrHandle_const<gxRegion>& region) {
  try {
    return gfDescribe(*region);
  } catch (const gxException&) {
    return notAnswered(gxStatus::eFailed);
  }
}

// The number of lattice points on an edge, its start not counted.
double latticeSteps(const gxVector<2>& a, const gxVector<2>& b) {
  const auto dx = static_cast<long long>(std::fabs(b.x() - a.x()));
  const auto dy = static_cast<long long>(std::fabs(b.y() - a.y()));
  return static_cast<double>(std::gcd(dx, dy));
}

bool onGrid(std::span<const gxVector<2>> points) {
  constexpr double kLargest = 0x1p52;
  for (const auto& p : points) {
    if (std::floor(p.x()) != p.x() || std::floor(p.y()) != p.y()) return false;
    if (std::fabs(p.x()) > kLargest || std::fabs(p.y()) > kLargest) return false;
  }
  return true;
}

}  // namespace

gxDescriptors gfDescribe(std::span<const gxVector<2>> outline) {
  return describe(gx_ringsOf(outline));
}
gxDescriptors gfDescribe(const gxContour& contour) {
  return describe(gx_ringsOf(contour));
}
gxDescriptors gfDescribe(const gxRegion& region) {
  return describe(gx_ringsOf(region));
}
gxDescriptors gfDescribe(const gxRegionSet& set) {
  return describe(gx_ringsOf(set));
}

gxDescriptorColumns gfDescribeEach(std::span<const gxPtrHandle_const<gxRegion>> regions) {
  gxDescriptorColumns columns;
  for (const auto& region : regions) append(describeOrFail(region), columns);
  return columns;
}

gxDescriptorColumns gfDescribeEach(const gxRegionSet& set) {
  const auto regions = set.regions();
  return gfDescribeEach(std::span<const gxPtrHandle_const<gxRegion>>(regions));
}

gxPixelArea gfPixelAreaOfCentres(std::span<const gxVector<2>> outline) {
  if (outline.empty()) return {};
  if (!gx_allFinite(outline)) return {gxStatus::eNotFinite, kNaN};
  if (!onGrid(outline)) return {gxStatus::eNotOnGrid, kNaN};
  double twice = 0.0;
  double steps = 0.0;
  gxVector<2> a = outline.back();
  for (const auto& b : outline) {
    twice += gf_Cross(a - outline[0], b - outline[0]);
    steps += latticeSteps(a, b);
    a = b;
  }
  return {gxStatus::eOk, 0.5 * std::fabs(twice) + 0.5 * steps + 1.0};
}

gxPixelArea gfPixelAreaOfCentres(const gxContour& contour) {
  const std::span points(contour.points());
  if (!points.empty() && !contour.isClosed()) return {gxStatus::eNotClosed, kNaN};
  return gfPixelAreaOfCentres(points);
}

std::ostream& operator<<(std::ostream& out, const gxDescriptors& d) {
  out << "area " << d.area << " filled " << d.filledArea << " perimeter " << d.perimeter << " length "
      << d.length << " equivalent diameter " << d.equivalentDiameter << " circularity " << d.circularity
      << " compactness " << d.compactness << " convexity " << d.convexity << " solidity " << d.solidity
      << " extent " << d.extent << " rectangularity " << d.rectangularity << " aspect ratio "
      << d.aspectRatio << " elongation " << d.elongation << " eccentricity " << d.eccentricity
      << " orientation " << d.orientation << " euler number " << d.eulerNumber << " feret " << d.feretMax
      << ' ' << d.feretMin << ' ' << d.feretAcross << ' ' << d.feretMean;
  if (d.status != gxStatus::eOk) out << ' ' << d.status;
  return out;
}

std::ostream& operator<<(std::ostream& out, const gxDescriptorColumns& columns) {
  const auto fine = std::count(columns.status.begin(), columns.status.end(), gxStatus::eOk);
  return out << "descriptors of " << columns.size() << " shapes, "
             << columns.size() - static_cast<std::size_t>(fine) << " not ok";
}

std::ostream& operator<<(std::ostream& out, const gxPixelArea& area) {
  out << area.pixels << " pixels";
  if (area.status != gxStatus::eOk) out << ' ' << area.status;
  return out;
}
