// Laying out the rings.
//
//  1. Where there are more than a few rings, they are put into tiles by their boxes, as the trees of boxes
//     do it: sorted by left side, cut into strips, each strip sorted by lower side.
//  2. The points are copied, without those that repeat the one before.  A ring's first point is copied
//     once more behind its last.
//  3. A box for every run of 8 edges, then level by level for every run of 8 boxes.
//
// One tree over everything, instead of a tree over rings and one within each, makes one search of pairs out
// of three, and costs nothing: in the list of leaves the rings stand side by side anyway.
#include <cntr/contourdefs.h>
#include <overlay/internal/edge_set.h>

#include <cmath>
#include <string>

namespace {

// With so few rings all pairs of their nodes are looked at anyway.
constexpr std::size_t kFewRings = 8;
constexpr std::size_t kMostPoints = std::size_t{1} << 30U;

std::wstring notFinite(std::size_t ring, std::size_t index, const gxVector<2>& p) {
  return L"point " + std::to_wstring(index) + L" of ring " + std::to_wstring(ring) +
         L" is not finite: (" + std::to_wstring(p.x()) + L", " + std::to_wstring(p.y()) + L")";
}

bool isFinite(const gxVector<2>& p) {
  return std::isfinite(p.x()) && std::isfinite(p.y());
}

}  // namespace

std::uint32_t gx_EdgeSet::add(const gxVector<2>* points, std::size_t count, bool closed,
                              const std::uint32_t* sources) {
  given_.push_back({points, count, closed, sources});
  return static_cast<std::uint32_t>(given_.size() - 1);
}

void gx_EdgeSet::finish() {
  std::size_t total = 0;
  for (std::size_t ring = 0; ring < given_.size(); ++ring) {
    const Given& g = given_[ring];
    total += g.count + 1;
    for (std::size_t i = 0; i < g.count; ++i) {
      if (!isFinite(g.points[i])) throw gxContourDefs::BadParams(notFinite(ring, i, g.points[i]));
    }
  }
  if (total > kMostPoints) throw gxContourDefs::BadParams(L"more than 2^30 points");
  rings_.assign(given_.size(), Ring());
  order_.resize(given_.size());
  for (std::size_t i = 0; i < order_.size(); ++i) order_[i] = static_cast<std::uint32_t>(i);
  if (given_.size() > kFewRings) orderRings_();
  points_.clear();
  points_.reserve(total);
  sources_.clear();
  sources_.reserve(total);
  for (const std::uint32_t ring : order_) copy_(ring);
  build_();
}

void gx_EdgeSet::orderRings_() {
  struct Key {
    double side;
    std::uint32_t ring;
  };
  std::vector<gx_Box> boxes(given_.size());
  std::vector<Key> keys(given_.size());
  for (std::size_t r = 0; r < given_.size(); ++r) {
    for (std::size_t i = 0; i < given_[r].count; ++i) boxes[r].add(given_[r].points[i]);
    keys[r] = {boxes[r].lowX, static_cast<std::uint32_t>(r)};
  }
  // Equal sides are told apart by the ring's number, so that one input has one layout.
  const auto less = [](const Key& a, const Key& b) {
    return a.side != b.side ? a.side < b.side : a.ring < b.ring;
  };
  std::sort(keys.begin(), keys.end(), less);
  for (Key& key : keys) key.side = boxes[key.ring].lowY;
  const auto strips = static_cast<std::size_t>(std::sqrt(static_cast<double>(keys.size()) / 2.0)) + 1;
  const std::size_t strip = (keys.size() + strips - 1) / strips;
  for (std::size_t first = 0; first < keys.size(); first += strip) {
    const auto begin = keys.begin() + static_cast<std::ptrdiff_t>(first);
    std::sort(begin, keys.begin() + static_cast<std::ptrdiff_t>(std::min(first + strip, keys.size())),
              less);
  }
  for (std::size_t i = 0; i < keys.size(); ++i) order_[i] = keys[i].ring;
}

// A closed ring of which all points are equal keeps one, and has no edge.
void gx_EdgeSet::copy_(std::uint32_t number) {
  const Given& g = given_[number];
  Ring& ring = rings_[number];
  ring.closed = g.closed;
  ring.first = size();
  for (std::size_t i = 0; i < g.count; ++i) {
    if (size() != ring.first && g.points[i] == points_.back()) continue;
    points_.push_back(g.points[i]);
    sources_.push_back(g.sources != nullptr ? g.sources[i] : static_cast<std::uint32_t>(2 * i));
  }
  while (g.closed && size() > ring.first + 1 && points_.back() == points_[ring.first]) {
    points_.pop_back();
    sources_.pop_back();
  }
  if (g.closed && size() > ring.first + 1) {
    ring.end = size();
    points_.push_back(gxVector<2>(points_[ring.first]));
    sources_.push_back(std::uint32_t{sources_[ring.first]});
  } else {
    ring.end = size() > ring.first ? size() - 1 : ring.first;
  }
}

void gx_EdgeSet::build_() {
  // An eighth and, at most, one of each ring are leaves; a seventh more stands above them.
  const std::size_t leaves = points_.size() / kFan + order_.size();
  leafRing_.clear();
  leafRing_.reserve(leaves);
  boxes_.clear();
  boxes_.reserve(leaves + leaves / (kFan - 1) + 2);
  constexpr std::size_t kMostLevels = 12;
  starts_.clear();
  starts_.reserve(kMostLevels);
  starts_.push_back(0);
  box_ = gx_Box();
  for (const std::uint32_t number : order_) {
    Ring& ring = rings_[number];
    ring.firstLeaf = static_cast<std::uint32_t>(boxes_.size());
    ring.box = gx_Box();
    for (std::uint32_t first = ring.first; first < ring.end; first += kFan) {
      gx_Box box;
      const std::uint32_t last = std::min(first + static_cast<std::uint32_t>(kFan), ring.end);
      for (std::uint32_t i = first; i <= last; ++i) box.add(points_[i]);
      boxes_.push_back(box);
      leafRing_.push_back(number);
      ring.box.add(box);
    }
    if (ring.first == ring.end && ring.first < size()) ring.box.add(points_[ring.first]);
    ring.endLeaf = static_cast<std::uint32_t>(boxes_.size());
    box_.add(ring.box);
  }
  starts_.push_back(boxes_.size());
  while (starts_.back() - starts_[starts_.size() - 2] > kFan) {
    const std::size_t below = starts_[starts_.size() - 2];
    const std::size_t end = starts_.back();
    for (std::size_t first = below; first < end; first += kFan) {
      gx_Box node;
      for (std::size_t i = first; i < std::min(first + kFan, end); ++i) node.add(boxes_[i]);
      boxes_.push_back(node);
    }
    starts_.push_back(boxes_.size());
  }
}

std::uint32_t gx_EdgeSet::ringAmongMany_(std::uint32_t point) const {
  const auto behind =
      std::upper_bound(order_.begin(), order_.end(), point,
                       [this](std::uint32_t p, std::uint32_t ring) { return p < rings_[ring].first; });
  return *(behind - 1);
}
