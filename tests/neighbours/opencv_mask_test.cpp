#include <gxshape/interop/opencv_mask.h>

#include <cntr/region.h>
#include <neighbours/drawn_mask.h>
#include <overlay/check.h>
#include <support/random_shapes.h>

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include <limits>
#include <string>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

const double kNan = std::numeric_limits<double>::quiet_NaN();

// ---- Masks -----------------------------------------------------------------------------------------

cv::Mat randomMask(RandomShapes& random) {
  const int rows = random.integer(1, 24);
  const int columns = random.integer(1, 24);
  cv::Mat mask(rows, columns, CV_8UC1, cv::Scalar(0));
  const double share = random.chance(0.3) ? 0.5 : random.uniform(0.05, 0.95);
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < columns; ++c) {
      if (random.chance(share)) mask.at<uchar>(r, c) = static_cast<uchar>(random.integer(1, 255));
    }
  }
  return mask;
}

bool sameMaterial(const cv::Mat& a, const cv::Mat& b) {
  return a.size() == b.size() && cv::countNonZero((a != 0) != (b != 0)) == 0;
}

TEST(Masks, ComeBackPixelForPixelThroughValidRegions) {
  RandomShapes random("masks", 10'000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const cv::Mat mask = randomMask(random);
    const std::vector<gxRegion> regions = gfRegionsFromMask(mask);
    double area = 0.0;
    for (const gxRegion& region : regions) {
      area += region.area(true);
      const auto problems = gfCheck(region);
      ASSERT_TRUE(problems.empty()) << problems[0].sentence;
    }
    EXPECT_EQ(area, cv::countNonZero(mask));
    EXPECT_TRUE(sameMaterial(gfMaskFromRegions(regions, mask.size()), mask)) << mask;
  }
}

TEST(Masks, HaveARegionForEachComponentOfFour) {
  RandomShapes random("components of masks", 2'000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const cv::Mat mask = randomMask(random);
    cv::Mat labels;
    const int count = cv::connectedComponents(mask != 0, labels, 4) - 1;
    EXPECT_EQ(gfRegionsFromMask(mask).size(), static_cast<std::size_t>(count));
  }
}

TEST(Masks, OfOnePixelGiveItsSquare) {
  const std::vector<gxRegion> regions = gfRegionsFromMask(picture({"..", ".#"}));
  ASSERT_EQ(regions.size(), 1U);
  EXPECT_EQ(regions[0].points(), (Points{{2, 1}, {2, 2}, {1, 2}, {1, 1}}));
  EXPECT_EQ(gfRegionsFromMask(picture({"..", ".#"}), V(0, 0))[0].points()[1], V(1.5, 1.5));
}

TEST(Masks, KeepPixelsApartThatMeetInACornerAlone) {
  const std::vector<gxRegion> regions = gfRegionsFromMask(picture({"#.#", ".#.", "#.#"}));
  ASSERT_EQ(regions.size(), 5U);
  for (const gxRegion& region : regions) EXPECT_EQ(region.area(true), 1.0);
}

// The ends of the ring meet in a corner: its bay is a hole that touches the outline there.
TEST(Masks, CutABorderThatComesBackToACorner) {
  const std::vector<gxRegion> regions = gfRegionsFromMask(picture({"####", "#..#", "#.#.", "###."}));
  ASSERT_EQ(regions.size(), 1U);
  ASSERT_EQ(regions[0].holes().size(), 1U);
  EXPECT_EQ(regions[0].holes()[0]->area(false), 3.0);
  EXPECT_EQ(regions[0].area(true), 11.0);
  const std::vector<gxRegion> holes = gfRegionsFromMask(picture({"####", "#.##", "##.#", "####"}));
  ASSERT_EQ(holes.size(), 1U);
  EXPECT_EQ(holes[0].holes().size(), 2U);
}

TEST(Masks, AreFoundInsideOneAnother) {
  const std::vector<gxRegion> regions = gfRegionsFromMask(picture(kNested));
  ASSERT_EQ(regions.size(), 2U);
  EXPECT_EQ(regions[0].area(true), 24.0);
  EXPECT_EQ(regions[1].area(true), 8.0);
}

TEST(Masks, OfPartsOfAPictureAreReadRowByRow) {
  const cv::Mat whole = picture(kNested);
  const cv::Mat part = whole(cv::Rect(3, 3, 3, 3));
  ASSERT_FALSE(part.isContinuous());
  const std::vector<gxRegion> regions = gfRegionsFromMask(part);
  ASSERT_EQ(regions.size(), 1U);
  EXPECT_EQ(regions[0].area(true), 8.0);
}

TEST(Masks, OfOtherKindsAreRefused) {
  EXPECT_TRUE(gfRegionsFromMask(cv::Mat()).empty());
  EXPECT_TRUE(gfRegionsFromMask(cv::Mat::zeros(4, 5, CV_8UC1)).empty());
  try {
    gfRegionsFromMask(cv::Mat::ones(4, 5, CV_32FC1));
    ADD_FAILURE() << "nothing was thrown";
  } catch (const gxContourDefs::BadParams& error) {
    EXPECT_EQ(error.message(), L"a mask has to be CV_8UC1 with 2 dimensions; this one has type 5 and 2");
  }
  EXPECT_THROW(gfMaskFromRegions({}, cv::Size(-1, 4)), gxContourDefs::BadParams);
  EXPECT_EQ(gfMaskFromRegions({}, cv::Size(0, 0)).total(), 0U);
}

TEST(Masks, HoldThePixelsWhoseCentresAreInside) {
  RandomShapes random("centres of pixels", 500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OutlineWithHoles shape = random.outlineWithHoles();
    const gxRegion region(shape.outline, shape.holes);
    const V first(random.uniform(-12, -8), random.uniform(-12, -8));
    const cv::Mat mask = gfMaskFromRegions({region}, cv::Size(22, 20), first);
    for (int r = 0; r < mask.rows; ++r) {
      for (int c = 0; c < mask.cols; ++c) {
        const V centre = first + V(c, r);
        if (region.distToPoint(centre, false, true, false) < 1e-4) continue;
        EXPECT_EQ(mask.at<uchar>(r, c) == 255, region.inside(centre, true))
            << centre.x() << ' ' << centre.y();
      }
    }
  }
}

TEST(Masks, GiveACentreOnABorderToOneSideAlone) {
  const gxRegion left({{0.5, 0.5}, {2.5, 0.5}, {2.5, 2.5}, {0.5, 2.5}});
  const gxRegion right({{2.5, 0.5}, {4.5, 0.5}, {4.5, 2.5}, {2.5, 2.5}});
  const cv::Mat a = gfMaskFromRegions({left}, cv::Size(6, 4));
  const cv::Mat b = gfMaskFromRegions({right}, cv::Size(6, 4));
  EXPECT_TRUE(sameMaterial(a, picture({"##....", "##....", "......", "......"})));
  EXPECT_TRUE(sameMaterial(b, picture({"..##..", "..##..", "......", "......"})));
}

TEST(Masks, FillIslandsAndRegionsInHoles) {
  gxRegion hole({{1, 1}, {1, 6}, {6, 6}, {6, 1}});
  hole.addHole({{2, 2}, {5, 2}, {5, 5}, {2, 5}});
  gxRegion plate({{0, 0}, {7, 0}, {7, 7}, {0, 7}});
  plate.addHole(hole);
  const gxRegion inside({{1, 1}, {2, 1}, {2, 2}, {1, 2}});
  const std::vector<std::string> expected{"#######", "##....#", "#.###.#", "#.###.#",
                                          "#.###.#", "#.....#", "#######"};
  EXPECT_TRUE(sameMaterial(gfMaskFromRegions({inside, plate}, cv::Size(7, 7)), picture(expected)));
  EXPECT_TRUE(sameMaterial(gfMaskFromRegions({plate, inside}, cv::Size(7, 7)), picture(expected)));
}

TEST(Masks, TakeHolesThatOverlapTogether) {
  const gxRegion plate =
      gfRegionOfRings({{0, 0}, {5, 0}, {5, 1}, {0, 1}},
                      {{{1, 0}, {3, 0}, {3, 1}, {1, 1}}, {{2, 0}, {4, 0}, {4, 1}, {2, 1}}});
  EXPECT_TRUE(sameMaterial(gfMaskFromRegions({plate}, cv::Size(5, 1)), picture({"#...#"})));
}

TEST(Masks, AreFilledByShapesOfAnySize) {
  const gxRegion huge({{-1e308, -1e308}, {1e308, -1e308}, {1e308, 1e308}, {-1e308, 1e308}});
  EXPECT_EQ(cv::countNonZero(gfMaskFromRegions({huge}, cv::Size(5, 4))), 20);
  const gxRegion far({{1e300, 0}, {1e300, 9}, {1.1e300, 9}});
  EXPECT_EQ(cv::countNonZero(gfMaskFromRegions({far}, cv::Size(5, 4))), 0);
  const gxRegion flat({{-5, 5e-324}, {5, -5e-324}, {9, 5e-324}});
  EXPECT_LE(cv::countNonZero(gfMaskFromRegions({flat}, cv::Size(5, 4), V(0, 0))), 5);
  EXPECT_EQ(cv::countNonZero(gfMaskFromRegions(
                {gxRegion(), gxRegion({{1, 1}}), gxRegion({{0, 0}, {4, 4}})}, cv::Size(5, 4))),
            0);
  const gxRegion bad({{0, 0}, {1, 0}, {kNan, 1}});
  try {
    gfMaskFromRegions({bad}, cv::Size(5, 4));
    ADD_FAILURE() << "nothing was thrown";
  } catch (const gxContourDefs::BadParams& error) {
    EXPECT_EQ(error.message(), L"point 2 of ring 0 is not finite");
  }
}

}  // namespace
