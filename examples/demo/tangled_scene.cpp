// Scene 2: outlines that cross themselves, and what the repair makes of them.
//
//  1. Eight outlines are picked: grown, stroked, made bolder or thinner, noisy, drawn by hand.
//  2. The table gives points and area before and after; the area of a tangled outline is the bare
//     formula, in which parts that are passed twice count twice and parts passed backwards count less.
//  3. The picture has three columns for each: as it came, regularized, outer hull.  The repaired outline
//     covers the tangled one, so that what was dropped remains, in red.
//  4. The last two show the limit: the walk around the outside turns back where it meets a crossing, and
//     loses what lies beyond when the outline is a thin tangle or goes around more than once.

#include "readers.h"
#include "scenes.h"
#include "sketch.h"

#include <cntr/region.h>
#include <veldispc/svg_tablet.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

struct Case {
  std::string name;
  std::string origin;
  gxRegion tangled;
  gxRegion regular;
  gxRegion hull;
};

std::vector<Case> repairAll(const std::filesystem::path& data) {
  const char* const picked[] = {"tangled-002", "tangled-048", "tangled-027", "tangled-043",
                                "tangled-036", "tangled-017", "tangled-024", "tangled-040"};
  const std::vector<Outline> outlines = readOutlines(data / "tangled" / "tangled.jsonl");
  std::vector<Case> cases;
  for (const char* const name : picked) {
    const auto found = std::find_if(outlines.begin(), outlines.end(),
                                    [name](const Outline& outline) { return outline.name == name; });
    if (found == outlines.end()) continue;
    Case repaired{found->name, found->origin, gxRegion(found->points), gxRegion(), gxRegion()};
    repaired.tangled.regularize(repaired.regular);
    repaired.tangled.outerHull(repaired.hull);
    cases.push_back(repaired);
  }
  return cases;
}

// Returns how many bytes of the text begin no character: what a column needs beside its width.
int continuationBytes(const std::string& utf8) {
  return static_cast<int>(std::count_if(utf8.begin(), utf8.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xc0U) == 0x80U;
  }));
}

void printCases(const std::vector<Case>& cases) {
  std::printf(
      "\nAreas in square units of the source (degrees, font units, pixels).  Of the first six, which "
      "cross\n");
  std::printf(
      "themselves here and there, the outer hull keeps the whole outside.  Of the last two, thin "
      "strokes\n");
  std::printf("turned inside out and a coin that was followed twice, a part is lost.\n\n");
  std::printf("%-49s     as it came         regularized          outer hull\n", "");
  std::printf("%-11s  %-36s points       area  points       area  points       area\n", "outline",
              "made from");
  for (const Case& one : cases) {
    std::printf("%-11s  %-*s %6zu %10.7g  %6zu %10.7g  %6zu %10.7g\n", one.name.c_str(),
                36 + continuationBytes(one.origin), one.origin.c_str(), one.tangled.points().size(),
                one.tangled.area(false), one.regular.points().size(), one.regular.area(false),
                one.hull.points().size(), one.hull.area(false));
  }
}

constexpr double kCell = 270.0;
constexpr double kGap = 14.0;
constexpr double kCaption = 36.0;
constexpr double kHeading = 40.0;

// One cell of the picture: the outline as it came, below it the repaired one, if there is one.
void drawCell(gxSvgTablet& tablet, const Case& one, const gxRegion* repaired, const gxVector<2>& at) {
  const gxRect cell(at, {kCell, kCell});
  const bool yUp = one.origin.find("coin") == std::string::npos;
  PanelTablet panel(tablet, fitInto(one.tangled.encloseRect(gxXform<2>::I), cell, yUp));
  tablet.strokeWidth(1.5);
  one.tangled.draw(panel, repaired == nullptr ? palette::kOutline : palette::kDropped,
                   gxUITablet::eOverlayLayer);
  if (repaired == nullptr) return;
  // Wider than what lies below it, so that only what was dropped stays visible.
  tablet.strokeWidth(2.0);
  repaired->draw(panel, repaired == &one.regular ? palette::kEllipse : palette::kHull,
                 gxUITablet::eOverlayLayer);
}

// Above each row, so that no cell has to be looked up at the top of the page.
void drawHeads(gxSvgTablet& tablet, const gxVector<2>& at) {
  const double step = kCell + kGap;
  const auto layer = gxUITablet::eOverlayLayer;
  tablet.drawText({at.x(), at.y()}, "as it came", palette::kOutline, layer, 18.0);
  tablet.drawText({at.x() + step, at.y()}, "regularized", palette::kEllipse, layer, 18.0);
  tablet.drawText({at.x() + 1.5 * step, at.y() + 14.0}, "red: dropped", palette::kDropped, layer, 14.0);
  tablet.drawText({at.x() + 2.0 * step, at.y()}, "outer hull", palette::kHull, layer, 18.0);
}

void drawCases(const std::vector<Case>& cases, const std::filesystem::path& path) {
  constexpr double kHalf = 3.0 * (kCell + kGap) + 46.0;
  const std::size_t rows = (cases.size() + 1) / 2;
  constexpr double kRowHeight = kHeading + kCell + kGap + kCaption;
  const double height = static_cast<double>(rows) * kRowHeight;
  gxSvgTablet tablet(gxRect({0.0, 0.0}, {2.0 * kHalf - 46.0, height}), 2.0 * kHalf - 46.0,
                     gxSvgTablet::eYDown, 12.0);
  tablet.background(palette::kPaper);
  tablet.title("Tangled outlines and their repair");
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const std::size_t row = i / 2;
    const double x = static_cast<double>(i % 2) * kHalf;
    const double y = kHeading + static_cast<double>(row) * kRowHeight;
    drawHeads(tablet, {x + kCell / 2.0, y - 24.0});
    drawCell(tablet, cases[i], nullptr, {x, y});
    drawCell(tablet, cases[i], &cases[i].regular, {x + kCell + kGap, y});
    drawCell(tablet, cases[i], &cases[i].hull, {x + 2.0 * (kCell + kGap), y});
    tablet.drawText({x + 1.5 * kCell + kGap, y + kCell + 20.0}, cases[i].name + ": " + cases[i].origin,
                    palette::kLabel, gxUITablet::eOverlayLayer, 15.0);
  }
  tablet.save(path);
  std::printf("\nDrawn: %s\n", path.c_str());
}

}  // namespace

void showTangled(const std::filesystem::path& data, const std::filesystem::path& out) {
  std::printf("\n== 2. Tangled outlines\n");
  const std::vector<Case> cases = repairAll(data);
  printCases(cases);
  drawCases(cases, out / "tangled.svg");
}
