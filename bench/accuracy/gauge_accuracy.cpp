// How exact the gauges are: shapes whose measures are known, turned by the angle of the 3-4-5 triangle, at
// several sizes and far from the origin; the greatest relative error of each gauge.
//
//   gauge_accuracy
//
// A turned and moved shape has rounded coordinates: far from the origin that alone is about 1e-10 of a shape
// of size 1 at 1e6, and no gauge can be more exact than its input.
#include <gauge/gauge.h>
#include <support/gauge_shapes.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
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

}  // namespace

int main() {
  std::printf(
      "| Gauge | size 1e-3 | size 1 | size 1e6 | size 1, at (1e6, -1e6) |\n|---|--:|--:|--:|--:|\n");
  for (const Gauge& gauge : kGauges) {
    std::printf("| %s | %.0e | %.0e | %.0e | %.0e |\n", gauge.name, worst(gauge, 1e-3, {0, 0}),
                worst(gauge, 1.0, {0, 0}), worst(gauge, 1e6, {0, 0}), worst(gauge, 1.0, {1e6, -1e6}));
  }
}
