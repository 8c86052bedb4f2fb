// The frame of a picture: view, scale, legend, and what layers draw with.
//
//   1. The view is the box of all finite points, widened where it is too narrow to draw.  With the layer
//      "repair" there are two panels beside each other, before and after.
//   2. The longer side of the panels takes --size pixels; below them is room for the legend.
//   3. Layers are painted from the largest areas to the smallest marks, so that none hides another, whatever the
//      order of the words.
#include "sketch.h"

#include "command.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace {

constexpr double kMargin = 16.0;
constexpr double kRow = 20.0;
constexpr double kLetters = 13.0;
constexpr gxColor kInk(55, 65, 81);
constexpr gxColor kPaper(255, 255, 255);
// Eight colours that stay apart for the colour-blind too (after M. Okabe and K. Ito, "Color universal design",
// 2008), the yellow darkened for white paper.
constexpr std::array<gxColor, 8> kColours = {{{0, 114, 178},
                                              {230, 159, 0},
                                              {0, 158, 115},
                                              {204, 121, 167},
                                              {213, 94, 0},
                                              {86, 180, 233},
                                              {170, 150, 20},
                                              {90, 90, 110}}};

gxColor darker(const gxColor& c) {
  const auto part = [](unsigned char v) { return static_cast<unsigned char>(v * 6 / 10); };
  return {part(c.red()), part(c.green()), part(c.blue())};
}

// Coordinates beyond this have no differences that are finite.
constexpr double kFarthest = 1e150;

void stretch(std::span<const gxVector<2>> points, gxVector<2>& low, gxVector<2>& high) {
  for (const auto& p : points) {
    if (!(std::abs(p.x()) < kFarthest) || !(std::abs(p.y()) < kFarthest)) continue;
    low = {(std::min)(low.x(), p.x()), (std::min)(low.y(), p.y())};
    high = {(std::max)(high.x(), p.x()), (std::max)(high.y(), p.y())};
  }
}

// A side of the view that differs from the middle in the numbers of the machine, and is no sliver.
double sideOf(double own, double other, double at) {
  constexpr double kNarrowest = 1.0 / 12.0;
  const double least = (std::max)(other * kNarrowest, std::abs(at) * 1e-12);
  return (std::max)({own, least, own == 0.0 && other == 0.0 && at == 0.0 ? 1.0 : 0.0});
}

}  // namespace

const std::vector<std::string>& layerNames() {
  static const std::vector<std::string> names = {
      "fill",      "repair",    "deviation", "outline", "points", "box",       "hull",     "circle",
      "inscribed", "rectangle", "ellipse",   "axes",    "feret",  "crossings", "problems", "ids"};
  return names;
}

Sketch::Sketch(const Options& options, const std::vector<std::string>& layers,
               const std::vector<gxRecord>& records, const gxRecord& golden)
    : options_(options), layers_(layers), records_(records), golden_(golden), yUp_(options.y == "up") {}

bool Sketch::has(std::string_view layer) const {
  return std::find(layers_.begin(), layers_.end(), layer) != layers_.end();
}

gxRect Sketch::viewOf() const {
  if (!options_.view.empty()) {
    const auto n = numbersOf("--view", options_.view, 4);
    return {{n[0], n[1]}, {n[2] - n[0], n[3] - n[1]}};
  }
  constexpr double kInf = std::numeric_limits<double>::infinity();
  gxVector<2> low(kInf, kInf);
  gxVector<2> high(-kInf, -kInf);
  for (const auto& record : records_) stretch(record.points, low, high);
  if (has("deviation")) stretch(golden_.points, low, high);
  // With two panels the lines of the second one lie elsewhere.
  if (!has("repair")) stretch(drawn_, low, high);
  if (!(low.x() <= high.x())) return {{0.0, 0.0}, {1.0, 1.0}};
  const gxVector<2> middle = low / 2.0 + high / 2.0;
  const gxVector<2> size = high - low;
  const gxVector<2> wanted(sideOf(size.x(), size.y(), middle.x()),
                           sideOf(size.y(), size.x(), middle.y()));
  return {middle - wanted / 2.0, wanted};
}

gxPair<double> Sketch::atPixel(double x, double y) const {
  const double across = view_.origin().x() + (x - kMargin) / scale_;
  const double down = (y - kMargin) / scale_;
  return {across, yUp_ ? view_.corner().y() - down : view_.origin().y() + down};
}

void Sketch::setUp() {
  view_ = viewOf();
  drawn_.clear();
  const bool twice = has("repair");
  const double gap = view_.size().x() * 0.06;
  second_ = {twice ? view_.size().x() + gap : 0.0, 0.0};
  const double width = view_.size().x() + second_.x();
  const double height = view_.size().y();
  scale_ = options_.size / (std::max)(width, height);
  const double more = legendHeight() / scale_;
  const gxVector<2> origin(view_.origin().x(), view_.origin().y() - (yUp_ ? more : 0.0));
  // Sentences want some width, however narrow the shapes.
  const double least = entries_.empty() && notes_.empty() ? 0.0 : 360.0 / scale_;
  tablet_ = gxCairoTablet(gxRect(origin, {(std::max)(width, least), height + more}),
                          (std::max)(width, least) * scale_,
                          yUp_ ? gxCairoTablet::eYUp : gxCairoTablet::eYDown, kMargin);
  tablet_.background(kPaper);
  if (options_.behind.empty()) return;
  gxPicture picture = gfReadPictureFile(options_.behind);
  // Pixels have their centres at whole coordinates.
  const gxVector<2> size(static_cast<double>(picture.width), static_cast<double>(picture.height));
  tablet_.behind(std::move(picture), gxRect({-0.5, -0.5}, size), 1.0);
}

std::size_t Sketch::legendColumns() const {
  constexpr double kWideEnough = 660.0;
  return view_.size().x() * scale_ + second_.x() * scale_ < kWideEnough ? 2 : 3;
}

double Sketch::legendHeight() const {
  const bool bar = has("deviation");
  const std::size_t rows = legendRows() + notes_.size() + (bar ? 2 : 0);
  if (rows == 0) return 0.0;
  const double scaleBar = options_.scaleBar.empty() ? 0.0 : 2.0 * kRow;
  return kRow * static_cast<double>(rows) + 10.0 + scaleBar;
}

gxCairoTablet Sketch::picture() {
  // Twice: what layers have to say decides how much room is below them, and what they draw how far the view
  // reaches.
  setUp();
  paint();
  setUp();
  std::vector<Entry> said;
  std::vector<std::string> noted;
  entries_.swap(said);
  notes_.swap(noted);
  paint();
  legend();
  if (!options_.scaleBar.empty()) {
    tablet_.opacity(1.0);
    tablet_.halo(kPaper);
    tablet_.drawScaleBar(options_.scaleBar, kInk, static_cast<gxUITablet::Layers>(9));
  }
  return tablet_;
}

void Sketch::legend() {
  const double low = kMargin + view_.size().y() * scale_ + 10.0;
  const std::size_t columns = legendColumns();
  const double column =
      (std::max)((tablet_.width() - 2.0 * kMargin) / static_cast<double>(columns), 120.0);
  const auto top = static_cast<gxUITablet::Layers>(8);
  tablet_.halo(std::nullopt);
  double y = low + kRow / 2.0;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const double x = kMargin + column * static_cast<double>(i % columns);
    if (i > 0 && i % columns == 0) y += kRow;
    tablet_.strokeWidth(3.0);
    tablet_.dashes(entries_[i].dashes);
    tablet_.opacity(1.0);
    tablet_.drawLineSeg(atPixel(x, y), atPixel(x + 22.0, y), entries_[i].colour, top);
    tablet_.drawText(atPixel(x + 30.0, y), entries_[i].text, kInk, top, kLetters, gxCairoTablet::eRight);
  }
  if (!entries_.empty()) y += kRow;
  if (has("deviation")) y += 2.0 * kRow;
  for (const auto& note : notes_) {
    tablet_.drawText(atPixel(kMargin, y), note, kInk, top, kLetters, gxCairoTablet::eRight);
    y += kRow;
  }
}

// ---- What layers draw with -----------------------------------------------------------------------------------

gxColor Sketch::colourOf(std::size_t record) const {
  return kColours[record % kColours.size()];
}

void Sketch::line(const std::vector<gxVector<2>>& points, bool closed, const gxColor& colour,
                  double dashes) {
  drawn_.insert(drawn_.end(), points.begin(), points.end());
  tablet_.dashes(dashes);
  tablet_.drawLine(points, closed, colour);
  tablet_.dashes(0.0);
}

void Sketch::curve(const gxVector<2>& centre, double a, double b, double angle, const gxColor& colour,
                   double dashes) {
  constexpr int kSides = 180;
  std::vector<gxVector<2>> points;
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  for (int i = 0; i < kSides; ++i) {
    const double t = 2.0 * std::numbers::pi * i / kSides;
    const double along = a * std::cos(t);
    const double across = b * std::sin(t);
    points.push_back(centre + gxVector<2>(along * c - across * s, along * s + across * c));
  }
  line(points, true, colour, dashes);
}

void Sketch::ringsOf(const gxRecord& record, const gxColor& colour, double width,
                     const gxVector<2>& shift) {
  tablet_.strokeWidth(width);
  if (record.kind == gxRecord::Kind::ePoints) {
    for (const auto& p : record.points) tablet_.drawDot(p + shift, 1.5 * width, colour);
    return;
  }
  for (std::size_t r = 0; r < record.ringCount(); ++r) {
    std::vector<gxVector<2>> ring(record.ring(r).begin(), record.ring(r).end());
    for (auto& p : ring) p = p + shift;
    line(ring, record.kind != gxRecord::Kind::eOpen, colour);
  }
}

void Sketch::fillOf(const gxRecord& record, const gxColor& colour, const gxVector<2>& shift) {
  if (record.kind != gxRecord::Kind::eRegion && record.kind != gxRecord::Kind::eSet) return;
  std::vector<gxVector<2>> points(record.points);
  for (auto& p : points) p = p + shift;
  for (std::size_t part = 0; part < record.partCount(); ++part) {
    std::vector<std::span<const gxVector<2>>> rings;
    for (std::size_t r = record.firstRing(part); r < record.partEnds[part]; ++r) {
      const auto ring = record.ring(r);
      rings.push_back(std::span<const gxVector<2>>(points).subspan(
          static_cast<std::size_t>(ring.data() - record.points.data()), ring.size()));
    }
    tablet_.fill(rings, colour);
  }
}

void Sketch::fills() {
  tablet_.opacity(options_.behind.empty() ? 0.45 : 0.3);
  for (std::size_t i = 0; i < records_.size(); ++i) fillOf(records_[i], colourOf(i), {});
  tablet_.opacity(1.0);
}

void Sketch::outlines() {
  const bool onPicture = !options_.behind.empty();
  for (std::size_t i = 0; i < records_.size(); ++i)
    ringsOf(records_[i], onPicture ? colourOf(i) : darker(colourOf(i)), onPicture ? 2.0 : 1.5, {});
}

void Sketch::points() {
  for (std::size_t i = 0; i < records_.size(); ++i) {
    for (const auto& p : records_[i].points) tablet_.drawDot(p, 2.5, darker(colourOf(i)));
  }
}

void Sketch::ids() {
  tablet_.halo(kPaper);
  for (const auto& record : records_) {
    constexpr double kInf = std::numeric_limits<double>::infinity();
    gxVector<2> low(kInf, kInf);
    gxVector<2> high(-kInf, -kInf);
    stretch(record.points, low, high);
    const std::string id = record.id.isGiven ? record.id.text : std::to_string(record.number);
    if (!(low.x() <= high.x())) continue;
    const gxVector<2> middle = low / 2.0 + high / 2.0;
    // Beside the mark of the centre, where there is one.
    const double beside = has("axes") ? (yUp_ ? -14.0 : 14.0) / scale_ : 0.0;
    tablet_.drawText({middle.x() + std::abs(beside), middle.y() + beside}, id, kInk,
                     gxUITablet::eOverlayLayer, 15.0);
  }
  tablet_.halo(std::nullopt);
}

void Sketch::paint() {
  const std::array<std::pair<const char*, void (Sketch::*)()>, 14> all = {
      {{"fill", &Sketch::fills},
       {"repair", &Sketch::repaired},
       {"deviation", &Sketch::deviations},
       {"outline", &Sketch::outlines},
       {"points", &Sketch::points},
       {"box", &Sketch::boxes},
       {"hull", &Sketch::hulls},
       {"rectangle", &Sketch::rectangles},
       {"ellipse", &Sketch::ellipses},
       {"axes", &Sketch::axes},
       {"feret", &Sketch::ferets},
       {"crossings", &Sketch::crossings},
       {"problems", &Sketch::problems},
       {"ids", &Sketch::ids}}};
  for (const auto& [name, layer] : all) {
    if (has(name)) (this->*layer)();
    // Both circles are one layer's work.
    if (std::string_view(name) == "hull" && (has("circle") || has("inscribed"))) circles();
  }
  std::size_t points = 0;
  for (const auto& record : records_) points += record.points.size();
  if (points == 0) notes_.emplace_back("nothing to draw");
}
