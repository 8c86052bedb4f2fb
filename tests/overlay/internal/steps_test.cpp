// Counting steps against limits.
#include <overlay/internal/steps.h>

#include <gtest/gtest.h>

#include <stdexcept>

TEST(Steps, TheCallerIsAskedEverySoManyPairsAndMeetings) {
  int asked = 0;
  gxOverlayLimits limits;
  limits.stop = [&asked] { return ++asked == 3; };
  gx_Steps steps(limits);
  for (std::size_t i = 0; i + 1 < gx_Steps::kPairs; ++i) steps.looked(1);
  EXPECT_EQ(asked, 0);
  steps.looked(1);
  EXPECT_EQ(asked, 1);
  for (std::size_t i = 0; i + 1 < gx_Steps::kNodes; ++i) steps.met();
  EXPECT_EQ(asked, 1);
  steps.met();
  EXPECT_EQ(asked, 2);
  EXPECT_THROW(steps.looked(2 * gx_Steps::kPairs), gxStopped);
}

TEST(Steps, WithoutACallerNothingIsAsked) {
  const gxOverlayLimits limits;
  gx_Steps steps(limits);
  EXPECT_NO_THROW(steps.looked(100 * gx_Steps::kPairs));
}

TEST(Steps, AnExceptionOfTheCallerPassesThrough) {
  gxOverlayLimits limits;
  limits.stop = []() -> bool { throw std::runtime_error("x"); };
  gx_Steps steps(limits);
  EXPECT_THROW(steps.looked(gx_Steps::kPairs), std::runtime_error);
}

TEST(Steps, OneMeetingMoreThanTheLimitIsTooMany) {
  gxOverlayLimits limits;
  limits.maxMeetings = 3;
  gx_Steps steps(limits);
  for (int i = 0; i < 3; ++i) EXPECT_NO_THROW(steps.met());
  EXPECT_EQ(steps.meetings(), 3U);
  try {
    steps.met();
    FAIL();
  } catch (const gxLimitExceeded& thrown) {
    EXPECT_EQ(thrown.message(), L"the edges have more than 3 nodes inside of them");
  }
}
