// What users of the repair meet: a fold, sets of overlapping outlines, another start vertex.
//
//   repair_pitfalls tests/data examples/data/tangled/tangled.jsonl     prints the first tables of docs/repair.md
//
// Areas are divided by those of the union of everything the outlines go around, by polyclipping.
#include "union_area.h"

#include <cntr/region.h>
#include <cntr/regionst.h>
#include <overlay/boolean.h>
#include <overlay/repair.h>
#include <support/outline_files.h>
#include <support/random_shapes.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Handle = gxPtrHandle_const<gxRegion>;

enum class Repair { eRegularize, eOuterHull, eByRule };

const char* nameOf(Repair repair) {
  return repair == Repair::eRegularize  ? "regularize"
         : repair == Repair::eOuterHull ? "outerHull"
                                        : "by rule";
}

// The area of the repaired outline, none where the repair refuses it.  By rule: even-odd, as the area of a simple
// outline is.
std::optional<double> repairedArea(const Points& points, Repair repair) {
  const gxRegion region(points);
  if (repair == Repair::eByRule) return gfRepair(region).report.areaAfter;
  gxRegion result;
  try {
    repair == Repair::eOuterHull ? region.outerHull(result) : region.regularize(result);
  } catch (const gxContourDefs::BadParams&) {
    return std::nullopt;
  }
  return result.points().size() < 3 ? 0.0 : result.area(false);
}

double share(long part, long all) {
  return all == 0 ? std::nan("") : 100.0 * static_cast<double>(part) / static_cast<double>(all);
}

// ---- One fold -------------------------------------------------------------------------------------

double sizeOf(const Points& points) {
  const gxRect box = gxContour(points).encloseRect(gxXform<2>::I);
  return std::max(box.size().x(), box.size().y());
}

// How an outline folds at a vertex: run past it along the edge that leads to it, and back over that to as far
// before it; or run back, away from the next vertex, before going on to that, straight over the vertex.
enum class Fold { eRunPast, eRunBack };

Points folded(const Points& points, std::size_t k, double length, Fold fold) {
  const std::size_t n = points.size();
  Points result(points.begin(), points.begin() + static_cast<std::ptrdiff_t>(k) + 1);
  if (fold == Fold::eRunPast) {
    const V& from = points[(k + n - 1) % n];
    const V along = (points[k] - from).unit();
    result.push_back(points[k] + along * length);
    result.push_back(points[k] - along * std::min(length, 0.5 * points[k].distance(from)));
  } else {
    result.push_back(points[k] - (points[(k + 1) % n] - points[k]).unit() * length);
  }
  result.insert(result.end(), points.begin() + static_cast<std::ptrdiff_t>(k) + 1, points.end());
  return result;
}

struct Folds {
  long outlines = 0;
  long right = 0;    // the area is that of the outline to 1 %
  long nothing = 0;  // below 1 % of it
  long refused = 0;

  void add(const Points& points, std::size_t k, Fold kind, Repair repair) {
    if (points.size() < 3 || gxContour(points).isSelfIntersecting()) return;
    const Points fold = folded(points, k, sizeOf(points) * 1e-3, kind);
    ++outlines;
    const std::optional<double> area = repairedArea(fold, repair);
    if (!area) {
      ++refused;
      return;
    }
    const double ratio = *area / gxRegion(points).area(false);
    if (std::abs(ratio - 1.0) <= 0.01) ++right;
    if (ratio < 0.01) ++nothing;
  }
  void print(const std::string& title, Fold kind, const char* repair) const {
    std::printf("| %s | %ld | %s | %s | %.1f %% | %.1f %% | %.1f %% | %.1f %% |\n", title.c_str(),
                outlines, kind == Fold::eRunPast ? "run past" : "run back", repair,
                share(nothing, outlines), share(refused, outlines),
                share(outlines - right - nothing - refused, outlines), share(right, outlines));
  }
};

void reportFolds(const std::string& title, const std::vector<Points>& outlines, Fold kind,
                 Repair repair) {
  RandomShapes random("folds of " + title, 1);
  random.next();
  Folds folds;
  for (const Points& points : outlines) {
    if (points.size() < 3) continue;
    const int k = random.integer(0, static_cast<int>(points.size()) - 1);
    folds.add(points, static_cast<std::size_t>(k), kind, repair);
  }
  folds.print(title, kind, nameOf(repair));
}

void reportFolds(const std::string& title, const std::vector<Points>& outlines) {
  for (const Fold kind : {Fold::eRunPast, Fold::eRunBack}) {
    for (const Repair repair : {Repair::eRegularize, Repair::eOuterHull, Repair::eByRule})
      reportFolds(title, outlines, kind, repair);
  }
}

std::vector<Points> outlinesOf(const std::string& path) {
  std::vector<Points> result;
  for (const FiledShape& shape : filedShapes(path)) result.push_back(shape.outline);
  return result;
}

std::vector<Points> stars(int count, int points) {
  RandomShapes random("stars", 1);
  random.next();
  std::vector<Points> result;
  for (int i = 0; i < count; ++i) result.push_back(random.star(points, V(0, 0), 5.0, 10.0));
  return result;
}

void foldTable(const std::string& data) {
  std::puts(
      "\n| Simple outlines with one fold of a thousandth of their size | outlines | the vertex is | "
      "repair "
      "| nothing left (below 1 %) | invalid contour | something else | the outline's area to 1 % "
      "|\n|---|---|---|---|---|---|---|---|");
  reportFolds("coins", outlinesOf(data + "/coins/outlines.jsonl"));
  reportFolds("countries", outlinesOf(data + "/countries/countries_110m.jsonl"));
  reportFolds("glyphs", outlinesOf(data + "/glyphs/glyphs.jsonl"));
  reportFolds("stars of 12 points", stars(2000, 12));
  reportFolds("stars of 100 points", stars(500, 100));
}

// ---- Sets -----------------------------------------------------------------------------------------

Points regular(const V& centre, double radius, int count, double phase) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double t = phase + 6.283185307179586 * i / count;
    points.emplace_back(centre.x() + radius * std::cos(t), centre.y() + radius * std::sin(t));
  }
  return points;
}

// An upright bar, 10 by 1 or 1 by 10 units, moved by whole ones, so that sides lie on each other.
Points uprightBar(RandomShapes& random) {
  const bool tall = random.chance(0.5);
  const double x = random.integer(0, 9);
  const double y = random.integer(0, 9);
  const double w = tall ? 1.0 : 10.0;
  const double h = tall ? 10.0 : 1.0;
  return {{x, y}, {x + w, y}, {x + w, y + h}, {x, y + h}};
}

Points turnedBar(RandomShapes& random) {
  const double t = random.uniform(0.0, 3.14159);
  const V along(std::cos(t) * 5.0, std::sin(t) * 5.0);
  const V across(-std::sin(t) * 0.5, std::cos(t) * 0.5);
  const V middle(random.uniform(-3.0, 3.0), random.uniform(-3.0, 3.0));
  return {middle - along - across, middle + along - across, middle + along + across,
          middle - along + across};
}

// Outlines each of which crosses one before it.
Outlines overlapping(RandomShapes& random, int count, const std::function<Points(RandomShapes&)>& make) {
  Outlines result;
  for (int tries = 0; static_cast<int>(result.size()) < count && tries < 10000; ++tries) {
    const Points next = make(random);
    const gxContour contour(next);
    if (result.empty() || std::any_of(result.begin(), result.end(), [&](const Points& other) {
          return !gxContour(other).intersections(contour).empty();
        })) {
      result.push_back(next);
    }
  }
  return result;
}

void reportSets(const char* title, const std::function<Points(RandomShapes&)>& make) {
  for (const int count : {2, 3, 5, 10}) {
    RandomShapes random(std::string(title) + std::to_string(count), 500);
    long sets = 0;
    long refused = 0;
    long meets = 0;
    long right = 0;
    long united = 0;
    std::vector<double> ratios;
    while (random.next()) {
      const Outlines outlines = overlapping(random, count, make);
      std::vector<Handle> regions;
      for (const Points& points : outlines) regions.push_back(Handle(new gxRegion(points)));
      ++sets;
      const double whole = unionArea(outlines);
      const gxRegionSet byRule = gfRepair(gxRegionSet(regions), gxFillRule::eNonZero).regions;
      double ruled = 0.0;
      for (const Handle& region : byRule.regions()) {
        ruled += region->area(false);
        for (const Handle& hole : region->holes()) ruled -= hole->area(false);
      }
      if (std::abs(ruled / whole - 1.0) <= 1e-9) ++united;
      gxRegionSet result;
      try {
        gxRegionSet(regions).regularize(result);
      } catch (const gxContourDefs::BadParams&) {
        ++refused;
        continue;
      }
      double area = 0.0;
      for (const Handle& region : result.regions())
        area += region->points().size() < 3 ? 0.0 : region->area(false);
      ratios.push_back(area / whole);
      if (std::abs(ratios.back() - 1.0) <= 0.01) ++right;
      if (result.isSelfIntersecting()) ++meets;
    }
    std::sort(ratios.begin(), ratios.end());
    const auto quantile = [&ratios](double q) {
      return ratios.empty()
                 ? std::nan("")
                 : ratios[static_cast<std::size_t>(q * static_cast<double>(ratios.size() - 1) + 0.5)];
    };
    std::printf("| %s | %d | %ld | %.1f %% | %.1f %% | %.2f | %.2f | %.2f | %.1f %% | %.1f %% |\n",
                title, count, sets, share(refused, sets), share(meets, sets - refused), quantile(0.1),
                quantile(0.5), quantile(0.9), share(right, sets), share(united, sets));
  }
}

void setTable() {
  std::puts(
      "\n| Overlapping outlines | in a set | sets | refused | still meet | area, 10th percentile | "
      "median | 90th "
      "| the union's area to 1 %, of all sets | by rule: to 1e-9 "
      "|\n|---|---|---|---|---|---|---|---|---|---|");
  reportSets("discs of 32 corners", [](RandomShapes& random) {
    return regular(V(random.uniform(-2.0, 2.0), random.uniform(-2.0, 2.0)), random.uniform(0.5, 1.5), 32,
                   random.uniform(0.0, 1.0));
  });
  reportSets("stars of 12 points", [](RandomShapes& random) {
    return random.star(12, V(random.uniform(-2.0, 2.0), random.uniform(-2.0, 2.0)), 0.8, 1.5);
  });
  reportSets("bars 10 by 1, turned", turnedBar);
  reportSets("bars 10 by 1, upright, on whole numbers", uprightBar);
}

// ---- Another form of the same outline -------------------------------------------------------------------

bool differ(const std::optional<double>& a, const std::optional<double>& b) {
  if (a.has_value() != b.has_value()) return true;
  return a && std::abs(*a - *b) > 1e-6 * std::max(std::abs(*a), std::abs(*b));
}

Points halved(const Points& points) {
  Points result;
  for (std::size_t i = 0; i < points.size(); ++i) {
    result.push_back(points[i]);
    result.push_back((points[i] + points[(i + 1) % points.size()]) * 0.5);
  }
  return result;
}

void reportForms(const char* title, const std::vector<Points>& outlines, Repair repair) {
  long all = 0;
  long started = 0;
  long middled = 0;
  long repeated = 0;
  long turned = 0;
  for (const Points& points : outlines) {
    if (points.size() < 3 || !gxContour(points).isSelfIntersecting()) continue;
    ++all;
    const std::optional<double> area = repairedArea(points, repair);
    const std::size_t n = points.size();
    if (differ(area, repairedArea(rotatedStart(points, n / 2), repair))) ++started;
    if (differ(area, repairedArea(halved(points), repair))) ++middled;
    Points twice = points;
    twice.insert(twice.begin() + static_cast<std::ptrdiff_t>(n / 2), points[n / 2]);
    if (differ(area, repairedArea(twice, repair))) ++repeated;
    if (differ(area, repairedArea(reversed(points), repair))) ++turned;
  }
  std::printf("| %s | %ld | %s | %.1f %% | %.1f %% | %.1f %% | %.1f %% |\n", title, all, nameOf(repair),
              share(started, all), share(middled, all), share(repeated, all), share(turned, all));
}

void reportForms(const char* title, const std::vector<Points>& outlines) {
  for (const Repair repair : {Repair::eRegularize, Repair::eByRule})
    reportForms(title, outlines, repair);
}

std::vector<Points> crossing(const char* title, int count,
                             const std::function<Points(RandomShapes&)>& make) {
  RandomShapes random(title, 1);
  random.next();
  std::vector<Points> result;
  while (static_cast<int>(result.size()) < count) {
    const Points points = make(random);
    if (gxContour(points).isSelfIntersecting()) result.push_back(points);
  }
  return result;
}

Points shaken(RandomShapes& random, int count) {
  Points points = regular(V(0, 0), 10.0, count, 0.0);
  const double off = 1.5 * 6.283185307179586 * 10.0 / count;
  for (V& p : points) p = p + V(random.uniform(-off, off), random.uniform(-off, off));
  return points;
}

void formTable(const std::string& tangled) {
  std::puts(
      "\n| Outlines that cross themselves | outlines | repair | begun at the middle vertex | every edge "
      "halved | "
      "one vertex "
      "repeated | walked the other way |\n|---|---|---|---|---|---|---|");
  reportForms("examples/data/tangled", outlinesOf(tangled));
  reportForms("points of a shaken circle, 20",
              crossing("shaken 20", 1000, [](RandomShapes& r) { return shaken(r, 20); }));
  reportForms("points anywhere, 6", crossing("anywhere 6", 1000, [](RandomShapes& r) {
                return r.outline(OutlineKind::eCloud, 6);
              }));
  reportForms("points anywhere, 20", crossing("anywhere 20", 1000, [](RandomShapes& r) {
                return r.outline(OutlineKind::eCloud, 20);
              }));
}

// ---- By hand ------------------------------------------------------------------------------------------

double setArea(const Outlines& outlines) {
  std::vector<Handle> regions;
  for (const Points& points : outlines) regions.push_back(Handle(new gxRegion(points)));
  gxRegionSet result;
  gxRegionSet(regions).regularize(result);
  return result.area(false);
}

void byHand() {
  const Points fold{{10, 5}, {10, 7}, {10, 3}, {0, 0}, {40, 4}};
  std::printf("\none fold: area %g, repaired %g\n", gxRegion(fold).area(false),
              repairedArea(fold, Repair::eRegularize).value_or(-1));
  const Outlines bars{{{0, 0}, {5, 0}, {5, 1}, {0, 1}}, {{2, -2}, {3, -2}, {3, 3}, {2, 3}}};
  std::printf("two crossing bars of area 5: union %g, repaired %g\n", unionArea(bars), setArea(bars));
  const Outlines squares{{{0, 0}, {2, 0}, {2, 2}, {0, 2}}, {{1, 1}, {3, 1}, {3, 3}, {1, 3}}};
  std::printf("two shifted squares of area 4: union %g, repaired %g\n", unionArea(squares),
              setArea(squares));
  const Outlines level{{{0, 0}, {2, 0}, {2, 2}, {0, 2}}, {{1, 0}, {3, 0}, {3, 2}, {1, 2}}};
  try {
    std::printf("two squares shifted along a side: union %g, repaired %g\n", unionArea(level),
                setArea(level));
  } catch (const gxContourDefs::BadParams& refused) {
    std::printf("two squares shifted along a side: union %g, refused: %s\n", unionArea(level),
                refused.what());
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) {
    std::cerr << "usage: repair_pitfalls tests/data examples/data/tangled/tangled.jsonl\n";
    return 2;
  }
  byHand();
  foldTable(arguments[1]);
  setTable();
  formTable(arguments[2]);
  return 0;
}
