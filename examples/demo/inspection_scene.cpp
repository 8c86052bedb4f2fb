// Scene 7: a batch of punched coins, inspected against a golden one.
//
//  1. The golden part is coin 0 with a round hole in its middle; the batch is made from it, seeded: two good
//     parts, a chip, a burr, a shifted hole, an oval hole, each with a tenth of a pixel of noise, moved and turned.
//  2. Each is laid upon the golden one; chips and burrs do not pull.
//  3. The table says by how much it deviates, over how much of its border it is out of tolerance, how round
//     its hole is (minimum zone), how thin its wall is, and the verdict.
//  4. The picture shows every part where it was laid: grey in tolerance, towards red outside of the golden one,
//     towards blue inside.

#include "readers.h"
#include "scenes.h"
#include "shapes.h"
#include "sketch.h"

#include <gauge/gauge.h>
#include <veldispc/svg_tablet.h>
#include <velstd/random.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <string>
#include <vector>

namespace {

using Points = std::vector<gxVector<2>>;

// In pixels.
constexpr double kTolerance = 0.8;
constexpr double kNoise = 0.1;
constexpr double kMostRoundness = 0.8;
constexpr double kHole = 6.0;

struct Part {
  std::string made;
  Points outline;
  Points hole;

  gxRegion region() const {
    gxRegion region(outline);
    region.holes({gxRegion::HoleHandle(new gxRegion(hole))});
    return region;
  }
};

struct Result {
  Part laid;
  gxAlignment alignment;
  gxDeviation deviation;
  double roundness;
  double wall;

  bool good() const { return deviation.within() && roundness <= kMostRoundness; }
};

Part goldenPart(const std::filesystem::path& data) {
  Part golden{"golden", readOutlines(data / "coins" / "outlines.jsonl").front().points, {}};
  // Pixel steps are no form errors of the coin.
  golden.outline = gfSmooth(gfResampleBySpacing(golden.outline, true, 0.5).points, true, 1.5).points;
  const gxVector<2> centre = gfMoments(golden.outline).centre;
  for (int k = 0; k < 72; ++k)
    golden.hole.push_back(centre + gxVector<2>(kHole, gxRadian(std::numbers::pi / 36.0 * k)));
  return golden;
}

// Pushes the points around number `middle` away from the centre, most in the middle of that width.
void bump(Points& ring, std::size_t middle, double height, double width) {
  const gxVector<2> centre = gfMoments(ring).centre;
  const gxVector<2> top = ring[middle];
  for (gxVector<2>& p : ring) {
    const double d = p.distance(top) / width;
    if (d < 1.0) p += (p - centre).unit() * (height * (1.0 - d * d) * (1.0 - d * d));
  }
}

Part made(const Part& golden, const std::string& kind, gxRandomUniform& random) {
  Part part = golden;
  part.made = kind;
  const auto where =
      static_cast<std::size_t>(random.next(0.0, 1.0) * static_cast<double>(part.outline.size()));
  const gxVector<2> centre = gfMoments(part.hole).centre;
  if (kind == "chip") bump(part.outline, where, -3.0, 7.0);
  if (kind == "burr") bump(part.outline, where, 3.0, 3.0);
  for (gxVector<2>& p : part.hole) {
    if (kind == "shifted hole") p += gxVector<2>(2.0, 1.0);
    if (kind == "oval hole") p += gxVector<2>((p - centre).x() * 0.2, 0.0);
  }
  const gxRadian turn(random.next(-0.5, 0.5));
  const gxMatrix<2> rotation(turn, turn, 1.0, 1.0);
  // (Of two draws in one call, either may come first.)
  const auto drawn = [&random](double most) {
    const double x = random.next(-most, most);
    return gxVector<2>(x, random.next(-most, most));
  };
  const gxVector<2> place = drawn(200.0);
  for (Points* ring : {&part.outline, &part.hole}) {
    for (gxVector<2>& p : *ring) p = rotation * (p + drawn(kNoise)) + place;
  }
  return part;
}

Result inspected(const Part& part, const gxRegion& golden) {
  Result result{part, gfAlign(part.region(), golden), {}, 0.0, 0.0};
  for (Points* ring : {&result.laid.outline, &result.laid.hole}) {
    for (gxVector<2>& p : *ring) p = result.alignment.map(p);
  }
  const gxRegion region = result.laid.region();
  result.deviation = gfDeviation(region, golden, {.lower = -kTolerance, .upper = kTolerance});
  result.roundness = gfRoundness(result.laid.hole).roundness;
  result.wall = gfSmallestWall(region).wall;
  return result;
}

void print(const std::vector<Result>& results) {
  std::printf("\nLengths in pixels; tolerance %.1f, roundness of the hole at most %.1f.\n\n", kTolerance,
              kMostRoundness);
  std::printf(
      "part  made as          angle    rms     min     max  out of     stretches  roundness   wall  "
      "verdict\n");
  std::printf(
      "                       (deg)                         tolerance                              \n");
  for (std::size_t i = 0; i < results.size(); ++i) {
    const Result& r = results[i];
    std::printf("%4zu  %-13s  %7.2f  %5.3f  %6.3f  %6.3f  %6.1f %%  %12zu  %9.3f  %5.2f  %s\n", i,
                r.laid.made.c_str(), r.alignment.angle.toDouble() * kDegrees, r.deviation.deviationRms,
                r.deviation.deviationMin, r.deviation.deviationMax, 100.0 * r.deviation.outOfTolerance,
                r.deviation.stretches.size(), r.roundness, r.wall, r.good() ? "good" : "bad");
  }
}

// Grey where there is no deviation; full colour at twice the tolerance.
gxColor colourOf(double deviation) {
  const double share = std::min(1.0, std::abs(deviation) / (2.0 * kTolerance));
  const auto mix = [share](double full) {
    return static_cast<unsigned char>(185.0 + (full - 185.0) * share);
  };
  return deviation > 0.0 ? gxColor(mix(220), mix(20), mix(30)) : gxColor(mix(20), mix(60), mix(230));
}

constexpr double kPanel = 300.0;
constexpr double kCaption = 44.0;

void drawPart(gxSvgTablet& tablet, const Result& result, const gxRect& view, const gxVector<2>& at) {
  PanelTablet panel(tablet, fitInto(view, gxRect(at, {kPanel, kPanel}), false));
  tablet.strokeWidth(4.0);
  std::size_t sample = 0;
  for (const Points* ring : {&result.laid.outline, &result.laid.hole}) {
    for (std::size_t i = 0; i < ring->size(); ++i, ++sample) {
      drawLine(panel, (*ring)[i], (*ring)[(i + 1) % ring->size()],
               colourOf(result.deviation.samples[sample].deviation));
    }
  }
  const gxVector<2> below = at + gxVector<2>(kPanel / 2.0, kPanel + 6.0);
  tablet.drawText({below.x(), below.y()}, "made as: " + result.laid.made, palette::kLabel,
                  gxUITablet::eOverlayLayer, 17.0);
  tablet.drawText({below.x(), below.y() + 21.0}, result.good() ? "good" : "bad",
                  result.good() ? palette::kEllipse : palette::kDropped, gxUITablet::eOverlayLayer,
                  17.0);
}

// The colours from inside to outside, with their numbers.
void drawLegend(gxSvgTablet& tablet, const gxVector<2>& at, double width) {
  constexpr int kSteps = 64;
  tablet.strokeWidth(10.0);
  for (int i = 0; i < kSteps; ++i) {
    const double share = (i + 0.5) / kSteps;
    const gxVector<2> from = at + gxVector<2>(width * i / kSteps, 0.0);
    drawLine(tablet, from, from + gxVector<2>(width / kSteps, 0.0),
             colourOf(2.0 * kTolerance * (2.0 * share - 1.0)));
  }
  const std::pair<double, const char*> marks[] = {
      {0.0, "1.6 px inside"}, {0.5, "0"}, {1.0, "1.6 px outside"}};
  for (const auto& [share, text] : marks)
    tablet.drawText({at.x() + width * share, at.y() + 20.0}, text, palette::kLabel,
                    gxUITablet::eOverlayLayer, 14.0);
}

void draw(const std::vector<Result>& results, const std::filesystem::path& path) {
  const double height = 2.0 * (kPanel + kCaption) + 60.0;
  gxSvgTablet tablet(gxRect({0.0, 0.0}, {3.0 * kPanel, height}), 3.0 * kPanel, gxSvgTablet::eYDown,
                     12.0);
  tablet.background(palette::kPaper);
  tablet.title("A batch of punched coins and their deviation from the golden one");
  gxRect view = results.front().laid.region().encloseRect(gxXform<2>::I);
  view = gxRect(view.origin() - gxVector<2>(4.0, 4.0), view.size() + gxVector<2>(8.0, 8.0));
  for (std::size_t i = 0; i < results.size(); ++i) {
    const std::size_t row = i / 3;
    const gxVector<2> at(kPanel * static_cast<double>(i % 3),
                         (kPanel + kCaption) * static_cast<double>(row));
    drawPart(tablet, results[i], view, at);
  }
  drawLegend(tablet, {kPanel, height - 34.0}, kPanel);
  tablet.save(path);
  std::printf("\nDrawn: %s\n", path.c_str());
}

}  // namespace

void showInspection(const std::filesystem::path& data, const std::filesystem::path& out) {
  std::printf("\n== 7. Inspection\n");
  const Part golden = goldenPart(data);
  gxRandomUniform random(7);
  std::vector<Result> results;
  for (const char* kind : {"good", "chip", "burr", "good", "shifted hole", "oval hole"})
    results.push_back(inspected(made(golden, kind, random), golden.region()));
  print(results);
  draw(results, out / "inspection.svg");
}
