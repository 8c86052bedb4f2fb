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
  using Matrix = std::array<std::array<double, N>, N>;

  Matrix matrix{};                   ///< JᵀJ; only i >= j is read
  std::array<double, N> gradient{};  ///< Jᵀd
  double cost = 0.0;                 ///< Σ d²

  /// Keeps unknown k where it is.
  void hold(std::size_t k) {
    for (std::size_t i = 0; i < N; ++i) (i >= k ? matrix[i][k] : matrix[k][i]) = i == k ? 1.0 : 0.0;
    gradient[k] = 0.0;
  }

  /// Solves for the step that least squares proposes, each unknown damped in proportion to its own
  /// diagonal element, with `curve` added to the matrix.  Returns nothing where that is not positive.
  std::optional<std::array<double, N>> step(double damping, const Matrix& curve = {}) const {
    std::array<std::array<double, N>, N> low{};
    double trace = 0.0;
    for (std::size_t i = 0; i < N; ++i) trace += matrix[i][i];
    // An unknown that no point feels is held by this.
    const double floor = trace * std::numeric_limits<double>::epsilon() * 0x1p-10;
    for (std::size_t i = 0; i < N; ++i) {
      for (std::size_t j = 0; j <= i; ++j) {
        double value = matrix[i][j];
        if (i == j) value += damping * value + floor;
        value += curve[i][j];
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

/// The curvature of the cost that JᵀJ leaves out, Σ d d″, learnt from the steps taken: where much distance
/// is left, JᵀJ alone creeps towards the minimum, or steps over it and back for ever.  After each step the
/// symmetric correction of rank one that explains the change of the gradient (W. Davidon, "Variance
/// algorithm for minimization", 1968; J. Dennis, D. Gay and R. Welsch, "An adaptive nonlinear least-squares
/// algorithm", 1981, for the use beside JᵀJ).
template <std::size_t N>
class gx_LearntCurve {
 public:
  const typename gx_NormalEquations<N>::Matrix& matrix() const { return matrix_; }
  bool empty() const { return empty_; }
  void forget() { *this = {}; }

  void learn(const gx_NormalEquations<N>& here, const gx_NormalEquations<N>& there,
             const std::array<double, N>& step) {
    std::array<double, N> left{};
    double along = 0.0;
    double leftSquare = 0.0;
    double stepSquare = 0.0;
    for (std::size_t i = 0; i < N; ++i) {
      left[i] = there.gradient[i] - here.gradient[i];
      for (std::size_t j = 0; j < N; ++j) {
        const double element =
            i >= j ? there.matrix[i][j] + matrix_[i][j] : there.matrix[j][i] + matrix_[j][i];
        left[i] -= element * step[j];
      }
      along += left[i] * step[i];
      leftSquare += left[i] * left[i];
      stepSquare += step[i] * step[i];
    }
    if (!(along * along > kLeastPart * leftSquare * stepSquare)) return;
    for (std::size_t i = 0; i < N; ++i) {
      for (std::size_t j = 0; j <= i; ++j) matrix_[i][j] += left[i] * left[j] / along;
    }
    empty_ = false;
  }

 private:
  // A change of the gradient that is nearly across the step would make a correction of any size.
  static constexpr double kLeastPart = 1e-8;

  typename gx_NormalEquations<N>::Matrix matrix_{};  // only i >= j
  bool empty_ = true;
};

/// Refines a shape until the sum of squared distances stops falling, in at most `most` evaluations.
///
/// `evaluate(shape)` returns the normal equations at a shape, `moved(shape, step)` the shape after a
/// step, or nothing where that is no shape any more.  After a step that is taken, `enough(shape, equations)`
/// may end it.  Returns the shape with the least cost seen, within rounding, and its cost.
template <std::size_t N, class Shape, class Evaluate, class Moved, class Enough>
std::pair<Shape, double> gx_LeastSquares(const Shape& start, int most, const gx_Refinement& how,
                                         const Evaluate& evaluate, const Moved& moved,
                                         const Enough& enough) {
  // A promise below this part may drown in the rounding of the cost: such a step is taken unless the
  // cost rises by more.
  constexpr double kRounding = 1e-10;
  // Given up when a step of no size helps.
  constexpr double kLargestDamping = 1e8;

  // From here on the curvature is learnt; farther away one step tells nothing about the next.
  constexpr double kLearning = 0.05;

  Shape best = start;
  gx_NormalEquations<N> here = evaluate(best);
  gx_LearntCurve<N> curve;
  double damping = how.damping;
  for (int i = 1; i < most && here.cost > 0.0 && damping < kLargestDamping; ++i) {
    auto delta = here.step(damping, curve.matrix());
    if (!delta && !curve.empty()) {
      curve.forget();
      delta = here.step(damping);
    }
    const double promised = delta ? here.promised(*delta) : 0.0;
    const bool last = delta && promised <= how.lastStep * here.cost;
    if (last && !how.takesLastStep) break;
    const double allowed = promised <= kRounding * here.cost ? here.cost * (1.0 + kRounding) : here.cost;
    const std::optional<Shape> next = delta ? moved(best, *delta) : std::nullopt;
    if (next) {
      gx_NormalEquations<N> there = evaluate(*next);
      if (there.cost < here.cost || there.cost < allowed) {
        if (promised <= kLearning * here.cost) curve.learn(here, there, *delta);
        best = *next;
        here = std::move(there);
        damping *= 0.05;
        if (last || enough(best, here)) break;
        continue;
      }
    }
    if (last) break;
    if (!curve.empty()) {
      curve.forget();
      continue;
    }
    damping = std::max(damping, 1e-7) * 10.0;
  }
  return {best, here.cost};
}

/// The same to the end.
template <std::size_t N, class Shape, class Evaluate, class Moved>
std::pair<Shape, double> gx_LeastSquares(const Shape& start, int most, const gx_Refinement& how,
                                         const Evaluate& evaluate, const Moved& moved) {
  const auto never = [](const Shape&, const gx_NormalEquations<N>&) { return false; };
  return gx_LeastSquares<N>(start, most, how, evaluate, moved, never);
}
