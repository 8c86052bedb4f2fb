#include <velstd/budget.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

std::wstring messageOf(gxBudget& budget, std::uint64_t steps) {
  try {
    budget.spend(steps);
  } catch (const gxStopped& stopped) {
    return stopped.message();
  }
  return L"";
}

TEST(Budget, WithoutLimitIsNeverUsedUp) {
  gxBudget budget;
  for (int i = 0; i < 1000; ++i) budget.spend(1'000'000'000'000);
  EXPECT_EQ(budget.spent(), 1'000'000'000'000'000U);
}

TEST(Budget, OfSomeStepsAllowsThatManyAndNoMore) {
  gxBudget budget(3);
  budget.spend();
  budget.spend(2);
  EXPECT_EQ(messageOf(budget, 1), L"stopped after 3 steps");
  EXPECT_EQ(budget.spent(), 4U);
}

TEST(Budget, OfNoStepsStopsTheFirst) {
  gxBudget budget(0);
  EXPECT_THROW(budget.spend(), gxStopped);
}

TEST(Budget, ThatIsUsedUpStaysSo) {
  gxBudget budget(1);
  EXPECT_THROW(budget.spend(5), gxStopped);
  EXPECT_THROW(budget.spend(0), gxStopped);
}

TEST(Budget, AsksAtTheFirstStepAndThenNowAndThen) {
  int asked = 0;
  gxBudget budget([&asked] {
    ++asked;
    return false;
  });
  budget.spend();
  EXPECT_EQ(asked, 1);
  for (std::uint64_t i = 1; i < gxBudget::kStepsBetweenQuestions; ++i) budget.spend();
  EXPECT_EQ(asked, 1);
  budget.spend();
  EXPECT_EQ(asked, 2);
}

TEST(Budget, IsStoppedByItsQuestion) {
  bool stop = false;
  gxBudget budget([&stop] { return stop; });
  budget.spend();
  stop = true;
  EXPECT_EQ(messageOf(budget, gxBudget::kStepsBetweenQuestions), L"stopped by the caller");
}

TEST(Budget, HasBothALimitAndAQuestion) {
  int asked = 0;
  gxBudget budget(
      [&asked] {
        ++asked;
        return false;
      },
      10);
  budget.spend(10);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(messageOf(budget, 1), L"stopped after 10 steps");
}

TEST(Budget, WithAnEmptyQuestionHasItsLimitAlone) {
  gxBudget budget(std::function<bool()>(), 2);
  budget.spend(2);
  EXPECT_THROW(budget.spend(), gxStopped);
}

TEST(Budget, LetsAnExceptionOfItsQuestionPass) {
  gxBudget budget([]() -> bool { throw std::runtime_error("mine"); });
  EXPECT_THROW(budget.spend(), std::runtime_error);
}

TEST(Budget, OfTheMostStepsHasNoLimit) {
  gxBudget budget(gxBudget::kUnlimited);
  budget.spend(gxBudget::kUnlimited / 2);
  EXPECT_EQ(budget.spent(), gxBudget::kUnlimited / 2);
}

TEST(Stopped, SaysWhatStoppedIt) {
  const gxStopped stopped(L"stopped by the caller");
  EXPECT_STREQ(stopped.what(), "gxStopped: stopped by the caller");
  EXPECT_EQ(stopped.errorNumber(), 0x10000151);
  EXPECT_THROW((new gxStopped(stopped))->suicideAndRethrow(), gxStopped);
}

}  // namespace
