// Building the tree.
//
//   1. The box of all points: it says whether single precision will do.
//   2. The slabs of the runs of 8 edges and those of the runs of 64, from their points: along the
//      chord from the first point to the last, the least and greatest position along it and across.
//   3. Above, where the outline bends and the slabs are thick anyway, slabs around the corners of the
//      slabs below.
//
// A slab is turned by its direction as it was rounded to single precision, and its middle, too, is
// taken as rounded; only then its extents are measured, and rounded up.
#include <cntr/internal/index/slab_tree.h>

#include <cmath>

namespace {

// Sizes of outlines whose single precision squares neither overflow nor lose digits.
constexpr double kSmallest = 1e-9;
constexpr double kLargest = 1e12;

// A point farther away than so many sizes of the outline is not asked about here: the error of single
// precision, 1e-6 of that, comes near the extent of a run.
constexpr double kFarthest = 64.0;

// The next but some single precision number above a number of 0 or more.
float roundedUp(double value) {
  return static_cast<float>(value * (1.0 + 1e-6) + 1e-30);
}

struct Slab {
  gxVector<2> middle;  // relative to the anchor
  gxVector<2> along;
  float halfAlong = 0.0F;
  float halfAcross = 0.0F;
};

double inSingle(double value) {
  return static_cast<double>(static_cast<float>(value));
}

gxVector<2> inSingle(const gxVector<2>& v) {
  return {inSingle(v.x()), inSingle(v.y())};
}

// The slab around the points, turned to lie along `chord`.
Slab slabAround(const gxVector<2>* points, std::size_t count, const gxVector<2>& chord,
                const gxVector<2>& anchor) {
  const double length = std::sqrt(chord * chord);
  Slab slab;
  slab.along = length > 0.0 ? inSingle(chord * (1.0 / length)) : gxVector<2>(1.0, 0.0);
  const gx_Box box = gx_reachAlong(points, count, slab.along);
  const double along = 0.5 * (box.lowX + box.highX);
  const double across = 0.5 * (box.lowY + box.highY);
  const gxVector<2> start = points[0] - anchor;
  slab.middle = inSingle(start + gxVector<2>(along * slab.along.x() - across * slab.along.y(),
                                             along * slab.along.y() + across * slab.along.x()));
  const gxVector<2> w = start - slab.middle;
  const gxVector<2> off(w * slab.along, gf_Cross(slab.along, w));
  slab.halfAlong = roundedUp(std::max(box.highX + off.x(), -box.lowX - off.x()));
  slab.halfAcross = roundedUp(std::max(box.highY + off.y(), -box.lowY - off.y()));
  return slab;
}

// The slab of the edges from `first` up to `end`, at most 64.
Slab slabOfEdges(const gx_Outline& outline, std::size_t first, std::size_t end,
                 const gxVector<2>& anchor) {
  gxVector<2> ends[gx_SlabTree::kFan * gx_SlabTree::kFan + 1];
  std::size_t count = 0;
  ends[count++] = outline.from(first);
  for (std::size_t k = first; k < end; ++k) ends[count++] = outline.to(k);
  return slabAround(ends, count, ends[count - 1] - ends[0], anchor);
}

// The slab around all slabs of a node.
Slab slabOfNode(const gx_SlabNode& node, const gxVector<2>& chord, const gxVector<2>& anchor) {
  gxVector<2> corners[4 * gx_SlabTree::kFan];
  std::size_t count = 0;
  for (std::size_t i = 0; i < node.children; ++i) {
    const gxVector<2> middle = node.anchor + gxVector<2>(node.x[i], node.y[i]);
    // Slightly more than the extents: the direction is of length 1 but for rounding.
    const gxVector<2> along = gxVector<2>(node.alongX[i], node.alongY[i]) * (1.0 + 1e-6);
    const gxVector<2> a = along * static_cast<double>(node.halfAlong[i]);
    const gxVector<2> b = gxVector<2>(-along.y(), along.x()) * static_cast<double>(node.halfAcross[i]);
    for (const gxVector<2>& corner : {a + b, a - b, b - a, -a - b}) corners[count++] = middle + corner;
  }
  return slabAround(corners, count, chord, anchor);
}

void put(gx_SlabNode& node, std::size_t at, const Slab& slab) {
  node.x[at] = static_cast<float>(slab.middle.x());
  node.y[at] = static_cast<float>(slab.middle.y());
  node.alongX[at] = static_cast<float>(slab.along.x());
  node.alongY[at] = static_cast<float>(slab.along.y());
  node.halfAlong[at] = slab.halfAlong;
  node.halfAcross[at] = slab.halfAcross;
  node.reach = std::max(node.reach, std::sqrt(slab.middle * slab.middle));
}

}  // namespace

gx_SlabTree::gx_SlabTree(const gx_Outline& outline, const gx_Box& bounds)
    : edges_(outline.edges()),
      centre_(0.5 * (bounds.lowX + bounds.highX), 0.5 * (bounds.lowY + bounds.highY)),
      starts_{0} {
  const double size = (bounds.highX - bounds.lowX) + (bounds.highY - bounds.lowY);
  if (edges_ == 0 || !(size >= kSmallest && size <= kLargest)) return;
  farthest_ = kFarthest * size;

  starts_ = gx_levelStarts(gx_runsOf(gx_runsOf(edges_)), 1);
  nodes_.resize(starts_.back());

  std::size_t edgesPerChild = kFan;
  for (std::size_t level = 0; level + 1 < starts_.size(); ++level) {
    for (std::size_t i = 0; i < starts_[level + 1] - starts_[level]; ++i) {
      gx_SlabNode& node = nodes_[starts_[level] + i];
      const std::size_t first = i * kFan * edgesPerChild;
      const std::size_t end = std::min(first + kFan * edgesPerChild, edges_);
      node.anchor = outline.to(first + (end - first) / 2);
      for (std::size_t k = first; k < end; k += edgesPerChild) {
        const std::size_t last = std::min(k + edgesPerChild, end) - 1;
        const std::size_t at = node.children++;
        if (level < 2) {
          put(node, at, slabOfEdges(outline, k, last + 1, node.anchor));
        } else {
          const gxVector<2> chord = outline.to(last) - outline.to(k);
          const gx_SlabNode& below = nodes_[starts_[level - 1] + i * kFan + at];
          put(node, at, slabOfNode(below, chord, node.anchor));
        }
      }
    }
    edgesPerChild *= kFan;
  }
}
