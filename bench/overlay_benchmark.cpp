// What does an outline enclose by rule, two outlines or thousands of regions together, an outline grown;
// how do two outlines lie to each other?
//
// The parameter is the number of points of the outline, and of the other one; in overlay_union_coins and
// overlay_union_tiles the number of regions.  Nothing remembers anything: every call is a first one, and what
// a party indexes is indexed in the call.  Input is in the form that the party likes best, made before.
//
// overlay_repair_<outline>: what it encloses by the even-odd rule.  `smooth` is what an edge finder gives;
// `winding` is a band wound up, whose boxes lie on each other, and which meets itself from 32 points on;
// `jittered` is the smooth one with every 20th point moved back along it; `tangled` is a random walk.
// overlay_union_two: an outline with waves and the same one, turned by 3 degrees and shifted by a twentieth of
// its radius, so that they cross again and again.
// overlay_union_coins: 16-gons at random, each meeting three others on the average.
// overlay_union_tiles: squares of a board, whose sides lie on each other.
// overlay_grow: the smooth outline, by 5 pixels, with round joins whose chords lie within 1/100 pixel.
// overlay_contains: the smooth outline and itself at 95 %, so that nothing meets.  overlay_crosses: the two
// outlines of overlay_union_two; whether they intersect.
//
//  ours    gfRepair, gfUnion, gfOffset, gfContains, gfIntersects.
//  geos    MakeValid (even-odd by its lines), OverlayNGRobust, Geometry::Union (cascaded), BufferOp, contains,
//          intersects.  `geos_prepared` prepares one of the two in the call.  `geos_clusters` is told
//          beforehand which regions form clusters, and unites each by itself.
//  boost   union_, buffer, within, intersects.  There is no repair; unions of many are made pair by pair
//          and left out above 200.
//  polyclipping  SimplifyPolygon, Execute, ClipperOffset; integer coordinates, scaled to the range in which
//          it multiplies in 64 bits.  Its results are rings without saying which holes are in which
//          outline.
#include <overlay/overlay.h>

#include "outlines.h"
#include "rows.h"

#include <functional>
#include <numeric>
#include <random>

#ifdef GXSHAPE_HAVE_GEOS
#  include "geos_outline.h"

#  include <geos/geom/Geometry.h>
#  include <geos/geom/MultiPolygon.h>
#  include <geos/geom/prep/PreparedGeometry.h>
#  include <geos/geom/prep/PreparedGeometryFactory.h>
#  include <geos/operation/buffer/BufferOp.h>
#  include <geos/operation/overlayng/OverlayNG.h>
#  include <geos/operation/overlayng/OverlayNGRobust.h>
#  include <geos/operation/valid/MakeValid.h>
#endif
#ifdef GXSHAPE_HAVE_BOOST
#  include <boost/geometry.hpp>
#  include <boost/geometry/geometries/multi_polygon.hpp>
#  include <boost/geometry/geometries/point_xy.hpp>
#  include <boost/geometry/geometries/polygon.hpp>
#endif
#ifdef GXSHAPE_HAVE_POLYCLIPPING
#  include <polyclipping/clipper.hpp>
#endif

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

constexpr double kTurn = 6.283185307179586;
constexpr double kGrow = 5.0;
constexpr double kChords = 0.01;

// ---- Outlines -----------------------------------------------------------------------------------

Points smooth(std::int64_t n) {
  return gx_wobblyOutline(n);
}

Points turned(const Points& points, double radius) {
  const double c = std::cos(kTurn / 120.0);
  const double s = std::sin(kTurn / 120.0);
  Points result;
  for (const V& p : points) {
    result.emplace_back(c * p.x() - s * p.y() + radius / 20.0, s * p.x() + c * p.y() + radius / 20.0);
  }
  return result;
}

Points scaled(const Points& points, double by) {
  Points result;
  for (const V& p : points) result.push_back(p * by);
  return result;
}

// Waves along the smooth outline, so that two of them, turned, cross again and again.
Points wavy(std::int64_t n) {
  Points points = gx_wobblyOutline(n);
  const double radius = gx_radiusOf(n);
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double wave = 0.08 * std::sin(kTurn * static_cast<double>(i) / 34.0);
    points[i] = points[i] * (1.0 + wave * std::min(1.0, 30.0 / radius));
  }
  return points;
}

struct Two {
  explicit Two(std::int64_t n) : first(wavy(n)), second(turned(first, gx_radiusOf(n))) {}
  Points first;
  Points second;
};

std::vector<Points> coins(std::int64_t count) {
  std::mt19937_64 engine(20250113);
  std::uniform_real_distribution<double> across(0.0, 2.0 * std::sqrt(static_cast<double>(count)));
  std::vector<Points> regions;
  for (std::int64_t i = 0; i < count; ++i) {
    const double x = across(engine);
    const V center(x, across(engine));
    Points points;
    for (int k = 0; k < 16; ++k) {
      const double angle = kTurn * (k + 0.25) / 16.0;
      points.push_back(center + V(std::cos(angle), std::sin(angle)));
    }
    regions.push_back(points);
  }
  return regions;
}

std::vector<Points> tiles(std::int64_t count) {
  const auto side = static_cast<std::int64_t>(std::ceil(std::sqrt(static_cast<double>(count))));
  std::vector<Points> regions;
  for (std::int64_t i = 0; i < count; ++i) {
    const auto x = static_cast<double>(i % side);
    const auto y = static_cast<double>(i / side);
    regions.push_back({V(x, y), V(x + 1, y), V(x + 1, y + 1), V(x, y + 1)});
  }
  return regions;
}

using Maker = Points (*)(std::int64_t);
using ListMaker = std::vector<Points> (*)(std::int64_t);

// ---- Rows ---------------------------------------------------------------------------------------

double areaOf(const gxRegionSet& set) {
  double area = 0.0;
  for (const auto& region : set.regions()) {
    area += region->area(false);
    for (const auto& hole : region->holes()) area -= hole->area(false);
  }
  return area;
}

// Times `run` per item, whose result has an area that must be that of ours.
template <class Expected, class Run, class Area>
void timed(benchmark::State& state, std::int64_t items, const Expected& expected, const Run& run,
           const Area& area, double share = 1e-5) {
  if (!gx_agree(state, expected(), area(run()), share)) return;
  for ([[maybe_unused]] const auto _ : state) benchmark::DoNotOptimize(run());
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * items);
}

// The same of an answer that is yes or no.
template <class Run>
void asked(benchmark::State& state, const Run& run) {
  if (!gx_agree(state, 1.0, run() ? 1.0 : 0.0)) return;
  for ([[maybe_unused]] const auto _ : state) benchmark::DoNotOptimize(run());
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}

void sizes(gx_Benchmark* row) {
  for (const std::int64_t n : {8, 16, 32, 64, 256, 1000, 10000, 100000}) row->Arg(n);
  row->MinTime(0.1);
}
// Of outlines that cross themselves everywhere the peers' times grow faster than the crossings: GEOS takes 13 s for a
// random walk of 10,000 points.
[[maybe_unused]] void sizesOfPeers(gx_Benchmark* row) {
  for (const std::int64_t n : {8, 16, 32, 64, 256, 1000, 10000}) row->Arg(n);
  row->MinTime(0.1);
}
void counts(gx_Benchmark* row) {
  for (const std::int64_t n : {2, 20, 200, 2000, 20000}) row->Arg(n);
  row->MinTime(0.1);
}
[[maybe_unused]] void fewCounts(gx_Benchmark* row) {
  for (const std::int64_t n : {2, 20, 200}) row->Arg(n);
  row->MinTime(0.1);
}

// A party to a row: what it does with one outline, with two, with many, and how it grows one.
struct Form {
  const char* name;
  Maker make;
};
constexpr Form kForms[] = {{"smooth", smooth},
                           {"winding", gx_windingOutline},
                           {"jittered", gx_jitteredOutline},
                           {"tangled", gx_tangledOutline}};

template <class Party>
void repairRow(benchmark::State& state, Maker make) {
  const Points points = make(state.range(0));
  const gxRegion region(points);
  const typename Party::One one = Party::one(points);
  timed(
      state, state.range(0), [&] { return gfRepair(region).report.areaAfter; },
      [&] { return Party::repaired(one); }, Party::area);
}

template <class Party>
void unionRow(benchmark::State& state) {
  const Two two(state.range(0));
  const auto both = Party::pair(two.first, two.second);
  timed(
      state, state.range(0), [&] { return areaOf(gfUnion(gxRegion(two.first), gxRegion(two.second))); },
      [&] { return Party::united(both.first, both.second); }, Party::area);
}

template <class Party>
void listRow(benchmark::State& state, ListMaker make) {
  const std::vector<Points> list = make(state.range(0));
  const std::vector<gxRegion> regions(list.begin(), list.end());
  const typename Party::Many many = Party::many(list);
  timed(
      state, state.range(0), [&] { return areaOf(gfUnion(regions)); },
      [&] { return Party::unitedAll(many); }, Party::area);
}

gxRegionSet grown(const gxRegion& region) {
  gxOffsetForm form;
  form.arcTolerance = kChords;
  return gfOffset(region, kGrow, form);
}

template <class Party>
void growRow(benchmark::State& state) {
  const Points points = smooth(state.range(0));
  const typename Party::One one = Party::one(points);
  timed(
      state, state.range(0), [&] { return areaOf(grown(gxRegion(points))); },
      [&] { return Party::grown(one); }, Party::area, 3e-3);
}

template <class Party>
void containsRow(benchmark::State& state) {
  const Points points = smooth(state.range(0));
  const typename Party::One a = Party::one(points);
  const typename Party::One b = Party::one(scaled(points, 0.95));
  asked(state, [&] { return Party::contains(a, b); });
}

template <class Party>
void crossesRow(benchmark::State& state) {
  const Two two(state.range(0));
  const typename Party::One a = Party::one(two.first);
  const typename Party::One b = Party::one(two.second);
  asked(state, [&] { return Party::intersects(a, b); });
}

template <class Run>
gx_Benchmark* row(const std::string& name, const std::string& party, const Run& run) {
  return benchmark::RegisterBenchmark(("overlay_" + name + "/" + party).c_str(), run);
}

template <class Party>
void addTwos(const std::string& party) {
  row("union_two", party, unionRow<Party>)->Apply(sizes);
  row("grow", party, growRow<Party>)->Apply(sizes);
  row("contains", party, containsRow<Party>)->Apply(sizes);
  row("crosses", party, crossesRow<Party>)->Apply(sizes);
}

template <class Party, class Sizes>
void addRepairs(const std::string& party, const Sizes& which) {
  for (const Form& form : kForms) {
    const Maker make = form.make;
    row(std::string("repair_") + form.name, party, [make](benchmark::State& state) {
      repairRow<Party>(state, make);
    })->Apply(which);
  }
}

template <class Party, class Sizes>
void addLists(const std::string& party, const Sizes& which) {
  row("union_coins", party, [](benchmark::State& s) { listRow<Party>(s, coins); })->Apply(which);
  row("union_tiles", party, [](benchmark::State& s) { listRow<Party>(s, tiles); })->Apply(which);
}

// ---- Parties ------------------------------------------------------------------------------------

struct Ours {
  using One = gxRegion;
  using Many = std::vector<gxRegion>;
  static One one(const Points& points) { return gxRegion(points); }
  static std::pair<One, One> pair(const Points& a, const Points& b) { return {one(a), one(b)}; }
  static Many many(const std::vector<Points>& list) { return {list.begin(), list.end()}; }
  static gxRegionSet repaired(const One& one) { return gfRepair(one).regions; }
  static gxRegionSet united(const One& a, const One& b) { return gfUnion(a, b); }
  static gxRegionSet unitedAll(const Many& many) { return gfUnion(many); }
  static gxRegionSet grown(const One& one) { return ::grown(one); }
  static bool contains(const One& a, const One& b) { return gfContains(a, b); }
  static bool intersects(const One& a, const One& b) { return gfIntersects(a, b); }
  static double area(const gxRegionSet& set) { return areaOf(set); }
};

#ifdef GXSHAPE_HAVE_GEOS
struct Geos {
  using Geometry = std::unique_ptr<geos::geom::Geometry>;
  using One = Geometry;
  using Many = Geometry;
  static One one(const Points& points) { return gx_geosPolygon(points); }
  static std::pair<One, One> pair(const Points& a, const Points& b) { return {one(a), one(b)}; }
  static Many many(const std::vector<Points>& list) {
    std::vector<Geometry> parts;
    for (const Points& points : list) parts.push_back(gx_geosPolygon(points));
    return geos::geom::GeometryFactory::getDefaultInstance()->createMultiPolygon(std::move(parts));
  }
  static Geometry repaired(const One& one) {
    return geos::operation::valid::MakeValid().build(one.get());
  }
  static Geometry united(const One& a, const One& b) {
    using geos::operation::overlayng::OverlayNG;
    return geos::operation::overlayng::OverlayNGRobust::Overlay(a.get(), b.get(), OverlayNG::UNION);
  }
  static Geometry unitedAll(const Many& many) { return many->Union(); }
  static Geometry grown(const One& one) {
    // As many chords to the quarter as keep within the tolerance.
    const int quarter =
        static_cast<int>(std::ceil(kTurn / 4.0 / (2.0 * std::acos(1.0 - kChords / kGrow))));
    geos::operation::buffer::BufferOp operation(one.get());
    operation.setQuadrantSegments(quarter);
    return operation.getResultGeometry(kGrow);
  }
  static bool contains(const One& a, const One& b) { return a->contains(b.get()); }
  static bool intersects(const One& a, const One& b) { return a->intersects(b.get()); }
  static double area(const Geometry& geometry) { return geometry->getArea(); }
};

struct GeosPrepared : Geos {
  using Prepared = geos::geom::prep::PreparedGeometryFactory;
  static bool contains(const One& a, const One& b) {
    return Prepared::prepare(a.get())->contains(b.get());
  }
  static bool intersects(const One& a, const One& b) {
    return Prepared::prepare(a.get())->intersects(b.get());
  }
};

std::size_t topOf(std::vector<std::size_t>& parents, std::size_t i) {
  while (parents[i] != i) i = parents[i] = parents[parents[i]];
  return i;
}

struct GeosClusters {
  using Many = std::vector<Geos::Many>;
  static Many many(const std::vector<Points>& list) {
    std::vector<std::size_t> parents(list.size());
    std::iota(parents.begin(), parents.end(), std::size_t{0});
    std::vector<Geos::One> all;
    for (const Points& points : list) all.push_back(Geos::one(points));
    std::vector<std::size_t> order(parents);
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
      return all[a]->getEnvelopeInternal()->getMinX() < all[b]->getEnvelopeInternal()->getMinX();
    });
    for (std::size_t a = 0; a < order.size(); ++a) {
      const auto* box = all[order[a]]->getEnvelopeInternal();
      for (std::size_t b = a + 1; b < order.size(); ++b) {
        const auto* other = all[order[b]]->getEnvelopeInternal();
        if (other->getMinX() > box->getMaxX()) break;
        if (box->intersects(other) && all[order[a]]->intersects(all[order[b]].get()))
          parents[topOf(parents, order[a])] = topOf(parents, order[b]);
      }
    }
    std::vector<std::vector<Points>> clusters(list.size());
    for (std::size_t i = 0; i < list.size(); ++i) clusters[topOf(parents, i)].push_back(list[i]);
    Many result;
    for (const auto& cluster : clusters) {
      if (!cluster.empty()) result.push_back(Geos::many(cluster));
    }
    return result;
  }
  static std::vector<Geos::Geometry> unitedAll(const Many& many) {
    std::vector<Geos::Geometry> result;
    for (const Geos::Many& cluster : many) {
      result.push_back(cluster->getNumGeometries() == 1 ? cluster->clone() : cluster->Union());
    }
    return result;
  }
  static double area(const std::vector<Geos::Geometry>& parts) {
    double area = 0.0;
    for (const Geos::Geometry& part : parts) area += part->getArea();
    return area;
  }
};
#endif

#ifdef GXSHAPE_HAVE_BOOST
namespace bg = boost::geometry;

struct Boost {
  using Point = bg::model::d2::point_xy<double>;
  using One = bg::model::polygon<Point, false>;
  using Many = std::vector<One>;
  using Result = bg::model::multi_polygon<One>;
  static One one(const Points& points) {
    One polygon;
    for (const V& p : points) bg::append(polygon.outer(), Point(p.x(), p.y()));
    bg::correct(polygon);
    return polygon;
  }
  static std::pair<One, One> pair(const Points& a, const Points& b) { return {one(a), one(b)}; }
  static Many many(const std::vector<Points>& list) {
    Many result;
    for (const Points& points : list) result.push_back(one(points));
    return result;
  }
  static Result united(const One& a, const One& b) {
    Result result;
    bg::union_(a, b, result);
    return result;
  }
  static Result unitedAll(const Many& many) {
    Result result;
    for (const One& one : many) {
      Result next;
      bg::union_(result, one, next);
      result = std::move(next);
    }
    return result;
  }
  static Result grown(const One& one) {
    const auto chords =
        static_cast<std::size_t>(std::ceil(kTurn / (2.0 * std::acos(1.0 - kChords / kGrow))));
    Result result;
    bg::buffer(one, result, bg::strategy::buffer::distance_symmetric<double>(kGrow),
               bg::strategy::buffer::side_straight(), bg::strategy::buffer::join_round(chords),
               bg::strategy::buffer::end_round(chords), bg::strategy::buffer::point_circle(chords));
    return result;
  }
  static bool contains(const One& a, const One& b) { return bg::within(b, a); }
  static bool intersects(const One& a, const One& b) { return bg::intersects(a, b); }
  static double area(const Result& result) { return bg::area(result); }
};
#endif

#ifdef GXSHAPE_HAVE_POLYCLIPPING
// Coordinates of up to 0x3fffffff are multiplied in 64 bits.
struct Polyclipping {
  struct Scaled {
    ClipperLib::Paths paths;
    double scale = 1.0;
  };
  using One = Scaled;
  using Many = Scaled;

  static Scaled one(const Points& points) { return many({points}); }
  static std::pair<One, One> pair(const Points& a, const Points& b) {
    const Scaled both = many({a, b});
    return {{{both.paths[0]}, both.scale}, {{both.paths[1]}, both.scale}};
  }
  static Scaled many(const std::vector<Points>& list) {
    double size = 2.0 * kGrow;
    for (const Points& points : list) {
      for (const V& p : points) size = std::max({size, std::fabs(p.x()), std::fabs(p.y())});
    }
    Scaled result;
    // With room for growing.
    result.scale = std::exp2(std::floor(std::log2(0x1p28 / size)) - 1.0);
    for (const Points& points : list) {
      ClipperLib::Path path;
      for (const V& p : points)
        path.emplace_back(std::llround(p.x() * result.scale), std::llround(p.y() * result.scale));
      result.paths.push_back(path);
    }
    return result;
  }
  static Scaled repaired(const One& one) {
    Scaled result{{}, one.scale};
    ClipperLib::SimplifyPolygon(one.paths[0], result.paths, ClipperLib::pftEvenOdd);
    return result;
  }
  static Scaled united(const One& a, const One& b) {
    Scaled result{{}, a.scale};
    ClipperLib::Clipper clipper;
    clipper.AddPaths(a.paths, ClipperLib::ptSubject, true);
    clipper.AddPaths(b.paths, ClipperLib::ptClip, true);
    clipper.Execute(ClipperLib::ctUnion, result.paths, ClipperLib::pftEvenOdd, ClipperLib::pftEvenOdd);
    return result;
  }
  static Scaled unitedAll(const Many& many) {
    Scaled result{{}, many.scale};
    ClipperLib::Clipper clipper;
    clipper.AddPaths(many.paths, ClipperLib::ptSubject, true);
    clipper.Execute(ClipperLib::ctUnion, result.paths, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
    return result;
  }
  static Scaled grown(const One& one) {
    Scaled result{{}, one.scale};
    ClipperLib::ClipperOffset offset(2.0, kChords * one.scale);
    offset.AddPaths(one.paths, ClipperLib::jtRound, ClipperLib::etClosedPolygon);
    offset.Execute(result.paths, kGrow * one.scale);
    return result;
  }
  static double area(const Scaled& scaled) {
    double area = 0.0;
    for (const ClipperLib::Path& path : scaled.paths) area += ClipperLib::Area(path);
    return std::fabs(area) / (scaled.scale * scaled.scale);
  }
};
#endif

// All rows, before main.
const bool kRegistered = [] {
  addRepairs<Ours>("ours", sizes);
  addTwos<Ours>("ours");
  addLists<Ours>("ours", counts);
#ifdef GXSHAPE_HAVE_GEOS
  addRepairs<Geos>("geos", sizesOfPeers);
  addTwos<Geos>("geos");
  addLists<Geos>("geos", counts);
  addLists<GeosClusters>("geos_clusters", counts);
  row("contains", "geos_prepared", containsRow<GeosPrepared>)->Apply(sizes);
  row("crosses", "geos_prepared", crossesRow<GeosPrepared>)->Apply(sizes);
#endif
#ifdef GXSHAPE_HAVE_BOOST
  addTwos<Boost>("boost");
  addLists<Boost>("boost", fewCounts);
#endif
#ifdef GXSHAPE_HAVE_POLYCLIPPING
  addRepairs<Polyclipping>("polyclipping", sizesOfPeers);
  row("union_two", "polyclipping", unionRow<Polyclipping>)->Apply(sizes);
  row("grow", "polyclipping", growRow<Polyclipping>)->Apply(sizes);
  addLists<Polyclipping>("polyclipping", counts);
#endif
  return true;
}();

}  // namespace
