// Scene 1: the outlines of 24 coins in a camera image, measured one by one.
//
//  1. A region is made of each outline; its label is the coin's number.
//  2. Three tables say what the library knows about it: measures, frames and extremes, fits.
//  3. The picture shows the same: y points down, as in the image.
//
// The principal axes are those of the ellipse that has the coin's moments when filled.  Most coins are
// nearly round, so that the direction of their axes says little; coin 0 is the least round.

#include "scenes.h"
#include "shapes.h"
#include "sketch.h"

#include <cntr/region.h>
#include <veldispc/svg_tablet.h>

#include <cstdio>
#include <string>

namespace {

// The median length of the edges is for derived classes; a region opens it here.
class MeasuredContour : public gxContour {
 public:
  explicit MeasuredContour(const gxContour& contour) : gxContour(contour) {}
  using gxContour::medianFeatureSize;
};

// The frame in which the ellipse's first axis is the x axis.
gxXform<2> frameOf(const gxEllipse& axes) {
  return turned(-axes.geom().rotation.toDouble());
}

void printMeasures(const std::vector<gxRegion>& coins) {
  std::printf(
      "\nMeasures.  Lengths in pixels; angles in degrees, from the x axis (right) towards the y axis\n");
  std::printf("(down); principal axes: semi-axes of the ellipse with the coin's moments.\n\n");
  std::printf(
      "coin  points    length       area    centre of mass     principal axes    angle  crosses\n");
  std::printf(
      "                  (px)      (px^2)         x        y     long    short   (deg)   itself\n");
  for (const gxRegion& coin : coins) {
    const gxVector<2> centre = coin.centerOfMass(true);
    const gxEllipse axes = principalEllipse(coin);
    std::printf("%4lu  %6zu  %8.2f  %10.2f  %8.2f %8.2f  %7.3f  %7.3f  %6.1f   %s\n", coin.label(),
                coin.points().size(), coin.length(), coin.area(true), centre.x(), centre.y(),
                axes.geom().radii.x(), axes.geom().radii.y(), axes.geom().rotation.toDouble() * kDegrees,
                coin.isSelfIntersecting() ? "yes" : "no");
  }
}

void printFrames(const std::vector<gxRegion>& coins) {
  const gxRadian direction(gxDegree(45.0));
  std::printf(
      "\nFrames and extremes (px).  Upright rectangle; rectangle in the frame of the principal axes;\n");
  std::printf("the vertex farthest towards 45 degrees (down and to the right).\n\n");
  std::printf("coin        upright rectangle           along the axes       farthest vertex\n");
  std::printf("         x        y    width   height    width   height   index        x        y\n");
  for (const gxRegion& coin : coins) {
    const gxRect upright = coin.encloseRect(gxXform<2>::I);
    const gxRect along = coin.encloseRect(frameOf(principalEllipse(coin)));
    const gxVector<2> farthest = coin.extremalVertexPosition(direction);
    std::printf("%4lu %8.2f %8.2f %8.2f %8.2f %8.2f %8.2f   %5ld %8.2f %8.2f\n", coin.label(),
                upright.origin().x(), upright.origin().y(), upright.size().x(), upright.size().y(),
                along.size().x(), along.size().y(), coin.extremalVertexIndex(direction), farthest.x(),
                farthest.y());
  }
}

void printFits(const std::vector<gxRegion>& coins) {
  std::printf(
      "\nFits (px).  Diameter: the farthest pair of vertices; feature size: the median edge length;\n");
  std::printf(
      "fitted ellipse: semi-axes, angle (deg), root mean square distance of the vertices; hull: area\n");
  std::printf("of the convex hull over that of the coin.\n\n");
  std::printf("coin  diameter  feature          fitted ellipse                     hull\n");
  std::printf("                   size      long    short    angle  residual      area\n");
  for (const gxRegion& coin : coins) {
    gxEllipse fitted;
    double residual = 0.0;
    coin.fitEllipse(fitted, residual);
    gxRegion hull;
    coin.convexHull(hull);
    std::printf("%4lu  %8.2f  %7.4f   %7.3f  %7.3f  %7.1f  %8.4f   %7.4f\n", coin.label(),
                coin.diameter(gxContourDefs::eAllPairs), MeasuredContour(coin).medianFeatureSize(),
                fitted.geom().radii.x(), fitted.geom().radii.y(),
                fitted.geom().rotation.toDouble() * kDegrees, residual,
                hull.area(true) / coin.area(true));
  }
}

void drawCoin(gxSvgTablet& tablet, const gxRegion& coin) {
  const gxEllipse axes = principalEllipse(coin);
  const gxXform<2> frame = frameOf(axes);
  tablet.strokeWidth(1.0);
  drawBox(tablet, coin.encloseRect(gxXform<2>::I), gxXform<2>::I, palette::kUprightBox);
  drawBox(tablet, coin.encloseRect(frame), frame, palette::kTurnedBox);
  drawEllipse(tablet, gxEllipse(coin.encloseCircle(gxContourDefs::eAllPairs)), palette::kCircle);
  drawAxes(tablet, axes, palette::kAxes);

  // The hull goes below the outline: it shows where the coin has a dent.
  tablet.strokeWidth(2.0);
  gxRegion hull;
  coin.convexHull(hull);
  hull.draw(tablet, palette::kHull, gxUITablet::eOverlayLayer);
  coin.draw(tablet, palette::kOutline, gxUITablet::eOverlayLayer);
  tablet.strokeWidth(1.2);
  gxEllipse fitted;
  double residual = 0.0;
  coin.fitEllipse(fitted, residual);
  drawEllipse(tablet, fitted, palette::kEllipse);

  const gxVector<2> centre = coin.centerOfMass(true);
  tablet.strokeWidth(2.0);
  drawCross(tablet, centre, 1.2, palette::kCentre);
  tablet.drawText({centre.x() + 5.0, centre.y() + 6.0}, std::to_string(coin.label()), palette::kLabel,
                  gxUITablet::eOverlayLayer, 15.0);
}

// A row of short lines with their meaning below the picture.
void drawLegend(gxSvgTablet& tablet, double top) {
  struct Entry {
    const char* text;
    gxColor colour;
    double width;
  };
  const Entry entries[] = {{"outline", palette::kOutline, 2.2},
                           {"upright rectangle", palette::kUprightBox, 1.5},
                           {"rectangle along the axes", palette::kTurnedBox, 1.5},
                           {"centre, principal axes", palette::kAxes, 1.5},
                           {"fitted ellipse", palette::kEllipse, 1.5},
                           {"convex hull", palette::kHull, 1.5},
                           {"circle on the farthest pair", palette::kCircle, 1.5}};
  double x = 4.0;
  for (const Entry& entry : entries) {
    const double textWidth = 1.85 * static_cast<double>(std::string(entry.text).size());
    tablet.strokeWidth(entry.width);
    drawLine(tablet, {x, top}, {x + 8.0, top}, entry.colour);
    tablet.drawText({x + 10.0 + textWidth / 2.0, top}, entry.text, palette::kLabel,
                    gxUITablet::eOverlayLayer, 14.0);
    x += 10.0 + textWidth + 8.0;
  }
}

void drawCoins(const std::vector<gxRegion>& coins, const std::filesystem::path& path) {
  constexpr double kImageWidth = 384.0;
  constexpr double kImageHeight = 303.0;
  gxSvgTablet tablet(gxRect({0.0, 0.0}, {kImageWidth, kImageHeight + 12.0}), 1536.0, gxSvgTablet::eYDown,
                     12.0);
  tablet.background(palette::kPaper);
  tablet.title("24 coins, measured");
  for (const gxRegion& coin : coins) drawCoin(tablet, coin);
  drawLegend(tablet, kImageHeight + 6.0);
  tablet.save(path);
  std::printf("\nDrawn: %s\n", path.c_str());
}

}  // namespace

void showCoins(const std::filesystem::path& data, const std::filesystem::path& out) {
  std::printf("== 1. Coins\n");
  const std::vector<gxRegion> coins = readCoins(data);
  printMeasures(coins);
  printFrames(coins);
  printFits(coins);
  drawCoins(coins, out / "coins.svg");
}
