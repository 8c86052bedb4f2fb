/// The library's values as arguments of {fmt}: what `<<` prints, with the options of text ("{:>30}").
#pragma once

#include <gxshape/interop/text.h>

#include <fmt/format.h>

/// Formats a value as the text that `gfText` makes of it.
template <class T>
struct gx_FmtText : fmt::formatter<fmt::string_view> {
  /// Writes the text with the width and alignment that were asked for.
  template <class Context>
  auto format(const T& value, Context& context) const {
    return fmt::formatter<fmt::string_view>::format(gfText(value), context);
  }
};

// Each class by name: a contour is a range too, and a form for all would compete with that of ranges.
template <>
struct fmt::formatter<gxVector<2>> : gx_FmtText<gxVector<2>> {};
template <>
struct fmt::formatter<gxPoint> : gx_FmtText<gxPoint> {};
template <>
struct fmt::formatter<gxRadian> : gx_FmtText<gxRadian> {};
template <>
struct fmt::formatter<gxDegree> : gx_FmtText<gxDegree> {};
template <>
struct fmt::formatter<gxMatrix<2>> : gx_FmtText<gxMatrix<2>> {};
template <>
struct fmt::formatter<gxXform<2>> : gx_FmtText<gxXform<2>> {};
template <>
struct fmt::formatter<gxRect> : gx_FmtText<gxRect> {};
template <>
struct fmt::formatter<gxLine> : gx_FmtText<gxLine> {};
template <>
struct fmt::formatter<gxLineSeg> : gx_FmtText<gxLineSeg> {};
template <>
struct fmt::formatter<gxCircle> : gx_FmtText<gxCircle> {};
template <>
struct fmt::formatter<gxEllipse> : gx_FmtText<gxEllipse> {};
template <>
struct fmt::formatter<gxPolygon> : gx_FmtText<gxPolygon> {};
template <>
struct fmt::formatter<gxEdgelet> : gx_FmtText<gxEdgelet> {};
template <>
struct fmt::formatter<gxColor> : gx_FmtText<gxColor> {};
template <>
struct fmt::formatter<gxContour> : gx_FmtText<gxContour> {};
template <>
struct fmt::formatter<gxRegion> : gx_FmtText<gxRegion> {};
template <>
struct fmt::formatter<gxRegionSet> : gx_FmtText<gxRegionSet> {};
template <class T>
struct fmt::formatter<gxPair<T>> : gx_FmtText<gxPair<T>> {};
