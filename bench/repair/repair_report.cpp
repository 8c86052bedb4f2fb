// What the repair of outlines that cross themselves gives, beside the non-zero union of a peer.
//
//   repair_report examples/data/tangled/tangled.jsonl      prints the tables of docs/repair.md
//
// For every outline that crosses or touches itself: whether a repair comes out; whether it still
// crosses itself (isSelfIntersecting); whether its ring is simple to GEOS, to which a point passed
// twice is not; and its area divided by that of the union of everything the outline goes around,
// the non-zero fill of polyclipping.  "By rule" is gfRepair with the non-zero rule; all its rings are looked at.
#include "union_area.h"

#include <cntr/region.h>
#include <overlay/repair.h>
#include <support/exposed.h>
#include <support/outline_files.h>
#include <support/random_shapes.h>

#include <geos_c.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

bool isSimpleRing(GEOSContextHandle_t geos, const Points& points) {
  const auto count = static_cast<unsigned>(points.size());
  GEOSCoordSequence* sequence = GEOSCoordSeq_create_r(geos, count + 1, 2);
  for (unsigned i = 0; i <= count; ++i)
    GEOSCoordSeq_setXY_r(geos, sequence, i, points[i % count].x(), points[i % count].y());
  GEOSGeometry* ring = GEOSGeom_createLinearRing_r(geos, sequence);
  if (ring == nullptr) return false;
  const bool simple = GEOSisSimple_r(geos, ring) == 1;
  GEOSGeom_destroy_r(geos, ring);
  return simple;
}

// What one repair gave on many outlines.
struct Outcome {
  long invalid = 0;
  long uncrossed = 0;
  long simple = 0;
  std::vector<double> areas;

  double quantile(double q) const {
    if (areas.empty()) return std::nan("");
    return areas[static_cast<std::size_t>(q * static_cast<double>(areas.size() - 1) + 0.5)];
  }
  double within(double tolerance) const {
    const auto near = std::count_if(areas.begin(), areas.end(),
                                    [=](double a) { return std::abs(a - 1.0) <= tolerance; });
    return areas.empty() ? std::nan("")
                         : 100.0 * static_cast<double>(near) / static_cast<double>(areas.size());
  }
};

struct Group {
  long outlines = 0;
  Outcome repairs[3];  // regularize, outerHull, by rule

  void add(GEOSContextHandle_t geos, const Points& points) {
    const gxRegion region(points);
    if (points.size() < 3 || !region.isSelfIntersecting()) return;
    ++outlines;
    const double whole = unionArea({points});
    for (const bool hull : {false, true}) {
      Outcome& outcome = repairs[hull ? 1 : 0];
      gxRegion result;
      try {
        hull ? region.outerHull(result) : region.regularize(result);
      } catch (const gxContourDefs::BadParams&) {
        ++outcome.invalid;
        continue;
      }
      if (!result.isSelfIntersecting()) ++outcome.uncrossed;
      if (isSimpleRing(geos, result.points())) ++outcome.simple;
      outcome.areas.push_back((result.points().size() < 3 ? 0.0 : result.area(false)) / whole);
    }
    addByRule(geos, region, whole);
  }

  void addByRule(GEOSContextHandle_t geos, const gxRegion& region, double whole) {
    Outcome& outcome = repairs[2];
    const gxRepaired repaired = gfRepair(region, gxFillRule::eNonZero);
    bool crosses = false;
    bool simple = true;
    for (const auto& part : repaired.regions.regions()) {
      crosses = crosses || part->isSelfIntersecting();
      simple = simple && isSimpleRing(geos, part->points());
      for (const auto& hole : part->holes()) {
        crosses = crosses || hole->isSelfIntersecting();
        simple = simple && isSimpleRing(geos, hole->points());
      }
    }
    if (!crosses) ++outcome.uncrossed;
    if (simple) ++outcome.simple;
    outcome.areas.push_back(whole > 0.0 ? repaired.report.areaAfter / whole : 1.0);
  }

  void print(const std::string& title) {
    if (outlines == 0) return;
    const char* const names[] = {"regularize", "outerHull", "by rule"};
    for (int i = 0; i < 3; ++i) {
      Outcome& o = repairs[i];
      std::sort(o.areas.begin(), o.areas.end());
      const auto share = [](long part, std::size_t all) {
        return all == 0 ? std::nan("") : 100.0 * static_cast<double>(part) / static_cast<double>(all);
      };
      std::printf("| %s | %ld | %s | %.1f %% | %.1f %% | %.1f %% | %.2f | %.2f | %.2f | %.1f %% |\n",
                  title.c_str(), outlines, names[i],
                  share(o.invalid, static_cast<std::size_t>(outlines)),
                  share(o.uncrossed, o.areas.size()), share(o.simple, o.areas.size()), o.quantile(0.1),
                  o.quantile(0.5), o.quantile(0.9), o.within(0.01));
    }
  }
};

void head(const char* what) {
  std::printf(
      "\n| %s | outlines | repair | invalid contour | crosses itself no more | simple ring | area, 10th "
      "percentile | "
      "median | 90th | area within 1 %% |\n|---|---|---|---|---|---|---|---|---|---|\n",
      what);
}

void tangled(GEOSContextHandle_t geos, const std::string& path) {
  head("Made by");
  std::vector<std::pair<std::string, Group>> groups;
  Group all;
  for (const FiledShape& shape : filedShapes(path)) {
    const std::string kind = shape.operation.substr(0, shape.operation.find_first_of("-0123456789,"));
    auto group =
        std::find_if(groups.begin(), groups.end(), [&kind](const auto& g) { return g.first == kind; });
    if (group == groups.end()) group = groups.insert(group, {kind, Group()});
    group->second.add(geos, shape.outline);
    all.add(geos, shape.outline);
  }
  for (auto& [kind, group] : groups) group.print(kind);
  all.print("all");
}

void random(GEOSContextHandle_t geos, const char* what, bool star) {
  head(what);
  for (const int count : {4, 5, 6, 8, 10, 15, 20, 30, 50, 100, 200}) {
    RandomShapes source(std::string(what) + std::to_string(count), count <= 30 ? 2000 : 100);
    Group group;
    while (source.next()) {
      Points points;
      for (int i = 0; i < 200 && (points.size() < 3 || !gxContour(points).isSelfIntersecting()); ++i) {
        points = source.outline(OutlineKind::eCloud, count);
        if (!star) continue;
        points.clear();  // a circle whose vertices are off by up to 1.5 edge lengths in each coordinate
        const double off = 1.5 * 6.283185307179586 * 10.0 / count;
        for (int k = 0; k < count; ++k) {
          const double t = 6.283185307179586 * k / count;
          points.emplace_back(10 * std::cos(t) + source.uniform(-off, off),
                              10 * std::sin(t) + source.uniform(-off, off));
        }
      }
      group.add(geos, points);
    }
    group.print(std::to_string(count));
  }
}

// Kinds on which exact coincidences are the rule: repeated points, edges on each other, vertices on edges.
void kinds(GEOSContextHandle_t geos) {
  head("Of a kind");
  const std::pair<OutlineKind, const char*> all[] = {
      {OutlineKind::eWalk, "random walk, 30 points"},
      {OutlineKind::eLattice, "whole numbers, 12 points"},
      {OutlineKind::eRepeated, "star with repeated points"},
      {OutlineKind::eTolerance, "on a grid of the tolerance"},
  };
  for (const auto& [kind, title] : all) {
    RandomShapes source(title, 2000);
    Group group;
    while (source.next()) {
      Points points;
      for (int i = 0; i < 200 && (points.size() < 3 || !gxContour(points).isSelfIntersecting()); ++i)
        points = source.outline(kind, kind == OutlineKind::eWalk ? 30 : 12);
      group.add(geos, points);
    }
    group.print(title);
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: repair_report examples/data/tangled/tangled.jsonl\n";
    return 2;
  }
  GEOSContextHandle_t geos = GEOS_init_r();
  tangled(geos, arguments[1]);
  random(geos, "Points anywhere in a square", false);
  random(geos, "Points of a shaken circle", true);
  kinds(geos);
  GEOS_finish_r(geos);
  return 0;
}
