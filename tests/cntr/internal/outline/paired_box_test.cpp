// Both coordinates at once are bounded as gx_Box bounds them one by one, NaN and zeros included.
#include <cntr/internal/outline/paired_box.h>

#include <gtest/gtest.h>

#include <support/random_shapes.h>
#include <bit>
#include <cstdint>
#include <limits>
#include <vector>

namespace {

using V = gxVector<2>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

void expectSameBits(const gx_Box& expected, const gx_Box& got) {
  const auto bits = [](double v) { return std::bit_cast<std::uint64_t>(v); };
  EXPECT_EQ(bits(expected.lowX), bits(got.lowX));
  EXPECT_EQ(bits(expected.lowY), bits(got.lowY));
  EXPECT_EQ(bits(expected.highX), bits(got.highX));
  EXPECT_EQ(bits(expected.highY), bits(got.highY));
}

TEST(PairedBox, IsEmptyAtFirst) {
  expectSameBits(gx_Box(), gx_PairedBox().box());
  EXPECT_TRUE(gx_PairedBox().isFinite());
}

TEST(PairedBox, IsThatOfThePointsOneByOneWithNaNAndBothZerosAmongThem) {
  const std::vector<double> special = {0.0, -0.0, 1.0, -2.0, kNaN, kInfinity, -kInfinity, 1e308};
  RandomShapes random("paired box", 500);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    gx_Box expected;
    gx_PairedBox got;
    for (int i = 0; i < 5; ++i) {
      const auto any = [&] { return special[static_cast<std::size_t>(random.integer(0, 7))]; };
      const double x = any();
      const V p(x, any());
      expected.add(p);
      got.add(p);
    }
    expectSameBits(expected, got.box());
    if (HasFailure()) break;
  }
}

TEST(PairedBox, OfAFirstPointKeepsItsNaN) {
  gx_PairedBox box(V(kNaN, 3.0));
  box.add(V(1.0, 2.0));
  EXPECT_NE(box.box().lowX, box.box().lowX);
  EXPECT_NE(box.box().highX, box.box().highX);
  EXPECT_EQ(box.box().lowY, 2.0);
  EXPECT_EQ(box.box().highY, 3.0);
}

TEST(PairedBox, TakesInAnotherBoxAndOfEqualBoundsKeepsItsOwn) {
  gx_PairedBox box(V(0.0, 1.0));
  gx_PairedBox other(V(-0.0, -4.0));
  other.add(V(-3.0, 2.0));
  box.add(other);
  expectSameBits({-3.0, -4.0, 0.0, 2.0}, box.box());
  gx_PairedBox zero(V(-0.0, 0.0));
  zero.add(gx_PairedBox(V(0.0, -0.0)));
  expectSameBits({-0.0, 0.0, -0.0, 0.0}, zero.box());
}

TEST(PairedBox, NotesWhatIsNotFiniteWithoutWidening) {
  for (const V& p : {V(kNaN, 0.0), V(0.0, kNaN), V(kInfinity, 1.0), V(1.0, -kInfinity)}) {
    gx_PairedBox box;
    box.note(V(1e308, -1e308));
    EXPECT_TRUE(box.isFinite());
    box.note(p);
    box.note(V(2.0, 2.0));
    EXPECT_FALSE(box.isFinite());
    expectSameBits(gx_Box(), box.box());
  }
}

}  // namespace
