// How the picture comes about:
//
//   1. Each segment is turned into pixels as it is drawn.  Pixels, not a transform around shape
//      coordinates: viewers compute in single precision, and a shape of size 10 at 1e6 would jump
//      about; and lines keep their width without any help from the viewer.
//   2. When it starts exactly where the last mark of its layer ended, in the same colour and
//      width, it prolongs that mark; else it begins a new one.
//   3. `str` writes the header, the background, then each layer as a group of paths and labels.
//      A run whose end is its start, exactly, is written as a closed path.
//
// Numbers are written by std::to_chars, which knows no locale.
#include <veldispc/svg_tablet.h>

#include <array>
#include <charconv>
#include <cmath>
#include <fstream>

namespace {

// A picture of more pixels a side is a mistake of the caller, and more than viewers can show.
constexpr double kLongestSide = 1e6;
// Viewers keep coordinates as floats: beyond this, even whole pixels are lost and sums overflow.
constexpr double kFarthestPixel = 1e9;
// Points a line of the file, so that the text can be read and compared.
constexpr std::size_t kPointsPerLine = 8;

bool isPositive(double value) {
  return value > 0.0 && std::isfinite(value);
}

bool canBeShown(const gxPair<double>& pixel) {
  return std::abs(pixel.x()) <= kFarthestPixel && std::abs(pixel.y()) <= kFarthestPixel;
}

// Appends the number to 1/10000, without trailing zeros.
void appendNumber(std::string& out, double value) {
  std::array<char, 64> text;  // 1e9 and four decimals take 16
  const auto written =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 4);
  const char* end = written.ptr;
  while (end[-1] == '0') --end;
  if (end[-1] == '.') --end;
  const std::string number(static_cast<const char*>(text.data()), end);
  out += number == "-0" ? "0" : number;
}

void appendPoint(std::string& out, const gxPair<double>& pixel) {
  appendNumber(out, pixel.x());
  out += ' ';
  appendNumber(out, pixel.y());
}

// Appends an attribute:  name="number"
void appendAttribute(std::string& out, const char* name, double value) {
  out += ' ';
  out += name;
  out += "=\"";
  appendNumber(out, value);
  out += '"';
}

// Appends text so that it reads back as it is.  Control characters have no place in XML, not even
// as references; they become spaces.
void appendEscaped(std::string& out, const std::string& text) {
  for (const char c : text) {
    if (c == '&') {
      out += "&amp;";
    } else if (c == '<') {
      out += "&lt;";
    } else if (c == '>') {
      out += "&gt;";
    } else {
      out += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    }
  }
}

std::wstring messageOf(const std::filesystem::path& path) {
  std::wstring name;
  try {
    name = path.wstring();
  } catch (const std::exception&) {  // the bytes of the path are no text
    for (const char c : path.string()) {
      name += static_cast<unsigned char>(c) < 0x80 ? static_cast<wchar_t>(c) : L'?';
    }
  }
  return L"cannot write " + name;
}

}  // namespace

gxSvgTablet::Errors::Errors(const wchar_t* message) : gxExceptionWithString(message) {}
gxSvgTablet::Errors::Errors(const Errors&) noexcept = default;
gxSvgTablet::Errors& gxSvgTablet::Errors::operator=(const Errors&) noexcept = default;
gxSvgTablet::Errors::~Errors() = default;

gxSvgTablet::BadView::BadView(const wchar_t* message) : gx_ConcreteException(message) {}
gxSvgTablet::BadView::BadView(const BadView&) noexcept = default;
gxSvgTablet::BadView& gxSvgTablet::BadView::operator=(const BadView&) noexcept = default;
gxSvgTablet::BadView::~BadView() = default;

gxSvgTablet::CannotWrite::CannotWrite(const std::filesystem::path& path)
    : gx_ConcreteException(messageOf(path).c_str()) {}
gxSvgTablet::CannotWrite::CannotWrite(const CannotWrite&) noexcept = default;
gxSvgTablet::CannotWrite& gxSvgTablet::CannotWrite::operator=(const CannotWrite&) noexcept = default;
gxSvgTablet::CannotWrite::~CannotWrite() = default;

gxSvgTablet::gxSvgTablet(const gxRect& view, double pixelWidth, YAxis yAxis, double margin)
    : view_(view), margin_(margin), yAxis_(yAxis) {
  const gxVector<2> size = view.size();
  const bool finiteCorner = std::isfinite(view.origin().x()) && std::isfinite(view.origin().y());
  if (!finiteCorner || !isPositive(size.x()) || !isPositive(size.y())) {
    throw BadView(L"the view must have a finite, positive width and height");
  }
  if (!isPositive(pixelWidth)) throw BadView(L"the picture's width must be finite and positive");
  if (!(margin >= 0.0)) throw BadView(L"the picture's margin must not be negative");
  scale_ = pixelWidth / size.x();
  width_ = pixelWidth + 2.0 * margin;
  height_ = size.y() * scale_ + 2.0 * margin;
  if (!isPositive(scale_) || !(width_ <= kLongestSide) || !(height_ <= kLongestSide)) {
    throw BadView(L"the picture would be more than 1000000 pixels wide or high");
  }
}

gxSvgTablet::gxSvgTablet(const gxSvgTablet&) = default;
gxSvgTablet& gxSvgTablet::operator=(const gxSvgTablet&) = default;
gxSvgTablet::~gxSvgTablet() = default;

void gxSvgTablet::strokeWidth(double pixels) {
  if (!isPositive(pixels)) throw BadView(L"a width of lines must be finite and positive");
  strokeWidth_ = pixels;
}

gxPair<double> gxSvgTablet::toPixels_(const gxPair<double>& point) const {
  const double x = (point.x() - view_.origin().x()) * scale_;
  const double y = yAxis_ == eYUp ? (view_.corner().y() - point.y()) * scale_
                                  : (point.y() - view_.origin().y()) * scale_;
  return {margin_ + x, margin_ + y};
}

void gxSvgTablet::drawLineSeg(const gxPair<double>& from, const gxPair<double>& to,
                              const gxColor& colour, Layers layer) {
  const gxPair<double> start = toPixels_(from);
  const gxPair<double> end = toPixels_(to);
  if (!canBeShown(start) || !canBeShown(end)) {
    ++skipped_;
    return;
  }
  std::vector<Mark>& marks = layers_[layer];
  const bool goesOn = !marks.empty() && !marks.back().isText && marks.back().last == from &&
                      marks.back().colour == colour && marks.back().size == strokeWidth_;
  if (!goesOn) marks.push_back({colour, strokeWidth_, {start}, from, from, false, {}});
  marks.back().points.push_back(end);
  marks.back().last = to;
}

void gxSvgTablet::drawText(const gxPair<double>& at, const std::string& utf8, const gxColor& colour,
                           Layers layer, double pixels) {
  if (!isPositive(pixels)) throw BadView(L"a height of letters must be finite and positive");
  const gxPair<double> place = toPixels_(at);
  if (!canBeShown(place)) {
    ++skipped_;
    return;
  }
  layers_[layer].push_back({colour, pixels, {place}, at, at, true, utf8});
}

void gxSvgTablet::appendMark_(std::string& out, const Mark& mark) {
  if (mark.isText) {
    out += "  <text";
    appendAttribute(out, "x", mark.points[0].x());
    appendAttribute(out, "y", mark.points[0].y());
    appendAttribute(out, "font-size", mark.size);
    out += " fill=\"" + mark.colour.hex() + "\" stroke=\"none\">";
    appendEscaped(out, mark.text);
    out += "</text>\n";
    return;
  }
  out += "  <path stroke=\"" + mark.colour.hex() + "\"";
  appendAttribute(out, "stroke-width", mark.size);
  out += " d=\"M";
  appendPoint(out, mark.points[0]);
  const bool closed = mark.points.size() > 2 && mark.first == mark.last;
  const std::size_t end = mark.points.size() - (closed ? 1 : 0);
  for (std::size_t i = 1; i < end; ++i) {
    if (i % kPointsPerLine == 0) out += '\n';
    out += i == 1 ? 'L' : ' ';
    appendPoint(out, mark.points[i]);
  }
  out += closed ? "Z\"/>\n" : "\"/>\n";
}

std::string gxSvgTablet::str() const {
  std::string out = "<svg xmlns=\"http://www.w3.org/2000/svg\"";
  appendAttribute(out, "width", width_);
  appendAttribute(out, "height", height_);
  out += " viewBox=\"0 0 ";
  appendPoint(out, {width_, height_});
  out += "\">\n";
  if (!title_.empty()) {
    out += "<title>";
    appendEscaped(out, title_);
    out += "</title>\n";
  }
  if (background_) out += "<rect width=\"100%\" height=\"100%\" fill=\"" + background_->hex() + "\"/>\n";
  for (const auto& [layer, marks] : layers_) {
    out +=
        "<g id=\"layer" + std::to_string(layer) +
        "\" fill=\"none\" stroke-linecap=\"round\" stroke-linejoin=\"round\" font-family=\"sans-serif\""
        " text-anchor=\"middle\" dominant-baseline=\"central\">\n";
    for (const Mark& mark : marks) appendMark_(out, mark);
    out += "</g>\n";
  }
  out += "</svg>\n";
  return out;
}

void gxSvgTablet::save(const std::filesystem::path& path) const {
  const std::string text = str();
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(text.data(), static_cast<std::streamsize>(text.size()));
  file.close();
  if (!file) throw CannotWrite(path);
}
