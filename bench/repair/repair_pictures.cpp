// The drawings of docs/repair.md, made by the library's own drawing.
//
//   repair_pictures docs/img [examples/data/tangled/tangled.jsonl]
#include <cntr/internal/outline/box.h>
#include <cntr/internal/repair/loops.h>
#include <cntr/internal/repair/outside_walk.h>
#include <cntr/region.h>
#include <overlay/repair.h>
#include <support/exposed.h>
#include <support/inside_of.h>
#include <support/outline_files.h>
#include <veldispc/svg_tablet.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

const gxColor kGrey(190, 190, 190);
const gxColor kBlack(40, 40, 40);
const gxColor kBlue(20, 90, 200);
const gxColor kRed(205, 45, 30);
const gxColor kGreen(20, 140, 70);

// A square with a curl to the inside below and one to the outside above:
//
//        5----6
//         `..'
//   7 ---'   `--- 4
//   |    2--1     |
//   0 ---.'`.---- 3
const Points kFigure{{0, 0}, {7, 5}, {3, 5}, {10, 0}, {10, 10}, {3, 15}, {7, 15}, {0, 10}};

gxSvgTablet page(double width, double height, double pixels) {
  gxSvgTablet tablet(gxRect(V(0, 0), V(width, height)), pixels, gxSvgTablet::eYUp, 4.0);
  tablet.background(gxColor(255, 255, 255));
  return tablet;
}

Points moved(const Points& points, const V& by) {
  Points result;
  for (const V& p : points) result.push_back(p + by);
  return result;
}

void drawOutline(gxSvgTablet& tablet, const Points& points, const gxColor& colour, double width) {
  tablet.strokeWidth(width);
  gxRegion(points).draw(tablet, colour, gxUITablet::eOverlayLayer);
}

void drawArrow(gxSvgTablet& tablet, const V& from, const V& to, const gxColor& colour, double head) {
  const V along = (to - from).unit();
  const V across(-along.y(), along.x());
  const V middle = from + (to - from) * 0.55;
  for (const double side : {-1.0, 1.0}) {
    const V barb = middle - along * head + across * (side * head * 0.5);
    tablet.drawLineSeg({barb.x(), barb.y()}, {middle.x(), middle.y()}, colour,
                       gxUITablet::eOverlayLayer);
  }
}

void label(gxSvgTablet& tablet, const V& at, const std::string& text, const gxColor& colour,
           double pixels = 13) {
  tablet.drawText({at.x(), at.y()}, text, colour, gxUITablet::eOverlayLayer, pixels);
}

void drawVertexNumbers(gxSvgTablet& tablet, const Points& points, const V& by) {
  const V centre(5, 7);
  for (std::size_t i = 0; i < points.size(); ++i) {
    const V out = (points[i] - centre).unit() * (i == 1 || i == 2 ? -0.7 : 0.7);
    label(tablet, points[i] + out + by, std::to_string(i), kBlack);
  }
}

gx_OutlineQuestions questionsTo(const ExposedRegion& region) {
  return {[&region](const gxLineSeg& seg, std::size_t, std::vector<int>& edges) {
            return region.intersections(seg, edges, false);
          },
          [&region](const gxLineSeg& seg) { return region.intersections(seg, true, false).size(); },
          [&region](const V& point) { return gx_RegionInside::insideCount(region, point, true); }};
}

// Step 1: every candidate edge with its probe; refused ones red, the start edge green, later ones grey.
void drawStart(const std::string& folder) {
  gxSvgTablet tablet = page(14, 18, 420);
  tablet.title("the start edge");
  const V by(2, 1.5);
  const Points points = moved(kFigure, by);
  const ExposedRegion region(points);
  const double probe = 0.01 * region.medianFeatureSize();
  const std::size_t start = gx_findStartEdge(points, probe, questionsTo(region));
  drawOutline(tablet, points, kBlack, 1.5);
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    const gxColor colour = i < start ? kRed : i == start ? kGreen : kGrey;
    const V middle = (points[i] + points[i + 1]) * 0.5;
    const V along = (points[i] - points[i + 1]).unit();
    const V across = V(-along.y(), along.x()) * (6.0 * probe);  // six times as long as it is, to be seen
    tablet.strokeWidth(i == start ? 4.0 : 3.0);
    tablet.drawLineSeg({middle.x() + across.x(), middle.y() + across.y()},
                       {middle.x() - across.x(), middle.y() - across.y()}, colour,
                       gxUITablet::eOverlayLayer);
  }
  tablet.strokeWidth(4.0);
  tablet.drawLineSeg({points[start].x(), points[start].y()},
                     {points[start + 1].x(), points[start + 1].y()}, kGreen, gxUITablet::eImageLayer);
  drawVertexNumbers(tablet, kFigure, by);
  tablet.save(folder + "/repair_start.svg");
}

// Step 2: the walk, its points numbered in the order they are passed.
void drawWalk(const std::string& folder) {
  gxSvgTablet tablet = page(14, 18, 420);
  tablet.title("the walk around the outside");
  const V by(2, 1.5);
  const Points points = moved(kFigure, by);
  const ExposedRegion region(points);
  const gx_OutlineQuestions questions = questionsTo(region);
  const std::size_t start = gx_findStartEdge(points, 0.01 * region.medianFeatureSize(), questions);
  const Points walked = gx_walkOutside(points, start, questions);
  drawOutline(tablet, walked, kBlue, 2.5);
  V previous = walked.back();
  for (const V& p : walked) {
    drawArrow(tablet, previous, p, kBlue, 0.45);
    previous = p;
  }
  std::vector<std::pair<V, std::string>> names;  // a point passed twice carries both numbers
  for (std::size_t i = 0; i < walked.size(); ++i) {
    const auto same = std::find_if(names.begin(), names.end(),
                                   [&](const auto& n) { return n.first.distance(walked[i]) < 1e-6; });
    if (same == names.end()) {
      names.emplace_back(walked[i], std::to_string(i + 1));
    } else {
      same->second += ", " + std::to_string(i + 1);
    }
  }
  for (const auto& [p, name] : names) {
    const V d = p - (by + V(5, 7));
    const bool crossing = name.find(',') != std::string::npos;
    const V side =
        crossing ? V(0.0, -0.9) : V(d.x() * 0.12, d.y() < 0 && d.y() > -4 ? 0.7 : d.y() * 0.1);
    label(tablet, p + side, name, kBlack);
  }
  tablet.save(folder + "/repair_walk.svg");
}

// The body green, the curl to the inside red, the one to the outside blue.
gxColor colourOf(const gxRegion& loop) {
  if (loop.area(false) > 30.0) return kGreen;
  return loop.centerOfMass(false).y() < 8.0 ? kRed : kBlue;
}

// Draws loops a little apart, each towards its own middle.
void drawLoops(gxSvgTablet& tablet, const gx_Loops& loops, const V& by, double gap) {
  for (std::size_t i = 0; i < loops.size(); ++i) {
    const gxRegion loop(loops.outline(i));
    const V middle = loop.centerOfMass(false);
    Points drawn;
    for (const V& p : loop.points()) drawn.push_back(by + p + (middle - p).unit() * gap);
    drawOutline(tablet, drawn, colourOf(loop), 2.5);
  }
}

// Steps 3 to 5: cutting, dropping, joining, side by side.
void drawLoopSteps(const std::string& folder) {
  gxSvgTablet tablet = page(42, 19.5, 900);
  tablet.title("cutting, dropping, joining");
  gxRegion walked;
  gxRegion(kFigure).regularize(walked);
  gx_Loops loops({walked.points()});
  loops.cutAtPinchPoints();
  drawLoops(tablet, loops, V(2, 1.5), 0.15);
  label(tablet, V(7, 18.5), "cut at pinch points: " + std::to_string(loops.size()) + " loops", kBlack,
        15);
  loops.dropInnerLoops(insideOf);
  drawLoops(tablet, loops, V(16, 1.5), 0.15);
  label(tablet, V(21, 18.5), "inner loops dropped: " + std::to_string(loops.size()), kBlack, 15);
  loops.joinTouchingLoops();
  drawLoops(tablet, loops, V(30, 1.5), 0.0);
  label(tablet, V(35, 18.5), "touching loops joined: " + std::to_string(loops.size()), kBlack, 15);
  tablet.save(folder + "/repair_loops.svg");
}

// Before and after of one outline, scaled into a panel of 10 by 10.
void drawPanel(gxSvgTablet& tablet, const Points& figure, const Points& points, const V& by,
               const gxColor& colour) {
  const gxRect box = gxContour(figure).encloseRect(gxXform<2>::I);
  const double scale = 9.0 / std::max(box.size().x(), box.size().y());
  Points drawn;
  const V rest = (V(9.0, 9.0) - V(box.size().x(), box.size().y()) * scale) * 0.5;
  for (const V& p : points) drawn.push_back(by + rest + (p - box.origin()) * scale);
  drawOutline(tablet, drawn, colour, 1.2);
}

void drawTangled(const std::string& folder, const std::string& path,
                 const std::vector<std::string>& names) {
  const std::vector<FiledShape> shapes = filedShapes(path);
  const double height = 11.0 * static_cast<double>(names.size()) + 1.0;
  gxSvgTablet tablet = page(33, height, 900);
  tablet.title("tangled outlines before and after");
  const char* const heads[] = {"as given", "regularize", "outerHull"};
  for (int i = 0; i < 3; ++i) label(tablet, V(5 + 11 * i, height - 0.5), heads[i], kBlack, 15);
  double y = height - 11.0;
  for (const std::string& name : names) {
    const auto shape = std::find_if(shapes.begin(), shapes.end(),
                                    [&name](const FiledShape& s) { return s.name == name; });
    if (shape == shapes.end()) continue;
    const gxRegion region(shape->outline);
    drawPanel(tablet, shape->outline, shape->outline, V(0.5, y), kBlack);
    for (const bool hull : {false, true}) {
      const V by(hull ? 22.5 : 11.5, y);
      drawPanel(tablet, shape->outline, shape->outline, by, kGrey);
      gxRegion result;
      try {
        hull ? region.outerHull(result) : region.regularize(result);
        drawPanel(tablet, shape->outline, result.points(), by, hull ? kGreen : kBlue);
      } catch (const gxContourDefs::BadParams&) {
        label(tablet, by + V(4.5, 4.5), "invalid contour", kRed, 15);
      }
    }
    label(tablet, V(5, y - 0.35), shape->operation, kBlack, 11);
    y -= 11.0;
  }
  tablet.save(folder + "/repair_tangled.svg");
}

// ---- The four rules -------------------------------------------------------------------------------

// Where a shape of a box goes in a panel of 10 by 10.
class Panel {
 public:
  Panel(const Points& figure, const V& by)
      : box_(gxContour(figure).encloseRect(gxXform<2>::I)), by_(by) {
    scale_ = 9.0 / std::max(box_.size().x(), box_.size().y());
    rest_ = (V(9.0, 9.0) - V(box_.size().x(), box_.size().y()) * scale_) * 0.5;
  }
  V at(const V& p) const { return by_ + rest_ + (p - box_.origin()) * scale_; }
  Points of(const Points& points) const {
    Points result;
    for (const V& p : points) result.push_back(at(p));
    return result;
  }

 private:
  gxRect box_;
  V by_;
  double scale_;
  V rest_;
};

// Hatches what rings that do not cross each other enclose.
void hatch(gxSvgTablet& tablet, const std::vector<Points>& rings, const gxColor& colour) {
  constexpr double kStep = 0.16;
  gx_Box box;
  for (const Points& ring : rings) {
    for (const V& p : ring) box.add(p);
  }
  tablet.strokeWidth(1.0);
  for (double y = std::ceil(box.lowY / kStep) * kStep + 1e-7; y < box.highY; y += kStep) {
    std::vector<double> passes;
    for (const Points& ring : rings) {
      for (std::size_t i = 0; i < ring.size(); ++i) {
        const V& a = ring[i];
        const V& b = ring[(i + 1) % ring.size()];
        if ((a.y() > y) != (b.y() > y))
          passes.push_back(a.x() + (b.x() - a.x()) * ((y - a.y()) / (b.y() - a.y())));
      }
    }
    std::sort(passes.begin(), passes.end());
    for (std::size_t i = 0; i + 1 < passes.size(); i += 2)
      tablet.drawLineSeg({passes[i], y}, {passes[i + 1], y}, colour, gxUITablet::eImageLayer);
  }
}

void drawRule(gxSvgTablet& tablet, const Points& figure, gxFillRule rule, const V& by) {
  const Panel panel(figure, by);
  const gxRepaired repaired = gfRepair(gxRegion(figure), rule);
  std::vector<Points> rings;
  for (const auto& region : repaired.regions.regions()) {
    rings.push_back(panel.of(region->points()));
    drawOutline(tablet, rings.back(), kBlue, 1.2);
    for (const auto& hole : region->holes()) {
      rings.push_back(panel.of(hole->points()));
      drawOutline(tablet, rings.back(), kRed, 1.2);
    }
  }
  hatch(tablet, rings, gxColor(150, 185, 235));
  const gxRepairReport& report = repaired.report;
  const std::string parts = std::to_string(report.regions) +
                            (report.regions == 1 ? " region, " : " regions, ") +
                            std::to_string(report.holes) + (report.holes == 1 ? " hole" : " holes");
  label(tablet, by + V(4.5, -0.8), parts, kBlack, 11);
}

// Eight outlines, each as it came and by the four rules.
void drawRules(const std::string& folder, const std::string& path) {
  const char* const names[] = {"tangled-002", "tangled-048", "tangled-027", "tangled-043",
                               "tangled-036", "tangled-017", "tangled-024", "tangled-040"};
  const std::vector<FiledShape> shapes = filedShapes(path);
  const double height = 8 * 11.4 + 1.2;
  gxSvgTablet tablet = page(55, height, 1000);
  tablet.title("tangled outlines by four rules");
  const std::pair<const char*, gxFillRule> rules[] = {{"even-odd", gxFillRule::eEvenOdd},
                                                      {"non-zero", gxFillRule::eNonZero},
                                                      {"positive", gxFillRule::ePositive},
                                                      {"outer", gxFillRule::eOuter}};
  label(tablet, V(5, height - 0.6), "as it came", kBlack, 15);
  for (int i = 0; i < 4; ++i) label(tablet, V(16 + 11 * i, height - 0.6), rules[i].first, kBlack, 15);
  double y = height - 11.0;
  for (const char* const name : names) {
    const auto shape = std::find_if(shapes.begin(), shapes.end(),
                                    [name](const FiledShape& s) { return s.name == name; });
    if (shape == shapes.end()) continue;
    drawPanel(tablet, shape->outline, shape->outline, V(0.5, y), kBlack);
    label(tablet, V(5, y - 0.8), shape->operation, kBlack, 11);
    for (int i = 0; i < 4; ++i) drawRule(tablet, shape->outline, rules[i].second, V(11.5 + 11 * i, y));
    y -= 11.4;
  }
  tablet.save(folder + "/repair_rules.svg");
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) {
    std::cerr << "usage: repair_pictures FOLDER [examples/data/tangled/tangled.jsonl [NAME...]]\n";
    return 2;
  }
  const std::string folder = arguments[1];
  drawStart(folder);
  drawWalk(folder);
  drawLoopSteps(folder);
  const std::string path = count > 2 ? arguments[2] : "examples/data/tangled/tangled.jsonl";
  std::vector<std::string> names(arguments + std::min(count, 3), arguments + count);
  if (names.empty()) names = {"tangled-002", "tangled-024", "tangled-040"};
  drawTangled(folder, path, names);
  drawRules(folder, path);
  return 0;
}
