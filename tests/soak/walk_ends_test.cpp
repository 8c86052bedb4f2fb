// Every walk around the outside of an outline ends: in a result, or in "invalid contour", within the
// stated number of steps.  Steps are counted, not timed: each asks the outline for crossings once, so
// a walk of more than gx_mostWalkSteps would show here.
//
// A small share of the outlines here belongs to every test run; GXSHAPE_SOAK=1 walks 50 times as many,
// 250,000.
#include <cntr/internal/repair/outside_walk.h>
#include <cntr/region.h>

#include <support/exposed.h>
#include <support/random_shapes.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <string>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;

// Outlines that nearly always cross themselves: points anywhere, points of a small lattice (collinear,
// repeated, touching), a random walk, and outlines with repeated and with collinear points put in.
Points tangledOutline(RandomShapes& random) {
  const int count = random.chance(0.02) ? random.integer(60, 200) : random.integer(4, 24);
  Points points;
  switch (random.integer(0, 4)) {
    case 0: return random.outline(OutlineKind::eCloud, count);
    case 1: {
      const int size = random.integer(2, 8);
      for (int i = 0; i < count; ++i)
        points.emplace_back(random.integer(0, size), random.integer(0, size));
      return points;
    }
    case 2: return random.outline(OutlineKind::eWalk, count);
    case 3:
      for (const V& p : random.outline(OutlineKind::eCloud, count)) {
        points.push_back(p);
        for (int again = random.integer(0, 2); again > 0 && random.chance(0.4); --again)
          points.push_back(p);
        if (random.chance(0.2))
          points.push_back(points[static_cast<std::size_t>(random.integer(0, 100)) % points.size()]);
      }
      return points;
    default:
      for (const V& p : random.outline(OutlineKind::eCloud, count)) {
        if (!points.empty() && random.chance(0.5)) {
          const V before = points.back();
          for (const double t : {0.25, 0.5, 0.75}) points.push_back(before + (p - before) * t);
        }
        points.push_back(p);
      }
      return points;
  }
}

struct Counts {
  long crossing = 0;
  long closed = 0;
  long noStart = 0;
  long neverClosed = 0;
  std::size_t mostSteps = 0;
};

// Walks, and counts the steps by the questions.
void walk(const Points& outline, Counts& counts) {
  const ExposedRegion region(outline);
  if (!region.isSelfIntersecting()) return;
  ++counts.crossing;
  std::size_t steps = 0;
  const gx_OutlineQuestions questions{
      [&](const gxLineSeg& seg, std::size_t, std::vector<int>& edges) {
        ++steps;
        return region.intersections(seg, edges, false);
      },
      [&](const gxLineSeg& seg) { return region.intersections(seg, true, false).size(); },
      [&](const V& point) { return gx_RegionInside::insideCount(region, point, true); }};
  std::size_t start = 0;
  try {
    start = gx_findStartEdge(outline, 0.01 * region.medianFeatureSize(), questions);
  } catch (const gxContourDefs::BadParams& error) {
    EXPECT_EQ(error.message(), L"invalid contour");
    ++counts.noStart;
    return;
  }
  try {
    const Points walked = gx_walkOutside(outline, start, questions);
    EXPECT_EQ(walked.size(), steps);
    EXPECT_EQ(walked.back(), outline[start]);
    ++counts.closed;
  } catch (const gxContourDefs::BadParams& error) {
    EXPECT_EQ(error.message(), L"invalid contour");
    ++counts.neverClosed;
  }
  EXPECT_LE(steps, gx_mostWalkSteps(outline.size()));
  counts.mostSteps = std::max(counts.mostSteps, steps);
}

TEST(EveryWalkEnds, OfOutlinesThatCrossThemselves) {
  RandomShapes random("every walk ends", 5000);
  Counts counts;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    Points outline = tangledOutline(random);
    while (outline.size() < 3 || !gxContour(outline).isSelfIntersecting())
      outline = tangledOutline(random);
    walk(outline, counts);
    if (HasFatalFailure()) return;
  }
  std::cout << "[ walks    ] " << counts.crossing << " outlines that cross themselves: " << counts.closed
            << " walks closed, " << counts.noStart << " without a start edge, " << counts.neverClosed
            << " that never close, at most " << counts.mostSteps << " steps\n";
  EXPECT_GT(counts.closed, counts.crossing / 20);
  EXPECT_GT(counts.noStart, 0);
  EXPECT_GT(counts.neverClosed, 0);
}

// The same through the public operations: what is thrown is documented, what comes out is a region
// without holes, and the same when asked again.
TEST(EveryRepairEnds, InAResultOrInvalidContour) {
  RandomShapes random("every repair ends", 1000);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const gxRegion region(tangledOutline(random));
    for (const bool hull : {false, true}) {
      gxRegion result;
      try {
        hull ? region.outerHull(result) : region.regularize(result);
      } catch (const gxContourDefs::BadParams& error) {
        EXPECT_EQ(error.message(), L"invalid contour");
        EXPECT_TRUE(result.points().empty());
        continue;
      }
      EXPECT_TRUE(result.holes().empty());
      gxRegion again;
      const gxRegion fresh(region.points());
      hull ? fresh.outerHull(again) : fresh.regularize(again);
      EXPECT_EQ(again.points(), result.points());
    }
  }
}

}  // namespace
