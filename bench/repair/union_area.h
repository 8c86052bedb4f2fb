/// The area of what outlines cover together, by polyclipping, on a lattice of 1e12 steps across them.
#pragma once

#include <velstd/vector.h>

#include <polyclipping/clipper.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

using Outlines = std::vector<std::vector<gxVector<2>>>;

/// Returns the area of the union of the non-zero fills of each outline; 0 for none.
inline double unionArea(const Outlines& outlines) {
  const auto first =
      std::find_if(outlines.begin(), outlines.end(), [](const auto& o) { return !o.empty(); });
  if (first == outlines.end()) return 0.0;
  const gxVector<2> origin = first->front();
  double size = 0.0;
  for (const auto& outline : outlines)
    for (const gxVector<2>& p : outline)
      size = std::max({size, std::abs(p.x() - origin.x()), std::abs(p.y() - origin.y())});
  if (!(size > 0.0)) return 0.0;
  const double scale = 1e12 / size;
  ClipperLib::Clipper clipper;
  for (const auto& outline : outlines) {
    ClipperLib::Path path;
    for (const gxVector<2>& p : outline) {
      path.emplace_back(std::llround((p.x() - origin.x()) * scale),
                        std::llround((p.y() - origin.y()) * scale));
    }
    ClipperLib::Paths filled;  // each outline by itself, so that none takes another away
    ClipperLib::SimplifyPolygon(path, filled, ClipperLib::pftNonZero);
    clipper.AddPaths(filled, ClipperLib::ptSubject, true);
  }
  ClipperLib::Paths out;
  clipper.Execute(ClipperLib::ctUnion, out, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
  double area = 0.0;
  for (const ClipperLib::Path& p : out) area += ClipperLib::Area(p);
  return std::abs(area) / (scale * scale);
}
