/// A tablet that makes pictures: PNG, SVG and PDF.
#pragma once

#include <cairo/errors.h>
#include <cairo/export.h>
#include <cairo/internal/mark.h>
#include <cairo/picture.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <veldispc/tablet.h>
#include <velstd/rect.h>
#include <velstd/vector.h>

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// A tablet on the library Cairo: anti-aliased lines, filled shapes with holes, opacity, text, a picture
/// behind all.  What is drawn is kept, and painted when a picture is asked for; PNG, SVG and PDF of the
/// same tablet show the same.
///
/// The caller says which rectangle of the plane the picture shows and how wide it is in pixels; the height
/// follows, rounded up to whole pixels, scales are equal in both directions.  Coordinates are turned into
/// pixels as they are drawn, from differences to the view's corner.
///
/// Layers are numbers, lowest at the bottom, of which `gxUITablet` names two; each can be hidden or made
/// translucent as a whole.  Inside a layer, later drawing covers earlier drawing.  Segments of equal
/// look, each starting exactly where the one before ended, become one line with joints; a zero-length
/// segment shows as a dot.  What cannot be shown (a coordinate is NaN, infinite, or more than 1e9
/// pixels away) is skipped and counted; what lies outside of the view is cut off before Cairo, whose
/// numbers have 24 bits before the point, sees it.
///
/// Used by one thread at a time.
class GXSHAPE_CAIRO_API gxCairoTablet : public gxUITablet {
 public:
  /// Where the y axis of the shapes points on the screen.
  enum YAxis : int {
    eYDown = 0,  ///< downwards, as in camera images
    eYUp = 1,    ///< upwards, as in drawings and maps
  };
  /// Where a label stands to its place.
  enum Anchor : int {
    eCentred = 0,  ///< with its middle on it
    eRight = 1,    ///< to the right of it, its middle as high
    eLeft = 2,     ///< to the left of it, its middle as high
  };

  /// Makes an empty picture that shows `view`, `pixelWidth` pixels wide, with `margin` more pixels on every
  /// side.  Throws: BadView unless the view has a finite corner and a finite positive width and height,
  /// pixelWidth is finite and positive, margin finite and not negative, and the picture has at most
  /// 30,000 pixels a side and 10^8 in all.
  explicit gxCairoTablet(const gxRect& view, double pixelWidth = 800.0, YAxis yAxis = eYDown,
                         double margin = 0.0);
  gxCairoTablet(const gxCairoTablet&);
  gxCairoTablet& operator=(const gxCairoTablet&);
  ~gxCairoTablet() override;

  /// Return the sides of the picture in whole pixels, margins included.
  int width() const { return width_; }
  int height() const { return height_; }
  /// Returns how many pixels a unit of the plane takes.
  double scale() const { return scale_; }
  /// Returns where a point is in the picture, in pixels from its upper left corner.
  gxPair<double> toPixels(const gxVector<2>& point) const;

  // ---- How the next marks look ----------------------------------------------------------------------

  /// Sets the width of lines in pixels, 1 at first.  Throws: BadView unless it is finite and positive.
  void strokeWidth(double pixels);
  /// Sets the length of dashes and of the gaps between them, in pixels; 0, as at first: whole lines.
  /// Throws: BadView unless it is finite and not negative.
  void dashes(double pixels);
  /// Sets the opacity, from 0 to 1, which is the first.  Throws: BadView for another number.
  void opacity(double share);
  /// Sets the colour of a rim around letters, so that they can be read on a picture; none at first.
  void halo(std::optional<gxColor> colour) { halo_ = colour; }

  // ---- Marks ------------------------------------------------------------------------------------------

  /// Draws a segment.
  void drawLineSeg(const gxPair<double>& from, const gxPair<double>& to, const gxColor& colour,
                   Layers layer) override;
  /// Draws a line through points, where `closed` back to the first.  One point shows as a dot.
  void drawLine(std::span<const gxVector<2>> points, bool closed, const gxColor& colour,
                Layers layer = eOverlayLayer);
  /// Fills what lies within rings an odd number of times.  A ring with a point that cannot be shown, or of
  /// fewer than 3 points, is left out, the first kind counted as skipped.
  void fill(std::span<const std::span<const gxVector<2>>> rings, const gxColor& colour,
            Layers layer = eImageLayer);
  /// Fills a region without its holes (islands in them are filled).
  void fill(const gxRegion& region, const gxColor& colour, Layers layer = eImageLayer);
  /// Fills the regions of a set, each by itself: where two overlap, both show.
  void fill(const gxRegionSet& set, const gxColor& colour, Layers layer = eImageLayer);
  /// Draws a disc of that radius in pixels.  Throws: BadView unless it is finite and positive.
  void drawDot(const gxVector<2>& at, double pixels, const gxColor& colour,
               Layers layer = eOverlayLayer);
  /// Writes a label in UTF-8, upright, `pixels` high.  Bytes that are no UTF-8 show as question marks,
  /// control characters as spaces.  Throws: BadView unless `pixels` is finite and positive.
  void drawText(const gxPair<double>& at, const std::string& utf8, const gxColor& colour,
                Layers layer = eOverlayLayer, double pixels = 12.0, Anchor anchor = eCentred);
  /// Draws a bar of 1, 2 or 5 times a power of ten units, at most a quarter of the view long, in the
  /// lower left corner of the view, with its length and `unit` above it.
  void drawScaleBar(const std::string& unit, const gxColor& colour, Layers layer = eOverlayLayer);

  // ---- The whole --------------------------------------------------------------------------------------

  /// Fills the picture with a colour behind everything; without it, it is transparent (white in PDF).
  void background(const gxColor& colour) { background_ = colour; }
  /// Lays a picture behind all layers, so that it covers `where` of the plane.  The row that is its first lies
  /// at the lowest y: with the y axis down it looks as it is, with the y axis up it is upside down,
  /// since so are the shapes that were found in it.  Throws: BadView unless `where` is finite with
  /// positive sides and the opacity within 0 and 1; BadPicture unless it has as many bytes as pixels.
  void behind(gxPicture picture, const gxRect& where, double opacity = 1.0);
  /// Hides a layer, or shows it again.
  void show(Layers layer, bool visible) { layers_[layer].visible = visible; }
  /// Sets the opacity of a layer as a whole, from 0 to 1.  Throws: BadView for another number.
  void layerOpacity(Layers layer, double share);
  /// Sets the title that PDF viewers show, in UTF-8.
  void title(const std::string& utf8) { title_ = utf8; }

  /// Returns how many segments, rings, dots and labels were skipped because they cannot be shown.
  std::size_t skipped() const { return skipped_; }

  /// Return the picture as the bytes of a file.  Throw: Failed where Cairo does, for want of memory.
  std::string png() const;
  std::string svg() const;
  std::string pdf() const;
  /// Writes a file, whose ending says which kind: .png, .svg or .pdf.
  /// Throws: BadView for another ending; Failed where it cannot be written.
  void save(const std::string& path) const;

 private:
  friend class gx_Painter;

  struct Layer {
    std::vector<gx_Mark> marks;
    double opacity = 1.0;
    bool visible = true;
  };
  struct Behind {
    gxPicture picture;
    gxPair<double> from, to;  // corners in pixels
    double opacity = 1.0;
  };

  gx_Mark newMark_(gx_Mark::Kind kind, const gxColor& colour) const;
  bool canShow_(const gxPair<double>& pixel);
  void addRing_(std::span<const gxVector<2>> points, gx_Mark& mark);
  void addRings_(const gxRegion& region, gx_Mark& mark);

  gxRect view_;
  double scale_ = 1.0;
  double margin_ = 0.0;
  int width_ = 0;
  int height_ = 0;
  YAxis yAxis_ = eYDown;
  double strokeWidth_ = 1.0;
  double dashes_ = 0.0;
  double opacity_ = 1.0;
  std::optional<gxColor> halo_;
  std::optional<gxColor> background_;
  std::optional<Behind> behind_;
  std::string title_;
  std::map<int, Layer> layers_;  // by number, lowest first
  std::size_t skipped_ = 0;
};
