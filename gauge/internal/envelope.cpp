// The lower envelope of distances.
//
//   1. Ask for the nearest edges f, g at the ends of the segment.  Nowhere on it is the shape farther than
//      the summit of the smaller of the two distances.
//   2. Only edges that come as near as that to the segment can be the nearest somewhere: those within that
//      distance and half the segment's length of its middle.
//   3. Where these are many, halve the segment, as long as halving makes them fewer.
//   4. Their envelope: that of each half of the list, merged.  Two stretches with different edges are cut
//      where the two are equally far, and the middle of each piece tells which is the nearer.
//
// That the same edge is the nearest at both ends does not mean that it is in between: another may
// come near in the middle.  (For the greatest distance that does not matter, hausdorff.cpp.)
#include <gauge/internal/envelope.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// So many candidates are merged without halving the segment first.
constexpr std::size_t kFew = 24;
constexpr int kDeepest = 30;
// Above rounding in a frame of size 1 to 2.
constexpr double kSlack = 1e-14;

}  // namespace

const std::vector<gx_Stretch>& gx_Envelope::along(const gx_Piece& glide) {
  found_.clear();
  const std::size_t f = shape_.nearest(glide.a, guess_);
  const std::size_t g = shape_.nearest(glide.b, f);
  guess_ = g;
  part_(glide, 0.0, f, 1.0, g, gx_BorderTree::kNone, 0);
  return found_;
}

void gx_Envelope::part_(const gx_Piece& glide, double t0, std::size_t f, double t1, std::size_t g,
                        std::size_t parents, int depth) {
  const gxVector<2> start = glide.at(t0);
  const gxVector<2> end = glide.at(t1);
  double square = std::max(shape_.squareFrom(f, start), shape_.squareFrom(g, end));
  if (f == g) {
    square = std::max(shape_.squareFrom(f, start), shape_.squareFrom(f, end));
  } else {
    square = std::max(square, gx_summitOf(glide, shape_.piece(f), shape_.piece(g), t0, t1).square);
  }
  const double half = 0.5 * std::sqrt((end - start) * (end - start));
  const double reach = std::sqrt(square) + half + kSlack;
  const gxVector<2> middle = (start + end) * 0.5;
  candidates_.clear();
  shape_.forEachWithin(middle, reach, [&](std::size_t edge) {
    if (shape_.squareFrom(edge, middle) <= reach * reach) candidates_.push_back(edge);
  });
  const std::size_t count = candidates_.size();
  if (count > kFew && depth < kDeepest && (parents == gx_BorderTree::kNone || 4 * count < 3 * parents)) {
    const double t = 0.5 * (t0 + t1);
    const std::size_t between = shape_.nearest(glide.at(t), f);
    part_(glide, t0, f, t, between, count, depth + 1);
    part_(glide, t, between, t1, g, count, depth + 1);
    return;
  }
  for (const gx_Stretch& stretch : lowest_(glide, t0, t1, 0, count)) append_(found_, stretch);
}

gx_Envelope::Stretches gx_Envelope::lowest_(const gx_Piece& glide, double t0, double t1,
                                            std::size_t first, std::size_t end) const {
  if (end - first == 1) return {{t0, t1, candidates_[first]}};
  const std::size_t middle = first + (end - first) / 2;
  return merged_(glide, lowest_(glide, t0, t1, first, middle), lowest_(glide, t0, t1, middle, end));
}

gx_Envelope::Stretches gx_Envelope::merged_(const gx_Piece& glide, const Stretches& a,
                                            const Stretches& b) const {
  Stretches result;
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < a.size() && j < b.size()) {
    const double t0 = std::max(a[i].t0, b[j].t0);
    const double t1 = std::min(a[i].t1, b[j].t1);
    const gx_Piece& f = shape_.piece(a[i].feature);
    const gx_Piece& g = shape_.piece(b[j].feature);
    gx_Cuts zones;
    zones.add(t0);
    zones.add(t1);
    gx_addZoneCuts(glide, f, t0, t1, zones);
    gx_addZoneCuts(glide, g, t0, t1, zones);
    double from = t0;
    const auto take = [&](double to) {
      if (!(to > from)) return;
      const gxVector<2> p = glide.at(0.5 * (from + to));
      const double toF = f.squareFrom(p);
      const double toG = g.squareFrom(p);
      const bool second = toG < toF || (toG == toF && b[j].feature < a[i].feature);
      append_(result, {from, to, second ? b[j].feature : a[i].feature});
      from = to;
    };
    for (std::size_t z = 0; z + 1 < zones.count; ++z) {
      const double low = zones.t[z];
      const double high = zones.t[z + 1];
      const double middle = 0.5 * (low + high);
      const gx_Roots roots =
          gx_equalRoots(gx_zoneOf(glide, f, low, middle), gx_zoneOf(glide, g, low, middle));
      for (std::size_t r = 0; r < roots.count; ++r) {
        const double t = low + roots.u[r];
        if (t > low && t < high) take(t);
      }
      take(high);
    }
    (a[i].t1 < b[j].t1 ? i : j) += 1;
  }
  return result;
}

void gx_Envelope::append_(Stretches& stretches, const gx_Stretch& next) const {
  if (!stretches.empty() && stretches.back().feature == next.feature) {
    stretches.back().t1 = next.t1;
  } else {
    stretches.push_back(next);
  }
}
