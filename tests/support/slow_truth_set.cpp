// Region sets, the slow and plain way.
#include <support/slow_truth_set.h>

#include <cmath>
#include <limits>

namespace slow {

namespace {

void checkSet(const Set& set) {
  if (set.empty()) throw gxContourDefs::EmptyRegionSet();
}

Outline outlineOf(const Region& region) {
  return {region.outline, true};
}

}  // namespace

double area(const Set& set, bool considerHoles) {
  double sum = 0.0;
  for (const Region& region : set) sum += area(region, considerHoles);
  return sum;
}

gxVector<2> centerOfMass(const Set& set, bool considerHoles) {
  checkSet(set);
  gxVector<2> sum(0.0, 0.0);
  double total = 0.0;
  for (const Region& region : set) {
    const double a = area(region, considerHoles);
    sum = sum + centerOfMass(region, considerHoles) * a;
    total += a;
  }
  if (!(std::abs(total) > 1e-15)) return {0.0, 0.0};
  return sum / total;
}

gxMatrix<2> inertiaMatrix(const Set& set, bool considerHoles) {
  checkSet(set);
  Moments sum;
  for (const Region& region : set) {
    Moments moments;
    moments.matrix = inertiaMatrix(region, considerHoles);
    moments.center = centerOfMass(region, considerHoles);
    moments.area = area(region, considerHoles);
    sum = add(sum, moments);
  }
  return sum.matrix;
}

bool inside(const Set& set, const gxVector<2>& point, bool considerHoles) {
  for (const Region& region : set) {
    if (inside(region, point, considerHoles)) return true;
  }
  return false;
}

double distToPoint(const Set& set, const gxVector<2>& point, bool vertexOnly, bool considerHoles,
                   bool insideIsZero) {
  checkSet(set);
  double best = std::numeric_limits<double>::infinity();
  for (const Region& region : set) {
    const double distance = distToPoint(region, point, vertexOnly, considerHoles, insideIsZero);
    if (best > distance) best = distance;
  }
  return best;
}

gxRect encloseRect(const Set& set, const gxXform<2>& xform) {
  checkSet(set);
  gxRect rect = encloseRect(set[0].outline, xform);
  for (std::size_t i = 1; i < set.size(); ++i) rect = rect.enclose(encloseRect(set[i].outline, xform));
  return rect;
}

bool isSelfIntersecting(const Set& set) {
  bool crossing = false;
  for (const Region& region : set) {
    if (isSelfIntersecting(outlineOf(region))) crossing = true;
  }
  for (std::size_t i = 0; i < set.size(); ++i) {
    for (std::size_t j = i + 1; j < set.size(); ++j) {
      if (!intersections(outlineOf(set[i]), outlineOf(set[j])).empty()) return true;
    }
  }
  return crossing;
}

Set merged(const Set& set) {
  Set work = set;
  for (std::size_t i = 0; i + 1 < work.size(); ++i) {
    for (std::size_t j = i + 1; j < work.size(); ++j) {  // on with j + 1 after a merge too
      if (intersections(work[i], outlineOf(work[j]), false).empty()) continue;
      work[i] = Region{splice(work[i].outline, work[j].outline), {}};
      work[j] = work.back();
      work.pop_back();
    }
  }
  return work;
}

Set regularize(const Set& set) {
  if (!isSelfIntersecting(set)) return set;
  Set result;
  for (const Region& region : merged(set)) result.push_back(regularize(region));
  return result;
}

Set outerHull(const Set& set) {
  if (!isSelfIntersecting(set)) return set;
  Set result;
  for (const Region& region : merged(set)) result.push_back(outerHull(region));
  return result;
}

}  // namespace slow
