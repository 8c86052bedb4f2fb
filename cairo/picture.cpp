// Reading pictures.  Portable maps are read here: a head of words, with comments from # to the end of the
// line, then values as text (P2, P3) or as one or two bytes, high one first (P5, P6).  The size of a PNG is
// looked at before the drawing library may take memory for it.
#include <cairo/errors.h>
#include <cairo/picture.h>

#include <cairo.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>

namespace {

constexpr std::size_t kLongestSide = 30'000;
constexpr std::size_t kMostPixels = 100'000'000;
constexpr std::string_view kPngMark = "\x89PNG\r\n\x1a\n";

[[noreturn]] void bad(const std::string& cause) {
  throw gxPictureError::BadPicture("no picture: " + cause);
}

void wantSize(std::size_t width, std::size_t height) {
  if (width == 0 || height == 0) bad("it has no pixels");
  if (width > kLongestSide || height > kLongestSide || width * height > kMostPixels) {
    bad(std::to_string(width) + " by " + std::to_string(height) +
        " pixels are too many: 30000 a side, 100000000 in all");
  }
}

bool isSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// ---- Portable maps ------------------------------------------------------------------------------------

class MapReader {
 public:
  explicit MapReader(std::string_view bytes) : bytes_(bytes) {}

  gxPicture read() {
    const char kind = bytes_[1];
    at_ = 2;
    const bool colour = kind == '3' || kind == '6';
    const bool asText = kind == '2' || kind == '3';
    gxPicture picture;
    picture.width = number("width");
    picture.height = number("height");
    most_ = number("greatest value");
    wantSize(picture.width, picture.height);
    if (most_ == 0 || most_ > 65535) bad("a greatest value of " + std::to_string(most_));
    if (!asText) ++at_;  // the one space behind the head
    const std::size_t pixels = picture.width * picture.height;
    const std::size_t wide = asText || most_ < 256 ? 1 : 2;
    const std::size_t values = pixels * (colour ? 3 : 1);
    // Before memory is taken: a value takes a byte at least, as text two with the space before it.
    const std::size_t left = bytes_.size() - (std::min)(at_, bytes_.size());
    if (left < values * (asText ? 2 : wide)) bad("it ends within its pixels");
    picture.rgb.reserve(3 * pixels);
    for (std::size_t i = 0; i < values; ++i) {
      const std::uint8_t value = scaled(asText ? number("value") : binary(wide));
      picture.rgb.insert(picture.rgb.end(), colour ? 1 : 3, value);
    }
    return picture;
  }

 private:
  std::size_t number(const char* what) {
    while (at_ < bytes_.size() && (isSpace(bytes_[at_]) || bytes_[at_] == '#')) {
      if (bytes_[at_] == '#') at_ = (std::min)(bytes_.find('\n', at_), bytes_.size() - 1);
      ++at_;
    }
    const std::size_t first = at_;
    std::size_t value = 0;
    for (; at_ < bytes_.size() && bytes_[at_] >= '0' && bytes_[at_] <= '9' && value < 1'000'000; ++at_)
      value = 10 * value + static_cast<std::size_t>(bytes_[at_] - '0');
    if (at_ == first) bad(std::string(what) + " expected at byte " + std::to_string(at_));
    return value;
  }

  std::size_t binary(std::size_t wide) {
    std::size_t value = 0;
    for (std::size_t i = 0; i < wide; ++i)
      value = 256 * value + static_cast<unsigned char>(bytes_[at_++]);
    return value;
  }

  std::uint8_t scaled(std::size_t value) const {
    return static_cast<std::uint8_t>(((std::min)(value, most_) * 255 + most_ / 2) / most_);
  }

  std::string_view bytes_;
  std::size_t at_ = 0;
  std::size_t most_ = 255;
};

// ---- PNG ----------------------------------------------------------------------------------------------

std::size_t bigEndian(std::string_view bytes, std::size_t at) {
  std::size_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = 256 * value + static_cast<unsigned char>(bytes[at + i]);
  return value;
}

cairo_status_t readOn(void* rest, unsigned char* data, unsigned int length) {
  auto& left = *static_cast<std::string_view*>(rest);
  if (left.size() < length) return CAIRO_STATUS_READ_ERROR;
  std::memcpy(data, left.data(), length);
  left.remove_prefix(length);
  return CAIRO_STATUS_SUCCESS;
}

// Pixels hold colours that are multiplied by their opacity already.
void appendOnWhite(std::uint32_t pixel, bool hasAlpha, std::vector<std::uint8_t>& rgb) {
  const std::uint32_t white = hasAlpha ? 255U - (pixel >> 24U) : 0U;
  for (const unsigned shift : {16U, 8U, 0U})
    rgb.push_back(static_cast<std::uint8_t>((std::min)(((pixel >> shift) & 255U) + white, 255U)));
}

gxPicture readPng(std::string_view bytes) {
  if (bytes.size() < 24) bad("it ends within its head");
  wantSize(bigEndian(bytes, 16), bigEndian(bytes, 20));
  std::string_view rest = bytes;
  const std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface(
      cairo_image_surface_create_from_png_stream(readOn, &rest), cairo_surface_destroy);
  if (const auto status = cairo_surface_status(surface.get()); status != CAIRO_STATUS_SUCCESS)
    bad(cairo_status_to_string(status));
  const cairo_format_t format = cairo_image_surface_get_format(surface.get());
  if (format != CAIRO_FORMAT_ARGB32 && format != CAIRO_FORMAT_RGB24) bad("a PNG of an unusual kind");
  gxPicture picture;
  picture.width = static_cast<std::size_t>(cairo_image_surface_get_width(surface.get()));
  picture.height = static_cast<std::size_t>(cairo_image_surface_get_height(surface.get()));
  picture.rgb.reserve(3 * picture.width * picture.height);
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
  const unsigned char* const data = cairo_image_surface_get_data(surface.get());
  for (std::size_t y = 0; y < picture.height; ++y) {
    for (std::size_t x = 0; x < picture.width; ++x) {
      std::uint32_t pixel = 0;
      std::memcpy(&pixel, data + y * stride + 4 * x, 4);
      appendOnWhite(pixel, format == CAIRO_FORMAT_ARGB32, picture.rgb);
    }
  }
  return picture;
}

}  // namespace

gxPicture gfReadPicture(std::string_view bytes) {
  if (bytes.starts_with(kPngMark)) return readPng(bytes);
  const bool isMap = bytes.size() > 2 && bytes[0] == 'P' && isSpace(bytes[2]) &&
                     std::string_view("2356").find(bytes[1]) != std::string_view::npos;
  if (!isMap) bad("neither PNG nor a portable map (P2, P3, P5, P6)");
  return MapReader(bytes).read();
}

gxPicture gfReadPictureFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  if (in) bytes << in.rdbuf();
  if (!in || in.bad()) throw gxPictureError::Failed("cannot read " + path);
  return gfReadPicture(bytes.str());
}
