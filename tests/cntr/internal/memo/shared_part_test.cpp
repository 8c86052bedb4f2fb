#include <cntr/internal/memo/shared_part.h>

#include <support/together.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace {

constexpr int kRounds = 300;

// Counts how many of it there are.
struct Counted {
  explicit Counted(int v) : value(v) { ++alive; }
  Counted(Counted&& o) noexcept : value(o.value) { ++alive; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() { --alive; }

  int value;
  static std::atomic<int> alive;
};
std::atomic<int> Counted::alive{0};

TEST(SharedPart, IsMadeOnce) {
  const gx_Shared<Counted> part;
  EXPECT_EQ(part.get(), nullptr);
  int made = 0;
  const auto make = [&made] { return Counted(++made); };
  const Counted& first = part.made(make);
  EXPECT_EQ(&part.made(make), &first);
  EXPECT_EQ(part.madeUnlessBusy(make), &first);
  EXPECT_EQ(part.get(), &first);
  EXPECT_EQ(made, 1);
  EXPECT_EQ(first.value, 1);
}

TEST(SharedPart, IsSharedByCopiesAndLivesAsLongAsOneOfThem) {
  {
    gx_Shared<Counted> part;
    const Counted* const made = &part.made([] { return Counted(3); });
    gx_Shared<Counted> copy(part);
    gx_Shared<Counted> assigned;
    assigned.made([] { return Counted(4); });
    assigned = part;
    const gx_Shared<Counted>& same = assigned;
    assigned = same;
    EXPECT_EQ(copy.get(), made);
    EXPECT_EQ(assigned.get(), made);
    part.drop();
    EXPECT_EQ(part.get(), nullptr);
    EXPECT_EQ(Counted::alive, 1);
    const gx_Shared<Counted> moved(std::move(copy));
    EXPECT_EQ(copy.get(), nullptr);  // NOLINT(bugprone-use-after-move)
    assigned = std::move(copy);
    EXPECT_EQ(assigned.get(), nullptr);
    EXPECT_EQ(moved.get(), made);
    EXPECT_EQ(made->value, 3);
  }
  EXPECT_EQ(Counted::alive, 0);
}

TEST(SharedPart, WhoseMakingThrowsIsNotThereAndCanBeMadeAgain) {
  const gx_Shared<Counted> part;
  const auto fail = []() -> Counted { throw std::runtime_error("no"); };
  EXPECT_THROW(part.made(fail), std::runtime_error);
  EXPECT_THROW(part.madeUnlessBusy(fail), std::runtime_error);
  EXPECT_EQ(part.get(), nullptr);
  const Counted* const made = part.madeUnlessBusy([] { return Counted(1); });
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(part.get(), made);
}

TEST(SharedPart, IsNotThereForOthersWhileOneThreadMakesIt) {
  const gx_Shared<Counted> part;
  const Counted* const made = part.madeUnlessBusy([&part] {
    // What another thread would see meanwhile.
    EXPECT_EQ(part.get(), nullptr);
    EXPECT_EQ(part.madeUnlessBusy([] { return Counted(9); }), nullptr);
    const gx_Shared<Counted> copy(part);
    EXPECT_EQ(copy.get(), nullptr);
    return Counted(1);
  });
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->value, 1);
}

TEST(SharedPart, ThatCannotWaitIsMadeBesideTheOneThatIsBeingMade) {
  const gx_Shared<Counted> part;
  const Counted* other = nullptr;
  const Counted* const made = part.madeUnlessBusy([&] {
    other = &part.made([] { return Counted(9); });
    return Counted(1);
  });
  EXPECT_EQ(made, other) << "the first one in place stays";
  EXPECT_EQ(made->value, 9);
  EXPECT_EQ(Counted::alive, 1);
}

TEST(SharedPart, OfManyThreadsIsOne) {
  for (int round = 0; round < kRounds; ++round) {
    const gx_Shared<std::string> part;
    std::vector<const std::string*> seen(4);
    together(4, [&](std::size_t i) {
      if (i == 3) {
        const gx_Shared<std::string> copy(part);
        if (const std::string* text = copy.get()) {
          EXPECT_EQ(*text, "made");
        }
        return;
      }
      const auto make = [] { return std::string("made"); };
      seen[i] = i == 0 ? part.madeUnlessBusy(make) : &part.made(make);
    });
    EXPECT_EQ(seen[1], part.get());
    EXPECT_EQ(seen[2], part.get());
    if (seen[0] != nullptr) {
      EXPECT_EQ(seen[0], part.get());
    }
  }
}

TEST(SharedPart, IsMadeByOneThreadOfThoseThatDoNotWait) {
  for (int round = 0; round < kRounds; ++round) {
    const gx_Shared<int> part;
    std::atomic<int> made{0};
    together(3, [&](std::size_t) { part.madeUnlessBusy([&made] { return ++made; }); });
    EXPECT_EQ(made, 1);
    ASSERT_NE(part.get(), nullptr);
  }
}

// ---- Copied parts -------------------------------------------------------------------------------

TEST(CopiedPart, IsMadeOnDemandAndCopiedDeep) {
  gx_Copied<std::vector<int>> part;
  EXPECT_EQ(part.get(), nullptr);
  part.made().push_back(1);
  gx_Copied<std::vector<int>> copy(part);
  copy.made().push_back(2);
  EXPECT_EQ(part.get()->size(), 1U);
  EXPECT_EQ(copy.get()->size(), 2U);
  part = copy;
  EXPECT_NE(part.get(), copy.get());
  EXPECT_EQ(part.get()->size(), 2U);
  const std::vector<int>* const place = part.get();
  const gx_Copied<std::vector<int>> moved(std::move(part));
  EXPECT_EQ(moved.get(), place);
  EXPECT_EQ(part.get(), nullptr);  // NOLINT(bugprone-use-after-move)
  copy.drop();
  EXPECT_EQ(copy.get(), nullptr);
  static_assert(std::is_nothrow_move_assignable_v<gx_Copied<int>>);
}

TEST(CopiedPart, OfManyThreadsIsOne) {
  for (int round = 0; round < kRounds; ++round) {
    const gx_Copied<std::vector<int>> part;
    std::vector<const void*> seen(3);
    together(3, [&](std::size_t i) { seen[i] = &part.made(); });
    EXPECT_EQ(seen[0], seen[1]);
    EXPECT_EQ(seen[0], seen[2]);
  }
}

}  // namespace
