// The signed deviation.
//
//   1. Along each edge of the shape, internal/envelope tells which edge of the golden shape is the nearest.
//   2. Each stretch is cut where the nearest part changes, where the distance is least and where it is 0,
//      so that on every span the distance is monotonic and has one sign.
//   3. The sign goes on from span to span, and is asked for anew (an exact count of crossings) only after
//      a place where the distance is nearly 0.  Nearly may be far too much: then it is asked for once too
//      often.
//   4. Extremes lie at the ends of spans; the square of the distance is quadratic, so its integral is
//      exact by Simpson's rule; the limits are crossed where linear or quadratic equations say.
//
// Samples are measured one by one.
#include <gauge/arc.h>
#include <gauge/deviation.h>
#include <gauge/internal/border_tree.h>
#include <gauge/internal/envelope.h>
#include <gauge/internal/glide.h>

#include <algorithm>
#include <cmath>
#include <ostream>

namespace {

// In a frame of size 1 to 2: after a distance below this the sign is asked for.
constexpr double kNearlyOn = 1e-9;
constexpr double kMostSamples = 2147483648.0;

// A span of an edge, with its zone counted from `start`.
struct Span {
  std::size_t edge = 0;
  double t0 = 0.0;
  double t1 = 1.0;
  double start = 0.0;
  gx_GlideZone zone;

  double squareAt(double t) const {
    const double u = t - start;
    if (zone.inside) {
      const double d = zone.at + zone.slope * u;
      return d * d;
    }
    return std::max(0.0, zone.a + u * (zone.b + zone.c * u));
  }
  double distanceAt(double t) const { return std::sqrt(squareAt(t)); }

  // Returns where the distance is `level`, which it is between the values at the ends.
  double crossing(double level) const {
    gx_Roots roots;
    if (zone.inside) {
      gx_addRoots(zone.at - level, zone.slope, 0.0, roots);
      gx_addRoots(zone.at + level, zone.slope, 0.0, roots);
    } else {
      gx_addRoots(zone.a - level * level, zone.b, zone.c, roots);
    }
    double best = t0;
    double least = std::abs(distanceAt(t0) - level);
    const auto consider = [&](double t) {
      const double off = std::abs(distanceAt(t) - level);
      if (off < least) {
        least = off;
        best = t;
      }
    };
    consider(t1);
    for (std::size_t r = 0; r < roots.count; ++r) consider(std::clamp(start + roots.u[r], t0, t1));
    return best;
  }
};

// On which side of an open poly-line a point lies: +1 on the right of its direction, −1 on the left.
class Sides {
 public:
  explicit Sides(const gx_BorderTree& golden) : golden_(golden) {}

  int of(const gxVector<2>& p, std::size_t nearest) const {
    const gx_Piece& edge = golden_.piece(nearest);
    const double foot = edge.footFrom(p);
    if (foot > 0.0 && foot < 1.0) return sideOf(edge, p);
    const std::size_t ring = golden_.ringOf(nearest);
    const bool hasOther =
        foot == 0.0 ? nearest > golden_.firstEdge(ring) : nearest + 1 < golden_.endEdge(ring);
    if (!hasOther) return sideOf(edge, p);
    // At a vertex the outer side of the turn is the one that has points nearest to it.
    const gx_Piece& before = foot == 0.0 ? golden_.piece(nearest - 1) : edge;
    const gx_Piece& after = foot == 0.0 ? edge : golden_.piece(nearest + 1);
    const double turn = gf_Cross(before.b - before.a, after.b - after.a);
    if (turn == 0.0) return sideOf(edge, p);
    return turn > 0.0 ? 1 : -1;
  }

 private:
  static int sideOf(const gx_Piece& edge, const gxVector<2>& p) {
    return gf_Cross(edge.b - edge.a, p - edge.a) > 0.0 ? -1 : 1;
  }

  const gx_BorderTree& golden_;
};

class Measure {
 public:
  Measure(const gx_BorderTree& shape, const gx_BorderTree& golden, const gx_Frame& frame,
          const gxDeviationOptions& options)
      : shape_(shape),
        golden_(golden),
        frame_(frame),
        lower_(frame.lengthTo(options.lower)),
        upper_(frame.lengthTo(options.upper)),
        envelope_(golden),
        sides_(golden) {
    for (std::size_t r = 0; r < golden.rings(); ++r) anyClosed_ = anyClosed_ || golden.isClosed(r);
  }

  void run(gxDeviation& result) {
    for (std::size_t r = 0; r < shape_.rings(); ++r) {
      const std::size_t firstStretch = result.stretches.size();
      open_ = false;
      signIsKnown_ = false;
      for (std::size_t e = shape_.firstEdge(r); e < shape_.endEdge(r); ++e) walkEdge(e, result);
      closeStretch(result);
      if (shape_.isClosed(r)) joinAcrossStart(r, firstStretch, result);
    }
    finish(result);
  }

  double signedAt(const gxVector<2>& p) {
    guess_ = golden_.nearest(p, guess_);
    const double d = std::sqrt(golden_.squareFrom(guess_, p));
    return d == 0.0 ? 0.0 : d * signAt(p, guess_);
  }

 private:
  int signAt(const gxVector<2>& p, std::size_t nearest) const {
    if (anyClosed_) return golden_.holds(p) ? -1 : 1;
    return sides_.of(p, nearest);
  }

  void walkEdge(std::size_t e, gxDeviation& result) {
    const gx_Piece& glide = shape_.piece(e);
    const double length = std::sqrt((glide.b - glide.a) * (glide.b - glide.a));
    for (const gx_Stretch& stretch : envelope_.along(glide)) {
      const gx_Piece& feature = golden_.piece(stretch.feature);
      gx_Cuts zones;
      zones.add(stretch.t0);
      zones.add(stretch.t1);
      gx_addZoneCuts(glide, feature, stretch.t0, stretch.t1, zones);
      for (std::size_t z = 0; z + 1 < zones.count; ++z) {
        Span span{e, zones.t[z], zones.t[z + 1], zones.t[z], {}};
        span.zone = gx_zoneOf(glide, feature, span.start, 0.5 * (span.t0 + span.t1));
        const double lowest = span.start + (span.zone.inside ? -span.zone.at / span.zone.slope
                                                             : -0.5 * span.zone.b / span.zone.c);
        if (lowest > span.t0 && lowest < span.t1) {
          Span first = span;
          first.t1 = lowest;
          take(first, stretch.feature, length, result);
          span.t0 = lowest;
        }
        take(span, stretch.feature, length, result);
      }
    }
  }

  // Takes a span on which the distance is monotonic and the sign is one.
  void take(const Span& span, std::size_t feature, double length, gxDeviation& result) {
    const gx_Piece& glide = shape_.piece(span.edge);
    const double d0 = span.distanceAt(span.t0);
    const double d1 = span.distanceAt(span.t1);
    if (!signIsKnown_ || d0 <= kNearlyOn) sign_ = signAt(glide.at(d0 > d1 ? span.t0 : span.t1), feature);
    signIsKnown_ = true;
    const double v0 = d0 * sign_;
    const double v1 = d1 * sign_;
    considerExtreme(span, span.t0, v0);
    considerExtreme(span, span.t1, v1);
    const double middle = span.squareAt(0.5 * (span.t0 + span.t1));
    squares_ += length * (span.t1 - span.t0) * (d0 * d0 + 4.0 * middle + d1 * d1) / 6.0;
    length_ += length * (span.t1 - span.t0);
    pointSquares_ += d1 * d1;
    ++points_;
    cutAtLimits(span, v0, v1, length, result);
  }

  void considerExtreme(const Span& span, double t, double value) {
    if (value > most_) {
      most_ = value;
      mostEdge_ = span.edge;
      mostT_ = t;
    }
    if (value < least_) {
      least_ = value;
      leastEdge_ = span.edge;
      leastT_ = t;
    }
  }

  int sideOf(double value) const { return value > upper_ ? 1 : value < lower_ ? -1 : 0; }

  void cutAtLimits(const Span& span, double v0, double v1, double length, gxDeviation& result) {
    gx_Cuts cuts;
    cuts.add(span.t0);
    cuts.add(span.t1);
    for (const double limit : {lower_, upper_}) {
      if ((v0 > limit) != (v1 > limit) && std::isfinite(limit)) cuts.add(span.crossing(std::abs(limit)));
    }
    for (std::size_t i = 0; i + 1 < cuts.count; ++i) {
      const double t0 = cuts.t[i];
      const double t1 = cuts.t[i + 1];
      const bool isPoint = t0 == t1 && !(span.t0 == span.t1 || length == 0.0);
      if (isPoint) continue;
      const int side = sideOf(sign_ * span.distanceAt(0.5 * (t0 + t1)));
      if (open_ && side != side_) closeStretch(result);
      if (side == 0) continue;
      if (!open_) openStretch(span.edge, t0, side);
      extend(span, t0, t1, length);
    }
  }

  void openStretch(std::size_t edge, double t, int side) {
    open_ = true;
    side_ = side;
    fromEdge_ = edge;
    fromT_ = t;
    stretchLength_ = 0.0;
    worst_ = -std::numeric_limits<double>::infinity();
  }

  void extend(const Span& span, double t0, double t1, double length) {
    stretchLength_ += length * (t1 - t0);
    toEdge_ = span.edge;
    toT_ = t1;
    for (const double t : {t0, t1}) {
      const double excess = sign_ * span.distanceAt(t) * side_;
      if (excess > worst_) {
        worst_ = excess;
        worstEdge_ = span.edge;
        worstT_ = t;
      }
    }
  }

  void closeStretch(gxDeviation& result) {
    if (!open_) return;
    open_ = false;
    gxDeviationStretch stretch;
    stretch.from = shape_.placeOf(fromEdge_, fromT_);
    stretch.to = shape_.placeOf(toEdge_, toT_);
    stretch.worst = shape_.placeOf(worstEdge_, worstT_);
    stretch.deviation = frame_.lengthFrom(worst_ * side_);
    stretch.length = frame_.lengthFrom(stretchLength_);
    out_ += stretchLength_;
    result.stretches.push_back(stretch);
  }

  // Makes one of the last stretch of a ring and the first, where one ends and the other begins at the
  // start of the walk.
  void joinAcrossStart(std::size_t ring, std::size_t first, gxDeviation& result) const {
    if (result.stretches.size() < first + 2) return;
    const gxDeviationStretch& head = result.stretches[first];
    gxDeviationStretch& tail = result.stretches.back();
    const long lastEdge = static_cast<long>(shape_.endEdge(ring) - shape_.firstEdge(ring)) - 1;
    const bool beginsThere = head.from.edge == 0 && head.from.t == 0.0;
    const bool endsThere = tail.to.edge == lastEdge && tail.to.t == 1.0;
    if (!beginsThere || !endsThere || (head.deviation > 0.0) != (tail.deviation > 0.0)) return;
    if (std::abs(head.deviation) > std::abs(tail.deviation)) {
      tail.worst = head.worst;
      tail.deviation = head.deviation;
    }
    tail.to = head.to;
    tail.length += head.length;
    result.stretches.erase(result.stretches.begin() + static_cast<std::ptrdiff_t>(first));
  }

  void finish(gxDeviation& result) const {
    result.deviationMax = frame_.lengthFrom(most_) + 0.0;
    result.deviationMin = frame_.lengthFrom(least_) + 0.0;
    result.maxPlace = shape_.placeOf(mostEdge_, mostT_);
    result.minPlace = shape_.placeOf(leastEdge_, leastT_);
    const bool hasLength = length_ > 0.0;
    const double mean = hasLength ? squares_ / length_ : pointSquares_ / static_cast<double>(points_);
    result.deviationRms = frame_.lengthFrom(std::sqrt(mean));
    if (hasLength) {
      result.outOfTolerance = std::min(1.0, out_ / length_);
    } else {
      result.outOfTolerance = result.stretches.empty() ? 0.0 : 1.0;
    }
  }

  const gx_BorderTree& shape_;
  const gx_BorderTree& golden_;
  const gx_Frame& frame_;
  double lower_;
  double upper_;
  gx_Envelope envelope_;
  Sides sides_;
  bool anyClosed_ = false;
  std::size_t guess_ = 0;

  int sign_ = 1;
  bool signIsKnown_ = false;
  double most_ = -std::numeric_limits<double>::infinity();
  double least_ = std::numeric_limits<double>::infinity();
  std::size_t mostEdge_ = 0;
  std::size_t leastEdge_ = 0;
  double mostT_ = 0.0;
  double leastT_ = 0.0;
  double squares_ = 0.0;
  double length_ = 0.0;
  double pointSquares_ = 0.0;
  std::size_t points_ = 0;
  double out_ = 0.0;

  bool open_ = false;  // a stretch is being walked
  int side_ = 0;
  std::size_t fromEdge_ = 0;
  std::size_t toEdge_ = 0;
  std::size_t worstEdge_ = 0;
  double fromT_ = 0.0;
  double toT_ = 0.0;
  double worstT_ = 0.0;
  double worst_ = 0.0;
  double stretchLength_ = 0.0;
};

// The places of the samples on one ring; false where there are too many.
bool addPlaces(const gxBorders::Ring& ring, long number, double spacing,
               std::vector<gxDeviationSample>& samples) {
  const gxArcLength arc(ring.points, ring.closed);
  const std::size_t n = ring.points.size();
  const auto add = [&](gxPlace place) {
    place.ring = number;
    samples.push_back({place, std::numeric_limits<double>::quiet_NaN()});
  };
  if (spacing == 0.0 || !(arc.length() > 0.0)) {
    for (std::size_t i = 0; i < n; ++i) {
      gxPlace place;
      place.edge = static_cast<long>(ring.closed || i == 0 ? i : i - 1);
      place.t = ring.closed || i > 0 || n == 1 ? 1.0 : 0.0;
      place.point = ring.points[i];
      add(place);
    }
    return true;
  }
  const double pieces = std::ceil(arc.length() / spacing);
  if (!(pieces + static_cast<double>(samples.size()) <= kMostSamples)) return false;
  const auto count = static_cast<std::size_t>(pieces);
  for (std::size_t k = 0; k < count + (ring.closed ? 0 : 1); ++k) {
    const double s = arc.length() * (static_cast<double>(k) / pieces);
    add(arc.placeAt(k == count ? arc.length() : s));
  }
  return true;
}

gxStatus statusOf(const gxBorders& shape, const gxBorders& golden, const gxDeviationOptions& options) {
  const gxStatus first = gx_statusOf(shape.rings());
  const gxStatus second = gx_statusOf(golden.rings());
  if (!(options.lower <= options.upper) || !(options.spacing >= 0.0)) return gxStatus::eBadArgument;
  if (first == gxStatus::eNotFinite || second == gxStatus::eNotFinite) return gxStatus::eNotFinite;
  return first == gxStatus::eOk ? second : first;
}

}  // namespace

gxDeviation gfDeviation(const gxBorders& shape, const gxBorders& golden,
                        const gxDeviationOptions& options) {
  gxDeviation result;
  result.status = statusOf(shape, golden, options);
  if (result.status != gxStatus::eOk) return result;
  for (std::size_t r = 0; r < shape.rings().size(); ++r) {
    if (!addPlaces(shape.rings()[r], static_cast<long>(r) - 1, options.spacing, result.samples)) {
      gxDeviation tooMany;
      tooMany.status = gxStatus::eBadArgument;
      return tooMany;
    }
  }
  gx_Box box = gx_boxOf(shape.rings());
  box.add(gx_boxOf(golden.rings()));
  const gx_Frame frame(box);
  const gx_BorderTree shapeTree(shape.rings(), frame);
  const gx_BorderTree goldenTree(golden.rings(), frame);
  Measure measure(shapeTree, goldenTree, frame, options);
  measure.run(result);
  for (gxDeviationSample& sample : result.samples) {
    sample.deviation = frame.lengthFrom(measure.signedAt(frame.to(sample.place.point)));
  }
  return result;
}

double gxDeviation::percentile(double share) const {
  std::vector<double> values;
  values.reserve(samples.size());
  for (const gxDeviationSample& sample : samples) values.push_back(sample.deviation);
  return gfPercentile(values, share);
}

double gfPercentile(std::span<const double> values, double share) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  if (values.empty() || !(share >= 0.0 && share <= 1.0)) return kNaN;
  std::vector<double> sorted(values.begin(), values.end());
  if (std::any_of(sorted.begin(), sorted.end(), [](double v) { return std::isnan(v); })) return kNaN;
  const double place = share * static_cast<double>(sorted.size() - 1);
  const auto low = static_cast<std::size_t>(place);
  const auto at = sorted.begin() + static_cast<std::ptrdiff_t>(low);
  std::nth_element(sorted.begin(), at, sorted.end());
  const double rest = place - static_cast<double>(low);
  if (rest == 0.0 || low + 1 == sorted.size()) return *at;
  const double next = *std::min_element(at + 1, sorted.end());
  return *at * (1.0 - rest) + next * rest;
}

std::ostream& operator<<(std::ostream& out, const gxDeviationOptions& options) {
  return out << "tolerance from " << options.lower << " to " << options.upper << ", spacing "
             << options.spacing;
}

std::ostream& operator<<(std::ostream& out, const gxDeviationSample& sample) {
  return out << "deviation " << sample.deviation << " at " << sample.place;
}

std::ostream& operator<<(std::ostream& out, const gxDeviationStretch& stretch) {
  return out << "out of tolerance from " << stretch.from << " to " << stretch.to << ", worst "
             << stretch.deviation << " at " << stretch.worst;
}

std::ostream& operator<<(std::ostream& out, const gxDeviation& deviation) {
  return out << "deviation from " << deviation.deviationMin << " to " << deviation.deviationMax
             << ", rms " << deviation.deviationRms << ", out of tolerance " << deviation.outOfTolerance
             << ", " << deviation.status;
}
