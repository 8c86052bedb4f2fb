/// What a tablet keeps of a drawing.
#pragma once

#include <veldispc/color.h>
#include <velstd/pair.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// One thing drawn, in pixels.
struct gx_Mark {
  enum class Kind { eLine, eFill, eDot, eText };

  Kind kind = Kind::eLine;
  gxColor colour;
  double opacity = 1.0;
  double size = 1.0;    ///< width of a line, radius of a dot, height of letters
  double dashes = 0.0;  ///< of a line
  std::vector<gxPair<double>> points;
  std::vector<std::size_t> ringEnds;  ///< of a fill, into points
  gxPair<double> first;               ///< the ends of a line as they were drawn, for the exact tests
  gxPair<double> last;                ///< whether it goes on and whether it is closed
  std::optional<gxColor> halo;
  std::string text;
  int anchor = 0;
};
