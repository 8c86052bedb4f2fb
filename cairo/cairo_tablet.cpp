// What is drawn becomes marks in pixels (internal/mark.h), kept by layer; internal/painter paints them when a
// picture is asked for.
//
//   1. Each point is turned into pixels as it is drawn, from its difference to the view's corner.
//   2. A segment that starts exactly where the last line of its layer ended, with the same look, prolongs
//      that line, so that joints are round and an outline is one closed path.
//   3. What has a coordinate that cannot be shown is skipped and counted.
#include <cairo/cairo_tablet.h>
#include <cairo/internal/painter.h>

#include <cmath>
#include <fstream>

namespace {

constexpr double kLongestSide = 30'000.0;
constexpr double kMostPixels = 1e8;
// As of the SVG tablet; up to there a difference of pixels has a part behind the point.
constexpr double kFarthestPixel = 1e9;

bool isPositive(double value) {
  return value > 0.0 && std::isfinite(value);
}

bool isFinite(const gxVector<2>& p) {
  return std::isfinite(p.x()) && std::isfinite(p.y());
}

void wantPositive(double value, const char* what) {
  if (!isPositive(value))
    throw gxPictureError::BadView(std::string(what) + " must be finite and positive");
}

void wantShare(double value) {
  if (!(value >= 0.0 && value <= 1.0)) throw gxPictureError::BadView("an opacity must be from 0 to 1");
}

// The largest of 1, 2 and 5 times a power of ten that is at most this.
double roundDown(double length) {
  const double ten = std::pow(10.0, std::floor(std::log10(length)));
  for (const double digit : {5.0, 2.0}) {
    if (digit * ten <= length) return digit * ten;
  }
  return ten;
}

bool looksAs(const gx_Mark& mark, const gx_Mark& other) {
  return mark.kind == other.kind && mark.colour == other.colour && mark.opacity == other.opacity &&
         mark.size == other.size && mark.dashes == other.dashes;
}

}  // namespace

gxCairoTablet::gxCairoTablet(const gxRect& view, double pixelWidth, YAxis yAxis, double margin)
    : view_(view), margin_(margin), yAxis_(yAxis) {
  const gxVector<2> size = view.size();
  if (!isFinite(view.origin()) || !isPositive(size.x()) || !isPositive(size.y()))
    throw gxPictureError::BadView("the view must have a finite, positive width and height");
  wantPositive(pixelWidth, "the picture's width");
  if (!(margin >= 0.0) || !std::isfinite(margin))
    throw gxPictureError::BadView("the picture's margin must be finite and not negative");
  scale_ = pixelWidth / size.x();
  const double width = std::ceil(pixelWidth + 2.0 * margin);
  const double height = std::ceil(size.y() * scale_ + 2.0 * margin);
  if (!isPositive(scale_) || !(width <= kLongestSide) || !(height <= kLongestSide) ||
      !(width * height <= kMostPixels)) {
    throw gxPictureError::BadView(
        "the picture would have more than 30000 pixels a side, or 100000000 in all");
  }
  width_ = static_cast<int>(width);
  height_ = static_cast<int>(height);
}

gxCairoTablet::gxCairoTablet(const gxCairoTablet&) = default;
gxCairoTablet& gxCairoTablet::operator=(const gxCairoTablet&) = default;
gxCairoTablet::~gxCairoTablet() = default;

gxPair<double> gxCairoTablet::toPixels(const gxVector<2>& point) const {
  const double x = (point.x() - view_.origin().x()) * scale_;
  const double y = yAxis_ == eYUp ? (view_.corner().y() - point.y()) * scale_
                                  : (point.y() - view_.origin().y()) * scale_;
  return {margin_ + x, margin_ + y};
}

// ---- How the next marks look ------------------------------------------------------------------------

void gxCairoTablet::strokeWidth(double pixels) {
  wantPositive(pixels, "a width of lines");
  strokeWidth_ = pixels;
}

void gxCairoTablet::dashes(double pixels) {
  if (pixels != 0.0) wantPositive(pixels, "a length of dashes");
  dashes_ = pixels;
}

void gxCairoTablet::opacity(double share) {
  wantShare(share);
  opacity_ = share;
}

void gxCairoTablet::layerOpacity(Layers layer, double share) {
  wantShare(share);
  layers_[layer].opacity = share;
}

// ---- Marks --------------------------------------------------------------------------------------------

gx_Mark gxCairoTablet::newMark_(gx_Mark::Kind kind, const gxColor& colour) const {
  gx_Mark mark;
  mark.kind = kind;
  mark.colour = colour;
  mark.opacity = opacity_;
  mark.size = strokeWidth_;
  mark.dashes = dashes_;
  return mark;
}

bool gxCairoTablet::canShow_(const gxPair<double>& pixel) {
  if (std::abs(pixel.x()) <= kFarthestPixel && std::abs(pixel.y()) <= kFarthestPixel) return true;
  ++skipped_;
  return false;
}

void gxCairoTablet::drawLineSeg(const gxPair<double>& from, const gxPair<double>& to,
                                const gxColor& colour, Layers layer) {
  const gxPair<double> start = toPixels({from.x(), from.y()});
  const gxPair<double> end = toPixels({to.x(), to.y()});
  const bool shows = std::abs(start.x()) <= kFarthestPixel && std::abs(start.y()) <= kFarthestPixel;
  if (!shows || !canShow_(end)) {
    if (!shows) ++skipped_;
    return;
  }
  std::vector<gx_Mark>& marks = layers_[layer].marks;
  gx_Mark mark = newMark_(gx_Mark::Kind::eLine, colour);
  if (marks.empty() || !looksAs(marks.back(), mark) || !(marks.back().last == from)) {
    mark.points.push_back(start);
    mark.first = from;
    marks.push_back(std::move(mark));
  }
  marks.back().points.push_back(end);
  marks.back().last = to;
}

void gxCairoTablet::drawLine(std::span<const gxVector<2>> points, bool closed, const gxColor& colour,
                             Layers layer) {
  const auto pair = [](const gxVector<2>& p) { return gxPair<double>(p.x(), p.y()); };
  if (points.size() == 1) return drawLineSeg(pair(points[0]), pair(points[0]), colour, layer);
  for (std::size_t i = 1; i < points.size(); ++i)
    drawLineSeg(pair(points[i - 1]), pair(points[i]), colour, layer);
  if (closed && points.size() > 1) drawLineSeg(pair(points.back()), pair(points.front()), colour, layer);
}

void gxCairoTablet::addRing_(std::span<const gxVector<2>> points, gx_Mark& mark) {
  if (points.size() < 3) return;
  const std::size_t before = mark.points.size();
  for (const auto& p : points) {
    mark.points.push_back(toPixels(p));
    if (canShow_(mark.points.back())) continue;
    mark.points.resize(before);
    return;
  }
  mark.ringEnds.push_back(mark.points.size());
}

void gxCairoTablet::fill(std::span<const std::span<const gxVector<2>>> rings, const gxColor& colour,
                         Layers layer) {
  gx_Mark mark = newMark_(gx_Mark::Kind::eFill, colour);
  for (const auto& ring : rings) addRing_(ring, mark);
  if (!mark.ringEnds.empty()) layers_[layer].marks.push_back(std::move(mark));
}

// Holes nest as deep as memory reaches, so the way down is a list.
void gxCairoTablet::addRings_(const gxRegion& region, gx_Mark& mark) {
  std::vector<const gxRegion*> waiting{&region};
  while (!waiting.empty()) {
    const gxRegion& next = *waiting.back();
    waiting.pop_back();
    addRing_(next.points(), mark);
    for (const auto& hole : next.holes()) {
      if (!hole.isNull()) waiting.push_back(&*hole);
    }
  }
}

void gxCairoTablet::fill(const gxRegion& region, const gxColor& colour, Layers layer) {
  gx_Mark mark = newMark_(gx_Mark::Kind::eFill, colour);
  addRings_(region, mark);
  if (!mark.ringEnds.empty()) layers_[layer].marks.push_back(std::move(mark));
}

void gxCairoTablet::fill(const gxRegionSet& set, const gxColor& colour, Layers layer) {
  for (const auto& region : set.regions()) {
    if (!region.isNull()) fill(*region, colour, layer);
  }
}

void gxCairoTablet::drawDot(const gxVector<2>& at, double pixels, const gxColor& colour, Layers layer) {
  wantPositive(pixels, "a radius of dots");
  gx_Mark mark = newMark_(gx_Mark::Kind::eDot, colour);
  mark.size = pixels;
  mark.points.push_back(toPixels(at));
  if (canShow_(mark.points.back())) layers_[layer].marks.push_back(std::move(mark));
}

void gxCairoTablet::drawText(const gxPair<double>& at, const std::string& utf8, const gxColor& colour,
                             Layers layer, double pixels, Anchor anchor) {
  wantPositive(pixels, "a height of letters");
  gx_Mark mark = newMark_(gx_Mark::Kind::eText, colour);
  mark.size = pixels;
  mark.points.push_back(toPixels({at.x(), at.y()}));
  mark.halo = halo_;
  mark.text = utf8;
  mark.anchor = anchor;
  if (canShow_(mark.points.back())) layers_[layer].marks.push_back(std::move(mark));
}

void gxCairoTablet::drawScaleBar(const std::string& unit, const gxColor& colour, Layers layer) {
  constexpr double kInset = 12.0;
  constexpr double kLetters = 12.0;
  const double length = roundDown(view_.size().x() / 4.0);
  const double low = margin_ + view_.size().y() * scale_ - kInset;
  const gxPair<double> from(margin_ + kInset, low);
  const gxPair<double> to(from.x() + length * scale_, low);
  for (const bool isRim : {true, false}) {
    if (isRim && !halo_) continue;
    gx_Mark bar = newMark_(gx_Mark::Kind::eLine, isRim ? *halo_ : colour);
    bar.size = isRim ? 6.0 : 3.0;
    bar.dashes = 0.0;
    bar.points = {from, to};
    layers_[layer].marks.push_back(std::move(bar));
  }
  char number[32];
  std::snprintf(number, sizeof number, "%.6g", length);
  gx_Mark label = newMark_(gx_Mark::Kind::eText, colour);
  label.size = kLetters;
  label.points = {{(from.x() + to.x()) / 2.0, low - kLetters}};
  label.halo = halo_;
  label.text = unit.empty() ? number : number + (' ' + unit);
  layers_[layer].marks.push_back(std::move(label));
}

void gxCairoTablet::behind(gxPicture picture, const gxRect& where, double opacity) {
  if (!isFinite(where.origin()) || !isPositive(where.size().x()) || !isPositive(where.size().y()))
    throw gxPictureError::BadView(
        "the place of a picture must have a finite, positive width and height");
  wantShare(opacity);
  if (picture.width == 0 || picture.height == 0 ||
      picture.rgb.size() != 3 * picture.width * picture.height)
    throw gxPictureError::BadPicture("no picture: it has not three bytes a pixel");
  const gxPair<double> from = toPixels(where.origin());
  const gxPair<double> to = toPixels(where.corner());
  if (canShow_(from) && canShow_(to)) behind_ = Behind{std::move(picture), from, to, opacity};
}

// ---- The whole ----------------------------------------------------------------------------------------

std::string gxCairoTablet::png() const {
  return gx_Painter(*this).png();
}
std::string gxCairoTablet::svg() const {
  return gx_Painter(*this).svg();
}
std::string gxCairoTablet::pdf() const {
  return gx_Painter(*this).pdf();
}

void gxCairoTablet::save(const std::string& path) const {
  const std::string ending = path.substr((std::min)(path.rfind('.'), path.size()));
  std::string bytes;
  if (ending == ".png")
    bytes = png();
  else if (ending == ".svg")
    bytes = svg();
  else if (ending == ".pdf")
    bytes = pdf();
  else
    throw gxPictureError::BadView("a picture's file ends in .png, .svg or .pdf, not as " + path);
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw gxPictureError::Failed("cannot write " + path);
}
