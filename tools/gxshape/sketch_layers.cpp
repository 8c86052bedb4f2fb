// The layers that measure what they draw, each with the gauge or the rule that `describe`, `check`, `repair` and
// `compare` answer with.
#include "command.h"
#include "sketch.h"

#include <gauge/borders.h>
#include <gauge/deviation.h>
#include <gauge/enclosing.h>
#include <gauge/feret.h>
#include <gauge/inscribed.h>
#include <gauge/moments.h>
#include <overlay/check.h>
#include <overlay/repair.h>
#include <velstd/convex_hull.h>
#include <velstd/exception.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace {

using Kind = gxRecord::Kind;

constexpr gxColor kInk(55, 65, 81);
constexpr gxColor kPaper(255, 255, 255);
constexpr gxColor kGrey(140, 150, 165);
constexpr gxColor kHull(37, 99, 235);
constexpr gxColor kCircle(147, 51, 234);
constexpr gxColor kInscribed(13, 148, 136);
constexpr gxColor kRectangle(217, 119, 6);
constexpr gxColor kEllipse(22, 163, 74);
constexpr gxColor kAxes(220, 38, 38);
constexpr gxColor kFeret(120, 53, 15);
constexpr gxColor kProblem(200, 20, 30);
constexpr gxColor kAfter(22, 140, 80);

std::vector<gxVector<2>> outlinePoints(const gxRecord& record) {
  if (record.kind != Kind::eRegion && record.kind != Kind::eSet) return record.points;
  std::vector<gxVector<2>> points;
  for (std::size_t p = 0; p < record.partCount(); ++p) {
    const std::size_t r = record.firstRing(p);
    if (r < record.partEnds[p])
      points.insert(points.end(), record.ring(r).begin(), record.ring(r).end());
  }
  return points;
}

gxMoments momentsOf(const gxRecord& record) {
  return record.kind == Kind::eSet ? gfMoments(record.toSet()) : gfMoments(record.toRegion());
}

bool isArea(const gxRecord& record) {
  return record.kind == Kind::eRegion || record.kind == Kind::eSet;
}

std::string nameOf(const gxRecord& record) {
  return record.id.isGiven ? record.id.text : std::to_string(record.number);
}

std::string numberText(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", number);
  return text;
}

// From blue for below 0 over grey to red; `share` is from -1 to 1.
gxColor diverging(double share) {
  constexpr std::array<std::array<double, 3>, 5> kStops = {
      {{33, 80, 170}, {100, 160, 215}, {190, 190, 190}, {240, 150, 90}, {190, 20, 40}}};
  const double at = 2.0 * ((std::min)((std::max)(share, -1.0), 1.0) + 1.0);
  const auto i = (std::min)(static_cast<std::size_t>(at), std::size_t{3});
  const double t = at - static_cast<double>(i);
  const auto part = [&](std::size_t k) {
    return static_cast<unsigned char>(std::lround(kStops[i][k] + t * (kStops[i + 1][k] - kStops[i][k])));
  };
  return {part(0), part(1), part(2)};
}

}  // namespace

void Sketch::attempt(const gxRecord& record, const std::function<void()>& layer) {
  try {
    layer();
  } catch (const gxException& error) {
    notes_.push_back("shape " + nameOf(record) + ": " + error.what());
  }
}

void Sketch::boxes() {
  tablet_.strokeWidth(1.2);
  for (const auto& record : records_) {
    const auto points = outlinePoints(record);
    if (points.empty()) continue;
    gxVector<2> low = points[0];
    gxVector<2> high = points[0];
    for (const auto& p : points) {
      low = {(std::min)(low.x(), p.x()), (std::min)(low.y(), p.y())};
      high = {(std::max)(high.x(), p.x()), (std::max)(high.y(), p.y())};
    }
    line({low, {high.x(), low.y()}, high, {low.x(), high.y()}}, true, kGrey, 5.0);
  }
  tell(kGrey, "upright box", 5.0);
}

void Sketch::hulls() {
  tablet_.strokeWidth(1.8);
  for (const auto& record : records_) {
    std::vector<gxVector<2>> hull;
    gfConvexHull(outlinePoints(record), hull);
    line(hull, true, kHull, 6.0);
  }
  tell(kHull, "convex hull", 6.0);
}

void Sketch::circles() {
  tablet_.strokeWidth(1.5);
  for (const auto& record : records_) {
    if (has("circle")) {
      const gxEnclosingCircle c = gfEnclosingCircle(outlinePoints(record));
      curve(c.centre, c.radius, c.radius, 0.0, kCircle);
    }
    if (!has("inscribed") || !isArea(record)) continue;
    attempt(record, [&] {
      const gxInscribedCircle c = record.kind == Kind::eSet ? gfInscribedCircle(record.toSet())
                                                            : gfInscribedCircle(record.toRegion());
      curve(c.centre, c.radius, c.radius, 0.0, kInscribed);
    });
  }
  if (has("circle")) tell(kCircle, "smallest enclosing circle");
  if (has("inscribed")) tell(kInscribed, "largest circle within");
}

void Sketch::rectangles() {
  tablet_.strokeWidth(1.5);
  for (const auto& record : records_) {
    const auto corners = gfLeastAreaRectangle(outlinePoints(record)).corners();
    line({corners.begin(), corners.end()}, true, kRectangle);
  }
  tell(kRectangle, "rectangle of least area");
}

void Sketch::ellipses() {
  tablet_.strokeWidth(1.5);
  for (const auto& record : records_) {
    const gxMoments m = momentsOf(record);
    curve(m.centre, m.ellipseA, m.ellipseB, m.ellipseAngle, kEllipse);
  }
  tell(kEllipse, "ellipse of equal moments");
}

void Sketch::axes() {
  tablet_.strokeWidth(1.5);
  for (const auto& record : records_) {
    const gxMoments m = momentsOf(record);
    const gxVector<2> along(std::cos(m.ellipseAngle), std::sin(m.ellipseAngle));
    const gxVector<2> across(-along.y(), along.x());
    line({m.centre - along * m.ellipseA, m.centre + along * m.ellipseA}, false, kAxes);
    line({m.centre - across * m.ellipseB, m.centre + across * m.ellipseB}, false, kAxes);
    tablet_.drawDot(m.centre, 3.5, kAxes);
  }
  tell(kAxes, "centre and axes");
}

void Sketch::ferets() {
  tablet_.strokeWidth(1.8);
  for (const auto& record : records_) {
    const gxFeret f = gfFeret(outlinePoints(record));
    line({f.feretMaxFromPoint, f.feretMaxToPoint}, false, kFeret);
    line({f.feretMinPoint, f.feretMinFoot}, false, kFeret, 3.0);
  }
  tell(kFeret, "largest width");
  tell(kFeret, "least width", 3.0);
}

// Of the borders of every record with those of every other, in the order of their boxes along x.
void Sketch::crossings() {
  std::vector<std::pair<gxContour, gxRect>> rings;
  for (const auto& record : records_) {
    for (std::size_t r = 0; r < record.ringCount(); ++r) {
      if (record.ring(r).size() < 2) continue;
      const gxContour ring(std::vector<gxVector<2>>(record.ring(r).begin(), record.ring(r).end()),
                           record.kind != Kind::eOpen);
      rings.emplace_back(ring, ring.encloseRect(gxXform<2>::I));
    }
  }
  std::sort(rings.begin(), rings.end(),
            [](const auto& a, const auto& b) { return a.second.origin().x() < b.second.origin().x(); });
  std::size_t count = 0;
  for (std::size_t i = 0; i < rings.size(); ++i) {
    for (std::size_t k = i + 1; k < rings.size(); ++k) {
      if (!(rings[k].second.origin().x() <= rings[i].second.corner().x())) break;
      for (const auto& at : rings[i].first.intersections(rings[k].first)) {
        tablet_.drawDot(at, 4.5, kPaper);
        tablet_.drawDot(at, 3.5, kProblem);
        ++count;
      }
    }
  }
  tell(kProblem, std::to_string(count) + " crossings");
}

void Sketch::problems() {
  constexpr std::size_t kMostTold = 12;
  gxCheckOptions how;
  how.anyDirection = true;
  how.atMost = 100;
  std::size_t count = 0;
  for (const auto& record : records_) {
    std::vector<gxProblem> found;
    if (isArea(record)) {
      attempt(record, [&] {
        found =
            record.kind == Kind::eSet ? gfCheck(record.toSet(), how) : gfCheck(record.toRegion(), how);
      });
    }
    for (const auto& problem : found) {
      ++count;
      tablet_.drawDot(problem.point, 9.0, kProblem);
      tablet_.drawText({problem.point.x(), problem.point.y()}, std::to_string(count), kPaper,
                       gxUITablet::eOverlayLayer, count < 100 ? 12.0 : 9.0);
      if (count > kMostTold) continue;
      notes_.push_back(std::to_string(count) + "  shape " + nameOf(record) + ": " + problem.sentence);
    }
  }
  if (count == 0) notes_.emplace_back("no problems");
  if (count > kMostTold) notes_.push_back("and " + std::to_string(count - kMostTold) + " more");
}

void Sketch::repaired() {
  gxRepairReport sum;
  for (const auto& record : records_) {
    tablet_.opacity(0.35);
    fillOf(record, kGrey, {});
    tablet_.opacity(1.0);
    ringsOf(record, kInk, 1.5, {});
    if (isArea(record)) attempt(record, [&] { repairOf(record, sum); });
  }
  tell(kInk, "as it came");
  tell(kAfter, "repaired, " + options_.rule);
  notes_.push_back("area " + numberText(sum.areaAfter) + " in " + std::to_string(sum.regions) +
                   " region" + (sum.regions == 1 ? "" : "s") + " with " + std::to_string(sum.holes) +
                   " hole" + (sum.holes == 1 ? "" : "s"));
}

void Sketch::repairOf(const gxRecord& record, gxRepairReport& sum) {
  const gxFillRule rule = fillRuleOf(options_.rule);
  const gxRepaired done =
      record.kind == Kind::eSet ? gfRepair(record.toSet(), rule) : gfRepair(record.toRegion(), rule);
  gxRecord after;
  after.assign(done.regions);
  tablet_.opacity(0.4);
  fillOf(after, kAfter, second_);
  tablet_.opacity(1.0);
  ringsOf(after, kAfter, 1.8, second_);
  sum.areaAfter += done.report.areaAfter;
  sum.regions += done.report.regions;
  sum.holes += done.report.holes;
}

void Sketch::deviations() {
  const gxBorders golden = bordersOf(golden_);
  double most = options_.max;
  if (std::isnan(most)) {
    most = 0.0;
    for (const auto& record : records_) {
      const gxDeviation d = gfDeviation(bordersOf(record), golden);
      if (d.status != gxStatus::eOk) continue;
      most = (std::max)({most, std::abs(d.deviationMax), std::abs(d.deviationMin)});
    }
  }
  tablet_.opacity(0.5);
  fillOf(golden_, gxColor(225, 228, 233), {});
  tablet_.opacity(1.0);
  ringsOf(golden_, kGrey, 1.2, {});
  for (const auto& record : records_) deviationOf(record, most);
  colourBar(most);
}

void Sketch::deviationOf(const gxRecord& record, double most) {
  gxDeviationOptions how;
  how.spacing = 2.0 / scale_;
  const gxDeviation d = gfDeviation(bordersOf(record), bordersOf(golden_), how);
  tablet_.strokeWidth(4.0);
  const auto& samples = d.samples;
  const bool closed = record.kind != Kind::eOpen;
  std::size_t first = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const bool endsRing = i + 1 == samples.size() || samples[i + 1].place.ring != samples[i].place.ring;
    const std::size_t next = endsRing ? first : i + 1;
    if (endsRing) first = i + 1;
    if (endsRing && !closed) continue;
    const double mean = (samples[i].deviation + samples[next].deviation) / 2.0;
    line({samples[i].place.point, samples[next].place.point}, false,
         diverging(most > 0.0 ? mean / most : 0.0));
  }
  for (const gxPlace& place : {d.maxPlace, d.minPlace}) {
    const bool isSame = d.deviationMax == 0.0 && d.deviationMin == 0.0;
    if (!place.valid() || isSame) continue;
    tablet_.drawDot(place.point, 5.5, kInk);
    tablet_.drawDot(place.point, 3.5, kPaper);
  }
  notes_.push_back("shape " + nameOf(record) + ": from " + numberText(d.deviationMin) + " (inside) to " +
                   numberText(d.deviationMax) + " (outside), places ringed");
}

void Sketch::colourBar(double most) {
  constexpr double kWide = 240.0;
  constexpr int kSteps = 60;
  const double rows = static_cast<double>(legendRows());
  const double x = 46.0;
  const double y = 16.0 + view_.size().y() * scale_ + 10.0 + 20.0 * rows + 4.0;
  const auto top = static_cast<gxUITablet::Layers>(8);
  for (int i = 0; i < kSteps; ++i) {
    const double share = (2.0 * i + 1.0) / kSteps - 1.0;
    const double left = x + kWide * i / kSteps;
    std::vector<gxVector<2>> cell;
    for (const auto& [dx, dy] :
         {std::pair{0.0, 0.0}, {kWide / kSteps, 0.0}, {kWide / kSteps, 12.0}, {0.0, 12.0}}) {
      const auto p = atPixel(left + dx, y + dy);
      cell.emplace_back(p.x(), p.y());
    }
    const std::array<std::span<const gxVector<2>>, 1> rings = {cell};
    tablet_.fill(rings, diverging(share), top);
  }
  for (const double share : {-1.0, 0.0, 1.0}) {
    tablet_.drawText(atPixel(x + kWide * (share + 1.0) / 2.0, y + 22.0),
                     (share > 0 ? "+" : "") + numberText(share * most), kInk, top, 12.0);
  }
  tablet_.drawText(atPixel(x + kWide + 24.0, y + 6.0), "deviation: blue inside, red outside", kInk, top,
                   12.0, gxCairoTablet::eRight);
}
