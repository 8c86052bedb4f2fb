#include <gauge/places.h>
#include <gtest/gtest.h>
#include <support/printed.h>

namespace {

TEST(Places, StatusNumbersAreFrozen) {
  const std::pair<int, const char*> table[] = {
      {0, "ok"},         {1, "empty"},     {2, "not_finite"}, {3, "bad_argument"},
      {4, "not_closed"}, {5, "flat"},      {6, "none"},       {7, "undetermined"},
      {8, "unbounded"},  {9, "worse"},     {10, "capped"},    {11, "not_on_grid"},
      {12, "negative"},  {13, "crossing"}, {14, "stopped"},   {20, "failed"}};
  for (const auto& [number, word] : table)
    EXPECT_STREQ(gfStatusName(static_cast<gxStatus>(number)), word);
  EXPECT_EQ(static_cast<int>(gxStatus::eNegative), 12);
  EXPECT_EQ(static_cast<int>(gxStatus::eFailed), 20);
  EXPECT_STREQ(gfStatusName(static_cast<gxStatus>(19)), "unknown");
  EXPECT_EQ(printed(gxStatus::eNotOnGrid), "not_on_grid");
}

TEST(Places, ADefaultPlaceIsNone) {
  const gxPlace place;
  EXPECT_FALSE(place.valid());
  EXPECT_FALSE(place == place);
  EXPECT_EQ(printed(place), "no place");
}

TEST(Places, APlacePrintsRingEdgeAndPoint) {
  const gxPlace place{0, 1, 0.5, {30, 10}};
  EXPECT_TRUE(place.valid());
  EXPECT_EQ(place, (gxPlace{0, 1, 0.5, {30, 10}}));
  EXPECT_NE(place, (gxPlace{-1, 1, 0.5, {30, 10}}));
  EXPECT_EQ(printed(place), "ring 0 edge 1 t 0.5 at (30, 10)");
}

}  // namespace
