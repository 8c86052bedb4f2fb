/// Drawing colours.
#pragma once

#include <veldispc/export.h>

#include <string>

/// A colour: red, green, blue, 0 to 255 each.  The default is black.
class VELDISPC_API gxColor {
 public:
  constexpr gxColor() = default;
  /// Makes a colour of its three parts, 0 to 255.
  constexpr gxColor(unsigned char red, unsigned char green, unsigned char blue)
      : red_(red), green_(green), blue_(blue) {}

  /// Return the parts, 0 to 255.
  constexpr unsigned char red() const { return red_; }
  constexpr unsigned char green() const { return green_; }
  constexpr unsigned char blue() const { return blue_; }

  /// Returns the colour as "#rrggbb", lower case.
  std::string hex() const;

  /// Compares all three parts.
  friend constexpr bool operator==(const gxColor&, const gxColor&) = default;

 private:
  unsigned char red_ = 0;
  unsigned char green_ = 0;
  unsigned char blue_ = 0;
};
