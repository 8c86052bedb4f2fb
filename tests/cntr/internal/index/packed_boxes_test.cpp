// The packed tree under all trees of boxes, held against looking at every box.
#include <cntr/internal/index/packed_boxes.h>
#include <support/random_shapes.h>

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

using V = gxVector<2>;
using Boxes = std::vector<gx_Box>;

Boxes someBoxes(RandomShapes& random, std::size_t count) {
  Boxes boxes(count);
  for (gx_Box& box : boxes) {
    box.add(V(random.uniform(-10, 10), random.uniform(-10, 10)));
    box.add(V(random.uniform(-10, 10), random.uniform(-10, 10)));
  }
  return boxes;
}

TEST(PackedBoxes, LevelsShrinkToAnEighthUpToTheTop) {
  EXPECT_EQ(gx_levelStarts(0, 8), (std::vector<std::size_t>{0, 0}));
  EXPECT_EQ(gx_levelStarts(8, 8), (std::vector<std::size_t>{0, 8}));
  EXPECT_EQ(gx_levelStarts(9, 8), (std::vector<std::size_t>{0, 9, 11}));
  EXPECT_EQ(gx_levelStarts(65, 8), (std::vector<std::size_t>{0, 65, 74, 76}));
  EXPECT_EQ(gx_levelStarts(8, 1), (std::vector<std::size_t>{0, 8, 9}));
  EXPECT_EQ(gx_levelStarts(1, 1), (std::vector<std::size_t>{0, 1}));
}

TEST(PackedBoxes, ABoxHoldsAllThatLieBelowIt) {
  RandomShapes random("packed boxes, levels", 60);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const auto count = static_cast<std::size_t>(random.uniform(0, 700));
    const gx_PackedBoxes tree(someBoxes(random, count));
    ASSERT_EQ(tree.size(0), count);
    EXPECT_LE(tree.size(tree.levels() - 1), 8U);
    for (std::size_t level = 1; level < tree.levels(); ++level) {
      std::size_t next = 0;
      for (std::size_t i = 0; i < tree.size(level); ++i) {
        const gx_PackedBoxes::Run run = tree.below(level, i, 0);
        ASSERT_EQ(run.first, next);
        next = run.end;
        gx_Box all;
        for (std::size_t k = run.first; k < run.end; ++k) all.add(tree.box(level - 1, k));
        ASSERT_EQ(tree.box(level, i).lowX, all.lowX);
        ASSERT_EQ(tree.box(level, i).lowY, all.lowY);
        ASSERT_EQ(tree.box(level, i).highX, all.highX);
        ASSERT_EQ(tree.box(level, i).highY, all.highY);
      }
      ASSERT_EQ(next, tree.size(level - 1));
    }
  }
}

TEST(PackedBoxes, WhatIsBelowTheLowestBoxesAreTheItems) {
  const gx_PackedBoxes tree(Boxes(3, gx_Box{0, 0, 1, 1}));
  EXPECT_EQ(tree.below(0, 0, 20).first, 0U);
  EXPECT_EQ(tree.below(0, 0, 20).end, 8U);
  EXPECT_EQ(tree.below(0, 2, 20).first, 16U);
  EXPECT_EQ(tree.below(0, 2, 20).end, 20U);
}

TEST(PackedBoxes, AllThatPassAreVisitedInOrderUntilOneVisitEndsIt) {
  RandomShapes random("packed boxes, passing", 200);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Boxes boxes = someBoxes(random, static_cast<std::size_t>(random.uniform(0, 300)));
    const gx_PackedBoxes tree(boxes);
    const gx_Box asked = someBoxes(random, 1).front();
    std::vector<std::size_t> plain;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
      if (boxes[i].meets(asked)) plain.push_back(i);
    }
    std::vector<std::size_t> found;
    const auto meets = [&](const gx_Box& box) { return box.meets(asked); };
    EXPECT_FALSE(tree.any(meets, [&](std::size_t i) {
      found.push_back(i);
      return false;
    }));
    EXPECT_EQ(found, plain);
    found.clear();
    const std::size_t half = (plain.size() + 1) / 2;
    EXPECT_EQ(tree.any(meets,
                       [&](std::size_t i) {
                         found.push_back(i);
                         return found.size() == half;
                       }),
              !plain.empty());
    EXPECT_EQ(found, std::vector<std::size_t>(plain.begin(), plain.begin() + static_cast<long>(half)));
  }
}

TEST(PackedBoxes, TheNearestBoxIsFoundAndOthersAreLeftOut) {
  RandomShapes random("packed boxes, nearest", 200);
  std::size_t visits = 0;
  std::size_t all = 0;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Boxes boxes = someBoxes(random, 1 + static_cast<std::size_t>(random.uniform(0, 300)));
    const V point(random.uniform(-40, 40), random.uniform(-40, 40));
    double plain = std::numeric_limits<double>::infinity();
    for (const gx_Box& box : boxes) plain = std::min(plain, box.squareFrom(point));
    double best = std::numeric_limits<double>::infinity();
    gx_PackedBoxes(boxes).forEachNear(
        point,
        [&](const gx_Box& box, double square) {
          EXPECT_EQ(square, box.squareFrom(point));
          return square > best;
        },
        [&](std::size_t i) {
          best = std::min(best, boxes[i].squareFrom(point));
          ++visits;
        });
    EXPECT_EQ(best, plain);
    all += boxes.size();
  }
  EXPECT_LT(3 * visits, all);  // else nothing is left out
}

TEST(PackedBoxes, TheOnlyOneIsVisitedAndEndsIt) {
  const gx_PackedBoxes tree(Boxes(1, gx_Box{0, 0, 1, 1}));
  std::size_t visits = 0;
  EXPECT_TRUE(tree.any([](const gx_Box&) { return true; }, [&](std::size_t) { return ++visits == 1; }));
  EXPECT_EQ(visits, 1U);
}

TEST(PackedBoxes, OfNoneNothingIsVisited) {
  const gx_PackedBoxes tree{Boxes()};
  const auto never = [](std::size_t) {
    ADD_FAILURE();
    return true;
  };
  EXPECT_FALSE(tree.any([](const gx_Box&) { return true; }, never));
  tree.forEachNear(
      {0, 0}, [](const gx_Box&, double) { return false; }, never);
}

}  // namespace
