// What a problem is called and how it is told.
#include <overlay/internal/check/problem_text.h>

#include <velstd/number_text.h>

namespace {

using K = gxProblemKind;

std::string edgesOn(const gxProblem& p, bool ofSet) {
  const std::string first = gx_ringName(p.rings[0], p.regions[0], ofSet);
  const std::string second = gx_ringName(p.rings[1], p.regions[1], ofSet);
  const std::string one = std::to_string(p.edges[0]);
  const std::string two = std::to_string(p.edges[1]);
  if (p.rings[0] == p.rings[1] && p.regions[0] == p.regions[1]) {
    return "edges " + one + " and " + two + " of " + first;
  }
  return "edge " + one + " of " + first + " and edge " + two + " of " + second;
}

}  // namespace

std::string gx_textOf(const gxVector<2>& point) {
  return "(" + gfNumberText(point.x()) + ", " + gfNumberText(point.y()) + ")";
}

std::string gx_ringName(long ring, long region, bool ofSet) {
  const std::string name = ring < 0 ? "the outline" : "hole " + std::to_string(ring);
  return ofSet ? name + " of region " + std::to_string(region) : name;
}

std::string gx_sentenceOf(const gxProblem& p, const gx_ProblemDetail& detail) {
  const bool ofSet = detail.ofSet;
  const std::string ring = gx_ringName(p.rings[0], p.regions[0], ofSet);
  const std::string other = gx_ringName(p.rings[1], p.regions[1], ofSet);
  const std::string place = gx_textOf(p.point);
  const std::string number = std::to_string(p.edges[0]);
  switch (p.kind) {
    case K::eNotFinite: return "point " + number + " of " + ring + " is not finite: " + place;
    case K::eTooFewPoints: return ring + " has fewer than 3 different points";
    case K::eRepeatedPoint:
      return "point " + number + " of " + ring + " repeats the one before it, " + place;
    case K::eSpike: return edgesOn(p, ofSet) + " go back over each other from " + place;
    case K::eCrossing:
    case K::eHoleCrossesHole: return edgesOn(p, ofSet) + " cross at " + place;
    case K::eTouching: return edgesOn(p, ofSet) + " touch at " + place;
    case K::eOverlap:
      return edgesOn(p, ofSet) + " lie on each other from " + place + " to " + gx_textOf(detail.end);
    case K::eZeroArea: return ring + " has no area: all its points lie on one line";
    case K::eWrongWayRound:
      return ring + (detail.direction < 0 ? " runs clockwise" : " runs counter-clockwise");
    case K::eHoleOutside: return ring + " lies outside " + other;
    case K::eNestedWrongly: return ring + " lies inside " + other;
  }
  return "";
}

std::string gfName(gxProblemKind kind) {
  switch (kind) {
    case K::eNotFinite: return "not_finite";
    case K::eTooFewPoints: return "too_few_points";
    case K::eRepeatedPoint: return "repeated_point";
    case K::eSpike: return "spike";
    case K::eCrossing: return "crossing";
    case K::eTouching: return "touching";
    case K::eOverlap: return "overlap";
    case K::eZeroArea: return "zero_area";
    case K::eWrongWayRound: return "wrong_way_round";
    case K::eHoleOutside: return "hole_outside";
    case K::eHoleCrossesHole: return "hole_crosses_hole";
    case K::eNestedWrongly: return "nested_wrongly";
  }
  return "unknown";
}
