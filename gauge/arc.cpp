// Arc lengths.
//
// The sums carry what rounding drops from one to the next (Neumaier's form of Kahan's summation), so the
// length to the last point of a million is as good as that to the first.  A place is found by bisection
// in the sums; the edge that arrives at a vertex wins, so that the length of the whole way is the end of
// the last edge and not the start of the next one.
#include <cntr/internal/outline/edge_walk.h>
#include <gauge/arc.h>
#include <gauge/internal/frame.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// The number that a contour gives the edge from point i to the next one.
std::size_t edgeFrom(std::size_t i, std::size_t points, bool closed) {
  if (!closed) return i;
  return i + 1 == points ? 0 : i + 1;
}

}  // namespace

gxArcLength::gxArcLength(std::span<const gxVector<2>> points, bool closed)
    : closed_(closed), points_(points.begin(), points.end()) {
  sums_.assign(points_.size() + (closed ? 1 : 0), 0.0);
  if (points_.empty()) {
    status_ = gxStatus::eEmpty;
    return;
  }
  if (!gx_allFinite(points)) {
    status_ = gxStatus::eNotFinite;
    total_ = kNaN;
    std::fill(sums_.begin(), sums_.end(), kNaN);
    return;
  }
  double sum = 0.0;
  double dropped = 0.0;
  for (std::size_t i = 1; i < sums_.size(); ++i) {
    const double length = points_[i - 1].distance(points_[i == points_.size() ? 0 : i]);
    const double next = sum + length;
    dropped += sum >= length ? (sum - next) + length : (length - next) + sum;
    sum = next;
    sums_[i] = std::isfinite(next) ? std::max(sums_[i - 1], sum + dropped) : next;
  }
  total_ = sums_.back();
}

double gxArcLength::wrapped_(double length) const {
  if (!closed_) return std::clamp(length, 0.0, total_);
  if (total_ == 0.0) return 0.0;
  if (length >= 0.0 && length <= total_) return length;
  const double rest = std::fmod(length, total_);
  return rest < 0.0 ? rest + total_ : rest;
}

gxPlace gxArcLength::placeAt(double length) const {
  gxPlace place;
  if (status_ != gxStatus::eOk || std::isnan(length)) return place;
  if (!(total_ > 0.0) || !std::isfinite(total_) || (closed_ && !std::isfinite(length))) {
    if (total_ == 0.0) {
      place.edge = 0;
      place.t = 0.0;
      place.point = points_.front();
    }
    return place;
  }
  const double s = wrapped_(length);
  // The first point that is not before s; an edge with a length arrives there.
  const auto found = std::lower_bound(sums_.begin() + 1, sums_.end(), s);
  auto i = static_cast<std::size_t>(std::min(found, sums_.end() - 1) - sums_.begin());
  while (i + 1 < sums_.size() && sums_[i] == sums_[i - 1]) ++i;
  const gxVector<2>& a = points_[i - 1];
  const gxVector<2>& b = points_[i == points_.size() ? 0 : i];
  place.edge = static_cast<long>(edgeFrom(i - 1, points_.size(), closed_));
  place.t = std::clamp((s - sums_[i - 1]) / (sums_[i] - sums_[i - 1]), 0.0, 1.0);
  if (!(place.t < 1.0)) {
    place.point = b;
  } else {
    place.point = place.t == 0.0 ? a : a * (1.0 - place.t) + b * place.t;
  }
  return place;
}

double gxArcLength::lengthAt(const gxPlace& place) const {
  const std::size_t edges = gx_edgeCount(points_.size(), closed_);
  if (status_ != gxStatus::eOk || place.edge < 0 || static_cast<std::size_t>(place.edge) >= edges ||
      std::isnan(place.t)) {
    return kNaN;
  }
  const std::size_t start = gx_edgeStart(static_cast<std::size_t>(place.edge), points_.size(), closed_);
  const double t = std::clamp(place.t, 0.0, 1.0);
  return t == 1.0 ? sums_[start + 1] : sums_[start] + t * (sums_[start + 1] - sums_[start]);
}

std::vector<gxVector<2>> gxArcLength::part(double from, double to) const {
  std::vector<gxVector<2>> result;
  if (!placeAt(from).valid() || !placeAt(to).valid()) return result;
  const double first = wrapped_(from);
  const double last = wrapped_(to);
  const bool backwards = !closed_ && last < first;
  const auto add = [&result](const gxVector<2>& p) {
    if (result.empty() || !(result.back() == p)) result.push_back(p);
  };
  const auto addBetween = [&](double low, double high) {
    for (auto i =
             static_cast<std::size_t>(std::upper_bound(sums_.begin(), sums_.end(), low) - sums_.begin());
         i < sums_.size() && sums_[i] < high; ++i) {
      add(points_[i == points_.size() ? 0 : i]);
    }
  };
  if (backwards) {
    result = part(to, from);
    std::reverse(result.begin(), result.end());
    return result;
  }
  add(at(first));
  if (closed_ && last < first) {
    addBetween(first, total_);
    add(points_.front());
    addBetween(0.0, last);
  } else {
    addBetween(first, last);
  }
  add(at(last));
  return result;
}
