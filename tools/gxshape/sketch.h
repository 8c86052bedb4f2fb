/// What `draw` paints: layers of a list of records.
#pragma once

#include "options.h"

#include <cairo/cairo_tablet.h>
#include <io/record.h>
#include <overlay/repair.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// The words of --layers, in the order in which they are painted.
const std::vector<std::string>& layerNames();

/// Paints records as the options say.  What shows nothing (no points, coordinates that are not finite) is
/// left out; of no records the picture is empty but for a word.
class Sketch {
 public:
  /// `layers` are of layerNames(); `golden` is the outline for "deviation".
  Sketch(const Options& options, const std::vector<std::string>& layers,
         const std::vector<gxRecord>& records, const gxRecord& golden);

  /// Returns the finished picture.  Throws: UsageError for options that cannot be drawn with.
  gxCairoTablet picture();

 private:
  struct Entry {  // of the legend
    gxColor colour;
    double dashes;
    std::string text;
  };

  bool has(std::string_view layer) const;
  gxRect viewOf() const;
  std::size_t legendColumns() const;
  std::size_t legendRows() const { return (entries_.size() + legendColumns() - 1) / legendColumns(); }
  double legendHeight() const;
  void setUp();
  void paint();
  void fills();
  void outlines();
  void points();
  void boxes();
  void hulls();
  void circles();
  void rectangles();
  void ellipses();
  void axes();
  void ferets();
  void crossings();
  void problems();
  void repaired();
  void repairOf(const gxRecord& record, gxRepairReport& sum);
  // What cannot be done for a record is said below the picture.
  void attempt(const gxRecord& record, const std::function<void()>& layer);
  void deviations();
  void deviationOf(const gxRecord& record, double most);
  void colourBar(double most);
  void ids();
  void legend();

  gxColor colourOf(std::size_t record) const;
  void ringsOf(const gxRecord& record, const gxColor& colour, double width, const gxVector<2>& shift);
  void fillOf(const gxRecord& record, const gxColor& colour, const gxVector<2>& shift);
  void line(const std::vector<gxVector<2>>& points, bool closed, const gxColor& colour,
            double dashes = 0.0);
  void curve(const gxVector<2>& centre, double a, double b, double angle, const gxColor& colour,
             double dashes = 0.0);
  gxPair<double> atPixel(double x, double y) const;
  void tell(const gxColor& colour, const std::string& text, double dashes = 0.0) {
    entries_.push_back({colour, dashes, text});
  }

  const Options& options_;
  const std::vector<std::string>& layers_;
  const std::vector<gxRecord>& records_;
  const gxRecord& golden_;
  std::vector<gxVector<2>> drawn_;  // points of lines, which the view has to hold
  gxRect view_;                     // of one panel, in the plane
  gxVector<2> second_;              // where the second panel lies from the first
  double scale_ = 1.0;
  bool yUp_ = false;
  std::vector<std::string> notes_;  // sentences below the legend
  std::vector<Entry> entries_;
  gxCairoTablet tablet_{gxRect({0, 0}, {1, 1})};
};
