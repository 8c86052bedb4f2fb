/// Draws what the shapes do not draw themselves: points, axes, frames, circles, ellipses, panels.
#pragma once

#include <veldispc/color.h>
#include <veldispc/tablet.h>
#include <velstd/circle.h>
#include <velstd/ellipse.h>
#include <velstd/rect.h>
#include <velstd/vector.h>
#include <velstd/xform.h>

/// The colours of the pictures; one colour means one thing in all of them.
namespace palette {
inline constexpr gxColor kOutline(31, 41, 55);
inline constexpr gxColor kFaint(203, 208, 216);
inline constexpr gxColor kLabel(75, 85, 99);
inline constexpr gxColor kCentre(220, 38, 38);
inline constexpr gxColor kAxes(220, 38, 38);
inline constexpr gxColor kUprightBox(147, 160, 178);
inline constexpr gxColor kTurnedBox(234, 138, 20);
inline constexpr gxColor kEllipse(22, 163, 74);
inline constexpr gxColor kHull(37, 99, 235);
inline constexpr gxColor kCircle(168, 85, 247);
inline constexpr gxColor kHole(37, 99, 235);
inline constexpr gxColor kDropped(239, 68, 68);
inline constexpr gxColor kPaper(255, 255, 255);
}  // namespace palette

/// Returns the rotation about the coordinate origin by `radians`, from the x axis towards the y axis.
gxXform<2> turned(double radians);

/// Draws a segment on the overlay.
void drawLine(gxUITablet& tablet, const gxVector<2>& from, const gxVector<2>& to, const gxColor& colour);

/// Draws a cross with arms of that length.
void drawCross(gxUITablet& tablet, const gxVector<2>& at, double arm, const gxColor& colour);

/// A tablet that draws on another one, mapped: a panel of a larger picture.
class PanelTablet final : public gxUITablet {
 public:
  /// `target` must outlive the panel.
  PanelTablet(gxUITablet& target, const gxXform<2>& placement)
      : target_(target), placement_(placement) {}

  void drawLineSeg(const gxPair<double>& from, const gxPair<double>& to, const gxColor& colour,
                   Layers layer) override;

 private:
  gxUITablet& target_;
  gxXform<2> placement_;
};

/// Returns the transform that puts `view` into the middle of `panel`, as large as it goes; with
/// `flip`, upside down, for shapes whose y axis points up in a picture whose y axis points down.
gxXform<2> fitInto(const gxRect& view, const gxRect& panel, bool flip);
