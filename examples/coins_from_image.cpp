// Coins in a photograph: OpenCV finds their borders, the library measures them, OpenCV draws what came out.
//
//   example_coins_from_image [PICTURE [RESULT.png]]
//
// Built with OpenCV by `make neighbours`.

#include <gauge/descriptors.h>
#include <gauge/enclosing.h>
#include <gxshape/interop/opencv.h>
#include <gxshape/interop/opencv_mask.h>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

// The coins are brighter than the ground, which is brighter at the top left than at the bottom right: what is
// brighter than its wide surroundings, with the dark parts of the relief filled in and the threads between coins cut.
cv::Mat materialOf(const cv::Mat& picture) {
  cv::Mat smooth;
  cv::GaussianBlur(picture, smooth, cv::Size(5, 5), 0);
  cv::Mat bright;
  cv::adaptiveThreshold(smooth, bright, 255, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY, 201, -14);
  const auto disc = [](int size) {
    return cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(size, size));
  };
  cv::morphologyEx(bright, bright, cv::MORPH_CLOSE, disc(5));
  std::vector<gxRegion> filled;
  for (const gxRegion& region : gfRegionsFromMask(bright)) filled.emplace_back(region.points());
  cv::Mat material = gfMaskFromRegions(filled, bright.size());
  cv::morphologyEx(material, material, cv::MORPH_OPEN, disc(19));
  return material;
}

std::vector<gxRegion> coinsOf(const cv::Mat& picture) {
  std::vector<gxRegion> coins;
  // Centres of pixels are at whole numbers, as in the picture's own coordinates.
  for (const gxRegion& region : gfRegionsFromMask(materialOf(picture), gxVector<2>(0, 0))) {
    if (region.area(false) > 600) coins.push_back(region);
  }
  // Rows from the top, each from the left.
  std::sort(coins.begin(), coins.end(), [](const gxRegion& a, const gxRegion& b) {
    const gxVector<2> one = a.centerOfMass(false);
    const gxVector<2> other = b.centerOfMass(false);
    const long rowOfOne = static_cast<long>(one.y() / 75);
    const long rowOfOther = static_cast<long>(other.y() / 75);
    return rowOfOne != rowOfOther ? rowOfOne < rowOfOther : one.x() < other.x();
  });
  return coins;
}

void draw(const cv::Mat& picture, const std::vector<gxRegion>& coins, const std::string& path) {
  constexpr int kScale = 3;
  cv::Mat drawing;
  cv::cvtColor(picture, drawing, cv::COLOR_GRAY2BGR);
  cv::resize(drawing, drawing, cv::Size(), kScale, kScale, cv::INTER_CUBIC);
  // Pixel centres of the small picture lie between those of the large one.
  const gxXform<2> larger(gxMatrix<2>(kScale, 0, 0, kScale), gxVector<2>(1, 1));
  for (std::size_t i = 0; i < coins.size(); ++i) {
    const gxRegion shown = coins[i].mapped(larger);
    cv::polylines(drawing, gfToOpenCv<int>(shown), true, cv::Scalar(60, 220, 60), 2, cv::LINE_AA);
    const gxEnclosingCircle circle = gfEnclosingCircle(shown);
    cv::circle(drawing, gfToOpenCv<int>(circle.centre), static_cast<int>(circle.radius + 0.5),
               cv::Scalar(255, 160, 60), 1, cv::LINE_AA);
    const cv::Point label = gfToOpenCv<int>(circle.centre) + cv::Point(-12, 8);
    cv::putText(drawing, std::to_string(i + 1), label, cv::FONT_HERSHEY_SIMPLEX, 0.8,
                cv::Scalar(40, 40, 240), 2, cv::LINE_AA);
  }
  cv::imwrite(path, drawing);
}

}  // namespace

int main(int count, char** arguments) {
  const std::string path = count > 1 ? arguments[1] : "examples/data/coins/coins.png";
  const cv::Mat picture = cv::imread(path, cv::IMREAD_GRAYSCALE);
  if (picture.empty()) {
    std::fprintf(stderr, "%s: no picture\n", path.c_str());
    return 1;
  }
  const std::vector<gxRegion> coins = coinsOf(picture);
  std::printf("coin  centre          area  diameter  circle  solidity  elongation\n");
  for (std::size_t i = 0; i < coins.size(); ++i) {
    const gxVector<2> centre = coins[i].centerOfMass(false);
    const gxDescriptors measures = gfDescribe(coins[i]);
    std::printf("%4zu  (%5.1f, %5.1f)  %5.0f  %8.2f  %6.2f  %8.3f  %10.3f\n", i + 1, centre.x(),
                centre.y(), measures.area, measures.equivalentDiameter,
                2 * gfEnclosingCircle(coins[i]).radius, measures.solidity, measures.elongation);
  }
  if (count > 2) draw(picture, coins, arguments[2]);
}
