// The Hausdorff distance.
//
// The distance of a point p(t), gliding along an edge, from one edge of the other shape is a convex
// function of t; from the other shape it is the least of many such, which has its maximum at an end of
// the edge or where two edges are equally near.  Along one edge:
//
//   1. Where the edge that was nearest last is, at both ends, not farther than the greatest distance so
//      far, nothing on the edge is: it is done without any question.
//   2. Ask for the nearest edges f, g at the ends.  Where f is g the maximum is at an end.
//   3. Else the smaller of the two distances is greatest where both are equal; nothing on the stretch is
//      farther than that.  Below the greatest so far, the stretch is done.
//   4. Ask for the nearest edge there.  Is it as far as f and g are, the bound is reached; else a third
//      edge h is nearer, and two shorter stretches remain, from f to h and from h to g.  As h is the
//      nearest at its place, there are no more stretches than changes of the nearest edge.
//
// The walk begins with a sample of the vertices, so that most of the rest is done by 1.  It gives the
// distance; a second walk, with the distance known, stops at the first place that has it.  Splitting at
// the middle, with the bound that a distance changes by no more than one moves, was tried first: near a
// plateau it halves down to rounding.
#include <gauge/hausdorff.h>
#include <gauge/internal/border_tree.h>
#include <gauge/internal/glide.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <ostream>
#include <vector>

namespace {

// Squares of distances in a frame of size 1 to 2: what is nearer than that to another is the same, and
// below the second nothing is left but rounding.
constexpr double kSame = 1e-15;
constexpr double kNothing = 0x1p-104;

class Walk {
 public:
  Walk(const gx_BorderTree& shape, const gx_BorderTree& golden) : shape_(shape), golden_(golden) {}

  void run() {
    sample();
    const auto raise = [this](std::size_t edge, double t, double square) {
      if (square > best_) {
        best_ = square;
        edge_ = edge;
        t_ = t;
      }
      return false;
    };
    const auto below = [this](double square) { return square <= best_ * (1.0 + kSame) + kNothing; };
    for (std::size_t e = 0; e < shape_.edges(); ++e) glideOver(e, below, raise);
    findFirst();
  }

  double square() const { return best_; }
  gxPlace from() const { return shape_.placeOf(edge_, t_); }
  gxPlace to() const {
    const gxVector<2> p = shape_.piece(edge_).at(t_);
    const std::size_t nearest = golden_.nearest(p);
    return golden_.placeOf(nearest, golden_.piece(nearest).footFrom(p));
  }

 private:
  struct Stop {
    double t;
    std::size_t feature;
    double square;
  };

  Stop ask(std::size_t edge, double t, std::size_t guess) const {
    const gxVector<2> p = shape_.piece(edge).at(t);
    const std::size_t feature = golden_.nearest(p, guess);
    return {t, feature, golden_.squareFrom(feature, p)};
  }

  // About the square root of all vertices, evenly spread.
  void sample() {
    const std::size_t n = shape_.edges();
    const auto step = static_cast<std::size_t>(std::sqrt(static_cast<double>(n))) + 1;
    for (std::size_t e = 0; e < n; e += step) {
      const Stop stop = ask(e, 1.0, guess_);
      guess_ = stop.feature;
      if (!(stop.square > best_)) continue;
      best_ = stop.square;
      edge_ = e;
      t_ = 1.0;
    }
  }

  // Walks along an edge from its start, leaving out stretches whose bound `below` passes.  Calls
  // `visit(edge, t, square)` at its places until one call returns true; tells whether one did.
  template <class Below, class Visit>
  bool glideOver(std::size_t edge, const Below& below, const Visit& visit) {
    const gx_Piece& glide = shape_.piece(edge);
    const double guessed =
        std::max(golden_.squareFrom(guess_, glide.a), golden_.squareFrom(guess_, glide.b));
    if (below(guessed)) return false;
    Stop left = ask(edge, 0.0, guess_);
    const Stop end = ask(edge, 1.0, left.feature);
    guess_ = end.feature;
    if (visit(edge, left.t, left.square)) return true;
    rights_.assign(1, end);
    while (!rights_.empty()) {
      const Stop right = rights_.back();
      if (left.feature != right.feature && split(edge, left, right, below, visit)) return true;
      if (rights_.back().t != right.t) continue;  // a nearer edge lies between
      rights_.pop_back();
      if (visit(edge, right.t, right.square)) return true;
      left = right;
    }
    return false;
  }

  // Looks at the place between two stops where their edges are equally near.  Adds a stop there where a
  // third edge is nearer.
  template <class Below, class Visit>
  bool split(std::size_t edge, const Stop& left, const Stop& right, const Below& below,
             const Visit& visit) {
    const gx_Piece& glide = shape_.piece(edge);
    const gx_Summit summit =
        gx_summitOf(glide, golden_.piece(left.feature), golden_.piece(right.feature), left.t, right.t);
    if (below(summit.square)) return false;
    const Stop middle = ask(edge, summit.t, left.feature);
    const bool reached = middle.feature == left.feature || middle.feature == right.feature ||
                         middle.square >= summit.square * (1.0 - kSame) - kNothing;
    if (!reached && summit.t > left.t && summit.t < right.t) {
      rights_.push_back(middle);
      return false;
    }
    return visit(edge, middle.t, middle.square);
  }

  void findFirst() {
    constexpr double kEqual = 1e-14;  // above what the places of the first walk may differ by
    const double wanted = best_ * (1.0 - kEqual) - 4.0 * kNothing;
    const auto below = [wanted](double square) { return square < wanted; };
    const auto found = [this, wanted](std::size_t edge, double t, double square) {
      if (square < wanted) return false;
      edge_ = edge;
      t_ = t;
      return true;
    };
    for (std::size_t e = 0; e < shape_.edges(); ++e) {
      if (glideOver(e, below, found)) return;
    }
  }

  const gx_BorderTree& shape_;
  const gx_BorderTree& golden_;
  double best_ = -1.0;
  std::size_t edge_ = 0;
  double t_ = 0.0;
  std::size_t guess_ = 0;
  std::vector<Stop> rights_;
};

gxStatus statusOf(const gxBorders& shape, const gxBorders& golden) {
  const gxStatus first = gx_statusOf(shape.rings());
  const gxStatus second = gx_statusOf(golden.rings());
  if (first == gxStatus::eNotFinite || second == gxStatus::eNotFinite) return gxStatus::eNotFinite;
  return first == gxStatus::eOk ? second : first;
}

gx_Frame frameOf(const gxBorders& shape, const gxBorders& golden) {
  gx_Box box = gx_boxOf(shape.rings());
  box.add(gx_boxOf(golden.rings()));
  return gx_Frame(box);
}

gxDirectedHausdorff directed(const gx_BorderTree& shape, const gx_BorderTree& golden,
                             const gx_Frame& frame) {
  Walk walk(shape, golden);
  walk.run();
  gxDirectedHausdorff result;
  result.distance = frame.lengthFrom(std::sqrt(walk.square()));
  result.from = walk.from();
  result.to = walk.to();
  return result;
}

}  // namespace

gxDirectedHausdorff gfDirectedHausdorff(const gxBorders& shape, const gxBorders& golden) {
  const gxStatus status = statusOf(shape, golden);
  if (status != gxStatus::eOk) return {.status = status, .from = {}, .to = {}};
  const gx_Frame frame = frameOf(shape, golden);
  return directed(gx_BorderTree(shape.rings(), frame), gx_BorderTree(golden.rings(), frame), frame);
}

gxHausdorff gfHausdorff(const gxBorders& shape, const gxBorders& golden) {
  gxHausdorff result;
  result.status = statusOf(shape, golden);
  result.forward.status = result.status;
  result.back.status = result.status;
  if (result.status != gxStatus::eOk) return result;
  const gx_Frame frame = frameOf(shape, golden);
  const gx_BorderTree first(shape.rings(), frame);
  const gx_BorderTree second(golden.rings(), frame);
  result.forward = directed(first, second, frame);
  result.back = directed(second, first, frame);
  result.hausdorffForward = result.forward.distance;
  result.hausdorffBack = result.back.distance;
  result.hausdorff = std::max(result.hausdorffForward, result.hausdorffBack);
  return result;
}

std::ostream& operator<<(std::ostream& out, const gxDirectedHausdorff& result) {
  return out << "directed hausdorff " << result.distance << " from " << result.from << " to "
             << result.to << ", " << result.status;
}

std::ostream& operator<<(std::ostream& out, const gxHausdorff& result) {
  return out << "hausdorff " << result.hausdorff << ", forward " << result.hausdorffForward << " from "
             << result.forward.from << ", back " << result.hausdorffBack << " from " << result.back.from
             << ", " << result.status;
}
