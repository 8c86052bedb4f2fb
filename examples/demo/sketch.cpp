// What the scenes draw beside the shapes.  Everything becomes line segments on a tablet.

#include "sketch.h"

#include <algorithm>
#include <cmath>

namespace {

gxPair<double> pairOf(const gxVector<2>& point) {
  return {point.x(), point.y()};
}

}  // namespace

gxXform<2> turned(double radians) {
  const double c = std::cos(radians);
  const double s = std::sin(radians);
  return {gxMatrix<2>(c, -s, s, c), gxVector<2>(0.0, 0.0)};
}

void drawLine(gxUITablet& tablet, const gxVector<2>& from, const gxVector<2>& to,
              const gxColor& colour) {
  tablet.drawLineSeg(pairOf(from), pairOf(to), colour, gxUITablet::eOverlayLayer);
}

void drawCross(gxUITablet& tablet, const gxVector<2>& at, double arm, const gxColor& colour) {
  drawLine(tablet, at - gxVector<2>(arm, 0.0), at + gxVector<2>(arm, 0.0), colour);
  drawLine(tablet, at - gxVector<2>(0.0, arm), at + gxVector<2>(0.0, arm), colour);
}

void PanelTablet::drawLineSeg(const gxPair<double>& from, const gxPair<double>& to,
                              const gxColor& colour, Layers layer) {
  target_.drawLineSeg(pairOf(placement_ * gxVector<2>(from.x(), from.y())),
                      pairOf(placement_ * gxVector<2>(to.x(), to.y())), colour, layer);
}

gxXform<2> fitInto(const gxRect& view, const gxRect& panel, bool flip) {
  const double scale = std::min(panel.size().x() / view.size().x(), panel.size().y() / view.size().y());
  const gxMatrix<2> matrix(scale, 0.0, 0.0, flip ? -scale : scale);
  const gxVector<2> from = view.origin() + view.size() / 2.0;
  const gxVector<2> to = panel.origin() + panel.size() / 2.0;
  return {matrix, to - gxXform<2>(matrix, gxVector<2>()) * from};
}
