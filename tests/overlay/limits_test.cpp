// What may stop an overlay: the exceptions.
#include <overlay/overlay.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

TEST(OverlayLimits, TheExceptionsHaveNumbersOfTheirOwn) {
  const std::set<long> numbers = {gxStopped().errorNumber(),
                                  gxLimitExceeded().errorNumber(),
                                  gxContourDefs::BadParams().errorNumber(),
                                  gxContourDefs::EmptyContour().errorNumber(),
                                  gxContourDefs::EmptyRegionSet().errorNumber(),
                                  gxContourDefs::RegionCannotBeSetOpen().errorNumber()};
  EXPECT_EQ(numbers.size(), 6U);
  EXPECT_EQ(gxLimitExceeded().errorNumber(), 0x10004721);
}

TEST(OverlayLimits, TheExceptionsCarryTheirText) {
  const gxLimitExceeded thrown(L"too many");
  const gxLimitExceeded copy(thrown);  // NOLINT(performance-unnecessary-copy-initialization)
  EXPECT_EQ(copy.message(), L"too many");
  EXPECT_NE(std::string(copy.what()).find("too many"), std::string::npos);
  EXPECT_THROW(throw gxLimitExceeded(L"too many"), gxContourDefs::Errors);
}

TEST(OverlayLimits, AnExceptionOnTheHeapThrowsItselfAgainAsItsOwnClass) {
  auto* exceeded = new gxLimitExceeded(L"exceeded");
  EXPECT_THROW(exceeded->suicideAndRethrow(), gxLimitExceeded);
}
