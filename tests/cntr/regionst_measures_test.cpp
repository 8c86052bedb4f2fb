// Area, centre of mass, moments and enclosing rectangles of sets: values, memory, failures.
#include <cntr/regionst.h>
#include <cntr/shapestat.h>
#include <gtest/gtest.h>
#include <support/computed.h>
#include <support/random_shapes.h>
#include <support/shape_text.h>
#include <velstd/random.h>
#include <velstd/real_eq.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>
#include <thread>
#include <vector>

namespace {

using Handle = gxPtrHandle_const<gxRegion>;
using Handles = std::vector<Handle>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

std::vector<gxVector<2>> box(double x, double y, double size) {
  return {{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}};
}

Handle square(double x, double y, double size = 1.0) {
  return Handle(new gxRegion(box(x, y, size)));
}

Handle ring(double x, double y) {  // 4 by 4 with a hole of 2 by 2
  const gxPtrHandle<gxRegion> region(new gxRegion(box(x, y, 4)));
  region->holes({square(x + 1, y + 1, 2)});
  return region;
}

gxXform<2> shift(double tx) {
  return {gxMatrix<2>(1, 0, 0, 1), gxVector<2>(tx, 0)};
}

// Of room for every rectangle, so that only the set that holds it draws.
Handle roomySquare() {
  const gxPtrHandle<gxRegion> region(new gxRegion(box(0, 0, 1)));
  region->cachedVectorSize(1000);
  return region;
}

// Which of these transforms the set answers from memory.  Each is asked of a copy of its own, so
// that the questions do not change what is remembered.
std::vector<bool> remembered(const gxRegionSet& set, const std::vector<gxXform<2>>& xforms) {
  std::vector<bool> result;
  for (const gxXform<2>& xform : xforms) {
    gxRegionSet copy(set);
    copy.cachedVectorSize(1000);  // so that asking draws nothing
    const Computed rects(gx_Computation::eSetEncloseRect);
    static_cast<void>(copy.encloseRect(xform));
    result.push_back(rects.times() == 0);
  }
  return result;
}

std::vector<gxXform<2>> shifts(int count) {
  std::vector<gxXform<2>> result;
  for (int i = 0; i < count; ++i) result.push_back(shift(i));
  return result;
}

// Runs on a thread of its own, which draws from a generator in its first state.
template <class Work>
void onFreshThread(Work work) {
  std::thread(work).join();
}

}  // namespace

// ---- Area ---------------------------------------------------------------------------------------

TEST(RegionSetArea, SumsTheRegions) {
  const gxRegionSet set({ring(0, 0), square(10, 0)});
  EXPECT_EQ(set.area(true), 13.0);
  EXPECT_EQ(set.area(false), 17.0);
}

TEST(RegionSetArea, OverlapsAndRepeatedRegionsCountEachTime) {
  const Handle one = square(0, 0);
  EXPECT_EQ(gxRegionSet({one, one, square(0, 0)}).area(false), 3.0);
}

TEST(RegionSetArea, EachFlagIsRememberedByItself) {
  const gxRegionSet set({ring(0, 0)});
  const Computed areas(gx_Computation::eSetArea);
  static_cast<void>(set.area(true));
  EXPECT_EQ(areas.times(), 1);
  static_cast<void>(set.area(false));
  EXPECT_EQ(areas.times(), 2);
  static_cast<void>(set.area(true));
  static_cast<void>(set.area(false));
  EXPECT_EQ(areas.times(), 2);
}

TEST(RegionSetArea, TooFewPointsAndNullHandlesThrowAndNothingIsRemembered) {
  const gxRegionSet tooFew({square(0, 0), Handle(new gxRegion({{0, 0}, {1, 0}}))});
  const gxRegionSet null({square(0, 0), nullptr});
  const Computed areas(gx_Computation::eSetArea);
  for (int i = 0; i < 2; ++i) {
    EXPECT_THROW(static_cast<void>(tooFew.area(false)), gxContourDefs::EmptyContour);
    EXPECT_THROW(static_cast<void>(null.area(true)), gxBadPointer);
  }
  EXPECT_EQ(areas.times(), 4);
}

TEST(RegionSetArea, NullHandleIsMetWhereItStands) {
  const gxRegionSet set({Handle(new gxRegion), nullptr});
  EXPECT_THROW(static_cast<void>(set.area(false)), gxContourDefs::EmptyContour);
}

// ---- Centre of mass -----------------------------------------------------------------------------

TEST(RegionSetCenter, OfTwoUnitSquaresIsTheMidpoint) {
  const gxRegionSet set({square(0, 0), square(100, 40)});
  EXPECT_EQ(set.centerOfMass(false), gxVector<2>(50.5, 20.5));
}

TEST(RegionSetCenter, WeighsWithTheArea) {
  const gxRegionSet set({square(0, 0, 1), square(10, 0, 3)});
  const gxVector<2> center = set.centerOfMass(true);
  EXPECT_DOUBLE_EQ(center.x(), (1 * 0.5 + 9 * 11.5) / 10);
  EXPECT_DOUBLE_EQ(center.y(), (1 * 0.5 + 9 * 1.5) / 10);
}

TEST(RegionSetCenter, HolesTakePartAsAsked) {
  const gxRegionSet set({ring(0, 0), square(10, 0, 1)});
  EXPECT_DOUBLE_EQ(set.centerOfMass(true).x(), (12 * 2.0 + 10.5) / 13);
  EXPECT_DOUBLE_EQ(set.centerOfMass(false).x(), (16 * 2.0 + 10.5) / 17);
}

TEST(RegionSetCenter, WithoutAreaIsTheOrigin) {
  const Handle flat(new gxRegion({{5, 5}, {6, 6}, {7, 7}}));
  EXPECT_EQ(gxRegionSet({flat, flat}).centerOfMass(false), gxVector<2>(0, 0));
}

TEST(RegionSetCenter, TotalAreaUpToTheThresholdIsTheOrigin) {
  const Handle tiny = square(0, 0, 1e-8);
  ASSERT_NEAR(tiny->area(false), 1e-16, 1e-20);
  EXPECT_EQ(gxRegionSet({tiny}).centerOfMass(false), gxVector<2>(0, 0));
  // The unit square less a hole of nearly its size: of its area some units of 2⁻⁵³ are left, exactly.
  const auto left = [](int units) {
    const gxPtrHandle<gxRegion> region(new gxRegion(box(0, 0, 1)));
    const double w = 1.0 - units * 0x1p-53;
    region->holes({Handle(new gxRegion(std::vector<gxVector<2>>{{0, 5}, {w, 5}, {w, 6}, {0, 6}}))});
    return gxRegionSet({Handle(region)});
  };
  ASSERT_NEAR(left(8).area(true), 0.89e-15, 1e-17);
  EXPECT_EQ(left(8).centerOfMass(true), gxVector<2>(0, 0));
  ASSERT_NEAR(left(10).area(true), 1.11e-15, 1e-17);
  EXPECT_NE(left(10).centerOfMass(true), gxVector<2>(0, 0));
}

TEST(RegionSetCenter, AreasThatCancelGiveTheOrigin) {
  // A region whose hole is as large as another region's area: 1 − 2 + 1 = 0.
  const gxPtrHandle<gxRegion> negative(new gxRegion(box(0, 0, 1)));
  negative->holes({Handle(new gxRegion(pointsOf("10 0, 12 0, 12 1, 10 1")))});
  const gxRegionSet set({negative, square(20, 0)});
  ASSERT_EQ(set.area(true), 0.0);
  EXPECT_EQ(set.centerOfMass(true), gxVector<2>(0, 0));
  EXPECT_EQ(set.centerOfMass(false), gxVector<2>(10.5, 0.5));
}

TEST(RegionSetCenter, NaNAreaGivesTheOrigin) {
  const Handle odd(new gxRegion({{0, 0}, {kNaN, 0}, {0, 1}}));
  EXPECT_EQ(gxRegionSet({odd}).centerOfMass(false), gxVector<2>(0, 0));
}

TEST(RegionSetCenter, EmptySetThrowsAlsoWhereSomethingIsRemembered) {
  const gxRegionSet empty;
  EXPECT_THROW(static_cast<void>(empty.centerOfMass(true)), gxContourDefs::EmptyRegionSet);
  EXPECT_THROW(static_cast<void>(empty.centerOfMass(false)), gxContourDefs::EmptyRegionSet);
}

TEST(RegionSetCenter, EachFlagIsRememberedByItself) {
  const gxRegionSet set({ring(0, 0)});
  const Computed centers(gx_Computation::eSetCenterOfMass);
  static_cast<void>(set.centerOfMass(true));
  static_cast<void>(set.centerOfMass(true));
  EXPECT_EQ(centers.times(), 1);
  static_cast<void>(set.centerOfMass(false));
  static_cast<void>(set.centerOfMass(false));
  EXPECT_EQ(centers.times(), 2);
}

TEST(RegionSetCenter, NullHandleThrowsAndNothingIsRemembered) {
  const gxRegionSet set({square(0, 0), nullptr});
  const Computed centers(gx_Computation::eSetCenterOfMass);
  EXPECT_THROW(static_cast<void>(set.centerOfMass(true)), gxBadPointer);
  EXPECT_THROW(static_cast<void>(set.centerOfMass(true)), gxBadPointer);
  EXPECT_EQ(centers.times(), 2);
}

// ---- Moments ------------------------------------------------------------------------------------

TEST(RegionSetInertia, OfOneRegionIsTheRegions) {
  const Handle region(new gxRegion(pointsOf("0 0, 3 0, 4 2, 1 2")));
  EXPECT_EQ(gxRegionSet({region}).inertiaMatrix(false), region->inertiaMatrix(false));
}

TEST(RegionSetInertia, OfTwoHalvesIsThatOfTheWhole) {
  const Handle left(new gxRegion(pointsOf("0 0, 1 0, 1 2, 0 2")));
  const Handle right(new gxRegion(pointsOf("1 0, 4 0, 4 2, 1 2")));
  const gxMatrix<2> both = gxRegionSet({left, right}).inertiaMatrix(false);
  EXPECT_NEAR(both.m00(), 2 * 64 / 12.0, 1e-12);
  EXPECT_NEAR(both.m11(), 4 * 8 / 12.0, 1e-12);
  EXPECT_NEAR(both.m01(), 0.0, 1e-12);
}

TEST(RegionSetInertia, AddsTheRecordsInOrder) {
  const Handles handles{square(0, 0), square(5, 1, 2), square(-7, 3, 0.5)};
  gx_InertiaData sum;
  for (const Handle& region : handles) {
    sum = sum +
          gx_InertiaData(region->area(false), region->centerOfMass(false), region->inertiaMatrix(false));
  }
  EXPECT_EQ(gxRegionSet(handles).inertiaMatrix(false), sum.inertiaMatrix());
}

TEST(RegionSetInertia, WithHolesIsNotImplementedAndNothingIsRemembered) {
  const gxRegionSet set({square(10, 0), ring(0, 0)});
  const Computed moments(gx_Computation::eSetInertiaMatrix);
  for (int i = 0; i < 2; ++i) {
    try {
      static_cast<void>(set.inertiaMatrix(true));
      FAIL() << "computed";
    } catch (const gxContourDefs::BadParams& e) {
      EXPECT_EQ(e.message(), L"inertiaMatrix(considerHoles) is not implemented");
    }
  }
  EXPECT_EQ(moments.times(), 2);
  EXPECT_NO_THROW(static_cast<void>(set.inertiaMatrix(false)));
}

TEST(RegionSetInertia, EachFlagIsRememberedByItself) {
  const gxRegionSet set({square(0, 0)});
  const Computed moments(gx_Computation::eSetInertiaMatrix);
  EXPECT_EQ(set.inertiaMatrix(true), set.inertiaMatrix(false));
  EXPECT_EQ(moments.times(), 2);
  static_cast<void>(set.inertiaMatrix(true));
  static_cast<void>(set.inertiaMatrix(false));
  EXPECT_EQ(moments.times(), 2);
}

TEST(RegionSetInertia, EmptySetAndNullHandleThrow) {
  EXPECT_THROW(static_cast<void>(gxRegionSet().inertiaMatrix(false)), gxContourDefs::EmptyRegionSet);
  EXPECT_THROW(static_cast<void>(gxRegionSet({nullptr}).inertiaMatrix(false)), gxBadPointer);
}

// ---- Enclosing rectangle ------------------------------------------------------------------------

TEST(RegionSetEncloseRect, EnclosesAllOutlinesInTheFrame) {
  const gxRegionSet set({ring(0, 0), square(-3, 10, 2)});
  EXPECT_EQ(set.encloseRect(gxXform<2>::I), gxRect(gxVector<2>(-3, 0), gxVector<2>(7, 12)));
  const gxXform<2> quarter(gxMatrix<2>(0, -1, 1, 0), gxVector<2>(0, 0));
  EXPECT_EQ(set.encloseRect(quarter), gxRect(gxVector<2>(-12, -3), gxVector<2>(12, 7)));
}

TEST(RegionSetEncloseRect, HolesOutsideTheOutlineAreNotEnclosed) {
  const gxPtrHandle<gxRegion> odd(new gxRegion(box(0, 0, 1)));
  odd->holes({square(50, 50)});
  EXPECT_EQ(gxRegionSet({odd}).encloseRect(gxXform<2>::I), gxRect(gxVector<2>(0, 0), gxVector<2>(1, 1)));
}

TEST(RegionSetEncloseRect, SecondQuestionIsAnsweredFromMemoryUntilAdd) {
  gxRegionSet set({square(0, 0)});
  const Computed rects(gx_Computation::eSetEncloseRect);
  const gxRect first = set.encloseRect(shift(2));
  EXPECT_EQ(set.encloseRect(shift(2)), first);
  EXPECT_EQ(rects.times(), 1);
  set.add(square(9, 0));
  EXPECT_EQ(set.encloseRect(shift(2)).size(), gxVector<2>(10, 1));
  EXPECT_EQ(rects.times(), 2);
}

TEST(RegionSetEncloseRect, TransformsThatDifferInYxAloneShareOneAnswer) {
  const gxRegionSet set({square(0, 0)});
  const gxXform<2> sheared(gxMatrix<2>(1, 0, 5, 1), gxVector<2>(0, 0));
  const gxRect upright = set.encloseRect(gxXform<2>::I);
  EXPECT_EQ(set.encloseRect(sheared), upright);  // the remembered one, on purpose
  const gxRegionSet fresh({square(0, 0)});
  EXPECT_EQ(fresh.encloseRect(sheared).size(), gxVector<2>(1, 6));
  EXPECT_EQ(fresh.encloseRect(gxXform<2>::I).size(), gxVector<2>(1, 6));
}

TEST(RegionSetEncloseRect, EachOfTheOtherFiveNumbersMakesAnotherKey) {
  const gxRegionSet set({square(0, 0)});
  gxRegionSet roomy(set);
  roomy.cachedVectorSize(10);
  const Computed rects(gx_Computation::eSetEncloseRect);
  static_cast<void>(roomy.encloseRect(gxXform<2>::I));
  static_cast<void>(roomy.encloseRect({gxMatrix<2>(2, 0, 0, 1), gxVector<2>(0, 0)}));
  static_cast<void>(roomy.encloseRect({gxMatrix<2>(1, 2, 0, 1), gxVector<2>(0, 0)}));
  static_cast<void>(roomy.encloseRect({gxMatrix<2>(1, 0, 0, 2), gxVector<2>(0, 0)}));
  static_cast<void>(roomy.encloseRect({gxMatrix<2>(1, 0, 0, 1), gxVector<2>(2, 0)}));
  static_cast<void>(roomy.encloseRect({gxMatrix<2>(1, 0, 0, 1), gxVector<2>(0, 2)}));
  EXPECT_EQ(rects.times(), 6);
}

TEST(RegionSetEncloseRect, TransformsWithNaNAreComputedEachTime) {
  const gxRegionSet set({square(0, 0)});
  const gxXform<2> odd(gxMatrix<2>(1, 0, 0, 1), gxVector<2>(kNaN, 0));
  const Computed rects(gx_Computation::eSetEncloseRect);
  for (int i = 0; i < 6; ++i) static_cast<void>(set.encloseRect(odd));
  EXPECT_EQ(rects.times(), 6);
  EXPECT_EQ(remembered(set, {gxXform<2>::I}), std::vector<bool>{false});
}

TEST(RegionSetEncloseRect, NaNInYxAloneIsNoKeyOfItsOwn) {
  const gxRegionSet set({square(0, 0)});
  const gxRect upright = set.encloseRect(gxXform<2>::I);
  EXPECT_EQ(set.encloseRect({gxMatrix<2>(1, 0, kNaN, 1), gxVector<2>(0, 0)}), upright);
}

TEST(RegionSetEncloseRect, FailuresRememberNothing) {
  EXPECT_THROW(static_cast<void>(gxRegionSet().encloseRect(gxXform<2>::I)),
               gxContourDefs::EmptyRegionSet);
  const gxRegionSet nullFirst({nullptr, square(0, 0)});
  const gxRegionSet nullLast({square(0, 0), nullptr});
  const gxRegionSet onePoint({square(0, 0), Handle(new gxRegion({{1, 1}}))});
  const Computed rects(gx_Computation::eSetEncloseRect);
  for (int i = 0; i < 2; ++i) {
    EXPECT_THROW(static_cast<void>(nullFirst.encloseRect(gxXform<2>::I)), gxBadPointer);
    EXPECT_THROW(static_cast<void>(nullLast.encloseRect(gxXform<2>::I)), gxBadPointer);
    EXPECT_THROW(static_cast<void>(onePoint.encloseRect(gxXform<2>::I)), gxContourDefs::EmptyContour);
  }
  EXPECT_EQ(rects.times(), 6);
}

// ---- Bounded memory -----------------------------------------------------------------------------

TEST(RegionSetEviction, FiveTransformsLeaveFourRemembered) {
  const gxRegionSet set({square(0, 0)});
  for (const gxXform<2>& xform : shifts(5)) static_cast<void>(set.encloseRect(xform));
  const std::vector<bool> known = remembered(set, shifts(5));
  EXPECT_EQ(std::count(known.begin(), known.end(), true), 4);
  EXPECT_TRUE(known[4]);  // the new one takes the place of an old one
}

TEST(RegionSetEviction, SizeZeroRemembersTheLatestOnly) {
  gxRegionSet set({square(0, 0)});
  set.cachedVectorSize(0);
  static_cast<void>(set.encloseRect(shift(0)));
  EXPECT_EQ(remembered(set, shifts(3)), (std::vector<bool>{true, false, false}));
  static_cast<void>(set.encloseRect(shift(1)));
  EXPECT_EQ(remembered(set, shifts(3)), (std::vector<bool>{false, true, false}));
  static_cast<void>(set.encloseRect(shift(2)));
  EXPECT_EQ(remembered(set, shifts(3)), (std::vector<bool>{false, false, true}));
}

TEST(RegionSetEviction, TakesThePlaceThatTheThreadsGeneratorDraws) {
  onFreshThread([] {
    const gxRegionSet set({roomySquare()});
    gxRandomUniform generator(1);
    std::vector<int> known{0, 1, 2, 3};  // in key order
    for (int i = 0; i < 40; ++i) {
      static_cast<void>(set.encloseRect(shift(i)));
      if (i < 4) continue;
      known.erase(known.begin() + gfIFloor(generator.next(0.0, 4.0)));
      known.push_back(i);
      std::vector<bool> expected(static_cast<std::size_t>(i) + 1, false);
      for (const int k : known) expected[static_cast<std::size_t>(k)] = true;
      ASSERT_EQ(remembered(set, shifts(i + 1)), expected) << "after transform " << i;
    }
  });
}

TEST(RegionSetEviction, IsReproducibleOnEveryThread) {
  std::vector<std::vector<bool>> seen;
  for (int run = 0; run < 3; ++run) {
    onFreshThread([&seen] {
      const gxRegionSet set({square(0, 0)});
      for (const gxXform<2>& xform : shifts(30)) static_cast<void>(set.encloseRect(xform));
      seen.push_back(remembered(set, shifts(30)));
    });
  }
  EXPECT_EQ(seen[0], seen[1]);
  EXPECT_EQ(seen[0], seen[2]);
}

// The region remembers a rectangle as well while the set computes one, so a region of ordinary size
// draws first, then the set.
TEST(RegionSetEviction, RegionAndSetDrawInTurn) {
  onFreshThread([] {
    const gxRegionSet set({square(0, 0)});
    gxRandomUniform generator(1);
    for (int i = 0; i < 5; ++i) static_cast<void>(set.encloseRect(shift(i)));
    static_cast<void>(generator.next(0.0, 4.0));  // the region's
    std::vector<bool> expected(5, true);
    expected[static_cast<std::size_t>(gfIFloor(generator.next(0.0, 4.0)))] = false;
    EXPECT_EQ(remembered(set, shifts(5)), expected);
  });
}

TEST(RegionSetEviction, ContoursAndSetsDrawFromOneGenerator) {
  onFreshThread([] {
    const gxContour contour(box(0, 0, 1));
    for (int i = 0; i < 6; ++i) static_cast<void>(contour.extremalVertexIndex(gxRadian(0.1 * i)));
    gxRandomUniform generator(1);  // the contour drew twice: for its fifth and sixth angle
    static_cast<void>(generator.next(0.0, 4.0));
    static_cast<void>(generator.next(0.0, 4.0));

    const gxRegionSet set({roomySquare()});
    for (int i = 0; i < 5; ++i) static_cast<void>(set.encloseRect(shift(i)));
    std::vector<bool> expected(5, true);
    expected[static_cast<std::size_t>(gfIFloor(generator.next(0.0, 4.0)))] = false;
    EXPECT_EQ(remembered(set, shifts(5)), expected);
  });
}

// ---- Random sets against plain loops ------------------------------------------------------------

namespace {

// The answer, or the name of what was thrown instead.
template <class Ask>
std::string outcome(Ask ask) {
  try {
    std::ostringstream text;
    text.precision(17);
    const auto answer = ask();
    PrintTo(answer, &text);
    return text.str();
  } catch (const gxContourDefs::EmptyContour&) {
    return "EmptyContour";
  } catch (const gxContourDefs::EmptyRegionSet&) {
    return "EmptyRegionSet";
  } catch (const gxBadPointer&) {
    return "BadPointer";
  }
}

gxVector<2> asVector(double value) {
  return {value, 0.0};
}

Handles randomRegions(RandomShapes& random) {
  Handles handles;
  const int count = random.integer(0, 6);
  for (int i = 0; i < count; ++i) {
    if (random.chance(0.03)) {
      handles.push_back(nullptr);
    } else if (random.chance(0.3)) {
      const OutlineWithHoles shape = random.outlineWithHoles();
      const gxPtrHandle<gxRegion> region(new gxRegion(shape.outline));
      Handles holes;
      for (const auto& hole : shape.holes) holes.emplace_back(new gxRegion(hole));
      region->holes(holes);
      handles.push_back(region);
    } else {
      handles.emplace_back(new gxRegion(random.placed(random.outline())));
    }
  }
  return handles;
}

double plainArea(const Handles& handles, bool considerHoles) {
  double sum = 0.0;
  for (const Handle& region : handles) sum += region->area(considerHoles);
  return sum;
}

gxVector<2> plainCenter(const Handles& handles, bool considerHoles) {
  if (handles.empty()) throw gxContourDefs::EmptyRegionSet();
  double x = 0.0;
  double y = 0.0;
  double total = 0.0;
  for (const Handle& region : handles) {
    const double area = region->area(considerHoles);
    const gxVector<2> center = region->centerOfMass(considerHoles);
    x += center.x() * area;
    y += center.y() * area;
    total += area;
  }
  if (!(std::abs(total) > 1e-15)) return {0, 0};
  return gxVector<2>(x, y) / total;
}

gxRect plainRect(const Handles& handles, const gxXform<2>& xform) {
  if (handles.empty()) throw gxContourDefs::EmptyRegionSet();
  gxRect rect = gxContour(handles.front()->points()).encloseRect(xform);
  for (const Handle& region : handles)
    rect = rect.enclose(gxContour(region->points()).encloseRect(xform));
  return rect;
}

}  // namespace

TEST(RegionSetMeasures, RandomSetsMatchPlainLoopsBitForBit) {
  RandomShapes random("region set measures", 2000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Handles handles = randomRegions(random);
    const gxRegionSet set(handles);
    const gxXform<2> xform = random.transform();
    for (const bool considerHoles : {true, false}) {
      EXPECT_EQ(outcome([&] { return asVector(set.area(considerHoles)); }),
                outcome([&] { return asVector(plainArea(handles, considerHoles)); }));
      EXPECT_EQ(outcome([&] { return set.centerOfMass(considerHoles); }),
                outcome([&] { return plainCenter(handles, considerHoles); }));
    }
    EXPECT_EQ(outcome([&] { return set.encloseRect(xform); }),
              outcome([&] { return plainRect(handles, xform); }));
  }
}

// ---- Values at the ends of the range ------------------------------------------------------------

TEST(RegionSetMeasures, HugeAndInfiniteCoordinatesAreAnswered) {
  const gxRegionSet huge({square(-1e308, -1e308, 1e308), square(0, 0, 1e308)});
  EXPECT_EQ(huge.area(false), kInf);
  EXPECT_EQ(huge.encloseRect(gxXform<2>::I).origin(), gxVector<2>(-1e308, -1e308));
  EXPECT_NO_THROW(static_cast<void>(huge.centerOfMass(false)));
  EXPECT_NO_THROW(static_cast<void>(huge.inertiaMatrix(false)));
  const gxRegionSet infinite({Handle(new gxRegion({{0, 0}, {kInf, 0}, {0, kInf}})), square(0, 0)});
  EXPECT_NO_THROW(static_cast<void>(infinite.area(false)));
  EXPECT_NO_THROW(static_cast<void>(infinite.centerOfMass(false)));
  EXPECT_NO_THROW(static_cast<void>(infinite.inertiaMatrix(false)));
  EXPECT_NO_THROW(static_cast<void>(infinite.encloseRect(gxXform<2>::I)));
}

// ---- Twenty thousand regions --------------------------------------------------------------------

TEST(RegionSetMeasures, TwentyThousandRegionsAreTheirSumsAndExtremes) {
  Handles handles;
  for (int i = 0; i < 20000; ++i) {
    std::vector<gxVector<2>> coin;
    const double radius = 25.0 + (i * 37 % 100) * 0.1;
    const gxVector<2> center((i % 200) * 80.0, (i / 200) * 80.0);
    for (int k = 0; k < 24; ++k) coin.push_back(center + gxVector<2>(radius, gxRadian(0.26179938 * k)));
    handles.emplace_back(new gxRegion(coin));
  }
  const gxRegionSet set(handles);
  EXPECT_EQ(set.area(true), plainArea(handles, true));
  EXPECT_EQ(set.centerOfMass(false), plainCenter(handles, false));
  EXPECT_EQ(set.encloseRect(gxXform<2>::I), plainRect(handles, gxXform<2>::I));
  gx_InertiaData sum;
  for (const Handle& region : handles) {
    sum = sum +
          gx_InertiaData(region->area(false), region->centerOfMass(false), region->inertiaMatrix(false));
  }
  EXPECT_EQ(set.inertiaMatrix(false), sum.inertiaMatrix());

  for (const gxVector<2>& query : pointsOf("0 0, 40 40, 8000 4000, 15960 7900, -500 -500, nan 3")) {
    double nearest = kInf;
    bool inside = false;
    for (const Handle& region : handles) {
      const double distance = region->distToPoint(query, false, false, false);
      if (distance < nearest) nearest = distance;
      inside = inside || region->inside(query, true);
    }
    EXPECT_EQ(set.distToPoint(query, false, false, false), nearest);
    EXPECT_EQ(set.inside(query, true), inside);
  }
}
