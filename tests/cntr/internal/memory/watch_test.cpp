#include <cntr/internal/memory/watch.h>

#include <cntr/region.h>

#include <gtest/gtest.h>

#include <utility>

namespace {

TEST(Watch, ByDefaultWatchesNothingAndCountsNothing) {
  gx_Watch watch;
  const auto before = gx_Watch::epoch();
  watch.changed();
  EXPECT_EQ(gx_Watch::epoch(), before);
  EXPECT_FALSE(watch.isOn());
  EXPECT_FALSE(watch.sameSince(before));
}

TEST(Watch, AChangeCountsOnceAndEndsTheWatch) {
  gx_Watch watch;
  watch.begin();
  const auto before = gx_Watch::epoch();
  EXPECT_TRUE(watch.sameSince(before));
  watch.changed();
  watch.changed();
  EXPECT_EQ(gx_Watch::epoch(), before + 1);
  EXPECT_FALSE(watch.sameSince(before));
  EXPECT_FALSE(watch.sameSince(gx_Watch::epoch()));
}

TEST(Watch, AWatchBegunAgainIsNoAnswerToAnEarlierOwner) {
  gx_Watch watch;
  watch.begin();
  const auto earlier = gx_Watch::epoch();
  watch.changed();
  watch.begin();
  EXPECT_FALSE(watch.sameSince(earlier));
  EXPECT_TRUE(watch.sameSince(gx_Watch::epoch()));
}

TEST(Watch, DoesNotGoAlongWithCopies) {
  gx_Watch watch;
  watch.begin();
  const auto before = gx_Watch::epoch();
  const gx_Watch copy(watch);
  EXPECT_FALSE(copy.isOn());
  EXPECT_TRUE(watch.sameSince(before));
  EXPECT_EQ(gx_Watch::epoch(), before) << "copying changes nothing";
}

TEST(Watch, AssigningToOrMovingFromAWatchedValueCounts) {
  gx_Watch target;
  target.begin();
  const auto before = gx_Watch::epoch();
  target = gx_Watch();
  EXPECT_EQ(gx_Watch::epoch(), before + 1);
  gx_Watch source;
  source.begin();
  const gx_Watch moved(std::move(source));
  EXPECT_EQ(gx_Watch::epoch(), before + 2);
  EXPECT_FALSE(moved.isOn());
  gx_Watch one;
  gx_Watch other;
  one.begin();
  other.begin();
  one = std::move(other);
  EXPECT_EQ(gx_Watch::epoch(), before + 4);
  gx_Watch& same = one;
  one.begin();
  one = same;
  EXPECT_TRUE(one.isOn());
}

}  // namespace
