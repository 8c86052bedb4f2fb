// Area and centre of many outlines, four edges of one outline side by side.
//
//  1. Every edge that does not touch the first point makes a triangle with it; twice its area and that
//     times three times its centre are added up, four sums each over every fourth edge.  After 256 edges
//     the four are put together and kept with what rounding takes from them.  The last edges are filled up
//     to four by edges of no length, which add nothing.
//  2. Nothing is scaled and nobody looks for a box, which would take as long as the sums: where the sums
//     are so large or small that scaling would matter, or not finite, `gfMeasure` answers instead.  It does
//     so too where most of the triangles cancel, since the order of additions would show there, and for
//     outlines on one line.
// (Four outlines side by side, as for all measures, keep the order of additions and with it the bits of
// `gfMeasure`, but need the box, the scale and the sizes in order: twice the time for these three numbers.
// Eight edges side by side, in registers of 512 bits, take half as long again at 16 points, as long at 64, and
// less only from about 128 on; most outlines of a line have fewer.)
#include <cntr/contourdefs.h>
#include <cntr/internal/outline/four.h>
#include <gauge/internal/edge_terms.h>
#include <gauge/internal/frame.h>
#include <gauge/measure.h>
#include <gauge/measure_many.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace {

constexpr double kNaN = gxMeasure::kNaN;

using Points = std::span<const gxVector<2>>;
using Four = gx_Four;
using Ends = gx_Corner<Four>;

// So many edges are added plainly, a quarter of them in each sum.
constexpr std::size_t kBlock = 256;

// Sums of doubled areas within these are far from both ends of the range, and so is all that they are
// made of, but for terms that are too small to count.
constexpr double kLeastSum = 1e-120;
constexpr double kLargestSum = 1e120;

// The share of all triangles, by magnitude, that must be left when they are added up.
constexpr double kLeastShare = 0.01;

struct Sums {
  Four area = {};
  Four x = {};
  Four y = {};
  Four all = {};  // the areas by magnitude

  GX_FOURFOLD void add(const Ends& a, const Ends& b) {
    const Four none = {};
    const Four w = a.x * b.y - b.x * a.y;
    area += w;
    x += w * (a.x + b.x);
    y += w * (a.y + b.y);
    all += w < none ? -w : w;
  }
};

// The same of all blocks.
struct Whole {
  gx_KeptSum<double> area;
  gx_KeptSum<double> x;
  gx_KeptSum<double> y;
  double all = 0.0;

  GX_FOURFOLD void add(const Sums& sums) {
    area.add(gf_Total(sums.area));
    x.add(gf_Total(sums.x));
    y.add(gf_Total(sums.y));
    all += gf_Total(sums.all);
  }
};

GX_FOURFOLD void addFourEdges(const gxVector<2>* p, const Four& from, Sums& sums) {
  Ends a;
  Ends b;
  gx_seeFour(p, from, a.x, a.y);
  gx_seeFour(p + 1, from, b.x, b.y);
  sums.add(a, b);
}

// Adds up the edges of at least three points.
GX_FOURFOLD void sumUp(const Points& points, Whole& whole) {
  const gxVector<2> first = points.front();
  const Four from = {first.x(), first.y(), first.x(), first.y()};
  std::size_t i = 1;
  while (i + 1 < points.size()) {
    Sums sums;
    const std::size_t end = std::min(i + kBlock, points.size() - 1);
    for (; i + 4 <= end; i += 4) addFourEdges(&points[i], from, sums);
    if (i < end) {
      std::array<gxVector<2>, 5> rest;
      for (std::size_t k = 0; k < rest.size(); ++k) rest[k] = points[std::min(i + k, end)];
      addFourEdges(rest.data(), from, sums);
      i = end;
    }
    whole.add(sums);
  }
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) void sumUpByRegistersOfFour(const Points& points, Whole& whole) {
  sumUp(points, whole);
}
#endif

void sumUpAsBuilt(const Points& points, Whole& whole) {
  sumUp(points, whole);
}

void sumUpByWidest(const Points& points, Whole& whole) {
#if defined(__x86_64__)
  static const bool wide = __builtin_cpu_supports("avx2");
  if (wide) return sumUpByRegistersOfFour(points, whole);
#endif
  sumUpAsBuilt(points, whole);
}

// Whether the first three points already show, beyond rounding, that not all lie on one line (J. Shewchuk's
// bound for the plain cross product of differences, rounded up; it holds where nothing vanishes).
bool isPlainlyNoLine(const Points& points) {
  const gxVector<2> a = points[1] - points[0];
  const gxVector<2> b = points[2] - points[0];
  const double p = a.x() * b.y();
  const double q = a.y() * b.x();
  const double size = std::abs(p) + std::abs(q);
  return size > 1e-200 && std::abs(p - q) > 1e-15 * size;
}

void putRow(gxStatus status, double area, const gxVector<2>& centre, std::size_t k, gxAreaColumns& c) {
  c.status[k] = status;
  c.area[k] = area;
  c.centreX[k] = centre.x();
  c.centreY[k] = centre.y();
}

// Answers where the plain sums do; false where they do not.
bool putPlainRow(const Points& points, std::size_t k, gxAreaColumns& columns) {
  if (points.size() < 3) return false;
  Whole whole;
  sumUpByWidest(points, whole);
  const double sum = whole.area.high + whole.area.low;
  const double size = std::abs(sum);
  // What is not finite fails these comparisons.
  if (!(size >= kLeastSum && whole.all <= kLargestSum && size >= kLeastShare * whole.all)) return false;
  const gxVector<2> centre((whole.x.high + whole.x.low) / (3.0 * sum),
                           (whole.y.high + whole.y.low) / (3.0 * sum));
  if (!(std::abs(centre.x()) <= kLargestSum && std::abs(centre.y()) <= kLargestSum)) return false;
  if (!isPlainlyNoLine(points) && gx_onOneLine(points)) return false;
  putRow(gxStatus::eOk, size / 2.0, points.front() + centre, k, columns);
  return true;
}

}  // namespace

void gxAreaColumns::resize(std::size_t rows) {
  status.resize(rows, gxStatus::eEmpty);
  area.resize(rows, 0.0);
  centreX.resize(rows, kNaN);
  centreY.resize(rows, kNaN);
}

gxAreaColumns gfAreasMany(const gxOutlines& outlines) {
  gxAreaColumns columns;
  columns.resize(outlines.size());
  gfAreasMany(outlines, 0, outlines.size(), columns);
  return columns;
}

void gfAreasMany(const gxOutlines& outlines, std::size_t first, std::size_t last,
                 gxAreaColumns& columns) {
  last = std::min(last, outlines.size());
  if (columns.size() < last) {
    throw gxContourDefs::BadParams(L"the columns are shorter than the range");
  }
  for (std::size_t k = first; k < last; ++k) {
    const Points points = outlines[k];
    if (!outlines.valid(k)) {
      putRow(gxStatus::eBadArgument, kNaN, {kNaN, kNaN}, k, columns);
    } else if (!putPlainRow(points, k, columns)) {
      const gxMeasure m = gfMeasure(points);
      putRow(m.status, m.area, m.centre, k, columns);
    }
  }
}
