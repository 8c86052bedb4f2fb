#include <cntr/internal/memo/latch.h>

#include <support/together.h>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

TEST(Latch, OfOneThreadIsTakenAndGiven) {
  gx_Latch latch;
  for (int i = 0; i < 3; ++i) const gx_Latch::Hold hold(latch);
  static_assert(sizeof(gx_Latch) == 1);
}

TEST(Latch, LetsOneThreadInAtATime) {
  gx_Latch latch;
  long counted = 0;  // without the latch a race, which loses counts
  together(4, [&](std::size_t) {
    for (int i = 0; i < 20000; ++i) {
      const gx_Latch::Hold hold(latch);
      counted = counted + 1;
    }
  });
  EXPECT_EQ(counted, 80000);
}

TEST(Latch, WakesTheThreadsThatSleepOnIt) {
  gx_Latch latch;
  int entered = 0;
  together(4, [&](std::size_t) {
    const gx_Latch::Hold hold(latch);
    ++entered;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));  // long enough for the others to sleep
  });
  EXPECT_EQ(entered, 4);
}

}  // namespace
