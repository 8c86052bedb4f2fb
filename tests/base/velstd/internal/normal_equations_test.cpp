// Covers base/velstd/internal/normal_equations.h
#include <gtest/gtest.h>
#include <velstd/internal/normal_equations.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <random>

namespace {

using Pair = std::array<double, 2>;
using Equations = gx_NormalEquations<2>;

// Distances d_i(x) with much left at the minimum: Σ d d″ is as large as JᵀJ there.
struct Bent {
  int evaluations = 0;

  Equations operator()(const Pair& x) {
    ++evaluations;
    Equations sums;
    const auto add = [&sums](double d, const Pair& slope) {
      for (std::size_t i = 0; i < 2; ++i) {
        for (std::size_t j = 0; j <= i; ++j) sums.matrix[i][j] += slope[i] * slope[j];
        sums.gradient[i] += slope[i] * d;
      }
      sums.cost += d * d;
    };
    add(3.0 + x[0] * x[0] * 0.2 + x[0], {1.0 + 0.4 * x[0], 0.0});
    add(-2.0 + x[0] - 0.15 * x[1] * x[1], {1.0, -0.3 * x[1]});
    add(x[1] + 0.1 * x[0] * x[1] - 1.0, {0.1 * x[1], 1.0 + 0.1 * x[0]});
    return sums;
  }
};

std::optional<Pair> moved(const Pair& x, const Pair& step) {
  return Pair{x[0] + step[0], x[1] + step[1]};
}

}  // namespace

TEST(LearntCurve, HoldsTheWholeCurvatureOfAQuadraticAfterAsManySteps) {
  // The gradient of a quadratic is H x; the equations know the matrix M alone.
  std::mt19937_64 engine(77);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  const Equations::Matrix whole = {{{5.0, 0.0}, {-1.5, 7.0}}};
  const auto at = [&whole](const Pair& x) {
    Equations sums;
    sums.matrix = {{{2.0, 0.0}, {0.25, 3.0}}};
    sums.gradient = {whole[0][0] * x[0] + whole[1][0] * x[1], whole[1][0] * x[0] + whole[1][1] * x[1]};
    return sums;
  };
  gx_LearntCurve<2> curve;
  EXPECT_TRUE(curve.empty());
  Pair x = {uniform(engine), uniform(engine)};
  for (int k = 0; k < 2; ++k) {
    const Pair step = {uniform(engine), uniform(engine)};
    const Pair next = {x[0] + step[0], x[1] + step[1]};
    curve.learn(at(x), at(next), step);
    x = next;
  }
  EXPECT_FALSE(curve.empty());
  EXPECT_NEAR(curve.matrix()[0][0], 3.0, 1e-9);
  EXPECT_NEAR(curve.matrix()[1][0], -1.75, 1e-9);
  EXPECT_NEAR(curve.matrix()[1][1], 4.0, 1e-9);
  curve.forget();
  EXPECT_TRUE(curve.empty());
  EXPECT_EQ(curve.matrix()[1][1], 0.0);
}

TEST(LearntCurve, LearnsNothingFromAStepThatTheEquationsExplain) {
  Equations here;
  Equations there;
  there.matrix = {{{2.0, 0.0}, {1.0, 3.0}}};
  there.gradient = {2.0 * 0.5 + 1.0 * 0.25, 1.0 * 0.5 + 3.0 * 0.25};
  gx_LearntCurve<2> curve;
  curve.learn(here, there, {0.5, 0.25});
  EXPECT_TRUE(curve.empty());
}

TEST(LeastSquares, EndsSoonWhereMuchDistanceIsLeft) {
  Bent evaluate;
  const auto [x, cost] = gx_LeastSquares<2>(
      Pair{0.0, 0.5}, 100, gx_Refinement(), [&](const Pair& p) { return evaluate(p); }, moved);
  Bent judge;
  const Equations end = judge(x);
  EXPECT_EQ(end.cost, cost);
  EXPECT_GT(cost, 1.0);
  EXPECT_NEAR(end.gradient[0], 0.0, 1e-6);
  EXPECT_NEAR(end.gradient[1], 0.0, 1e-6);
  EXPECT_LT(evaluate.evaluations, 14);
}

TEST(LeastSquares, EndsWhereItsCallerHasEnough) {
  Bent evaluate;
  int asked = 0;
  const auto result = gx_LeastSquares<2>(
      Pair{0.0, 0.5}, 100, gx_Refinement(), [&](const Pair& p) { return evaluate(p); }, moved,
      [&asked](const Pair&, const Equations&) { return ++asked == 2; });
  EXPECT_EQ(asked, 2);
  Bent judge;
  EXPECT_EQ(judge(result.first).cost, result.second);
  EXPECT_LT(evaluate.evaluations, 6);
}
