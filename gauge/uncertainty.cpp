// Uncertainty by first-order propagation.
//
// Each measure has a gradient by the coordinates of every point:
//
//   length   the difference of the unit vectors of the two edges that meet there
//   area     half the difference of the neighbours, turned
//   centre   of an outline from its first moments, (∇M − c ∇A) / A; of a poly-line likewise from the
//            moments by length
//
// The variance of each is Σ gᵢ·gⱼ Cᵢⱼ.  With Cᵢⱼ = σ² exp(−s(i, j)/λ), the sum over all pairs is a
// recursion along the walk: what comes from before fades by exp(−edge/λ) from point to point.  An outline
// is walked twice around, which leaves out what comes from more than a whole way back; pairs count along
// both ways around, of which the longer hardly matters while λ is much less than the length.
#include <gauge/arc.h>
#include <gauge/internal/frame.h>
#include <gauge/uncertainty.h>

#include <cmath>
#include <cstddef>
#include <ostream>
#include <vector>

namespace {

using Points = std::vector<gxVector<2>>;

constexpr double kPi = 3.141592653589793;

class Propagation {
 public:
  Propagation(const gxArcLength& arc, double sigma, double correlation)
      : arc_(arc), points_(arc.points()), n_(points_.size()), sigma_(sigma), correlation_(correlation) {}

  std::size_t edges() const { return arc_.isClosed() ? n_ : n_ - 1; }
  std::size_t end(std::size_t i) const { return i + 1 == n_ ? 0 : i + 1; }
  double lengthOf(std::size_t i) const { return points_[i].distance(points_[end(i)]); }

  // Returns Σ gᵢ·hⱼ Cᵢⱼ.
  double covariance(const Points& g, const Points& h) const {
    double sum = 0.0;
    for (std::size_t i = 0; i < n_; ++i) sum += g[i] * h[i];
    if (correlation_ > 0.0) sum += pairs(g, h) + pairs(h, g);
    return sigma_ * sigma_ * sum;
  }
  double deviation(const Points& g) const { return std::sqrt(std::fmax(0.0, covariance(g, g))); }

  Points lengthGradient() const {
    Points g(n_);
    for (std::size_t i = 0; i < edges(); ++i) {
      const gxVector<2> u = (points_[end(i)] - points_[i]).unit();
      g[i] += -u;
      g[end(i)] += u;
    }
    return g;
  }

  // The variance of the difference of two neighbours, in one coordinate, is 2 σ² (1 − correlation).
  double lengthBias() const {
    if (sigma_ == 0.0) return 0.0;
    double sum = 0.0;
    for (std::size_t i = 0; i < edges(); ++i) {
      const double length = lengthOf(i);
      const double alike = correlation_ > 0.0 ? -std::expm1(-length / correlation_) : 1.0;
      sum += alike / length;
    }
    return std::isnan(sum) ? std::numeric_limits<double>::infinity() : sigma_ * sigma_ * sum;
  }

  Points areaGradient() const {
    Points g(n_);
    for (std::size_t i = 0; i < n_; ++i) {
      const gxVector<2> d = points_[end(i)] - points_[i == 0 ? n_ - 1 : i - 1];
      g[i] = {0.5 * d.y(), -0.5 * d.x()};
    }
    return g;
  }

 private:
  // The sum over pairs of gᵢ·hⱼ with j before i on the walk.
  double pairs(const Points& g, const Points& h) const {
    double sum = 0.0;
    gxVector<2> before;
    const std::size_t rounds = arc_.isClosed() ? 2 : 1;
    for (std::size_t round = 0; round < rounds; ++round) {
      for (std::size_t i = 0; i < n_; ++i) {
        if (round + 1 == rounds) sum += g[i] * before;
        before += h[i];
        if (i < edges()) before = before * std::exp(-lengthOf(i) / correlation_);
      }
      // A pair one whole way apart is a point with itself.
      if (round + 1 < rounds) fadedWhole_ = std::exp(-arc_.length() / correlation_);
    }
    if (rounds == 2) {
      for (std::size_t i = 0; i < n_; ++i) sum -= fadedWhole_ * (g[i] * h[i]);
    }
    return sum;
  }

  const gxArcLength& arc_;
  const Points& points_;
  std::size_t n_;
  double sigma_;
  double correlation_;
  mutable double fadedWhole_ = 0.0;
};

// The signed area and the centre of mass.
double areaAndCentre(const Points& points, gxVector<2>& centre) {
  double area = 0.0;
  gxVector<2> moment;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const gxVector<2>& a = points[i];
    const gxVector<2>& b = points[i + 1 == points.size() ? 0 : i + 1];
    const double cross = gf_Cross(a, b);
    area += 0.5 * cross;
    moment += (a + b) * (cross / 6.0);
  }
  centre = moment / area;
  return area;
}

// The gradients of the two coordinates of the centre of mass.
void centreGradients(const Points& points, double area, const gxVector<2>& centre, Points& gx,
                     Points& gy) {
  const std::size_t n = points.size();
  gx.assign(n, {});
  gy.assign(n, {});
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t j = i + 1 == n ? 0 : i + 1;
    // Seen from the centre the term of the area's gradient vanishes.
    const gxVector<2> a = points[i] - centre;
    const gxVector<2> b = points[j] - centre;
    const double cross = gf_Cross(a, b);
    const gxVector<2> sum = a + b;
    const double per = 1.0 / (6.0 * area);
    gx[i] += gxVector<2>(cross + sum.x() * b.y(), -sum.x() * b.x()) * per;
    gx[j] += gxVector<2>(cross - sum.x() * a.y(), sum.x() * a.x()) * per;
    gy[i] += gxVector<2>(sum.y() * b.y(), cross - sum.y() * b.x()) * per;
    gy[j] += gxVector<2>(-sum.y() * a.y(), cross + sum.y() * a.x()) * per;
  }
}

// The same of the mean position by length of a poly-line.
void meanGradients(const Propagation& walk, const gxArcLength& arc, Points& gx, Points& gy) {
  const Points& points = arc.points();
  gxVector<2> mean;
  for (std::size_t i = 0; i < walk.edges(); ++i) {
    mean += (points[i] + points[i + 1]) * (0.5 * walk.lengthOf(i) / arc.length());
  }
  gx.assign(points.size(), {});
  gy.assign(points.size(), {});
  for (std::size_t i = 0; i < walk.edges(); ++i) {
    const gxVector<2> u = (points[i + 1] - points[i]).unit();
    const gxVector<2> offset = (points[i] + points[i + 1]) * 0.5 - mean;
    const double half = 0.5 * walk.lengthOf(i) / arc.length();
    const gxVector<2> pull = u / arc.length();
    gx[i] += gxVector<2>(half, 0.0) - pull * offset.x();
    gx[i + 1] += gxVector<2>(half, 0.0) + pull * offset.x();
    gy[i] += gxVector<2>(0.0, half) - pull * offset.y();
    gy[i + 1] += gxVector<2>(0.0, half) + pull * offset.y();
  }
}

}  // namespace

gxUncertainty gfUncertainty(std::span<const gxVector<2>> points, bool closed, const gxEdgeNoise& noise) {
  gxUncertainty result;
  const auto sensible = [](double x) { return x >= 0.0 && std::isfinite(x); };
  if (points.empty()) result.status = gxStatus::eEmpty;
  if (!gx_allFinite(points)) result.status = gxStatus::eNotFinite;
  if (!sensible(noise.sigma) || !sensible(noise.correlationLength)) {
    result.status = gxStatus::eBadArgument;
  }
  if (result.status != gxStatus::eOk) return result;
  const gx_Frame frame(points);
  Points inFrame;
  inFrame.reserve(points.size());
  for (const gxVector<2>& p : points) inFrame.push_back(frame.to(p));
  const gxArcLength arc(inFrame, closed);
  const Propagation walk(arc, frame.lengthTo(noise.sigma), frame.lengthTo(noise.correlationLength));
  result.length = frame.lengthFrom(walk.deviation(walk.lengthGradient()));
  result.lengthBias = frame.lengthFrom(walk.lengthBias());
  Points gx;
  Points gy;
  if (closed) {
    const double deviation = walk.deviation(walk.areaGradient());
    result.area = frame.areaFrom(deviation);
    gxVector<2> centre;
    const double area = areaAndCentre(inFrame, centre);
    if (!(std::abs(area) > 1e-14)) {
      result.status = gxStatus::eFlat;
      return result;
    }
    // D = 2 √(A/π), so its derivative by A is D / 2A.
    result.equivalentDiameter = frame.lengthFrom(deviation / std::sqrt(kPi * std::abs(area)));
    centreGradients(inFrame, area, centre, gx, gy);
  } else {
    if (!(arc.length() > 0.0)) {
      result.status = gxStatus::eFlat;
      return result;
    }
    meanGradients(walk, arc, gx, gy);
  }
  result.centreX = frame.lengthFrom(walk.deviation(gx));
  result.centreY = frame.lengthFrom(walk.deviation(gy));
  result.centreCovariance = frame.areaFrom(walk.covariance(gx, gy));
  return result;
}

gxUncertainty gfUncertainty(const gxContour& contour, const gxEdgeNoise& noise) {
  return gfUncertainty(contour.points(), contour.isClosed(), noise);
}

std::ostream& operator<<(std::ostream& out, const gxUncertainty& result) {
  return out << "uncertainty of length " << result.length << " (bias " << result.lengthBias << "), area "
             << result.area << ", equivalent diameter " << result.equivalentDiameter << ", centre ("
             << result.centreX << ", " << result.centreY << "), " << result.status;
}

std::ostream& operator<<(std::ostream& out, const gxEdgeNoise& noise) {
  return out << "sigma " << noise.sigma << ", correlation length " << noise.correlationLength;
}
