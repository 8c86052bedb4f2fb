// The raw curve of an offset.
//
//  1. Every edge is moved to the right by the distance.  At a vertex where the ring turns left, the moved
//     edges are joined around it.  Where it turns right, the walk goes back to the vertex itself: from the
//     end of one moved edge to the vertex, and on to the start of the next.
//  2. As a cycle, the walk is then the sum of the ring, of one counter-clockwise strip for each edge, between
//     it and the moved one, and of one counter-clockwise piece for each join: the inner sides cancel.  So
//     the winding number of a point is that in the ring and the number of pieces that cover it: what is
//     covered is what has a winding number above that of the outside, whatever folds, loops or inverted
//     rings the walk has.
//  3. The way back to the vertex costs two crossings.  Where the turn is a right angle or less and both
//     edges are as long as the loop reaches along them, distance times the sine of the turn, the moved edges
//     are cut at their crossing instead: the loop cut off lies in both strips, and every point of it is still
//     covered once.  With a shorter edge a corner of the loop lies in one strip only, and a hole could open.
//     In a ring that turns right everywhere one way back stays: with n loops cut from n strips a count could
//     fall to 0.
//
// Tried elsewhere and not here: to drop rings of the curve that "look inverted", and to simplify the input
// beforehand.  Both lose parts of the shape.
#include <overlay/internal/offset_walk.h>

#include <cntr/contourdefs.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using V = gxVector<2>;

bool isFinite(const V& p) {
  return std::isfinite(p.x()) && std::isfinite(p.y());
}

// An edge: its direction and the normal to its right, of length 1, and its length.  Scaled, so that neither
// huge nor tiny edges overflow or lose digits.
struct Side {
  V along;
  V normal;
  double length;
};

Side sideOf(const V& a, const V& b) {
  V edge = b - a;
  // The difference of huge coordinates may be none; halves of the tiniest ones would be.
  const int halved = isFinite(edge) ? 0 : 1;
  if (halved != 0) edge = V(0.5 * b.x() - 0.5 * a.x(), 0.5 * b.y() - 0.5 * a.y());
  const int exponent = std::ilogb(std::max(std::fabs(edge.x()), std::fabs(edge.y())));
  // In two steps, as the scale of the smallest doubles is none.
  const int first = -exponent / 2;
  const auto scaled = [&](double c) { return std::ldexp(std::ldexp(c, first), -exponent - first); };
  const V v(scaled(edge.x()), scaled(edge.y()));
  const double norm = std::sqrt(v.x() * v.x() + v.y() * v.y());
  const V along(v.x() / norm, v.y() / norm);
  return {along, V(along.y(), -along.x()), std::ldexp(norm, exponent + halved)};
}

class Walk {
 public:
  Walk(const std::vector<V>& ring, double distance, const gxOffsetForm& form,
       const gx_ArcDirections& arcs, bool ends)
      : ring_(ring), distance_(distance), form_(form), arcs_(arcs), ends_(ends) {}

  std::vector<V> run() {
    const std::size_t n = ring_.size();
    sides_.reserve(n);
    for (std::size_t i = 0; i < n; ++i) sides_.push_back(sideOf(ring_[i], ring_[next_(i)]));
    std::size_t lastReturn = n;  // in a ring of right turns, where the way back stays
    if (turnsRightEverywhere_()) lastReturn = 0;
    for (std::size_t i = 0; i < n; ++i) corner_(i, i == lastReturn);
    for (const V& p : walk_) {
      if (!isFinite(p)) throw gxContourDefs::BadParams(L"the offset leaves the range of numbers");
    }
    return std::move(walk_);
  }

 private:
  std::size_t next_(std::size_t i) const { return i + 1 == ring_.size() ? 0 : i + 1; }
  std::size_t before_(std::size_t i) const { return i == 0 ? ring_.size() - 1 : i - 1; }

  int turnAt_(std::size_t i) const {
    return gx_Orientation(ring_[before_(i)], ring_[i], ring_[next_(i)]);
  }
  bool turnsRightEverywhere_() const {
    for (std::size_t i = 0; i < ring_.size(); ++i) {
      if (turnAt_(i) > 0 || isBack_(i)) return false;
    }
    return true;
  }
  bool isBack_(std::size_t i) const {
    return turnAt_(i) == 0 && sides_[before_(i)].along * sides_[i].along < 0.0;
  }

  V moved_(const V& p, const V& direction) const {
    return {p.x() + distance_ * direction.x(), p.y() + distance_ * direction.y()};
  }
  void add_(const V& p) {
    if (walk_.empty() || !(walk_.back() == p)) walk_.push_back(p);
  }

  // From the moved edge that comes to vertex i to the one that leaves it.
  void corner_(std::size_t i, bool wayBack) {
    const Side& in = sides_[before_(i)];
    const Side& out = sides_[i];
    const int turn = turnAt_(i);
    if (isBack_(i)) {
      back_(i, in, out);
    } else if (turn > 0) {
      join_(ring_[i], in, out);
    } else if (turn == 0) {
      add_(moved_(ring_[i], out.normal));
    } else {
      inner_(ring_[i], in, out, wayBack);
    }
  }

  void back_(std::size_t i, const Side& in, const Side& out) {
    const V& p = ring_[i];
    const gxEnds ends = ends_ ? form_.ends : endsOfJoin_();
    if (ends == gxEnds::eRound) return arc_(p, in, out);
    add_(moved_(p, in.normal));
    if (ends == gxEnds::eSquare) {
      add_(moved_(moved_(p, in.normal), in.along));
      add_(moved_(moved_(p, out.normal), in.along));
    }
    add_(moved_(p, out.normal));
  }
  // A spike of a ring is a corner: a mitre of half a turn is beyond any limit.
  gxEnds endsOfJoin_() const { return form_.join == gxJoin::eRound ? gxEnds::eRound : gxEnds::eFlat; }

  void arc_(const V& p, const Side& in, const Side& out) {
    add_(moved_(p, in.normal));
    arcs_.between(in.normal, out.normal, [&](const V& d) { add_(moved_(p, d)); });
    add_(moved_(p, out.normal));
  }

  void join_(const V& p, const Side& in, const Side& out) {
    if (form_.join == gxJoin::eRound) return arc_(p, in, out);
    // 1 + the cosine of the turn is 2 cos²(turn / 2); the mitre reaches 1 / cos(turn / 2).
    const double k = 1.0 + in.normal * out.normal;
    if (form_.join == gxJoin::eMitre && 2.0 <= k * form_.mitreLimit * form_.mitreLimit) {
      add_(moved_(p, (in.normal + out.normal) / k));
      return;
    }
    add_(moved_(p, in.normal));
    add_(moved_(p, out.normal));
  }

  void inner_(const V& p, const Side& in, const Side& out, bool wayBack) {
    const double cosine = in.along * out.along;
    const double sine = std::fabs(gf_Cross(in.along, out.along));
    // A little longer than what is needed, for rounding.
    const double reach = 1.000001 * distance_ * sine;
    if (!wayBack && cosine >= 0.0 && in.length >= reach && out.length >= reach) {
      add_(moved_(p, (in.normal + out.normal) / (1.0 + in.normal * out.normal)));
      return;
    }
    add_(moved_(p, in.normal));
    add_(p);
    add_(moved_(p, out.normal));
  }

  const std::vector<V>& ring_;
  double distance_;
  const gxOffsetForm& form_;
  const gx_ArcDirections& arcs_;
  bool ends_;
  std::vector<Side> sides_;
  std::vector<V> walk_;
};

}  // namespace

gx_ArcDirections::gx_ArcDirections(double radius, double tolerance) {
  constexpr double kTurn = 2.0 * std::numbers::pi;
  // Chords of this step lie radius · (1 − cos(step / 2)) inside.
  const double step = 4.0 * std::asin(std::sqrt(std::min(0.5 * tolerance / radius, 0.5)));
  const double wanted = std::ceil(kTurn / step / 4.0);
  const double most = static_cast<double>(kMost) / 4.0;
  const auto quarter = static_cast<std::size_t>(wanted <= most ? std::max(wanted, 1.0) : most);
  directions_.resize(4 * quarter);
  for (std::size_t k = 0; k < quarter; ++k) {
    const double angle = kTurn * static_cast<double>(k) / static_cast<double>(4 * quarter);
    V direction(std::cos(angle), std::sin(angle));
    for (std::size_t turn = 0; turn < 4; ++turn) {
      directions_[k + turn * quarter] = direction;
      direction = V(-direction.y(), direction.x());
    }
  }
}

// The angle is a guess, which the cross products put right.
std::size_t gx_ArcDirections::after_(const V& from) const {
  const auto n = static_cast<std::ptrdiff_t>(directions_.size());
  const double turns = std::atan2(from.y(), from.x()) / (2.0 * std::numbers::pi);
  auto i = static_cast<std::ptrdiff_t>(std::floor(turns * static_cast<double>(n)));
  const auto at = [&](std::ptrdiff_t k) { return static_cast<std::size_t>(((k % n) + n) % n); };
  for (int step = 0; step < 4 && !(gf_Cross(from, directions_[at(i)]) > 0.0); ++step) ++i;
  return at(i);
}

void gx_walkAround(const std::vector<V>& ring, double distance, const gxOffsetForm& form,
                   const gx_ArcDirections& arcs, bool ends, std::vector<std::vector<V>>& walks) {
  walks.push_back(Walk(ring, distance, form, arcs, ends).run());
}
