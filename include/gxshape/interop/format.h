/// The library's values as arguments of std::format: what `<<` prints, with the options of text ("{:>30}").
///
/// For standard libraries that have <format>; elsewhere including this is an error with these words, and
/// `__cpp_lib_format` of <version> tells beforehand.
#pragma once

#include <version>

#if !defined(__cpp_lib_format) && !(defined(_LIBCPP_VERSION) && __has_include(<format>))
#  error \
      "this standard library has no <format>: include <gxshape/interop/fmt.h> or <gxshape/interop/text.h>"
#endif

#include <gxshape/interop/text.h>

#include <format>
#include <string_view>

/// Formats a value as the text that `gfText` makes of it.
template <class T>
struct gx_FormatText : std::formatter<std::string_view> {
  /// Writes the text with the width and alignment that were asked for.
  template <class Context>
  auto format(const T& value, Context& context) const {
    return std::formatter<std::string_view>::format(gfText(value), context);
  }
};

// NOLINTBEGIN(cert-dcl58-cpp): specializations for types of this library
// Each class by name: a contour is a range too, and a form for all would compete with that of ranges.
template <>
struct std::formatter<gxVector<2>> : gx_FormatText<gxVector<2>> {};
template <>
struct std::formatter<gxPoint> : gx_FormatText<gxPoint> {};
template <>
struct std::formatter<gxRadian> : gx_FormatText<gxRadian> {};
template <>
struct std::formatter<gxDegree> : gx_FormatText<gxDegree> {};
template <>
struct std::formatter<gxMatrix<2>> : gx_FormatText<gxMatrix<2>> {};
template <>
struct std::formatter<gxXform<2>> : gx_FormatText<gxXform<2>> {};
template <>
struct std::formatter<gxRect> : gx_FormatText<gxRect> {};
template <>
struct std::formatter<gxLine> : gx_FormatText<gxLine> {};
template <>
struct std::formatter<gxLineSeg> : gx_FormatText<gxLineSeg> {};
template <>
struct std::formatter<gxCircle> : gx_FormatText<gxCircle> {};
template <>
struct std::formatter<gxEllipse> : gx_FormatText<gxEllipse> {};
template <>
struct std::formatter<gxPolygon> : gx_FormatText<gxPolygon> {};
template <>
struct std::formatter<gxEdgelet> : gx_FormatText<gxEdgelet> {};
template <>
struct std::formatter<gxColor> : gx_FormatText<gxColor> {};
template <>
struct std::formatter<gxContour> : gx_FormatText<gxContour> {};
template <>
struct std::formatter<gxRegion> : gx_FormatText<gxRegion> {};
template <>
struct std::formatter<gxRegionSet> : gx_FormatText<gxRegionSet> {};
template <class T>
struct std::formatter<gxPair<T>> : gx_FormatText<gxPair<T>> {};
// NOLINTEND(cert-dcl58-cpp)
