// Where points lie, and what is near them.
//
//  1. Inside or outside, and exactly on the border: the grid of internal/parity_grid, one for each region.
//  2. The nearest edge: the tree of turned boxes that contours use, one for each ring; rings whose box is
//     farther away than the best so far are left out.
//  3. The k nearest, and all within a radius: a tree of upright boxes over all edges of all rings.
//
// A query far outside the range of the shape (where its square would overflow in the shape's scale) is
// answered by looking at all edges in a scale that holds both.
#include <cntr/internal/search/nearest.h>
#include <gauge/internal/locator_data.h>
#include <gauge/internal/segments.h>
#include <gauge/locate.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <utility>

namespace {

using Point = gxVector<2>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Between these sizes squares and products of four are far from both ends of the range.
constexpr double kLargest = 0x1p100;
constexpr double kSmallest = 0x1p-100;
// Up to so many regions of a set are asked one after the other.
constexpr std::size_t kFewRegions = 8;
// Queries farther away are answered by themselves.
constexpr double kFar = 1e120;

bool isFinite(const Point& p) {
  return std::isfinite(p.x()) && std::isfinite(p.y());
}

gxLocation noLocation(gxStatus status) {
  gxLocation result;
  result.status = status;
  return result;
}

gxNearest noNearest(gxStatus status) {
  gxNearest result;
  result.status = status;
  return result;
}

bool before(const gxNearest& a, const gxNearest& b) {
  if (a.distance != b.distance) return a.distance < b.distance;
  if (a.region != b.region) return a.region < b.region;
  return a.place.ring != b.place.ring ? a.place.ring < b.place.ring : a.place.edge < b.place.edge;
}

// The shape alone, without indexes, together with a query: all in one scale.
class Scan {
 public:
  Scan(const std::vector<gx_Ring>& rings, const Point& query) {
    gx_Box box;
    for (const gx_Ring& ring : rings) box.add(gx_boxOf(ring.points));
    box.add(query);
    const gx_Frame frame(box);
    const double unit = frame.lengthFrom(1.0);
    scaled_ = unit > kLargest || unit < kSmallest;
    frame_ = frame;
    query_ = to(query);
    for (const gx_Ring& ring : rings) {
      gx_Ring copy = ring;
      points_.emplace_back();
      for (const Point& p : ring.points) points_.back().push_back(to(p));
      copy.points = points_.back();
      rings_.push_back(copy);
    }
    tree_ = gx_EdgeTree(rings_);
  }

  gxNearest nearest() const {
    gxNearest best = noNearest(gxStatus::eOk);
    gx_Foot bestFoot;
    std::size_t bestEdge = 0;
    double distance = kInfinity;
    for (std::size_t i = 0; i < tree_.edges().size(); ++i) {
      const gx_Edge& e = tree_.edges()[i];
      const gx_Foot foot = gx_footOn(e.a, e.b, query_);
      if (!(foot.distance < distance)) continue;
      distance = foot.distance;
      bestFoot = foot;
      bestEdge = i;
    }
    const gx_Edge& e = tree_.edges()[bestEdge];
    const gx_Ring& ring = rings_[e.ring];
    best.distance = scaled_ ? frame_.lengthFrom(distance) : distance;
    best.region = ring.region;
    best.place = {ring.number, static_cast<long>(e.number), bestFoot.t, from(bestFoot.point)};
    return best;
  }

  gxLocation locate() const {
    gxLocation result = noLocation(gxStatus::eOk);
    const auto& edges = tree_.edges();
    for (std::size_t first = 0; first < edges.size();) {
      const gx_Ring& ring = rings_[edges[first].ring];
      std::size_t end = first;
      while (end < edges.size() && rings_[edges[end].ring].region == ring.region) ++end;
      const gx_Parity parity = gx_parityByScan(std::span(edges).subspan(first, end - first), query_);
      if (parity.onEdge) {
        const gx_Edge& e = edges[first + parity.edge];
        const gx_Foot foot = gx_footOn(e.a, e.b, query_);
        result.state = gxState::eBorder;
        result.region = ring.region;
        result.place = {rings_[e.ring].number, static_cast<long>(e.number), foot.t, from(query_)};
        return result;
      }
      if (parity.odd && ring.closed) {
        result.state = gxState::eInside;
        result.region = ring.region;
        return result;
      }
      first = end;
    }
    return result;
  }

 private:
  Point to(const Point& p) const { return scaled_ ? frame_.scaled(p) : p; }
  Point from(const Point& p) const { return scaled_ ? frame_.unscaled(p) : p; }

  gx_Frame frame_;
  bool scaled_ = false;
  Point query_;
  std::vector<std::vector<Point>> points_;
  std::vector<gx_Ring> rings_;
  gx_EdgeTree tree_;
};

gxStatus statusOf(const std::vector<gx_Ring>& rings) {
  if (!gx_allFinite(rings)) return gxStatus::eNotFinite;
  const bool empty =
      std::all_of(rings.begin(), rings.end(), [](const gx_Ring& ring) { return ring.points.empty(); });
  return empty ? gxStatus::eEmpty : gxStatus::eOk;
}

gxStatus statusOf(const std::vector<gx_Ring>& rings, const Point& query) {
  return isFinite(query) ? statusOf(rings) : gxStatus::eNotFinite;
}

// On the border within a tolerance, else as the exact test says.
gxLocation withTolerance(const gxLocation& exact, const gxNearest& nearest, double tolerance) {
  if (!(nearest.distance <= tolerance)) return exact;
  gxLocation result = exact;
  result.state = gxState::eBorder;
  result.region = nearest.region;
  result.place = nearest.place;
  return result;
}

gxLocation locateByScan(const std::vector<gx_Ring>& rings, const Point& p, double tolerance) {
  const gxStatus status = statusOf(rings, p);
  if (status != gxStatus::eOk) return noLocation(status);
  if (!(tolerance >= 0.0)) return noLocation(gxStatus::eBadArgument);
  const Scan scan(rings, p);
  const gxLocation exact = scan.locate();
  if (tolerance == 0.0 || exact.state == gxState::eBorder) return exact;
  return withTolerance(exact, scan.nearest(), tolerance);
}

gxNearest nearestByScan(const std::vector<gx_Ring>& rings, const Point& p) {
  const gxStatus status = statusOf(rings, p);
  return status == gxStatus::eOk ? Scan(rings, p).nearest() : noNearest(status);
}

double signedOf(gxState state, double distance) {
  if (state == gxState::eBorder || distance == 0.0) return 0.0;
  return state == gxState::eInside ? -distance : distance;
}

double signedDistanceByScan(const std::vector<gx_Ring>& rings, const Point& p) {
  if (statusOf(rings, p) != gxStatus::eOk) return kNaN;
  const Scan scan(rings, p);
  return signedOf(scan.locate().state, scan.nearest().distance);
}

}  // namespace

// ---- The indexes ------------------------------------------------------------------------------------

gxLocator::Data::Data(const std::vector<gx_Ring>& given) : status(statusOf(given)) {
  if (status != gxStatus::eOk) return;
  gx_Box box;
  for (const gx_Ring& ring : given) box.add(gx_boxOf(ring.points));
  frame = gx_Frame(box);
  const double unit = frame.lengthFrom(1.0);
  scaled = unit > kLargest || unit < kSmallest;
  points.reserve(given.size());
  for (const gx_Ring& ring : given) {
    points.emplace_back(ring.points.begin(), ring.points.end());
    if (scaled)
      std::transform(points.back().begin(), points.back().end(), points.back().begin(),
                     [this](const Point& p) { return frame.scaled(p); });
    rings.push_back(ring);
    rings.back().points = points.back();
    rings.back().closed = ring.closed || ring.points.size() == 1;
  }
  if (rings.size() == 1) {
    nearestIndex.emplace_back(gx_Outline{points[0], rings[0].closed});
    nearestIndex[0].slabs({points[0], rings[0].closed});  // made now, so that questions only read
  }
  tree = gx_EdgeTree(rings);
  const auto& edges = tree.edges();
  for (std::size_t first = 0; first < edges.size();) {
    std::size_t end = first;
    gx_Box own;
    while (end < edges.size() && rings[edges[end].ring].region == rings[edges[first].ring].region) {
      own.add(edges[end++].box());
    }
    grids.emplace_back(std::span(edges).subspan(first, end - first));
    regionBoxes.push_back(own);
    firstOfRegion.push_back(first);
    first = end;
  }
  if (grids.size() > kFewRegions) regionTree = std::make_unique<gx_BoxTree>(regionBoxes);
}

gxPlace gxLocator::Data::place(const gx_Edge& edge, double t, const Point& point) const {
  return {rings[edge.ring].number, static_cast<long>(edge.number), t, from(point)};
}

gxNearest gxLocator::Data::nearestOn(const gx_Edge& edge, const Point& p) const {
  const gx_Foot foot = gx_footOn(edge.a, edge.b, p);
  gxNearest result;
  result.status = gxStatus::eOk;
  result.distance = lengthFrom(foot.distance);
  result.region = rings[edge.ring].region;
  result.place = place(edge, foot.t, foot.point);
  return result;
}

std::size_t gxLocator::Data::nearestEdge(const Point& p) const {
  if (rings.size() == 1) return gx_nearestEdge(nearestIndex[0], {points[0], rings[0].closed}, p);
  const auto& edges = tree.edges();
  std::size_t best = 0;
  double distance = kInfinity;
  const auto offer = [&](std::size_t i) {
    const double d = gx_distanceFrom(edges[i].a, edges[i].b, p);
    if (d < distance || (d == distance && i < best)) {
      distance = d;
      best = i;
    }
  };
  tree.forEachNear(p, distance, [&](std::size_t first, std::size_t end) {
    for (std::size_t i = first; i < end; ++i) offer(i);
  });
  return best;
}

gxLocation gxLocator::Data::locateIn(std::size_t region, const Point& p) const {
  gxLocation result = noLocation(gxStatus::eOk);
  if (!regionBoxes[region].holds(p)) return result;
  const gx_Parity parity = grids[region].at(p);
  const gx_Edge& edge = tree.edges()[firstOfRegion[region] + parity.edge];
  if (parity.onEdge) {
    result.state = gxState::eBorder;
    result.region = rings[edge.ring].region;
    result.place = place(edge, gx_footOn(edge.a, edge.b, p).t, p);
  } else if (parity.odd && rings[edge.ring].closed) {
    result.state = gxState::eInside;
    result.region = rings[edge.ring].region;
  }
  return result;
}

gxLocation gxLocator::Data::locate(const Point& p) const {
  if (regionTree == nullptr) {
    for (std::size_t r = 0; r < grids.size(); ++r) {
      const gxLocation found = locateIn(r, p);
      if (found.state != gxState::eOutside) return found;
    }
    return noLocation(gxStatus::eOk);
  }
  gxLocation first = noLocation(gxStatus::eOk);
  gx_Box box;
  box.add(p);
  regionTree->forEachMeeting(box, [&](std::size_t r) {
    if (first.region >= 0 && static_cast<std::size_t>(first.region) < r) return;
    const gxLocation found = locateIn(r, p);
    if (found.state != gxState::eOutside) first = found;
  });
  return first;
}

// ---- The locator ------------------------------------------------------------------------------------

gxLocator::gxLocator(const gxContour& contour) : data_(std::make_shared<Data>(gx_ringsOf(contour))) {}
gxLocator::gxLocator(const gxRegion& region) : data_(std::make_shared<Data>(gx_ringsOf(region))) {}
gxLocator::gxLocator(const gxRegionSet& set) : data_(std::make_shared<Data>(gx_ringsOf(set))) {}
gxLocator::gxLocator(std::span<const Point> outline)
    : data_(std::make_shared<Data>(gx_ringsOf(outline))) {}
gxLocator::~gxLocator() = default;

gxStatus gxLocator::status() const {
  return data_->status;
}

gxLocation gxLocator::locate(const Point& point, double tolerance) const {
  if (!isFinite(point)) return noLocation(gxStatus::eNotFinite);
  if (data_->status != gxStatus::eOk) return noLocation(data_->status);
  if (!(tolerance >= 0.0)) return noLocation(gxStatus::eBadArgument);
  const Point p = data_->to(point);
  if (!isFinite(p)) return withTolerance(noLocation(gxStatus::eOk), nearest(point), tolerance);
  const gxLocation exact = data_->locate(p);
  if (tolerance == 0.0 || exact.state == gxState::eBorder) return exact;
  return withTolerance(exact, nearest(point), tolerance);
}

std::vector<gxState> gxLocator::states(std::span<const Point> points, double tolerance) const {
  std::vector<gxState> result;
  result.reserve(points.size());
  for (const Point& p : points) result.push_back(locate(p, tolerance).state);
  return result;
}

gxNearest gxLocator::nearest(const Point& point) const {
  if (!isFinite(point)) return noNearest(gxStatus::eNotFinite);
  if (data_->status != gxStatus::eOk) return noNearest(data_->status);
  const Point p = data_->to(point);
  if (!(std::fabs(p.x()) < kFar && std::fabs(p.y()) < kFar)) {
    std::vector<gx_Ring> original = data_->rings;
    std::vector<std::vector<Point>> copies = data_->points;
    for (std::size_t r = 0; r < copies.size(); ++r) {
      for (Point& q : copies[r]) q = data_->from(q);
      original[r].points = copies[r];
    }
    return Scan(original, point).nearest();
  }
  return data_->nearestOn(data_->tree.edges()[data_->nearestEdge(p)], p);
}

std::vector<gxNearest> gxLocator::nearest(std::span<const Point> points) const {
  std::vector<gxNearest> result;
  result.reserve(points.size());
  for (const Point& p : points) result.push_back(nearest(p));
  return result;
}

double gxLocator::signedDistance(const Point& point) const {
  const gxNearest found = nearest(point);
  if (found.status != gxStatus::eOk) return kNaN;
  return signedOf(locate(point).state, found.distance);
}

std::vector<double> gxLocator::signedDistances(std::span<const Point> points) const {
  std::vector<double> result;
  result.reserve(points.size());
  for (const Point& p : points) result.push_back(signedDistance(p));
  return result;
}

std::vector<long> gxLocator::which(std::span<const Point> points) const {
  std::vector<long> result;
  result.reserve(points.size());
  for (const Point& p : points) result.push_back(locate(p).region);
  return result;
}

namespace {

// Collects nearest edges or vertices, at most `count` of them and none farther than a radius.
class Collector {
 public:
  Collector(std::size_t count, double radius) : count_(count), limit(radius) {}

  void offer(const gxNearest& candidate, double distance) {
    if (!(distance <= limit)) return;
    found_.push_back(candidate);
    std::push_heap(found_.begin(), found_.end(), before);
    if (found_.size() <= count_) return;
    std::pop_heap(found_.begin(), found_.end(), before);
    found_.pop_back();
  }
  bool full() const { return found_.size() == count_; }
  double worst() const { return found_.front().distance; }

  std::vector<gxNearest> sorted() {
    std::sort(found_.begin(), found_.end(), before);
    return std::move(found_);
  }

 private:
  std::size_t count_;
  std::vector<gxNearest> found_;

 public:
  double limit;  // in the scale of the shape
};

std::vector<gxNearest> collect(const gxLocator& locator, const Point& point, std::size_t count,
                               double radius, bool vertices) {
  if (locator.status() != gxStatus::eOk || !isFinite(point) || count == 0 || !(radius >= 0.0)) return {};
  const auto& data = gx_LocatorAccess::data(locator);
  const Point p = data.to(point);
  Collector collector(count, radius < kInfinity ? data.lengthTo(radius) : kInfinity);
  const auto offer = [&](gxNearest found) {
    const double distance = data.lengthTo(found.distance);
    collector.offer(found, distance);
    if (collector.full()) collector.limit = data.lengthTo(collector.worst());
  };
  const auto vertex = [&](const gx_Edge& edge, double t) {
    const Point& v = t == 0.0 ? edge.a : edge.b;
    gxNearest found = data.nearestOn({v, v, edge.ring, edge.number}, p);
    found.place.t = t;
    return found;
  };
  data.tree.forEachNear(p, collector.limit, [&](std::size_t first, std::size_t end) {
    for (std::size_t i = first; i < end; ++i) {
      const gx_Edge& edge = data.tree.edges()[i];
      if (!vertices) {
        offer(data.nearestOn(edge, p));
        continue;
      }
      if (!data.rings[edge.ring].closed && edge.number == 0) offer(vertex(edge, 0.0));
      offer(vertex(edge, 1.0));
    }
  });
  return collector.sorted();
}

}  // namespace

std::vector<gxNearest> gxLocator::nearestEdges(const Point& point, std::size_t count) const {
  return collect(*this, point, count, kInfinity, false);
}
std::vector<gxNearest> gxLocator::nearestVertices(const Point& point, std::size_t count) const {
  return collect(*this, point, count, kInfinity, true);
}
std::vector<gxNearest> gxLocator::edgesWithin(const Point& point, double radius) const {
  return collect(*this, point, std::numeric_limits<std::size_t>::max(), radius, false);
}
std::vector<gxNearest> gxLocator::verticesWithin(const Point& point, double radius) const {
  return collect(*this, point, std::numeric_limits<std::size_t>::max(), radius, true);
}

// ---- Single questions -------------------------------------------------------------------------------

gxLocation gfLocate(const gxContour& contour, const Point& point, double tolerance) {
  return locateByScan(gx_ringsOf(contour), point, tolerance);
}
gxLocation gfLocate(const gxRegion& region, const Point& point, double tolerance) {
  return locateByScan(gx_ringsOf(region), point, tolerance);
}
gxLocation gfLocate(const gxRegionSet& set, const Point& point, double tolerance) {
  return locateByScan(gx_ringsOf(set), point, tolerance);
}
double gfSignedDistance(const gxContour& contour, const Point& point) {
  return signedDistanceByScan(gx_ringsOf(contour), point);
}
double gfSignedDistance(const gxRegion& region, const Point& point) {
  return signedDistanceByScan(gx_ringsOf(region), point);
}
double gfSignedDistance(const gxRegionSet& set, const Point& point) {
  return signedDistanceByScan(gx_ringsOf(set), point);
}
gxNearest gfNearest(const gxContour& contour, const Point& point) {
  return nearestByScan(gx_ringsOf(contour), point);
}
gxNearest gfNearest(const gxRegion& region, const Point& point) {
  return nearestByScan(gx_ringsOf(region), point);
}
gxNearest gfNearest(const gxRegionSet& set, const Point& point) {
  return nearestByScan(gx_ringsOf(set), point);
}

std::ostream& operator<<(std::ostream& out, gxState state) {
  return out << (state == gxState::eInside   ? "inside"
                 : state == gxState::eBorder ? "border"
                                             : "outside");
}

std::ostream& operator<<(std::ostream& out, const gxLocation& l) {
  out << l.state;
  if (l.region >= 0) out << " region " << l.region;
  if (l.place.valid()) out << ' ' << l.place;
  if (l.status != gxStatus::eOk) out << ' ' << l.status;
  return out;
}

std::ostream& operator<<(std::ostream& out, const gxNearest& n) {
  out << "distance " << n.distance << " region " << n.region << ' ' << n.place;
  if (n.status != gxStatus::eOk) out << ' ' << n.status;
  return out;
}
