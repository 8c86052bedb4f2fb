// Inspection of a batch of parts against a golden outline: alignment, deviation, form errors, verdicts.
//
//   example_inspect [PICTURE.svg]
//
// The golden part is the letter D of a font, with its hole; the batch is made from it, seeded: some parts are
// good, some have a chip, a burr, a shifted hole or a bent back, and each lies somewhere else, turned.
//
//  1. Each part is laid upon the golden one; chips and burrs do not pull.
//  2. Its deviation from there says how far, where and over how much of its border it is out of tolerance.
//  3. The straight back of the letter has a form error of its own: how straight it is, wherever it lies; and
//     the thinnest wall tells whether the hole has come too near to the outline.
//
// The picture shows every part where it was laid, grey in tolerance, towards red outside and blue inside.

#include <cntr/region.h>
#include <gauge/gauge.h>
#include <veldispc/svg_tablet.h>
#include <velstd/random.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <numbers>
#include <string>
#include <vector>

namespace {

using Points = std::vector<gxVector<2>>;

// In millimetres.
constexpr double kTolerance = 0.1;
constexpr double kStraight = 0.06;  // the most that the back may deviate from a straight line
constexpr double kBackReach = 0.5;  // the back is what lies so near to the left side of the box

// The pairs of numbers of the list that begins at `at` and ends where its brackets are closed.
Points pointsAt(const std::string& line, std::size_t at) {
  Points points;
  std::vector<double> numbers;
  int depth = 0;
  for (std::size_t i = at; i < line.size(); ++i) {
    if (line[i] == '[') ++depth;
    if (line[i] == ']' && --depth == 0) break;
    if (line[i] == '-' || (line[i] >= '0' && line[i] <= '9')) {
      char* end = nullptr;
      numbers.push_back(std::strtod(&line[i], &end));
      i = static_cast<std::size_t>(end - line.data()) - 1;
    }
  }
  for (std::size_t i = 0; i + 1 < numbers.size(); i += 2)
    points.emplace_back(numbers[i], numbers[i + 1]);
  return points;
}

// A part: its outline and its hole, in millimetres.
struct Part {
  const char* made;
  Points outline;
  Points hole;

  gxRegion region() const {
    gxRegion region(outline);
    region.holes({gxRegion::HoleHandle(new gxRegion(hole))});
    return region;
  }
};

// The letter, 15 mm high, its points 0.1 mm apart, as an edge finder would give it.
Part goldenPart() {
  std::ifstream file("tests/data/glyphs/glyphs.jsonl");
  for (std::string line; std::getline(file, line);) {
    if (line.find("\"DejaVu Sans D\"") == std::string::npos) continue;
    Part golden{"golden", pointsAt(line, line.find("\"outer\":") + 8),
                pointsAt(line, line.find("\"holes\":[") + 9)};
    for (Points* ring : {&golden.outline, &golden.hole}) {
      for (gxVector<2>& p : *ring) p = p * 0.01;
      *ring = gfResampleBySpacing(*ring, true, 0.1).points;
    }
    return golden;
  }
  std::fprintf(stderr, "no outlines; run from the root of the checkout\n");
  std::exit(1);
}

// Pushes the points around number `middle` out of the material by a bump of that height and width.
void bump(Points& ring, std::size_t middle, double height, double width) {
  const Points before = ring;
  const double way = gfOrientation(before);
  const gxBends bends = gfCurvature(before, true, 0.5);
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const double d = before[i].distance(before[middle]) / width;
    if (d < 1.0) ring[i] += bends.at[i].normal * (way * height * (1.0 - d * d) * (1.0 - d * d));
  }
}

// Draws the back of the letter in, most in its middle.
void bend(Points& ring, double depth) {
  const gxRect box = gxContour(ring).encloseRect(gxXform<2>::I);
  for (gxVector<2>& p : ring) {
    const double height = (p.y() - box.origin().y()) / box.size().y();
    if (p.x() < box.origin().x() + kBackReach)
      p += gxVector<2>(4.0 * depth * height * (1.0 - height), 0.0);
  }
}

// The points along the straight back, without the corners.
Points backOf(const Points& ring, const gxRect& golden) {
  Points back;
  for (const gxVector<2>& p : ring) {
    const double height = (p.y() - golden.origin().y()) / golden.size().y();
    if (p.x() < golden.origin().x() + kBackReach && height > 0.05 && height < 0.95) back.push_back(p);
  }
  return back;
}

std::vector<Part> makeBatch(const Part& golden) {
  gxRandomUniform random(16);
  std::vector<Part> batch;
  for (const char* made : {"good", "chip", "good", "burr", "shifted hole", "bent back"}) {
    Part part = golden;
    part.made = made;
    const std::string kind = made;
    const auto where =
        static_cast<std::size_t>(random.next(0.2, 0.8) * static_cast<double>(part.outline.size()));
    if (kind == "chip") bump(part.outline, where, -0.4, 0.8);
    if (kind == "burr") bump(part.outline, where, 0.5, 0.3);
    if (kind == "bent back") bend(part.outline, 0.15);
    const gxVector<2> shift = kind == "shifted hole" ? gxVector<2>(0.25, 0.1) : gxVector<2>();
    const gxRadian turn(random.next(-0.5, 0.5));
    const gxMatrix<2> rotation(turn, turn, 1.0, 1.0);
    // (Of two draws in one call, either may come first.)
    const auto drawn = [&](double most) {
      const double x = random.next(-most, most);
      return gxVector<2>(x, random.next(-most, most));
    };
    const gxVector<2> place = drawn(50.0);
    const auto noisy = [&] { return drawn(0.01); };
    for (gxVector<2>& p : part.outline) p = rotation * (p + noisy()) + place;
    for (gxVector<2>& p : part.hole) p = rotation * (p + shift + noisy()) + place;
    batch.push_back(part);
  }
  return batch;
}

// Blue inside, grey within a twentieth, red outside; full colour at the tolerance.
gxColor colourOf(double deviation, double tolerance) {
  const double share = std::min(1.0, std::abs(deviation) / tolerance);
  const auto mix = [share](double full) {
    return static_cast<unsigned char>(190.0 + (full - 190.0) * share);
  };
  return deviation > 0.0 ? gxColor(mix(220), mix(20), mix(30)) : gxColor(mix(20), mix(60), mix(230));
}

void draw(gxSvgTablet& tablet, const Part& part, const gxDeviation& deviation,
          const gxVector<2>& offset) {
  tablet.strokeWidth(2.5);
  std::size_t sample = 0;
  for (const Points* ring : {&part.outline, &part.hole}) {
    for (std::size_t i = 0; i < ring->size(); ++i, ++sample) {
      const gxVector<2> from = (*ring)[i] + offset;
      const gxVector<2> to = (*ring)[(i + 1) % ring->size()] + offset;
      tablet.drawLineSeg({from.x(), from.y()}, {to.x(), to.y()},
                         colourOf(deviation.samples[sample].deviation, kTolerance),
                         gxUITablet::eOverlayLayer);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const Part golden = goldenPart();
  const gxRegion goldenRegion = golden.region();
  const gxRect box = goldenRegion.encloseRect(gxXform<2>::I);
  std::printf("golden: wall %.3f mm, inscribed circle %.3f mm\n", gfSmallestWall(goldenRegion).wall,
              gfInscribedCircle(goldenRegion).radius);
  const std::vector<Part> batch = makeBatch(golden);
  const double pitch = box.size().x() + 2.0;
  gxSvgTablet tablet(gxRect(box.origin() - gxVector<2>(1.0, 1.0),
                            {pitch * static_cast<double>(batch.size()), box.size().y() + 2.0}),
                     1500.0, gxSvgTablet::eYUp, 10.0);
  tablet.background(gxColor(255, 255, 255));
  tablet.title("A batch of parts and their deviation from the golden one");
  std::printf(
      "part  made as         angle    rms     min     max  out of  stretches  back    wall  verdict\n");
  std::printf("                      (deg)   (mm)    (mm)    (mm)  tolerance          (mm)    (mm)\n");
  for (std::size_t number = 0; number < batch.size(); ++number) {
    Part part = batch[number];
    const gxAlignment alignment = gfAlign(part.region(), goldenRegion);
    for (Points* ring : {&part.outline, &part.hole}) {
      for (gxVector<2>& p : *ring) p = alignment.map(p);
    }
    const gxRegion region = part.region();
    const gxDeviation deviation =
        gfDeviation(region, goldenRegion, {.lower = -kTolerance, .upper = kTolerance});
    const double straight = gfStraightness(backOf(part.outline, box)).straightness;
    const bool good = deviation.within() && straight <= kStraight;
    std::printf("%4zu  %-13s %7.2f  %5.3f  %6.3f  %6.3f  %5.1f %%  %9zu  %5.3f  %5.3f  %s\n", number,
                part.made, alignment.angle.toDouble() * gx_kDegreesPerRadian, deviation.deviationRms,
                deviation.deviationMin, deviation.deviationMax, 100.0 * deviation.outOfTolerance,
                deviation.stretches.size(), straight, gfSmallestWall(region).wall,
                good ? "good" : "bad");
    draw(tablet, part, deviation, {pitch * static_cast<double>(number), 0.0});
  }
  if (argc > 1) tablet.save(argv[1]);
}
