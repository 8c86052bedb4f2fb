// Nodes by their coordinates.
#include <overlay/internal/node_table.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <map>
#include <random>
#include <utility>

TEST(NodeTable, APointHasOneNumberHoweverOftenItComes) {
  gx_NodeTable table;
  EXPECT_EQ(table.add({1, 2}), 0U);
  EXPECT_EQ(table.add({2, 1}), 1U);
  EXPECT_EQ(table.add({1, 2}), 0U);
  EXPECT_EQ(table.size(), 2U);
  EXPECT_EQ(table.at(1), gxVector<2>(2, 1));
}

TEST(NodeTable, ZeroIsPlusZeroWhereOneOfThoseThatCameWas) {
  gx_NodeTable table;
  const std::uint32_t node = table.add({-0.0, -0.0});
  EXPECT_TRUE(std::signbit(table.at(node).x()));
  EXPECT_EQ(table.add({0.0, -0.0}), node);
  EXPECT_FALSE(std::signbit(table.at(node).x()));
  EXPECT_TRUE(std::signbit(table.at(node).y()));
  EXPECT_EQ(table.add({-0.0, 0.0}), node);
  EXPECT_FALSE(std::signbit(table.at(node).x()));
  EXPECT_FALSE(std::signbit(table.at(node).y()));
}

TEST(NodeTable, IsEmptyAgainAfterClear) {
  gx_NodeTable table;
  table.add({1, 2});
  table.clear();
  EXPECT_EQ(table.size(), 0U);
  EXPECT_EQ(table.add({3, 4}), 0U);
}

TEST(NodeTable, ManyPointsOfALatticeHaveTheNumbersOfAMap) {
  std::mt19937 random(41);
  gx_NodeTable table;
  std::map<std::pair<double, double>, std::uint32_t> slow;
  for (int i = 0; i < 20000; ++i) {
    const gxVector<2> p(static_cast<double>(random() % 90) - 45,
                        std::ldexp(static_cast<double>(random() % 90), -40));
    const auto [at, isNew] =
        slow.emplace(std::pair(p.x(), p.y()), static_cast<std::uint32_t>(slow.size()));
    ASSERT_EQ(table.add(p), at->second) << i;
  }
  EXPECT_EQ(table.size(), slow.size());
}
