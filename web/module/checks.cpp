// What is wrong with a shape, its repairs, and its deviation from another.
#include "binding.h"

#include <gauge/deviation.h>
#include <gauge/hausdorff.h>
#include <overlay/check.h>
#include <overlay/repair.h>
#include <velstd/budget.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace {

using Kind = gxRecord::Kind;

// The shape as a set, whatever its kind; lines and points have no area.
gxRegionSet setOf(const gxwebShape& shape) {
  if (!shape.isArea()) return gxRegionSet();
  gxRecord copy = shape.record;
  copy.kind = Kind::eSet;
  return copy.toSet();
}

void take(const gxRegionSet& set, gxwebShape& result) {
  result.record.assign(set);
  if (result.record.partCount() <= 1) result.record.kind = Kind::eRegion;
  result.record.dropEmptyRing();
}

// The borders as places number them: of each region the outline, then its holes.
gxBorders bordersOf(const gxRecord& record) {
  std::vector<gxBorders::Ring> rings;
  for (std::size_t i = 0; i < record.ringCount(); ++i)
    rings.push_back({record.ring(i), record.kind != Kind::eOpen});
  return gxBorders(std::move(rings));
}

void addPair(const std::array<long, 2>& pair, gxwebAnswer& answer) {
  answer.add(static_cast<double>(pair[0]));
  answer.add(static_cast<double>(pair[1]));
}

}  // namespace

/// Answers whether nothing is wrong and then, of each problem up to so many, its kind, point, edges, rings and
/// regions; the text has a line for each: the kind's word, a blank, the sentence.
GXWEB_API int gxweb_check(gxwebShape* shape, std::size_t atMost) {
  return gfAnswered([&](gxwebAnswer& answer) {
    gxCheckOptions how;
    how.anyDirection = true;  // files and hands draw either way
    how.atMost = atMost;
    std::vector<gxProblem> problems;
    if (shape->isArea())
      problems = shape->isSet() ? gfCheck(shape->record.toSet(), how) : gfCheck(shape->region(), how);
    const auto& points = shape->record.points;
    const bool finite = std::all_of(points.begin(), points.end(), [](const auto& p) {
      return std::isfinite(p.x()) && std::isfinite(p.y());
    });
    answer.add(problems.empty() && finite ? 1.0 : 0.0);
    for (const auto& problem : problems) {
      answer.add(static_cast<double>(problem.kind));
      answer.add(problem.point);
      addPair(problem.edges, answer);
      addPair(problem.rings, answer);
      addPair(problem.regions, answer);
      answer.text += gfName(problem.kind) + ' ' + problem.sentence + '\n';
    }
  });
}

/// Makes the regions that the shape encloses by rule; the report: area before and after, regions, holes, rings
/// dropped, rings snapped, largest move.
GXWEB_API gxwebShape* gxweb_repair(const gxwebShape* shape, int rule) {
  return gfMade([&](gxwebShape& result) {
    const gxRepaired repaired = gfRepair(setOf(*shape), static_cast<gxFillRule>(rule));
    take(repaired.regions, result);
    const gxRepairReport& r = repaired.report;
    result.numbers = {r.areaBefore, r.areaAfter};
    for (const std::size_t count : {r.regions, r.holes, r.ringsDropped, r.ringsSnapped})
      result.numbers.push_back(static_cast<double>(count));
    result.numbers.push_back(r.largestMove);
  });
}

/// Makes the described repairs of a region: 0 the outside of the figure, walked around; 1 the same cut to a
/// single loop.  `steps` bounds the work.
GXWEB_API gxwebShape* gxweb_walk(gxwebShape* shape, int which, double steps) {
  return gfMade([&](gxwebShape& result) {
    if (!shape->isArea() || shape->isSet())
      throw std::invalid_argument("regularized and outer_hull: a region is wanted");
    gxBudget budget(steps < 0x1p63 ? static_cast<std::uint64_t>(steps) : gxBudget::kUnlimited);
    gxRegion repaired;
    if (which == 0)
      shape->region().regularize(repaired, budget);
    else
      shape->region().outerHull(repaired, budget);
    result.record.assign(repaired);
  });
}

/// Answers how far the shape is from the golden one: Hausdorff distance, that of the shape, that back, the
/// largest and the least deviation, its root mean square, the share that is out of tolerance, the status; then
/// for each sample ring, edge, t, x, y and deviation.
GXWEB_API int gxweb_compare(const gxwebShape* shape, const gxwebShape* golden, double tolerance,
                            double step) {
  return gfAnswered([&](gxwebAnswer& answer) {
    const gxBorders here = bordersOf(shape->record);
    const gxBorders there = bordersOf(golden->record);
    gxDeviationOptions how;
    how.spacing = step;
    how.lower = -tolerance;
    how.upper = tolerance;
    const gxHausdorff h = gfHausdorff(here, there);
    const gxDeviation d = gfDeviation(here, there, how);
    for (const double number : {h.hausdorff, h.hausdorffForward, h.hausdorffBack, d.deviationMax,
                                d.deviationMin, d.deviationRms, d.outOfTolerance})
      answer.add(number);
    answer.add(h.status == gxStatus::eOk ? d.status : h.status);
    for (const auto& sample : d.samples) {
      answer.add(sample.place);
      answer.add(sample.deviation);
    }
  });
}
