// Robust fits.
//
//   1. Move into a frame of size 1 around the middle of the points.
//   2. Least squares start from the fits of the base library.  Robust ones start from the best of several
//      hundred shapes through random points: that with the least median distance over at most 500 points
//      (P. Rousseeuw, "Least median of squares regression", 1984), the first of equal ones.
//   3. The median gives the standard deviation; least squares over the points within 2.5 of them, and the
//      median once more, make it independent of the sample.
//   4. Weights from the distances, a least squares step with these weights, and again, until nothing
//      moves.  The standard deviation is held, so that the steps lower one function.
//   5. Inliers, deviation, covariance; then the simpler shapes are fitted in the same way and compared.
#include <gauge/internal/axis.h>
#include <gauge/internal/fit_shapes.h>
#include <gauge/internal/frame.h>
#include <gauge/robust_fit.h>
#include <velstd/random.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <ostream>

namespace {

using Points = std::vector<gxVector<2>>;

constexpr double kHuber = 1.345;  // 95 % efficiency for Gaussian noise, both
constexpr double kTukey = 4.685;
constexpr double kMad = 1.4826;
constexpr double kInlier = 2.5;
constexpr double kRounding = 2e-14;  // of distances in the frame
constexpr std::size_t kScored = 500;
constexpr int kMostRounds = 200;
// An ellipse so much longer than the points, in the frame, is one of which they leave the length open.
constexpr double kOpenLength = 100.0;

template <class Shape>
struct Found {
  Shape shape;
  std::vector<double> weights;
  std::vector<double> distances;
  double sigma = 0.0;
};

template <class Shape>
void measure(const Shape& shape, const Points& points, std::vector<double>& distances) {
  distances.resize(points.size());
  for (std::size_t i = 0; i < points.size(); ++i) distances[i] = shape.distance(points[i]);
}

// The distance that half of the points and the unknowns do not exceed.
double medianOf(const std::vector<double>& distances, std::size_t unknowns) {
  std::vector<double> sizes;
  sizes.reserve(distances.size());
  for (const double d : distances) sizes.push_back(std::abs(d));
  const std::size_t k = std::min(sizes.size() - 1, (sizes.size() + unknowns) / 2);
  std::nth_element(sizes.begin(), sizes.begin() + static_cast<std::ptrdiff_t>(k), sizes.end());
  return sizes[k];
}

template <class Shape>
std::optional<Shape> consensusStart(const Points& points, long seed) {
  constexpr int kTrials = Shape::kSample == 2 ? 200 : Shape::kSample == 3 ? 500 : 1000;
  if (points.size() < Shape::kSample) return std::nullopt;
  Points scored;
  const std::size_t step = (points.size() + kScored - 1) / kScored;
  for (std::size_t i = 0; i < points.size(); i += step) scored.push_back(points[i]);
  gxRandomUniform random(seed);
  std::optional<Shape> best;
  double least = std::numeric_limits<double>::infinity();
  std::vector<double> distances;
  for (int trial = 0; trial < kTrials; ++trial) {
    gxVector<2> sample[Shape::kSample];
    for (gxVector<2>& p : sample) {
      p = points[static_cast<std::size_t>(random.next(0.0, static_cast<double>(points.size())))];
    }
    const std::optional<Shape> shape = Shape::through(sample);
    if (!shape) continue;
    measure(*shape, scored, distances);
    const double median = medianOf(distances, Shape::kUnknowns);
    if (median < least) {
      least = median;
      best = shape;
    }
  }
  return best;
}

double weightOf(double distance, double sigma, gxFitWeights weights) {
  const double u = std::abs(distance) / sigma;
  switch (weights) {
    case gxFitWeights::eHuber: return u <= kHuber ? 1.0 : kHuber / u;
    case gxFitWeights::eTukey: {
      const double v = u / kTukey;
      return v < 1.0 ? (1.0 - v * v) * (1.0 - v * v) : 0.0;
    }
    default: return 1.0;
  }
}

double inlierLimit(const gxRobustOptions& options, double sigma, double givenInFrame) {
  return options.inlierLimit > 0.0 ? givenInFrame : kInlier * sigma;
}

template <class Shape>
std::optional<Found<Shape>> search(const Points& points, const gxRobustOptions& options, double limit) {
  Found<Shape> found;
  const bool plain = options.weights == gxFitWeights::eLeastSquares;
  const auto start = plain ? Shape::leastSquares(points) : consensusStart<Shape>(points, options.seed);
  if (!start) return std::nullopt;
  found.shape = *start;
  found.weights.assign(points.size(), 1.0);
  measure(found.shape, points, found.distances);
  const auto estimate = [&] {
    found.sigma = std::max(kMad * medianOf(found.distances, Shape::kUnknowns), kRounding);
  };
  estimate();
  const auto refine = [&](int most) {
    const auto refined =
        gx_refined(found.shape, points, std::span<const double>(found.weights), most, nullptr);
    if (!refined) return false;
    found.shape = *refined;
    measure(found.shape, points, found.distances);
    return true;
  };
  if (plain) return refine(kMostRounds) ? std::optional(found) : std::nullopt;
  const auto takeInliers = [&](double reach) {
    bool changed = false;
    for (std::size_t i = 0; i < points.size(); ++i) {
      const double weight = std::abs(found.distances[i]) <= reach ? 1.0 : 0.0;
      changed = changed || weight != found.weights[i];
      found.weights[i] = weight;
    }
    return changed;
  };
  takeInliers(inlierLimit(options, found.sigma, limit));
  if (!refine(20)) return std::nullopt;
  estimate();
  if (options.weights == gxFitWeights::eConsensus) {
    for (int round = 0; round < 20; ++round) {
      if (!takeInliers(inlierLimit(options, found.sigma, limit))) break;
      if (!refine(kMostRounds)) return std::nullopt;
    }
    return found;
  }
  for (int round = 0; round < kMostRounds; ++round) {
    for (std::size_t i = 0; i < points.size(); ++i) {
      found.weights[i] = weightOf(found.distances[i], found.sigma, options.weights);
    }
    const std::vector<double> before = found.distances;
    if (!refine(1)) return std::nullopt;
    double moved = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
      moved = std::max(moved, std::abs(found.distances[i] - before[i]));
    }
    if (moved < 1e-15) break;
  }
  return found;
}

// Fills what all fits say, and returns the factor of the covariance; NaN where there is none.
template <class Shape>
double assess(const Found<Shape>& found, const gxRobustOptions& options, double limit,
              const gx_Frame& frame, gxFitQuality& result) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  const bool all = options.weights == gxFitWeights::eLeastSquares && !(options.inlierLimit > 0.0);
  const double reach = inlierLimit(options, found.sigma, limit);
  double squares = 0.0;
  double inlierSquares = 0.0;
  double most = 0.0;
  std::size_t counted = 0;
  for (std::size_t i = 0; i < found.distances.size(); ++i) {
    const double e = found.distances[i];
    if (found.weights[i] > 0.0) {
      squares += e * e;
      ++counted;
    }
    if (!all && !(std::abs(e) <= reach)) continue;
    result.inliers.push_back(i);
    inlierSquares += e * e;
    most = std::max(most, std::abs(e));
  }
  const double inliers = static_cast<double>(result.inliers.size());
  result.residualRms = frame.lengthFrom(std::sqrt(inlierSquares / inliers));
  result.residualMax = frame.lengthFrom(most);
  if (counted <= Shape::kUnknowns) return kNaN;
  const double freedom = static_cast<double>(counted - Shape::kUnknowns);
  const double variance = squares / freedom;
  result.deviation = frame.lengthFrom(std::sqrt(variance));
  const bool isWeighted =
      options.weights == gxFitWeights::eHuber || options.weights == gxFitWeights::eTukey;
  if (!isWeighted || variance == 0.0) return variance;
  double psi = 0.0;
  double slope = 0.0;
  for (std::size_t i = 0; i < found.distances.size(); ++i) {
    if (found.weights[i] == 0.0) continue;
    const double u = found.distances[i] / std::sqrt(variance);
    const double w = weightOf(u, 1.0, options.weights);
    psi += w * u * w * u;
    const double v = (u / kTukey) * (u / kTukey);
    slope += options.weights == gxFitWeights::eHuber ? (std::abs(u) <= kHuber ? 1.0 : 0.0)
             : v < 1.0                               ? (1.0 - v) * (1.0 - 5.0 * v)
                                                     : 0.0;
  }
  slope /= static_cast<double>(counted);
  return variance * (psi / freedom) / (slope * slope);
}

// The standard errors of the unknowns in the frame.
template <class Shape>
std::array<double, Shape::kUnknowns> errorsOf(const Found<Shape>& found, const Points& points,
                                              double factor) {
  std::array<std::array<double, Shape::kUnknowns>, Shape::kUnknowns> covariance{};
  std::vector<double> counted;
  for (const double w : found.weights) counted.push_back(w > 0.0 ? 1.0 : 0.0);
  gx_refined(found.shape, points, std::span<const double>(counted), 0, &covariance);
  std::array<double, Shape::kUnknowns> errors{};
  for (std::size_t k = 0; k < Shape::kUnknowns; ++k) errors[k] = std::sqrt(factor * covariance[k][k]);
  return errors;
}

gxStatus statusOf(std::span<const gxVector<2>> points, const gxRobustOptions& options) {
  if (points.empty()) return gxStatus::eEmpty;
  if (!gx_allFinite(points)) return gxStatus::eNotFinite;
  return options.inlierLimit >= 0.0 ? gxStatus::eOk : gxStatus::eBadArgument;
}

Points inFrame(std::span<const gxVector<2>> points, const gx_Frame& frame) {
  Points result;
  result.reserve(points.size());
  for (const gxVector<2>& p : points) result.push_back(frame.to(p));
  return result;
}

// Tells whether a simpler shape explains the points as well.
bool isNoWorse(const gxFitQuality& simple, const gxFitQuality& shape, double rounding) {
  if (simple.status != gxStatus::eOk && simple.status != gxStatus::eWorse) return false;
  if (simple.inliers.size() < shape.inliers.size()) return false;
  if (std::isnan(shape.deviation)) return !std::isnan(simple.deviation) && simple.deviation <= rounding;
  return simple.deviation <= shape.deviation + rounding;
}

// Tells whether the points are spread alike in all directions.
bool isIsotropic(const Found<gx_FitLine>& found, const Points& points) {
  double xx = 0.0;
  double xy = 0.0;
  double yy = 0.0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const gxVector<2> d = points[i] - found.shape.point;
    xx += found.weights[i] * d.x() * d.x();
    xy += found.weights[i] * d.x() * d.y();
    yy += found.weights[i] * d.y() * d.y();
  }
  return std::hypot(0.5 * (xx - yy), xy) <= 1e-12 * (xx + yy);
}

}  // namespace

gxRobustLine gfRobustLine(std::span<const gxVector<2>> points, const gxRobustOptions& options) {
  gxRobustLine result;
  result.status = statusOf(points, options);
  if (result.status != gxStatus::eOk) return result;
  const gx_Frame frame(points);
  const Points seen = inFrame(points, frame);
  const double limit = frame.lengthTo(options.inlierLimit);
  auto found = search<gx_FitLine>(seen, options, limit);
  if (!found) {
    result.status = gxStatus::eUndetermined;
    return result;
  }
  gxVector<2> mean;
  double total = 0.0;
  for (std::size_t i = 0; i < seen.size(); ++i) {
    mean += seen[i] * found->weights[i];
    total += found->weights[i];
  }
  found->shape.point = mean / total;
  if (isIsotropic(*found, seen)) {
    result.status = gxStatus::eUndetermined;
    found->shape.along = {1.0, 0.0};
  }
  measure(found->shape, seen, found->distances);
  const double factor = assess(*found, options, limit, frame, result);
  result.point = frame.from(found->shape.point);
  result.angle = gxRadian(gx_axisAngle(found->shape.along));
  const auto errors = errorsOf(*found, seen, factor);
  result.offsetError = frame.lengthFrom(errors[0]);
  result.angleError = errors[1];
  return result;
}

gxRobustCircle gfRobustCircle(std::span<const gxVector<2>> points, const gxRobustOptions& options) {
  gxRobustCircle result;
  result.status = statusOf(points, options);
  if (result.status != gxStatus::eOk) return result;
  const gx_Frame frame(points);
  const Points seen = inFrame(points, frame);
  const double limit = frame.lengthTo(options.inlierLimit);
  const auto found = search<gx_FitCircle>(seen, options, limit);
  if (!found) {
    result.status = gxStatus::eUndetermined;
    return result;
  }
  const double factor = assess(*found, options, limit, frame, result);
  result.centre = frame.from(found->shape.centre);
  result.radius = frame.lengthFrom(found->shape.radius);
  const auto errors = errorsOf(*found, seen, factor);
  result.centreXError = frame.lengthFrom(errors[0]);
  result.centreYError = frame.lengthFrom(errors[1]);
  result.radiusError = frame.lengthFrom(errors[2]);
  if (isNoWorse(gfRobustLine(points, options), result, frame.lengthFrom(kRounding))) {
    result.status = gxStatus::eWorse;
  }
  return result;
}

gxRobustEllipse gfRobustEllipse(std::span<const gxVector<2>> points, const gxRobustOptions& options) {
  gxRobustEllipse result;
  result.status = statusOf(points, options);
  if (result.status != gxStatus::eOk) return result;
  const gx_Frame frame(points);
  const Points seen = inFrame(points, frame);
  const double limit = frame.lengthTo(options.inlierLimit);
  auto found = search<gx_FitEllipse>(seen, options, limit);
  if (found && found->shape.a > kOpenLength) found.reset();
  const gxRobustCircle circle = gfRobustCircle(points, options);
  if (!found) {
    // The angle of a circle's axes is open.
    result.status = gxStatus::eUndetermined;
    const double enough = static_cast<double>(points.size());
    if (circle.status != gxStatus::eOk || !(enough > 5.0)) return result;
    static_cast<gxFitQuality&>(result) = circle;
    result.status = gxStatus::eWorse;
    result.centre = circle.centre;
    result.a = circle.radius;
    result.b = circle.radius;
    result.angle = gxRadian(0.0);
    return result;
  }
  const double factor = assess(*found, options, limit, frame, result);
  result.centre = frame.from(found->shape.centre);
  result.a = frame.lengthFrom(found->shape.a);
  result.b = frame.lengthFrom(found->shape.b);
  const bool isRound = result.a == result.b;
  result.angle = gxRadian(isRound ? 0.0 : gx_axisAngle(found->shape.along));
  const auto errors = errorsOf(*found, seen, factor);
  result.centreXError = frame.lengthFrom(errors[0]);
  result.centreYError = frame.lengthFrom(errors[1]);
  result.aError = frame.lengthFrom(errors[2]);
  result.bError = frame.lengthFrom(errors[3]);
  result.angleError = errors[4];
  const double rounding = frame.lengthFrom(kRounding);
  if (isNoWorse(circle, result, rounding) ||
      isNoWorse(gfRobustLine(points, options), result, rounding)) {
    result.status = gxStatus::eWorse;
  }
  return result;
}

std::ostream& operator<<(std::ostream& out, gxFitWeights weights) {
  switch (weights) {
    case gxFitWeights::eLeastSquares: return out << "least squares";
    case gxFitWeights::eHuber: return out << "huber";
    case gxFitWeights::eTukey: return out << "tukey";
    case gxFitWeights::eConsensus: return out << "consensus";
  }
  return out << "unknown";
}

std::ostream& operator<<(std::ostream& out, const gxRobustOptions& options) {
  return out << options.weights << " weights, inlier limit " << options.inlierLimit << ", seed "
             << options.seed;
}

std::ostream& operator<<(std::ostream& out, const gxFitQuality& quality) {
  return out << "deviation " << quality.deviation << ", residual rms " << quality.residualRms << " max "
             << quality.residualMax << ", " << quality.inliers.size() << " inliers, " << quality.status;
}

std::ostream& operator<<(std::ostream& out, const gxRobustLine& line) {
  return out << "line through (" << line.point.x() << ", " << line.point.y() << ") at angle "
             << line.angle.toDouble() << ", deviation " << line.deviation << ", " << line.inliers.size()
             << " inliers, " << line.status;
}

std::ostream& operator<<(std::ostream& out, const gxRobustCircle& circle) {
  return out << "circle at (" << circle.centre.x() << ", " << circle.centre.y() << ") radius "
             << circle.radius << ", deviation " << circle.deviation << ", " << circle.inliers.size()
             << " inliers, " << circle.status;
}

std::ostream& operator<<(std::ostream& out, const gxRobustEllipse& ellipse) {
  return out << "ellipse at (" << ellipse.centre.x() << ", " << ellipse.centre.y() << ") semi-axes "
             << ellipse.a << " and " << ellipse.b << " at angle " << ellipse.angle.toDouble()
             << ", deviation " << ellipse.deviation << ", " << ellipse.inliers.size() << " inliers, "
             << ellipse.status;
}
