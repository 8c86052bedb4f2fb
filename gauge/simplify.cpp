// Simplification.
//
//   1. Move into a frame of size 1.
//   2. Of an outline, find the two points farthest from each other: on the hull, going around with two
//      pointers.  They do not depend on where the outline starts.
//   3. Split runs of points at the one farthest from the chord, until all of a run are within the
//      tolerance.  Runs wait on a list, not on the stack.
//   4. Where crossings are to be kept out, look for chords that meet, split each of them once more, and
//      look again.  A chord that is an edge of the outline stays.  What was within the tolerance of a chord
//      need not be within it of the two that it is split into, so these are split on, as in 3.
//
// The distance from a chord is computed from its lower end (by x, then y), so that it has the same bits
// in both directions; of equal distances the lower point wins.  Several points of these coordinates, as
// an outline that touches itself has, all stay: any choice among them would depend on the start.
#include <cntr/internal/index/edge_index.h>
#include <gauge/internal/chord.h>
#include <gauge/internal/frame.h>
#include <gauge/simplify.h>
#include <velstd/convex_hull.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <ostream>
#include <utility>

namespace {

using Points = std::vector<gxVector<2>>;

// Tells whether the point lies on the segment, exactly.
bool isOn(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& p) {
  if (gx_Orientation(a, b, p) != 0) return false;
  return p.x() >= std::min(a.x(), b.x()) && p.x() <= std::max(a.x(), b.x()) &&
         p.y() >= std::min(a.y(), b.y()) && p.y() <= std::max(a.y(), b.y());
}

// Tells whether two segments share a point, exactly.
bool meet(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c, const gxVector<2>& d) {
  const int abc = gx_Orientation(a, b, c);
  const int abd = gx_Orientation(a, b, d);
  const int cda = gx_Orientation(c, d, a);
  const int cdb = gx_Orientation(c, d, b);
  if (abc * abd < 0 && cda * cdb < 0) return true;
  return isOn(a, b, c) || isOn(a, b, d) || isOn(c, d, a) || isOn(c, d, b);
}

// The two corners of the hull farthest from each other, the lower one first; of equal pairs that with the
// lower first point, then the lower second.  Opposite corners are found by two pointers.
std::pair<gxVector<2>, gxVector<2>> farthestPair(const Points& hull, const gx_Frame& frame) {
  std::pair<gxVector<2>, gxVector<2>> best{hull.front(), hull.front()};
  const std::size_t h = hull.size();
  if (h == 1) return best;
  Points framed;
  framed.reserve(h);
  for (const gxVector<2>& p : hull) framed.push_back(frame.to(p));
  double most = -1.0;
  const auto consider = [&](std::size_t i, std::size_t k) {
    const gxVector<2> apart = framed[i] - framed[k];
    const double square = apart * apart;
    if (square < most) return;
    const bool isTurned = gx_isLower(hull[k], hull[i]);
    const gxVector<2>& p = hull[isTurned ? k : i];
    const gxVector<2>& q = hull[isTurned ? i : k];
    const auto isFirst = [&] {
      return gx_isLower(p, best.first) || (p == best.first && gx_isLower(q, best.second));
    };
    if (square == most && !isFirst()) return;
    best = {p, q};
    most = square;
  };
  std::size_t j = 1;
  for (std::size_t i = 0; i < h; ++i) {
    const std::size_t after = i + 1 == h ? 0 : i + 1;
    const gxVector<2> along = framed[after] - framed[i];
    consider(i, j);
    consider(after, j);
    for (std::size_t steps = 0; steps < h; ++steps) {
      const std::size_t next = j + 1 == h ? 0 : j + 1;
      if (gf_Cross(along, framed[next] - framed[j]) < 0.0) break;
      j = next;
      consider(i, j);
      consider(after, j);
    }
  }
  return best;
}

class Simplifier {
 public:
  Simplifier(std::span<const gxVector<2>> source, bool closed, double tolerance)
      : source_(source),
        closed_(closed),
        n_(source.size()),
        frame_(source),
        points_(source.begin(), source.end()),
        measures_(new double[source.size()]),
        keeps_(source.size(), 0) {
    for (gxVector<2>& p : points_) p = frame_.to(p);
    const double inFrame = frame_.lengthTo(tolerance);
    square_ = inFrame * inFrame;
    exact_ = tolerance == 0.0;
  }

  gxStatus run() {
    if (!closed_) {
      keeps_.front() = 1;
      keeps_.back() = 1;
      splitRunsBetweenKept();
      return gx_onOneLine(source_) ? gxStatus::eFlat : gxStatus::eOk;
    }
    Points hull(source_.begin(), source_.end());
    gfConvexHull(hull, hull);
    const auto [low, high] = farthestPair(hull, frame_);
    for (std::size_t i = 0; i < n_; ++i) keeps_[i] = source_[i] == low || source_[i] == high ? 1 : 0;
    if (hull.size() == 1) std::fill(keeps_.begin() + 1, keeps_.end(), 0);
    if (hull.size() <= 2) return gxStatus::eFlat;
    anchors_ = std::make_pair(low, high);
    splitRunsBetweenKept();
    keepThird();
    return gxStatus::eOk;
  }

  // Splits every chord that meets another; tells whether one was split.
  bool splitMeeting() {
    const std::vector<std::size_t> kept = indices();
    Points corners;
    for (const std::size_t i : kept) corners.push_back(source_[i]);
    const std::size_t k = kept.size();
    const std::size_t chords = closed_ ? k : k - 1;
    if (k < 4) return false;
    const gx_EdgeIndex index({corners, closed_});
    const auto startOf = [&](std::size_t e) { return closed_ ? (e == 0 ? k - 1 : e - 1) : e; };
    const auto endOf = [&](std::size_t e) { return closed_ ? e : e + 1; };
    std::vector<std::size_t> meeting;
    for (std::size_t e = 0; e < chords; ++e) {
      const gxVector<2>& a = corners[startOf(e)];
      const gxVector<2>& b = corners[endOf(e)];
      gx_Box box;
      box.add(a);
      box.add(b);
      const bool found = index.forEachRun(
          [&](const gx_Box& other) { return other.meets(box); },
          [&](std::size_t first, std::size_t end) {
            for (std::size_t f = first; f < end; ++f) {
              const bool near = f == e || startOf(f) == endOf(e) || endOf(f) == startOf(e);
              if (!near && meet(a, b, corners[startOf(f)], corners[endOf(f)])) return true;
            }
            return false;
          });
      if (found) meeting.push_back(e);
    }
    bool any = false;
    for (const std::size_t e : meeting) any = splitOnce(kept[startOf(e)], kept[endOf(e)]) || any;
    return any;
  }

  std::vector<std::size_t> indices() const {
    std::vector<std::size_t> kept(n_ + 1);
    std::size_t count = 0;
    for (std::size_t i = 0; i < n_; ++i) {
      kept[count] = i;
      count += static_cast<std::size_t>(keeps_[i] != 0);
    }
    kept.resize(count);
    return kept;
  }

 private:
  std::size_t next(std::size_t i) const { return i + 1 == n_ ? 0 : i + 1; }

  // The points strictly between two kept ones: the number of the first and how many there are.
  struct Run {
    std::size_t from;
    std::size_t to;
  };

  // One or two stretches of numbers, the second where the run goes on at the start.
  template <class Visit>
  void forEachPart(const Run& run, const Visit& visit) const {
    if (run.from < run.to) {
      if (run.from + 1 < run.to) visit(run.from + 1, run.to);
    } else if (closed_) {
      if (run.from + 1 < n_) visit(run.from + 1, n_);
      if (run.to > 0) visit(std::size_t{0}, run.to);
    }
  }

  template <class Visit>
  void forEachBetween(const Run& run, const Visit& visit) const {
    forEachPart(run, [&](std::size_t begin, std::size_t end) {
      for (std::size_t i = begin; i < end; ++i) visit(i);
    });
  }

  bool isEmpty(const Run& run) const {
    return run.from < run.to ? run.from + 1 == run.to : !closed_ || (run.from + 1 == n_ && run.to == 0);
  }

  // Up to so many points a loop without lanes and without branches is quicker.
  static constexpr std::size_t kFew = 10;

  // A point of a run: `n_` for none.  Whether others between have the same coordinates is only known to be
  // false.
  struct Split {
    std::size_t at;
    bool mayBeRepeated;
  };

  // Returns the point farthest from the chord by measure, the lower one of equal ones; none where no measure is
  // above `limit`.
  Split farthest(const Run& run, const gx_Chord& chord, double limit) {
    if (run.from < run.to && run.to - run.from <= kFew) {
      const Split best = farthestOfFew(run, chord, limit);
      if (!best.mayBeRepeated) return best;
    }
    const std::span<const gxVector<2>> points(points_);
    double most = -1.0;
    forEachPart(run, [&](std::size_t begin, std::size_t end) {
      most = std::max(most, chord.measureAll(points.subspan(begin, end - begin), &measures_[begin]));
    });
    Split best{n_, false};
    if (!(most > limit)) return best;
    forEachBetween(run, [&](std::size_t i) {
      if (measures_[i] != most) return;
      if (best.at == n_ || gx_isLower(source_[i], source_[best.at])) {
        best = {i, false};
      } else {
        best.mayBeRepeated = true;
      }
    });
    return best;
  }

  // The same of a short run without a turn; any point, said to be repeated, where two measures are equal.
  Split farthestOfFew(const Run& run, const gx_Chord& chord, double limit) const {
    double most = limit;
    Split best{n_, false};
    for (std::size_t i = run.from + 1; i < run.to; ++i) {
      const double here = chord.measure(points_[i]);
      best.mayBeRepeated = best.mayBeRepeated || here == most;
      best.at = here > most ? i : best.at;
      most = here > most ? here : most;
    }
    return best;
  }

  // Returns a point that is not exactly on the chord, the lower one; `n_` where all are.
  std::size_t notOn(const Run& run) const {
    std::size_t best = n_;
    forEachBetween(run, [&](std::size_t i) {
      if (best != n_ && !gx_isLower(source_[i], source_[best])) return;
      if (!isOn(source_[run.from], source_[run.to], source_[i])) best = i;
    });
    return best;
  }

  // Returns the point at which the run has to be split, none where all are within the tolerance.
  Split splitAt(const Run& run) {
    const gx_Chord chord(points_[run.from], points_[run.to]);
    if (!exact_) return farthest(run, chord, square_ * chord.scale());
    // With tolerance 0, what rounding may have made 0, or not, is decided exactly.
    constexpr double kRounding = 1e-28;
    const Split best = farthest(run, chord, kRounding);
    return best.at == n_ ? Split{notOn(run), true} : best;
  }

  // Keeps that point of the run, and those with the same coordinates; appends the runs between.
  void keep(const Run& run, const Split& split, std::vector<Run>& runs) {
    const auto wait = [&](const Run& part) {
      if (!isEmpty(part)) runs.push_back(part);
    };
    std::size_t from = run.from;
    if (!split.mayBeRepeated) {
      keeps_[split.at] = 1;
      wait({from, split.at});
      wait({split.at, run.to});
      return;
    }
    forEachBetween(run, [&](std::size_t i) {
      if (!(source_[i] == source_[split.at])) return;
      keeps_[i] = 1;
      wait({from, i});
      from = i;
    });
    wait({from, run.to});
  }

  void splitRunsBetweenKept() {
    std::vector<Run> runs;
    const std::vector<std::size_t> kept = indices();
    for (std::size_t i = 0; i + 1 < kept.size(); ++i) runs.push_back({kept[i], kept[i + 1]});
    if (closed_) runs.push_back({kept.back(), kept.front()});
    split(std::move(runs));
  }

  void split(std::vector<Run> runs) {
    while (!runs.empty()) {
      const Run run = runs.back();
      runs.pop_back();
      const Split found = splitAt(run);
      if (found.at != n_) keep(run, found, runs);
    }
  }

  // Keeps the point farthest from the two first ones where nothing else stays.
  void keepThird() {
    for (std::size_t i = 0; i < n_; ++i) {
      if (keeps_[i] != 0 && !(source_[i] == anchors_.first) && !(source_[i] == anchors_.second)) return;
    }
    const gx_Chord chord(frame_.to(anchors_.first), frame_.to(anchors_.second));
    std::size_t best = n_;
    double most = -1.0;
    for (std::size_t i = 0; i < n_; ++i) {
      const double here = chord.measure(points_[i]);
      if (here > most || (here == most && gx_isLower(source_[i], source_[best]))) {
        most = here;
        best = i;
      }
    }
    for (std::size_t i = 0; i < n_; ++i) {
      if (source_[i] == source_[best]) keeps_[i] = 1;
    }
    splitRunsBetweenKept();
  }

  bool splitOnce(std::size_t from, std::size_t to) {
    std::vector<Run> runs;
    const Run run{from, to};
    const Split found = farthest(run, gx_Chord(points_[from], points_[to]), -1.0);
    if (found.at == n_) return false;
    keep(run, found, runs);
    split(std::move(runs));
    return true;
  }

  std::span<const gxVector<2>> source_;
  bool closed_;
  std::size_t n_;
  gx_Frame frame_;
  Points points_;
  std::unique_ptr<double[]> measures_;  // of a run, by the numbers of its points
  std::vector<char> keeps_;
  std::pair<gxVector<2>, gxVector<2>> anchors_;
  double square_ = 0.0;
  bool exact_ = false;
};

}  // namespace

gxSimplified gfSimplify(std::span<const gxVector<2>> points, bool closed, double tolerance,
                        const gxSimplifyOptions& options) {
  gxSimplified result;
  if (points.empty()) result.status = gxStatus::eEmpty;
  if (!gx_allFinite(points)) result.status = gxStatus::eNotFinite;
  if (!(tolerance >= 0.0)) result.status = gxStatus::eBadArgument;
  if (result.status != gxStatus::eOk) return result;
  Simplifier simplifier(points, closed, tolerance);
  result.status = simplifier.run();
  if (options.keepsCrossingsOut && result.status == gxStatus::eOk) {
    while (simplifier.splitMeeting()) {}
  }
  result.kept = simplifier.indices();
  result.points.reserve(result.kept.size());
  for (const std::size_t i : result.kept) result.points.push_back(points[i]);
  return result;
}

gxSimplified gfSimplify(const gxContour& contour, double tolerance, const gxSimplifyOptions& options) {
  return gfSimplify(contour.points(), contour.isClosed(), tolerance, options);
}

std::ostream& operator<<(std::ostream& out, const gxSimplifyOptions& options) {
  return out << (options.keepsCrossingsOut ? "keeps crossings out" : "lets chords cross");
}

std::ostream& operator<<(std::ostream& out, const gxSimplified& simplified) {
  out << simplified.kept.size() << " points kept";
  if (simplified.status != gxStatus::eOk) out << ' ' << simplified.status;
  return out;
}
