#include <cntr/internal/memo/eviction.h>

#include <cntr/contour.h>
#include <support/shape_text.h>
#include <velstd/random.h>
#include <velstd/real_eq.h>
#include <velstd/thread_local.h>

#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <vector>

namespace {

using Draws = std::vector<long>;

// Draws on a thread that has not drawn before.
Draws onAFreshThread(const std::function<void(Draws&)>& draw) {
  Draws result;
  std::thread([&] { draw(result); }).join();
  return result;
}

// What the generator of seed 1 gives for these sizes.
Draws ofSeedOne(const std::vector<long>& sizes) {
  gxRandomUniform generator(1);
  Draws result;
  for (const long size : sizes)
    result.push_back(gfIFloor(generator.next(0.0, static_cast<double>(size))));
  return result;
}

TEST(Eviction, OnAFreshThreadDrawsFromTheGeneratorOfSeedOne) {
  const std::vector<long> sizes = {4, 4, 4, 10, 1, 1000, 2, 4, 4, 1000000};
  const Draws drawn = onAFreshThread([&](Draws& result) {
    for (const long size : sizes) result.push_back(gx_drawEvicted(size));
  });
  EXPECT_EQ(drawn, ofSeedOne(sizes));
}

TEST(Eviction, EveryThreadBeginsAnew) {
  const auto draw = [](Draws& result) {
    for (int i = 0; i < 50; ++i) result.push_back(gx_drawEvicted(4));
  };
  EXPECT_EQ(onAFreshThread(draw), onAFreshThread(draw));
}

TEST(Eviction, OneThreadsDrawsDoNotMoveAnothers) {
  const Draws drawn = onAFreshThread([](Draws& result) {
    result.push_back(gx_drawEvicted(1000));
    std::thread([] {
      for (int i = 0; i < 7; ++i) gx_drawEvicted(1000);
    }).join();
    result.push_back(gx_drawEvicted(1000));
  });
  EXPECT_EQ(drawn, ofSeedOne({1000, 1000}));
}

TEST(Eviction, AlwaysDrawsAPositionThatExists) {
  for (const long size : {1L, 2L, 3L, 4L, 11L}) {
    std::vector<int> counts(static_cast<std::size_t>(size));
    for (int i = 0; i < 2000; ++i) {
      const long drawn = gx_drawEvicted(size);
      ASSERT_GE(drawn, 0);
      ASSERT_LT(drawn, size);
      ++counts[static_cast<std::size_t>(drawn)];
    }
    for (const int count : counts) EXPECT_GT(count, 0) << "every place is drawn sooner or later";
  }
}

TEST(Eviction, AllContoursOfAThreadShareOneGenerator) {
  const Draws drawn = onAFreshThread([](Draws& result) {
    for (int i = 0; i < 2; ++i) {
      gxContour contour(pointsOf("0 0, 1 0, 1 1"));
      contour.cachedVectorSize(0);
      contour.extremalVertexIndex(gxRadian(1.0));
      contour.extremalVertexIndex(gxRadian(2.0));  // full: one draw
      contour.encloseRect(gxXform<2>());
      contour.encloseRect(gxXform<2>(gxMatrix<2>(2, 0, 0, 2), gxVector<2>()));  // full: one draw
    }
    result.push_back(gx_drawEvicted(1000));
  });
  EXPECT_EQ(drawn[0], ofSeedOne({1, 1, 1, 1, 1000})[4]);
}

TEST(Eviction, AMemoryWithRoomDrawsNothing) {
  const Draws drawn = onAFreshThread([](Draws& result) {
    const gxContour contour(pointsOf("0 0, 1 0, 1 1"));
    for (const double angle : {1.0, 2.0, 3.0, 4.0, 4.0, 1.0})
      contour.extremalVertexIndex(gxRadian(angle));
    result.push_back(gx_drawEvicted(1000));
  });
  EXPECT_EQ(drawn, ofSeedOne({1000}));
}

TEST(Eviction, MayStillDrawWhileTheThreadEnds) {
  const Draws drawn = onAFreshThread([](Draws& result) {
    gxThreadID::atexit([&result] { result.push_back(gx_drawEvicted(4)); });  // runs last
    gx_drawEvicted(4);
  });
  EXPECT_EQ(drawn, ofSeedOne({4})) << "the generator was gone, and began anew";
}

}  // namespace
