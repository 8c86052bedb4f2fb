// What do repair and the question whether outlines meet cost where input is made awkward for them?  Each
// row was once quadratic here, or is the dearest that is known.
//
// repair_loops: a circle of 1,500 pixels of n vertices, every 20th of which is a small loop outside, so that
//   an edge to begin at is hard to find: nearly every ray along the rim meets a loop.  Per point.
// repair_turns: an outline that goes around seven times, farther out each time, and is crossed by its
//   closing edge.  Per point.  Ours keeps another part of it than a union does.
// combs_meet: two combs of n teeth laid across each other, whose edges cross in 4 n² places: do they meet?
// equal_set: a set that holds one triangle n times, repaired; for the peers its union.  Per region.
// clustered_set: n unit squares thrown into a square of side √n, so that most lie on some others; the same.
//   Per region.  The repair of a set is not the union, and refuses two of five such sets of 6,400 squares as an
//   invalid contour, those of seeds 7 and 11 among 7 to 11: docs/repair.md.
//
//  ours          gxRegion::regularize, gxRegionSet::isSelfIntersecting and gxRegionSet::regularize, of fresh
//                shapes.
//  geos          MakeValid; intersects() of the rings; the union of a collection.
//  polyclipping  SimplifyPolygon and union, non-zero, scaled to the range in which it multiplies in 64 bits.
//                Rows of it that would take more than some seconds are left out.
#include <cntr/region.h>
#include <cntr/regionst.h>

#include "outlines.h"
#include "rows.h"

#ifdef GXSHAPE_HAVE_GEOS
#  include "geos_outline.h"

#  include <geos/geom/MultiPolygon.h>
#  include <geos/operation/valid/MakeValid.h>
#endif
#ifdef GXSHAPE_HAVE_POLYCLIPPING
#  include <polyclipping/clipper.hpp>
#endif

#include <cmath>
#include <random>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Outlines = std::vector<Points>;
using Handle = gxPtrHandle_const<gxRegion>;

constexpr double kPi = 3.141592653589793;

// ---- The input ----------------------------------------------------------------------------------

Points loops(std::int64_t count) {
  Points points;
  const double step = 2.0 * kPi / static_cast<double>(count);
  const double edge = 1500.0 * step;
  for (std::int64_t i = 0; i < count; ++i) {
    const double angle = static_cast<double>(i) * step;
    const V out(std::cos(angle), std::sin(angle));
    const V along(-out.y(), out.x());
    const V at = out * 1500.0;
    if (i % 20 != 10) {
      points.push_back(at);
      continue;
    }
    points.insert(points.end(),
                  {at + along * (0.5 * edge), at + out * (0.8 * edge), at - along * (0.5 * edge)});
  }
  return points;
}

Points turns(std::int64_t count) {
  Points points;
  for (std::int64_t i = 0; i < count; ++i) {
    const double turn = 7.0 * static_cast<double>(i) / static_cast<double>(count);
    const double radius = 1000.0 + 40.0 * turn + 3.0 * std::sin(74.0 * kPi * turn);
    points.emplace_back(radius * std::cos(2.0 * kPi * turn), radius * std::sin(2.0 * kPi * turn));
  }
  return points;
}

Outlines combs(std::int64_t teeth) {
  Points along;
  Points across;
  const auto length = static_cast<double>(teeth);
  for (std::int64_t i = 0; i < teeth; ++i) {
    const double place = 2.0 * static_cast<double>(i);
    for (const V& p : {V(place + 1.0, 0.0), V(place + 1.5, 2.0 * length), V(place + 2.0, 0.0)}) {
      along.push_back(p);
      across.emplace_back(p.y(), p.x());
    }
  }
  along.emplace_back(length, -1.0);
  across.emplace_back(-1.0, length);
  return {along, across};
}

Outlines equal(std::int64_t count) {
  return Outlines(static_cast<std::size_t>(count), Points{{0.0, 0.0}, {10.0, 1.0}, {3.0, 8.0}});
}

Outlines clustered(std::int64_t count) {
  std::mt19937_64 engine(8);
  std::uniform_real_distribution<double> place(0.0, std::sqrt(static_cast<double>(count)));
  Outlines outlines;
  for (std::int64_t i = 0; i < count; ++i) {
    const double x = place(engine);
    const double y = place(engine);
    outlines.push_back({{x, y}, {x + 1.0, y}, {x + 1.0, y + 1.0}, {x, y + 1.0}});
  }
  return outlines;
}

std::vector<Handle> regionsOf(const Outlines& outlines) {
  std::vector<Handle> handles;
  handles.reserve(outlines.size());
  for (const Points& outline : outlines) handles.emplace_back(new gxRegion(outline));
  return handles;
}

// ---- Ours ---------------------------------------------------------------------------------------

template <Points (*Make)(std::int64_t)>
void oursRepair(benchmark::State& state) {
  const Points outline = Make(state.range(0));
  std::size_t left = 0;
  gx_timeFirst(
      state, [&outline] { return std::make_unique<gxRegion>(outline); },
      [&left](const gxRegion& region) {
        gxRegion result;
        region.regularize(result);
        return left = result.points().size();
      });
  gx_agree(state, 1.0, left > 2 ? 1.0 : 0.0);
}

void oursMeet(benchmark::State& state) {
  const Outlines outlines = combs(state.range(0));
  bool meet = false;
  gx_timeFirst(
      state, 6 * state.range(0), 1,
      [&outlines] { return std::make_unique<gxRegionSet>(regionsOf(outlines)); },
      [&meet](const gxRegionSet& set) { return meet = set.isSelfIntersecting(); });
  gx_agree(state, 1.0, meet ? 1.0 : 0.0);
}

template <Outlines (*Make)(std::int64_t)>
void oursSet(benchmark::State& state) {
  const Outlines outlines = Make(state.range(0));
  std::size_t left = 0;
  gx_timeFirst(
      state, 4 * state.range(0), state.range(0),
      [&outlines] { return std::make_unique<gxRegionSet>(regionsOf(outlines)); },
      [&left](const gxRegionSet& set) {
        gxRegionSet result;
        set.regularize(result);
        return left = result.regions().size();
      });
  gx_agree(state, 1.0, left > 0 ? 1.0 : 0.0);
}

// ---- Peers --------------------------------------------------------------------------------------

// Times something that returns whether it found anything.
template <class Run>
void timePeer(benchmark::State& state, std::int64_t items, const Run& run) {
  if (!gx_agree(state, 1.0, run() ? 1.0 : 0.0)) return;
  for ([[maybe_unused]] const auto _ : state) benchmark::DoNotOptimize(run());
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * items);
}

#ifdef GXSHAPE_HAVE_GEOS
template <Points (*Make)(std::int64_t)>
void geosRepair(benchmark::State& state) {
  const auto polygon = gx_geosPolygon(Make(state.range(0)));
  timePeer(state, state.range(0),
           [&polygon] { return !geos::operation::valid::MakeValid().build(polygon.get())->isEmpty(); });
}

void geosMeet(benchmark::State& state) {
  const Outlines outlines = combs(state.range(0));
  const auto one = gx_geosRing(outlines[0]);
  const auto other = gx_geosRing(outlines[1]);
  timePeer(state, 1, [&] { return one->intersects(other.get()); });
}

template <Outlines (*Make)(std::int64_t)>
void geosSet(benchmark::State& state) {
  std::vector<std::unique_ptr<geos::geom::Polygon>> polygons;
  for (const Points& outline : Make(state.range(0))) polygons.push_back(gx_geosPolygon(outline));
  const auto all =
      geos::geom::GeometryFactory::getDefaultInstance()->createMultiPolygon(std::move(polygons));
  timePeer(state, state.range(0), [&all] { return !all->Union()->isEmpty(); });
}
#endif

#ifdef GXSHAPE_HAVE_POLYCLIPPING
// Up to 2^30 - 1 it multiplies in 64 bits, beyond in 128.
ClipperLib::Path scaled(const Points& outline, double reach) {
  ClipperLib::Path path;
  for (const V& p : outline) {
    path.emplace_back(std::llround(p.x() * (1e9 / reach)), std::llround(p.y() * (1e9 / reach)));
  }
  return path;
}

template <Points (*Make)(std::int64_t)>
void polyclippingRepair(benchmark::State& state) {
  const ClipperLib::Path path = scaled(Make(state.range(0)), 2000.0);
  timePeer(state, state.range(0), [&path] {
    ClipperLib::Paths result;
    ClipperLib::SimplifyPolygon(path, result, ClipperLib::pftNonZero);
    return !result.empty();
  });
}

template <Outlines (*Make)(std::int64_t)>
void polyclippingSet(benchmark::State& state) {
  ClipperLib::Paths paths;
  for (const Points& outline : Make(state.range(0))) paths.push_back(scaled(outline, 200.0));
  timePeer(state, state.range(0), [&paths] {
    ClipperLib::Clipper clipper;
    clipper.AddPaths(paths, ClipperLib::ptSubject, true);
    ClipperLib::Paths result;
    clipper.Execute(ClipperLib::ctUnion, result, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
    return !result.empty();
  });
}
#endif

// ---- The rows -----------------------------------------------------------------------------------

template <std::int64_t Largest>
void outlineSizes(gx_Benchmark* row) {
  for (const std::int64_t n : {1000, 10000, 100000}) {
    if (n <= Largest) row->Arg(n);
  }
  row->MinTime(0.1);
}

template <std::int64_t Largest>
void setSizes(gx_Benchmark* row) {
  for (const std::int64_t n : {100, 400, 1600, 6400}) {
    if (n <= Largest) row->Arg(n);
  }
  row->MinTime(0.1);
}

void teeth(gx_Benchmark* row) {
  row->Arg(400)->Arg(4000)->MinTime(0.1);
}

BENCHMARK(oursRepair<loops>)->Name("repair_loops/ours")->Apply(outlineSizes<100000>);
BENCHMARK(oursRepair<turns>)->Name("repair_turns/ours")->Apply(outlineSizes<10000>);
BENCHMARK(oursMeet)->Name("combs_meet/ours")->Apply(teeth);
BENCHMARK(oursSet<equal>)->Name("equal_set/ours")->Apply(setSizes<6400>);
BENCHMARK(oursSet<clustered>)->Name("clustered_set/ours")->Apply(setSizes<6400>);
#ifdef GXSHAPE_HAVE_GEOS
BENCHMARK(geosRepair<loops>)->Name("repair_loops/geos")->Apply(outlineSizes<10000>);
BENCHMARK(geosRepair<turns>)->Name("repair_turns/geos")->Apply(outlineSizes<10000>);
BENCHMARK(geosMeet)->Name("combs_meet/geos")->Apply(teeth);
BENCHMARK(geosSet<equal>)->Name("equal_set/geos")->Apply(setSizes<6400>);
BENCHMARK(geosSet<clustered>)->Name("clustered_set/geos")->Apply(setSizes<6400>);
#endif
#ifdef GXSHAPE_HAVE_POLYCLIPPING
BENCHMARK(polyclippingRepair<loops>)->Name("repair_loops/polyclipping")->Apply(outlineSizes<10000>);
BENCHMARK(polyclippingRepair<turns>)->Name("repair_turns/polyclipping")->Apply(outlineSizes<10000>);
BENCHMARK(polyclippingSet<equal>)->Name("equal_set/polyclipping")->Apply(setSizes<1600>);
BENCHMARK(polyclippingSet<clustered>)->Name("clustered_set/polyclipping")->Apply(setSizes<6400>);
#endif

}  // namespace
