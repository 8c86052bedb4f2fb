#include <veldispc/tablet.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

static_assert(std::is_abstract_v<gxUITablet>);
static_assert(std::has_virtual_destructor_v<gxUITablet>);
static_assert(!std::is_constructible_v<gxUITablet, const gxUITablet&>);

// A tablet of the caller's own: it adds up what is drawn.
class LengthTablet : public gxUITablet {
 public:
  void drawLineSeg(const gxPair<double>& from, const gxPair<double>& to, const gxColor&,
                   Layers layer) override {
    length_[layer == eOverlayLayer ? 1 : 0] += to.x() - from.x();
  }
  double length(Layers layer) const { return length_[layer == eOverlayLayer ? 1 : 0]; }

 private:
  double length_[2] = {};
};

TEST(Tablet, CallersMayMakeTheirOwn) {
  LengthTablet own;
  gxUITablet& tablet = own;
  tablet.drawLineSeg({0, 0}, {3, 0}, gxColor(), gxUITablet::eImageLayer);
  tablet.drawLineSeg({0, 0}, {4, 0}, gxColor(), gxUITablet::eOverlayLayer);
  EXPECT_EQ(own.length(gxUITablet::eImageLayer), 3.0);
  EXPECT_EQ(own.length(gxUITablet::eOverlayLayer), 4.0);
}

}  // namespace
