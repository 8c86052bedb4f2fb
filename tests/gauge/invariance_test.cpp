// What must not matter to a gauge: where a shape lies and how it is turned, where its outline begins, which way it
// goes around.  One table of all gauges, each with the numbers that have to stay.
// Covers gauge/gauge.h
#include <gauge/gauge.h>
#include <gtest/gtest.h>
#include <support/placements.h>
#include <support/random_shapes.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using Span = std::span<const V>;
using Numbers = std::vector<double>;

constexpr double kArc = 0.7;  // a length, small beside the shapes

// The fixed partners of gauges that compare, and the questions of those that are asked; moved like the shape.
const Points kOther{{-3, -4}, {4, -3}, {5, 2}, {1, 1.5}, {0, 5}, {-4, 3}};
const Points kQueries{{0, 0}, {1, 0.5}, {-1, -1}, {2, 2}, {12, 1}, {-3, 14}, {0.25, -0.75}};

struct Gauge {
  const char* name;
  // The numbers of an outline that has been placed, and its partners likewise.
  std::function<Numbers(const Points& shape, const Placement& place)> numbers;
  bool fromAnyStart = true;
  bool bothWays = true;
  double slack = 1e-9;
};

Numbers sorted(Numbers numbers) {
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

Numbers describedBy(const gxDescriptors& d) {
  return {d.area,        d.filledArea,  d.perimeter,     d.length,      d.equivalentDiameter,
          d.circularity, d.compactness, d.convexity,     d.solidity,    d.rectangularity,
          d.aspectRatio, d.elongation,  d.feretMax,      d.feretMin,    d.feretAcross,
          d.feretMean,   d.hullArea,    d.hullPerimeter, d.eccentricity};
}

Numbers statesOf(const gxLocator& locator, const Points& queries) {
  Numbers numbers;
  for (const gxState s : locator.states(queries)) numbers.push_back(static_cast<double>(s));
  return numbers;
}

Numbers farOff(const std::vector<gxNearest>& all) {
  Numbers numbers;
  for (const gxNearest& n : all) numbers.push_back(n.distance);
  return numbers;
}

Numbers fitOf(const Points& points, gxFitWeights weights) {
  gxRobustOptions options;
  options.weights = weights;
  const gxRobustLine line = gfRobustLine(points, options);
  const gxRobustCircle circle = gfRobustCircle(points, options);
  return {line.deviation, line.offsetError, circle.radius, circle.deviation, circle.radiusError};
}

// The points drawn towards a circle of radius 6 around their mean: near an ellipse, which outlines are not.
Points nearlyRound(const Points& points) {
  V mean(0.0, 0.0);
  for (const V& p : points) mean = mean + p * (1.0 / static_cast<double>(points.size()));
  Points drawn;
  for (const V& p : points) drawn.push_back(mean + (p - mean) * (6.0 / (p - mean).len() + 0.1));
  return drawn;
}

double lengthOf(const Points& points) {
  return gxArcLength(points, true).length();
}

const Gauge kGauges[] = {
    {"gfEnclosingCircle",
     [](const Points& s, const Placement&) { return Numbers{gfEnclosingCircle(s).radius}; }},
    {"gfLeastAreaRectangle",
     [](const Points& s, const Placement&) { return Numbers{gfLeastAreaRectangle(s).area()}; }},
    {"gfLeastWidthRectangle",
     [](const Points& s, const Placement&) { return Numbers{gfLeastWidthRectangle(s).width}; }},
    {"gfFeret",
     [](const Points& s, const Placement&) {
       const gxFeret f = gfFeret(s);
       return Numbers{f.feretMax, f.feretMin, f.feretAcross, f.feretMean};
     }},
    {"gfWidthAt",
     [](const Points& s, const Placement& p) {
       return Numbers{gfWidthAt(s, 0.4 + std::atan2(p.sine, p.cosine))};
     }},
    {"gfInscribedCircle",
     [](const Points& s, const Placement&) {
       return Numbers{gfInscribedCircle(Span(s), 1e-11).radius};
     }},
    {"gfSmallestWall",
     [](const Points& s, const Placement&) { return Numbers{gfSmallestWall(Span(s)).wall}; }},
    {"gfMoments",
     [](const Points& s, const Placement&) {
       const gxMoments m = gfMoments(Span(s));
       return Numbers{m.area,  m.principal1, m.principal2, m.ellipseA, m.ellipseB, m.hu[0],
                      m.hu[1], m.hu[2],      m.hu[3],      m.hu[4],    m.hu[5],    m.hu[6]};
     }},
    {"gfMeasure",
     [](const Points& s, const Placement&) {
       const gxMeasure m = gfMeasure(Span(s));
       return Numbers{m.area, m.length};
     }},
    {"gfDescribe", [](const Points& s, const Placement&) { return describedBy(gfDescribe(Span(s))); }},
    {"gfConvexityDefects",
     [](const Points& s, const Placement&) {
       Numbers depths;
       Numbers areas;
       for (const gxConvexityDefect& d : gfConvexityDefects(s).defects) {
         depths.push_back(d.depth);
         areas.push_back(d.area);
       }
       Numbers all = sorted(depths);
       for (const double area : sorted(areas)) all.push_back(area);
       return all;
     }},
    {"gfRoundness",
     [](const Points& s, const Placement&) {
       return Numbers{gfRoundness(s, gxFormReference::eMinimumZone).roundness,
                      gfRoundness(s, gxFormReference::eLeastSquares).roundness,
                      gfRoundness(s, gxFormReference::eMinimumCircumscribed).roundness,
                      gfRoundness(s, gxFormReference::eMaximumInscribed).roundness};
     }},
    {"gfStraightness",
     [](const Points& s, const Placement&) {
       const gxStraightness line = gfStraightness(s, gxFormReference::eLeastSquares);
       return Numbers{gfStraightness(s).straightness, line.straightness, line.rms};
     }},
    {"gfParallelism, gfFlatAngle",
     [](const Points& s, const Placement& p) {
       const Points datum = p.of(kOther);
       return Numbers{gfParallelism(s, datum).parallelism, gfFlatAngle(s, datum).flatAngle};
     }},
    {"gfProfile",
     [](const Points& s, const Placement& p) {
       const gxProfile profile = gfProfile(s, p.of(kOther));
       return Numbers{profile.profile, profile.peak, profile.valley};
     }},
    {"gfHausdorff",
     [](const Points& s, const Placement& p) {
       const gxHausdorff h = gfHausdorff(s, p.of(kOther));
       return Numbers{h.hausdorff, h.hausdorffForward, h.hausdorffBack,
                      gfDirectedHausdorff(s, p.of(kOther)).distance};
     }},
    {"gfDeviation",
     [](const Points& s, const Placement& p) {
       gxDeviationOptions options;
       options.lower = -0.5;
       options.upper = 0.25;
       const gxDeviation d = gfDeviation(s, p.of(kOther), options);
       Numbers lengths;
       for (const gxDeviationStretch& stretch : d.stretches) lengths.push_back(stretch.length);
       lengths = sorted(lengths);
       lengths.insert(lengths.end(), {d.deviationMax, d.deviationMin, d.deviationRms, d.outOfTolerance,
                                      d.percentile(0.5)});
       return lengths;
     }},
    // Closed outlines count as poly-lines from their point 0 here.
    {"gfFrechet",
     [](const Points& s, const Placement& p) { return Numbers{gfFrechet(s, p.of(kOther)).frechet}; },
     false, false},
    // From its place: the start by axes takes one of several directions, and samples begin at point 0.
    {"gfAlign",
     [](const Points& s, const Placement& p) {
       gxAlignOptions options;
       options.robust = false;
       options.startsInPlace = true;
       const gxAlignment found = gfAlign(s, s, options);
       const V moved = found.map(p.of(V(1, 2))) - p.of(V(1, 2));
       return Numbers{found.residual, moved.len(), found.scale};
     }},
    {"gfRobustLine, gfRobustCircle",
     [](const Points& s, const Placement&) { return fitOf(s, gxFitWeights::eLeastSquares); }},
    {"gfRobustEllipse",
     [](const Points& s, const Placement&) {
       gxRobustOptions options;
       options.weights = gxFitWeights::eLeastSquares;
       const gxRobustEllipse e = gfRobustEllipse(nearlyRound(s), options);
       return Numbers{e.a, e.b, e.deviation};
     },
     true, true, 1e-6},
    {"gxArcLength", [](const Points& s, const Placement&) { return Numbers{lengthOf(s)}; }},
    {"gfResample",
     [](const Points& s, const Placement&) {
       return Numbers{lengthOf(gfResample(s, true, 50).points),
                      lengthOf(gfResampleBySpacing(s, true, kArc).points)};
     },
     false},
    {"gfResampleByDeviation",
     [](const Points& s, const Placement&) {
       return Numbers{lengthOf(gfResampleByDeviation(s, true, kArc, 0.5).points)};
     }},
    {"gfSimplify",
     [](const Points& s, const Placement&) {
       const gxSimplified simple = gfSimplify(s, true, kArc, {true});
       return Numbers{static_cast<double>(simple.kept.size()), lengthOf(simple.points)};
     }},
    {"gfSmooth",
     [](const Points& s, const Placement&) {
       const Points smooth = gfSmooth(s, true, kArc, gxSmoothCorrection::eShrink).points;
       return Numbers{lengthOf(smooth), gfMeasure(smooth).area};
     }},
    {"gfCurvature",
     [](const Points& s, const Placement&) {
       Numbers bends;
       for (const gxCurvatureFit fit : {gxCurvatureFit::eParabola, gxCurvatureFit::eCircle}) {
         for (const gxBend& bend : gfCurvature(s, true, 6.0, fit).at)
           bends.push_back(std::isnan(bend.curvature) ? -1.0 : std::fabs(bend.curvature));
       }
       return sorted(bends);
     },
     true, true, 1e-7},
    {"gfCorners",
     [](const Points& s, const Placement&) {
       Numbers turns;
       for (const gxCorner& c : gfCorners(s, true, kArc, gxRadian(0.5)).corners)
         turns.push_back(std::fabs(c.turn.toDouble()));
       return sorted(turns);
     }},
    {"gfOrientation, gfSameWalk, gfWithoutRepeated, gfWithoutCollinear",
     [](const Points& s, const Placement&) {
       return Numbers{std::fabs(static_cast<double>(gfOrientation(s))), lengthOf(gfOriented(s, 1)),
                      static_cast<double>(gfSameWalk(s, gfOriented(s, 1), true)),
                      static_cast<double>(gfWithoutRepeated(s, true).size()),
                      static_cast<double>(gfWithoutCollinear(s, true).size())};
     }},
    {"gfUncertainty",
     [](const Points& s, const Placement&) {
       Numbers all;
       for (const double along : {0.0, 2.0}) {
         const gxUncertainty u = gfUncertainty(s, true, {0.01, along});
         all.insert(all.end(), {u.length, u.lengthBias, u.area, u.equivalentDiameter,
                                std::hypot(u.centreX, u.centreY)});
       }
       return all;
     }},
    {"gfLocate, gxLocator::states",
     [](const Points& s, const Placement& p) { return statesOf(gxLocator(Span(s)), p.of(kQueries)); }},
    {"gfSignedDistance",
     [](const Points& s, const Placement& p) {
       return gxLocator(Span(s)).signedDistances(p.of(kQueries));
     }},
    {"gfNearest, nearestEdges, nearestVertices",
     [](const Points& s, const Placement& p) {
       const gxLocator locator{Span(s)};
       Numbers all = farOff(locator.nearest(Span(p.of(kQueries))));
       for (const double d : farOff(locator.nearestEdges(p.of(V(1, 2)), 5))) all.push_back(d);
       for (const double d : farOff(locator.nearestVertices(p.of(V(1, 2)), 5))) all.push_back(d);
       return all;
     }},
    {"gfDistance",
     [](const Points& s, const Placement& p) {
       Points aside;
       for (const V& q : kOther) aside.push_back(p.of(q + V(30, 5)));
       return Numbers{gfDistance(gxLocator(Span(s)), gxLocator(Span(aside))).distance};
     }},
};

void expectSame(const Numbers& got, const Numbers& expected, double slack, const std::string& what) {
  ASSERT_EQ(got.size(), expected.size()) << what;
  for (std::size_t i = 0; i < got.size(); ++i) {
    if (got[i] == expected[i] || (std::isnan(got[i]) && std::isnan(expected[i]))) continue;
    EXPECT_NEAR(got[i], expected[i], slack * std::max(1.0, std::fabs(expected[i])))
        << what << ", number " << i;
  }
}

TEST(Invariance, NeitherMotionNorStartNorDirectionChangesWhatAGaugeFinds) {
  RandomShapes random("invariance", 12);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const Points shape = random.star(random.integer(8, 40), {0.5, -0.25}, 4.0, 9.0);
    Placement place = kTurned345;
    place.shift = {random.uniform(-100.0, 100.0), random.uniform(-100.0, 100.0)};
    const auto start = static_cast<std::size_t>(random.integer(1, static_cast<int>(shape.size()) - 1));
    for (const Gauge& gauge : kGauges) {
      const Numbers expected = gauge.numbers(shape, kInPlace);
      ASSERT_FALSE(expected.empty()) << gauge.name;
      const std::string name = gauge.name;
      expectSame(gauge.numbers(place.of(shape), place), expected, gauge.slack, name + ", moved");
      if (gauge.fromAnyStart) {
        expectSame(gauge.numbers(rotatedStart(shape, start), kInPlace), expected, gauge.slack,
                   name + ", from another start");
      }
      if (gauge.bothWays) {
        expectSame(gauge.numbers(reversed(shape), kInPlace), expected, gauge.slack,
                   name + ", the other way");
      }
    }
  }
}

TEST(Invariance, PixelsStayUnderMotionsOfTheGrid) {
  RandomShapes random("pixel invariance", 50);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    Points shape;
    for (const V& p : random.star(random.integer(5, 20), {0, 0}, 5.0, 30.0))
      shape.emplace_back(std::round(p.x()), std::round(p.y()));
    Points turned;
    for (const V& p : shape) turned.emplace_back(100.0 - p.y(), p.x() - 7.0);
    const double pixels = gfPixelAreaOfCentres(shape).pixels;
    EXPECT_GT(pixels, 0.0);
    EXPECT_EQ(gfPixelAreaOfCentres(turned).pixels, pixels);
    EXPECT_EQ(gfPixelAreaOfCentres(rotatedStart(shape, 2)).pixels, pixels);
    EXPECT_EQ(gfPixelAreaOfCentres(reversed(shape)).pixels, pixels);
  }
}

}  // namespace
