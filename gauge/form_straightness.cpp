// Straightness, angles of flats, parallelism, profile.
//
// The minimum zone of points is the least width of their hull, which lies between an edge and a corner; the
// least squares line goes through their mean along the longer axis of their second moments.
#include <gauge/align.h>
#include <gauge/deviation.h>
#include <gauge/feret.h>
#include <gauge/form.h>
#include <gauge/internal/axis.h>
#include <gauge/internal/border_tree.h>
#include <gauge/internal/frame.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <ostream>

namespace {

constexpr double kIsotropic = 1e-12;

bool allEqual(std::span<const gxVector<2>> points) {
  return std::all_of(points.begin(), points.end(), [&](const gxVector<2>& p) { return p == points[0]; });
}

void fromLeastSquares(std::span<const gxVector<2>> points, gxStraightness& result) {
  const gx_Frame frame(points);
  gxVector<2> mean;
  for (const gxVector<2>& p : points) mean += frame.to(p);
  const auto count = static_cast<double>(points.size());
  mean = mean / count;
  double xx = 0.0;
  double xy = 0.0;
  double yy = 0.0;
  for (const gxVector<2>& p : points) {
    const gxVector<2> d = frame.to(p) - mean;
    xx += d.x() * d.x();
    xy += d.x() * d.y();
    yy += d.y() * d.y();
  }
  double angle = 0.5 * std::atan2(2.0 * xy, xx - yy);
  if (std::hypot(xx - yy, 2.0 * xy) <= kIsotropic * (xx + yy)) {
    result.status = gxStatus::eUndetermined;
    angle = 0.0;
  }
  const gxVector<2> along(std::cos(angle), std::sin(angle));
  result.point = frame.from(mean);
  result.angle = gx_axisAngle(along);
  if (gx_onOneLine(points)) {
    // Exactly: by distances from a rounded line it would be some units in the last place.
    result.straightness = result.peak = result.valley = result.rms = 0.0;
    return;
  }
  double most = -std::numeric_limits<double>::infinity();
  double least = std::numeric_limits<double>::infinity();
  double squares = 0.0;
  for (const gxVector<2>& p : points) {
    const double e = gf_Cross(along, frame.to(p) - mean);
    most = std::max(most, e);
    least = std::min(least, e);
    squares += e * e;
  }
  result.straightness = frame.lengthFrom(most - least);
  result.peak = frame.lengthFrom(std::max(0.0, most));
  result.valley = frame.lengthFrom(std::max(0.0, -least));
  result.rms = frame.lengthFrom(std::sqrt(squares / count));
}

void fromMinimumZone(std::span<const gxVector<2>> points, gxStraightness& result) {
  const gxFeret feret = gfFeret(points);
  const auto at = [&](long i) { return points[static_cast<std::size_t>(i)]; };
  const gxVector<2> a = at(feret.feretMinEdgeFrom);
  const gxVector<2> b = at(feret.feretMinEdgeTo);
  result.straightness = feret.feretMin;
  const gxVector<2> halfEdge = b * 0.5 - a * 0.5;  // the whole may overflow
  result.angle = gx_axisAngle(halfEdge);
  const gxVector<2> middle = a * 0.5 + b * 0.5;
  const gxVector<2> across = feret.feretMinPoint * 0.5 - feret.feretMinFoot * 0.5;
  result.point = middle + across;
  result.supports = {feret.feretMinEdgeFrom, feret.feretMinEdgeTo};
  if (feret.feretMin > 0.0) result.supports.push_back(feret.feretMinVertex);
  std::sort(result.supports.begin(), result.supports.end());
}

double between(double first, double second) {
  const double turn = std::abs(std::remainder(first - second, std::numbers::pi));
  return std::min(turn, std::numbers::pi / 2.0);
}

}  // namespace

gxStraightness gfStraightness(std::span<const gxVector<2>> points, gxFormReference reference) {
  gxStraightness result;
  result.reference = reference;
  if (points.empty()) result.status = gxStatus::eEmpty;
  if (!gx_allFinite(points)) result.status = gxStatus::eNotFinite;
  if (reference != gxFormReference::eLeastSquares && reference != gxFormReference::eMinimumZone) {
    result.status = gxStatus::eBadArgument;
  }
  if (result.status != gxStatus::eOk) return result;
  if (allEqual(points)) {
    result.status = gxStatus::eUndetermined;
    return result;
  }
  if (reference == gxFormReference::eLeastSquares) {
    fromLeastSquares(points, result);
  } else {
    fromMinimumZone(points, result);
  }
  return result;
}

gxFlatAngle gfFlatAngle(std::span<const gxVector<2>> first, std::span<const gxVector<2>> second,
                        gxFormReference reference) {
  const gxStraightness one = gfStraightness(first, reference);
  const gxStraightness other = gfStraightness(second, reference);
  gxFlatAngle result;
  result.status = one.status != gxStatus::eOk ? one.status : other.status;
  if (result.status != gxStatus::eOk) return result;
  result.firstAngle = one.angle;
  result.secondAngle = other.angle;
  result.flatAngle = between(one.angle, other.angle);
  return result;
}

gxParallelism gfParallelism(std::span<const gxVector<2>> points, std::span<const gxVector<2>> datum,
                            gxFormReference reference) {
  gxParallelism result;
  const gxStraightness line = gfStraightness(datum, reference);
  result.status = line.status;
  if (result.status == gxStatus::eOk && points.empty()) result.status = gxStatus::eEmpty;
  if (result.status == gxStatus::eOk && !gx_allFinite(points)) result.status = gxStatus::eNotFinite;
  if (result.status != gxStatus::eOk) return result;
  const gx_Frame frame(points);
  const gxVector<2> across(-std::sin(line.angle), std::cos(line.angle));
  double most = -std::numeric_limits<double>::infinity();
  double least = std::numeric_limits<double>::infinity();
  for (const gxVector<2>& p : points) {
    const double e = across * frame.to(p);
    most = std::max(most, e);
    least = std::min(least, e);
  }
  result.parallelism = frame.lengthFrom(most - least);
  const gxStraightness own = gfStraightness(points, reference);
  if (own.status == gxStatus::eOk) result.flatAngle = between(own.angle, line.angle);
  return result;
}

gxProfile gfProfile(const gxBorders& shape, const gxBorders& nominal, bool bestFit) {
  gxProfile result;
  std::vector<std::vector<gxVector<2>>> moved;
  gxBorders toMeasure = shape;
  if (bestFit) {
    const gxAlignment alignment = gfAlign(shape, nominal, {.robust = false});
    result.status = alignment.status;
    if (result.status != gxStatus::eOk) return result;
    for (const gxBorders::Ring& ring : shape.rings()) {
      std::vector<gxVector<2>>& points = moved.emplace_back();
      for (const gxVector<2>& p : ring.points) points.push_back(alignment.map(p));
    }
    std::vector<gxBorders::Ring> rings;
    for (std::size_t r = 0; r < moved.size(); ++r) rings.push_back({moved[r], shape.rings()[r].closed});
    toMeasure = gxBorders(std::move(rings));
  }
  const gxDeviation deviation = gfDeviation(toMeasure, nominal);
  result.status = deviation.status;
  if (result.status != gxStatus::eOk) return result;
  result.peak = std::max(0.0, deviation.deviationMax);
  result.valley = std::min(0.0, deviation.deviationMin);
  const bool outwards = result.peak >= -result.valley;
  result.profile = 2.0 * (outwards ? result.peak : -result.valley);
  result.worst = outwards ? deviation.maxPlace : deviation.minPlace;
  if (bestFit) {
    // The same edge and t of the shape as it came.
    const gx_Frame frame(gx_boxOf(shape.rings()));
    const gx_BorderTree tree(shape.rings(), frame);
    std::size_t edge = 0;
    for (std::size_t r = 0; r < tree.rings(); ++r) {
      if (tree.placeOf(tree.firstEdge(r), 0.0).ring == result.worst.ring) {
        edge = tree.firstEdge(r) + static_cast<std::size_t>(result.worst.edge);
      }
    }
    result.worst = tree.placeOf(edge, result.worst.t);
  }
  return result;
}

std::ostream& operator<<(std::ostream& out, const gxStraightness& result) {
  return out << "straightness " << result.straightness << " at angle " << result.angle << ", "
             << result.status;
}

std::ostream& operator<<(std::ostream& out, const gxFlatAngle& result) {
  return out << "flat angle " << result.flatAngle << ", " << result.status;
}

std::ostream& operator<<(std::ostream& out, const gxParallelism& result) {
  return out << "parallelism " << result.parallelism << ", flat angle " << result.flatAngle << ", "
             << result.status;
}

std::ostream& operator<<(std::ostream& out, const gxProfile& result) {
  return out << "profile " << result.profile << ", peak " << result.peak << ", valley " << result.valley
             << ", worst at " << result.worst << ", " << result.status;
}
