// Roundness.
//
// Minimum zone: max |p − c| − min |p − c| over all centres c.
//
//   1. At a minimum two points are farthest and two are nearest, interlaced around c (Rivlin).  So c lies on
//      an edge of the Voronoi diagram: on the bisector of two points a, b that make a Delaunay edge, between
//      the centres of the circles of the two triangles, or out to infinity where there is but one.
//   2. Along that edge the farthest point changes from corner to corner of the hull, each being the farthest
//      on one interval, as the cells of the farthest Voronoi diagram are convex.  Two corners p, q that are
//      the farthest at the ends of an interval are equally far at one place between, the root of a
//      linear equation; a third one that is farther there splits the interval.
//   3. The zone is computed at all places at which the farthest point changes, and at the ends.  Towards
//      infinity it tends to the width of the hull across a hull edge: the least of these is the strip
//      that the zone is compared with.
//
// All edges are looked at, so the minimum is global.  An edge is passed over where the zone of 32 of the
// points, which no zone of all is less than, is too wide already.  Descending from the least squares
// centre was not taken: points that are not nearly on a circle have several minima.
//
// Maximum inscribed: of the circles of the Delaunay triangles, which hold no point, the largest whose centre
// lies in the hull.
#include <gauge/enclosing.h>
#include <gauge/form.h>
#include <gauge/internal/delaunay.h>
#include <gauge/internal/fit_shapes.h>
#include <gauge/internal/frame.h>
#include <velstd/convex_hull.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <ostream>

namespace {

using Points = std::vector<gxVector<2>>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kSame = 1e-13;                       // of lengths in a frame of size 1 to 2
constexpr std::uint64_t kMostDistances = 1500000000;  // some two seconds

// The centre of the circle through three points; far away where they are nearly on a line.
gxVector<2> circumcentre(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c) {
  const gxVector<2> u = b - a;
  const gxVector<2> v = c - a;
  const double twice = 2.0 * gf_Cross(u, v);
  return a + gxVector<2>((v.y() * (u * u) - u.y() * (v * v)) / twice,
                         (u.x() * (v * v) - v.x() * (u * u)) / twice);
}

bool isLower(const gxVector<2>& a, const gxVector<2>& b) {
  return a.x() < b.x() || (a.x() == b.x() && a.y() < b.y());
}

// The points in a frame, with what several references need.
struct Profile {
  explicit Profile(std::span<const gxVector<2>> source) : frame(source) {
    points.reserve(source.size());
    for (const gxVector<2>& p : source) points.push_back(frame.to(p));
    gfConvexHull(points, hull);
  }

  gx_Frame frame;
  Points points;
  Points hull;
};

class MinimumZone {
 public:
  explicit MinimumZone(const Profile& profile) : points_(profile.points), hull_(profile.hull) {
    const std::size_t step = points_.size() / 32 + 1;
    for (std::size_t i = 0; i < points_.size(); i += step) few_.push_back(points_[i]);
  }

  void run(const gxVector<2>& start) {
    best_ = zoneAt(start);
    centre_ = start;
    for (const gx_DelaunayEdge& edge : gx_delaunay(points_)) {
      walk(edge);
      if (spent_ > kMostDistances) {
        capped_ = true;
        break;
      }
    }
  }

  double zone() const { return best_; }
  double strip() const { return strip_; }
  const gxVector<2>& centre() const { return centre_; }
  bool isCapped() const { return capped_; }

 private:
  const gxVector<2>& at(long i) const { return points_[static_cast<std::size_t>(i)]; }

  double zoneAt(const gxVector<2>& c) {
    double outer = 0.0;
    double inner = kInfinity;
    for (const gxVector<2>& p : hull_) outer = std::max(outer, (p - c) * (p - c));
    for (const gxVector<2>& p : points_) inner = std::min(inner, (p - c) * (p - c));
    spent_ += points_.size() + hull_.size();
    return (outer - inner) / (std::sqrt(outer) + std::sqrt(inner));
  }

  double zoneOfFew(const gxVector<2>& c) const {
    double outer = 0.0;
    double inner = kInfinity;
    for (const gxVector<2>& p : few_) {
      const double square = (p - c) * (p - c);
      outer = std::max(outer, square);
      inner = std::min(inner, square);
    }
    return (outer - inner) / (std::sqrt(outer) + std::sqrt(inner));
  }

  // Of places with the same zone the lowest.  The start is no such place: it is a bound, and gives way to
  // any that is as good, or its rounding would decide.
  void consider(const gxVector<2>& c, double zone) {
    const bool isTie = zone <= best_ + kSame && (isStart_ || isLower(c, centre_));
    if (!(zone < best_ - kSame) && !isTie) return;
    best_ = std::min(best_, zone);
    centre_ = c;
    isStart_ = false;
  }

  // A place on the bisector m + s v of a and b, the farthest corner there, or far out.
  struct Stop {
    double s;
    const gxVector<2>* farthest;
  };

  const gxVector<2>* farthestAt(const gxVector<2>& m, const gxVector<2>& v, double s) {
    spent_ += hull_.size();
    const gxVector<2>* best = &hull_[0];
    if (std::isinf(s)) {
      const gxVector<2> out = s > 0.0 ? v : -v;
      for (const gxVector<2>& p : hull_) {
        if ((p - *best) * out < 0.0) best = &p;
      }
      return best;
    }
    const gxVector<2> c = m + v * s;
    for (const gxVector<2>& p : hull_) {
      if ((p - c) * (p - c) > (*best - c) * (*best - c)) best = &p;
    }
    return best;
  }

  void walk(const gx_DelaunayEdge& edge) {
    const gxVector<2>& a = at(edge.a);
    const gxVector<2>& b = at(edge.b);
    const gxVector<2> m = (a + b) * 0.5;
    const gxVector<2> along = (b - a).unit();
    const gxVector<2> v(-along.y(), along.x());
    const auto placeOf = [&](long third, double out) {
      if (third == gx_DelaunayEdge::kNone) return out;
      const double s = (circumcentre(a, b, at(third)) - m) * v;
      return std::isfinite(s) ? s : out;
    };
    const double low = placeOf(edge.right, -kInfinity);
    const double high = placeOf(edge.left, kInfinity);
    if (!(low < high)) {
      if (std::isfinite(low)) offer(m, v, a, low);
      return;
    }
    if (std::isfinite(low) && std::isfinite(high)) {
      const double width = 0.5 * (zoneOfFew(m + v * low) + zoneOfFew(m + v * high)) - (high - low);
      if (width > best_ + kSame) return;
    }
    enumerate(m, v, a, low, high);
  }

  void enumerate(const gxVector<2>& m, const gxVector<2>& v, const gxVector<2>& a, double low,
                 double high) {
    Stop left{low, farthestAt(m, v, low)};
    std::vector<Stop> rights{{high, farthestAt(m, v, high)}};
    offer(m, v, a, left.s);
    while (!rights.empty()) {
      const Stop right = rights.back();
      if (left.farthest != right.farthest) {
        const gxVector<2> p = *left.farthest - m;
        const gxVector<2> q = *right.farthest - m;
        const double s = ((p - q) * (p + q)) / (2.0 * ((p - q) * v));
        if (s > left.s && s < right.s) {
          const gxVector<2>* third = farthestAt(m, v, s);
          const gxVector<2> c = m + v * s;
          const double far = (*third - c) * (*third - c);
          const double same = (*left.farthest - c) * (*left.farthest - c);
          if (third != left.farthest && third != right.farthest && far > same * (1.0 + 1e-14)) {
            rights.push_back({s, third});
            continue;
          }
          offer(m, v, a, s);
        }
      }
      rights.pop_back();
      offer(m, v, a, right.s);
      left = right;
    }
  }

  // Computes the zone at a place of the bisector, where a and b are the nearest points.
  void offer(const gxVector<2>& m, const gxVector<2>& v, const gxVector<2>& a, double s) {
    const gxVector<2>* p = farthestAt(m, v, s);
    if (std::isinf(s)) {
      strip_ = std::min(strip_, std::abs((*p - a) * v));
      return;
    }
    const gxVector<2> c = m + v * s;
    const double outer = (*p - c).len();
    const double inner = (a - c).len();
    // From the difference of squares, which is free of cancellation far out.
    const double zone = ((*p - a) * (*p + a - c * 2.0)) / (outer + inner);
    if (zone <= best_ + kSame) consider(c, zoneAt(c));
  }

  const Points& points_;
  const Points& hull_;
  Points few_;
  double best_ = kInfinity;
  double strip_ = kInfinity;
  gxVector<2> centre_{kInfinity, kInfinity};
  std::uint64_t spent_ = 0;
  bool capped_ = false;
  bool isStart_ = true;  // the centre is the start's
};

// The centres of the empty circles in the hull; the largest, the lowest of equal ones.
class Inscribed {
 public:
  explicit Inscribed(const Profile& profile) : points_(profile.points), hull_(profile.hull) {
    for (const gx_DelaunayEdge& edge : gx_delaunay(points_)) {
      offer(edge.a, edge.b, edge.left);
      offer(edge.a, edge.b, edge.right);
    }
  }

  bool found() const { return radius_ >= 0.0; }
  const gxVector<2>& centre() const { return centre_; }
  bool hasTies() const { return ties_; }

 private:
  const gxVector<2>& at(long i) const { return points_[static_cast<std::size_t>(i)]; }

  bool isInHull(const gxVector<2>& c) const {
    for (std::size_t i = 0; i < hull_.size(); ++i) {
      const gxVector<2> along = (hull_[(i + 1) % hull_.size()] - hull_[i]).unit();
      if (gf_Cross(along, c - hull_[i]) < -kSame) return false;
    }
    return true;
  }

  void offer(long i, long j, long k) {
    if (k == gx_DelaunayEdge::kNone) return;
    const gxVector<2> c = circumcentre(at(i), at(j), at(k));
    const double radius = (c - at(i)).len();
    if (!(radius >= radius_ - kSame) || !isInHull(c)) return;
    const bool same = radius <= radius_ + kSame;
    const bool isApart = found() && (c - centre_).len() > 1e-9;
    if (same && isApart) ties_ = true;
    if (!same) ties_ = false;
    if (same && !isLower(c, centre_)) return;
    radius_ = std::max(radius, radius_);
    centre_ = c;
  }

  const Points& points_;
  const Points& hull_;
  double radius_ = -1.0;
  gxVector<2> centre_;
  bool ties_ = false;
};

// Fills the radii about a centre in the frame, and the points within rounding of them.
void measureAbout(const Profile& profile, const gxVector<2>& centre, std::size_t most,
                  gxRoundness& result) {
  double outer = 0.0;
  double inner = kInfinity;
  for (const gxVector<2>& p : profile.points) {
    outer = std::max(outer, (p - centre).len());
    inner = std::min(inner, (p - centre).len());
  }
  const double slack = 1e-12 + 4.0 * kSame;
  for (std::size_t i = 0; i < profile.points.size(); ++i) {
    const double d = (profile.points[i] - centre).len();
    const auto index = static_cast<long>(i);
    if (d >= outer - slack && result.outerSupports.size() < most) result.outerSupports.push_back(index);
    if (d <= inner + slack && result.innerSupports.size() < most) result.innerSupports.push_back(index);
  }
  result.roundness = profile.frame.lengthFrom(outer - inner);
  result.centre = profile.frame.from(centre);
  result.outerRadius = profile.frame.lengthFrom(outer);
  result.innerRadius = profile.frame.lengthFrom(inner);
}

std::optional<gx_FitCircle> leastSquares(const Profile& profile) {
  if (profile.hull.size() < 3) return std::nullopt;
  const auto start = gx_FitCircle::leastSquares(profile.points);
  if (!start) return std::nullopt;
  const std::vector<double> weights(profile.points.size(), 1.0);
  const auto refined = gx_refined(*start, std::span<const gxVector<2>>(profile.points),
                                  std::span<const double>(weights), 50, nullptr);
  return refined ? refined : start;
}

void fromLeastSquares(const Profile& profile, gxRoundness& result) {
  const auto circle = leastSquares(profile);
  if (!circle) {
    result.status = gxStatus::eUndetermined;
    return;
  }
  measureAbout(profile, circle->centre, 1, result);
  double peak = 0.0;
  double valley = 0.0;
  double squares = 0.0;
  for (const gxVector<2>& p : profile.points) {
    const double e = circle->distance(p);
    peak = std::max(peak, e);
    valley = std::max(valley, -e);
    squares += e * e;
  }
  result.radius = profile.frame.lengthFrom(circle->radius);
  result.peak = profile.frame.lengthFrom(peak);
  result.valley = profile.frame.lengthFrom(valley);
  result.rms = profile.frame.lengthFrom(std::sqrt(squares / static_cast<double>(profile.points.size())));
}

void fromMinimumZone(const Profile& profile, gxRoundness& result) {
  if (profile.hull.size() == 2) {
    result.status = gxStatus::eUnbounded;
    result.roundness = 0.0;
    return;
  }
  if (profile.hull.size() < 2) {
    result.status = gxStatus::eUndetermined;
    return;
  }
  const auto circle = leastSquares(profile);
  MinimumZone zone(profile);
  zone.run(circle ? circle->centre : gxVector<2>());
  if (zone.strip() < zone.zone() - kSame) {
    result.status = gxStatus::eUnbounded;
    result.roundness = profile.frame.lengthFrom(zone.strip());
    return;
  }
  if (zone.isCapped()) result.status = gxStatus::eCapped;
  measureAbout(profile, zone.centre(), 2, result);
}

void fromCircumscribed(const Profile& profile, std::span<const gxVector<2>> source,
                       gxRoundness& result) {
  const gxEnclosingCircle circle = gfEnclosingCircle(source);
  measureAbout(profile, profile.frame.to(circle.centre), 3, result);
  result.outerRadius = circle.radius;
  result.outerSupports.clear();
  for (int i = 0; i < circle.supports; ++i) {
    result.outerSupports.push_back(circle.support[static_cast<std::size_t>(i)]);
  }
  result.innerSupports.resize(1);
  if (profile.hull.size() < 3) result.status = gxStatus::eUndetermined;
}

void fromInscribed(const Profile& profile, gxRoundness& result) {
  if (profile.hull.size() < 3) {
    result.status = gxStatus::eUndetermined;
    return;
  }
  const Inscribed inscribed(profile);
  if (!inscribed.found()) {
    result.status = gxStatus::eUndetermined;
    return;
  }
  measureAbout(profile, inscribed.centre(), 3, result);
  result.outerSupports.resize(1);
  result.ties = inscribed.hasTies();
}

}  // namespace

gxRoundness gfRoundness(std::span<const gxVector<2>> points, gxFormReference reference) {
  gxRoundness result;
  result.reference = reference;
  if (points.empty()) result.status = gxStatus::eEmpty;
  if (!gx_allFinite(points)) result.status = gxStatus::eNotFinite;
  if (result.status != gxStatus::eOk) return result;
  const Profile profile(points);
  switch (reference) {
    case gxFormReference::eLeastSquares: fromLeastSquares(profile, result); break;
    case gxFormReference::eMinimumZone: fromMinimumZone(profile, result); break;
    case gxFormReference::eMinimumCircumscribed: fromCircumscribed(profile, points, result); break;
    case gxFormReference::eMaximumInscribed: fromInscribed(profile, result); break;
    default: result.status = gxStatus::eBadArgument;
  }
  return result;
}

std::ostream& operator<<(std::ostream& out, const gxRoundness& result) {
  return out << "roundness " << result.roundness << ", radii " << result.innerRadius << " to "
             << result.outerRadius << " about (" << result.centre.x() << ", " << result.centre.y()
             << "), " << result.status;
}
