// Who holds a place: rules, holes and their holes, operands.
#include <overlay/internal/membership.h>

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

using M = gx_Membership;
using Rule = gx_RingRule;

gx_RingRole outline(std::uint32_t operand, Rule rule = Rule::eEvenOdd) {
  return {operand, gx_EdgeSet::kNone, rule};
}

gx_RingRole hole(std::uint32_t parent, std::uint32_t operand = 0) {
  return {operand, parent, Rule::eEvenOdd};
}

}  // namespace

TEST(Membership, RulesByWindingNumber) {
  struct Case {
    Rule rule;
    bool at[5];  // at −2 … 2
  };
  for (const Case& c : {Case{Rule::eEvenOdd, {false, true, false, true, false}},
                        Case{Rule::eNonZero, {true, true, false, true, true}},
                        Case{Rule::ePositive, {false, false, false, true, true}},
                        Case{Rule::eNothing, {false, false, false, false, false}}}) {
    for (int w = -2; w <= 2; ++w) {
      M membership({outline(0, c.rule)}, 1, M::eUnion);
      membership.step(0, w);
      EXPECT_EQ(membership.label(), c.at[w + 2] ? 1 : 0) << w;
    }
  }
}

TEST(Membership, AHoleTakesAwayAndItsHoleGivesBack) {
  M membership({outline(0), hole(0), hole(1), hole(0)}, 1, M::eUnion);
  membership.step(1, 1);
  EXPECT_EQ(membership.label(), 0);
  membership.step(0, 1);
  EXPECT_EQ(membership.label(), 0);
  membership.step(2, 1);
  EXPECT_EQ(membership.label(), 1);
  membership.step(3, 1);
  EXPECT_EQ(membership.label(), 0);
  membership.step(2, -1);
  membership.step(1, -1);
  EXPECT_EQ(membership.label(), 0);
  membership.step(3, -1);
  EXPECT_EQ(membership.label(), 1);
}

TEST(Membership, QuestionsAboutThreeOperands) {
  const unsigned char expected[4][8] = {{0, 1, 1, 1, 1, 1, 1, 1},
                                        {0, 0, 0, 0, 0, 0, 0, 1},
                                        {0, 1, 0, 0, 0, 0, 0, 0},
                                        {0, 1, 1, 0, 1, 0, 0, 1}};
  for (int question = 0; question < 4; ++question) {
    for (unsigned held = 0; held < 8; ++held) {
      M membership({outline(0), outline(1), outline(2)}, 3, static_cast<M::Question>(question));
      for (std::uint32_t i = 0; i < 3; ++i) {
        if (((held >> i) & 1U) != 0) membership.step(i, 1);
      }
      EXPECT_EQ(membership.label(), expected[question][held]) << question << " " << held;
    }
  }
}

TEST(Membership, TheFirstTwoOperandsAreToldApart) {
  M membership({outline(0), outline(1)}, 2, M::eFirstTwo);
  EXPECT_EQ(membership.label(), 0);
  membership.step(1, 1);
  EXPECT_EQ(membership.label(), 2);
  membership.step(0, 1);
  EXPECT_EQ(membership.label(), 3);
  membership.step(1, -1);
  EXPECT_EQ(membership.label(), 1);
}

TEST(Membership, TwoRegionsOfOneOperandThatOverlapHoldTogether) {
  M membership({outline(0), outline(0)}, 1, M::eSymmetric);
  membership.step(0, 1);
  membership.step(1, -1);
  EXPECT_EQ(membership.label(), 1);
  membership.step(0, -1);
  EXPECT_EQ(membership.label(), 1);
  membership.step(1, 1);
  EXPECT_EQ(membership.label(), 0);
}

TEST(Membership, RandomStepsLeadToWhatCountingAnewSays) {
  std::mt19937 random(51);
  const auto any = [&random](std::uint32_t below) {
    return static_cast<std::uint32_t>(random() % below);
  };
  for (int round = 0; round < 300; ++round) {
    std::vector<gx_RingRole> roles;
    for (std::uint32_t i = 0; i < 8; ++i) {
      roles.push_back(i == 0 || random() % 2 == 0 ? outline(any(2)) : hole(any(i)));
      roles.back().rule = static_cast<Rule>(random() % 3);
    }
    M membership(roles, 2, M::eFirstTwo);
    std::vector<int> around(8, 0);
    for (int steps = 0; steps < 60; ++steps) {
      const std::uint32_t ring = any(8);
      const int by = random() % 2 == 0 ? 1 : -1;
      membership.step(ring, by);
      around[ring] += by;
      std::vector<bool> holds(8);
      unsigned expected = 0;
      for (std::uint32_t i = 8; i-- > 0;) {  // holes come after what they are holes of
        const int w = around[i];
        holds[i] = roles[i].rule == Rule::eEvenOdd   ? w % 2 != 0
                   : roles[i].rule == Rule::eNonZero ? w != 0
                                                     : w > 0;
        for (std::uint32_t h = i + 1; h < 8; ++h) {
          if (roles[h].parent == i && holds[h]) holds[i] = false;
        }
        if (roles[i].parent != gx_EdgeSet::kNone) continue;
        if (holds[i]) expected |= 1U << roles[i].operand;
      }
      ASSERT_EQ(membership.label(), expected) << "round " << round;
    }
  }
}
