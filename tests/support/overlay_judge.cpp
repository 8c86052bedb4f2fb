#include <support/overlay_judge.h>

#include <support/quad.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <numeric>
#include <sstream>

namespace judge {

namespace {

using V = gxVector<2>;

bool same(const V& a, const V& b) {
  return a.x() == b.x() && a.y() == b.y();
}

bool before(const V& a, const V& b) {
  return a.x() != b.x() ? a.x() < b.x() : a.y() < b.y();
}

bool within(const V& p, const V& a, const V& b) {
  return p.x() >= std::min(a.x(), b.x()) && p.x() <= std::max(a.x(), b.x()) &&
         p.y() >= std::min(a.y(), b.y()) && p.y() <= std::max(a.y(), b.y());
}

// ---- Regions as conditions ----------------------------------------------------------------------

using Condition = std::function<bool(const std::vector<int>&)>;

bool byRule(Rule rule, int winding) {
  if (rule == Rule::eEvenOdd) return winding % 2 != 0;
  if (rule == Rule::ePositive) return winding > 0;
  return winding != 0;
}

// A hole takes away what it holds itself, and it holds less than its outline where it has islands.  Its
// direction says nothing: by "positive" a hole counts where it winds at all.
Condition conditionOf(const slow::Region& region, Rule rule, Rings& rings) {
  const std::size_t at = rings.size();
  rings.push_back(region.outline);
  std::vector<Condition> holes;
  const Rule holeRule = rule == Rule::ePositive ? Rule::eNonZero : rule;
  for (const slow::Region& hole : region.holes) holes.push_back(conditionOf(hole, holeRule, rings));
  return [at, rule, holes](const std::vector<int>& windings) {
    return byRule(rule, windings[at]) &&
           std::none_of(holes.begin(), holes.end(), [&](const Condition& h) { return h(windings); });
  };
}

Condition conditionOf(const slow::Set& set, Rule rule, Rings& rings) {
  std::vector<Condition> regions;
  for (const slow::Region& region : set) regions.push_back(conditionOf(region, rule, rings));
  return [regions](const std::vector<int>& windings) {
    return std::any_of(regions.begin(), regions.end(), [&](const Condition& r) { return r(windings); });
  };
}

}  // namespace

Question combined(const std::vector<slow::Set>& operands, Rule rule, const Combination& combination) {
  Question question;
  std::vector<Condition> held;
  for (const slow::Set& operand : operands) held.push_back(conditionOf(operand, rule, question.rings));
  question.holds = [held, combination](const std::vector<int>& windings) {
    std::vector<bool> who;
    for (const Condition& operand : held) who.push_back(operand(windings));
    return combination(who);
  };
  return question;
}

Question repaired(const slow::Set& shape, Rule rule) {
  Question question = combined({shape}, rule, [](const std::vector<bool>& held) { return held[0]; });
  question.outer = rule == Rule::eOuter;
  return question;
}

Question walked(const Rings& walks, const std::function<bool(int winding)>& holds) {
  const auto sum = [holds](const std::vector<int>& w) {
    return holds(std::accumulate(w.begin(), w.end(), 0));
  };
  return {walks, sum, false};
}

// ---- Single points ------------------------------------------------------------------------------

int windingOf(const Ring& ring, const V& point, bool& onBorder) {
  int winding = 0;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const V& a = ring[i];
    const V& b = ring[(i + 1) % ring.size()];
    const int side = gx_Orientation(a, b, point);
    if (side == 0 && within(point, a, b)) {
      onBorder = true;
      return 0;
    }
    if (a.y() <= point.y() && b.y() > point.y() && side > 0) ++winding;
    if (a.y() > point.y() && b.y() <= point.y() && side < 0) --winding;
  }
  return winding;
}

bool holdsPoint(const Question& question, const V& point, bool& onBorder) {
  std::vector<int> windings;
  for (const Ring& ring : question.rings) windings.push_back(windingOf(ring, point, onBorder));
  return question.holds(windings);
}

bool setHolds(const slow::Set& set, const V& point, bool& onBorder) {
  bool held = false;
  for (const slow::Region& region : set) {
    bool in = windingOf(region.outline, point, onBorder) != 0;
    for (const slow::Region& hole : region.holes) {
      in = windingOf(hole.outline, point, onBorder) == 0 && in;
    }
    held = held || in;
  }
  return held;
}

double clearance(const Rings& rings, const V& point) {
  double least = std::numeric_limits<double>::infinity();
  for (const Ring& ring : rings) {
    for (std::size_t i = 0; i < ring.size(); ++i) {
      const V& a = ring[i];
      const V& b = ring[(i + 1) % ring.size()];
      const double dx = b.x() - a.x();
      const double dy = b.y() - a.y();
      const double length = std::hypot(dx, dy);
      double t = length > 0 ? (point.x() - a.x()) / length * (dx / length) +
                                  (point.y() - a.y()) / length * (dy / length)
                            : 0.0;
      t = std::clamp(t, 0.0, 1.0);
      least = std::min(least, std::hypot(a.x() + t * dx - point.x(), a.y() + t * dy - point.y()));
    }
  }
  return least;
}

// ---- Validity -----------------------------------------------------------------------------------

namespace {

struct Edge {
  const V* a;
  const V* b;
  std::size_t ring;
};

std::string at(const V& p) {
  std::ostringstream out;
  out.precision(17);
  out << '(' << p.x() << ", " << p.y() << ')';
  return out.str();
}

std::string ringFault(const Ring& ring) {
  if (ring.size() < 3) return "a ring of fewer than 3 points";
  Ring sorted = ring;
  for (const V& p : ring) {
    if (!std::isfinite(p.x()) || !std::isfinite(p.y())) return "a point that is not finite";
  }
  std::sort(sorted.begin(), sorted.end(), before);
  const auto twice = std::adjacent_find(sorted.begin(), sorted.end(), same);
  return twice == sorted.end() ? "" : "a ring passes " + at(*twice) + " twice";
}

bool strictlyInside(const V& p, const V& a, const V& b) {
  return within(p, a, b) && !same(p, a) && !same(p, b) && gx_Orientation(a, b, p) == 0;
}

std::string pairFault(const Edge& e, const Edge& f) {
  const V& a = *e.a;
  const V& b = *e.b;
  const V& c = *f.a;
  const V& d = *f.b;
  if (std::max(a.x(), b.x()) < std::min(c.x(), d.x()) ||
      std::max(c.x(), d.x()) < std::min(a.x(), b.x()) ||
      std::max(a.y(), b.y()) < std::min(c.y(), d.y()) ||
      std::max(c.y(), d.y()) < std::min(a.y(), b.y())) {
    return "";
  }
  const auto both = [&] { return at(a) + "-" + at(b) + " and " + at(c) + "-" + at(d); };
  if ((same(a, c) && same(b, d)) || (same(a, d) && same(b, c))) return "an edge twice: " + both();
  if (strictlyInside(a, c, d) || strictlyInside(b, c, d) || strictlyInside(c, a, b) ||
      strictlyInside(d, a, b)) {
    return "an end on an edge: " + both();
  }
  const int ca = gx_Orientation(c, d, a);
  const int cb = gx_Orientation(c, d, b);
  const int ac = gx_Orientation(a, b, c);
  const int ad = gx_Orientation(a, b, d);
  return ca * cb < 0 && ac * ad < 0 ? "edges cross: " + both() : "";
}

std::string edgesFault(const Rings& rings) {
  std::vector<Edge> edges;
  for (std::size_t r = 0; r < rings.size(); ++r) {
    for (std::size_t i = 0; i < rings[r].size(); ++i) {
      edges.push_back({&rings[r][i], &rings[r][(i + 1) % rings[r].size()], r});
    }
  }
  for (std::size_t i = 0; i < edges.size(); ++i) {
    for (std::size_t j = i + 1; j < edges.size(); ++j) {
      const std::string fault = pairFault(edges[i], edges[j]);
      if (!fault.empty()) return fault;
    }
  }
  return "";
}

// The direction of a ring that passes no point twice: the turn at its first vertex by x, then y.
int directionOf(const Ring& ring) {
  const auto first =
      static_cast<std::size_t>(std::min_element(ring.begin(), ring.end(), before) - ring.begin());
  const std::size_t n = ring.size();
  return gx_Orientation(ring[(first + n - 1) % n], ring[first], ring[(first + 1) % n]);
}

// Tells whether the ray from v towards q begins on the left of the bend prev, v, next.
bool inSector(const V& prev, const V& v, const V& next, const V& q) {
  const bool leftOfIn = gx_Orientation(prev, v, q) > 0;
  const bool leftOfOut = gx_Orientation(v, next, q) > 0;
  return gx_Orientation(prev, v, next) >= 0 ? leftOfIn && leftOfOut : leftOfIn || leftOfOut;
}

// Tells whether an edge that leaves the other ring's vertex v towards q does so into its inside.
bool leavesInto(const Ring& outer, const V& v, const V& q) {
  const auto here = std::find_if(outer.begin(), outer.end(), [&](const V& p) { return same(p, v); });
  const auto i = static_cast<std::size_t>(here - outer.begin());
  const std::size_t n = outer.size();
  const V& prev = outer[(i + n - 1) % n];
  const V& next = outer[(i + 1) % n];
  return directionOf(outer) > 0 ? inSector(prev, v, next, q) : inSector(next, v, prev, q);
}

enum class Side : int { eInside, eOutside, eBoth };

// Tells on which side of another ring, which it may touch at vertices, a ring lies: by every vertex off
// that ring, and by both edges at every vertex on it, as rings may change sides at a vertex.
Side sideOf(const Ring& inner, const Ring& outer) {
  bool inside = false;
  bool outside = false;
  const std::size_t n = inner.size();
  for (std::size_t i = 0; i < n; ++i) {
    bool onBorder = false;
    const bool in = windingOf(outer, inner[i], onBorder) != 0;
    const bool before = onBorder ? leavesInto(outer, inner[i], inner[(i + n - 1) % n]) : in;
    const bool after = onBorder ? leavesInto(outer, inner[i], inner[(i + 1) % n]) : in;
    inside = inside || before || after;
    outside = outside || !before || !after;
  }
  if (inside && outside) return Side::eBoth;
  return inside ? Side::eInside : Side::eOutside;
}

bool ringInRing(const Ring& inner, const Ring& outer) {
  return sideOf(inner, outer) == Side::eInside;
}

std::string sidesFault(const Rings& rings) {
  for (const Ring& a : rings) {
    for (const Ring& b : rings) {
      if (&a != &b && sideOf(a, b) == Side::eBoth) return "rings cross at a point";
    }
  }
  return "";
}

// The rings of a region and the points where they touch make a graph; its interior is in one piece
// exactly when there is no way around in it.
bool interiorConnected(const Rings& rings) {
  std::map<std::pair<double, double>, std::vector<std::size_t>> passing;
  for (std::size_t r = 0; r < rings.size(); ++r) {
    for (const V& p : rings[r]) passing[{p.x() + 0.0, p.y() + 0.0}].push_back(r);
  }
  std::vector<std::size_t> root(rings.size());
  std::iota(root.begin(), root.end(), std::size_t{0});
  const std::function<std::size_t(std::size_t)> find = [&](std::size_t i) {
    while (root[i] != i) i = root[i];
    return i;
  };
  for (const auto& [point, who] : passing) {
    for (std::size_t k = 1; k < who.size(); ++k) {
      const std::size_t a = find(who[0]);
      const std::size_t b = find(who[k]);
      if (a == b) return false;
      root[a] = b;
    }
  }
  return true;
}

std::string regionFault(const slow::Region& region) {
  if (directionOf(region.outline) <= 0) return "an outline that is not counter-clockwise";
  for (const slow::Region& hole : region.holes) {
    if (directionOf(hole.outline) >= 0) return "a hole that is not clockwise";
    if (!ringInRing(hole.outline, region.outline)) return "a hole outside its outline";
    for (const slow::Region& other : region.holes) {
      if (&other != &hole && ringInRing(hole.outline, other.outline)) return "a hole in a hole";
    }
  }
  return interiorConnected(ringsOf({region})) ? "" : "a region whose interior is in parts";
}

std::string nestingFault(const slow::Region& inner, const slow::Region& outer) {
  if (!ringInRing(inner.outline, outer.outline)) return "";
  for (const slow::Region& hole : outer.holes) {
    if (ringInRing(inner.outline, hole.outline)) return "";
  }
  return "a region inside another";
}

}  // namespace

std::string faultOf(const slow::Set& result) {
  for (const slow::Region& region : result) {
    for (const slow::Region& hole : region.holes) {
      if (!hole.holes.empty()) return "a hole with holes";
    }
  }
  const Rings rings = ringsOf(result);
  for (const Ring& ring : rings) {
    const std::string fault = ringFault(ring);
    if (!fault.empty()) return fault;
  }
  std::string fault = edgesFault(rings);
  if (fault.empty()) fault = sidesFault(rings);
  for (const slow::Region& region : result) {
    if (fault.empty()) fault = regionFault(region);
    for (const slow::Region& other : result) {
      if (fault.empty() && &other != &region) fault = nestingFault(region, other);
    }
  }
  return fault;
}

namespace {

bool ringBefore(const Ring& a, const Ring& b) {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), before);
}

bool beginsFirst(const Ring& ring) {
  return same(*std::min_element(ring.begin(), ring.end(), before), ring.front());
}

}  // namespace

std::string disorderOf(const slow::Set& result) {
  for (const Ring& ring : ringsOf(result)) {
    if (!beginsFirst(ring)) return "a ring that does not begin at its first vertex";
  }
  const auto order = [](const slow::Region& a, const slow::Region& b) {
    return ringBefore(a.outline, b.outline);
  };
  if (!std::is_sorted(result.begin(), result.end(), order)) return "regions out of order";
  for (const slow::Region& region : result) {
    if (!std::is_sorted(region.holes.begin(), region.holes.end(), order)) return "holes out of order";
  }
  return "";
}

namespace {

// Coordinates relative to the first point keep the digits of small shapes far from the origin.
Quad signedArea(const Ring& ring) {
  Quad sum = 0;
  const Quad x0 = ring.empty() ? 0 : ring[0].x();
  const Quad y0 = ring.empty() ? 0 : ring[0].y();
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const V& a = ring[i];
    const V& b = ring[(i + 1) % ring.size()];
    sum += (static_cast<Quad>(a.x()) - x0) * (static_cast<Quad>(b.y()) - y0) -
           (static_cast<Quad>(b.x()) - x0) * (static_cast<Quad>(a.y()) - y0);
  }
  return sum / 2;
}

}  // namespace

double areaOf(const slow::Set& result) {
  Quad sum = 0;
  for (const Ring& ring : ringsOf(result)) sum += signedArea(ring);
  return static_cast<double>(sum);
}

double lengthOf(const Rings& rings) {
  double sum = 0;
  for (const Ring& ring : rings) {
    for (std::size_t i = 0; i < ring.size(); ++i) {
      const V& a = ring[i];
      const V& b = ring[(i + 1) % ring.size()];
      sum += std::hypot(b.x() - a.x(), b.y() - a.y());
    }
  }
  return sum;
}

namespace {

void addRings(const slow::Region& region, Rings& rings) {
  rings.push_back(region.outline);
  for (const slow::Region& hole : region.holes) addRings(hole, rings);
}

}  // namespace

Rings ringsOf(const slow::Set& set) {
  Rings rings;
  for (const slow::Region& region : set) addRings(region, rings);
  return rings;
}

double ulpOf(const Rings& rings) {
  double most = 0;
  for (const Ring& ring : rings) {
    for (const V& p : ring) most = std::max({most, std::fabs(p.x()), std::fabs(p.y())});
  }
  return std::nextafter(most, HUGE_VAL) - most;
}

}  // namespace judge
