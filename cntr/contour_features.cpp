// Mean position, median edge length, fitted ellipse.
//
// Mean position: the midpoints of the edges, weighted with their lengths, divided by the total
// length.  Median: the length at position count / 2 of the sorted list, the upper of the two middle
// ones for an even count; a selection finds it without sorting, with NaN as the greatest length.
#include <cntr/contour.h>
#include <cntr/internal/memory/computation_count.h>
#include <cntr/internal/outline/edge_lengths.h>
#include <cntr/internal/outline/outline.h>
#include <cntr/shapestat.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

gxVector<2> meanOfEdges(const gx_Outline& outline) {
  const std::vector<gxVector<2>>& points = outline.points;
  gxVector<2> sum;
  double total = 0.0;
  const auto add = [&](const gxVector<2>& from, const gxVector<2>& to, double length) {
    total += length;
    sum += (from + to) * 0.5 * length;
  };
  if (outline.closed) add(points.back(), points.front(), points.back().distance(points.front()));
  gx_forEachLength(points, [&](double length, std::size_t i) { add(points[i - 1], points[i], length); });
  return sum / total;
}

bool shorter(double a, double b) {
  if (std::isnan(a)) return false;
  return std::isnan(b) || a < b;
}

double medianEdgeLength(const gx_Outline& outline) {
  const std::vector<gxVector<2>>& points = outline.points;
  std::vector<double> lengths;
  lengths.reserve(points.size());
  if (outline.closed) lengths.push_back(points.back().distance(points.front()));
  gx_forEachLength(points, [&lengths](double length, std::size_t) { lengths.push_back(length); });
  const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
  std::nth_element(lengths.begin(), middle, lengths.end(), shorter);
  return *middle;
}

}  // namespace

gxVector<2> gxContour::meanPosition() const {
  checkEmptyContour();
  const gx_SeldomOfContour& memory = state_.memory.seldom.made();
  std::array<double, 2> known{};
  if (memory.meanPosition.get(known)) return {known[0], known[1]};
  gx_countComputation(gx_Computation::eMeanPosition);
  const gxVector<2> mean = meanOfEdges(outline_());
  memory.meanPosition.set({mean.x(), mean.y()});
  return mean;
}

double gxContour::medianFeatureSize() const {
  checkEmptyContour();
  const gx_SeldomOfContour& memory = state_.memory.seldom.made();
  double median = 0.0;
  if (memory.medianFeatureSize.get<0>(median)) return median;
  gx_countComputation(gx_Computation::eMedianFeatureSize);
  median = medianEdgeLength(outline_());
  memory.medianFeatureSize.set({median});
  return median;
}

void gxContour::fitEllipse(gxEllipse& ellipse, double& residual) const {
  checkEmptyContour();
  const gx_Fit& fit = state_.memory.seldom.made().ellipse.made([this] {
    gx_countComputation(gx_Computation::eFitEllipse);
    gx_Fit fitted;
    gf_FitEllipse(state_.points, fitted.ellipse, fitted.residual);
    return fitted;
  });
  const double known = fit.residual;
  ellipse = fit.ellipse;
  residual = known;
}
