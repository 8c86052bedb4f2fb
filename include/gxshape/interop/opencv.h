/// From and to OpenCV (`opencv2/core`): points, and contours with their hierarchy.
#pragma once

#include <cntr/contour.h>
#include <cntr/contourdefs.h>
#include <cntr/region.h>
#include <gxshape/interop/rings.h>
#include <velstd/vector.h>

#include <opencv2/core.hpp>

#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <utility>
#include <vector>

// ---- Points and contours ---------------------------------------------------------------------------

/// Returns the number of another type that is nearest to this one, of whole numbers the even one of two that are
/// as near; beyond the range the end of the range (for `float` an infinity), for NaN among whole numbers 0.
template <class T>
T gx_toOpenCv(double value) {
  if constexpr (std::numeric_limits<T>::is_integer) {
    if (!(value >= static_cast<double>((std::numeric_limits<T>::min)()))) {
      return value != value ? T{0} : (std::numeric_limits<T>::min)();
    }
    if (value >= static_cast<double>((std::numeric_limits<T>::max)()))
      return (std::numeric_limits<T>::max)();
    return static_cast<T>(std::nearbyint(value));
  } else {
    return static_cast<T>(value);
  }
}

/// Convert a point.  `double` keeps every bit; other types are rounded as above (OpenCV's own rounding makes
/// the least `int` of every number beyond the range).
template <class T>
gxVector<2> gfFromOpenCv(const cv::Point_<T>& point) {
  return {static_cast<double>(point.x), static_cast<double>(point.y)};
}
template <class T = double>
cv::Point_<T> gfToOpenCv(const gxVector<2>& point) {
  return {gx_toOpenCv<T>(point.x()), gx_toOpenCv<T>(point.y())};
}

/// Convert points one by one, as above.
template <class T>
std::vector<gxVector<2>> gfFromOpenCv(const std::vector<cv::Point_<T>>& points) {
  std::vector<gxVector<2>> result;
  result.reserve(points.size());
  for (const cv::Point_<T>& point : points) result.push_back(gfFromOpenCv(point));
  return result;
}
template <class T = double>
std::vector<cv::Point_<T>> gfToOpenCv(const std::vector<gxVector<2>>& points) {
  std::vector<cv::Point_<T>> result;
  result.reserve(points.size());
  for (const gxVector<2>& point : points) result.push_back(gfToOpenCv<T>(point));
  return result;
}
template <class T = double>
std::vector<cv::Point_<T>> gfToOpenCv(const gxContour& contour) {
  return gfToOpenCv<T>(contour.points());
}

/// Returns the points as rows of two doubles (`CV_64FC2`, one column) in the same memory: nothing is copied,
/// and the matrix is read, while the points stay.
inline cv::Mat gfViewOfPoints(const std::vector<gxVector<2>>& points) {
  if (points.empty()) return cv::Mat(0, 1, CV_64FC2);
  if (points.size() > static_cast<std::size_t>((std::numeric_limits<int>::max)())) {
    throw gxContourDefs::BadParams(L"more points than a cv::Mat has rows");
  }
  // cv::Mat has no form that only reads.
  return cv::Mat(
      static_cast<int>(points.size()), 1, CV_64FC2,
      const_cast<gxVector<2>*>(points.data()));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

// ---- Contours with a hierarchy ---------------------------------------------------------------------

/// Returns how deep each contour of a hierarchy lies, 0 for one without a parent.
/// Throws: BadParams, with the contour, for a parent that is none of them and for parents in a ring.
inline std::vector<int> gx_depths(const std::vector<cv::Vec4i>& hierarchy) {
  constexpr int kUnknown = -1;
  const int count = static_cast<int>(hierarchy.size());
  std::vector<int> depths(hierarchy.size(), kUnknown);
  std::vector<int> chain;
  for (int start = 0; start < count; ++start) {
    chain.clear();
    int at = start;
    while (at >= 0 && depths[static_cast<std::size_t>(at)] == kUnknown) {
      chain.push_back(at);
      const int parent = hierarchy[static_cast<std::size_t>(at)][3];
      if (parent < -1 || parent >= count) {
        throw gxContourDefs::BadParams(L"contour " + std::to_wstring(at) + L" has the parent " +
                                       std::to_wstring(parent) + L", of " + std::to_wstring(count) +
                                       L" contours");
      }
      if (chain.size() > hierarchy.size()) {
        throw gxContourDefs::BadParams(L"the parents of contour " + std::to_wstring(start) +
                                       L" go around in a ring");
      }
      at = parent;
    }
    int depth = at < 0 ? -1 : depths[static_cast<std::size_t>(at)];
    for (auto one = chain.rbegin(); one != chain.rend(); ++one)
      depths[static_cast<std::size_t>(*one)] = ++depth;
  }
  return depths;
}

/// Returns the regions of what `cv::findContours` gives, in the order of their outlines.  Contours at even
/// depth are outlines and those right below them their holes, which is how both RETR_CCOMP and RETR_TREE have
/// them; an empty hierarchy makes a region of every contour, as for RETR_EXTERNAL and RETR_LIST.
///
/// Holes are taken as they are: OpenCV walks along the pixels around a hole, so that walls one pixel wide
/// have an outline and a hole that lie on each other.  `gfRepair` puts that right where it matters.
/// Throws: BadParams where the hierarchy is of another length, has a parent that is none of the contours, or
/// goes around in a ring; the text has the contour.
/// Cost: O(points).
template <class T>
std::vector<gxRegion> gfRegionsFromOpenCv(const std::vector<std::vector<cv::Point_<T>>>& contours,
                                          const std::vector<cv::Vec4i>& hierarchy = {}) {
  if (!hierarchy.empty() && hierarchy.size() != contours.size()) {
    throw gxContourDefs::BadParams(std::to_wstring(contours.size()) + L" contours and a hierarchy of " +
                                   std::to_wstring(hierarchy.size()));
  }
  const std::vector<int> depths =
      hierarchy.empty() ? std::vector<int>(contours.size(), 0) : gx_depths(hierarchy);
  std::vector<std::vector<std::vector<gxVector<2>>>> holes(contours.size());
  for (std::size_t i = 0; i < contours.size(); ++i) {
    if (depths[i] % 2 == 0) continue;
    holes[static_cast<std::size_t>(hierarchy[i][3])].push_back(gfFromOpenCv(contours[i]));
  }
  std::vector<gxRegion> regions;
  for (std::size_t i = 0; i < contours.size(); ++i) {
    if (depths[i] % 2 == 0) regions.push_back(gfRegionOfRings(gfFromOpenCv(contours[i]), holes[i]));
  }
  return regions;
}

/// Contours and their hierarchy, as `cv::findContours` gives them.
template <class T>
struct gxOpenCvContours {
  std::vector<std::vector<cv::Point_<T>>> contours;  ///< each outline with its holes behind it
  std::vector<cv::Vec4i> hierarchy;  ///< next, previous, first child, parent; −1 for none
};

/// Returns the contours of regions with a hierarchy as RETR_CCOMP has it: outlines, each with its holes right
/// below it.  Islands in holes are outlines of their own, behind the region they lie in.
/// Throws: gxBadPointer for a null hole; BadParams "holes nest too deeply".
/// Cost: O(points).
template <class T = double>
gxOpenCvContours<T> gfToOpenCvContours(const std::vector<gxRegion>& regions) {
  gxOpenCvContours<T> result;
  int lastOutline = -1;
  for (const gxRegion& region : regions) {
    for (const gxRegionRings& part : gfRingsOf(region)) {
      const int outline = static_cast<int>(result.contours.size());
      const int holes = static_cast<int>(part.holes.size());
      if (lastOutline >= 0) result.hierarchy[static_cast<std::size_t>(lastOutline)][0] = outline;
      result.contours.push_back(gfToOpenCv<T>(*part.outline));
      result.hierarchy.emplace_back(-1, lastOutline, holes > 0 ? outline + 1 : -1, -1);
      for (int k = 1; k <= holes; ++k) {
        result.contours.push_back(gfToOpenCv<T>(*part.holes[static_cast<std::size_t>(k - 1)]));
        result.hierarchy.emplace_back(k < holes ? outline + k + 1 : -1, k > 1 ? outline + k - 1 : -1, -1,
                                      outline);
      }
      lastOutline = outline;
    }
  }
  return result;
}
