// 20,000 small outlines: coins, countries, glyphs and uneven rings of 5 to 120 points (small_outlines.h),
// from bare points to the answer, as a program does that sees each shape once.
//
// An item is an outline.  In every row a party makes its own kind of outline from a vector of points in
// double precision, asks, and throws the outline away; so what a library keeps beside the points, and the
// index that it makes for few questions, are in the time.  The parties of a row take turns, pass by pass
// over all outlines, and each keeps its best pass: so a load on the machine that comes and goes meets all.
// What a row reports is manual time: the passes run when its first party is asked.
//
//   - ours: gxContour or gxRegion, what the question belongs to; `ours_many` the bulk form, over
//     all points in one array.
//   - OpenCV: vectors of single-precision points and the functions of imgproc.
//   - Boost.Geometry: a ring of doubles, its last point the first once more.
//   - GEOS: a polygon or ring of the default factory, and the algorithm of the question by itself where
//     there is one.
//   - cereal: one block of bytes over a string stream, as in archive_benchmark.
// Before a row's times count, the sums of its answers are compared.
#include "small_outlines.h"

#include <benchmark/benchmark.h>
#include <cntr/region.h>
#include <cntr/shapestat.h>
#include <gauge/measure_many.h>
#include <velstd/archive.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <map>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#ifdef GXSHAPE_HAVE_GEOS
#  include "geos_outline.h"

#  include <geos/algorithm/Centroid.h>
#  include <geos/algorithm/ConvexHull.h>
#  include <geos/algorithm/PointLocation.h>
#  include <geos/geom/Envelope.h>
#endif
#ifdef GXSHAPE_HAVE_BOOST
#  include <boost/geometry.hpp>
#  include <boost/geometry/geometries/geometries.hpp>
#endif
#ifdef GXSHAPE_HAVE_OPENCV
#  include <opencv2/imgproc.hpp>
#endif
#ifdef GXSHAPE_HAVE_CEREAL
#  include <cereal/archives/binary.hpp>
#endif

namespace {

using Points = std::vector<gxVector<2>>;

// ---- Rows ----------------------------------------------------------------------------------------

// A pass over all outlines: returns the sum of the answers.
using Pass = std::function<double()>;

struct Party {
  const char* name;
  Pass pass;
  double best = std::numeric_limits<double>::infinity();  // seconds
  double sum = 0.0;
};

struct Row {
  std::vector<Party> parties;
  std::size_t outlines = gx_kSmallOutlines;
  int passes = 7;
  double tolerance = 0.0;  // by how much of ours the sum of a peer's answers may be off
  bool measured = false;
};

std::map<std::string, Row>& rows() {
  static std::map<std::string, Row> all;
  return all;
}

void measure(Row& row) {
  for (int pass = 0; pass < row.passes; ++pass) {
    for (Party& party : row.parties) {
      const auto start = std::chrono::steady_clock::now();
      party.sum = party.pass();
      const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
      party.best = std::min(party.best, spent.count());
    }
  }
  row.measured = true;
}

void report(benchmark::State& state, Row& row, const Party& party) {
  if (!row.measured) measure(row);
  const double expected = row.parties.front().sum;
  const bool agrees = std::abs(party.sum - expected) <= row.tolerance * std::abs(expected);
  for ([[maybe_unused]] const auto _ : state) state.SetIterationTime(party.best);
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(row.outlines));
  if (!agrees) {
    state.SkipWithError(
        ("sums to " + std::to_string(party.sum) + " instead of " + std::to_string(expected)).c_str());
  }
}

// Makes a party of a row: `ask(points, i)` answers for outline i.
template <class Ask>
void addParty(const std::string& row, const char* name, const Ask& ask) {
  const std::size_t count = rows()[row].outlines;
  rows()[row].parties.push_back({name, [ask, count] {
                                   double sum = 0.0;
                                   const auto& outlines = gx_smallOutlines();
                                   for (std::size_t i = 0; i < count; ++i) sum += ask(outlines[i], i);
                                   return sum;
                                 }});
}

void registerRows() {
  for (auto& [name, row] : rows()) {
    for (std::size_t k = 0; k < row.parties.size(); ++k) {
      const std::string full =
          "many_" + name + "/" + row.parties[k].name + "/" + std::to_string(row.outlines);
      Row* const its = &row;
      benchmark::RegisterBenchmark(
          full.c_str(), [its, k](benchmark::State& state) { report(state, *its, its->parties[k]); })
          ->UseManualTime()
          ->Iterations(1);
    }
  }
}

// ---- What is asked -------------------------------------------------------------------------------

constexpr std::size_t kQueries = 10;

const std::vector<Points>& queries() {
  static const std::vector<Points> all = [] {
    std::vector<Points> made;
    for (const Points& outline : gx_smallOutlines()) made.push_back(gx_pointsAcross(outline, kQueries));
    return made;
  }();
  return all;
}

void setRows() {
  constexpr double kDouble = 1e-9;
  constexpr double kSingle = 2e-3;
  rows()["make"].tolerance = kSingle;
  rows()["area_centre"].tolerance = kSingle;
  rows()["measures"].tolerance = kSingle;
  rows()["hull"].tolerance = 2e-2;  // corners: single precision has more on one line
  rows()["inside_ten"].tolerance = kSingle;
  rows()["inside_one"].tolerance = kSingle;
  rows()["self_intersection"].tolerance = 5e-2;  // what touches itself at a point
  rows()["store"].tolerance = 1.0;
  rows()["load"].tolerance = kDouble;
  Row& ellipse = rows()["ellipse"];
  ellipse.tolerance = std::numeric_limits<double>::infinity();  // different fits
  ellipse.outlines = gx_kSmallOutlines / 10;
}

double asNumber(bool yes) {
  return yes ? 1.0 : 0.0;
}

// ---- Ours ----------------------------------------------------------------------------------------

double measuresOf(double area, double length, double width, double x, double moments) {
  return area + length + width + x + 0.001 * moments;
}

double containmentsOurs(const Points& points, const Points& asked, std::size_t count) {
  const gxRegion region(points);
  double inside = 0.0;
  for (std::size_t k = 0; k < count; ++k) inside += asNumber(region.inside(asked[k], false));
  return inside;
}

std::vector<std::vector<unsigned char>> storedOurs() {
  std::vector<std::vector<unsigned char>> all;
  for (const Points& points : gx_smallOutlines()) {
    gxArchive archive;
    archive.store(gxContour(points));
    all.emplace_back(archive.bytes().begin(), archive.bytes().end());
  }
  return all;
}

void addOurs() {
  addParty("make", "ours", [](const Points& p, std::size_t) { return gxContour(p).points()[1].x(); });
  addParty("area_centre", "ours", [](const Points& p, std::size_t) {
    const gxRegion region(p);
    const gxVector<2> centre = region.centerOfMass(false);
    return region.area(false) + centre.x();
  });
  addParty("measures", "ours", [](const Points& p, std::size_t) {
    const gxRegion region(p);
    const gxVector<2> centre = region.centerOfMass(false);
    const gxMatrix<2> inertia = region.inertiaMatrix(false);
    const gxRect box = region.encloseRect(gxXform<2>());
    return measuresOf(region.area(false), region.length(), box.size().x(), centre.x(),
                      inertia.m00() + inertia.m11());
  });
  addParty("hull", "ours", [](const Points& p, std::size_t) {
    return static_cast<double>(gxContour(p).convexHull().points().size());
  });
  addParty("inside_ten", "ours",
           [](const Points& p, std::size_t i) { return containmentsOurs(p, queries()[i], kQueries); });
  addParty("inside_one", "ours",
           [](const Points& p, std::size_t i) { return containmentsOurs(p, queries()[i], 1); });
  addParty("self_intersection", "ours",
           [](const Points& p, std::size_t) { return asNumber(gxContour(p).isSelfIntersecting()); });
  addParty("ellipse", "ours", [](const Points& p, std::size_t) {
    gxEllipse ellipse;
    double residual = 0.0;
    gf_FitEllipse(p, ellipse, residual);
    return ellipse.geom().radii.x();
  });
  addParty("store", "ours", [](const Points& p, std::size_t) {
    gxArchive archive;
    archive.store(gxContour(p));
    return static_cast<double>(archive.bytes().size());
  });
  addParty("load", "ours", [](const Points&, std::size_t i) {
    static const auto all = storedOurs();
    gxArchive archive(all[i]);
    gxContour contour;
    archive.load(contour);
    return contour.points()[1].x();
  });
}

// ---- Ours, all in one call ------------------------------------------------------------------------

// Points one after the other, and where each list begins.
struct Ragged {
  explicit Ragged(const std::vector<Points>& lists) {
    for (const Points& list : lists) {
      points.insert(points.end(), list.begin(), list.end());
      offsets.push_back(points.size());
    }
  }
  gxOutlines all() const { return {points, offsets}; }

  Points points;
  std::vector<std::size_t> offsets{0};
};

const Ragged& raggedOutlines() {
  static const Ragged all(gx_smallOutlines());
  return all;
}
const Ragged& raggedQueries() {
  static const Ragged all(queries());
  return all;
}

void addOursTogether() {
  const auto add = [](const char* row, const Pass& pass) {
    rows()[row].parties.push_back({"ours_many", pass});
  };
  add("area_centre", [] {
    const gxAreaColumns c = gfAreasMany(raggedOutlines().all());
    double sum = 0.0;
    for (std::size_t k = 0; k < c.size(); ++k) sum += c.area[k] + c.centreX[k];
    return sum;
  });
  add("measures", [] {
    const gxMeasureColumns c = gfMeasureMany(raggedOutlines().all());
    double sum = 0.0;
    for (std::size_t k = 0; k < c.size(); ++k) {
      sum += measuresOf(c.area[k], c.length[k], c.boxXMax[k] - c.boxXMin[k], c.centreX[k],
                        c.moment20[k] + c.moment02[k]);
    }
    return sum;
  });
  add("hull", [] { return static_cast<double>(gfHullsMany(raggedOutlines().all()).points.size()); });
  add("inside_ten", [] {
    double sum = 0.0;
    for (const gxState state : gfLocateMany(raggedOutlines().all(), raggedQueries().all())) {
      sum += asNumber(state != gxState::eOutside);
    }
    return sum;
  });
}

// ---- OpenCV --------------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_OPENCV
std::vector<cv::Point2f> opencvOf(const Points& points) {
  std::vector<cv::Point2f> result;
  result.reserve(points.size());
  for (const gxVector<2>& p : points) {
    result.emplace_back(static_cast<float>(p.x()), static_cast<float>(p.y()));
  }
  return result;
}

double containmentsOpencv(const Points& points, const Points& asked, std::size_t count) {
  const auto outline = opencvOf(points);
  double inside = 0.0;
  for (std::size_t k = 0; k < count; ++k) {
    const cv::Point2f at(static_cast<float>(asked[k].x()), static_cast<float>(asked[k].y()));
    inside += asNumber(cv::pointPolygonTest(outline, at, false) >= 0.0);
  }
  return inside;
}

void addOpencvFit(const char* name, cv::RotatedRect (*fit)(cv::InputArray)) {
  addParty("ellipse", name, [fit](const Points& p, std::size_t) {
    return static_cast<double>(fit(opencvOf(p)).size.height) / 2.0;
  });
}

void addOpencv() {
  addParty("make", "opencv",
           [](const Points& p, std::size_t) { return static_cast<double>(opencvOf(p)[1].x); });
  addParty("area_centre", "opencv", [](const Points& p, std::size_t) {
    const cv::Moments m = cv::moments(opencvOf(p));
    return m.m00 + m.m10 / m.m00;
  });
  addParty("measures", "opencv", [](const Points& p, std::size_t) {
    const auto outline = opencvOf(p);
    const cv::Moments m = cv::moments(outline);
    const double length = cv::arcLength(outline, true);
    const cv::Rect box = cv::boundingRect(outline);  // of whole pixels
    return measuresOf(m.m00, length, box.width - 1.0, m.m10 / m.m00, m.mu20 + m.mu02);
  });
  addParty("hull", "opencv", [](const Points& p, std::size_t) {
    std::vector<cv::Point2f> hull;
    cv::convexHull(opencvOf(p), hull);
    return static_cast<double>(hull.size());
  });
  addParty("inside_ten", "opencv",
           [](const Points& p, std::size_t i) { return containmentsOpencv(p, queries()[i], kQueries); });
  addParty("inside_one", "opencv",
           [](const Points& p, std::size_t i) { return containmentsOpencv(p, queries()[i], 1); });
  addOpencvFit("opencv", cv::fitEllipse);
  addOpencvFit("opencv_ams", cv::fitEllipseAMS);
  addOpencvFit("opencv_direct", cv::fitEllipseDirect);
}
#else
void addOpencv() {}
#endif

// ---- Boost.Geometry ------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_BOOST
namespace bg = boost::geometry;
using BoostPoint = bg::model::d2::point_xy<double>;
using BoostRing = bg::model::ring<BoostPoint, false, true>;

BoostRing boostOf(const Points& points) {
  BoostRing ring;
  ring.reserve(points.size() + 1);
  for (const gxVector<2>& p : points) ring.emplace_back(p.x(), p.y());
  ring.push_back(ring.front());
  return ring;
}

double containmentsBoost(const Points& points, const Points& asked, std::size_t count) {
  const BoostRing ring = boostOf(points);
  double inside = 0.0;
  for (std::size_t k = 0; k < count; ++k) {
    inside += asNumber(bg::covered_by(BoostPoint(asked[k].x(), asked[k].y()), ring));
  }
  return inside;
}

void addBoost() {
  addParty("make", "boost", [](const Points& p, std::size_t) { return boostOf(p)[1].x(); });
  addParty("area_centre", "boost", [](const Points& p, std::size_t) {
    const BoostRing ring = boostOf(p);
    BoostPoint centre(0.0, 0.0);
    bg::centroid(ring, centre);
    return std::abs(bg::area(ring)) + centre.x();
  });
  addParty("hull", "boost", [](const Points& p, std::size_t) {
    BoostRing hull;
    bg::convex_hull(boostOf(p), hull);
    return static_cast<double>(hull.size()) - 1.0;
  });
  addParty("inside_ten", "boost",
           [](const Points& p, std::size_t i) { return containmentsBoost(p, queries()[i], kQueries); });
  addParty("inside_one", "boost",
           [](const Points& p, std::size_t i) { return containmentsBoost(p, queries()[i], 1); });
  addParty("self_intersection", "boost",
           [](const Points& p, std::size_t) { return asNumber(bg::intersects(boostOf(p))); });
}
#else
void addBoost() {}
#endif

// ---- GEOS ----------------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_GEOS
double containmentsGeos(const Points& points, const Points& asked, std::size_t count) {
  const auto ring = gx_geosSequence(points);
  double inside = 0.0;
  for (std::size_t k = 0; k < count; ++k) {
    const geos::geom::Coordinate at(asked[k].x(), asked[k].y());
    inside += asNumber(geos::algorithm::PointLocation::isInRing(at, ring.get()));
  }
  return inside;
}

void addGeos() {
  addParty("make", "geos",
           [](const Points& p, std::size_t) { return gx_geosRing(p)->getCoordinateN(1).x; });
  addParty("area_centre", "geos", [](const Points& p, std::size_t) {
    const auto polygon = gx_geosPolygon(p);
    geos::geom::Coordinate centre;
    geos::algorithm::Centroid::getCentroid(*polygon, centre);
    return polygon->getArea() + centre.x;
  });
  addParty("hull", "geos", [](const Points& p, std::size_t) {
    const auto ring = gx_geosRing(p);
    const auto hull = geos::algorithm::ConvexHull(ring.get()).getConvexHull();
    return static_cast<double>(hull->getNumPoints()) - 1.0;
  });
  addParty("inside_ten", "geos",
           [](const Points& p, std::size_t i) { return containmentsGeos(p, queries()[i], kQueries); });
  addParty("inside_one", "geos",
           [](const Points& p, std::size_t i) { return containmentsGeos(p, queries()[i], 1); });
  addParty("self_intersection", "geos",
           [](const Points& p, std::size_t) { return asNumber(!gx_geosRing(p)->isSimple()); });
}
#else
void addGeos() {}
#endif

// ---- cereal --------------------------------------------------------------------------------------

#ifdef GXSHAPE_HAVE_CEREAL
void addCereal() {
  addParty("store", "cereal", [](const Points& p, std::size_t) {
    std::ostringstream stream;
    cereal::BinaryOutputArchive archive(stream);
    archive(true, std::uint32_t{0}, std::uint64_t{p.size()});
    archive(cereal::binary_data(p.data(), p.size() * sizeof p[0]));
    return static_cast<double>(stream.tellp());
  });
  addParty("load", "cereal", [](const Points&, std::size_t i) {
    static const auto all = [] {
      std::vector<std::string> stored;
      for (const Points& p : gx_smallOutlines()) {
        std::ostringstream stream;
        cereal::BinaryOutputArchive archive(stream);
        archive(true, std::uint32_t{0}, std::uint64_t{p.size()});
        archive(cereal::binary_data(p.data(), p.size() * sizeof p[0]));
        stored.push_back(stream.str());
      }
      return stored;
    }();
    std::istringstream stream(all[i]);
    cereal::BinaryInputArchive archive(stream);
    bool closed = false;
    std::uint32_t label = 0;
    std::uint64_t size = 0;
    archive(closed, label, size);
    Points points(size);
    archive(cereal::binary_data(points.data(), points.size() * sizeof points[0]));
    return points[1].x();
  });
}
#else
void addCereal() {}
#endif

[[maybe_unused]] const bool kRegistered = [] {
  setRows();
  addOurs();
  addOursTogether();
  addOpencv();
  addBoost();
  addGeos();
  addCereal();
  registerRows();
  return true;
}();

}  // namespace
