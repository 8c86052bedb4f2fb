/// The drawing surface, and the two tablets of this library.
#pragma once

#include <veldispc/color.h>
#include <veldispc/export.h>
#include <velstd/pair.h>

/// A surface to draw on, abstract: shapes hand it line segments.
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
