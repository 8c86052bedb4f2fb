// The headers beside those of X11 and of Windows, which define macros with everyday names.  The standard
// library comes first: how it fares with such macros is not our concern.
//
// Covers base/velip/pel.h
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cmath>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

// X11
#define Above 0
#define Always 2
#define BadValue 2
#define BadWindow 3
#define Below 1
#define Bool int
#define Complex 0
#define Convex 2
#define CurrentTime 0L
#define False 0
#define None 0L
#define Status int
#define Success 0
#define True 1
#define Unsorted 0
// Windows
#define far
#define IN
#define interface struct
#define max(a, b) (((a) > (b)) ? (a) : (b))
#define min(a, b) (((a) < (b)) ? (a) : (b))
#define OUT
#define small char

#include <gxshape/gxshape.h>

// What was defined is so still.
static_assert(BadWindow == 3);
static_assert(max(1, 2) == 2);

#undef BadWindow
#undef max
#undef min

TEST(ForeignMacros, DoNotReachTheHeadersNorTheHeadersThem) {
  const gxContourT<gxEdgelet> contour;
  gxContourT<gxEdgelet> result;
  EXPECT_THROW(contour.mapT(gxXform<2>::I, result), gxPel::BadWindow);
  const gxContour triangle({{0, 0}, {4, 0}, {4, 3}});
  EXPECT_EQ(triangle.closestVertexIndex({5, 5}), 2);
}
