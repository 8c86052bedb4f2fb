// Drawing edge points: each as a short segment along its edge, across the direction of its gradient.
#include <ch_core/cntrtmpl.h>

namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kHalfLength = 0.5;  // of a drawn edge point, in data space
constexpr gxAngle8 kQuarterTurn(64);

gxVector<2> endOf(const gxEdgelet& edgelet, double degrees) {
  const gxVector<2> arm(kHalfLength, gxRadian(degrees * kRadiansPerDegree));
  return gxXform<2>::I * (edgelet.position() + arm);
}

gxPair<double> asPair(const gxVector<2>& p) {
  return {p.x(), p.y()};
}

}  // namespace

template <class T>
void gxRegionT<T>::draw(gxUITablet& tablet, const gxColor& colour,
                        const gxUITablet::Layers& layer) const {
  for (const T& edgelet : this->data()) {
    const double along = (edgelet.angle() - kQuarterTurn).toByte() * gxAngle8::kDegreesPerUnit;
    tablet.drawLineSeg(asPair(endOf(edgelet, along)), asPair(endOf(edgelet, along + 180.0)), colour,
                       layer);
  }
}

template void gxRegionT<gxEdgelet>::draw(gxUITablet&, const gxColor&, const gxUITablet::Layers&) const;
