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

gxCircle circleFrom(const gx_CircleOfMode::Circle& circle) {
  return gxCircle({circle[0], circle[1]}, circle[2]);
}

// The memory of a mode, null where there is none yet, as of every mode that there is not.
const gx_CircleOfMode* memoryOf(const gx_ContourMemory& memory, gxContourDefs::DiameterMode mode) {
  if (mode == gxContourDefs::eFirstPoint) return &memory.aroundFirst;
  return mode == gxContourDefs::eAllPairs ? memory.ofFarthestPair.get() : nullptr;
}

}  // namespace

gxCircle gxContour::encloseCircle(gxContourDefs::DiameterMode mode) const {
  const gx_CircleOfMode* memory = memoryOf(state_.memory, mode);
  gx_CircleOfMode::Circle known{};
  if (memory != nullptr && memory->now.get(known)) return circleFrom(known);
  gxBudget unlimited;
  return encloseCircle(mode, unlimited);
}

gxCircle gxContour::encloseCircle(gxContourDefs::DiameterMode mode, gxBudget& budget) const {
  if (mode != gxContourDefs::eFirstPoint && mode != gxContourDefs::eAllPairs) {
    throw gxContourDefs::BadParams(L"diameterMode is not one of the valid enums");
  }
  const gx_CircleOfMode& memory = mode == gxContourDefs::eFirstPoint
                                      ? state_.memory.aroundFirst
                                      : state_.memory.ofFarthestPair.made();
  gx_CircleOfMode::Circle known{};
  if (memory.now.get(known)) return circleFrom(known);
  gx_countComputation(gx_Computation::eEncloseCircle);
  gxCircle circle = circleFrom(memory.before);
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
  memory.now.set({circle.center().x(), circle.center().y(), circle.radius()});
  return circle;
}

double gxContour::radiusAroundFirst_() const {
  double radius = 0.0;
  if (state_.memory.aroundFirst.now.get<2>(radius)) return radius;
  return encloseCircle(gxContourDefs::eFirstPoint).radius();
}

double gxContour::diameter(gxContourDefs::DiameterMode mode) const {
  return 2.0 * encloseCircle(mode).radius();
}
