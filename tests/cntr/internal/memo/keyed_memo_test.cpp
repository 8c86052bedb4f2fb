#include <cntr/internal/memo/keyed_memo.h>

#include <support/together.h>
#include <velstd/random.h>
#include <velstd/real_eq.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

using AngleMemo = gx_KeyedMemo<double, long, gx_AngleKey>;
using XformMemo = gx_KeyedMemo<gxXform<2>, long, gx_XformKey>;

template <class Key, class Value, class Order>
std::optional<Value> found(const gx_KeyedMemo<Key, Value, Order>& memo, const Key& key) {
  Value value{};
  return memo.find(key, value) ? std::optional<Value>(value) : std::nullopt;
}

gxXform<2> xform(double xx, double xy, double yx, double yy, double tx, double ty) {
  return {gxMatrix<2>(xx, xy, yx, yy), gxVector<2>(tx, ty)};
}

void onAFreshThread(const std::function<void()>& what) {
  std::thread(what).join();
}

TEST(KeyedMemo, KnowsNothingAtFirst) {
  EXPECT_FALSE(found(AngleMemo(), 1.0));
  EXPECT_EQ(AngleMemo().size(), 0);
}

TEST(KeyedMemo, FindsWhatWasInserted) {
  AngleMemo memo;
  memo.insert(1.0, 10, 3);
  memo.insert(2.0, 20, 3);
  ASSERT_TRUE(found(memo, 1.0));
  EXPECT_EQ(*found(memo, 1.0), 10);
  EXPECT_EQ(*found(memo, 2.0), 20);
  EXPECT_FALSE(found(memo, 3.0));
}

TEST(KeyedMemo, HoldsOneEntryMoreThanTheLimit) {
  for (const long limit : {0L, 1L, 3L, 10L}) {
    AngleMemo memo;
    for (int i = 0; i < 40; ++i) {
      memo.insert(i, i, limit);
      EXPECT_EQ(memo.size(), std::min<long>(i + 1, limit + 1));
      ASSERT_TRUE(found(memo, static_cast<double>(i))) << "the newest entry is always there";
    }
  }
}

TEST(KeyedMemo, WithALoweredLimitKeepsItsSizeAndReplaces) {
  AngleMemo memo;
  for (int i = 0; i < 4; ++i) memo.insert(i, i, 3);
  memo.insert(9.0, 9, 0);
  EXPECT_EQ(memo.size(), 4);
  EXPECT_EQ(*found(memo, 9.0), 9);
}

TEST(KeyedMemo, EveryEntryKeepsItsOwnAnswerThroughManyReplacements) {
  AngleMemo memo;
  gxRandomUniform draws(5);
  for (int i = 0; i < 1000; ++i) {
    const auto key = static_cast<double>(gfIFloor(draws.next(0, 30)));
    const std::optional<long> known = found(memo, key);
    if (known) {
      EXPECT_EQ(*known, static_cast<long>(key) * 7);
    } else {
      memo.insert(key, static_cast<long>(key) * 7, 5);
    }
  }
  EXPECT_EQ(memo.size(), 6);
}

TEST(KeyedMemo, ReplacesTheEntryAtThePositionDrawnCountingTheOldOnesOnly) {
  // Keys 10, 20, 30, 40; the new key may come before, between or behind them.
  for (const double newKey : {5.0, 15.0, 25.0, 35.0, 45.0}) {
    onAFreshThread([newKey] {
      AngleMemo memo;
      for (const double key : {10.0, 20.0, 30.0, 40.0}) memo.insert(key, 1, 3);
      memo.insert(newKey, 2, 3);
      gxRandomUniform generator(1);
      const double victim = 10.0 * static_cast<double>(gfIFloor(generator.next(0.0, 4.0)) + 1);
      EXPECT_EQ(memo.size(), 4);
      EXPECT_FALSE(found(memo, victim)) << "new key " << newKey;
      EXPECT_EQ(*found(memo, newKey), 2);
      for (const double key : {10.0, 20.0, 30.0, 40.0}) {
        EXPECT_EQ(found(memo, key).has_value(), key != victim);
      }
    });
  }
}

TEST(KeyedMemo, ANaNAngleIsNeitherStoredNorFoundNorDrawnFor) {
  onAFreshThread([] {
    AngleMemo memo;
    memo.insert(1.0, 1, 0);
    memo.insert(kNaN, 2, 0);
    EXPECT_FALSE(found(memo, kNaN));
    EXPECT_EQ(memo.size(), 1);
    EXPECT_EQ(*found(memo, 1.0), 1);
    EXPECT_EQ(gx_drawEvicted(1000), gfIFloor(gxRandomUniform(1).next(0, 1000))) << "the first draw";
  });
}

TEST(KeyedMemo, InfiniteAnglesAreKeysLikeOthers) {
  AngleMemo memo;
  memo.insert(kInf, 1, 3);
  memo.insert(-kInf, 2, 3);
  EXPECT_EQ(*found(memo, kInf), 1);
  EXPECT_EQ(*found(memo, -kInf), 2);
}

TEST(KeyedMemo, CopiesAreIndependent) {
  AngleMemo memo;
  memo.insert(1.0, 1, 3);
  const AngleMemo copy(memo);
  memo.insert(2.0, 2, 3);
  EXPECT_EQ(copy.size(), 1);
  EXPECT_EQ(memo.size(), 2);
}

// ---- Transforms as keys -----------------------------------------------------------------------------

TEST(XformKey, TransformsThatDifferInYxAloneAreOne) {
  XformMemo memo;
  memo.insert(gxXform<2>(), 1, 9);
  EXPECT_TRUE(found(memo, xform(1, 0, 5, 1, 0, 0)));
  EXPECT_TRUE(found(memo, xform(1, 0, kNaN, 1, 0, 0))) << "yx takes no part, not even as a NaN";
}

TEST(XformKey, EachOfTheOtherFiveNumbersMakesAKeyOfItsOwn) {
  XformMemo memo;
  memo.insert(gxXform<2>(), 0, 9);
  const std::vector<gxXform<2>> others = {xform(2, 0, 0, 1, 0, 0), xform(1, 2, 0, 1, 0, 0),
                                          xform(1, 0, 0, 2, 0, 0), xform(1, 0, 0, 1, 2, 0),
                                          xform(1, 0, 0, 1, 0, 2)};
  long answer = 0;
  for (const gxXform<2>& other : others) {
    EXPECT_FALSE(found(memo, other));
    memo.insert(other, ++answer, 9);
  }
  answer = 0;
  for (const gxXform<2>& other : others) EXPECT_EQ(*found(memo, other), ++answer);
  EXPECT_EQ(memo.size(), 6);
}

TEST(XformKey, KeysAreComparedExactly) {
  XformMemo memo;
  memo.insert(gxXform<2>(), 1, 9);
  EXPECT_FALSE(found(memo, xform(std::nextafter(1.0, 2.0), 0, 0, 1, 0, 0)));
  EXPECT_TRUE(found(memo, xform(1, -0.0, 0, 1, 0, 0))) << "0 equals -0";
}

TEST(XformKey, ANaNInOneOfTheFiveMakesNoKey) {
  for (int at = 0; at < 5; ++at) {
    double n[] = {1, 0, 1, 0, 0};  // xx, xy, yy, tx, ty
    n[at] = kNaN;
    const gxXform<2> holding = xform(n[0], n[1], 0, n[2], n[3], n[4]);
    XformMemo memo;
    memo.insert(holding, 1, 9);
    EXPECT_EQ(memo.size(), 0) << at;
    EXPECT_FALSE(found(memo, holding)) << at;
  }
}

TEST(XformKey, IsAStrictOrder) {
  const gx_XformKey before;
  gxRandomUniform draws(3);
  const auto drawn = [&] { return static_cast<double>(gfIFloor(draws.next(-1, 2))); };
  std::vector<gxXform<2>> all;
  for (int i = 0; i < 30; ++i)
    all.push_back(xform(drawn(), drawn(), drawn(), drawn(), drawn(), drawn()));
  for (const auto& a : all) {
    EXPECT_FALSE(before(a, a));
    for (const auto& b : all) {
      EXPECT_FALSE(before(a, b) && before(b, a));
      for (const auto& c : all) EXPECT_TRUE(!(before(a, b) && before(b, c)) || before(a, c));
    }
  }
}

// ---- A value that cannot be copied once ---------------------------------------------------------------

struct Fragile {
  Fragile() = default;
  explicit Fragile(int v) : value(v) {}
  Fragile(const Fragile& other) : value(other.value) {
    if (breaks) throw std::runtime_error("no memory");
  }
  Fragile& operator=(const Fragile&) = default;
  int value = 0;
  static inline bool breaks = false;
};

TEST(KeyedMemo, AnInsertionThatFailsLosesNothing) {
  gx_KeyedMemo<double, Fragile, gx_AngleKey> memo;
  memo.insert(1.0, Fragile(1), 1);
  memo.insert(2.0, Fragile(2), 1);
  Fragile::breaks = true;
  EXPECT_THROW(memo.insert(3.0, Fragile(3), 1), std::runtime_error);
  Fragile::breaks = false;
  EXPECT_EQ(memo.size(), 2);
  EXPECT_EQ(found(memo, 1.0)->value, 1);
  EXPECT_EQ(found(memo, 2.0)->value, 2);
  EXPECT_FALSE(found(memo, 3.0));
}

// ---- Several threads --------------------------------------------------------------------------------

TEST(KeyedMemo, OfSeveralThreadsGivesEachKeyItsOwnAnswerAndKeepsItsBound) {
  for (int round = 0; round < 20; ++round) {
    AngleMemo memo;
    together(4, [&](std::size_t thread) {
      gxRandomUniform draws(static_cast<long>(thread) + 1);
      for (int i = 0; i < 300; ++i) {
        const auto key = static_cast<double>(gfIFloor(draws.next(0, 12)));
        if (const std::optional<long> known = found(memo, key)) {
          EXPECT_EQ(*known, static_cast<long>(key) * 7);
        } else {
          memo.insert(key, static_cast<long>(key) * 7, 3);
        }
        if (i % 50 == 0) {
          const AngleMemo copy(memo);
          EXPECT_LE(copy.size(), 4);
          for (double k = 0; k < 12; ++k) {
            if (const std::optional<long> known = found(copy, k)) {
              EXPECT_EQ(*known, static_cast<long>(k) * 7);
            }
          }
        }
      }
    });
    EXPECT_EQ(memo.size(), 4);
  }
}

TEST(KeyedMemo, AKeyThatAnotherThreadHasBroughtMeanwhileIsNotDrawnFor) {
  onAFreshThread([] {
    AngleMemo memo;
    memo.insert(1.0, 1, 0);
    memo.insert(1.0, 2, 0);  // as after a look-up that found nothing yet
    EXPECT_EQ(*found(memo, 1.0), 1);
    EXPECT_EQ(memo.size(), 1);
    EXPECT_EQ(gx_drawEvicted(1000), gfIFloor(gxRandomUniform(1).next(0, 1000))) << "the first draw";
  });
}

}  // namespace
