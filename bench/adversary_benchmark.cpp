// Is anything ever slower than looking at everything once?  Outlines made to be awkward for indexes
// (adversaries.h), and ordinary ones too small for an index to pay.
//
// `adversary_<shape>_<operation>/ours|plain/<n>`: one question to a fresh shape that knows nothing, so
// that whatever the answer is hurried along with has to be made too; n points.  Ours may take twice
// as long as the plain form there.  `small_<operation>`: the same for gx_wobblyOutline of 3 to 64
// points, where ours may take as long as the plain form and five percent.
//
// The plain forms are the definitions step by step (tests/support), or, where those make all edges
// anew for each of many steps, the scans that make them once (plain_scan.h, plain_once.h); the hull
// is the textbook's (plain_hull.h).  Where ours answers with a region, so does the plain form.  Before the timing both parties' answers are compared bit for bit,
// moments excepted; an operation that throws must throw on both sides.
//
// 10,000 points are left out where the plain form would take more than some seconds: crossings of
// tangles and lines with their like, which are millions, and the repair of outlines that cross
// themselves.  Stopping the timer costs both parties the same, and the shapes of a pool are
// different (first_calls.h): they begin at different vertices and are turned.
#include "adversaries.h"
#include "first_calls.h"
#include "plain_hull.h"
#include "plain_once.h"
#include "plain_scan.h"

#include <benchmark/benchmark.h>
#include <cntr/region.h>
#include <support/slow_truth_region.h>
#include <support/slow_truth_stats.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <map>
#include <string>
#include <vector>

namespace {

using Points = std::vector<gxVector<2>>;

// ---- The operations ------------------------------------------------------------------------------
//
// Each answers with one number: what is asked for, or the sum of all its coordinates in order.

struct Ours {
  gxRegion shape;
  gxRegion other;  // for outline against outline, else without points
  gx_Questions questions;
};
struct Plain {
  Points shape;
  Points other;
  gx_Questions questions;
};

double sum(const Points& points) {
  double total = 0.0;
  for (const gxVector<2>& p : points) total += p.x() + p.y();
  return total;
}
double sum(const gxVector<2>& p) {
  return p.x() + p.y();
}
double sum(const std::vector<int>& numbers) {
  double total = 0.0;
  for (const int number : numbers) total += number;
  return total;
}
double sum(const gxMatrix<2>& m) {
  return m.m00() + m.m01() + m.m11();
}

gxXform<2> turned() {
  return {gxMatrix<2>(gxRadian(0.5), gxRadian(0.5), 1.0, 1.0), {0.0, 0.0}};
}

constexpr double kTolerance = 1.0;  // vertices within

struct Operation {
  const char* name;
  double (*ours)(const Ours&);
  double (*plain)(const Plain&);
  bool quadratic = false;  // for the plain form
};

double oursHull(const Ours& s) {
  gxRegion hull;
  s.shape.convexHull(hull);
  return sum(hull.points());
}

double oursRegularize(const Ours& s) {
  gxRegion result;
  s.shape.regularize(result);
  return sum(result.points());
}

double plainOutlines(const Plain& s) {
  const gx_PlainScan scan(s.shape);
  Points hits;
  gxVector<2> from = s.other.back();
  for (const gxVector<2>& to : s.other) {
    const Points more = scan.intersections(gxLineSeg(from, to), true).points;
    hits.insert(hits.end(), more.begin(), more.end());
    from = to;
  }
  return sum(hits);
}

// clang-format off
const std::vector<Operation> kOperations{
    {"length",
     [](const Ours& s) { return s.shape.length(); },
     [](const Plain& s) { return slow::length({s.shape, true}); }},
    {"area",
     [](const Ours& s) { return s.shape.area(false); },
     [](const Plain& s) { return slow::area(s.shape); }},
    {"centre",
     [](const Ours& s) { return sum(s.shape.centerOfMass(false)); },
     [](const Plain& s) { return sum(slow::centerOfMass(s.shape)); }},
    {"moments",
     [](const Ours& s) { return sum(s.shape.inertiaMatrix(false)); },
     [](const Plain& s) { return sum(slow::polygonMoments(s.shape).matrix); }},
    {"rectangle",
     [](const Ours& s) { return sum(s.shape.encloseRect(turned()).size()); },
     [](const Plain& s) { return sum(slow::encloseRect(s.shape, turned()).size()); }},
    {"hull",
     oursHull,
     [](const Plain& s) { return sum(gxRegion(gx_plainHull(s.shape)).points()); }},
    {"farthest_pair",
     [](const Ours& s) { return s.shape.diameter(gxContourDefs::eAllPairs); },
     [](const Plain& s) { return slow::diameter(s.shape, gxContourDefs::eAllPairs); },
     true},
    {"containment",
     [](const Ours& s) { return s.shape.inside(s.questions.middle, true) ? 1.0 : 0.0; },
     [](const Plain& s) { return gx_PlainScan(s.shape).inside(s.questions.middle) ? 1.0 : 0.0; }},
    {"nearest_point",
     [](const Ours& s) { return sum(s.shape.closestPoint(s.questions.middle, false)); },
     [](const Plain& s) { return sum(gx_plainNearestPoint(s.shape, s.questions.middle)); }},
    {"nearest_vertex",
     [](const Ours& s) { return sum(s.shape.closestPoint(s.questions.middle, true)); },
     [](const Plain& s) { return sum(gx_plainNearestVertex(s.shape, s.questions.middle)); }},
    {"vertices_within",
     [](const Ours& s) { return sum(s.shape.vertexIndex(s.questions.nearby, kTolerance)); },
     [](const Plain& s) { return sum(slow::vertexIndex(s.shape, s.questions.nearby, kTolerance)); }},
    {"segment",
     [](const Ours& s) { return sum(s.shape.gxContour::intersections(s.questions.across, true)); },
     [](const Plain& s) {
       return sum(gx_PlainScan(s.shape).intersections(s.questions.across, true).points);
     }},
    {"self_intersection",
     [](const Ours& s) { return s.shape.isSelfIntersecting() ? 1.0 : 0.0; },
     [](const Plain& s) { return gx_PlainScan(s.shape).isSelfIntersecting() ? 1.0 : 0.0; },
     true},
    {"outline_outline",
     [](const Ours& s) { return sum(s.shape.gxContour::intersections(s.other)); },
     plainOutlines,
     true},
    {"regularize",
     oursRegularize,
     [](const Plain& s) { return sum(gxRegion(gx_plainRegularize(s.shape)).points()); },
     true},
};
// clang-format on

// ---- Asking --------------------------------------------------------------------------------------

constexpr double kThrew = -12345.678;

// The answer, or kThrew.
template <class Party>
double answer(double (*ask)(const Party&), const Party& shape) {
  try {
    return ask(shape);
  } catch (const gxException&) {
    return kThrew;
  }
}

struct Row {
  std::string shape;
  Operation operation;
};

bool needsOther(const Row& row) {
  return std::string(row.operation.name) == "outline_outline";
}

template <class Party>
Party partyOf(const Row& row, const Points& points) {
  using Shape = decltype(Party::shape);
  return {Shape(points), Shape(needsOther(row) ? gx_turned(points, 0.01, {0.5, 0.5}) : Points()),
          gx_questionsTo(points)};
}

// Equal bits; moments equal to 1e-9, or nothing beside the size of the outline.
bool sameAnswer(const Row& row, const Points& points, double ours, double plain) {
  if (std::isnan(ours) && std::isnan(plain)) return true;
  if (std::bit_cast<std::uint64_t>(ours) == std::bit_cast<std::uint64_t>(plain)) return true;
  if (std::string(row.operation.name) != "moments") return false;
  double size = 1.0;
  for (const gxVector<2>& p : points) size = std::max({size, std::abs(p.x()), std::abs(p.y())});
  return std::abs(ours - plain) <= 1e-9 * std::abs(plain) + 1e-12 * size * size * size * size;
}

// Compares the parties' answers, once a row.
bool isFair(benchmark::State& state, const Row& row, const Points& points) {
  static std::map<std::string, std::string> found;
  const std::string key = row.shape + " " + row.operation.name + " " + std::to_string(state.range(0));
  if (found.find(key) == found.end()) {
    const double ours = answer(row.operation.ours, partyOf<Ours>(row, points));
    const double plain = answer(row.operation.plain, partyOf<Plain>(row, points));
    found[key] = sameAnswer(row, points, ours, plain)
                     ? ""
                     : "answers " + std::to_string(ours) + " instead of " + std::to_string(plain);
  }
  if (found[key].empty()) return true;
  state.SkipWithError(found[key].c_str());
  return false;
}

// The outline from another vertex on, and turned, where it stays what it is then.
Points variant(const std::string& name, const Points& points, std::int64_t number) {
  if (number == 0) return points;
  Points shape = points;
  const auto count = static_cast<std::int64_t>(points.size());
  std::rotate(shape.begin(), shape.begin() + number * 37 % count, shape.end());
  const bool turns = name == "smooth" || name == "polygon" || name == "spiral" || name == "tangle";
  return turns ? gx_turned(shape, static_cast<double>(number), {0.0, 0.0}) : shape;
}

template <class Party>
void run(benchmark::State& state, const Row& row, double (*ask)(const Party&)) {
  const std::int64_t count = state.range(0);
  const Points points = gx_adversary(row.shape, count);
  if (!isFair(state, row, points)) return;
  const std::int64_t size =
      row.operation.quadratic ? std::clamp<std::int64_t>(1024 / count, 1, 64) : gx_poolSize(count, 256);
  const auto make = [&](std::int64_t number) {
    return partyOf<Party>(row, variant(row.shape, points, number));
  };
  gx_timePool(state, gx_Pool::eAnew, size, make,
              [&](const Party& shape) { benchmark::DoNotOptimize(answer(ask, shape)); });
  state.SetItemsProcessed(state.iterations());
}

// ---- The rows ------------------------------------------------------------------------------------

void addRows(const std::string& family, const Row& row, const std::vector<std::int64_t>& sizes) {
  const auto add = [&](const std::string& party, auto ask) {
    benchmark::internal::Benchmark* const added =
        benchmark::RegisterBenchmark((family + row.operation.name + "/" + party).c_str(),
                                     [row, ask](benchmark::State& state) { run(state, row, ask); });
    added->MinTime(0.02);
    for (const std::int64_t size : sizes) added->Arg(size);
  };
  add("ours", row.operation.ours);
  add("plain", row.operation.plain);
}

// Would the plain form of 10,000 points take too long?
bool isHopeless(const Row& row) {
  const std::string operation = row.operation.name;
  const bool crosses = row.shape == "tangle" || row.shape == "line";
  if (operation == "outline_outline") return crosses;
  return operation == "regularize" && (crosses || row.shape == "outlier" || row.shape == "nan");
}

const bool kRegistered = [] {
  for (const Operation& operation : kOperations) {
    for (const std::string& shape : gx_adversaryNames()) {
      const Row row{shape, operation};
      std::vector<std::int64_t> sizes{64, 1000};
      if (!isHopeless(row)) sizes.push_back(10000);
      addRows("adversary_" + shape + "_", row, sizes);
    }
    addRows("small_", {"smooth", operation}, {3, 8, 16, 64});
  }
  return true;
}();

}  // namespace
