// The tables of docs/gauges.md "Beside the peers": what OpenCV, GEOS and CGAL answer on the same outlines, and
// where they differ by more than their precision, who is right.
//
//   gauge_agreement tests/data
//
// The outlines: coins, countries, glyphs (holes as outlines of their own), and the shapes with known measures.
// OpenCV is given the nearest numbers of single precision, and so are we then, so that both measure one shape.
//
// A peer's answer within `share` of ours agrees. Beyond that it is tried by a proof that needs neither:
//  - a circle or rectangle that leaves out a point by more than the peer's precision does not enclose
//  - one that encloses, and is larger than ours, which encloses too, is not the smallest
//  - an inscribed circle beside which ours is larger, and touches no border by exact distances, is not the largest
//  - a Hausdorff distance below the distance of a place of the one shape, from all edges of the other, is too small
//  - the state of a point is what the sign of exact orientation says for every edge
#include <bench/geos_outline.h>
#include <gauge/gauge.h>
#include <support/gauge_shapes.h>
#include <support/outline_files.h>
#include <velstd/convex_hull.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <random>
#include <string>

#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Min_circle_2.h>
#include <CGAL/Min_circle_2_traits_2.h>
#include <CGAL/Polygon_2.h>
#include <CGAL/convex_hull_2.h>
#include <CGAL/min_quadrilateral_2.h>
#include <geos/algorithm/MinimumBoundingCircle.h>
#include <geos/algorithm/MinimumDiameter.h>
#include <geos/algorithm/construct/MaximumInscribedCircle.h>
#include <geos/algorithm/distance/DiscreteHausdorffDistance.h>
#include <geos/geom/LineString.h>
#include <geos/geom/Point.h>
#include <opencv2/imgproc.hpp>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

struct Named {
  std::string name;
  Points outline;
};

// ---- Counting -------------------------------------------------------------------------------------

// One row: how many shapes, how many agree, the greatest difference of those, and the others one by one.
class Row {
 public:
  Row(std::string measure, std::string peer, double share)
      : measure_(std::move(measure)), peer_(std::move(peer)), share_(share) {}

  // `proof` says what is wrong with the peer's answer; empty where it cannot.
  void add(const std::string& shape, double ours, double peers, double unit,
           const std::function<std::string()>& proof) {
    ++shapes_;
    const double difference = std::fabs(ours - peers) / unit;
    if (difference <= share_ || (std::isnan(ours) && std::isnan(peers))) {
      ++agree_;
      greatest_ = std::max(greatest_, difference);
      return;
    }
    const std::string found = proof();
    if (found.empty()) ++open_;
    char line[400];
    std::snprintf(line, sizeof line, "- %s, %s, %s: %.9g, ours %.9g; %s", measure_.c_str(),
                  peer_.c_str(), shape.c_str(), peers, ours,
                  found.empty() ? "NOT PROVEN" : found.c_str());
    others_.emplace_back(line);
  }

  void print() const {
    std::printf("| %s | %s | %ld | %.0e | %ld | %.1e | %zu | %ld |\n", measure_.c_str(), peer_.c_str(),
                shapes_, share_, agree_, greatest_, others_.size(), open_);
  }
  void printOthers(std::size_t most) const {
    for (std::size_t i = 0; i < std::min(most, others_.size()); ++i)
      std::printf("%s\n", others_[i].c_str());
    if (others_.size() > most)
      std::printf("- %s, %s: %zu more like these\n", measure_.c_str(), peer_.c_str(),
                  others_.size() - most);
  }

 private:
  std::string measure_;
  std::string peer_;
  double share_;
  long shapes_ = 0;
  long agree_ = 0;
  long open_ = 0;
  double greatest_ = 0.0;
  std::vector<std::string> others_;
};

std::string text(const char* before, double value, const char* behind = "") {
  char line[200];
  std::snprintf(line, sizeof line, "%s%.4g%s", before, value, behind);
  return line;
}

double sizeOf(const Points& points) {
  return gfFeret(points).feretMax;
}

// ---- Proofs ---------------------------------------------------------------------------------------

// By how much the circle leaves out the farthest point; below 0 where it encloses all.
double leftOut(const Points& points, const V& centre, double radius) {
  double most = -radius;
  for (const V& p : points)
    most = std::max(most, std::hypot(p.x() - centre.x(), p.y() - centre.y()) - radius);
  return most;
}

std::string circleProof(const Points& points, const V& centre, double radius, double slack) {
  const double out = leftOut(points, centre, radius);
  if (out > slack) return text("it leaves a point out by ", out);
  const gxEnclosingCircle ours = gfEnclosingCircle(points);
  if (leftOut(points, ours.centre, ours.radius) <= 0.0 && ours.radius < radius)
    return "ours is smaller and holds every point";
  return "";
}

// By how much the rectangle of four corners leaves out the farthest point.
double leftOut(const Points& points, const std::array<V, 4>& corners) {
  double sign = 0.0;
  for (std::size_t k = 0; k < 4; ++k) sign += gf_Cross(corners[k], corners[(k + 1) % 4]);
  double most = -1e300;
  for (std::size_t k = 0; k < 4; ++k) {
    const V along = corners[(k + 1) % 4] - corners[k];
    const double length = along.len();
    if (!(length > 0.0)) continue;
    for (const V& p : points) {
      const double inside = gf_Cross(along, p - corners[k]) / length;
      most = std::max(most, sign > 0.0 ? -inside : inside);
    }
  }
  return most;
}

std::string rectangleProof(const Points& points, const std::array<V, 4>& corners, double area,
                           double slack) {
  const double out = leftOut(points, corners);
  if (out > slack) return text("it leaves a point out by ", out);
  const gxTurnedRectangle ours = gfLeastAreaRectangle(points);
  if (leftOut(points, ours.corners()) <= 1e-12 * ours.length && ours.area() < area)
    return text("ours holds every point and has ", ours.area() / area, " of its area");
  return "";
}

// ---- Peers ----------------------------------------------------------------------------------------

std::vector<cv::Point2f> floats(const Points& points) {
  std::vector<cv::Point2f> result;
  for (const V& p : points) result.emplace_back(static_cast<float>(p.x()), static_cast<float>(p.y()));
  return result;
}

Points rounded(const Points& points) {
  Points result;
  for (const cv::Point2f& p : floats(points))
    result.emplace_back(static_cast<double>(p.x), static_cast<double>(p.y));
  return result;
}

V vectorOf(const cv::Point2f& p) {
  return {static_cast<double>(p.x), static_cast<double>(p.y)};
}

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;

std::vector<Kernel::Point_2> cgalHull(const Points& points) {
  std::vector<Kernel::Point_2> all;
  std::vector<Kernel::Point_2> hull;
  for (const V& p : points) all.emplace_back(p.x(), p.y());
  CGAL::convex_hull_2(all.begin(), all.end(), std::back_inserter(hull));
  return hull;
}

// Pockets deeper than this are counted; the peer rounds depths to 1/256.
constexpr double kDeep = 0.61;

struct Opencv {
  Row circle{"smallest circle, radius", "OpenCV", 1e-5};
  Row rectangle{"least rectangle, area", "OpenCV", 1e-5};
  Row second{"central moments, second order", "OpenCV", 1e-5};
  Row third{"central moments, third order", "OpenCV", 1e-4};
  Row hu{"invariants of Hu, the first four", "OpenCV", 1e-4};
  Row depth{"deepest convexity defect", "OpenCV", 1e-2};
  Row count{"number of convexity defects", "OpenCV", 0.0};
  Row states{"inside, on, outside: points that differ", "OpenCV", 0.0};
  Row distance{"signed distance, of the largest coordinate", "OpenCV", 1e-5};
  Row simple{"simplified: farthest dropped point / tolerance", "OpenCV", 1e-5};

  void add(const Named& shape) {
    const Points points = rounded(shape.outline);
    const auto input = floats(shape.outline);
    const double size = sizeOf(points);
    addEnclosing(shape.name, points, input);
    addMoments(shape.name, points, input, size);
    addDefects(shape);
    addPoints(shape.name, points, input, size);
    addSimple(shape.name, points, input, size);
  }

  std::vector<Row*> rows() {
    return {&circle, &rectangle, &second, &third, &hu, &depth, &count, &states, &distance, &simple};
  }

 private:
  void addEnclosing(const std::string& name, const Points& points,
                    const std::vector<cv::Point2f>& input) {
    cv::Point2f centre;
    float radius = 0.0F;
    cv::minEnclosingCircle(input, centre, radius);
    const double r = static_cast<double>(radius);
    const gxEnclosingCircle ours = gfEnclosingCircle(points);
    circle.add(name, ours.radius, r, ours.radius,
               [&] { return circleProof(points, vectorOf(centre), r, 1e-5 * r); });
    const cv::RotatedRect box = cv::minAreaRect(input);
    std::array<cv::Point2f, 4> corners;
    box.points(corners.data());
    const double area = static_cast<double>(box.size.width) * static_cast<double>(box.size.height);
    const gxTurnedRectangle least = gfLeastAreaRectangle(points);
    rectangle.add(name, least.area(), area, least.area(), [&] {
      return rectangleProof(
          points,
          {vectorOf(corners[0]), vectorOf(corners[1]), vectorOf(corners[2]), vectorOf(corners[3])}, area,
          1e-5 * least.length);
    });
  }

  // The moments of the peer are those of an outline moved to the origin, taken from ours: an offset of
  // many sizes is what its raw moments lose digits by.
  void addMoments(const std::string& name, const Points& points, const std::vector<cv::Point2f>& input,
                  double size) {
    const gxMoments m = gfMoments(points);
    const cv::Moments peer = cv::moments(input);
    const double unit2 = m.area * size * size;
    const double unit3 = unit2 * size;
    Points moved;
    for (const V& p : points) moved.push_back(p - points[0]);
    const gxMoments near = gfMoments(moved);
    const auto proof = [&](double ours, double there) {
      return [ours, there]() -> std::string {
        return std::fabs(ours - there) <= 1e-12 * std::fabs(there)
                   ? "moved to the origin, where nothing cancels, ours is the same"
                   : "";
      };
    };
    // (OpenCV gives an outline that runs clockwise positive moments, as we do.)
    const double pairs2[][3] = {{m.moment20, peer.mu20, near.moment20},
                                {m.moment11, peer.mu11, near.moment11},
                                {m.moment02, peer.mu02, near.moment02}};
    double worst[3] = {0, 0, 0};
    for (const auto& p : pairs2) {
      if (std::fabs(p[0] - p[1]) >= std::fabs(worst[0] - worst[1])) std::copy(p, p + 3, worst);
    }
    second.add(name, worst[0], worst[1], unit2, proof(worst[0], worst[2]));
    const double pairs3[][3] = {{m.moment30, peer.mu30, near.moment30},
                                {m.moment21, peer.mu21, near.moment21},
                                {m.moment12, peer.mu12, near.moment12},
                                {m.moment03, peer.mu03, near.moment03}};
    double worst3[3] = {0, 0, 0};
    for (const auto& p : pairs3) {
      if (std::fabs(p[0] - p[1]) >= std::fabs(worst3[0] - worst3[1])) std::copy(p, p + 3, worst3);
    }
    third.add(name, worst3[0], worst3[1], unit3, [&]() -> std::string {
      return std::fabs(worst3[0] - worst3[2]) <= 1e-9 * unit3
                 ? "moved to the origin, where nothing cancels, ours is the same"
                 : "";
    });
    double theirs[7];
    cv::HuMoments(peer, theirs);
    std::size_t k = 0;
    for (std::size_t i = 1; i < 4; ++i) {
      if (std::fabs(m.hu[i] - theirs[i]) > std::fabs(m.hu[k] - theirs[k])) k = i;
    }
    hu.add(name, m.hu[k], theirs[k], m.hu[0], [&]() -> std::string {
      return std::fabs(m.hu[k] - near.hu[k]) <= 1e-9 * m.hu[0]
                 ? "moved to the origin, where nothing cancels, ours is the same"
                 : "";
    });
  }

  // Whole coordinates are what convexityDefects takes: the outline at a size of about 1000.
  void addDefects(const Named& shape) {
    const gxRect box = gxContour(shape.outline).encloseRect(gxXform<2>::I);
    const double scale = 1000.0 / std::max(box.size().x(), box.size().y());
    std::vector<cv::Point> whole;
    Points points;
    for (const V& p : shape.outline) {
      const V q = (p - box.origin()) * scale;
      whole.emplace_back(static_cast<int>(std::lround(q.x())), static_cast<int>(std::lround(q.y())));
      points.emplace_back(whole.back().x, whole.back().y);
    }
    std::vector<int> hull;
    std::vector<cv::Vec4i> found;
    double deepest = 0.0;
    long several = 0;
    std::string refused;
    try {
      cv::convexHull(whole, hull);
      if (hull.size() > 2) cv::convexityDefects(whole, hull, found);
      for (const cv::Vec4i& d : found) {
        deepest = std::max(deepest, d[3] / 256.0);
        if (d[3] / 256.0 > kDeep) ++several;
      }
    } catch (const cv::Exception&) {
      refused = "it refuses the outline, which touches itself";
    }
    double ours = 0.0;
    long number = 0;
    const gxConvexityDefects all = gfConvexityDefects(points);
    for (const gxConvexityDefect& d : all.defects) {
      ours = std::max(ours, d.depth);
      if (d.depth > kDeep) ++number;
    }
    const auto proof = [&]() -> std::string {
      if (!refused.empty()) return refused;
      // The greatest distance of a point from the hull is the depth of the deepest pocket, or more.
      std::vector<cv::Point> corners;
      cv::convexHull(whole, corners);
      double below = 0.0;
      for (const V& p : points) {
        double least = 1e300;
        for (std::size_t k = 0; k < corners.size(); ++k) {
          const V a(corners[k].x, corners[k].y);
          const V b(corners[(k + 1) % corners.size()].x, corners[(k + 1) % corners.size()].y);
          least = std::min(least, gxLineSeg(a, b).distToPoint(p));
        }
        below = std::max(below, least);
      }
      if (deepest < below - 1.0 / 128.0) return text("a point lies ", below, " below the hull");
      if (all.status == gxStatus::eCrossing)
        return "the outline crosses itself: pockets are not defined";
      return "";
    };
    depth.add(shape.name, ours, deepest, std::max(ours, 1.0), proof);
    count.add(shape.name, static_cast<double>(number), static_cast<double>(several), 1.0, proof);
  }

  void addPoints(const std::string& name, const Points& points, const std::vector<cv::Point2f>& input,
                 double size) {
    std::mt19937 engine(20250301);
    double largest = size;
    for (const V& p : points) largest = std::max({largest, std::fabs(p.x()), std::fabs(p.y())});
    const gxRect box = gxContour(points).encloseRect(gxXform<2>::I);
    std::uniform_real_distribution<double> across(-0.1, 1.1);
    const gxLocator locator(points);
    long differ = 0;
    double worst = 0.0;
    V where;
    const auto ask = [&](const V& p) {
      const cv::Point2f at(static_cast<float>(p.x()), static_cast<float>(p.y()));
      const V q = vectorOf(at);
      const double state = cv::pointPolygonTest(input, at, false);
      const gxState ours = locator.locate(q).state;
      const double expected = ours == gxState::eInside ? 1.0 : ours == gxState::eBorder ? 0.0 : -1.0;
      if (state != expected) {
        ++differ;
        where = q;
      }
      worst =
          std::max(worst, std::fabs(-locator.signedDistance(q) - cv::pointPolygonTest(input, at, true)));
    };
    for (int i = 0; i < 100; ++i) {
      const double x = across(engine);
      ask(box.origin() + V(x * box.size().x(), across(engine) * box.size().y()));
    }
    for (const V& p : points) ask(p);
    states.add(name, 0.0, static_cast<double>(differ), 1.0, [&]() -> std::string {
      // Exactly: on an edge, or the parity of the edges above.
      bool on = false;
      bool inside = false;
      for (std::size_t i = 0; i < points.size(); ++i) {
        const V& a = points[i];
        const V& b = points[(i + 1) % points.size()];
        const int turn = gx_Orientation(a, b, where);
        on = on ||
             (turn == 0 && std::min(a.x(), b.x()) <= where.x() && where.x() <= std::max(a.x(), b.x()) &&
              std::min(a.y(), b.y()) <= where.y() && where.y() <= std::max(a.y(), b.y()));
        if ((a.y() > where.y()) != (b.y() > where.y()) && (turn > 0) == (b.y() > a.y()))
          inside = !inside;
      }
      const gxState ours = locator.locate(where).state;
      const gxState exact = on ? gxState::eBorder : inside ? gxState::eInside : gxState::eOutside;
      return ours == exact ? "exact orientations say ours" : "";
    });
    distance.add(name, 0.0, worst, largest, []() -> std::string { return ""; });
  }

  void addSimple(const std::string& name, const Points& points, const std::vector<cv::Point2f>& input,
                 double size) {
    const double tolerance = 0.01 * size;
    std::vector<cv::Point2f> kept;
    cv::approxPolyDP(input, kept, tolerance, true);
    Points line;
    for (const cv::Point2f& p : kept) line.push_back(vectorOf(p));
    const double off = gfDirectedHausdorff(gxBorders(points), gxBorders(line)).distance;
    const double ours =
        gfDirectedHausdorff(gxBorders(points), gxBorders(gfSimplify(points, true, tolerance).points))
            .distance;
    simple.add(name, std::min(1.0, ours / tolerance),
               std::min(ours / tolerance, 1.0) + std::max(0.0, off / tolerance - 1.0), 1.0,
               [&]() -> std::string {
                 return off > tolerance && ours <= tolerance
                            ? text("a dropped point is ", off / tolerance, " tolerances from what stays")
                            : "";
               });
  }
};

struct GeosAndCgal {
  Row circle{"smallest circle, radius", "GEOS", 1e-9};
  Row exactCircle{"smallest circle, radius", "CGAL", 1e-9};
  Row width{"least width", "GEOS", 1e-9};
  Row exactWidth{"least width", "CGAL", 1e-9};
  Row rectangle{"least rectangle, area", "CGAL", 1e-9};
  Row widthRectangle{"least rectangle, area", "GEOS (MinimumDiameter)", 1e-9};
  Row inscribed{"largest inscribed circle, radius", "GEOS, to 1e-4", 1e-4};
  Row hausdorff{"Hausdorff distance of outline and hull", "GEOS (vertices)", 1e-9};
  Row densified{"Hausdorff distance of outline and hull", "GEOS (edges in 100)", 1e-4};

  void add(const Named& shape) {
    const Points& points = shape.outline;
    const auto polygon = gx_geosPolygon(points);
    const gxEnclosingCircle ours = gfEnclosingCircle(points);
    geos::algorithm::MinimumBoundingCircle bounding(polygon.get());
    const geos::geom::Coordinate centre = bounding.getCentre();
    circle.add(shape.name, ours.radius, bounding.getRadius(), ours.radius, [&] {
      return circleProof(points, {centre.x, centre.y}, bounding.getRadius(), 1e-9 * ours.radius);
    });
    addCgal(shape, ours);
    const gxTurnedRectangle narrow = gfLeastWidthRectangle(points);
    const double size = sizeOf(points);
    geos::algorithm::MinimumDiameter diameter(polygon.get());
    width.add(shape.name, narrow.width, diameter.getLength(), size, [] { return std::string(); });
    const auto box = diameter.getMinimumRectangle();
    const auto boxPoints = box->getCoordinates();
    const gxTurnedRectangle least = gfLeastAreaRectangle(points);
    widthRectangle.add(shape.name, least.area(), box->getArea(), least.area(), [&]() -> std::string {
      if (boxPoints->size() < 4) return "";
      std::array<V, 4> corners;
      for (std::size_t k = 0; k < 4; ++k) corners[k] = {boxPoints->getX(k), boxPoints->getY(k)};
      return rectangleProof(points, corners, box->getArea(), 1e-9 * size);
    });
    addDistances(shape, *polygon, size);
  }

  std::vector<Row*> rows() {
    return {&circle,         &exactCircle, &width,     &exactWidth, &rectangle,
            &widthRectangle, &inscribed,   &hausdorff, &densified};
  }

 private:
  void addCgal(const Named& shape, const gxEnclosingCircle& ours) {
    const std::vector<Kernel::Point_2> hull = cgalHull(shape.outline);
    const CGAL::Min_circle_2<CGAL::Min_circle_2_traits_2<Kernel>> circle2(hull.begin(), hull.end(),
                                                                          true);
    const double r = std::sqrt(circle2.circle().squared_radius());
    exactCircle.add(shape.name, ours.radius, r, ours.radius, [&] {
      return circleProof(shape.outline, {circle2.circle().center().x(), circle2.circle().center().y()},
                         r, 1e-9 * r);
    });
    CGAL::Polygon_2<Kernel> box;
    CGAL::min_rectangle_2(hull.begin(), hull.end(), std::back_inserter(box));
    const gxTurnedRectangle least = gfLeastAreaRectangle(shape.outline);
    rectangle.add(shape.name, least.area(), std::fabs(box.area()), least.area(), [&] {
      std::array<V, 4> corners;
      for (std::size_t k = 0; k < 4; ++k) corners[k] = {box.vertex(k).x(), box.vertex(k).y()};
      return rectangleProof(shape.outline, corners, std::fabs(box.area()), 1e-9 * least.length);
    });
    std::vector<Kernel::Line_2> strip;
    CGAL::min_strip_2(hull.begin(), hull.end(), std::back_inserter(strip));
    const double wide = std::sqrt(CGAL::squared_distance(strip[0].point(), strip[1]));
    exactWidth.add(shape.name, gfLeastWidthRectangle(shape.outline).width, wide, sizeOf(shape.outline),
                   [] { return std::string(); });
  }

  void addDistances(const Named& shape, const geos::geom::Polygon& polygon, double size) {
    const gxRegion region(shape.outline);
    const gxInscribedCircle largest = gfInscribedCircle(region);
    const bool crosses = region.isSelfIntersecting();
    if (!crosses) {
      const auto line =
          geos::algorithm::construct::MaximumInscribedCircle(&polygon, 1e-5 * largest.radius)
              .getRadiusLine();
      inscribed.add(shape.name, largest.radius, line->getLength(), largest.radius, [&]() -> std::string {
        const double d = -gfSignedDistance(region, largest.centre);
        return line->getLength() < largest.radius && d >= largest.radius * (1.0 - 1e-12)
                   ? "ours is larger and free of borders"
                   : "";
      });
    }
    Points hull;
    gfConvexHull(shape.outline, hull);
    const gxHausdorff ours = gfHausdorff(shape.outline, hull);
    for (const bool dense : {false, true}) {
      const auto a = gx_geosPolygon(shape.outline);
      const auto b = gx_geosPolygon(hull);
      geos::algorithm::distance::DiscreteHausdorffDistance distance(*a, *b);
      if (dense) distance.setDensifyFraction(0.01);
      const double there = distance.distance();
      (dense ? densified : hausdorff).add(shape.name, ours.hausdorff, there, size, [&]() -> std::string {
        const gxDirectedHausdorff& way =
            ours.hausdorffForward >= ours.hausdorffBack ? ours.forward : ours.back;
        const Points& other = ours.hausdorffForward >= ours.hausdorffBack ? hull : shape.outline;
        double least = 1e300;
        for (std::size_t i = 0; i < other.size(); ++i)
          least = std::min(
              least, gxLineSeg(other[i], other[(i + 1) % other.size()]).distToPoint(way.from.point));
        return there < least - 1e-12 * size
                   ? text("a place inside an edge is ", least, " from all of the other")
                   : "";
      });
    }
  }
};

std::vector<Named> outlinesOf(const std::string& folder) {
  std::vector<Named> result;
  for (const char* file :
       {"/coins/outlines.jsonl", "/countries/countries_110m.jsonl", "/glyphs/glyphs.jsonl"}) {
    for (const FiledShape& shape : filedShapes(folder + file)) {
      if (shape.outline.size() >= 3) result.push_back({shape.name, shape.outline});
      for (const Points& hole : shape.holes) result.push_back({shape.name + ", hole", hole});
    }
  }
  for (const KnownShape& shape : knownShapes()) result.push_back({shape.name, shape.outline});
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: gauge_agreement tests/data\n");
    return 2;
  }
  Opencv opencv;
  GeosAndCgal others;
  for (const Named& shape : outlinesOf(argv[1])) {
    opencv.add(shape);
    others.add(shape);
  }
  std::vector<Row*> rows = others.rows();
  for (Row* row : opencv.rows()) rows.push_back(row);
  std::printf(
      "| Measure | Peer | outlines | precision | agree | greatest difference of these | others | of "
      "them not proven |\n"
      "|---|---|--:|--:|--:|--:|--:|--:|\n");
  for (const Row* row : rows) row->print();
  std::printf("\n");
  for (const Row* row : rows) row->printOthers(5);
}
