/// Contours, regions and sets as text.
#pragma once

#include <cntr/contour.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <gxshape/interop/rings.h>
#include <veldispc/color.h>
#include <velip/edgelet.h>
#include <velstd/number_text.h>
#include <velstd/pair.h>
#include <velstd/point.h>
#include <velstd/print.h>
#include <velstd/vector.h>

#include <cstddef>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

/// Appends points as "(0 0, 4 0, 4 3, 0 0)", the first one repeated at the end of a closed list; "EMPTY"
/// without points.
inline void gx_appendPoints(const std::vector<gxVector<2>>& points, bool closed, std::string& out) {
  if (points.empty()) {
    out += "EMPTY";
    return;
  }
  const std::size_t count = points.size() + (closed ? 1 : 0);
  for (std::size_t i = 0; i < count; ++i) {
    const gxVector<2>& point = points[i == points.size() ? 0 : i];
    out += i == 0 ? "(" : ", ";
    out += gfNumberText(point.x());
    out += ' ';
    out += gfNumberText(point.y());
  }
  out += ')';
}

/// Appends one part of a polygon: "((0 0, …), (1 1, …))"; "EMPTY" without outline and holes.
inline void gx_appendPart(const gxRegionRings& part, std::string& out) {
  if (part.outline->empty() && part.holes.empty()) {
    out += "EMPTY";
    return;
  }
  out += '(';
  gx_appendPoints(*part.outline, true, out);
  for (const std::vector<gxVector<2>>* hole : part.holes) {
    out += ", ";
    gx_appendPoints(*hole, true, out);
  }
  out += ')';
}

/// Appends parts, as a multi-polygon; "EMPTY" without parts.
inline void gx_appendParts(const std::vector<gxRegionRings>& parts, std::string& out) {
  for (std::size_t i = 0; i < parts.size(); ++i) {
    out += i == 0 ? "(" : ", ";
    gx_appendPart(parts[i], out);
  }
  out += parts.empty() ? "EMPTY" : ")";
}

/// Return a shape as well-known text, every number with the fewest digits that read back as the same
/// double (`gfNumberText`): "LINESTRING (0 0, 4 0, 4 3)" for an open contour, "LINEARRING (0 0, 4 0, 4 3, 0 0)"
/// for a closed one, "POLYGON ((…), (…))" for a region with its holes, "MULTIPOLYGON (((…)), ((…)))" for a
/// set and for a region with islands in its holes.  Labels are left out.
///  - no points: "LINEARRING EMPTY", "POLYGON EMPTY", "MULTIPOLYGON EMPTY"
///  - coordinates that are not finite: NaN, Infinity, -Infinity
/// Throws: gxBadPointer for a null hole or region; BadParams "holes nest too deeply".
inline std::string gfText(const gxContour& contour) {
  std::string out = contour.isClosed() ? "LINEARRING " : "LINESTRING ";
  gx_appendPoints(contour.points(), contour.isClosed(), out);
  return out;
}
inline std::string gfText(const gxRegion& region) {
  const std::vector<gxRegionRings> parts = gfRingsOf(region);
  std::string out = parts.size() > 1 ? "MULTIPOLYGON " : "POLYGON ";
  if (parts.size() > 1) {
    gx_appendParts(parts, out);
  } else {
    gx_appendPart(parts.front(), out);
  }
  return out;
}
inline std::string gfText(const gxRegionSet& set) {
  std::vector<gxRegionRings> parts;
  const std::vector<gxRegionSet::RegionHandle> regions = set.regions();
  for (const gxRegionSet::RegionHandle& region : regions) {
    for (gxRegionRings& part : gfRingsOf(*region)) parts.push_back(std::move(part));
  }
  std::string out = "MULTIPOLYGON ";
  gx_appendParts(parts, out);
  return out;
}

/// Print a shape as `gfText` has it.  Throw: as that.
inline std::ostream& operator<<(std::ostream& out, const gxContour& contour) {
  return out << gfText(contour);
}
inline std::ostream& operator<<(std::ostream& out, const gxRegion& region) {
  return out << gfText(region);
}
inline std::ostream& operator<<(std::ostream& out, const gxRegionSet& set) {
  return out << gfText(set);
}

/// Print a point as "(1, 2.5)", a pair likewise, an edge point as "(1, 2.5), magnitude 30, angle 64/256 turn",
/// a colour as "#rrggbb".
inline std::ostream& operator<<(std::ostream& out, const gxPoint& point) {
  return out << gxVector<2>(point);
}
template <class T>
std::ostream& operator<<(std::ostream& out, const gxPair<T>& pair) {
  return out << '(' << gfNumberText(static_cast<double>(pair.x())) << ", "
             << gfNumberText(static_cast<double>(pair.y())) << ')';
}
inline std::ostream& operator<<(std::ostream& out, const gxEdgelet& edgelet) {
  return out << edgelet.position() << ", magnitude " << std::to_string(edgelet.magnitude()) << ", angle "
             << std::to_string(static_cast<int>(edgelet.angle().toByte())) << "/256 turn";
}
inline std::ostream& operator<<(std::ostream& out, const gxColor& colour) {
  return out << colour.hex();
}

/// Returns what `<<` prints of a value.
template <class T>
std::string gfText(const T& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}
