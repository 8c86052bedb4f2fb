#include <cntr/contour.h>

#include <support/computed.h>
#include <support/shape_text.h>
#include <velstd/archive.h>

#include <gtest/gtest.h>

#include <cmath>
#include <span>
#include <string>
#include <vector>

namespace {

// Stores the one and loads it into the other.
void copyThroughArchive(const gxContour& from, gxContour& to) {
  gxArchive storing;
  storing.store(from);
  gxArchive loading(storing.bytes());
  loading.load(to);
}

TEST(ContourInAnArchive, KeepsPointsClosedFlagLabelAndCachedVectorSize) {
  for (const bool closed : {true, false}) {
    for (const std::string text : {"", "1 2", "0 0, 4 0, 4 3"}) {
      gxContour original(pointsOf(text), closed, 0xFFFFFFFFUL);
      original.cachedVectorSize(0x7FFFFFFF);
      gxContour loaded(pointsOf("9 9, 8 8"), !closed, 5);
      copyThroughArchive(original, loaded);
      EXPECT_TRUE(loaded == original);
      EXPECT_EQ(loaded.label(), 0xFFFFFFFFUL);
    }
  }
}

TEST(ContourInAnArchive, KeepsCoordinatesOfEveryKind) {
  gxContour loaded;
  copyThroughArchive(gxContour(pointsOf("nan inf, -0 5e-324, 1.7976931348623157e308 -inf")), loaded);
  ASSERT_EQ(loaded.points().size(), 3u);
  EXPECT_TRUE(std::isnan(loaded.points()[0].x()) && std::isinf(loaded.points()[0].y()));
  EXPECT_TRUE(std::signbit(loaded.points()[1].x()));
  EXPECT_EQ(loaded.points()[1].y(), 5e-324);
}

TEST(ContourInAnArchive, LeavesWhatIsRememberedOut) {
  const gxContour original(pointsOf("0 0, 4 0, 4 3"));
  EXPECT_EQ(original.length(), 12.0);
  gxContour loaded;
  copyThroughArchive(original, loaded);
  const Computed computed(gx_Computation::eLength);
  EXPECT_EQ(loaded.length(), 12.0);
  EXPECT_EQ(computed.times(), 1);
}

TEST(ContourInAnArchive, LoadedIntoAContourThatRemembersDropsItAndReportsAChange) {
  gxContour loaded(pointsOf("0 0, 1 0"));
  EXPECT_EQ(loaded.length(), 2.0);
  loaded.trackChanges(true);
  copyThroughArchive(gxContour(pointsOf("0 0, 4 0, 4 3")), loaded);
  EXPECT_EQ(loaded.length(), 12.0);
  EXPECT_GE(loaded.changeCount(), 1u);
}

TEST(ContourInAnArchive, NumbersThatDoNotFitTheirFieldAreRefused) {
  gxArchive storing;
  EXPECT_THROW(storing.store(gxContour(pointsOf("0 0"), true, 0x100000000UL)), gxArchive::LimitExceeded);
  gxContour large;
  large.cachedVectorSize(0x80000000L);
  EXPECT_THROW(storing.store(large), gxArchive::LimitExceeded);
  EXPECT_TRUE(storing.bytes().empty()) << "nothing was stored";
}

TEST(ContourInAnArchive, CutShortIsRefusedAndTheContourCanStillBeAsked) {
  gxArchive storing;
  storing.store(gxContour(pointsOf("0 0, 4 0, 4 3")));
  for (std::size_t size = 0; size < storing.bytes().size(); ++size) {
    gxArchive loading(storing.bytes().first(size));
    gxContour loaded(pointsOf("0 0, 1 0"));
    loaded.length();
    EXPECT_THROW(loading.load(loaded), gxArchive::Errors) << size;
    EXPECT_EQ(loaded.length(), gxContour(loaded.points(), loaded.isClosed()).length());
  }
}

}  // namespace
