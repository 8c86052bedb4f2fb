#include "small_outlines.h"

#include <support/outline_files.h>
#include <support/source_folder.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>

namespace {

using Points = std::vector<gxVector<2>>;

constexpr std::size_t kFewest = 5;
constexpr std::size_t kMost = 120;
constexpr double kPi = 3.141592653589793;
constexpr double kPicture = 2000.0;

double between(std::mt19937_64& engine, double low, double high) {
  return low + (high - low) * (static_cast<double>(engine() >> 11) * 0x1p-53);
}

// Of an outline with too many points, every so many-th.
Points thinned(const Points& points) {
  const std::size_t stride = (points.size() + kMost - 1) / kMost;
  if (stride < 2) return points;
  Points result;
  for (std::size_t i = 0; i < points.size(); i += stride) result.push_back(points[i]);
  return result;
}

std::vector<Points> filed(const char* path) {
  std::vector<Points> result;
  for (const FiledShape& shape : filedShapes(sourceFolder() + path)) {
    Points outline = thinned(shape.outline);
    if (outline.size() >= kFewest) result.push_back(std::move(outline));
  }
  return result;
}

// The outline at a size of 5 to 60 pixels, turned, stretched and moved.
Points placed(const Points& outline, std::mt19937_64& engine) {
  gxVector<2> low = outline.front();
  gxVector<2> high = low;
  for (const gxVector<2>& p : outline) {
    low = {std::min(low.x(), p.x()), std::min(low.y(), p.y())};
    high = {std::max(high.x(), p.x()), std::max(high.y(), p.y())};
  }
  const double scale = between(engine, 5.0, 60.0) / std::max(high.x() - low.x(), high.y() - low.y());
  const double angle = between(engine, 0.0, 2.0 * kPi);
  const gxVector<2> along(std::cos(angle) * scale, std::sin(angle) * scale);
  const gxVector<2> across(-along.y() * between(engine, 0.9, 1.1),
                           along.x() * between(engine, 0.9, 1.1));
  const gxVector<2> place(between(engine, 0.0, kPicture), between(engine, 0.0, kPicture));
  Points result;
  result.reserve(outline.size());
  for (const gxVector<2>& p : outline) {
    result.push_back(place + along * (p.x() - low.x()) + across * (p.y() - low.y()));
  }
  return result;
}

Points uneven(std::mt19937_64& engine) {
  const auto count = kFewest + static_cast<std::size_t>(std::pow(between(engine, 0.0, 1.0), 3.0) *
                                                        static_cast<double>(kMost - kFewest));
  Points result;
  for (std::size_t i = 0; i < count; ++i) {
    const double turn = 2.0 * kPi * static_cast<double>(i) / static_cast<double>(count);
    const double radius = between(engine, 0.7, 1.3);
    result.emplace_back(radius * std::cos(turn), radius * std::sin(turn));
  }
  return result;
}

std::vector<Points> made() {
  std::mt19937_64 engine(20261122);
  const std::vector<Points> kinds[3] = {filed("/tests/data/coins/outlines.jsonl"),
                                        filed("/tests/data/countries/countries_110m.jsonl"),
                                        filed("/tests/data/glyphs/glyphs.jsonl")};
  std::vector<Points> result;
  result.reserve(gx_kSmallOutlines);
  for (std::size_t i = 0; i < gx_kSmallOutlines; ++i) {
    const std::size_t kind = i % 4;
    const Points plain = kind == 3 ? uneven(engine) : kinds[kind][engine() % kinds[kind].size()];
    result.push_back(placed(plain, engine));
  }
  return result;
}

}  // namespace

const std::vector<Points>& gx_smallOutlines() {
  static const std::vector<Points> outlines = made();
  return outlines;
}

std::vector<gxVector<2>> gx_pointsAcross(const Points& outline, std::size_t count) {
  gxVector<2> low = outline.front();
  gxVector<2> high = low;
  for (const gxVector<2>& p : outline) {
    low = {std::min(low.x(), p.x()), std::min(low.y(), p.y())};
    high = {std::max(high.x(), p.x()), std::max(high.y(), p.y())};
  }
  const gxVector<2> size = high - low;
  std::mt19937_64 engine(static_cast<std::uint64_t>(outline.size()));
  Points result;
  result.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    result.emplace_back(low.x() + size.x() * between(engine, -0.1, 1.1),
                        low.y() + size.y() * between(engine, -0.1, 1.1));
  }
  return result;
}
