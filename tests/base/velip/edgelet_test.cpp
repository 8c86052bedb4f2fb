#include <velip/edgelet.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

using V = gxVector<2>;

TEST(Edgelet, DefaultIsAllZero) {
  const gxEdgelet edgelet;
  EXPECT_EQ(edgelet.position(), V(0, 0));
  EXPECT_EQ(edgelet.magnitude(), 0);
  EXPECT_EQ(edgelet.angle(), gxAngle8());
}

TEST(Edgelet, KeepsWhatItIsGiven) {
  const gxEdgelet edgelet(V(1.5, -2), 65535, gxAngle8(200));
  EXPECT_EQ(edgelet.position(), V(1.5, -2));
  EXPECT_EQ(edgelet.magnitude(), 65535);
  EXPECT_EQ(edgelet.angle().toByte(), 200);
}

TEST(Edgelet, EqualityReadsPositionMagnitudeAndAngle) {
  const gxEdgelet edgelet(V(1, 2), 3, gxAngle8(4));
  EXPECT_EQ(edgelet, gxEdgelet(V(1, 2), 3, gxAngle8(4)));
  EXPECT_NE(edgelet, gxEdgelet(V(1, 3), 3, gxAngle8(4)));
  EXPECT_NE(edgelet, gxEdgelet(V(1, 2), 4, gxAngle8(4)));
  EXPECT_NE(edgelet, gxEdgelet(V(1, 2), 3, gxAngle8(5)));
  const double kNaN = std::numeric_limits<double>::quiet_NaN();
  EXPECT_NE(gxEdgelet(V(kNaN, 2), 3, gxAngle8(4)), gxEdgelet(V(kNaN, 2), 3, gxAngle8(4)));
}

}  // namespace
