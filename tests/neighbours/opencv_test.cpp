#include <gxshape/interop/opencv.h>

#include <cntr/region.h>
#include <neighbours/drawn_mask.h>
#include <support/random_shapes.h>
#include <support/same_bits.h>

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <limits>
#include <string>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Rings = std::vector<Points>;

const double kNan = std::numeric_limits<double>::quiet_NaN();

// ---- Points ----------------------------------------------------------------------------------------

bool sameBitsOf(const Points& a, const Points& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!sameBits(a[i], b[i])) return false;
  }
  return true;
}

TEST(OpenCvPoints, OfDoublesComeBackBitForBit) {
  RandomShapes random("OpenCV points", 10'000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points points = random.outline();
    EXPECT_TRUE(sameBitsOf(gfFromOpenCv(gfToOpenCv<double>(gxContour(points))), points));
  }
}

TEST(OpenCvPoints, OfFloatsAndWholeNumbersComeBackWhereTheyHold) {
  RandomShapes random("OpenCV points of fewer bits", 10'000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    Points points;
    const int count = random.integer(0, 20);
    for (int i = 0; i < count; ++i)
      points.emplace_back(random.integer(-100000, 100000), random.integer(-9, 9));
    EXPECT_EQ(gfFromOpenCv(gfToOpenCv<int>(points)), points);
    for (V& point : points) point = V(point.x() / 8, point.y() / 8);
    EXPECT_EQ(gfFromOpenCv(gfToOpenCv<float>(points)), points);
  }
}

TEST(OpenCvPoints, AreRoundedToTheNearestAndHeldInRange) {
  const auto whole = [](double x) { return gfToOpenCv<int>(V(x, 0)).x; };
  EXPECT_EQ(whole(0.5), 0);
  EXPECT_EQ(whole(1.5), 2);
  EXPECT_EQ(whole(2.5), 2);
  EXPECT_EQ(whole(-1.5), -2);
  EXPECT_EQ(whole(0.4999), 0);
  EXPECT_EQ(whole(-0.6), -1);
  EXPECT_EQ(whole(1e300), (std::numeric_limits<int>::max)());
  EXPECT_EQ(whole(2147483647.0), 2147483647);
  EXPECT_EQ(whole(-1e300), (std::numeric_limits<int>::min)());
  EXPECT_EQ(whole(-2147483648.0), (std::numeric_limits<int>::min)());
  EXPECT_EQ(whole(kNan), 0);
  EXPECT_EQ(gfToOpenCv<float>(V(1e300, 0.1)), cv::Point2f(std::numeric_limits<float>::infinity(), 0.1F));
}

TEST(OpenCvPoints, AreSeenInPlaceAsAMatrix) {
  const Points points{{1, 2}, {3, 4}, {5, 6}};
  const cv::Mat view = gfViewOfPoints(points);
  EXPECT_EQ(static_cast<const void*>(view.data), static_cast<const void*>(points.data()));
  EXPECT_EQ(view.rows, 3);
  EXPECT_EQ(view.cols, 1);
  EXPECT_EQ(view.at<cv::Vec2d>(2, 0), cv::Vec2d(5, 6));
  EXPECT_EQ(cv::mean(view), cv::Scalar(3, 4));
  EXPECT_EQ(gfViewOfPoints({}).rows, 0);
}

// ---- Contours with a hierarchy ---------------------------------------------------------------------

void expectSameRings(const gxRegion& a, const gxRegion& b) {
  EXPECT_TRUE(sameBitsOf(a.points(), b.points()));
  ASSERT_EQ(a.holes().size(), b.holes().size());
  for (std::size_t i = 0; i < a.holes().size(); ++i) {
    EXPECT_TRUE(sameBitsOf(a.holes()[i]->points(), b.holes()[i]->points())) << "hole " << i;
  }
}

TEST(OpenCvRegions, ComeBackBitForBit) {
  RandomShapes random("OpenCV regions", 10'000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    std::vector<gxRegion> regions;
    const int count = random.integer(0, 3);
    for (int i = 0; i < count; ++i) {
      if (random.chance(0.3)) {
        regions.push_back(gfRegionOfRings(
            random.outline(), Rings(static_cast<std::size_t>(random.integer(0, 3)), random.outline())));
      } else {
        const OutlineWithHoles shape = random.outlineWithHoles();
        regions.emplace_back(shape.outline, shape.holes);
      }
    }
    const auto there = gfToOpenCvContours(regions);
    ASSERT_EQ(there.contours.size(), there.hierarchy.size());
    const std::vector<gxRegion> back = gfRegionsFromOpenCv(there.contours, there.hierarchy);
    ASSERT_EQ(back.size(), regions.size());
    for (std::size_t i = 0; i < back.size(); ++i) expectSameRings(back[i], regions[i]);
  }
}

TEST(OpenCvRegions, HaveTheLinksOfCcomp) {
  const gxRegion plate({{0, 0}, {9, 0}, {9, 9}, {0, 9}},
                       Rings{{{1, 1}, {1, 2}, {2, 2}}, {{4, 4}, {4, 6}, {6, 6}}});
  const gxRegion bare({{20, 0}, {21, 0}, {21, 1}});
  const auto there = gfToOpenCvContours<int>({plate, bare, plate});
  const std::vector<cv::Vec4i> expected{{3, -1, 1, -1}, {2, -1, -1, 0}, {-1, 1, -1, 0}, {4, 0, -1, -1},
                                        {-1, 3, 5, -1}, {6, -1, -1, 4}, {-1, 5, -1, 4}};
  EXPECT_EQ(there.hierarchy, expected);
  EXPECT_EQ(there.contours[2][1], cv::Point(4, 6));
}

TEST(OpenCvRegions, HaveIslandsAsRegionsOfTheirOwn) {
  gxRegion hole({{1, 1}, {1, 8}, {8, 8}, {8, 1}});
  hole.addHole({{3, 3}, {4, 3}, {4, 4}});
  gxRegion plate({{0, 0}, {9, 0}, {9, 9}, {0, 9}});
  plate.addHole(hole);
  const auto there = gfToOpenCvContours({plate});
  ASSERT_EQ(there.contours.size(), 3U);
  EXPECT_EQ(there.hierarchy[0], cv::Vec4i(2, -1, 1, -1));
  EXPECT_EQ(there.hierarchy[2], cv::Vec4i(-1, 0, -1, -1));
  EXPECT_EQ(gfRegionsFromOpenCv(there.contours, there.hierarchy).size(), 2U);
}

TEST(OpenCvRegions, AreWhatFindContoursFinds) {
  for (const int mode : {cv::RETR_CCOMP, cv::RETR_TREE}) {
    std::vector<std::vector<cv::Point>> contours;
    std::vector<cv::Vec4i> hierarchy;
    cv::findContours(picture(kNested), contours, hierarchy, mode, cv::CHAIN_APPROX_SIMPLE);
    std::vector<gxRegion> regions = gfRegionsFromOpenCv(contours, hierarchy);
    ASSERT_EQ(regions.size(), 2U);
    std::sort(regions.begin(), regions.end(),
              [](const gxRegion& a, const gxRegion& b) { return a.area(false) > b.area(false); });
    EXPECT_EQ(regions[0].area(false), 36.0);
    ASSERT_EQ(regions[0].holes().size(), 1U);
    EXPECT_EQ(regions[1].area(false), 4.0);
    EXPECT_EQ(regions[1].holes().size(), 1U);
  }
}

TEST(OpenCvRegions, OfContoursWithoutAHierarchyAreAllOutlines) {
  const std::vector<std::vector<cv::Point2f>> contours{{{0, 0}, {1, 0}, {1, 1}}, {}, {{5, 5}}};
  const std::vector<gxRegion> regions = gfRegionsFromOpenCv(contours);
  ASSERT_EQ(regions.size(), 3U);
  EXPECT_EQ(regions[0].points().size(), 3U);
  EXPECT_TRUE(regions[1].points().empty());
  EXPECT_TRUE(gfRegionsFromOpenCv(std::vector<std::vector<cv::Point>>()).empty());
}

std::wstring refusalOf(const std::vector<cv::Vec4i>& hierarchy) {
  try {
    gfRegionsFromOpenCv(std::vector<std::vector<cv::Point>>(3), hierarchy);
  } catch (const gxContourDefs::BadParams& error) {
    return error.message();
  }
  return L"";
}

TEST(OpenCvRegions, OfABrokenHierarchyAreRefusedWithTheContour) {
  EXPECT_EQ(refusalOf({{-1, -1, -1, -1}}), L"3 contours and a hierarchy of 1");
  const cv::Vec4i top(-1, -1, -1, -1);
  EXPECT_EQ(refusalOf({top, {-1, -1, -1, 3}, top}), L"contour 1 has the parent 3, of 3 contours");
  EXPECT_EQ(refusalOf({top, top, {-1, -1, -1, -2}}), L"contour 2 has the parent -2, of 3 contours");
  EXPECT_EQ(refusalOf({{-1, -1, -1, 1}, {-1, -1, -1, 0}, top}),
            L"the parents of contour 0 go around in a ring");
  EXPECT_EQ(refusalOf({top, top, {-1, -1, -1, 2}}), L"the parents of contour 2 go around in a ring");
  EXPECT_EQ(refusalOf({{-1, -1, -1, 1}, {-1, -1, -1, 2}, top}), L"");
}

TEST(OpenCvRegions, TakeHolesThatTouchTheirOutline) {
  const Points outline{{0, 0}, {4, 0}, {4, 4}, {0, 4}};
  const gxRegion region = gfRegionOfRings(outline, {outline, {{0, 0}, {1, 1}, {0, 1}}});
  ASSERT_EQ(region.holes().size(), 2U);
  EXPECT_EQ(region.holes()[0]->points(), outline);
  EXPECT_EQ(region.area(true), -0.5);
  const gxRegion empty = gfRegionOfRings({}, {outline});
  EXPECT_TRUE(empty.points().empty());
  EXPECT_EQ(empty.holes()[0]->area(false), 16.0);
}

}  // namespace
