// The circle of a contour, in two modes, and the diameter.
//
// All pairs: look at every ordered pair, first index outer; a distance strictly above the best so
// far makes a new circle of that pair.  The slot is not reset first: where no two points are apart
// it keeps what it held, the default circle or the circle of earlier points.  First point: the
// radius is the largest distance from vertex 0; without points there is nothing to read, and the
// slot is returned as it stands.
//
// The pair of more than a handful is found through the edge index (internal/search/farthest_pair), and is the
// very one of that scan; the distance of a pair is the same both ways, so it is asked for once.
#include <cntr/contour.h>
#include <cntr/internal/memory/computation_count.h>
#include <cntr/internal/outline/break_even.h>
#include <cntr/internal/search/farthest_pair.h>

#include <cmath>

namespace {

void circleOf(const std::vector<gxVector<2>>& points, const gx_Pair& pair, gxCircle& circle) {
  if (!(pair.distance > 0.0)) return;
  circle = gxCircle((points[pair.i] + points[pair.j]) * 0.5, pair.distance * 0.5);
}

gx_Pair farthestOfFew(const std::vector<gxVector<2>>& points) {
  gx_Pair best;
  for (std::size_t i = 0; i < points.size(); ++i) {
    for (std::size_t j = i + 1; j < points.size(); ++j) {
      const double distance = points[i].distance(points[j]);
      if (distance > best.distance) best = {i, j, distance};
    }
  }
  return best;
}

// The square of the largest distance from the first point, plainly; NaN is passed over.
double largestSquare(const std::vector<gxVector<2>>& points) {
  const gxVector<2> first = points.front();
  const auto larger = [&first](const gxVector<2>& p, double largest) {
    const gxVector<2> d = first - p;
    const double square = d * d;
    return square > largest ? square : largest;
  };
  double odd = 0.0;  // every other point each, which halves the waiting for the last result
  double even = 0.0;
  std::size_t i = 1;
  for (; i + 2 <= points.size(); i += 2) {
    odd = larger(points[i], odd);
    even = larger(points[i + 1], even);
  }
  if (i < points.size()) odd = larger(points[i], odd);
  return even > odd ? even : odd;
}

// The root of the largest square is the largest root, wherever a distance is the plain root of the sum
// of squares; smaller ones that are not do not matter.
void circleAroundFirst(const std::vector<gxVector<2>>& points, gxCircle& circle) {
  constexpr double kSmallestSafeSquare = 1e-270;  // inside the range in which gxVector<2>::len is
  constexpr double kLargestSafeSquare = 1e290;    // the plain root
  if (points.empty()) return;
  const double square = largestSquare(points);
  double radius = 0.0;
  if (square >= kSmallestSafeSquare && square <= kLargestSafeSquare) {
    radius = std::sqrt(square);
  } else {
    for (const gxVector<2>& p : points) {
      const double distance = points.front().distance(p);
      if (distance > radius) radius = distance;
    }
  }
  circle = gxCircle(points.front(), radius);
}

bool isKnown(const gx_ContourMemory& memory, gxContourDefs::DiameterMode mode,
             gx_ContourMemory::Circle& circle) {
  const auto slot = static_cast<unsigned>(mode);
  return slot < memory.encloseCircles.size() && memory.encloseCircles[slot].get(circle);
}

}  // namespace

gxCircle gxContour::encloseCircle(gxContourDefs::DiameterMode mode) const {
  gx_ContourMemory::Circle known{};
  if (isKnown(state_.memory, mode, known)) return gxCircle({known[0], known[1]}, known[2]);
  gxBudget unlimited;
  return encloseCircle(mode, unlimited);
}

gxCircle gxContour::encloseCircle(gxContourDefs::DiameterMode mode, gxBudget& budget) const {
  const gx_ContourMemory& memory = state_.memory;
  const auto slot = static_cast<unsigned>(mode);
  if (slot >= memory.encloseCircles.size()) {
    throw gxContourDefs::BadParams(L"diameterMode is not one of the valid enums");
  }
  gx_ContourMemory::Circle known{};
  if (isKnown(memory, mode, known)) return gxCircle({known[0], known[1]}, known[2]);
  gx_countComputation(gx_Computation::eEncloseCircle);
  const gx_ContourMemory::Circle& before = memory.circlesBefore[slot];
  gxCircle circle({before[0], before[1]}, before[2]);
  const std::vector<gxVector<2>>& points = state_.points;
  if (mode == gxContourDefs::eAllPairs && indexPays_()) {
    circleOf(points, gx_farthestPair(edgeIndex_(), outline_(), budget), circle);
  } else if (mode == gxContourDefs::eAllPairs && points.size() <= gx_kFewFarthest) {
    circleOf(points, farthestOfFew(points), circle);
  } else if (mode == gxContourDefs::eAllPairs) {
    // For few points a temporary index is cheaper than a cached one.
    const gx_EdgeIndex index(outline_());
    circleOf(points, gx_farthestPair(index, outline_(), budget), circle);
  } else {
    circleAroundFirst(points, circle);
  }
  memory.encloseCircles[slot].set({circle.center().x(), circle.center().y(), circle.radius()});
  return circle;
}

double gxContour::radiusAroundFirst_() const {
  double radius = 0.0;
  if (state_.memory.encloseCircles[gxContourDefs::eFirstPoint].get<2>(radius)) return radius;
  return encloseCircle(gxContourDefs::eFirstPoint).radius();
}

double gxContour::diameter(gxContourDefs::DiameterMode mode) const {
  return 2.0 * encloseCircle(mode).radius();
}
