/// A fit that may leave out a few points far from the shape.
#pragma once

#include <velstd/budget.h>
#include <velstd/random.h>
#include <velstd/vector.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>
#include <optional>
#include <vector>

/// Fits a shape of which up to `ignore` points farther than `limit` may be left out.
///
/// What is minimised is the sum of the squared distances of the points that are kept, plus `limit`²
/// for each that is left out: so nobody is left out who can be kept for less.  For a given shape the
/// best choice is to leave out the farthest of the points beyond the limit, for given points the
/// best shape is their least squares fit; taking turns never raises the sum and so comes to an end
/// (the concentration steps of P. Rousseeuw and K. Van Driessen, "Computing LTS regression for large
/// data sets", Data Mining and Knowledge Discovery 12, 2006).  The turns are started from the fit of
/// all points and, as gross outliers spoil that one, from fits of random minimal subsets.
///
/// `Solver` has `Shape`, `kFewest`, `fit`, `roughFit` and `distances`, as `gx_CircleSolver`.
template <class Solver>
class gx_OutlierSearch {
 public:
  using Shape = typename Solver::Shape;
  using Points = std::vector<gxVector<2>>;

  struct Result {
    Shape shape;
    double cost = 0.0;                ///< the sum that is minimised
    double kept = 0.0;                ///< the part of it that comes from the kept points
    std::vector<unsigned long> left;  ///< indices of the points that are left out, ascending
  };

  /// Every pass over points spends as many steps of the budget.
  gx_OutlierSearch(const Solver& solver, unsigned long ignore, double limit, gxBudget& budget)
      : solver_(solver), ignore_(ignore), limit_(limit), budget_(budget) {}

  /// Returns the best fit found, nothing where the points determine none.
  std::optional<Result> run(const Points& points) const {
    const std::size_t most = std::isfinite(limit_) ? mostLeft(points.size(), ignore_) : 0;
    budget_.spend(points.size());
    const std::optional<typename Solver::Fitted> plain = solver_.fit(points);
    if (most == 0)
      return plain ? std::optional<Result>({plain->shape, plain->cost, plain->cost, {}}) : std::nullopt;

    std::optional<Result> best;
    if (plain) {
      best = judge(plain->shape, points, most);
      if (best->left.empty()) return best;
      best = concentrate(*best, points, most);
    }
    for (const Shape& start : randomStarts(points)) {
      const Result found = concentrate(judge(start, points, most), points, most);
      if (!best || found.cost < best->cost) best = found;
    }
    return best;
  }

  /// Chooses the points to leave out for a given shape.
  Result judge(const Shape& shape, const Points& points, std::size_t most) const {
    budget_.spend(points.size());
    Result result{shape, 0.0, 0.0, {}};
    std::vector<double> distance;
    Solver::distances(shape, points, distance);
    if (most > 0) {
      for (std::size_t i = 0; i < distance.size(); ++i) {
        if (!(distance[i] <= limit_)) result.left.push_back(i);
      }
      if (result.left.size() > most) {
        const auto farther = [&](unsigned long a, unsigned long b) {
          return distance[a] > distance[b] || (distance[a] == distance[b] && a < b);
        };
        std::nth_element(result.left.begin(), result.left.begin() + static_cast<std::ptrdiff_t>(most),
                         result.left.end(), farther);
        result.left.resize(most);
        std::sort(result.left.begin(), result.left.end());
      }
    }
    std::size_t next = 0;
    for (std::size_t i = 0; i < distance.size(); ++i) {
      if (next < result.left.size() && result.left[next] == i) {
        ++next;
      } else {
        result.kept += distance[i] * distance[i];
      }
    }
    result.cost = result.kept;
    if (next > 0) result.cost += limit_ * limit_ * static_cast<double>(next);
    return result;
  }

 private:
  // Turns settle within some ten; the bound is for the caller's patience.
  static constexpr int kMostTurns = 40;
  // A subset of 5 among points half of which are wrong is right once in 32: of 250, none is with
  // probability 0.0004.
  static constexpr int kSubsets = 250;
  // So many points are enough to tell a good start from a bad one, and so many starts are refined.
  static constexpr std::size_t kEnough = 400;
  static constexpr std::size_t kRefined = 4;

  static std::size_t mostLeft(std::size_t count, std::size_t wanted) {
    return count <= Solver::kFewest ? 0 : std::min(wanted, count - Solver::kFewest);
  }

  static Points without(const Points& points, const std::vector<unsigned long>& left) {
    Points kept;
    kept.reserve(points.size() - left.size());
    std::size_t next = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (next < left.size() && left[next] == i) {
        ++next;
      } else {
        kept.push_back(points[i]);
      }
    }
    return kept;
  }

  // Takes turns, from a judged shape, while the sum falls.
  Result concentrate(Result best, const Points& points, std::size_t most) const {
    for (int i = 0; i < kMostTurns; ++i) {
      budget_.spend(points.size());
      const std::optional<typename Solver::Fitted> fitted = solver_.fit(without(points, best.left));
      if (!fitted) break;
      Result next = judge(fitted->shape, points, most);
      if (!(next.cost < best.cost)) break;
      const bool settled = next.left == best.left;
      best = std::move(next);
      if (settled) break;
    }
    return best;
  }

  // The best shapes through random minimal subsets, judged on a sample of the points.
  std::vector<Shape> randomStarts(const Points& points) const {
    gxRandomUniform random(1);
    const auto draw = [&random](std::size_t count) {
      return std::min(count - 1, static_cast<std::size_t>(random.next(0.0, static_cast<double>(count))));
    };
    Points sample = points;
    for (std::size_t i = 0; i < std::min(kEnough, points.size()); ++i) {
      std::swap(sample[i], sample[i + draw(points.size() - i)]);
    }
    if (sample.size() > kEnough) sample.resize(kEnough);
    const double share = static_cast<double>(sample.size()) / static_cast<double>(points.size());
    const double expected =
        std::min(static_cast<double>(ignore_), static_cast<double>(points.size())) * share;
    // Three standard deviations above the number of outliers to expect in the sample.
    const double generous =
        sample.size() < points.size() ? expected + 3.0 * std::sqrt(expected) + 1.0 : expected;
    const std::size_t most = mostLeft(sample.size(), static_cast<std::size_t>(generous));

    std::vector<Result> found;
    for (int k = 0; k < kSubsets; ++k) {
      for (std::size_t i = 0; i < Solver::kFewest; ++i)
        std::swap(sample[i], sample[i + draw(sample.size() - i)]);
      const Points few(sample.begin(), sample.begin() + static_cast<std::ptrdiff_t>(Solver::kFewest));
      const std::optional<Shape> first = solver_.roughFit(few);
      if (!first) continue;
      Result result = judge(*first, sample, most);
      if (const auto second = solver_.roughFit(without(sample, result.left))) {
        Result better = judge(*second, sample, most);
        if (better.cost < result.cost) result = std::move(better);
      }
      if (std::isfinite(result.cost)) found.push_back(std::move(result));
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const Result& a, const Result& b) { return a.cost < b.cost; });
    if (found.size() > kRefined) found.resize(kRefined);
    std::vector<Shape> starts;
    starts.reserve(found.size());
    for (const Result& result : found) starts.push_back(result.shape);
    return starts;
  }

  const Solver& solver_;
  unsigned long ignore_;
  double limit_;
  gxBudget& budget_;
};
