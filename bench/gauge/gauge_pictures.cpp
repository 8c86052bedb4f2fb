// The drawings of docs/gauges.md: what the gauges say of a bracket with a hole, of probed points, and of a part
// beside its golden shape.
//
//   gauge_pictures docs/img
#include <gauge/gauge.h>
#include <veldispc/svg_tablet.h>
#include <velstd/convex_hull.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <iostream>
#include <numbers>
#include <string>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

const gxColor kBlack(40, 40, 40);
const gxColor kGrey(175, 175, 175);
const gxColor kBlue(20, 90, 200);
const gxColor kRed(205, 45, 30);
const gxColor kGreen(20, 140, 70);
const gxColor kPaper(255, 255, 255);

// A bracket with a slot from above and a hole.
const Points kOutline{{1, 1},   {11, 0.5}, {12, 4},  {9, 5}, {8.5, 9},
                      {6.5, 9}, {6, 3.5},  {5, 3.5}, {4, 8}, {1.5, 7}};
const Points kHole{{8.2, 2}, {10, 2}, {10.4, 3.2}, {8.6, 3.6}};

gxRegion bracket() {
  gxRegion region(kOutline);
  region.holes({gxRegion::HoleHandle(new gxRegion(kHole))});
  return region;
}

// ---- Drawing --------------------------------------------------------------------------------------

void line(gxSvgTablet& tablet, const V& a, const V& b, const gxColor& colour, double width = 2.0) {
  tablet.strokeWidth(width);
  tablet.drawLineSeg({a.x(), a.y()}, {b.x(), b.y()}, colour, gxUITablet::eOverlayLayer);
}

void walk(gxSvgTablet& tablet, const Points& points, const gxColor& colour, double width = 2.0) {
  for (std::size_t i = 0; i + 1 < points.size(); ++i)
    line(tablet, points[i], points[i + 1], colour, width);
}

void ring(gxSvgTablet& tablet, const Points& points, const gxColor& colour, double width = 2.0) {
  walk(tablet, points, colour, width);
  if (points.size() > 1) line(tablet, points.back(), points.front(), colour, width);
}

// An ellipse as a fine poly-line; a circle with equal radii.
void ellipse(gxSvgTablet& tablet, const V& centre, double a, double b, double angle,
             const gxColor& colour, double width = 1.8) {
  Points points;
  const V u(std::cos(angle), std::sin(angle));
  const V v(-u.y(), u.x());
  for (int k = 0; k < 120; ++k) {
    const double t = 2.0 * std::numbers::pi * k / 120.0;
    points.push_back(centre + u * (a * std::cos(t)) + v * (b * std::sin(t)));
  }
  ring(tablet, points, colour, width);
}

void circle(gxSvgTablet& tablet, const V& centre, double radius, const gxColor& colour,
            double width = 1.8) {
  ellipse(tablet, centre, radius, radius, 0.0, colour, width);
}

void dot(gxSvgTablet& tablet, const V& p, const gxColor& colour, double size = 7.0) {
  line(tablet, p, p, colour, size);
}

void label(gxSvgTablet& tablet, const V& at, const std::string& text, const gxColor& colour) {
  tablet.drawText({at.x(), at.y()}, text, colour, gxUITablet::eOverlayLayer, 14);
}

// Two captions below the picture.
void captions(gxSvgTablet& tablet, const std::string& left, const gxColor& leftColour,
              const std::string& right = "", const gxColor& rightColour = kBlack) {
  label(tablet, {right.empty() ? 6.5 : 2.6, -3.0}, left, leftColour);
  if (!right.empty()) label(tablet, {10.4, -3.0}, right, rightColour);
}

std::string number(double value, int digits = 3) {
  char text[32];
  std::snprintf(text, sizeof text, "%.*f", digits, value);
  return text;
}

gxSvgTablet page(const std::string& title) {
  gxSvgTablet tablet(gxRect(V(-1.5, -3.5), V(16, 15)), 460, gxSvgTablet::eYUp, 4.0);
  tablet.background(kPaper);
  tablet.title(title);
  return tablet;
}

gxSvgTablet bracketPage(const std::string& title) {
  gxSvgTablet tablet = page(title);
  ring(tablet, kOutline, kBlack, 2.2);
  ring(tablet, kHole, kBlack, 2.2);
  return tablet;
}

const V& corner(long index) {
  return kOutline[static_cast<std::size_t>(index)];
}

// ---- One shape ------------------------------------------------------------------------------------

void enclosing(const std::string& folder) {
  gxSvgTablet tablet = bracketPage("The smallest circle and the rectangle of least area");
  const gxRegion region = bracket();
  const gxEnclosingCircle found = gfEnclosingCircle(region);
  circle(tablet, found.centre, found.radius, kBlue);
  for (int k = 0; k < found.supports; ++k)
    dot(tablet, corner(found.support[static_cast<std::size_t>(k)]), kBlue);
  const gxTurnedRectangle rectangle = gfLeastAreaRectangle(region);
  const auto corners = rectangle.corners();
  ring(tablet, {corners.begin(), corners.end()}, kRed, 1.8);
  captions(tablet, "circle: radius " + number(found.radius), kBlue,
           "rectangle: " + number(rectangle.length) + " × " + number(rectangle.width), kRed);
  tablet.save(folder + "/gauge_enclosing.svg");
}

void widths(const std::string& folder) {
  gxSvgTablet tablet = bracketPage("Feret diameters");
  const gxFeret feret = gfFeret(bracket());
  line(tablet, feret.feretMaxFromPoint, feret.feretMaxToPoint, kBlue);
  dot(tablet, feret.feretMaxFromPoint, kBlue);
  dot(tablet, feret.feretMaxToPoint, kBlue);
  line(tablet, corner(feret.feretMinEdgeFrom), corner(feret.feretMinEdgeTo), kRed, 4.0);
  line(tablet, feret.feretMinPoint, feret.feretMinFoot, kRed);
  dot(tablet, feret.feretMinPoint, kRed);
  captions(tablet, "greatest width " + number(feret.feretMax), kBlue,
           "least width " + number(feret.feretMin), kRed);
  tablet.save(folder + "/gauge_feret.svg");
}

void inside(const std::string& folder) {
  gxSvgTablet tablet = bracketPage("The largest inscribed circle and the smallest wall");
  const gxRegion region = bracket();
  const gxInscribedCircle found = gfInscribedCircle(region);
  circle(tablet, found.centre, found.radius, kBlue);
  dot(tablet, found.centre, kBlue);
  const gxWall wall = gfSmallestWall(region);
  line(tablet, wall.from.point, wall.to.point, kRed, 4.0);
  captions(tablet, "circle: radius " + number(found.radius), kBlue, "wall " + number(wall.wall), kRed);
  tablet.save(folder + "/gauge_inside.svg");
}

void moments(const std::string& folder) {
  gxSvgTablet tablet = bracketPage("Centre, axes and the ellipse of equal moments");
  const gxMoments m = gfMoments(bracket());
  ellipse(tablet, m.centre, m.ellipseA, m.ellipseB, m.ellipseAngle, kBlue);
  const V u(std::cos(m.ellipseAngle), std::sin(m.ellipseAngle));
  const V v(-u.y(), u.x());
  line(tablet, m.centre - u * m.ellipseA, m.centre + u * m.ellipseA, kBlue, 1.2);
  line(tablet, m.centre - v * m.ellipseB, m.centre + v * m.ellipseB, kBlue, 1.2);
  dot(tablet, m.centre, kRed, 9.0);
  captions(tablet, "semi-axes " + number(m.ellipseA) + " and " + number(m.ellipseB), kBlue,
           "area " + number(m.area), kRed);
  tablet.save(folder + "/gauge_moments.svg");
}

void descriptors(const std::string& folder) {
  gxSvgTablet tablet = bracketPage("What solidity, extent and rectangularity compare with");
  const gxDescriptors d = gfDescribe(bracket());
  Points hull;
  gfConvexHull(kOutline, hull);
  ring(tablet, hull, kBlue, 1.6);
  const V low = d.box.origin();
  const V size = d.box.size();
  ring(tablet, {low, low + V(size.x(), 0), low + size, low + V(0, size.y())}, kGreen, 1.6);
  const auto corners = gfLeastAreaRectangle(bracket()).corners();
  ring(tablet, {corners.begin(), corners.end()}, kRed, 1.6);
  captions(tablet, "solidity " + number(d.solidity, 2) + "  (hull)", kBlue,
           "rectangularity " + number(d.rectangularity, 2), kRed);
  label(tablet, {6.5, 10.7}, "extent " + number(d.extent, 2) + "  (upright box)", kGreen);
  tablet.save(folder + "/gauge_descriptors.svg");
}

void defects(const std::string& folder) {
  gxSvgTablet tablet = bracketPage("Convexity defects");
  for (const gxConvexityDefect& d : gfConvexityDefects(kOutline).defects) {
    line(tablet, d.startPoint, d.endPoint, kGreen, 1.5);
    const V chord = (d.endPoint - d.startPoint).unit();
    const V foot = d.startPoint + chord * (chord * (d.deepestPoint - d.startPoint));
    line(tablet, foot, d.deepestPoint, kRed);
    dot(tablet, d.deepestPoint, kRed);
    label(tablet, foot + (foot - d.deepestPoint).unit() * 0.6, number(d.depth, 2), kRed);
  }
  captions(tablet, "edges of the hull", kGreen, "depths", kRed);
  tablet.save(folder + "/gauge_defects.svg");
}

// A line of equal signed distance: where it passes the sides of the cells of a grid, cell by cell.
void level(gxSvgTablet& tablet, const std::function<double(const V&)>& value, const gxColor& colour) {
  constexpr double kStep = 0.11;
  for (double x = -1.4; x < 14.3; x += kStep) {
    for (double y = -1.4; y < 11.3; y += kStep) {
      const std::array<V, 4> at{V(x, y), V(x + kStep, y), V(x + kStep, y + kStep), V(x, y + kStep)};
      Points passes;
      for (std::size_t k = 0; k < 4; ++k) {
        const double here = value(at[k]);
        const double there = value(at[(k + 1) % 4]);
        if ((here < 0.0) != (there < 0.0))
          passes.push_back(at[k] + (at[(k + 1) % 4] - at[k]) * (here / (here - there)));
      }
      for (std::size_t k = 0; k + 1 < passes.size(); k += 2)
        line(tablet, passes[k], passes[k + 1], colour, 1.3);
    }
  }
}

void distances(const std::string& folder) {
  gxSvgTablet tablet = bracketPage("Lines of equal signed distance");
  const gxLocator locator(bracket());
  for (const double at : {-0.8, -0.5, -0.25, 0.5, 1.0, 1.5}) {
    level(
        tablet, [&](const V& p) { return locator.signedDistance(p) - at; }, at < 0.0 ? kBlue : kRed);
  }
  captions(tablet, "inside: −0.25, −0.5, −0.8", kBlue, "outside: 0.5, 1, 1.5", kRed);
  tablet.save(folder + "/gauge_distance.svg");
}

// ---- Two shapes -----------------------------------------------------------------------------------

// The outline with a chip and a burr, its points half a unit apart.
Points worn() {
  Points points = gfResampleBySpacing(kOutline, true, 0.25).points;
  const gxBends bends = gfCurvature(points, true, 0.6);
  const auto bump = [&](const V& at, double height) {
    for (std::size_t i = 0; i < points.size(); ++i) {
      const double d = points[i].distance(at) / 1.2;
      if (d < 1.0) points[i] += bends.at[i].normal * (height * (1.0 - d * d) * (1.0 - d * d));
    }
  };
  bump({5, 0.8}, -0.9);
  bump({8.7, 7}, 0.8);
  return points;
}

void hausdorff(const std::string& folder) {
  gxSvgTablet tablet = page("Hausdorff distance");
  const Points part = worn();
  ring(tablet, kOutline, kGrey, 2.2);
  ring(tablet, part, kBlack, 2.2);
  const gxHausdorff found = gfHausdorff(part, kOutline);
  line(tablet, found.forward.from.point, found.forward.to.point, kRed, 3.0);
  dot(tablet, found.forward.from.point, kRed);
  line(tablet, found.back.from.point, found.back.to.point, kBlue, 3.0);
  dot(tablet, found.back.from.point, kBlue);
  captions(tablet, "part from golden " + number(found.hausdorffForward), kRed,
           "golden from part " + number(found.hausdorffBack), kBlue);
  tablet.save(folder + "/gauge_hausdorff.svg");
}

void deviation(const std::string& folder) {
  gxSvgTablet tablet = page("Signed deviation from a golden outline");
  const Points part = worn();
  const gxDeviation found = gfDeviation(part, kOutline, {.lower = -0.25, .upper = 0.25});
  ring(tablet, kOutline, kGrey, 1.4);
  for (std::size_t i = 0; i < part.size(); ++i) {
    const double d = found.samples[i].deviation;
    const gxColor& colour = d > 0.25 ? kRed : d < -0.25 ? kBlue : kBlack;
    line(tablet, part[i], part[(i + 1) % part.size()], colour, 2.6);
  }
  for (const gxDeviationStretch& s : found.stretches)
    dot(tablet, s.worst.point, s.deviation > 0.0 ? kRed : kBlue, 8.0);
  captions(tablet, "least " + number(found.deviationMin), kBlue,
           "greatest " + number(found.deviationMax), kRed);
  label(tablet, {6.5, 10.7},
        "out of ±0.25: " + number(100.0 * found.outOfTolerance, 1) + " % of the length", kBlack);
  tablet.save(folder + "/gauge_deviation.svg");
}

void align(const std::string& folder) {
  gxSvgTablet tablet = page("Alignment: a part is laid upon the golden outline");
  Points part = worn();
  for (V& p : part) p = V(0.94 * p.x() - 0.342 * p.y() + 2.2, 0.342 * p.x() + 0.94 * p.y() - 1.5);
  ring(tablet, part, kGrey, 1.6);
  const gxAlignment found = gfAlign(part, kOutline);
  ring(tablet, kOutline, kBlue, 2.0);
  Points laid;
  for (const V& p : part) laid.push_back(found.map(p));
  ring(tablet, laid, kRed, 2.0);
  captions(tablet, "golden", kBlue,
           "part, turned by " + number(found.angle.toDouble() * gx_kDegreesPerRadian, 2) + "°", kRed);
  tablet.save(folder + "/gauge_align.svg");
}

void frechet(const std::string& folder) {
  gxSvgTablet tablet = page("Fréchet and Hausdorff distance");
  const Points straight{{0, 5}, {13, 5}};
  const Points turning{{0, 5.6}, {9.5, 5.6}, {3.5, 6.2}, {13, 6.2}};
  walk(tablet, straight, kBlue, 2.2);
  walk(tablet, turning, kBlack, 2.2);
  const gxHausdorff near = gfHausdorff({straight, false}, {turning, false});
  line(tablet, near.back.from.point, near.back.to.point, kGreen, 3.0);
  const double leash = gfFrechet(straight, turning).frechet;
  // The leash is longest where the way back begins or ends, and one of the two has to wait.
  line(tablet, {9.5, 5.6}, {6.5, 5}, kRed, 1.6);
  line(tablet, {3.5, 6.2}, {6.5, 5}, kRed, 1.6);
  captions(tablet, "Hausdorff " + number(near.hausdorff), kGreen, "Fréchet " + number(leash), kRed);
  tablet.save(folder + "/gauge_frechet.svg");
}

// ---- Points ---------------------------------------------------------------------------------------

void roundness(const std::string& folder) {
  gxSvgTablet tablet = page("Roundness: the minimum zone");
  Points points;
  for (int i = 0; i < 24; ++i) {
    const double turn = 2.0 * std::numbers::pi * i / 24.0;
    const double r = 4.7 + 0.35 * std::cos(3.0 * turn) + 0.15 * std::sin(7.0 * turn + 1.0);
    points.emplace_back(6.5 + r * std::cos(turn), 5.0 + r * std::sin(turn));
  }
  const gxRoundness zone = gfRoundness(points);
  circle(tablet, zone.centre, zone.outerRadius, kBlue);
  circle(tablet, zone.centre, zone.innerRadius, kBlue);
  for (const V& p : points) dot(tablet, p, kBlack, 5.0);
  for (const long i : zone.outerSupports) dot(tablet, points[static_cast<std::size_t>(i)], kRed, 9.0);
  for (const long i : zone.innerSupports) dot(tablet, points[static_cast<std::size_t>(i)], kRed, 9.0);
  dot(tablet, zone.centre, kBlue);
  captions(tablet, "roundness " + number(zone.roundness), kBlue, "the points that determine it", kRed);
  tablet.save(folder + "/gauge_roundness.svg");
}

void straightness(const std::string& folder) {
  gxSvgTablet tablet = page("Straightness: the minimum zone");
  Points points;
  for (int i = 0; i < 20; ++i) {
    const double x = 0.65 * i;
    points.emplace_back(x, 3.0 + 0.3 * x + 0.6 * std::sin(0.8 * x) + 0.25 * std::cos(2.7 * x));
  }
  const gxStraightness zone = gfStraightness(points);
  const V along(std::cos(zone.angle), std::sin(zone.angle));
  const V half = V(-along.y(), along.x()) * (0.5 * zone.straightness);
  for (const double side : {-1.0, 1.0})
    line(tablet, zone.point + half * side - along * 6.8, zone.point + half * side + along * 6.8, kBlue,
         1.8);
  for (const V& p : points) dot(tablet, p, kBlack, 5.0);
  for (const long i : zone.supports) dot(tablet, points[static_cast<std::size_t>(i)], kRed, 9.0);
  captions(tablet, "straightness " + number(zone.straightness), kBlue, "the points that determine it",
           kRed);
  tablet.save(folder + "/gauge_straightness.svg");
}

void fit(const std::string& folder) {
  gxSvgTablet tablet = page("A circle among strangers");
  Points points;
  for (int i = 0; i < 40; ++i) {
    const double turn = 0.3 + 4.4 * i / 40.0;
    const double r = 4.2 + 0.07 * std::sin(11.0 * i);
    points.emplace_back(6.0 + r * std::cos(turn), 5.0 + r * std::sin(turn));
  }
  for (int i = 0; i < 16; ++i)
    points.emplace_back(6.5 + 0.4 * i, 2.0 + 0.12 * i + 0.1 * std::sin(5.0 * i));
  const gxRobustCircle plain = gfRobustCircle(points, {.weights = gxFitWeights::eLeastSquares});
  const gxRobustCircle robust = gfRobustCircle(points);
  circle(tablet, plain.centre, plain.radius, kGrey);
  circle(tablet, robust.centre, robust.radius, kBlue);
  for (const V& p : points) dot(tablet, p, kRed, 5.0);
  for (const std::size_t i : robust.inliers) dot(tablet, points[i], kBlack, 5.0);
  captions(tablet, "robust: " + number(robust.radius) + " ± " + number(robust.radiusError), kBlue,
           "least squares (grey): " + number(plain.radius), kBlack);
  tablet.save(folder + "/gauge_fit.svg");
}

// ---- Curves ---------------------------------------------------------------------------------------

Points jagged() {
  Points points;
  for (int i = 0; i < 120; ++i) {
    const double turn = 2.0 * std::numbers::pi * i / 120.0;
    const double r = 4.2 + 0.9 * std::cos(3.0 * turn) + 0.12 * std::sin(41.0 * turn);
    points.emplace_back(6.5 + 1.25 * r * std::cos(turn), 5.0 + r * std::sin(turn));
  }
  return points;
}

void resample(const std::string& folder) {
  gxSvgTablet tablet = page("24 points at equal arc lengths");
  ring(tablet, kOutline, kBlack, 2.0);
  for (const V& p : gfResample(kOutline, true, 24).points) dot(tablet, p, kBlue, 7.0);
  const gxArcLength arc(kOutline, true);
  walk(tablet, arc.part(0.35 * arc.length(), 0.5 * arc.length()), kRed, 4.0);
  captions(tablet, "every " + number(arc.length() / 24.0), kBlue, "the part from 35 % to 50 %", kRed);
  tablet.save(folder + "/gauge_resample.svg");
}

void simplify(const std::string& folder) {
  gxSvgTablet tablet = page("Simplified and smoothed");
  const Points points = jagged();
  ring(tablet, points, kGrey, 1.8);
  const gxSimplified simple = gfSimplify(points, true, 0.35);
  ring(tablet, simple.points, kRed, 1.8);
  for (const V& p : simple.points) dot(tablet, p, kRed, 6.0);
  ring(tablet, gfSmooth(points, true, 0.5, gxSmoothCorrection::eShrink).points, kBlue, 2.0);
  captions(tablet, "within 0.35: " + std::to_string(simple.points.size()) + " of 120 points", kRed,
           "smoothed, sigma 0.5", kBlue);
  tablet.save(folder + "/gauge_simplify.svg");
}

void curvature(const std::string& folder) {
  gxSvgTablet tablet = page("Normals as long as the curvature; corners");
  const Points points = gfResampleBySpacing(gfSmooth(jagged(), true, 0.5).points, true, 0.35).points;
  ring(tablet, points, kBlack, 2.0);
  const gxBends bends = gfCurvature(points, true, 1.2);
  for (std::size_t i = 0; i < points.size(); ++i)
    line(tablet, points[i], points[i] + bends.at[i].normal * (2.2 * bends.at[i].curvature),
         bends.at[i].curvature > 0.0 ? kBlue : kRed, 1.3);
  captions(tablet, "curvature positive", kBlue, "negative", kRed);
  tablet.save(folder + "/gauge_curvature.svg");
}

void corners(const std::string& folder) {
  gxSvgTablet tablet = page("Corners");
  const Points points = gfSmooth(gfResampleBySpacing(kOutline, true, 0.1).points, true, 0.15).points;
  ring(tablet, points, kBlack, 2.0);
  for (const gxCorner& c : gfCorners(points, true, 0.7, gxRadian(0.6)).corners) {
    dot(tablet, points[c.vertex], kRed, 8.0);
    const V out = (points[c.vertex] - V(6.2, 4.5)).unit() * 0.75;
    label(tablet, points[c.vertex] + out, number(c.turn.toDouble() * gx_kDegreesPerRadian, 0) + "°",
          kRed);
  }
  captions(tablet, "vertices where the walk turns by more than 34°", kRed);
  tablet.save(folder + "/gauge_corners.svg");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: gauge_pictures FOLDER\n";
    return 2;
  }
  for (const auto& draw :
       {enclosing, widths, inside, moments, descriptors, defects, distances, hausdorff, deviation, align,
        frechet, roundness, straightness, fit, resample, simplify, curvature, corners}) {
    draw(argv[1]);
  }
  return 0;
}
