// Resampling: one walk along the sums of lengths, with the next sample in hand.
#include <gauge/arc.h>
#include <gauge/resample.h>
#include <gauge/simplify.h>

#include <algorithm>
#include <cmath>
#include <ostream>

namespace {

// More points than that are a mistake in the unit of the spacing.
constexpr double kMostPieces = 2147483648.0;

gxResampled spread(const gxArcLength& arc, std::size_t pieces) {
  gxResampled result{arc.status(), {}};
  if (result.status != gxStatus::eOk) return result;
  if (pieces == 0) return {gxStatus::eBadArgument, {}};
  const std::vector<gxVector<2>>& points = arc.points();
  const std::size_t count = arc.isClosed() ? pieces : pieces + 1;
  if (!(arc.length() > 0.0)) return {gxStatus::eFlat, std::vector<gxVector<2>>(count, points.front())};
  if (!std::isfinite(arc.length())) return {gxStatus::eNotFinite, {}};
  result.points.reserve(count);
  result.points.push_back(points.front());
  std::size_t i = 0;  // the edge from point i holds the next sample
  const std::size_t edges = arc.isClosed() ? points.size() : points.size() - 1;
  for (std::size_t k = 1; k < pieces; ++k) {
    const double s = arc.length() * (static_cast<double>(k) / static_cast<double>(pieces));
    while (i + 1 < edges && arc.lengthTo(i + 1) < s) ++i;
    const gxVector<2>& a = points[i];
    const gxVector<2>& b = points[i + 1 == points.size() ? 0 : i + 1];
    const double whole = arc.lengthTo(i + 1) - arc.lengthTo(i);
    const double t = whole > 0.0 ? std::clamp((s - arc.lengthTo(i)) / whole, 0.0, 1.0) : 1.0;
    result.points.push_back(t == 1.0 ? b : a * (1.0 - t) + b * t);
  }
  if (!arc.isClosed()) result.points.push_back(points.back());
  return result;
}

}  // namespace

gxResampled gfResample(std::span<const gxVector<2>> points, bool closed, std::size_t pieces) {
  return spread(gxArcLength(points, closed), pieces);
}

gxResampled gfResample(const gxContour& contour, std::size_t pieces) {
  return gfResample(contour.points(), contour.isClosed(), pieces);
}

gxResampled gfResampleBySpacing(std::span<const gxVector<2>> points, bool closed, double spacing) {
  const gxArcLength arc(points, closed);
  if (arc.status() != gxStatus::eOk) return {arc.status(), {}};
  const double pieces = std::ceil(arc.length() / spacing);
  if (!(spacing > 0.0) || !(pieces <= kMostPieces)) return {gxStatus::eBadArgument, {}};
  return spread(arc, std::max<std::size_t>(1, static_cast<std::size_t>(pieces)));
}

gxResampled gfResampleBySpacing(const gxContour& contour, double spacing) {
  return gfResampleBySpacing(contour.points(), contour.isClosed(), spacing);
}

gxResampled gfResampleByDeviation(std::span<const gxVector<2>> points, bool closed, double tolerance,
                                  double spacing) {
  const gxSimplified kept = gfSimplify(points, closed, tolerance);
  if (kept.status != gxStatus::eOk && kept.status != gxStatus::eFlat) return {kept.status, {}};
  if (!(spacing > 0.0)) return {gxStatus::eBadArgument, {}};
  const std::vector<gxVector<2>>& corners = kept.points;
  const std::size_t edges = closed ? corners.size() : corners.size() - 1;
  double total = 0.0;
  for (std::size_t i = 0; i < edges; ++i) {
    total += std::ceil(corners[i].distance(corners[(i + 1) % corners.size()]) / spacing);
  }
  if (!(total <= kMostPieces)) return {gxStatus::eBadArgument, {}};
  gxResampled result{kept.status, {}};
  result.points.reserve(static_cast<std::size_t>(total) + 1);
  for (std::size_t i = 0; i < edges; ++i) {
    const gxVector<2>& a = corners[i];
    const gxVector<2>& b = corners[(i + 1) % corners.size()];
    const double pieces = std::max(1.0, std::ceil(a.distance(b) / spacing));
    result.points.push_back(a);
    for (std::size_t k = 1; static_cast<double>(k) < pieces; ++k) {
      const double share = static_cast<double>(k) / pieces;
      result.points.push_back(a * (1.0 - share) + b * share);
    }
  }
  if (!closed || edges == 0) result.points.push_back(corners.back());
  return result;
}

gxResampled gfResampleByDeviation(const gxContour& contour, double tolerance, double spacing) {
  return gfResampleByDeviation(contour.points(), contour.isClosed(), tolerance, spacing);
}

std::ostream& operator<<(std::ostream& out, const gxResampled& resampled) {
  out << resampled.points.size() << " points";
  if (resampled.status != gxStatus::eOk) out << ' ' << resampled.status;
  return out;
}
