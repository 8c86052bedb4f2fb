/// Masks drawn as text.
#pragma once

#include <opencv2/core.hpp>

#include <string>
#include <vector>

/// Returns the mask of rows of characters: # is material.
inline cv::Mat picture(const std::vector<std::string>& rows) {
  cv::Mat mask(static_cast<int>(rows.size()), static_cast<int>(rows[0].size()), CV_8UC1, cv::Scalar(0));
  for (int r = 0; r < mask.rows; ++r) {
    for (int c = 0; c < mask.cols; ++c) {
      if (rows[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)] == '#')
        mask.at<uchar>(r, c) = 7;
    }
  }
  return mask;
}

/// A frame around a frame.
inline const std::vector<std::string> kNested = {".........", ".#######.", ".#.....#.",
                                                 ".#.###.#.", ".#.#.#.#.", ".#.###.#.",
                                                 ".#.....#.", ".#######.", "........."};
