// Tangent, curvature, corners.
//
// Curvature: the points of the window are seen from the vertex, in units of the window.  The parabola is a
// weighted least squares fit of x and y by 1, s, s².  The circle is fitted in the direction of the chord of
// the window, as  v = a + b u + c (u² + v²):  linear in a, b, c, exact on circles, and a line where c is 0.
// Fitting the circle by its centre and radius would have no answer on a line.
//
// Corners: each side is sampled at equal arc lengths, so that it does not matter where the vertices lie, and
// a line through the samples' mean gives the direction of that side.
#include <gauge/arc.h>
#include <gauge/curvature.h>
#include <gauge/internal/frame.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ostream>

namespace {

using Points = std::vector<gxVector<2>>;

constexpr double kPi = 3.141592653589793;
constexpr std::size_t kMostOnSide = 256;

struct Sample {
  double s;  // from −1 to 1
  double weight;
  gxVector<2> p;  // seen from the vertex, in units of the window
};

// Solves three normal equations; false where the pivots say that they do not determine the answer.
bool solve3(std::array<std::array<double, 4>, 3>& m, std::array<double, 3>& x) {
  constexpr double kSingular = 1e-11;
  const double largest = std::max({std::abs(m[0][0]), std::abs(m[1][1]), std::abs(m[2][2])});
  for (std::size_t c = 0; c < 3; ++c) {
    std::size_t pivot = c;
    for (std::size_t r = c + 1; r < 3; ++r) {
      if (std::abs(m[r][c]) > std::abs(m[pivot][c])) pivot = r;
    }
    std::swap(m[c], m[pivot]);
    if (!(std::abs(m[c][c]) > kSingular * largest)) return false;
    for (std::size_t r = c + 1; r < 3; ++r) {
      const double factor = m[r][c] / m[c][c];
      for (std::size_t k = c; k < 4; ++k) m[r][k] -= factor * m[c][k];
    }
  }
  for (std::size_t r = 3; r-- > 0;) {
    double value = m[r][3];
    for (std::size_t k = r + 1; k < 3; ++k) value -= m[r][k] * x[k];
    x[r] = value / m[r][r];
  }
  return true;
}

// Fits target(sample) by the three functions of rows(sample).
template <class Rows, class Target>
bool leastSquares(const std::vector<Sample>& samples, const Rows& rows, const Target& target,
                  std::array<double, 3>& x) {
  std::array<std::array<double, 4>, 3> m{};
  for (const Sample& sample : samples) {
    const std::array<double, 3> row = rows(sample);
    for (std::size_t r = 0; r < 3; ++r) {
      for (std::size_t c = 0; c < 3; ++c) m[r][c] += sample.weight * row[r] * row[c];
      m[r][3] += sample.weight * row[r] * target(sample);
    }
  }
  return solve3(m, x);
}

gxBend bendOf(const gxVector<2>& tangent, double curvature, double window) {
  gxBend bend;
  const gxVector<2> unit = tangent.unit();
  if (!(unit * unit > 0.5) || !std::isfinite(curvature)) return bend;
  bend.tangent = unit;
  bend.normal = {unit.y(), -unit.x()};
  bend.curvature = curvature / window + 0.0;
  return bend;
}

gxBend parabola(const std::vector<Sample>& samples, double window) {
  const auto rows = [](const Sample& q) { return std::array<double, 3>{1.0, q.s, q.s * q.s}; };
  std::array<double, 3> x{};
  std::array<double, 3> y{};
  if (!leastSquares(
          samples, rows, [](const Sample& q) { return q.p.x(); }, x))
    return {};
  if (!leastSquares(
          samples, rows, [](const Sample& q) { return q.p.y(); }, y))
    return {};
  const gxVector<2> first(x[1], y[1]);
  const gxVector<2> second(2.0 * x[2], 2.0 * y[2]);
  const double speed = first.len();
  return bendOf(first, gf_Cross(first, second) / (speed * speed * speed), window);
}

gxBend circle(const std::vector<Sample>& samples, double window) {
  const gxVector<2> along = (samples.back().p - samples.front().p).unit();
  if (!(along * along > 0.5)) return {};
  const auto u = [&along](const Sample& q) { return along * q.p; };
  const auto v = [&along](const Sample& q) { return gf_Cross(along, q.p); };
  std::array<double, 3> x{};
  const bool found = leastSquares(
      samples,
      [&](const Sample& q) {
        return std::array<double, 3>{1.0, u(q), q.p * q.p};
      },
      v, x);
  if (!found) return {};
  const auto [a, b, c] = x;
  // At the vertex itself the gradient of a + b u + c (u² + v²) − v is (b, −1).
  const gxVector<2> tangent = (along + gxVector<2>(-along.y(), along.x()) * b);
  return bendOf(tangent, 2.0 * c / std::sqrt(b * b + 1.0 - 4.0 * a * c), window);
}

// The points within the window of vertex i, in the order of the walk.
void collect(const gxArcLength& arc, std::size_t i, double window, std::vector<Sample>& samples) {
  const Points& points = arc.points();
  const std::size_t n = points.size();
  const double here = arc.lengthTo(i);
  samples.clear();
  // One side: step by step away from the vertex, `count` points that are within the window.
  const auto reach = [&](bool forward, std::size_t k, double& s) {
    if (k >= n) return false;
    if (forward) {
      if (!arc.isClosed() && i + k >= n) return false;
      s = i + k < n ? arc.lengthTo(i + k) - here : arc.length() - here + arc.lengthTo(i + k - n);
    } else {
      if (!arc.isClosed() && k > i) return false;
      s = k <= i ? arc.lengthTo(i - k) - here : arc.lengthTo(i + n - k) - arc.length() - here;
    }
    return std::abs(s) < window && std::abs(s) <= 0.5 * arc.length() * (arc.isClosed() ? 1.0 : 2.0);
  };
  const auto countOf = [&](bool forward) {
    std::size_t low = 0;
    std::size_t high = n;
    double s = 0.0;
    while (high - low > 1) {
      const std::size_t middle = low + (high - low) / 2;
      (reach(forward, middle, s) ? low : high) = middle;
    }
    return low;
  };
  const std::size_t before = countOf(false);
  const std::size_t after = countOf(true);
  const auto stride = [](std::size_t count) { return (count + kMostOnSide - 1) / kMostOnSide; };
  const auto add = [&](std::size_t j, double s) {
    samples.push_back({s / window, 1.0 - std::abs(s) / window, (points[j] - points[i]) / window});
  };
  double s = 0.0;
  const std::size_t back = std::max<std::size_t>(1, stride(before));
  for (std::size_t k = before / back * back; k > 0; k -= back) {
    reach(false, k, s);
    add(k <= i ? i - k : i + n - k, s);
  }
  add(i, 0.0);
  const std::size_t ahead = std::max<std::size_t>(1, stride(after));
  for (std::size_t k = ahead; k <= after; k += ahead) {
    reach(true, k, s);
    add(i + k < n ? i + k : i + k - n, s);
  }
}

bool hasThreeDistinct(const std::vector<Sample>& samples) {
  const gxVector<2>* first = nullptr;
  const gxVector<2>* second = nullptr;
  for (const Sample& sample : samples) {
    if (first == nullptr) {
      first = &sample.p;
    } else if (second == nullptr) {
      if (!(sample.p == *first)) second = &sample.p;
    } else if (!(sample.p == *first) && !(sample.p == *second)) {
      return true;
    }
  }
  return false;
}

Points inFrame(std::span<const gxVector<2>> points, const gx_Frame& frame) {
  Points result;
  result.reserve(points.size());
  for (const gxVector<2>& p : points) result.push_back(frame.to(p));
  return result;
}

gxStatus statusOf(std::span<const gxVector<2>> points, double window) {
  if (points.empty()) return gxStatus::eEmpty;
  if (!gx_allFinite(points)) return gxStatus::eNotFinite;
  return window > 0.0 && std::isfinite(window) ? gxStatus::eOk : gxStatus::eBadArgument;
}

// The direction of the curve over a window before or after a vertex, along the walk: of the line nearest
// to samples at equal arc lengths.
gxVector<2> sideDirection(const gxArcLength& arc, double from, double to) {
  constexpr std::size_t kSamples = 17;
  std::array<gxVector<2>, kSamples> p;
  gxVector<2> mean;
  for (std::size_t k = 0; k < kSamples; ++k) {
    p[k] = arc.at(from + (to - from) * (static_cast<double>(k) / (kSamples - 1.0)));
    mean += p[k];
  }
  mean = mean / static_cast<double>(kSamples);
  double xx = 0.0;
  double xy = 0.0;
  double yy = 0.0;
  for (const gxVector<2>& q : p) {
    const gxVector<2> d = q - mean;
    xx += d.x() * d.x();
    xy += d.x() * d.y();
    yy += d.y() * d.y();
  }
  const gxVector<2> direction(1.0, gxRadian(0.5 * std::atan2(2.0 * xy, xx - yy)));
  return direction * (p.back() - p.front()) < 0.0 ? -direction : direction;
}

std::vector<double> turnsOf(const gxArcLength& arc, double window) {
  const std::size_t n = arc.points().size();
  const double reach = std::min(window, 0.5 * arc.length());
  std::vector<double> turns(n, 0.0);
  for (std::size_t i = 0; i < n; ++i) {
    if (!arc.isClosed() && (i == 0 || i + 1 == n)) continue;
    const double s = arc.lengthTo(i);
    const gxVector<2> before = sideDirection(arc, s - reach, s);
    const gxVector<2> after = sideDirection(arc, s, s + reach);
    const double turn = std::atan2(gf_Cross(before, after), before * after);
    turns[i] = turn == -kPi ? kPi : turn;
  }
  return turns;
}

// Tells whether no vertex less than `reach` away turns more, nor as much with a lower index.
bool isGreatest(const gxArcLength& arc, const std::vector<double>& turns, std::size_t i, double reach) {
  const std::size_t n = turns.size();
  const auto beats = [&](std::size_t j) {
    const double mine = std::abs(turns[i]);
    const double other = std::abs(turns[j]);
    return other > mine || (other == mine && j < i);
  };
  const auto apart = [&](std::size_t j) {
    const double s = std::abs(arc.lengthTo(j) - arc.lengthTo(i));
    return arc.isClosed() ? std::min(s, arc.length() - s) : s;
  };
  for (std::size_t k = 1; k < n; ++k) {
    if (!arc.isClosed() && i + k >= n) break;
    const std::size_t j = (i + k) % n;
    if (apart(j) >= reach) break;
    if (beats(j)) return false;
  }
  for (std::size_t k = 1; k < n; ++k) {
    if (!arc.isClosed() && k > i) break;
    const std::size_t j = (i + n - k) % n;
    if (apart(j) >= reach) break;
    if (beats(j)) return false;
  }
  return true;
}

}  // namespace

gxBends gfCurvature(std::span<const gxVector<2>> points, bool closed, double window,
                    gxCurvatureFit fit) {
  gxBends result{statusOf(points, window), {}};
  if (result.status != gxStatus::eOk) return result;
  const gx_Frame frame(points);
  const gxArcLength arc(inFrame(points, frame), closed);
  const double reach = frame.lengthTo(window);
  std::vector<Sample> samples;
  result.at.reserve(points.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    collect(arc, i, reach, samples);
    if (!hasThreeDistinct(samples)) {
      result.at.emplace_back();
    } else {
      result.at.push_back(fit == gxCurvatureFit::eParabola ? parabola(samples, window)
                                                           : circle(samples, window));
    }
  }
  return result;
}

gxBends gfCurvature(const gxContour& contour, double window, gxCurvatureFit fit) {
  return gfCurvature(contour.points(), contour.isClosed(), window, fit);
}

gxCorners gfCorners(std::span<const gxVector<2>> points, bool closed, double window,
                    const gxRadian& least) {
  gxCorners result{statusOf(points, window), {}};
  if (result.status == gxStatus::eOk && !(least.toDouble() > 0.0))
    result.status = gxStatus::eBadArgument;
  if (result.status != gxStatus::eOk) return result;
  const gx_Frame frame(points);
  const gxArcLength arc(inFrame(points, frame), closed);
  if (!(arc.length() > 0.0)) return result;
  const double reach = frame.lengthTo(window);
  const std::vector<double> turns = turnsOf(arc, reach);
  for (std::size_t i = 0; i < turns.size(); ++i) {
    if (std::abs(turns[i]) < least.toDouble() || !isGreatest(arc, turns, i, reach)) continue;
    result.corners.push_back({i, gxRadian(turns[i])});
  }
  return result;
}

gxCorners gfCorners(const gxContour& contour, double window, const gxRadian& least) {
  return gfCorners(contour.points(), contour.isClosed(), window, least);
}

std::ostream& operator<<(std::ostream& out, const gxBend& bend) {
  return out << "tangent (" << bend.tangent.x() << ", " << bend.tangent.y() << "), curvature "
             << bend.curvature;
}

std::ostream& operator<<(std::ostream& out, const gxCorner& corner) {
  return out << "vertex " << corner.vertex << " turns by " << corner.turn.toDouble();
}

std::ostream& operator<<(std::ostream& out, const gxBends& bends) {
  out << bends.at.size() << " bends";
  if (bends.status != gxStatus::eOk) out << ' ' << bends.status;
  return out;
}

std::ostream& operator<<(std::ostream& out, const gxCorners& corners) {
  out << corners.corners.size() << " corners";
  if (corners.status != gxStatus::eOk) out << ' ' << corners.status;
  return out;
}
