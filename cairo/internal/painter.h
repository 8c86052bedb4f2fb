/// Painting the marks of a tablet.
#pragma once

#include <cairo/cairo_tablet.h>

#include <string>

// The library's own names for its types, so that its headers stay out of ours.
struct _cairo;          // NOLINT(bugprone-reserved-identifier)
struct _cairo_surface;  // NOLINT(bugprone-reserved-identifier)

/// Paints a tablet on a surface of Cairo, of which no header of ours speaks.
class gx_Painter {
 public:
  explicit gx_Painter(const gxCairoTablet& tablet) : tablet_(tablet) {}

  std::string png() const;
  std::string svg() const;
  std::string pdf() const;

 private:
  void paint(_cairo_surface* surface) const;
  void paintBehind(_cairo* on) const;
  void paintMark(_cairo* on, const gx_Mark& mark) const;
  void paintLine(_cairo* on, const gx_Mark& mark) const;
  void paintFill(_cairo* on, const gx_Mark& mark) const;
  static void paintText(_cairo* on, const gx_Mark& mark);

  const gxCairoTablet& tablet_;
};
