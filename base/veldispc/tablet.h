/// The drawing surface.
#pragma once

#include <veldispc/color.h>
#include <veldispc/export.h>
#include <velstd/pair.h>

/// A surface to draw on, abstract: shapes hand it line segments, one at a time, in the order of
/// their edges.  `gxRecordingTablet` remembers them, `gxSvgTablet` makes a picture of them.
///
/// A tablet is asked to draw whatever a shape holds; what it does with zero-length segments and
/// with coordinates that are not finite is its own affair, and must not be a crash.
class VELDISPC_API gxUITablet {
 public:
  /// Which layer of the display a segment goes to.
  enum Layers : int {
    eImageLayer = 0,    ///< together with the picture
    eOverlayLayer = 1,  ///< above the picture
  };

  virtual ~gxUITablet();

  /// Draws one segment.
  virtual void drawLineSeg(const gxPair<double>& from, const gxPair<double>& to, const gxColor& colour,
                           Layers layer) = 0;

 protected:
  gxUITablet() = default;
  gxUITablet(const gxUITablet&) = default;
  gxUITablet& operator=(const gxUITablet&) = default;
};
