// Gaussian smoothing along the arc.
//
// The curve P(s) is linear between vertices, so the mean under a Gaussian around s0 is a sum over edges in
// closed form: with u = s − s0, G the normal density and Φ its integral, an edge from (u0, P0) to (u1, P1)
// gives  P(at u = 0 on its line) ΔΦ − slope σ² ΔG.  Neighbouring edges share Φ and G at their vertex.
//
// Beyond the ends the curve goes on: an outline around, a poly-line turned by half a turn about its end,
// again and again, which is a straight drift and something periodic.  So vertices are numbered from
// minus to plus infinity.
//
// Where thousands of vertices lie within the reach of the Gaussian, the curve is thinned first: knots
// at least σ / 64 apart, each at the mean of the curve half way to its neighbours.
#include <gauge/arc.h>
#include <gauge/internal/frame.h>
#include <gauge/smooth.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <ostream>

namespace {

using Points = std::vector<gxVector<2>>;

// In standard deviations: what lies beyond is nothing beside 1 in double precision.
constexpr double kReach = 8.5;
constexpr std::size_t kMany = 1000;
constexpr double kThinned = 1.0 / 64.0;
constexpr double kRootHalf = 0.7071067811865476;
constexpr double kRootTwoPi = 2.5066282746310002;

// The curve as knots that go on for ever.
class Curve {
 public:
  Curve(Points points, std::vector<double> sums, bool closed)
      : points_(std::move(points)), sums_(std::move(sums)), closed_(closed) {
    edges_ = static_cast<long>(sums_.size()) - 1;
    drift_ = closed ? gxVector<2>() : points_.back() - points_.front();
  }

  double length() const { return sums_.back(); }
  const gxVector<2>& drift() const { return drift_; }
  const std::vector<double>& sums() const { return sums_; }
  long edges() const { return edges_; }

  double s(long j) const {
    const auto [round, rest] = split(j);
    const double start = static_cast<double>(round) * length();
    if (closed_ || round % 2 == 0) return start + sums_[static_cast<std::size_t>(rest)];
    return start + (length() - sums_[static_cast<std::size_t>(edges_ - rest)]);
  }
  gxVector<2> at(long j) const {
    const auto [round, rest] = split(j);
    if (closed_) return points_[static_cast<std::size_t>(rest)];
    const gxVector<2> moved = drift_ * static_cast<double>(round);
    if (round % 2 == 0) return points_[static_cast<std::size_t>(rest)] + moved;
    return points_.front() + points_.back() + moved - points_[static_cast<std::size_t>(edges_ - rest)];
  }

 private:
  std::pair<long, long> split(long j) const {
    const long round = j >= 0 ? j / edges_ : -((edges_ - 1 - j) / edges_);
    return {round, j - round * edges_};
  }

  Points points_;
  std::vector<double> sums_;
  bool closed_;
  long edges_;
  gxVector<2> drift_;
};

struct Smooth {
  gxVector<2> point;
  gxVector<2> second;  // derivative by arc length
};

// The mean under the Gaussian around s0; `low` is a knot that is not within its reach, and the one after
// the next may be.
Smooth meanAround(const Curve& curve, double s0, double sigma, long low) {
  const double reach = kReach * sigma;
  gxVector<2> sum;
  gxVector<2> second;
  double weight = 0.0;
  gxVector<2> slopeBefore;
  bool first = true;
  double u0 = curve.s(low) - s0;
  gxVector<2> p0 = curve.at(low);
  double phi0 = 0.5 * std::erf(std::max(u0, -reach) / sigma * kRootHalf);
  double g0 = std::exp(-0.5 * (u0 / sigma) * (u0 / sigma));
  for (long j = low + 1; u0 < reach; ++j) {
    const double u1 = curve.s(j) - s0;
    const gxVector<2> p1 = curve.at(j);
    const double phi1 = 0.5 * std::erf(u1 / sigma * kRootHalf);
    const double g1 = std::exp(-0.5 * (u1 / sigma) * (u1 / sigma));
    if (u1 > u0) {
      const gxVector<2> slope = (p1 - p0) / (u1 - u0);
      sum += (p0 - slope * u0) * (phi1 - phi0) - slope * (sigma * (g1 - g0) / kRootTwoPi);
      weight += phi1 - phi0;
      if (!first) second += (slope - slopeBefore) * (g0 / (sigma * kRootTwoPi));
      slopeBefore = slope;
      first = false;
    }
    u0 = u1;
    p0 = p1;
    phi0 = phi1;
    g0 = g1;
  }
  return {sum / weight, second};
}

// Undoes the shrinking of a circle with that second derivative after smoothing, m = exp(−σ²/2r²) / r:
// the larger of the two radii, by Newton's method in x = σ/r from 0, where x exp(−x²/2) = σ m is concave.
gxVector<2> unshrunk(const Smooth& smooth, double sigma) {
  const double m = smooth.second.len();
  const double target = std::min(sigma * m, 0.6);  // the most that a circle can give is exp(−1/2)
  if (!(target > 1e-12)) return smooth.point;
  double x = target;
  for (int i = 0; i < 40; ++i) {
    const double e = std::exp(-0.5 * x * x);
    const double step = (target - x * e) / (e * (1.0 - x * x));
    x = std::min(x + step, 0.999);
    if (std::abs(step) < 1e-15) break;
  }
  const double radius = sigma / x;
  return smooth.point - smooth.second / m * (radius * (1.0 - std::exp(-0.5 * x * x)));
}

// Knots at least `least` apart, each at the mean of the curve half way to its neighbours.
Curve thinned(const Points& points, const std::vector<double>& sums, bool closed, double least) {
  const std::size_t n = points.size();
  const auto at = [&](std::size_t i) { return points[i == n ? 0 : i]; };
  Points integral(sums.size());
  for (std::size_t i = 1; i < sums.size(); ++i) {
    integral[i] = integral[i - 1] + (at(i - 1) + at(i)) * (0.5 * (sums[i] - sums[i - 1]));
  }
  std::vector<std::size_t> kept{0};
  for (std::size_t i = 1; i + 1 < sums.size(); ++i) {
    if (sums[i] - sums[kept.back()] >= least) kept.push_back(i);
  }
  kept.push_back(sums.size() - 1);
  Points knots;
  std::vector<double> lengths;
  for (std::size_t k = 0; k < kept.size(); ++k) {
    lengths.push_back(sums[kept[k]]);
    const bool between = k > 0 && k + 1 < kept.size();
    // Single edges are left alone: their ends are the curve itself.
    if (!between || (kept[k] - kept[k - 1] == 1 && kept[k + 1] - kept[k] == 1)) {
      knots.push_back(at(kept[k]));
      continue;
    }
    const std::size_t low = (kept[k - 1] + kept[k]) / 2;
    const std::size_t high = (kept[k] + kept[k + 1] + 1) / 2;
    knots.push_back((integral[high] - integral[low]) / (sums[high] - sums[low]));
  }
  if (closed) knots.pop_back();
  return {knots, lengths, closed};
}

// The greatest number of vertices within the reach of one.
std::size_t mostWithin(const std::vector<double>& sums, double reach) {
  std::size_t most = 0;
  std::size_t j = 0;
  for (std::size_t i = 0; i < sums.size(); ++i) {
    while (sums[i] - sums[j] > reach) ++j;
    most = std::max(most, i - j);
  }
  return reach > sums.back() ? most * static_cast<std::size_t>(std::ceil(reach / sums.back())) : most;
}

gxVector<2> meanPosition(const gxArcLength& arc, const Points& points) {
  gxVector<2> sum;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const gxVector<2>& b = points[i + 1 == points.size() ? 0 : i + 1];
    sum += (points[i] + b) * (0.5 * (arc.lengthTo(i + 1) - arc.lengthTo(i)));
  }
  return sum / arc.length();
}

Points smoothed(const gxArcLength& arc, double sigma, gxSmoothCorrection correction) {
  const Points& points = arc.points();
  const std::size_t n = points.size();
  std::vector<double> sums;
  for (std::size_t i = 0; i < n + (arc.isClosed() ? 1 : 0); ++i) sums.push_back(arc.lengthTo(i));
  const bool many = mostWithin(sums, kReach * sigma) > kMany;
  const Curve curve = many ? thinned(points, sums, arc.isClosed(), kThinned * sigma)
                           : Curve(points, sums, arc.isClosed());
  Points result;
  result.reserve(n);
  long low = -1;
  while (curve.s(low) > -kReach * sigma) --low;
  for (std::size_t i = 0; i < n; ++i) {
    const bool isEnd = !arc.isClosed() && (i == 0 || i + 1 == n);
    while (curve.s(low + 1) <= sums[i] - kReach * sigma) ++low;
    const Smooth smooth = meanAround(curve, sums[i], sigma, low);
    if (isEnd) {
      result.push_back(points[i]);
    } else {
      result.push_back(correction == gxSmoothCorrection::eNone ? smooth.point : unshrunk(smooth, sigma));
    }
  }
  return result;
}

}  // namespace

gxSmoothed gfSmooth(std::span<const gxVector<2>> points, bool closed, double sigma,
                    gxSmoothCorrection correction) {
  if (points.empty()) return {gxStatus::eEmpty, {}};
  if (!gx_allFinite(points)) return {gxStatus::eNotFinite, {}};
  if (!(sigma >= 0.0) || !std::isfinite(sigma)) return {gxStatus::eBadArgument, {}};
  const Points source(points.begin(), points.end());
  if (sigma == 0.0) return {gxStatus::eOk, source};
  const gx_Frame frame(points);
  Points inFrame;
  inFrame.reserve(points.size());
  for (const gxVector<2>& p : points) inFrame.push_back(frame.to(p));
  const gxArcLength arc(inFrame, closed);
  if (!(arc.length() > 0.0)) return {gxStatus::eFlat, source};
  const double width = frame.lengthTo(sigma);
  gxSmoothed result;
  if (closed && width > 2.0 * arc.length()) {
    result.points.assign(points.size(), frame.from(meanPosition(arc, inFrame)));
    return result;
  }
  if (!closed && width > 3.0 * arc.length()) {
    for (std::size_t i = 0; i < inFrame.size(); ++i) {
      const double t = arc.lengthTo(i) / arc.length();
      result.points.push_back(frame.from(inFrame.front() * (1.0 - t) + inFrame.back() * t));
    }
  } else {
    result.points = smoothed(arc, width, correction);
    for (gxVector<2>& p : result.points) p = frame.from(p);
  }
  if (!closed) {
    result.points.front() = source.front();
    result.points.back() = source.back();
  }
  return result;
}

gxSmoothed gfSmooth(const gxContour& contour, double sigma, gxSmoothCorrection correction) {
  return gfSmooth(contour.points(), contour.isClosed(), sigma, correction);
}

std::ostream& operator<<(std::ostream& out, const gxSmoothed& smoothed) {
  out << smoothed.points.size() << " points";
  if (smoothed.status != gxStatus::eOk) out << ' ' << smoothed.status;
  return out;
}
