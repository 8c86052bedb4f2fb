// The bounded memories against the plain ones: the same answers, remembered ones among them, the
// same number of computations, the same choices of what is forgotten.
//
// A remembered answer shows: rectangles under transforms that differ in yx alone are one entry, so
// whichever was asked first answers for the other, until it is forgotten.  Nothing else shows: crossings
// and containment are those of the points, whatever was asked before.
#include <cntr/internal/memory/computation_count.h>
#include <support/exposed.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>
#include <support/slow_truth_memory.h>

#include <gtest/gtest.h>

#include <thread>

namespace {

// Everything that one test asks, on a thread of its own: its sequence of choices begins anew.
template <class Work>
void onAFreshThread(const Work& work) {
  std::thread(work).join();
}

long computedByArgument() {
  return gx_computations(gx_Computation::eEncloseRect) +
         gx_computations(gx_Computation::eExtremalVertex);
}

// Few different keys, many of them one entry with another.
gxXform<2> someXform(RandomShapes& random) {
  if (random.chance(0.05)) return random.transform();
  const double shear = 0.5 * random.integer(-1, 1);
  return {{1.0, 0.0, shear, 1.0}, {1.0 * random.integer(0, 5), 0.0}};
}

TEST(SlowTruthMemory, ContoursAndSetsThatShareTheChoices) {
  RandomShapes random("memories", 120);
  onAFreshThread([&random] {
    slow::Evictions evictions;
    while (random.next()) {
      SCOPED_TRACE(random.trace());
      slow::RememberingSet plainSet;
      std::vector<gxPtrHandle<gxRegion>> regions;
      for (int i = random.integer(1, 3); i > 0; --i) {
        slow::RememberingContour contour;
        contour.outline.points = random.finiteOutline();
        regions.emplace_back(new gxRegion(contour.outline.points));
        plainSet.regions.push_back(contour);
      }
      gxRegionSet set(regions);
      const long before = computedByArgument();
      const long beforeSets = gx_computations(gx_Computation::eSetEncloseRect);

      for (int step = 0; step < 60; ++step) {
        const auto which =
            static_cast<std::size_t>(random.integer(0, static_cast<int>(regions.size()) - 1));
        slow::RememberingContour& plain = plainSet.regions[which];
        gxRegion& region = *regions[which];
        switch (random.integer(0, 9)) {
          case 0:
          case 1:
          case 2: {
            const gxXform<2> xform = someXform(random);
            EXPECT_TRUE(agree([&] { return region.encloseRect(xform); },
                              [&] { return plain.encloseRect(xform, evictions); }));
            break;
          }
          case 3: {
            const double angle = random.chance(0.1) ? random.angle() : 0.25 * random.integer(0, 7);
            EXPECT_TRUE(agree([&] { return region.extremalVertexIndex(gxRadian(angle)); },
                              [&] { return plain.extremalVertexIndex(angle, evictions); }));
            break;
          }
          case 4: {
            const gxLineSeg seg = random.segmentNear(plain.outline.points);
            const bool ends = random.chance(0.5);
            EXPECT_TRUE(agree([&] { return region.gxContour::intersections(seg, ends); },
                              [&] { return slow::intersections(plain.outline, seg, ends).points; }));
            break;
          }
          case 5:
            EXPECT_TRUE(agree([&] { return region.isSelfIntersecting(); },
                              [&] { return slow::isSelfIntersecting(plain.outline); }));
            break;
          case 6: {
            const gxVector<2> p = random.pointNear(plain.outline.points);
            const bool both = random.chance(0.5);
            EXPECT_TRUE(agree([&] { return gx_RegionInside::insideCount(region, p, both); },
                              [&] { return slow::insideCount(plain.outline.points, p, both); }));
            break;
          }
          case 7: {
            const gxXform<2> xform = someXform(random);
            EXPECT_TRUE(agree([&] { return set.encloseRect(xform); },
                              [&] { return plainSet.encloseRect(xform, evictions); }));
            break;
          }
          case 8: {  // neither trims nor drops
            plain.limit = random.integer(0, 4);
            region.cachedVectorSize(plain.limit);
            plainSet.limit = random.integer(0, 4);
            set.cachedVectorSize(plainSet.limit);
            break;
          }
          default:
            if (random.chance(0.3)) {
              plain.outline.points = random.finiteOutline();
              plain.forget();
              region.points(plain.outline.points);
            }
        }
      }
      long computed = 0;
      for (const auto& contour : plainSet.regions) computed += contour.computed;
      EXPECT_EQ(computedByArgument() - before, computed);
      EXPECT_EQ(gx_computations(gx_Computation::eSetEncloseRect) - beforeSets, plainSet.computed);
    }
  });
}

TEST(SlowTruthMemory, AShearAnswersForTheIdentity) {
  onAFreshThread([] {
    const std::vector<gxVector<2>> square = pointsOf("0 0, 4 0, 4 4, 0 4");
    const gxXform<2> shear(gxMatrix<2>(1.0, 0.0, 10.0, 1.0), {0.0, 0.0});
    const ExposedContour fresh(square);
    const ExposedContour asked(square);
    EXPECT_EQ(asked.encloseRect(shear), slow::encloseRect(square, shear));
    EXPECT_EQ(asked.encloseRect(gxXform<2>()), slow::encloseRect(square, shear));
    EXPECT_EQ(fresh.encloseRect(gxXform<2>()), slow::encloseRect(square, gxXform<2>()));
  });
}

TEST(SlowTruthMemory, CopiesRememberAndForgetApart) {
  RandomShapes random("copied memories", 60);
  onAFreshThread([&random] {
    slow::Evictions evictions;
    while (random.next()) {
      SCOPED_TRACE(random.trace());
      slow::RememberingContour plain;
      plain.outline.points = random.finiteOutline();
      gxContour contour(plain.outline.points);
      for (int step = 0; step < 10; ++step) {
        const gxXform<2> xform = someXform(random);
        EXPECT_TRUE(agree([&] { return contour.encloseRect(xform); },
                          [&] { return plain.encloseRect(xform, evictions); }));
      }
      slow::RememberingContour plainCopy = plain;
      gxContour copy(contour);
      for (int step = 0; step < 20; ++step) {
        const gxXform<2> xform = someXform(random);
        const bool first = random.chance(0.5);
        EXPECT_TRUE(agree([&] { return (first ? contour : copy).encloseRect(xform); },
                          [&] { return (first ? plain : plainCopy).encloseRect(xform, evictions); }));
      }
    }
  });
}

}  // namespace
