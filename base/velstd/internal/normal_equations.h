/// Least squares by the method of Levenberg and Marquardt, for the few unknowns of a fitted shape.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <utility>

/// How a refinement begins and ends.
struct gx_Refinement {
  /// A step that promises to lower the cost by less than this part of it is the last one.  Usually, it
  /// moves the unknowns by a ten-millionth of their own uncertainty, and what it leaves is less by far.
  double lastStep = 1e-14;
  /// Whether the last step is taken; it costs an evaluation.
  bool takesLastStep = true;
  /// The damping of the first step: so small that a good start converges at once.
  double damping = 1e-4;
};

/// The normal equations of N unknowns: the sums JᵀJ and Jᵀd over the points, and the sum of d².
template <std::size_t N>
struct gx_NormalEquations {
  std::array<std::array<double, N>, N> matrix{};  ///< JᵀJ; only i >= j is read
  std::array<double, N> gradient{};               ///< Jᵀd
  double cost = 0.0;                              ///< Σ d²

  /// Adds a point of distance d with the given derivatives.
  void add(const std::array<double, N>& derivatives, double d) {
    for (std::size_t i = 0; i < N; ++i) {
      for (std::size_t j = 0; j <= i; ++j) matrix[i][j] += derivatives[i] * derivatives[j];
      gradient[i] += derivatives[i] * d;
    }
    cost += d * d;
  }

  /// Keeps unknown k where it is.
  void hold(std::size_t k) {
    for (std::size_t i = 0; i < N; ++i) (i >= k ? matrix[i][k] : matrix[k][i]) = i == k ? 1.0 : 0.0;
    gradient[k] = 0.0;
  }

  /// Solves for the step that least squares proposes, each unknown damped in proportion to its own
  /// diagonal element.  Returns nothing where the matrix is singular.
  std::optional<std::array<double, N>> step(double damping) const {
    std::array<std::array<double, N>, N> low{};
    double trace = 0.0;
    for (std::size_t i = 0; i < N; ++i) trace += matrix[i][i];
    // An unknown that no point feels is held by this.
    const double floor = trace * std::numeric_limits<double>::epsilon() * 0x1p-10;
    for (std::size_t i = 0; i < N; ++i) {
      for (std::size_t j = 0; j <= i; ++j) {
        double value = matrix[i][j];
        if (i == j) value += damping * value + floor;
        for (std::size_t k = 0; k < j; ++k) value -= low[i][k] * low[j][k];
        if (i != j) {
          low[i][j] = value / low[j][j];
        } else if (value > 0.0) {
          low[i][i] = std::sqrt(value);
        } else {
          return std::nullopt;
        }
      }
    }
    std::array<double, N> delta{};
    for (std::size_t i = 0; i < N; ++i) {
      double value = -gradient[i];
      for (std::size_t k = 0; k < i; ++k) value -= low[i][k] * delta[k];
      delta[i] = value / low[i][i];
    }
    for (std::size_t i = N; i-- > 0;) {
      double value = delta[i];
      for (std::size_t k = i + 1; k < N; ++k) value -= low[k][i] * delta[k];
      delta[i] = value / low[i][i];
    }
    return delta;
  }

  /// Returns the decrease of the cost that the undamped linear model promises for a step, to the
  /// factor 2 at most.
  double promised(const std::array<double, N>& delta) const {
    double value = 0.0;
    for (std::size_t i = 0; i < N; ++i) value -= gradient[i] * delta[i];
    return value;
  }
};

/// Refines a shape until the sum of squared distances stops falling, in at most `most` evaluations.
///
/// `evaluate(shape)` returns the normal equations at a shape, `moved(shape, step)` the shape after a
/// step, or nothing where that is no shape any more.  Returns the shape with the least cost seen, within
/// rounding, and its cost.
template <std::size_t N, class Shape, class Evaluate, class Moved>
std::pair<Shape, double> gx_LeastSquares(const Shape& start, int most, const gx_Refinement& how,
                                         const Evaluate& evaluate, const Moved& moved) {
  // A promise below this part may drown in the rounding of the cost: such a step is taken unless the
  // cost rises by more.
  constexpr double kRounding = 1e-10;
  // Given up when a step of no size helps.
  constexpr double kLargestDamping = 1e8;

  Shape best = start;
  gx_NormalEquations<N> here = evaluate(best);
  double damping = how.damping;
  for (int i = 1; i < most && here.cost > 0.0 && damping < kLargestDamping; ++i) {
    const auto delta = here.step(damping);
    const double promised = delta ? here.promised(*delta) : 0.0;
    const bool last = delta && promised <= how.lastStep * here.cost;
    if (last && !how.takesLastStep) break;
    const double allowed = promised <= kRounding * here.cost ? here.cost * (1.0 + kRounding) : here.cost;
    const std::optional<Shape> next = delta ? moved(best, *delta) : std::nullopt;
    if (next) {
      gx_NormalEquations<N> there = evaluate(*next);
      if (there.cost < here.cost || there.cost < allowed) {
        best = *next;
        here = std::move(there);
        damping *= 0.05;
        if (last) break;
        continue;
      }
    }
    if (last) break;
    damping = std::max(damping, 1e-7) * 10.0;
  }
  return {best, here.cost};
}
