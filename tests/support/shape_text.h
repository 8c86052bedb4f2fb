/// Shapes as short text, and how a failing test prints them.
#pragma once

#include <velstd/circle.h>
#include <velstd/rect.h>
#include <velstd/vector.h>

#include <cstdlib>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

/// Reads points: "0 0, 4 0, 4 3".  Numbers as strtod reads them, so also "nan", "-inf", "1e308" and
/// "0x1p-1074".
inline std::vector<gxVector<2>> pointsOf(const std::string& text) {
  std::vector<gxVector<2>> points;
  const char* at = text.c_str();
  const auto number = [&at, &text] {
    char* end = nullptr;
    const double value = std::strtod(at, &end);
    if (end == at)
      throw std::invalid_argument("pointsOf: no number at \"" + std::string(at) + "\" in " + text);
    at = end;
    return value;
  };
  const auto skip = [&at](char what) {
    while (*at == ' ' || *at == '\n' || *at == what) ++at;
  };
  for (skip(' '); *at != '\0'; skip(',')) {
    const double x = number();
    points.emplace_back(x, number());
  }
  return points;
}

inline void PrintTo(const gxVector<2>& v, std::ostream* out) {
  const auto digits = out->precision(std::numeric_limits<double>::max_digits10);
  *out << '(' << v.x() << ", " << v.y() << ')';
  out->precision(digits);
}

inline void PrintTo(const gxRect& rect, std::ostream* out) {
  PrintTo(rect.origin(), out);
  *out << " to ";
  PrintTo(rect.corner(), out);
}

inline void PrintTo(const gxCircle& circle, std::ostream* out) {
  PrintTo(circle.center(), out);
  *out << " radius ";
  PrintTo(gxVector<2>(circle.radius(), 0), out);
}
