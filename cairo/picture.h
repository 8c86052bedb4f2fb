/// Pictures of pixels, to draw on.
#pragma once

#include <cairo/export.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Rows of pixels from the top, three bytes each: red, green, blue.
struct GXSHAPE_CAIRO_API gxPicture {
  std::size_t width = 0;
  std::size_t height = 0;
  std::vector<std::uint8_t> rgb;  ///< 3 · width · height bytes
};

/// Reads a picture: portable grey and colour maps (P2, P3, P5, P6, up to 16 bits a value) and PNG, told by
/// its first bytes.  Transparent pixels are laid on white.
///  - 0 pixels wide or high, more than 30,000 a side or 10^8 in all: BadPicture
/// Throws: gxPictureError::BadPicture with what is wrong.
GXSHAPE_CAIRO_API gxPicture gfReadPicture(std::string_view bytes);
/// Reads a file.  Throws: gxPictureError::Failed where it cannot be read; as above.
GXSHAPE_CAIRO_API gxPicture gfReadPictureFile(const std::string& path);
