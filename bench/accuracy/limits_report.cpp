// What small units cost, and what two names do not promise, on real outlines.
//
//   limits_report tests/data      prints the tables "Small units" and "Circle and ellipse" of docs/accuracy.md
//
// Outlines are scaled by powers of two, which rounds nothing, so that the right answer about a scaled
// outline is that about the outline itself, given by even-odd in exact whole numbers.
#include <cntr/region.h>
#include <cntr/shapestat.h>
#include <support/exact_containment.h>
#include <support/outline_files.h>
#include <support/random_doubles.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

double sizeOf(const Points& points) {
  const gxRect box = gxContour(points).encloseRect(gxXform<2>::I);
  return std::max(box.size().x(), box.size().y());
}

Points scaled(const Points& points, double factor) {
  Points result;
  for (const V& p : points) result.push_back(p * factor);
  return result;
}

std::vector<Points> outlinesOf(const std::string& path) {
  std::vector<Points> result;
  for (const FiledShape& shape : filedShapes(path)) result.push_back(shape.outline);
  return result;
}

double share(long part, long all) {
  return all == 0 ? std::nan("") : 100.0 * static_cast<double>(part) / static_cast<double>(all);
}

bool hasEllipse(const Points& points) {
  try {
    static_cast<void>(gf_EllipseFromInertiaData(gf_InertiaDataPolygon(points)));
    return true;
  } catch (const gxMathError::Singular&) {
    return false;
  }
}

// ---- Small units --------------------------------------------------------------------------------------

constexpr int kQueries = 200;  // points anywhere in the box, and lines across, an outline

struct Failures {
  long outlines = 0, queries = 0, containment = 0, crossings = 0, centres = 0, ellipses = 0, alarms = 0;

  // Scales the outline to about that size and asks it.
  void add(const Points& outline, double size, RandomDoubles& random) {
    const ExactOutline exact(outline);
    const Points& points = exact.points();
    const double factor = std::exp2(std::round(std::log2(size / sizeOf(points))));
    const gxRegion whole(points);
    const gxRegion region(scaled(points, factor));
    ++outlines;
    const gxRect box = whole.encloseRect(gxXform<2>::I);
    for (int i = 0; i < kQueries; ++i) {
      const auto anywhere = [&] {
        return ExactOutline::onGrid(V(random.uniform(box.origin().x(), box.corner().x()),
                                      random.uniform(box.origin().y(), box.corner().y())));
      };
      const V a = anywhere();
      const V b = anywhere();
      ++queries;
      const ExactSide side = exact.locate(a);
      if (side == ExactSide::eInside || side == ExactSide::eOutside)
        containment += region.inside(a * factor, false) != (side == ExactSide::eInside);
      crossings += region.intersections(gxLineSeg(a * factor, b * factor), true).size() !=
                   whole.intersections(gxLineSeg(a, b), true).size();
    }
    centres += region.centerOfMass(false) == V(0, 0);
    ellipses += !hasEllipse(region.points());
    alarms += region.isSelfIntersecting() && !whole.isSelfIntersecting();
  }
};

void smallUnits(const std::vector<Points>& outlines) {
  std::puts(
      "| Size of the outlines, in units | for instance | containment wrong | other number of crossings "
      "| centre (0, 0) "
      "| no ellipse of equal moments | simple, said to cross itself |\n|--:|---|--:|--:|--:|--:|--:|");
  const std::pair<double, const char*> kSizes[] = {
      {5e-6, "5 µm in metres"},        {5e-5, "50 µm in metres"},
      {5e-4, "0.5 mm in metres"},      {5e-3, "5 mm in metres, 5 µm in mm"},
      {5e-2, "50 µm in mm"},           {5e-1, "0.5 mm in mm"},
      {5.0, "5 mm in mm, 5 µm in µm"}, {50.0, "50 pixels"},
      {5000.0, "5000 pixels"}};
  for (const auto& [size, title] : kSizes) {
    RandomDoubles random(20250103);
    Failures f;
    for (const Points& points : outlines) f.add(points, size, random);
    std::printf("| %g | %s | %.2f %% | %.2f %% | %.1f %% | %.1f %% | %.1f %% |\n", size, title,
                share(f.containment, f.queries), share(f.crossings, f.queries),
                share(f.centres, f.outlines), share(f.ellipses, f.outlines),
                share(f.alarms, f.outlines));
  }
}

// The size between `low`, where something fails, and `high`, where it does not, at which that changes.
double border(double low, double high, const std::function<bool(double)>& fails) {
  while (high / low > 1.00001) {
    const double middle = std::sqrt(low * high);
    (fails(middle) ? low : high) = middle;
  }
  return high;
}

void borders() {
  const auto rectangle = [](double w, double h) {
    return Points{{3, 4}, {3 + w, 4}, {3 + w, 4 + h}, {3, 4 + h}};
  };
  const auto disc = [](double d) {
    Points points;
    for (int i = 0; i < 64; ++i)
      points.emplace_back(3 + d / 2 * std::cos(i * 0.0981747704246810),
                          4 + d / 2 * std::sin(i * 0.0981747704246810));
    return points;
  };
  const std::pair<const char*, std::function<Points(double)>> kShapes[] = {
      {"square, side", [&](double s) { return rectangle(s, s); }},
      {"rectangle 1 : 4, short side", [&](double s) { return rectangle(s, 4 * s); }},
      {"disc of 64 corners, diameter", disc}};
  std::puts("\n| Shape | centre is (0, 0) below | no ellipse of equal moments below |\n|---|--:|--:|");
  for (const auto& [title, make] : kShapes) {
    const auto& shape = make;
    const double centre =
        border(1e-6, 1.0, [&](double s) { return gf_CenterOfMass(shape(s)) == V(0, 0); });
    const double ellipse = border(1e-6, 1.0, [&](double s) { return !hasEllipse(shape(s)); });
    std::printf("| %s | %.2e | %.2e |\n", title, centre, ellipse);
  }
}

// ---- Circle and ellipse ---------------------------------------------------------------------------------

void circleAndEllipse(const char* title, const std::vector<Points>& outlines) {
  long open = 0;
  std::vector<double> ratios;
  for (const Points& points : outlines) {
    const gxContour contour(points);
    const gxCircle circle = contour.encloseCircle(gxContourDefs::eAllPairs);
    const double limit = circle.radius() * (1.0 + 1e-9);
    open += std::any_of(points.begin(), points.end(),
                        [&](const V& p) { return p.distance(circle.center()) > limit; });
    gxEllipse ellipse;
    double residual = 0.0;
    contour.fitEllipse(ellipse, residual);
    if (residual < 0.0) continue;
    const V radii = ellipse.geom().radii;
    ratios.push_back(2.0 * std::max(radii.x(), radii.y()) / contour.diameter(gxContourDefs::eAllPairs));
  }
  std::sort(ratios.begin(), ratios.end());
  const auto over = [&](double limit) {
    return share(std::count_if(ratios.begin(), ratios.end(), [=](double r) { return r > limit; }),
                 static_cast<long>(ratios.size()));
  };
  std::printf("| %s | %zu | %.1f %% | %.2f | %.1f %% | %.1f %% |\n", title, outlines.size(),
              share(open, static_cast<long>(outlines.size())), ratios[ratios.size() / 2], over(2.0),
              over(10.0));
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: limits_report tests/data\n";
    return 2;
  }
  const std::string data = arguments[1];
  const std::vector<Points> coins = outlinesOf(data + "/coins/outlines.jsonl");
  const std::vector<Points> countries = outlinesOf(data + "/countries/countries_110m.jsonl");
  const std::vector<Points> glyphs = outlinesOf(data + "/glyphs/glyphs.jsonl");
  std::vector<Points> all = coins;
  all.insert(all.end(), glyphs.begin(), glyphs.end());
  smallUnits(all);
  borders();
  std::puts(
      "\n| Outlines | | a vertex outside the circle of all pairs | fitted ellipse's axis / diameter, "
      "median | above 2 "
      "| above 10 |\n|---|--:|--:|--:|--:|--:|");
  circleAndEllipse("coins", coins);
  circleAndEllipse("countries", countries);
  circleAndEllipse("glyphs", glyphs);
  return 0;
}
