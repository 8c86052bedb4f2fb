#include <cntr/internal/search/exchange_order.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace {

using Order = std::vector<std::size_t>;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(ExchangeOrder, OfNothingAndOfOneKey) {
  EXPECT_EQ(gx_exchangeOrder({}), Order());
  EXPECT_EQ(gx_exchangeOrder({7}), Order({0}));
}

TEST(ExchangeOrder, PutsKeysInAscendingOrder) {
  EXPECT_EQ(gx_exchangeOrder({3, 1, 2}), Order({1, 2, 0}));
  EXPECT_EQ(gx_exchangeOrder({1, 2, 3}), Order({0, 1, 2}));
  EXPECT_EQ(gx_exchangeOrder({-0.5, -kInf, kInf, 0}), Order({1, 0, 3, 2}));
}

TEST(ExchangeOrder, EqualKeysAloneStayAsTheyAre) {
  EXPECT_EQ(gx_exchangeOrder({5, 5, 5, 5}), Order({0, 1, 2, 3}));
  EXPECT_EQ(gx_exchangeOrder({0.0, -0.0}), Order({0, 1}));
}

TEST(ExchangeOrder, ASmallerKeyBehindTwoEqualOnesExchangesThem) {
  EXPECT_EQ(gx_exchangeOrder({2, 2, 1}), Order({2, 1, 0}));
  EXPECT_EQ(gx_exchangeOrder({2, 2, 2, 1}), Order({3, 1, 2, 0}));
}

TEST(ExchangeOrder, ASecondSmallerKeyExchangesThemAgain) {
  EXPECT_EQ(gx_exchangeOrder({2, 2, 1, 0}), Order({3, 2, 0, 1}));
  EXPECT_EQ(gx_exchangeOrder({2, 2, 1, 1}), Order({2, 3, 0, 1}));
}

TEST(ExchangeOrder, NaNIsGreaterThanEveryNumberAndEqualToItself) {
  EXPECT_EQ(gx_exchangeOrder({kNaN, 1, kInf}), Order({1, 2, 0}));
  EXPECT_EQ(gx_exchangeOrder({kNaN, kNaN}), Order({0, 1}));
  EXPECT_EQ(gx_exchangeOrder({kNaN, -kNaN, 1}), Order({2, 1, 0}));
}

// The sort itself, on a list long enough for the other way of finding its order.
Order bySorting(const std::vector<double>& keys) {
  Order order;
  for (std::size_t i = 0; i < keys.size(); ++i) order.push_back(i);
  const auto greater = [&](std::size_t a, std::size_t b) {
    if (std::isnan(keys[b])) return false;
    return std::isnan(keys[a]) || keys[a] > keys[b];
  };
  for (std::size_t i = 0; i + 1 < order.size(); ++i) {
    for (std::size_t j = i + 1; j < order.size(); ++j) {
      if (greater(order[i], order[j])) std::swap(order[i], order[j]);
    }
  }
  return order;
}

TEST(ExchangeOrder, OfLongListsIsTheSame) {
  std::vector<double> pairs;    // every key twice, descending: the corners of an outline, backwards
  std::vector<double> steps;    // few keys, in a pattern
  std::vector<double> withNaN;  // not all are numbers
  std::vector<double> ascending;
  for (int i = 0; i < 200; ++i) {
    pairs.push_back(-(i / 2));
    steps.push_back((i * 7) % 5);
    withNaN.push_back(i % 3 == 0 ? kNaN : (i * 31) % 17);
    ascending.push_back(i / 4);
  }
  for (const std::vector<double>& keys : {pairs, steps, withNaN, ascending}) {
    EXPECT_EQ(gx_exchangeOrder(keys), bySorting(keys));
  }
}

TEST(ExchangeOrder, OfEveryListOfUpToSevenSmallKeysIsTheSame) {
  for (std::size_t count = 1; count <= 7; ++count) {
    std::vector<double> keys(count);
    for (bool more = true; more;) {
      ASSERT_EQ(gx_exchangeOrder(keys), bySorting(keys));
      more = false;
      for (double& key : keys) {  // the next list, counting with digits 0 to 2
        if (++key < 3) {
          more = true;
          break;
        }
        key = 0;
      }
    }
  }
}

// Lists of more than a few keys: the same small lists with greater and smaller keys around them.
TEST(ExchangeOrder, OfEveryPatternOfThreeKeysWithinALongListIsTheSame) {
  for (int pattern = 0; pattern < 729; ++pattern) {
    std::vector<double> keys;
    for (int i = 0; i < 36; ++i) {
      int digits = pattern;
      for (int k = 0; k < i % 6; ++k) digits /= 3;
      keys.push_back(digits % 3);
    }
    ASSERT_EQ(gx_exchangeOrder(keys), bySorting(keys)) << pattern;
  }
}

}  // namespace
