// Every operation on every family of operands, against the exact judge.  GXSHAPE_SOAK=1 makes 200,000 cases
// of each operation.
#include <overlay/boolean.h>
#include <overlay/cgal_judge.h>
#include <overlay/repair.h>
#include <overlay/shape_builder.h>
#include <support/overlay_judge.h>
#include <support/overlay_shapes.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

using judge::Rule;
using slow::Set;

struct Operation {
  const char* name;
  int operands;
  Rule rule;
  judge::Combination holds;
  std::function<gxRegionSet(const std::vector<gxRegionSet>&)> run;
};

long heldBy(const std::vector<bool>& held) {
  return std::count(held.begin(), held.end(), true);
}

Operation repair(const char* name, Rule rule) {
  return {name, 1, rule, [](const auto& held) { return held[0]; },
          [rule](const std::vector<gxRegionSet>& sets) {
            return gfRepair(sets[0], static_cast<gxFillRule>(static_cast<int>(rule))).regions;
          }};
}

const std::vector<Operation>& operations() {
  using Sets = std::vector<gxRegionSet>;
  static const std::vector<Operation> all{
      repair("repair even-odd", Rule::eEvenOdd),
      repair("repair non-zero", Rule::eNonZero),
      repair("repair positive", Rule::ePositive),
      repair("repair outer", Rule::eOuter),
      {"union", 2, Rule::eEvenOdd, [](const auto& held) { return heldBy(held) > 0; },
       [](const Sets& s) { return gfUnion(s[0], s[1]); }},
      {"intersection", 2, Rule::eEvenOdd, [](const auto& held) { return heldBy(held) == 2; },
       [](const Sets& s) { return gfIntersection(s[0], s[1]); }},
      {"difference", 2, Rule::eEvenOdd, [](const auto& held) { return held[0] && !held[1]; },
       [](const Sets& s) { return gfDifference(s[0], s[1]); }},
      {"symmetric difference", 2, Rule::eEvenOdd, [](const auto& held) { return heldBy(held) == 1; },
       [](const Sets& s) { return gfSymmetricDifference(s[0], s[1]); }},
      {"union of many", 5, Rule::eEvenOdd, [](const auto& held) { return heldBy(held) > 0; },
       [](const Sets& s) { return gfUnion(gxShapes(s)); }},
  };
  return all;
}

Set resultOf(const Operation& operation, const std::vector<Set>& operands) {
  std::vector<gxRegionSet> sets;
  for (const Set& operand : operands) sets.push_back(judge::setFrom(operand));
  return judge::plainFrom(operation.run(sets));
}

bool sameSets(const Set& a, const Set& b) {
  return judge::ringsOf(a) == judge::ringsOf(b) && a.size() == b.size();
}

class Operations : public testing::TestWithParam<std::size_t> {
 protected:
  const Operation& operation = operations()[GetParam()];

  // All operations together meet every family by default.  A soak makes 50 times the rounds that are asked for
  // here: 200,000 cases.  With five operands a round takes ten times as long, most of it the judge's.
  int rounds(int few) const {
    if (std::getenv("GXSHAPE_SOAK") != nullptr) return 4000;
    return operation.operands > 2 ? few / 4 : few;
  }
};

void expectPoints(const judge::Question& question, const judge::Answer& answer, const Set& result,
                  double bend) {
  int asked = 0;
  for (const gxVector<2>& p : answer.samples) {
    if (!std::isfinite(p.x()) || !std::isfinite(p.y()) || ++asked > 60) continue;
    if (!(judge::clearance(question.rings, p) > 4 * bend)) continue;
    bool onBorder = false;
    const bool held = judge::holdsPoint(question, p, onBorder);
    ASSERT_EQ(judge::setHolds(result, p, onBorder), held) << testing::PrintToString(p);
  }
}

TEST_P(Operations, areValidAndHoldWhatTheExactJudgeSays) {
  RandomShapes random(std::string("judged ") + operation.name, rounds(20));
  while (random.next()) {
    const OverlayFamily family = someFamily(random);
    SCOPED_TRACE(random.trace() + " " + nameOf(family));
    const auto operands = overlayOperands(random, family, operation.operands);
    const Set result = resultOf(operation, operands);
    ASSERT_EQ(judge::faultOf(result), "");
    ASSERT_EQ(judge::disorderOf(result), "");
    if (family == OverlayFamily::eHuge) continue;  // areas are infinite
    judge::Question question = judge::combined(operands, operation.rule, operation.holds);
    question.outer = operation.rule == Rule::eOuter;
    const judge::Answer answer = judge::judgeByCgal(question);
    // Bent by rounds of noding, or put on a grid.
    const double bend = 2.83 * judge::ulpOf(question.rings);
    const double area = judge::areaOf(result);
    ASSERT_NEAR(area, answer.area, 1e-12 * answer.area + bend * judge::lengthOf(question.rings));
    if (!question.outer) expectPoints(question, answer, result, bend);
  }
}

TEST_P(Operations, giveTheSameBitsHoweverOperandsAreSaid) {
  RandomShapes random(std::string("said differently ") + operation.name, rounds(50));
  while (random.next()) {
    const OverlayFamily family = someFamily(random);
    SCOPED_TRACE(random.trace() + " " + nameOf(family));
    const auto operands = overlayOperands(random, family, operation.operands);
    const Set result = resultOf(operation, operands);
    std::vector<Set> others;
    const bool reverse = operation.rule != Rule::ePositive;
    for (const Set& operand : operands) others.push_back(saidDifferently(random, operand, reverse));
    if (operation.holds({false, true}) == operation.holds({true, false}) && others.size() > 1) {
      std::swap(others.front(), others.back());
    }
    ASSERT_TRUE(sameSets(resultOf(operation, others), result));
    // A result is repaired to itself.
    ASSERT_TRUE(sameSets(judge::plainFrom(gfRepair(judge::setFrom(result)).regions), result));
  }
}

TEST_P(Operations, scaleWithPowersOfTwo) {
  RandomShapes random(std::string("scaled ") + operation.name, rounds(24));
  while (random.next()) {
    const OverlayFamily family = someFamily(random);
    SCOPED_TRACE(random.trace() + " " + nameOf(family));
    const bool extreme = family == OverlayFamily::eHuge || family == OverlayFamily::eTiny ||
                         family == OverlayFamily::eMixedExponents || family == OverlayFamily::eCopies;
    if (extreme) continue;
    const int power = random.integer(-400, 400);
    const auto scaled = [power](const Set& set) {
      return mappedSet(set, [power](const auto& p) {
        return gxVector<2>(std::ldexp(p.x(), power), std::ldexp(p.y(), power));
      });
    };
    const auto operands = overlayOperands(random, family, operation.operands);
    std::vector<Set> others;
    for (const Set& operand : operands) others.push_back(scaled(operand));
    ASSERT_TRUE(sameSets(resultOf(operation, others), scaled(resultOf(operation, operands)))) << power;
  }
}

INSTANTIATE_TEST_SUITE_P(All, Operations, testing::Range(std::size_t{0}, operations().size()),
                         [](const testing::TestParamInfo<std::size_t>& one) {
                           std::string name = operations()[one.param].name;
                           for (char& c : name) c = c == ' ' || c == '-' ? '_' : c;
                           return name;
                         });

// ---- Algebra ----------------------------------------------------------------------------------------

TEST(Algebra, areasAddUp) {
  RandomShapes random("algebra of areas", 80);
  while (random.next()) {
    const OverlayFamily family = someFamily(random);
    SCOPED_TRACE(random.trace() + " " + nameOf(family));
    if (family == OverlayFamily::eHuge) continue;
    const auto operands = overlayOperands(random, family, 2);
    const gxRegionSet a = judge::setFrom(operands[0]);
    const gxRegionSet b = judge::setFrom(operands[1]);
    const auto area = [](const gxRegionSet& set) { return judge::areaOf(judge::plainFrom(set)); };
    const double sum = area(gfUnion(a)) + area(gfUnion(b));
    judge::Rings rings = judge::ringsOf(operands[0]);
    for (const judge::Ring& ring : judge::ringsOf(operands[1])) rings.push_back(ring);
    const double slack = 1e-12 * sum + 12 * judge::ulpOf(rings) * judge::lengthOf(rings);
    ASSERT_NEAR(area(gfUnion(a, b)) + area(gfIntersection(a, b)), sum, slack);
    ASSERT_NEAR(area(gfDifference(a, b)) + area(gfIntersection(a, b)), area(gfUnion(a)), slack);
    ASSERT_NEAR(area(gfSymmetricDifference(a, b)) + area(gfIntersection(a, b)), area(gfUnion(a, b)),
                slack);
  }
}

}  // namespace
