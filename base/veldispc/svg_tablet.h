/// A tablet that makes a picture file.
#pragma once

#include <veldispc/tablet.h>
#include <velstd/exception.h>
#include <velstd/rect.h>

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// A tablet that collects what is drawn and gives it as an SVG picture, readable in any browser.
///
/// The caller says which rectangle of the plane the picture shows and how wide it is in pixels; the
/// height follows, scales are equal in both directions.  Coordinates are turned into pixels as they
/// are drawn, from differences to the view's corner, so that a small shape far from the origin
/// looks as sharp as one near it, and are written to 1/10000 of a pixel.  Segments outside of the
/// view are kept; the viewer cuts them off.
///
/// Each layer is a group of its own, eImageLayer lowest.  Inside a layer, later drawing covers
/// earlier drawing.  Segments of equal colour and width, each starting exactly where the one
/// before ended, become one path: the outline of a shape is one closed path.  A zero-length segment
/// shows as a dot.  Segments that cannot be shown (a coordinate is NaN or infinite, or more than
/// 1e9 pixels away) are skipped and counted.
///
/// Used by one thread at a time.  The text it writes does not depend on the locale.
class VELDISPC_API gxSvgTablet : public gxUITablet {
 public:
  /// Where the y axis of the shapes points on the screen.
  enum YAxis : int {
    eYDown = 0,  ///< downwards, as in camera images
    eYUp = 1,    ///< upwards, as in drawings
  };

  /// Any exception of this class; never thrown itself.
  class VELDISPC_API Errors : public gxExceptionWithString {
   public:
    Errors(const Errors&) noexcept;
    Errors& operator=(const Errors&) noexcept;
    ~Errors() override;

   protected:
    /// Makes the exception with this message.
    explicit Errors(const wchar_t* message);
  };

  /// The view, the picture's width or a width of lines cannot be drawn with.
  class VELDISPC_API BadView final : public gx_ConcreteException<BadView, Errors, 0x10003101> {
   public:
    /// Makes the exception with this message.
    explicit BadView(const wchar_t* message);
    BadView(const BadView&) noexcept;
    BadView& operator=(const BadView&) noexcept;
    ~BadView() override;
  };

  /// The file could not be written; the message names its path.
  class VELDISPC_API CannotWrite final : public gx_ConcreteException<CannotWrite, Errors, 0x10003102> {
   public:
    /// Makes the exception; the message names the file.
    explicit CannotWrite(const std::filesystem::path& path);
    CannotWrite(const CannotWrite&) noexcept;
    CannotWrite& operator=(const CannotWrite&) noexcept;
    ~CannotWrite() override;
  };

  /// Makes an empty picture that shows `view`, `pixelWidth` pixels wide, with `margin` more pixels
  /// on every side (room for the width of lines that run along the border, and for labels).
  /// Throws: BadView unless the view has a finite positive width and height, pixelWidth is finite
  /// and positive, margin finite and not negative, and both sides of the picture at most 1e6 pixels.
  explicit gxSvgTablet(const gxRect& view, double pixelWidth = 800.0, YAxis yAxis = eYDown,
                       double margin = 0.0);
  gxSvgTablet(const gxSvgTablet&);
  gxSvgTablet& operator=(const gxSvgTablet&);
  ~gxSvgTablet() override;

  /// Returns the width of the picture in pixels, margins included; likewise its height.
  double width() const { return width_; }
  double height() const { return height_; }

  /// Returns the width of lines in pixels; 1 at first.
  double strokeWidth() const { return strokeWidth_; }
  /// Sets the width in pixels of the lines drawn from now on.  Throws: BadView unless it is finite
  /// and positive.
  void strokeWidth(double pixels);

  /// Fills the picture with a colour behind everything; without it, it is transparent.
  void background(const gxColor& colour) { background_ = colour; }

  /// Sets the title, in UTF-8, which viewers show as the window's or the tab's name; empty for none.
  void title(const std::string& utf8) { title_ = utf8; }

  /// Draws the segment.
  void drawLineSeg(const gxPair<double>& from, const gxPair<double>& to, const gxColor& colour,
                   Layers layer) override;

  /// Writes a label, in UTF-8, upright, centred on `at` in both directions, `pixels` high.
  /// Skipped and counted like a segment where `at` cannot be shown.  Throws: BadView unless
  /// `pixels` is finite and positive.
  void drawText(const gxPair<double>& at, const std::string& utf8, const gxColor& colour,
                Layers layer = eOverlayLayer, double pixels = 12.0);

  /// Returns how many segments and labels were skipped because they cannot be shown.
  std::size_t skipped() const { return skipped_; }

  /// Returns the picture as the text of an SVG file, in UTF-8.
  std::string str() const;

  /// Writes the picture to a file, replacing it.  Throws: CannotWrite.
  void save(const std::filesystem::path& path) const;

 private:
  // A run of connected segments, or a label (then `points` holds its place alone).
  struct Mark {
    gxColor colour;
    double size = 1.0;                   // pixels: width of the line, or height of the letters
    std::vector<gxPair<double>> points;  // in pixels
    gxPair<double> first;                // the ends of the run as they were drawn, for the exact
    gxPair<double> last;                 // tests whether it goes on and whether it is closed
    bool isText = false;
    std::string text;
  };

  gxPair<double> toPixels_(const gxPair<double>& point) const;
  static void appendMark_(std::string& out, const Mark& mark);

  gxRect view_;
  double scale_ = 1.0;  // pixels per unit
  double margin_ = 0.0;
  double width_ = 0.0;
  double height_ = 0.0;
  YAxis yAxis_ = eYDown;
  double strokeWidth_ = 1.0;
  std::optional<gxColor> background_;
  std::string title_;
  std::map<int, std::vector<Mark>> layers_;  // by number of the layer, lowest first
  std::size_t skipped_ = 0;
};
