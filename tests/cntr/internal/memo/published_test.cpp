#include <cntr/internal/memo/published.h>

#include <support/same_bits.h>
#include <support/together.h>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

namespace {

using Pair = std::array<double, 2>;

constexpr int kRounds = 300;

double unknownPattern() {
  return std::bit_cast<double>(gx_Numbers<1>::kUnknown);
}

// ---- Numbers ------------------------------------------------------------------------------------

TEST(PublishedNumbers, AreUnknownAtFirstAndAfterDropping) {
  gx_Numbers<2> numbers;
  Pair out{};
  EXPECT_FALSE(numbers.get(out));
  EXPECT_FALSE(numbers.known());
  numbers.set({1.0, 2.0});
  EXPECT_TRUE(numbers.known());
  numbers.drop();
  EXPECT_FALSE(numbers.get(out));
}

TEST(PublishedNumbers, ComeBackWithTheSameBits) {
  const double kInf = std::numeric_limits<double>::infinity();
  for (const double value : {0.0, -0.0, 1.5, -kInf, std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::denorm_min()}) {
    const gx_Numbers<2> numbers;
    numbers.set({value, 7.0});
    Pair out{};
    ASSERT_TRUE(numbers.get(out));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(out[0]), std::bit_cast<std::uint64_t>(value));
    EXPECT_EQ(out[1], 7.0);
    double second = 0.0;
    EXPECT_TRUE(numbers.get<1>(second));
    EXPECT_EQ(second, 7.0);
  }
}

TEST(PublishedNumbers, OfTheReservedPatternAreNeverKnown) {
  const gx_Numbers<2> numbers;
  numbers.set({1.0, unknownPattern()});
  Pair out{};
  EXPECT_FALSE(numbers.get(out));
  double first = 0.0;
  EXPECT_TRUE(numbers.get<0>(first));
  EXPECT_FALSE(numbers.get<1>(first));
}

TEST(PublishedNumbers, TellWhoWasFirst) {
  const gx_Numbers<2> numbers;
  EXPECT_TRUE(numbers.setFirst({1.0, 2.0}));
  EXPECT_FALSE(numbers.setFirst({1.0, 2.0}));
  EXPECT_TRUE(numbers.known());
}

TEST(PublishedNumbers, GoAlongWithACopyAndAnAssignment) {
  gx_Numbers<2> numbers;
  numbers.set({1.0, 2.0});
  const gx_Numbers<2> copy(numbers);
  gx_Numbers<2> assigned;
  assigned = numbers;
  numbers.drop();
  Pair out{};
  ASSERT_TRUE(copy.get(out));
  EXPECT_EQ(out, (Pair{1.0, 2.0}));
  ASSERT_TRUE(assigned.get(out));
  assigned = numbers;
  EXPECT_FALSE(assigned.known());
}

TEST(PublishedNumbers, ReadWhileTheyAreWrittenAreWholeOrUnknown) {
  for (int round = 0; round < kRounds; ++round) {
    const gx_Numbers<2> numbers;
    std::atomic<int> first{0};
    together(3, [&](std::size_t i) {
      if (i < 2) {
        first += numbers.setFirst({3.0, 4.0}) ? 1 : 0;
        return;
      }
      const gx_Numbers<2> copy(numbers);
      Pair out{};
      if (copy.get(out)) {
        EXPECT_EQ(out, (Pair{3.0, 4.0}));
      }
    });
    EXPECT_EQ(first, 1);
    EXPECT_TRUE(numbers.known());
  }
}

// ---- Yes or no ----------------------------------------------------------------------------------

TEST(PublishedYesNo, IsUnknownThenOneOrTheOther) {
  for (const bool answer : {true, false}) {
    gx_YesNo yesNo;
    bool out = !answer;
    EXPECT_FALSE(yesNo.get(out));
    EXPECT_TRUE(yesNo.setFirst(answer));
    EXPECT_FALSE(yesNo.setFirst(answer)) << "it was known before";
    ASSERT_TRUE(yesNo.get(out));
    EXPECT_EQ(out, answer);
    const gx_YesNo copy(yesNo);
    gx_YesNo assigned;
    assigned = yesNo;
    yesNo.drop();
    EXPECT_FALSE(yesNo.get(out));
    ASSERT_TRUE(copy.get(out));
    EXPECT_EQ(out, answer);
    ASSERT_TRUE(assigned.get(out));
    EXPECT_EQ(out, answer);
  }
}

TEST(PublishedYesNo, IsSetWithoutTellingToo) {
  for (const bool answer : {true, false}) {
    const gx_YesNo yesNo;
    yesNo.set(answer);
    bool out = !answer;
    ASSERT_TRUE(yesNo.get(out));
    EXPECT_EQ(out, answer);
    EXPECT_FALSE(yesNo.setFirst(answer)) << "it was known before";
  }
}

// ---- Effort -------------------------------------------------------------------------------------

TEST(Effort, AddsUpGoesAlongAndIsForgotten) {
  gx_Effort effort;
  effort.add(3);
  effort.add(4);
  EXPECT_EQ(effort.spent(), 7U);
  const gx_Effort copy(effort);
  gx_Effort assigned;
  assigned = effort;
  effort.drop();
  EXPECT_EQ(effort.spent(), 0U);
  EXPECT_EQ(copy.spent(), 7U);
  EXPECT_EQ(assigned.spent(), 7U);
}

TEST(Effort, OfSeveralThreadsIsAtMostTheirSum) {
  const gx_Effort effort;
  together(3, [&](std::size_t) {
    for (int i = 0; i < 1000; ++i) effort.add(1);
  });
  EXPECT_GE(effort.spent(), 1U);
  EXPECT_LE(effort.spent(), 3000U);
}

// ---- Handles ------------------------------------------------------------------------------------

using Handle = std::shared_ptr<const int>;

TEST(PublishedOnce, KeepsTheFirstAnswer) {
  gx_Once<Handle> once;
  EXPECT_EQ(once.get(), nullptr);
  const auto mine = std::make_shared<const int>(1);
  EXPECT_TRUE(once.publish(mine));
  EXPECT_FALSE(once.publish(std::make_shared<const int>(2)));
  ASSERT_NE(once.get(), nullptr);
  EXPECT_EQ(*once.get(), mine);
}

TEST(PublishedOnce, LetsGoWhenDropped) {
  gx_Once<Handle> once;
  const auto mine = std::make_shared<const int>(1);
  once.publish(mine);
  EXPECT_EQ(mine.use_count(), 2);
  once.drop();
  EXPECT_EQ(mine.use_count(), 1);
  EXPECT_EQ(once.get(), nullptr);
  EXPECT_TRUE(once.publish(mine));
}

TEST(PublishedOnce, IsSharedByCopies) {
  gx_Once<Handle> once;
  const auto mine = std::make_shared<const int>(1);
  once.publish(mine);
  const gx_Once<Handle> copy(once);
  gx_Once<Handle> assigned;
  assigned.publish(std::make_shared<const int>(2));
  assigned = once;
  const gx_Once<Handle>& same = assigned;
  assigned = same;
  EXPECT_EQ(mine.use_count(), 4);
  ASSERT_NE(assigned.get(), nullptr);
  EXPECT_EQ(*assigned.get(), mine);
  assigned = gx_Once<Handle>();
  EXPECT_EQ(assigned.get(), nullptr);
  ASSERT_NE(copy.get(), nullptr);
}

TEST(PublishedOnce, IsWholeForReadersAndCopiersMeanwhile) {
  for (int round = 0; round < kRounds; ++round) {
    const gx_Once<Handle> once;
    std::atomic<int> published{0};
    together(4, [&](std::size_t i) {
      if (i < 2) {
        published += once.publish(std::make_shared<const int>(5)) ? 1 : 0;
      } else if (i == 2) {
        if (const Handle* handle = once.get()) {
          EXPECT_EQ(**handle, 5);
        }
      } else {
        const gx_Once<Handle> copy(once);
        if (const Handle* handle = copy.get()) {
          EXPECT_EQ(**handle, 5);
        }
      }
    });
    EXPECT_EQ(published, 1);
    ASSERT_NE(once.get(), nullptr);
  }
}

// A value that lets others look while it is being written, as another thread might.
struct Watched {
  Watched() = default;
  explicit Watched(int v) : value(v) {}
  Watched(const Watched&) noexcept = default;
  Watched& operator=(const Watched& o) noexcept {
    if (whileWritten) whileWritten();
    value = o.value;
    return *this;
  }

  int value = 0;
  static inline std::function<void()> whileWritten;
};

TEST(PublishedOnce, IsNotThereWhileItIsBeingWritten) {
  const gx_Once<Watched> once;
  int looked = 0;
  Watched::whileWritten = [&once, &looked] {
    const std::function<void()> mine = std::exchange(Watched::whileWritten, nullptr);
    ++looked;
    EXPECT_EQ(once.get(), nullptr);
    EXPECT_FALSE(once.publish(Watched(9))) << "somebody is about to";
    const gx_Once<Watched> copy(once);
    EXPECT_EQ(copy.get(), nullptr);
    EXPECT_TRUE(copy.publish(Watched(8))) << "a copy has none, and may get one";
  };
  EXPECT_TRUE(once.publish(Watched(5)));
  EXPECT_EQ(looked, 1);
  ASSERT_NE(once.get(), nullptr);
  EXPECT_EQ(once.get()->value, 5);
}

TEST(Published, AllKindsAreCopiedWithoutFailing) {
  static_assert(std::is_nothrow_copy_constructible_v<gx_Numbers<4>>);
  static_assert(std::is_nothrow_copy_assignable_v<gx_YesNo>);
  static_assert(std::is_nothrow_copy_constructible_v<gx_Effort>);
  static_assert(std::is_nothrow_copy_constructible_v<gx_Once<Handle>>);
  static_assert(sizeof(gx_Numbers<4>) == 4 * sizeof(double));
}

}  // namespace
