/// Comparison bit for bit, and of what is thrown: the matcher of the slow truth.
#pragma once

#include <gtest/gtest.h>
#include <support/shape_text.h>
#include <support/slow_truth_region.h>
#include <velstd/ellipse.h>
#include <velstd/matrix.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <exception>
#include <string>
#include <vector>

// ---- The same bits ------------------------------------------------------------------------------

/// Any NaN is the same as any other: its sign and payload are the compiler's.
inline bool sameBits(double a, double b) {
  if (std::isnan(a) && std::isnan(b)) return true;
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}
inline bool sameBits(long a, long b) {
  return a == b;
}
inline bool sameBits(int a, int b) {
  return a == b;
}
inline bool sameBits(bool a, bool b) {
  return a == b;
}
inline bool sameBits(const gxVector<2>& a, const gxVector<2>& b) {
  return sameBits(a.x(), b.x()) && sameBits(a.y(), b.y());
}
inline bool sameBits(const gxLineSeg& a, const gxLineSeg& b) {
  return sameBits(a.p1(), b.p1()) && sameBits(a.p2(), b.p2());
}
inline bool sameBits(const gxRect& a, const gxRect& b) {
  return sameBits(a.origin(), b.origin()) && sameBits(a.corner(), b.corner()) &&
         sameBits(a.size(), b.size());
}
inline bool sameBits(const gxCircle& a, const gxCircle& b) {
  return sameBits(a.center(), b.center()) && sameBits(a.radius(), b.radius());
}
inline bool sameBits(const gxMatrix<2>& a, const gxMatrix<2>& b) {
  return sameBits(a.m00(), b.m00()) && sameBits(a.m01(), b.m01()) && sameBits(a.m10(), b.m10()) &&
         sameBits(a.m11(), b.m11());
}
inline bool sameBits(const gxEllipse& a, const gxEllipse& b) {
  return sameBits(a.geom().center, b.geom().center) && sameBits(a.geom().radii, b.geom().radii) &&
         sameBits(a.geom().rotation.toDouble(), b.geom().rotation.toDouble());
}
template <class T>
bool sameBits(const std::vector<T>& a, const std::vector<T>& b);
namespace slow {
inline bool sameBits(const Hits& a, const Hits& b) {
  return ::sameBits(a.points, b.points) && a.edges == b.edges;
}
inline bool sameBits(const Moments& a, const Moments& b) {
  return ::sameBits(a.area, b.area) && ::sameBits(a.center, b.center) && ::sameBits(a.matrix, b.matrix);
}
inline bool sameBits(const Region& a, const Region& b) {
  if (!::sameBits(a.outline, b.outline) || a.holes.size() != b.holes.size()) return false;
  for (std::size_t i = 0; i < a.holes.size(); ++i) {
    if (!sameBits(a.holes[i], b.holes[i])) return false;
  }
  return true;
}
}  // namespace slow
template <class T>
bool sameBits(const std::vector<T>& a, const std::vector<T>& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!sameBits(static_cast<const T&>(a[i]), static_cast<const T&>(b[i]))) return false;
  }
  return true;
}

// ---- How they print -----------------------------------------------------------------------------

inline void PrintTo(const gxMatrix<2>& m, std::ostream* out) {
  *out << testing::PrintToString(gxVector<2>(m.m00(), m.m01())) << ' '
       << testing::PrintToString(gxVector<2>(m.m10(), m.m11()));
}
inline void PrintTo(const gxEllipse& ellipse, std::ostream* out) {
  *out << testing::PrintToString(ellipse.geom().center) << " radii "
       << testing::PrintToString(ellipse.geom().radii) << " rotation "
       << ellipse.geom().rotation.toDouble();
}
inline void PrintTo(const gxLineSeg& seg, std::ostream* out) {
  *out << testing::PrintToString(seg.p1()) << " to " << testing::PrintToString(seg.p2());
}

namespace slow {
inline void PrintTo(const Hits& hits, std::ostream* out) {
  *out << testing::PrintToString(hits.points) << " on edges " << testing::PrintToString(hits.edges);
}
inline void PrintTo(const Moments& m, std::ostream* out) {
  *out << "area " << testing::PrintToString(m.area) << ", center " << testing::PrintToString(m.center)
       << ", matrix " << testing::PrintToString(m.matrix);
}
inline void PrintTo(const Region& region, std::ostream* out) {
  *out << testing::PrintToString(region.outline) << ", holes " << testing::PrintToString(region.holes);
}
}  // namespace slow

// ---- What came of it ----------------------------------------------------------------------------

/// What a call gave: its value, or what it threw (class name and message).
template <class T>
struct Outcome {
  T value{};
  std::string thrown;
};

template <class Call>
auto outcomeOf(const Call& call) {
  Outcome<std::decay_t<decltype(call())>> outcome;
  try {
    outcome.value = call();
  } catch (const std::exception& error) {
    outcome.thrown = error.what();
  }
  return outcome;
}

/// Succeeds when the library and the truth give what `same` takes as the same, or throw the same.
template <class Library, class Truth, class Same>
testing::AssertionResult agree(const Library& library, const Truth& truth, const Same& same) {
  const auto got = outcomeOf(library);
  const auto want = outcomeOf(truth);
  static_assert(std::is_same_v<decltype(got), decltype(want)>);
  if (got.thrown != want.thrown) {
    return testing::AssertionFailure()
           << "throws \"" << got.thrown << "\" instead of \"" << want.thrown << '"';
  }
  if (!want.thrown.empty() || same(got.value, want.value)) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "gives  " << testing::PrintToString(got.value) << "\ninstead of "
                                     << testing::PrintToString(want.value);
}

/// Succeeds when the library and the truth give the same bits, or throw the same.
template <class Library, class Truth>
testing::AssertionResult agree(const Library& library, const Truth& truth) {
  return agree(library, truth, [](const auto& got, const auto& want) { return sameBits(got, want); });
}
