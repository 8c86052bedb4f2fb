// How exact the gauges are: shapes whose measures are known, turned by the angle of the 3-4-5 triangle, at
// several sizes and far from the origin; the greatest relative error of each gauge.  The second table has
// gauges of one figure each, which is solved by hand beside it; errors of places are relative to its size.
//
//   gauge_accuracy
//
// A turned and moved shape has rounded coordinates: far from the origin that alone is about 1e-10 of a shape
// of size 1 at 1e6, and no gauge can be more exact than its input.
#include <gauge/gauge.h>
#include <support/gauge_shapes.h>
#include <support/placements.h>
#include <support/shape_text.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <numbers>
#include <vector>

namespace {

struct Gauge {
  const char* name;
  std::function<double(const gxRegionSet&)> measured;
  std::function<double(const KnownShape&)> exact;
};

const Gauge kGauges[] = {
    {"area", [](const gxRegionSet& s) { return gfMoments(s).area; },
     [](const KnownShape& k) { return k.area; }},
    {"smallest circle, radius", [](const gxRegionSet& s) { return gfEnclosingCircle(s).radius; },
     [](const KnownShape& k) { return k.circleRadius; }},
    {"greatest width", [](const gxRegionSet& s) { return gfFeret(s).feretMax; },
     [](const KnownShape& k) { return k.feretMax; }},
    {"least width", [](const gxRegionSet& s) { return gfFeret(s).feretMin; },
     [](const KnownShape& k) { return k.feretMin; }},
    {"least rectangle, area", [](const gxRegionSet& s) { return gfLeastAreaRectangle(s).area(); },
     [](const KnownShape& k) { return k.rectangleLength * k.rectangleWidth; }},
    {"largest inscribed circle", [](const gxRegionSet& s) { return gfInscribedCircle(s, 1e-12).radius; },
     [](const KnownShape& k) { return k.inscribed; }},
    {"smallest wall", [](const gxRegionSet& s) { return gfSmallestWall(s).wall; },
     [](const KnownShape& k) { return k.wall; }},
    {"first invariant of Hu", [](const gxRegionSet& s) { return gfMoments(s).hu[0]; },
     [](const KnownShape& k) { return k.hu1; }},
};

double worst(const Gauge& gauge, double scale, const gxVector<2>& offset) {
  double most = 0.0;
  for (const KnownShape& known : knownShapes()) {
    const KnownShape shape = placed(known, true, scale, offset);
    const double exact = gauge.exact(shape);
    if (!std::isfinite(exact)) continue;
    most = std::max(most, std::fabs(gauge.measured(shape.set()) - exact) / exact);
  }
  return most;
}

// ---- Figures solved by hand -----------------------------------------------------------------------

using Point = gxVector<2>;
using Points = std::vector<Point>;

struct Figure {
  const char* name;
  std::function<double(const Placement&)> error;
};

Points at(const Placement& place, const char* text) {
  return place.of(pointsOf(text));
}

Points ring(const Placement& place, int count, double a, double b, double waves) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double angle = 2.0 * std::numbers::pi * i / count;
    const double wave = waves * std::cos(4.0 * angle);
    points.push_back(place.of(Point((a + wave) * std::cos(angle), (b + wave) * std::sin(angle))));
  }
  return points;
}

double relative(double measured, double exact) {
  return std::fabs(measured - exact) / std::fabs(exact);
}

// Of the arms of an L laid upon itself from a place turned by 0.1: how far the corners miss, over the size.
double alignError(const Placement& p) {
  const Points golden = at(p, "0 0, 3 0, 3 1, 1 1, 1 3, 0 3");
  Placement turned = p;
  turned.cosine = p.cosine * std::cos(0.1) - p.sine * std::sin(0.1);
  turned.sine = p.sine * std::cos(0.1) + p.cosine * std::sin(0.1);
  const Points shape = turned.of(pointsOf("0 0, 3 0, 3 1, 1 1, 1 3, 0 3"));
  const gxAlignment found = gfAlign(shape, golden);
  double most = 0.0;
  for (std::size_t i = 0; i < shape.size(); ++i)
    most = std::max(most, found.map(shape[i]).distance(golden[i]));
  return most / (3.0 * p.scale);
}

double resampleError(const Placement& p) {
  const gxResampled points = gfResample(at(p, "0 0, 8 0, 8 8, 0 8"), true, 32);
  double most = 0.0;
  for (int i = 0; i < 8; ++i) {
    most = std::max(most, points.points[static_cast<std::size_t>(i)].distance(p.of(Point(i, 0))));
  }
  return most / (8.0 * p.scale);
}

// The corner of two long arms at a right angle moves by sigma / √(2 π) along both.
double smoothError(const Placement& p) {
  const gxSmoothed smooth = gfSmooth(at(p, "100 0, 0 0, 0 100"), false, 1.0 * p.scale);
  const double in = 1.0 / std::sqrt(2.0 * std::numbers::pi);
  return smooth.points[1].distance(p.of(Point(in, in))) / (100.0 * p.scale);
}

double curvatureError(const Placement& p) {
  const gxBends bends =
      gfCurvature(ring(p, 100, 10.0, 10.0, 0.0), true, 3.0 * p.scale, gxCurvatureFit::eCircle);
  double most = 0.0;
  for (const gxBend& bend : bends.at) most = std::max(most, relative(bend.curvature * p.scale, 0.1));
  return most;
}

const char* const kTriangle = "0 0, 4 0, 0 3";
const char* const kSquare = "0 0, 10 0, 10 10, 0 10";
const char* const kL = "0 0, 3 0, 3 1, 1 1, 1 3, 0 3";

const Figure kFigures[] = {
    {"length of a 3-4-5 triangle's border",
     [](const Placement& p) {
       return relative(gxArcLength(at(p, kTriangle), true).length(), 12.0 * p.scale);
     }},
    {"its centre",
     [](const Placement& p) {
       const Point centre = gfMeasure(at(p, kTriangle)).centre;
       return centre.distance(p.of(Point(4.0 / 3.0, 1.0))) / (5.0 * p.scale);
     }},
    {"its circularity, π / 6",
     [](const Placement& p) {
       return relative(gfDescribe(at(p, kTriangle)).circularity, std::numbers::pi / 6.0);
     }},
    {"its mean width, 12 / π",
     [](const Placement& p) {
       return relative(gfFeret(at(p, kTriangle)).feretMean, 12.0 / std::numbers::pi * p.scale);
     }},
    {"depth of the defect of an L, √2",
     [](const Placement& p) {
       return relative(gfConvexityDefects(at(p, kL)).defects.at(0).depth, std::sqrt(2.0) * p.scale);
     }},
    {"roundness of a cross, minimum zone",
     [](const Placement& p) {
       return relative(gfRoundness(at(p, "10 0, -10 0, 0 9, 0 -9")).roundness, p.scale);
     }},
    {"the same, least squares",
     [](const Placement& p) {
       return relative(
           gfRoundness(at(p, "10 0, -10 0, 0 9, 0 -9"), gxFormReference::eLeastSquares).roundness,
           p.scale);
     }},
    {"straightness of (0,0) (1,0) (2,1) (3,1), 1 / √5",
     [](const Placement& p) {
       return relative(gfStraightness(at(p, "0 0, 1 0, 2 1, 3 1")).straightness,
                       p.scale / std::sqrt(5.0));
     }},
    {"parallelism of (0,1) (5,1.5) (10,1)",
     [](const Placement& p) {
       return relative(gfParallelism(at(p, "0 1, 5 1.5, 10 1"), at(p, "0 0, 10 0")).parallelism,
                       0.5 * p.scale);
     }},
    {"profile of a square half a unit too large, √2",
     [](const Placement& p) {
       return relative(
           gfProfile(at(p, "-0.5 -0.5, 10.5 -0.5, 10.5 10.5, -0.5 10.5"), at(p, kSquare)).profile,
           std::sqrt(2.0) * p.scale);
     }},
    {"Hausdorff distance in the middle of an edge, 30 / (5 + 3 √5)",
     [](const Placement& p) {
       const Points roof = at(p, "0 0, 4 3, 10 0");
       const Points flat = at(p, "0 0, 10 0");
       return relative(gfDirectedHausdorff({flat, false}, {roof, false}).distance,
                       30.0 / (5.0 + 3.0 * std::sqrt(5.0)) * p.scale);
     }},
    {"greatest deviation, a burr of 2",
     [](const Placement& p) {
       const Points burr = at(p, "0 0, 5 -2, 10 0, 10 10, 0 10");
       const Points golden = at(p, kSquare);
       return relative(gfDeviation(burr, golden).deviationMax, 2.0 * p.scale);
     }},
    {"Fréchet distance of a segment and a roof of 4",
     [](const Placement& p) {
       return relative(gfFrechet(at(p, "0 0, 10 0"), at(p, "0 0, 5 4, 10 0")).frechet, 4.0 * p.scale);
     }},
    {"an L laid upon itself, the corners", alignError},
    {"robust line, deviation of ±0.1",
     [](const Placement& p) {
       Points points;
       for (int i = 0; i < 20; ++i)
         points.push_back(p.of(Point(i - 9.5, i % 4 == 0 || i % 4 == 3 ? 0.1 : -0.1)));
       gxRobustOptions options;
       options.weights = gxFitWeights::eLeastSquares;
       return relative(gfRobustLine(points, options).deviation, std::sqrt(0.2 / 18.0) * p.scale);
     }},
    {"robust circle with four waves, radius 10",
     [](const Placement& p) {
       return relative(gfRobustCircle(ring(p, 24, 10.0, 10.0, 0.05)).radius, 10.0 * p.scale);
     }},
    {"robust ellipse 8 by 4, both semi-axes",
     [](const Placement& p) {
       const gxRobustEllipse e = gfRobustEllipse(ring(p, 24, 8.0, 4.0, 0.0));
       return std::max(relative(e.a, 8.0 * p.scale), relative(e.b, 4.0 * p.scale));
     }},
    {"points at equal lengths", resampleError},
    {"a corner smoothed", smoothError},
    {"curvature of a circle", curvatureError},
    {"uncertainty of a square's area, √2 a σ",
     [](const Placement& p) {
       return relative(gfUncertainty(at(p, kSquare), true, {0.01 * p.scale}).area,
                       std::sqrt(2.0) * 10.0 * 0.01 * p.scale * p.scale);
     }},
    {"signed distance of the centre of a triangle's circle, -1",
     [](const Placement& p) {
       return relative(gfSignedDistance(gxContour(at(p, kTriangle), true), p.of(Point(1.0, 1.0))),
                       -p.scale);
     }},
    {"distance of two squares, √2",
     [](const Placement& p) {
       return relative(
           gfDistance(gxRegion(at(p, "0 0, 1 0, 1 1, 0 1")), gxRegion(at(p, "2 2, 3 2, 3 3, 2 3")))
               .distance,
           std::sqrt(2.0) * p.scale);
     }},
};

Placement placement(double scale, const Point& shift) {
  Placement place = kTurned345;
  place.scale = scale;
  place.shift = shift;
  return place;
}

}  // namespace

int main() {
  std::printf(
      "| Gauge | size 1e-3 | size 1 | size 1e6 | size 1, at (1e6, -1e6) |\n|---|--:|--:|--:|--:|\n");
  for (const Gauge& gauge : kGauges) {
    std::printf("| %s | %.0e | %.0e | %.0e | %.0e |\n", gauge.name, worst(gauge, 1e-3, {0, 0}),
                worst(gauge, 1.0, {0, 0}), worst(gauge, 1e6, {0, 0}), worst(gauge, 1.0, {1e6, -1e6}));
  }
  std::printf(
      "\n| Figure | size 1e-3 | size 1 | size 1e6 | size 1, at (1e6, -1e6) |\n|---|--:|--:|--:|--:|\n");
  for (const Figure& f : kFigures) {
    std::printf("| %s | %.0e | %.0e | %.0e | %.0e |\n", f.name, f.error(placement(1e-3, {0, 0})),
                f.error(placement(1.0, {0, 0})), f.error(placement(1e6, {0, 0})),
                f.error(placement(1.0, {1e6, -1e6})));
  }
}
