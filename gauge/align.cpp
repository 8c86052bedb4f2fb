// Alignment.
//
//   1. Both shapes are seen from the middle of their own box, in one scale; the shape's border is sampled at
//      equal arc lengths.
//   2. Start: centre upon centre, in each of several directions.  A hundred samples take a few rounds of
//      the closed form for pairs of points; the direction with the least cost goes on, the first of those
//      within a hundredth of it, the least rotations first.
//   3. Rounds: the nearest point of the golden border for each sample, the distance along the normal there
//      as a linear function of a small motion about the samples' centre, Tukey's weights from the median,
//      normal equations in four unknowns.  What the equations do not determine (an eigenvalue below 1e-10
//      of the largest) is left as it is.  A step that makes the cost greater is halved.
//
// The nearest point of a vertex has the direction to the sample for its normal, so what is minimized is the
// true distance, also at corners.  A sample that moves across that direction leaves the vertex behind, too:
// there both coordinates count.  With the distance along the normal alone the steps come out too long, and
// halving them ends far from the minimum.
#include <gauge/align.h>
#include <gauge/arc.h>
#include <gauge/internal/border_tree.h>
#include <gauge/internal/eigen4.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ostream>
#include <vector>

namespace {

using Points = std::vector<gxVector<2>>;

constexpr double kPi = 3.141592653589793;
constexpr double kTukey = 4.685;       // 95 % efficiency for Gaussian noise
constexpr double kMad = 1.4826;        // the standard deviation of a Gaussian over its median deviation
constexpr double kLeastSigma = 1e-13;  // rounding, in a frame of size 1 to 2
constexpr double kLastStep = 1e-12;
constexpr double kDetermined = 1e-10;
constexpr std::size_t kFewSamples = 128;
constexpr int kStartRounds = 12;

// p → shift + stretch · R p, both as one complex number: (c, s) = scale (cos, sin).
struct Motion {
  double c = 1.0;
  double s = 0.0;
  gxVector<2> shift;

  gxVector<2> of(const gxVector<2>& p) const {
    return gxVector<2>(c * p.x() - s * p.y(), s * p.x() + c * p.y()) + shift;
  }
  double scale() const { return std::hypot(c, s); }
};

// What a small motion about `centre` does after another one.
Motion after(const Motion& motion, const gxVector<2>& centre, double dx, double dy, double turn,
             double stretch) {
  const double factor = 1.0 + stretch;
  const double c = factor * std::cos(turn);
  const double s = factor * std::sin(turn);
  Motion result;
  result.c = c * motion.c - s * motion.s;
  result.s = s * motion.c + c * motion.s;
  const gxVector<2> d = motion.shift - centre;
  result.shift =
      gxVector<2>(c * d.x() - s * d.y(), s * d.x() + c * d.y()) + centre + gxVector<2>(dx, dy);
  return result;
}

struct Residual {
  double distance;
  gxVector<2> normal;
  gxVector<2> foot;
  bool atVertex;  // the foot stays where it is when the sample moves a little
};

class Matcher {
 public:
  Matcher(const Points& samples, const gx_BorderTree& golden) : samples_(samples), golden_(golden) {}

  std::size_t size() const { return samples_.size(); }
  const gxVector<2>& sample(std::size_t i) const { return samples_[i]; }

  void measure(const Motion& motion, std::vector<Residual>& residuals) {
    residuals.resize(samples_.size());
    for (std::size_t i = 0; i < samples_.size(); ++i) {
      const gxVector<2> p = motion.of(samples_[i]);
      guess_ = golden_.nearest(p, guess_);
      const gx_Piece& edge = golden_.piece(guess_);
      const double t = edge.footFrom(p);
      const gxVector<2> foot = edge.at(t);
      const gxVector<2> along = edge.b - edge.a;
      const double length = std::sqrt(along * along);
      if (length > 0.0 && t > 0.0 && t < 1.0) {
        const gxVector<2> normal(along.y() / length, -along.x() / length);
        residuals[i] = {normal * (p - foot), normal, foot, false};
        continue;
      }
      const double d = std::sqrt((p - foot) * (p - foot));
      if (d > 0.0) {
        residuals[i] = {d, (p - foot) / d, foot, true};
      } else {
        residuals[i] = {
            0.0,
            length > 0.0 ? gxVector<2>(along.y() / length, -along.x() / length) : gxVector<2>(1.0, 0.0),
            foot, length == 0.0};
      }
    }
  }

 private:
  const Points& samples_;
  const gx_BorderTree& golden_;
  std::size_t guess_ = 0;
};

double sigmaOf(const std::vector<Residual>& residuals) {
  std::vector<double> sizes;
  sizes.reserve(residuals.size());
  for (const Residual& r : residuals) sizes.push_back(std::abs(r.distance));
  const auto middle = sizes.begin() + static_cast<std::ptrdiff_t>(sizes.size() / 2);
  std::nth_element(sizes.begin(), middle, sizes.end());
  return std::max(kMad * *middle, kLeastSigma);
}

double weightOf(double distance, double sigma, bool robust) {
  if (!robust) return 1.0;
  const double u = distance / (kTukey * sigma);
  return std::abs(u) < 1.0 ? (1.0 - u * u) * (1.0 - u * u) : 0.0;
}

// Tukey's function of the distances, in units of their square where they are small; or their squares.
double costOf(const std::vector<Residual>& residuals, double sigma, bool robust) {
  double sum = 0.0;
  const double c = kTukey * sigma;
  for (const Residual& r : residuals) {
    if (!robust) {
      sum += r.distance * r.distance;
      continue;
    }
    const double u = std::min(1.0, (r.distance / c) * (r.distance / c));
    sum += c * c / 3.0 * (1.0 - (1.0 - u) * (1.0 - u) * (1.0 - u));
  }
  return sum;
}

// A step: dx, dy, turn, stretch about the centre; which of them the residuals leave open.
struct Step {
  std::array<double, 4> d{};
  std::array<bool, 4> isFree{};
};

Step stepOf(const Matcher& matcher, const Motion& motion, const std::vector<Residual>& residuals,
            double sigma, const gxAlignOptions& options, const gxVector<2>& centre) {
  gx_Eigen4 system;
  std::array<double, 4> right{};
  for (std::size_t i = 0; i < residuals.size(); ++i) {
    const Residual& r = residuals[i];
    const double w = weightOf(r.distance, sigma, options.robust);
    if (w == 0.0) continue;
    const gxVector<2> arm = motion.of(matcher.sample(i)) - centre;
    const auto add = [&](const gxVector<2>& direction, double distance) {
      const std::array<double, 4> row{direction.x(), direction.y(), gf_Cross(arm, direction),
                                      options.scales ? direction * arm : 0.0};
      for (std::size_t p = 0; p < 4; ++p) {
        for (std::size_t q = 0; q < 4; ++q) system.a[p][q] += w * row[p] * row[q];
        right[p] -= w * row[p] * distance;
      }
    };
    add(r.normal, r.distance);
    if (r.atVertex) add({-r.normal.y(), r.normal.x()}, 0.0);
  }
  system.solve();
  double largest = 0.0;
  for (std::size_t k = 0; k < 4; ++k) largest = std::max(largest, system.a[k][k]);
  Step step;
  for (std::size_t k = 0; k < 4; ++k) {
    if (system.a[k][k] > kDetermined * largest) {
      double part = 0.0;
      for (std::size_t p = 0; p < 4; ++p) part += system.v[p][k] * right[p];
      for (std::size_t p = 0; p < 4; ++p) step.d[p] += system.v[p][k] * part / system.a[k][k];
      continue;
    }
    for (std::size_t p = 0; p < 4; ++p) {
      if (system.v[p][k] * system.v[p][k] > 0.3) step.isFree[p] = true;
    }
  }
  return step;
}

gxVector<2> meanOf(const Points& points) {
  gxVector<2> sum;
  for (const gxVector<2>& p : points) sum += p;
  return sum / static_cast<double>(points.size());
}

// One round of the closed form: the motion that lays the moved samples upon their nearest points.
Motion pointRound(const Matcher& matcher, const Motion& motion, const std::vector<Residual>& residuals,
                  double sigma, const gxAlignOptions& options) {
  gxVector<2> from;
  gxVector<2> to;
  double total = 0.0;
  std::vector<double> weights;
  for (std::size_t i = 0; i < residuals.size(); ++i) {
    const double w = weightOf(residuals[i].distance, sigma, options.robust);
    weights.push_back(w);
    from += motion.of(matcher.sample(i)) * w;
    to += residuals[i].foot * w;
    total += w;
  }
  if (!(total > 0.0)) return motion;
  from = from / total;
  to = to / total;
  double dot = 0.0;
  double cross = 0.0;
  double squares = 0.0;
  for (std::size_t i = 0; i < residuals.size(); ++i) {
    const gxVector<2> p = motion.of(matcher.sample(i)) - from;
    const gxVector<2> q = residuals[i].foot - to;
    dot += weights[i] * (p * q);
    cross += weights[i] * gf_Cross(p, q);
    squares += weights[i] * (p * p);
  }
  const double size = std::hypot(dot, cross);
  if (!(size > 0.0) || !(squares > 0.0)) return motion;
  const double stretch = options.scales ? size / squares - 1.0 : 0.0;
  return after(motion, from, to.x() - from.x(), to.y() - from.y(), std::atan2(cross, dot), stretch);
}

// The centre of a sampled border, the direction of its longer axis, how much longer it is, and its size.
struct Axes {
  gxVector<2> centre;
  double angle = 0.0;
  double ratio = 1.0;
  double size = 0.0;

  explicit Axes(const Points& points) : centre(meanOf(points)) {
    double xx = 0.0;
    double xy = 0.0;
    double yy = 0.0;
    for (const gxVector<2>& p : points) {
      const gxVector<2> d = p - centre;
      xx += d.x() * d.x();
      xy += d.x() * d.y();
      yy += d.y() * d.y();
    }
    angle = 0.5 * std::atan2(2.0 * xy, xx - yy);
    const double root = std::hypot(0.5 * (xx - yy), xy);
    const double mean = 0.5 * (xx + yy);
    ratio = mean > root ? (mean + root) / (mean - root) : std::numeric_limits<double>::infinity();
    size = std::sqrt((xx + yy) / static_cast<double>(points.size()));
  }
};

std::vector<double> startAngles(const Axes& shape, const Axes& golden) {
  constexpr double kSaysLittle = 1.05;
  std::vector<double> angles;
  if (shape.ratio > kSaysLittle && golden.ratio > kSaysLittle) {
    const double turn = std::remainder(golden.angle - shape.angle, 2.0 * kPi);
    angles = {turn, std::remainder(turn + kPi, 2.0 * kPi)};
  }
  if (angles.empty()) {
    for (int k = 0; k < 24; ++k) angles.push_back(std::remainder(kPi / 12.0 * k, 2.0 * kPi));
  }
  std::stable_sort(angles.begin(), angles.end(),
                   [](double a, double b) { return std::abs(a) < std::abs(b); });
  return angles;
}

// Samples of all rings at equal arc lengths, about as many as asked for, seen in the frame.
Points sampled(const gxBorders& borders, const gx_Frame& frame, std::size_t count) {
  std::vector<gxArcLength> arcs;
  double total = 0.0;
  Points inFrame;
  for (const gxBorders::Ring& ring : borders.rings()) {
    inFrame.clear();
    for (const gxVector<2>& p : ring.points) inFrame.push_back(frame.to(p));
    arcs.emplace_back(inFrame, ring.closed);
    total += arcs.back().length();
  }
  Points samples;
  for (const gxArcLength& arc : arcs) {
    if (arc.points().empty()) continue;
    const double share = total > 0.0 ? arc.length() / total : 0.0;
    const double pieces = std::max(1.0, std::ceil(share * static_cast<double>(count)));
    for (std::size_t k = 0; k < static_cast<std::size_t>(pieces); ++k) {
      samples.push_back(arc.at(arc.length() * ((static_cast<double>(k) + 0.5) / pieces)));
    }
  }
  return samples;
}

class Aligner {
 public:
  Aligner(const Points& samples, const gx_BorderTree& golden, const gxAlignOptions& options)
      : samples_(samples), golden_(golden), options_(options) {}

  // Chooses the direction to start from.
  Motion start(const Points& goldenSamples) {
    Points few;
    const std::size_t step = (samples_.size() + kFewSamples - 1) / kFewSamples;
    for (std::size_t i = 0; i < samples_.size(); i += step) few.push_back(samples_[i]);
    Matcher matcher(few, golden_);
    const Axes shape(samples_);
    const Axes golden(goldenSamples);
    Motion best;
    double least = std::numeric_limits<double>::infinity();
    for (const double angle : startAngles(shape, golden)) {
      const double scale = options_.scales ? golden.size / shape.size : 1.0;
      Motion motion{scale * std::cos(angle), scale * std::sin(angle), {}};
      motion.shift = golden.centre - motion.of(shape.centre);
      for (int round = 0; round < kStartRounds; ++round) {
        matcher.measure(motion, residuals_);
        motion = pointRound(matcher, motion, residuals_, sigmaOf(residuals_), options_);
      }
      matcher.measure(motion, residuals_);
      double cost = 0.0;
      for (const Residual& r : residuals_) cost += std::min(std::abs(r.distance), 0.1);
      if (cost < 0.99 * least) {
        least = cost;
        best = motion;
      }
    }
    return best;
  }

  Motion refine(Motion motion, gxAlignment& result) {
    Matcher matcher(samples_, golden_);
    matcher.measure(motion, residuals_);
    for (result.rounds = 0; result.rounds < options_.mostRounds && !result.converged;) {
      ++result.rounds;
      const double sigma = sigmaOf(residuals_);
      const double cost = costOf(residuals_, sigma, options_.robust);
      gxVector<2> centre = motion.of(meanOf(samples_));
      const Step step = stepOf(matcher, motion, residuals_, sigma, options_, centre);
      result.freeShift = step.isFree[0] || step.isFree[1];
      result.freeAngle = step.isFree[2];
      result.freeScale = options_.scales && step.isFree[3];
      double size = 0.0;
      for (const double d : step.d) size = std::max(size, std::abs(d));
      double factor = 1.0;
      Motion next = motion;
      bool lower = false;
      for (;;) {
        const double stretch = std::max(factor * step.d[3], -0.5);
        next =
            after(motion, centre, factor * step.d[0], factor * step.d[1], factor * step.d[2], stretch);
        matcher.measure(next, trial_);
        lower = costOf(trial_, sigma, options_.robust) <= cost * (1.0 + 1e-12) + 1e-28;
        if (lower || factor * size < kLastStep) break;
        factor *= 0.5;
      }
      if (lower) {
        motion = next;
        residuals_.swap(trial_);
      }
      result.converged = factor * size < kLastStep;
    }
    const double sigma = sigmaOf(residuals_);
    double squares = 0.0;
    double weights = 0.0;
    for (const Residual& r : residuals_) {
      const double w = weightOf(r.distance, sigma, options_.robust);
      squares += w * r.distance * r.distance;
      weights += w;
    }
    result.residual = std::sqrt(squares / weights);
    return motion;
  }

 private:
  const Points& samples_;
  const gx_BorderTree& golden_;
  const gxAlignOptions& options_;
  std::vector<Residual> residuals_;
  std::vector<Residual> trial_;
};

// Two frames of one scale, each around the middle of its own shape.
std::pair<gx_Frame, gx_Frame> frames(const gx_Box& shape, const gx_Box& golden) {
  const auto half = [](const gx_Box& box) {
    return std::max(0.5 * box.highX - 0.5 * box.lowX, 0.5 * box.highY - 0.5 * box.lowY);
  };
  const auto around = [](const gx_Box& box, double reach) {
    const double x = 0.5 * box.lowX + 0.5 * box.highX;
    const double y = 0.5 * box.lowY + 0.5 * box.highY;
    gx_Box wide;
    wide.add(gxVector<2>(x - reach, y - reach));
    wide.add(gxVector<2>(x + reach, y + reach));
    return wide;
  };
  double reach = std::max(half(shape), half(golden));
  std::pair<gx_Frame, gx_Frame> result{gx_Frame(around(shape, reach)), gx_Frame(around(golden, reach))};
  // Rounding may put the half sides on different sides of a power of two.
  for (int i = 0; i < 4 && result.first.lengthTo(1.0) != result.second.lengthTo(1.0); ++i) {
    reach *= 0.99;
    result = {gx_Frame(around(shape, reach)), gx_Frame(around(golden, reach))};
  }
  return result;
}

gxStatus statusOf(const gxBorders& shape, const gxBorders& golden, const gxAlignOptions& options) {
  const gxStatus first = gx_statusOf(shape.rings());
  const gxStatus second = gx_statusOf(golden.rings());
  if (options.samples == 0 || options.mostRounds <= 0) return gxStatus::eBadArgument;
  if (first == gxStatus::eNotFinite || second == gxStatus::eNotFinite) return gxStatus::eNotFinite;
  if (first != gxStatus::eOk || second != gxStatus::eOk) return gxStatus::eEmpty;
  const auto isPoint = [](const gx_Box& box) { return box.lowX == box.highX && box.lowY == box.highY; };
  const bool points = isPoint(gx_boxOf(shape.rings())) || isPoint(gx_boxOf(golden.rings()));
  return points ? gxStatus::eUndetermined : gxStatus::eOk;
}

}  // namespace

gxVector<2> gxAlignment::map(const gxVector<2>& point) const {
  const gxVector<2> d = point - centre;
  const double c = scale * std::cos(angle.toDouble());
  const double s = scale * std::sin(angle.toDouble());
  return gxVector<2>(c * d.x() - s * d.y(), s * d.x() + c * d.y()) + (centre + shift);
}

gxXform<2> gxAlignment::transform() const {
  const gxMatrix<2> turn(angle, angle, scale, scale);
  return gxXform<2>(turn, centre + shift - turn * centre);
}

gxAlignment gfAlign(const gxBorders& shape, const gxBorders& golden, const gxAlignOptions& options) {
  gxAlignment result;
  result.status = statusOf(shape, golden, options);
  if (result.status != gxStatus::eOk) return result;
  const auto [ours, theirs] = frames(gx_boxOf(shape.rings()), gx_boxOf(golden.rings()));
  const Points samples = sampled(shape, ours, options.samples);
  const gx_BorderTree tree(golden.rings(), theirs);
  Aligner aligner(samples, tree, options);
  Motion motion;
  if (options.startsInPlace) {
    motion.shift = theirs.to(ours.middle());
  } else {
    motion = aligner.start(sampled(golden, theirs, options.samples));
  }
  motion = aligner.refine(motion, result);
  result.centre = ours.middle();
  result.scale = options.scales ? motion.scale() : 1.0;
  const double angle = std::atan2(motion.s, motion.c);
  result.angle = gxRadian(angle <= -kPi ? kPi : angle + 0.0);
  result.shift = theirs.from(motion.shift) - ours.middle();
  result.residual = theirs.lengthFrom(result.residual);
  return result;
}

std::ostream& operator<<(std::ostream& out, const gxAlignOptions& options) {
  return out << (options.scales ? "scales" : "rigid") << (options.robust ? ", robust" : ", all alike")
             << (options.startsInPlace ? ", from its place, " : ", from anywhere, ")
             << options.mostRounds << " rounds, " << options.samples << " samples";
}

std::ostream& operator<<(std::ostream& out, const gxAlignment& alignment) {
  return out << "alignment: angle " << alignment.angle.toDouble() << ", scale " << alignment.scale
             << ", shift (" << alignment.shift.x() << ", " << alignment.shift.y() << "), residual "
             << alignment.residual << " after " << alignment.rounds << " rounds, " << alignment.status;
}
