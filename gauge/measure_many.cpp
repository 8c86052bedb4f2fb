// Many outlines, four side by side.
//
//  1. Of 64 outlines in a row, those that are ordinary (at least three points, finite, not all on one line)
//     are put in the order of their sizes, above 64 points roughly; the others are measured one by one.
//  2. Four of about the same size go through the loops of length and moments together, one in each lane:
//     every lane does what the single form does, in its order, so that each outline keeps its bits.  An
//     outline that ends before the longest of the four goes on with its last point, an edge of length 0
//     with moments 0, which changes no sum.  Fewer than four left over are filled up with the last of them.
//     (In one outline four edges at a time would be faster still,
//     but the sums would be others.)
//  3. Where a lane meets an edge so short that its length must be computed with care, or a scale at the ends
//     of the range, the four are measured one by one.
#include <cntr/contourdefs.h>
#include <gauge/internal/edge_terms.h>
#include <gauge/internal/frame.h>
#include <gauge/internal/ring_moments.h>
#include <gauge/measure.h>
#include <gauge/measure_many.h>
#include <gauge/moments.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

constexpr double kNaN = gxMeasure::kNaN;

// So many outlines are put in order at a time.
constexpr std::size_t kChunk = 64;

using Points = std::span<const gxVector<2>>;
using Four = gx_Four;
using Corners = gx_Corner<Four>;

// ---- One row -------------------------------------------------------------------------------------

struct Second {
  double m20 = 0.0;
  double m11 = 0.0;
  double m02 = 0.0;
};

void putRow(const gxMeasure& m, const Second& moments, std::size_t k, gxMeasureColumns& c) {
  c.status[k] = m.status;
  c.area[k] = m.area;
  c.length[k] = m.length;
  c.centreX[k] = m.centre.x();
  c.centreY[k] = m.centre.y();
  c.boxXMin[k] = m.low.x();
  c.boxYMin[k] = m.low.y();
  c.boxXMax[k] = m.high.x();
  c.boxYMax[k] = m.high.y();
  c.moment20[k] = moments.m20;
  c.moment11[k] = moments.m11;
  c.moment02[k] = moments.m02;
}

void measureOne(Points points, std::size_t k, gxMeasureColumns& columns) {
  const gxMoments moments = gfMoments(points);
  putRow(gfMeasure(points), {moments.moment20, moments.moment11, moments.moment02}, k, columns);
}

void putInvalid(std::size_t k, gxMeasureColumns& columns) {
  gxMeasure none;
  none.status = gxStatus::eBadArgument;
  none.area = none.length = kNaN;
  putRow(none, {kNaN, kNaN, kNaN}, k, columns);
}

// ---- Four side by side ---------------------------------------------------------------------------

// An ordinary outline on its way.
struct Lane {
  Points points;
  std::size_t row = 0;
  gx_Box box;
  gx_Frame frame;
  double scale = 1.0;  // a power of two; what the frame multiplies by, where that is one factor
};

struct Sums {
  std::array<std::array<double, 10>, 4> moments{};
  std::array<double, 4> length{};
};

// The points of four outlines, scaled.
class Quartet {
 public:
  GX_FOURFOLD explicit Quartet(const Lane* lanes) {
    for (std::size_t k = 0; k < 4; ++k) {
      points_[k] = lanes[k].points.data();
      last_[k] = lanes[k].points.size() - 1;
      longest_ = std::max(longest_, lanes[k].points.size());
      scale_[k] = lanes[k].scale;
    }
  }

  std::size_t longest() const { return longest_; }

  // The points number i; of an outline that has ended, its last.
  GX_FOURFOLD void at(std::size_t i, Corners& corners) const {
    const Pair p = pair(0, i);
    const Pair q = pair(1, i);
    const Pair r = pair(2, i);
    const Pair s = pair(3, i);
    const Four pr = __builtin_shufflevector(p, r, 0, 1, 2, 3);
    const Four qs = __builtin_shufflevector(q, s, 0, 1, 2, 3);
    corners.x = __builtin_shufflevector(pr, qs, 0, 4, 2, 6) * scale_;
    corners.y = __builtin_shufflevector(pr, qs, 1, 5, 3, 7) * scale_;
  }

 private:
  using Pair = gx_Two;

  GX_FOURFOLD Pair pair(std::size_t lane, std::size_t i) const {
    Pair result;
    std::memcpy(&result, points_[lane] + std::min(i, last_[lane]), sizeof result);
    return result;
  }

  const gxVector<2>* points_[4];
  std::size_t last_[4];
  std::size_t longest_ = 0;
  Four scale_ = {};
};

// The lengths of the edges from a to b as the plain roots; false in `plain` where one of them is not, but
// for edges without length.
template <class Truth>
GX_FOURFOLD void addLengths(const Corners& a, const Corners& b, Four& sum, Truth& plain) {
  const Four none = {};
  const Four dx = b.x - a.x;
  const Four dy = b.y - a.y;
  Four square = dx * dx + dy * dy;
  plain &= (square > none + 1e-280) | ((dx == none) & (dy == none));
  gf_TakeRoot(square);
  sum += square;
}

// The end of the points that belong to the same blocks of both sums as point i, 2 or more: those of the
// lengths begin with point 1, those of the moments with point 2.
constexpr std::size_t endOfBlocks(std::size_t i) {
  const std::size_t lengths = ((i - 1) / gx_kLengthBlock + 1) * gx_kLengthBlock + 1;
  const std::size_t moments = ((i - 2) / gx_kMomentBlock + 1) * gx_kMomentBlock + 2;
  return std::min(lengths, moments);
}

// As gx_ringLength and the sums of gx_ringMoments do it for each.
GX_FOURFOLD bool sumUp(const Lane* lanes, Sums& sums) {
  const Quartet four(lanes);
  Corners closing;
  for (std::size_t k = 0; k < 4; ++k) {
    const gxVector<2> last = lanes[k].frame.scaled(lanes[k].points.back());
    closing.x[k] = last.x();
    closing.y[k] = last.y();
  }
  Corners first;
  Corners before;
  four.at(0, first);
  four.at(1, before);
  Four length = {};
  Four lengths = {};
  auto plain = length < length + 1.0;  // true of all
  addLengths(closing, first, length, plain);
  addLengths(first, before, lengths, plain);
  Corners a = {before.x - first.x, before.y - first.y};
  gx_KeptSum<Four> kept[6];
  Four moments[6] = {};
  for (std::size_t i = 2; i < four.longest();) {
    for (const std::size_t end = std::min(endOfBlocks(i), four.longest()); i < end; ++i) {
      Corners here;
      four.at(i, here);
      addLengths(before, here, lengths, plain);
      const Corners b = {here.x - first.x, here.y - first.y};
      gx_addToMoments(a, b, moments);
      before = here;
      a = b;
    }
    if ((i - 1) % gx_kLengthBlock == 0) {
      length += lengths;
      lengths = Four{};
    }
    if ((i - 2) % gx_kMomentBlock == 0) {
      for (std::size_t k = 0; k < 6; ++k) {
        kept[k].add(moments[k]);
        moments[k] = Four{};
      }
    }
  }
  length += lengths;
  for (std::size_t k = 0; k < 6; ++k) kept[k].add(moments[k]);
  for (std::size_t lane = 0; lane < 4; ++lane) {
    for (std::size_t k = 0; k < 6; ++k) sums.moments[lane][k] = kept[k].high[lane] + kept[k].low[lane];
    sums.length[lane] = length[lane];
  }
  return (plain[0] & plain[1] & plain[2] & plain[3]) != 0;
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) bool sumUpByRegistersOfFour(const Lane* lanes, Sums& sums) {
  return sumUp(lanes, sums);
}
#endif

bool sumUpAsBuilt(const Lane* lanes, Sums& sums) {
  return sumUp(lanes, sums);
}

bool sumUpFour(const Lane* lanes, Sums& sums) {
#if defined(__x86_64__)
  static const bool wide = __builtin_cpu_supports("avx2");
  if (wide) return sumUpByRegistersOfFour(lanes, sums);
#endif
  return sumUpAsBuilt(lanes, sums);
}

void finish(const Lane& lane, const std::array<double, 10>& terms, double length,
            gxMeasureColumns& columns) {
  const gx_Frame& frame = lane.frame;
  const gxVector<2> first = frame.scaled(lane.points[0]);
  const gx_MomentSums sums = gx_ringMomentsFrom(terms, {0.0, 0.0}, false);
  if (sums.area == 0.0) {
    measureOne(lane.points, lane.row, columns);
    return;
  }
  gxMeasure m;
  m.status = gxStatus::eOk;
  m.length = frame.lengthFrom(length);
  m.low = {lane.box.lowX, lane.box.lowY};
  m.high = {lane.box.highX, lane.box.highY};
  m.area = frame.areaFrom(sums.area);
  m.centre = frame.unscaled(first + sums.centre);
  const auto fourth = [&frame](double value) { return frame.areaFrom(frame.areaFrom(value)); };
  putRow(m, {fourth(sums.m20), fourth(sums.m11), fourth(sums.m02)}, lane.row, columns);
}

// Four outlines, of which the first `count` are wanted.
void measureFour(const std::array<Lane, 4>& lanes, std::size_t count, gxMeasureColumns& columns) {
  Sums sums;
  const bool within = std::all_of(lanes.begin(), lanes.end(), [](const Lane& lane) {
    return lane.scale >= 0x1p-1000 && lane.scale <= 0x1p1000;
  });
  const bool plain = within && sumUpFour(lanes.data(), sums);
  for (std::size_t k = 0; k < count; ++k) {
    if (plain) {
      finish(lanes[k], sums.moments[k], sums.length[k], columns);
    } else {
      measureOne(lanes[k].points, lanes[k].row, columns);
    }
  }
}

// ---- Outlines of about the same size --------------------------------------------------------------

// The ordinary ones among up to kChunk outlines.
struct Ordinary {
  std::array<Lane, kChunk> lanes;
  std::size_t count = 0;
};

// Sizes of one class go together: below 64 points every size is one, above there are eight to a doubling.
constexpr std::size_t kExactSizes = 64;
constexpr std::size_t kClasses = kExactSizes + 8 * (64 - 6);

std::size_t classOf(std::size_t size) {
  if (size < kExactSizes) return size;
  const auto digits = static_cast<std::size_t>(std::bit_width(size));  // 7 or more
  return kExactSizes + 8 * (digits - 7) + ((size >> (digits - 4)) & 7U);
}

// The lanes by size class, within a class in the order of the rows: counted, not compared.
std::array<std::uint8_t, kChunk> bySize(const Ordinary& ordinary) {
  std::array<std::uint8_t, kClasses> next{};
  std::size_t least = kClasses;
  std::size_t most = 0;
  for (std::size_t i = 0; i < ordinary.count; ++i) {
    const std::size_t its = classOf(ordinary.lanes[i].points.size());
    ++next[its];
    least = std::min(least, its);
    most = std::max(most, its);
  }
  std::uint8_t begin = 0;
  for (std::size_t c = least; c <= most; ++c) {
    const std::uint8_t count = next[c];
    next[c] = begin;
    begin = static_cast<std::uint8_t>(begin + count);
  }
  std::array<std::uint8_t, kChunk> order{};
  for (std::size_t i = 0; i < ordinary.count; ++i) {
    order[next[classOf(ordinary.lanes[i].points.size())]++] = static_cast<std::uint8_t>(i);
  }
  return order;
}

void measureByFours(const Ordinary& ordinary, gxMeasureColumns& columns) {
  const std::array<std::uint8_t, kChunk> order = bySize(ordinary);
  std::array<Lane, 4> lanes;
  for (std::size_t i = 0; i < ordinary.count; i += 4) {
    const std::size_t count = std::min<std::size_t>(4, ordinary.count - i);
    for (std::size_t k = 0; k < 4; ++k) lanes[k] = ordinary.lanes[order[i + std::min(k, count - 1)]];
    measureFour(lanes, count, columns);
  }
}

// Up to kChunk outlines, with room for them.
void measureChunk(const gxOutlines& outlines, std::size_t first, std::size_t last, Ordinary& ordinary,
                  gxMeasureColumns& columns) {
  ordinary.count = 0;
  for (std::size_t k = first; k < last; ++k) {
    const Points points = outlines[k];
    Lane& lane = ordinary.lanes[ordinary.count];
    if (!outlines.valid(k)) {
      putInvalid(k, columns);
    } else if (points.size() < 3 || !gx_finiteBoxOf(points, lane.box) || gx_onOneLine(points)) {
      measureOne(points, k, columns);
    } else {
      lane.points = points;
      lane.row = k;
      lane.frame = gx_Frame(lane.box);
      lane.scale = lane.frame.scaled({1.0, 1.0}).x();
      ++ordinary.count;
    }
  }
  measureByFours(ordinary, columns);
}

}  // namespace

void gxMeasureColumns::resize(std::size_t rows) {
  status.resize(rows, gxStatus::eEmpty);
  for (auto* column : {&area, &length, &moment20, &moment11, &moment02}) column->resize(rows, 0.0);
  for (auto* column : {&centreX, &centreY, &boxXMin, &boxYMin, &boxXMax, &boxYMax}) {
    column->resize(rows, kNaN);
  }
}

gxMeasureColumns gfMeasureMany(const gxOutlines& outlines) {
  gxMeasureColumns columns;
  columns.resize(outlines.size());
  gfMeasureMany(outlines, 0, outlines.size(), columns);
  return columns;
}

void gfMeasureMany(const gxOutlines& outlines, std::size_t first, std::size_t last,
                   gxMeasureColumns& columns) {
  last = std::min(last, outlines.size());
  if (columns.size() < last) {
    throw gxContourDefs::BadParams(L"the columns are shorter than the range");
  }
  Ordinary ordinary;
  for (std::size_t k = first; k < last; k += kChunk) {
    measureChunk(outlines, k, std::min(k + kChunk, last), ordinary, columns);
  }
}
