// Camera pictures as whoever wants to do harm would write them: portable maps and PNG.  A picture that is taken
// has as many bytes as its sides say.
#include <cairo/errors.h>
#include <cairo/picture.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const gxPicture picture = gfReadPicture({reinterpret_cast<const char*>(data), size});
    if (picture.width == 0 || picture.height == 0) std::abort();
    if (picture.rgb.size() != 3 * picture.width * picture.height) std::abort();
  } catch (const gxPictureError::BadPicture&) {
    return 0;
  }
  return 0;
}
