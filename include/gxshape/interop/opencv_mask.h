/// From and to OpenCV (`opencv2/core`): masks.
///
/// Two ways to see pixels meet here.  `cv::findContours` walks from centre to centre of the pixels on a rim, so
/// what it finds is half a pixel smaller all around than the pixels are.  The masks here are walked along the
/// edges of the pixels: areas are numbers of pixels, and a mask comes back as it was.
#pragma once

#include <cntr/contourdefs.h>
#include <cntr/region.h>
#include <gxshape/interop/rings.h>
#include <velstd/vector.h>

#include <opencv2/core.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

// ---- Masks in --------------------------------------------------------------------------------------

/// Walks along the edges of the pixels of a mask.
///
///   1. Pixels that share an edge are one component (`labels_`).
///   2. Every border of a component has an edge with material below it and none above; from each of these
///      that was not passed yet, the border is walked once around, material on its left (x towards y).  Where
///      two pixels of material meet in a corner alone, the walk turns left and stays at its own.
///   3. A border that comes back to such a corner is cut in two there, so that no ring passes a point twice.
///   4. Rings that turn the other way are holes, of the outline of their component.
class gx_MaskWalk {
 public:
  /// Looks at the mask, which has one byte a pixel.
  explicit gx_MaskWalk(const cv::Mat& mask) : mask_(mask), columns_(mask.cols), rows_(mask.rows) {
    label_();
    passed_.resize(labels_.size());
  }

  /// Returns the regions in the order of their first pixels, row by row.
  std::vector<gxRegion> regions(const gxVector<2>& shift) {
    for (int row = 0; row < rows_; ++row) {
      for (int column = 0; column < columns_; ++column) {
        if (isMaterial_(column, row) && !isMaterial_(column, row - 1) && !passed_[at_(column, row)]) {
          walk_(column, row);
        }
      }
    }
    std::vector<gxRegion> result;
    result.reserve(outlines_.size());
    for (std::size_t i = 0; i < outlines_.size(); ++i) {
      result.push_back(gfRegionOfRings(shifted_(outlines_[i], shift), allShifted_(holes_[i], shift)));
    }
    return result;
  }

 private:
  struct Corner {
    int x;
    int y;
  };
  using Ring = std::vector<Corner>;

  bool isMaterial_(int column, int row) const {
    return column >= 0 && column < columns_ && row >= 0 && row < rows_ &&
           mask_.ptr<uchar>(row)[column] != 0;
  }
  std::size_t at_(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
           static_cast<std::size_t>(column);
  }

  // ---- Components: a forest of pixels, each tree with its first pixel at the root --------------------

  std::size_t root_(std::size_t pixel) {
    while (labels_[pixel] != pixel) pixel = labels_[pixel] = labels_[labels_[pixel]];
    return pixel;
  }
  void join_(std::size_t a, std::size_t b) {
    a = root_(a);
    b = root_(b);
    labels_[(std::max)(a, b)] = (std::min)(a, b);
  }
  void label_() {
    labels_.resize(static_cast<std::size_t>(rows_) * static_cast<std::size_t>(columns_));
    for (int row = 0; row < rows_; ++row) {
      for (int column = 0; column < columns_; ++column) {
        const std::size_t here = at_(column, row);
        labels_[here] = here;
        if (!isMaterial_(column, row)) continue;
        if (isMaterial_(column - 1, row)) join_(here, at_(column - 1, row));
        if (isMaterial_(column, row - 1)) join_(here, at_(column, row - 1));
      }
    }
  }

  // ---- One border ------------------------------------------------------------------------------------

  // The pixel on the left (or right) of the way from this corner in that direction: 0 +x, 1 +y, 2 −x, 3 −y.
  bool ahead_(const Corner& corner, int direction, bool left) const {
    static constexpr int kLeft[4][2] = {{0, 0}, {-1, 0}, {-1, -1}, {0, -1}};
    const int* step = kLeft[left ? direction : (direction + 3) % 4];
    return isMaterial_(corner.x + step[0], corner.y + step[1]);
  }

  void walk_(int column, int row) {
    const std::size_t component = root_(at_(column, row));
    Ring ring;
    std::unordered_map<std::size_t, std::size_t> pinches;  // where the ring has a corner of two pixels
    Corner corner{column, row};
    int direction = 0;
    do {
      if (direction == 0) passed_[at_(corner.x, corner.y)] = true;
      static constexpr int kStep[4][2] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
      corner.x += kStep[direction][0];
      corner.y += kStep[direction][1];
      const bool left = ahead_(corner, direction, true);
      const bool right = ahead_(corner, direction, false);
      if (left && !right) continue;
      if (!left && right) cutAtPinch_(ring, pinches, corner, component);
      ring.push_back(corner);
      direction = (direction + (left ? 3 : 1)) % 4;
    } while (corner.x != column || corner.y != row || direction != 0);
    keep_(ring, component);
  }

  void cutAtPinch_(Ring& ring, std::unordered_map<std::size_t, std::size_t>& pinches,
                   const Corner& corner, std::size_t component) {
    const std::size_t key =
        static_cast<std::size_t>(corner.y) * (static_cast<std::size_t>(columns_) + 1) +
        static_cast<std::size_t>(corner.x);
    const auto [known, isNew] = pinches.try_emplace(key, ring.size());
    if (isNew) return;
    const std::size_t first = known->second;
    const auto cut = ring.begin() + static_cast<std::ptrdiff_t>(first);
    keep_(Ring(cut, ring.end()), component);
    for (auto gone = cut; gone != ring.end(); ++gone) {
      const auto place =
          pinches.find(static_cast<std::size_t>(gone->y) * (static_cast<std::size_t>(columns_) + 1) +
                       static_cast<std::size_t>(gone->x));
      if (place != pinches.end() && place->second >= first) pinches.erase(place);
    }
    ring.erase(cut, ring.end());
    pinches[key] = first;
  }

  // Twice the area, whole numbers; an outline's is above 0.
  static std::int64_t turn_(const Ring& ring) {
    std::int64_t sum = 0;
    Corner last = ring.back();
    for (const Corner& corner : ring) {
      sum += std::int64_t{last.x} * corner.y - std::int64_t{corner.x} * last.y;
      last = corner;
    }
    return sum;
  }
  void keep_(Ring ring, std::size_t component) {
    const auto [place, isNew] = regionOf_.try_emplace(component, outlines_.size());
    if (isNew) {
      outlines_.emplace_back();
      holes_.emplace_back();
    }
    if (turn_(ring) > 0) {
      outlines_[place->second] = std::move(ring);
    } else {
      holes_[place->second].push_back(std::move(ring));
    }
  }

  static std::vector<gxVector<2>> shifted_(const Ring& ring, const gxVector<2>& shift) {
    std::vector<gxVector<2>> points;
    points.reserve(ring.size());
    for (const Corner& corner : ring) points.push_back(gxVector<2>(corner.x, corner.y) + shift);
    return points;
  }
  static std::vector<std::vector<gxVector<2>>> allShifted_(const std::vector<Ring>& rings,
                                                           const gxVector<2>& shift) {
    std::vector<std::vector<gxVector<2>>> result;
    result.reserve(rings.size());
    for (const Ring& ring : rings) result.push_back(shifted_(ring, shift));
    return result;
  }

  cv::Mat mask_;
  int columns_;
  int rows_;
  std::vector<std::size_t> labels_;  // of a pixel: another one of its component; the root: itself
  std::vector<bool> passed_;         // of a pixel: whether the edge above it was walked along
  std::unordered_map<std::size_t, std::size_t> regionOf_;  // of a component, by its root
  std::vector<Ring> outlines_;
  std::vector<std::vector<Ring>> holes_;
};

/// Returns the regions of a mask (`CV_8UC1`; every value but 0 is material) along the edges of its pixels, by
/// their first pixels, row by row.  The pixel in column c and row r is the square around
/// `firstCentre` + (c, r), one wide: by default from (c, r) to (c + 1, r + 1); with (0, 0) coordinates agree
/// with those of `cv::findContours`.  Areas are numbers of pixels.
///
/// Pixels that meet in a corner alone are apart.  Rings turn from the x axis towards the y axis around
/// material and the other way around holes; they pass no point twice, and may touch in single corners, where
/// `gxRegion::holes` would refuse them: they are valid for `gfCheck` and all of overlay.
///  - no pixels, no material: no regions
/// Throws: BadParams for a matrix of another type, with the type in the text.
/// Cost: O(pixels); memory of 8 bytes and a bit a pixel meanwhile.
inline std::vector<gxRegion> gfRegionsFromMask(const cv::Mat& mask,
                                               const gxVector<2>& firstCentre = {0.5, 0.5}) {
  if (mask.empty()) return {};
  if (mask.type() != CV_8UC1 || mask.dims != 2) {
    throw gxContourDefs::BadParams(L"a mask has to be CV_8UC1 with 2 dimensions; this one has type " +
                                   std::to_wstring(mask.type()) + L" and " + std::to_wstring(mask.dims));
  }
  return gx_MaskWalk(mask).regions(firstCentre - gxVector<2>(0.5, 0.5));
}

// ---- Masks out -------------------------------------------------------------------------------------

/// Fills pixels whose centres lie inside rings, row by row.
class gx_MaskFill {
 public:
  /// Fills into this mask; pixel (0, 0) has its centre there.
  gx_MaskFill(cv::Mat& mask, const gxVector<2>& firstCentre) : mask_(mask), first_(firstCentre) {}

  /// Fills a region: its outline, less its holes, and their islands again.
  void fill(const gxRegion& region) {
    edges_.clear();
    ring_ = 0;
    levels_.clear();
    std::vector<const gxRegion*> level{&region};
    for (bool isMaterial = true; !level.empty(); isMaterial = !isMaterial) {
      std::vector<const gxRegion*> below;
      for (const gxRegion* one : level) {
        add_(one->points(), isMaterial);
        for (const gxRegion::HoleHandle& hole : one->holes()) below.push_back(&*hole);
        if (levels_.size() > kMostRings) throw gxContourDefs::BadParams(L"holes nest too deeply");
      }
      level.swap(below);
    }
    sweep_();
  }

 private:
  static constexpr std::size_t kMostRings = 10'000'000;

  struct Edge {
    int firstRow;  // of the rows whose centres it crosses
    int endRow;
    std::size_t ring;
    gxVector<2> low;
    gxVector<2> high;
  };
  struct Crossing {
    std::size_t ring;
    double x;
    bool operator<(const Crossing& o) const { return ring != o.ring ? ring < o.ring : x < o.x; }
  };

  // The first of so many rows, or columns, whose centre is not below `at`, a place relative to centre 0.
  static int firstAt_(double at, int count) {
    const double whole = std::ceil(at);
    if (!(whole > 0.0)) return 0;
    return whole < count ? static_cast<int>(whole) : count;
  }

  void add_(const std::vector<gxVector<2>>& points, bool isMaterial) {
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (!std::isfinite(points[i].x()) || !std::isfinite(points[i].y())) {
        throw gxContourDefs::BadParams(L"point " + std::to_wstring(i) + L" of ring " +
                                       std::to_wstring(ring_) + L" is not finite");
      }
      gxVector<2> low = points[i == 0 ? points.size() - 1 : i - 1];
      gxVector<2> high = points[i];
      if (low.y() > high.y()) std::swap(low, high);
      const int firstRow = firstAt_(low.y() - first_.y(), mask_.rows);
      const int endRow = firstAt_(high.y() - first_.y(), mask_.rows);
      if (firstRow < endRow) edges_.push_back({firstRow, endRow, ring_, low, high});
    }
    levels_.push_back(isMaterial);
    ++ring_;
  }

  // Halves, so that differences of the largest numbers do not overflow; of upright edges x exactly.
  static double crossing_(const Edge& edge, double y) {
    if (edge.low.x() == edge.high.x()) return edge.low.x();
    const double height = 0.5 * edge.high.y() - 0.5 * edge.low.y();
    if (!(height > 0.0)) return edge.low.x();  // less than the smallest double high
    const double t = (0.5 * y - 0.5 * edge.low.y()) / height;
    return (1.0 - t) * edge.low.x() + t * edge.high.x();
  }

  void sweep_() {
    std::sort(edges_.begin(), edges_.end(),
              [](const Edge& a, const Edge& b) { return a.firstRow < b.firstRow; });
    std::vector<Edge> active;
    std::size_t next = 0;
    int row = edges_.empty() ? mask_.rows : edges_.front().firstRow;
    for (; row < mask_.rows && (next < edges_.size() || !active.empty()); ++row) {
      active.erase(std::remove_if(active.begin(), active.end(),
                                  [row](const Edge& edge) { return edge.endRow <= row; }),
                   active.end());
      for (; next < edges_.size() && edges_[next].firstRow <= row; ++next)
        active.push_back(edges_[next]);
      fillRow_(row, active);
    }
  }

  void fillRow_(int row, const std::vector<Edge>& active) {
    crossings_.clear();
    for (const Edge& edge : active) crossings_.push_back({edge.ring, crossing_(edge, row + first_.y())});
    std::sort(crossings_.begin(), crossings_.end());
    line_.assign(static_cast<std::size_t>(mask_.cols), 0);
    int least = mask_.cols;
    int end = 0;
    for (std::size_t i = 0; i + 1 < crossings_.size(); i += 2) {
      const int from = firstAt_(crossings_[i].x - first_.x(), mask_.cols);
      const int to = firstAt_(crossings_[i + 1].x - first_.x(), mask_.cols);
      if (from >= to) continue;
      std::fill(line_.begin() + from, line_.begin() + to,
                levels_[crossings_[i].ring] ? uchar{255} : uchar{0});
      least = (std::min)(least, from);
      end = (std::max)(end, to);
    }
    uchar* out = mask_.ptr<uchar>(row);
    for (int column = least; column < end; ++column) {
      if (line_[static_cast<std::size_t>(column)] != 0) out[column] = 255;
    }
  }

  cv::Mat& mask_;
  gxVector<2> first_;
  std::size_t ring_ = 0;
  std::vector<bool> levels_;  // of a ring: whether there is material inside
  std::vector<Edge> edges_;
  std::vector<Crossing> crossings_;
  std::vector<uchar> line_;
};

/// Returns a mask (`CV_8UC1`) of that size, 255 where the centre of a pixel lies inside one of the regions and
/// outside its holes, by the even-odd rule, islands in holes inside again; else 0.  `firstCentre` as in
/// `gfRegionsFromMask`.  A centre exactly on a border belongs to the side of greater x, then of greater y,
/// so that of two regions that share a border each pixel gets one.
///  - a region of fewer than 3 points holds nothing
/// Throws: BadParams for a coordinate that is not finite, with its place, for a size below 0, and "holes nest
/// too deeply"; gxBadPointer for a null hole.
/// Cost: O(points log points + rows crossed · edges there), and the pixels.
inline cv::Mat gfMaskFromRegions(const std::vector<gxRegion>& regions, const cv::Size& size,
                                 const gxVector<2>& firstCentre = {0.5, 0.5}) {
  if (size.width < 0 || size.height < 0) {
    throw gxContourDefs::BadParams(L"a mask of " + std::to_wstring(size.width) + L" by " +
                                   std::to_wstring(size.height) + L" pixels");
  }
  cv::Mat mask(size, CV_8UC1, cv::Scalar(0));
  gx_MaskFill fill(mask, firstCentre);
  for (const gxRegion& region : regions) fill.fill(region);
  return mask;
}
