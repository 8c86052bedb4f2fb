// The mask of an inspection: the field of view less what must not be looked at, each with a band around it,
// and of that what lies on the part.

#include <overlay/overlay.h>

#include <cstdio>

namespace {

gxRegion rectangle(double left, double low, double right, double high) {
  return gxRegion(std::vector<gxVector<2>>{{left, low}, {right, low}, {right, high}, {left, high}});
}

double areaOf(const gxRegionSet& set) {
  return set.area(true);
}

}  // namespace

int main() {
  const gxRegion field = rectangle(0, 0, 640, 480);
  const std::vector<gxRegion> keepOuts{rectangle(100, 100, 140, 140), rectangle(600, 0, 640, 480)};
  const gxRegionSet part = gfRegionsOf(rectangle(50, 50, 590, 430), {rectangle(300, 200, 340, 240)});

  gxOffsetForm sharp;
  sharp.join = gxJoin::eMitre;
  const gxRegionSet grown = gfOffset(keepOuts, 10, sharp);
  const gxRegionSet seen = gfDifference(field, grown);
  const gxRegionSet mask = gfIntersection(seen, part);

  std::printf("keep-outs, grown by 10: %g\n", areaOf(grown));
  std::printf("left of the field: %g of %g\n", areaOf(seen), field.area(false));
  std::printf("mask: %g, in %zu region with %zu holes\n", areaOf(mask), mask.regions().size(),
              mask.regions()[0]->holes().size());
  std::printf("the part holds the mask: %s; the mask touches the keep-outs: %s\n",
              gfContains(part, mask) ? "yes" : "no", gfTouches(mask, grown) ? "yes" : "no");
  std::printf("share of the part: %.4f\n", gfOverlapRatio(mask, part));
  std::printf("problems of the mask: %zu\n", gfCheck(mask).size());

  const gxRegion tangled(std::vector<gxVector<2>>{{0, 0}, {0, 3}, {6, 0}, {6, 6}});
  for (const gxProblem& problem : gfCheck(tangled)) std::printf("%s\n", problem.sentence.c_str());
  std::printf("repaired: %zu regions, area %g\n", gfRepair(tangled).report.regions,
              gfRepair(tangled).report.areaAfter);
}
