// What a call leaves behind when memory runs out in the middle of it, at any place: nothing.  Every
// operation of the base library, of contours, regions, sets, edge-point shapes and archives that
// allocates is run with each of its allocations failing in turn.
//
// Covers cntr/contour.cpp
#include <ch_core/cntrtmpl.h>
#include <cntr/shapestat.h>
#include <memory/every_allocation.h>
#include <veldispc/recording_tablet.h>
#include <veldispc/svg_tablet.h>
#include <velstd/circle_fit.h>
#include <velstd/convex_hull.h>
#include <velstd/ellipse_fit.h>
#include <velstd/thread_local.h>

#include <cmath>
#include <filesystem>
#include <numbers>
#include <random>
#include <sstream>

using memory_test::failEveryAllocation;
using memory_test::Operation;
using memory_test::World;

namespace {

using Points = std::vector<gxVector<2>>;
using Contour = gxContour;
using Region = gxRegion;
using Set = gxRegionSet;
using EdgeContour = gxContourT<gxEdgelet>;
using EdgeRegion = gxRegionT<gxEdgelet>;
using EdgeSet = gxRegionSetT<gxEdgelet>;
using Handle = gxPtrHandle_const<gxRegion>;
using Numbers = std::vector<double>;

Points square(double low, double high) {
  return {{low, low}, {high, low}, {high, high}, {low, high}};
}
Points bowTie() {
  return {{0, 0}, {4, 4}, {4, 0}, {0, 4}};
}
// A round outline with as many points as make every index worth while.
Points round(int count, double radius = 10.0) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double angle = 2 * std::numbers::pi * i / count;
    const double r = radius * (1 + 0.1 * std::cos(7 * angle));
    points.emplace_back(r * std::cos(angle), r * std::sin(angle));
  }
  return points;
}
// One that crosses itself often.
Points tangled(int count) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double t = 2 * std::numbers::pi * i / count;
    points.emplace_back(10 * std::cos(2 * t), 10 * std::sin(3 * t + 0.3));
  }
  return points;
}
std::vector<gxEdgelet> edgelets(const Points& points) {
  std::vector<gxEdgelet> result;
  for (const gxVector<2>& p : points) result.emplace_back(p, 7, gxAngle8(9));
  return result;
}
gxPtrHandle_const<gx2XformBase> shift() {
  return gxPtrHandle_const<gx2XformBase>(
      new gx2XformLinear(gxXform<2>(gxMatrix<2>(1, 0, 0, 1), gxVector<2>(5, 0))));
}
Handle shared(const Points& points) {
  return Handle(new Region(points));
}
std::vector<Handle> many(int count) {
  std::vector<Handle> regions;
  for (int i = 0; i < count; ++i) regions.push_back(shared(square(3 * i, 3 * i + 2)));
  return regions;
}

gxPtrHandle_const<EdgeRegion> edgeRegion(const Points& points) {
  return gxPtrHandle_const<EdgeRegion>(new EdgeRegion(edgelets(points)));
}

template <class... Objects>
World world(const Objects&... objects) {
  World result;
  (result.objects.push_back(std::make_shared<Objects>(objects)), ...);
  return result;
}

// A question about the first object of the world; what it answers goes into the world at the end.
template <class T, class Ask>
Operation question(const char* name, const T& object, const Ask& ask) {
  return {name, [object] { return world(T(object)); },
          [ask](World& w) {
            Numbers answer;
            ask(w.at<T>(0), answer);
            w.answer.swap(answer);
          }};
}

void put(Numbers& answer, const gxVector<2>& p) {
  answer.insert(answer.end(), {p.x(), p.y()});
}
void put(Numbers& answer, const Points& points) {
  for (const gxVector<2>& p : points) put(answer, p);
}
void put(Numbers& answer, const gxRect& rect) {
  put(answer, rect.origin());
  put(answer, rect.corner());
}

// What nobody remembers yet, and a copy of it that remembers nothing either.
// The hole is shared by all copies, and what it remembers outlives each of them: its grid is made here.
Region regionWithHole() {
  const auto hole = shared(square(-2, 2));
  hole->inside(std::vector<gxVector<2>>(50), false);
  Region region(round(130));
  region.holes({hole});
  return Region(region);
}

void all(const std::vector<Operation>& operations) {
  for (const Operation& operation : operations) failEveryAllocation(operation);
}

}  // namespace

TEST(AllocationFailure, InTheBaseLibrary) {
  const Points points = round(40);
  Numbers seen;
  const auto noObjects = [] { return World(); };
  all({
      {"hull", noObjects,
       [&](World& w) {
         Points hull = square(0, 1);
         try {
           gfConvexHull(points, hull);
         } catch (const std::bad_alloc&) {
           EXPECT_EQ(hull, square(0, 1)) << "an output argument is written by a call that succeeds";
           throw;
         }
         Numbers answer;
         put(answer, hull);
         w.answer.swap(answer);
       }},
      {"circle fit", noObjects,
       [&](World& w) {
         gxCircleFitResults results;
         try {
           gfCircleFit(gxCircleFitParams(gxCircleFitDefs::eFitAll, 0, 3, 0.5), points, results);
         } catch (const std::bad_alloc&) {
           EXPECT_EQ(results.residual(), 0.0);
           throw;
         }
         Numbers answer{results.circle().radius(), results.residual()};
         w.answer.swap(answer);
       }},
      {"ellipse fit", noObjects,
       [&](World& w) {
         gxEllipseFitResults results;
         try {
           gfEllipseFit(gxEllipseFitParams(gxEllipseFitDefs::eFitAll, gxRadian(0), 3, 0.5), points,
                        results);
         } catch (const std::bad_alloc&) {
           EXPECT_EQ(results.residual(), 0.0);
           throw;
         }
         Numbers answer{results.ellipse().geom().radii.x(), results.residual()};
         w.answer.swap(answer);
       }},
      {"thread-local value", noObjects,
       [&](World&) {
         int value = 0;
         std::vector<gx_ThreadLocal> locals(40);
         for (gx_ThreadLocal& local : locals) local.OSValue(&value);
         for (gx_ThreadLocal& local : locals) EXPECT_EQ(local.OSValue(), &value);
       }},
      {"registration", noObjects,
       [&](World&) {
         class Known : public gxPersistent {
          public:
           static gxPersistent* make() { return new Known; }
         };
         const std::size_t before = gx_Instantiator::registeredClasses().size();
         {
           const gx_Instantiator known(typeid(Known), &Known::make);
           EXPECT_EQ(gx_Instantiator::registeredClasses().size(), before + 1);
         }
         EXPECT_EQ(gx_Instantiator::registeredClasses().size(), before);
       }},
      {"transforms", noObjects,
       [&](World& w) {
         const gx2Rigid rigid(gxDegree(30), gxVector<2>(1, 2));
         const auto composed = rigid.composeBase(gx2XformLinear());
         Numbers answer;
         put(answer, composed->inverseBase()->clone()->mapPoint(gxVector<2>(3, 4)));
         w.answer.swap(answer);
       }},
      {"recording tablet", noObjects,
       [&](World& w) {
         gxRecordingTablet tablet;
         Contour(square(0, 1))
             .draw(tablet, gxContourDefs::eDrawEdges, gxColor(), gxUITablet::eImageLayer);
         Numbers answer{static_cast<double>(tablet.segments().size())};
         w.answer.swap(answer);
       }},
      {"standard deviation", noObjects,
       [&](World& w) {
         const Numbers values{1, 2, 4};
         Numbers answer{gf_StdDev(values)};
         w.answer.swap(answer);
       }},
  });
}

TEST(AllocationFailure, InAnExceptionsText) {
  const gxContourDefs::BadParams error(L"text");
  for (long k = 0; k < 20; ++k) {
    const memory_test::FailingAllocation failing(k);
    EXPECT_NE(error.what(), nullptr) << "cannot throw";
  }
}

TEST(AllocationFailure, InChangesOfAContour) {
  const Contour old(square(0, 3), false, 5);
  const auto make = [=] {
    World w = world(old, Contour(round(20)));
    w.at<Contour>(0).length();
    return w;
  };
  all({
      {"points", make, [](World& w) { w.at<Contour>(0).points(w.at<Contour>(1).points()); }},
      {"own points", make, [](World& w) { w.at<Contour>(0).points(w.at<Contour>(0).points()); }},
      {"assignment", make, [](World& w) { w.at<Contour>(0) = w.at<Contour>(1); }},
      {"map", make,
       [](World& w) {
         w.at<Contour>(1).map(gxXform<2>(gxMatrix<2>(1, 2, 3, 4), {5, 6}), w.at<Contour>(0));
       }},
      {"map into itself", make,
       [](World& w) {
         w.at<Contour>(0).map(gxXform<2>(gxMatrix<2>(1, 2, 3, 4), {5, 6}), w.at<Contour>(0));
       }},
      {"construction", make,
       [](World& w) {
         Numbers answer{Contour(square(0, 1)).length(), Contour(w.at<Contour>(0).polygon()).length(),
                        Contour(w.at<Contour>(0)).length()};
         w.answer.swap(answer);
       }},
  });
}

TEST(AllocationFailure, InQuestionsOfAContour) {
  for (const int count : {12, 130}) {
    const Contour outline(round(count));
    const Contour crossing(tangled(count));
    all({
        question("nearest", outline,
                 [](const Contour& c, Numbers& answer) {
                   for (int i = 0; i < 60; ++i) {
                     put(answer, c.closestPoint(gxVector<2>(i * 0.3, i * 0.2), i % 2 == 0));
                     answer.push_back(
                         static_cast<double>(c.closestVertexIndex(gxVector<2>(i * 0.1, -i * 0.2))));
                   }
                 }),
        question("nearest of many", outline,
                 [](const Contour& c, Numbers& answer) {
                   put(answer, c.closestPoints(square(-1, 1), false));
                   for (const long i : c.closestVertexIndices(square(-1, 1)))
                     answer.push_back(static_cast<double>(i));
                   for (const double d : c.distsToPoints(square(-1, 1), true)) answer.push_back(d);
                 }),
        question("crossings", crossing,
                 [](const Contour& c, Numbers& answer) {
                   put(answer, c.intersections(gxLineSeg({-20, 1}, {20, 2}), true));
                   put(answer, c.intersections(Contour(square(-3, 3))));
                   answer.push_back(c.isSelfIntersecting() ? 1 : 0);
                 }),
        question("extremes", outline,
                 [](const Contour& c, Numbers& answer) {
                   for (int i = 0; i < 9; ++i) {
                     answer.push_back(static_cast<double>(c.extremalVertexIndex(gxRadian(i))));
                     put(answer, c.encloseRect(gxXform<2>(gxMatrix<2>(1, i, -i, 1), {0, 0})));
                   }
                 }),
        question("circles", outline,
                 [](const Contour& c, Numbers& answer) {
                   answer.push_back(c.diameter(gxContourDefs::eAllPairs));
                   answer.push_back(c.encloseCircle(gxContourDefs::eFirstPoint).radius());
                 }),
        question("features", outline,
                 [](const Contour& c, Numbers& answer) {
                   put(answer, c.meanPosition());
                   gxEllipse ellipse;
                   double residual = 0;
                   c.fitEllipse(ellipse, residual);
                   answer.push_back(ellipse.geom().radii.x());
                   answer.push_back(residual);
                 }),
        question("vertices within a tolerance", outline,
                 [](const Contour& c, Numbers& answer) {
                   for (int i = 0; i < 40; ++i) {
                     for (const int vertex : c.vertexIndex(c.points()[0], 0.5 + i * 0.01))
                       answer.push_back(vertex);
                     for (const int vertex : c.vertexIndex(gxVector<2>(10, i * 0.1), 0.5))
                       answer.push_back(vertex);
                     for (const int vertex : c.vertexIndex(gxVector<2>(10, 0), 0.1 + i * 0.01))
                       answer.push_back(vertex);
                   }
                 }),
        {"convex hull", [=] { return world(crossing, Region(square(0, 1))); },
         [](World& w) { w.at<Contour>(0).convexHull(w.at<Region>(1)); }},
        {"statistics", [=] { return world(crossing); },
         [](World& w) {
           const Points& points = w.at<Contour>(0).points();
           gxEllipse ellipse;
           double residual = 0;
           gf_FitEllipse(points, ellipse, residual);
           Numbers answer{gf_Area(points), gf_CenterOfMass(points).x(),
                          gf_InertiaDataPolygon(points).area(), gf_Area(edgelets(points)), residual};
           w.answer.swap(answer);
         }},
    });
  }
}

// Where no ellipse can be fitted a circle is, and where that fails too, −1 stands for it: want of memory is
// neither.
TEST(AllocationFailure, InAnEllipseThatCanOnlyBeACircleOrNone) {
  for (const Points& points : {Points{{5, 0}, {0, 5}, {-5, 0}}, Points{{0, 0}, {1, 1}, {2, 2}}}) {
    all({{"ellipse of three points", [=] { return world(Contour(points)); },
          [](World& w) {
            gxEllipse ellipse;
            double residual = 0;
            gf_FitEllipse(w.at<Contour>(0).points(), ellipse, residual);
            Numbers answer{ellipse.geom().radii.x(), residual};
            w.answer.swap(answer);
          }}});
  }
}

TEST(AllocationFailure, InChangesOfARegion) {
  const auto make = [] {
    World w = world(Region(square(0, 10)), Region(bowTie()), regionWithHole());
    w.at<Region>(0).holes({shared(square(1, 2))});
    w.at<Region>(0).area(true);
    return w;
  };
  all({
      {"points", make, [](World& w) { w.at<Region>(0).points(w.at<Region>(2).points()); }},
      {"holes", make,
       [](World& w) {
         w.at<Region>(0).holes({shared(square(4, 5)), shared(square(7, 8))});
       }},
      {"assignment", make, [](World& w) { w.at<Region>(0) = w.at<Region>(2); }},
      {"assignment of a hole", make, [](World& w) { w.at<Region>(0) = *w.at<Region>(0).holes()[0]; }},
      {"assignment as a contour", make,
       [](World& w) { static_cast<Contour&>(w.at<Region>(0)) = w.at<Region>(2); }},
      {"map", make, [](World& w) { w.at<Region>(2).map(gxXform<2>::I, w.at<Region>(0)); }},
      {"regularize", make, [](World& w) { w.at<Region>(1).regularize(w.at<Region>(0)); }},
      {"regularize itself", make, [](World& w) { w.at<Region>(1).regularize(w.at<Region>(1)); }},
      {"outer hull", make, [](World& w) { w.at<Region>(1).outerHull(w.at<Region>(0)); }},
      {"outer hull itself", make, [](World& w) { w.at<Region>(1).outerHull(w.at<Region>(1)); }},
      {"convex hull of itself", make, [](World& w) { w.at<Region>(1).convexHull(w.at<Region>(1)); }},
      {"construction with a mode", make,
       [](World& w) {
         Numbers answer{Region(bowTie(), gxContourDefs::eRegularize).area(false),
                        Region(Contour(bowTie()), gxContourDefs::eOuterHull).area(false)};
         w.answer.swap(answer);
       }},
  });
}

TEST(AllocationFailure, InQuestionsOfARegion) {
  all({
      question("measures", regionWithHole(),
               [](const Region& r, Numbers& answer) {
                 for (const bool holes : {false, true}) {
                   answer.push_back(r.area(holes));
                   put(answer, r.centerOfMass(holes));
                 }
                 answer.push_back(r.inertiaMatrix(false).m00());
               }),
      question("containment", regionWithHole(),
               [](const Region& r, Numbers& answer) {
                 for (int i = 0; i < 60; ++i)
                   answer.push_back(r.inside(gxVector<2>(i * 0.3 - 9, i * 0.1), true) ? 1 : 0);
                 for (const bool inside : r.inside(square(-3, 30), true))
                   answer.push_back(inside ? 1 : 0);
               }),
      question("nearest", regionWithHole(),
               [](const Region& r, Numbers& answer) {
                 for (int i = 0; i < 30; ++i) {
                   const gxVector<2> p(i * 0.3, -i * 0.1);
                   put(answer, r.closestPoint(p, i % 2 == 0, true));
                   answer.push_back(r.distToPoint(p, false, true, true));
                   long hole = 0;
                   answer.push_back(static_cast<double>(r.closestVertexIndex(p, true, hole)));
                   answer.push_back(static_cast<double>(hole));
                 }
                 put(answer, r.closestPoints(square(-1, 1), false, true));
               }),
      question("crossings", regionWithHole(),
               [](const Region& r, Numbers& answer) {
                 put(answer, r.intersections(gxLineSeg({-20, 1}, {20, 2}), true, true));
                 put(answer, r.intersections(Contour(square(-1, 11)), true));
               }),
  });
}

TEST(AllocationFailure, InChangesOfASet) {
  const auto make = [] {
    World w = world(Set(many(3)), Set({shared(square(0, 4)), shared(square(2, 6)), shared(bowTie())}));
    w.at<Set>(0).area(true);
    return w;
  };
  all({
      {"add", make, [](World& w) { w.at<Set>(0).add(shared(square(0, 1))); }},
      {"add and repair", make,
       [](World& w) { w.at<Set>(0).add(shared(square(1, 5)), gxContourDefs::eRegularize); }},
      {"regions", make, [](World& w) { w.at<Set>(0).regions(many(5), gxContourDefs::eOuterHull); }},
      {"assignment", make, [](World& w) { w.at<Set>(0) = w.at<Set>(1); }},
      {"regularize", make, [](World& w) { w.at<Set>(1).regularize(w.at<Set>(0)); }},
      {"regularize itself", make, [](World& w) { w.at<Set>(1).regularize(w.at<Set>(1)); }},
      {"outer hull", make, [](World& w) { w.at<Set>(1).outerHull(w.at<Set>(0)); }},
      {"outer hull itself", make, [](World& w) { w.at<Set>(1).outerHull(w.at<Set>(1)); }},
      {"construction with a mode", make,
       [](World& w) {
         Numbers answer{Set(w.at<Set>(1).regions(), gxContourDefs::eRegularize).area(false)};
         w.answer.swap(answer);
       }},
  });
}

TEST(AllocationFailure, InQuestionsOfASet) {
  const auto make = [] { return world(Set(many(20))); };
  const auto ask = [](const Set& s, Numbers& answer) {
    for (const bool holes : {false, true}) {
      answer.push_back(s.area(holes));
      put(answer, s.centerOfMass(holes));
      answer.push_back(s.inertiaMatrix(holes).m00());
    }
    for (int i = 0; i < 6; ++i) put(answer, s.encloseRect(gxXform<2>(gxMatrix<2>(1, i, -i, 1), {0, 0})));
    answer.push_back(s.isSelfIntersecting() ? 1 : 0);
    for (int i = 0; i < 40; ++i) {
      const gxVector<2> p(i * 1.7, i * 1.6);
      answer.push_back(s.inside(p, true) ? 1 : 0);
      answer.push_back(s.distToPoint(p, false, true, true));
    }
    for (const bool inside : s.inside(square(-3, 30), true)) answer.push_back(inside ? 1 : 0);
  };
  all({{"everything", make, [=](World& w) {
          Numbers answer;
          ask(w.at<Set>(0), answer);
          w.answer.swap(answer);
        }}});
}

TEST(AllocationFailure, InEdgePointShapes) {
  const auto make = [] {
    World w = world(EdgeContour(edgelets(square(0, 3)), shift()),
                    EdgeRegion(edgelets(square(0, 10)), shift(), 4UL), Contour(round(10)),
                    Region(square(1, 2)));
    w.at<EdgeRegion>(1).holes({gxPtrHandle_const<EdgeRegion>(new EdgeRegion(edgelets(square(0, 1))))});
    w.at<EdgeContour>(0).length();
    return w;
  };
  all({
      {"data", make, [](World& w) { w.at<EdgeContour>(0).data(edgelets(round(9))); }},
      {"points", make, [](World& w) { w.at<EdgeContour>(0).points(round(9)); }},
      {"assignment", make, [](World& w) { w.at<EdgeContour>(0) = EdgeContour(edgelets(round(9))); }},
      {"assignment of a copy", make,
       [](World& w) { w.at<EdgeContour>(0) = static_cast<const EdgeContour&>(w.at<EdgeRegion>(1)); }},
      {"assignment as a contour", make,
       [](World& w) { static_cast<Contour&>(w.at<EdgeContour>(0)) = w.at<Contour>(2); }},
      {"assignment of a temporary as a contour", make,
       [](World& w) { static_cast<Contour&>(w.at<EdgeContour>(0)) = Contour(round(9)); }},
      {"map into it", make, [](World& w) { w.at<Contour>(2).map(gxXform<2>::I, w.at<EdgeContour>(0)); }},
      {"region: data", make, [](World& w) { w.at<EdgeRegion>(1).data(edgelets(round(9))); }},
      {"region: points", make, [](World& w) { w.at<EdgeRegion>(1).points(round(9)); }},
      {"region: assignment", make,
       [](World& w) { w.at<EdgeRegion>(1) = EdgeRegion(edgelets(round(9))); }},
      {"region: assignment as a region", make,
       [](World& w) { static_cast<Region&>(w.at<EdgeRegion>(1)) = w.at<Region>(3); }},
      {"region: assignment of a temporary as a region", make,
       [](World& w) { static_cast<Region&>(w.at<EdgeRegion>(1)) = Region(round(9)); }},
      {"region: assignment as a contour", make,
       [](World& w) { static_cast<Contour&>(w.at<EdgeRegion>(1)) = w.at<Contour>(2); }},
      {"region: plain holes", make,
       [](World& w) { w.at<EdgeRegion>(1).gxRegion::holes({shared(square(-3, -2))}); }},
      {"region: edge-point holes", make,
       [](World& w) {
         w.at<EdgeRegion>(1).holes({gxPtrHandle_const<EdgeRegion>(), gxPtrHandle_const<EdgeRegion>()});
       }},
      {"region: repair into it", make,
       [](World& w) { Region(bowTie()).outerHull(w.at<EdgeRegion>(1)); }},
      {"region: hull into it", make, [](World& w) { w.at<Contour>(2).convexHull(w.at<EdgeRegion>(1)); }},
  });
}

TEST(AllocationFailure, InEdgePointSets) {
  const auto typed = [](int count) {
    std::vector<gxPtrHandle_const<EdgeRegion>> regions;
    for (int i = 0; i < count; ++i) regions.push_back(edgeRegion(square(3 * i, 3 * i + 2)));
    return regions;
  };
  const auto make = [=] {
    return world(EdgeSet(typed(3)), EdgeSet(typed(2)), EdgeSet(), Set({Handle(new Region)}));
  };
  all({
      {"construction", make, [=](World& w) { w.at<EdgeSet>(0) = EdgeSet(typed(4)); }},
      {"assignment", make, [](World& w) { w.at<EdgeSet>(0) = w.at<EdgeSet>(1); }},
      {"assignment as a set", make,
       [](World& w) { static_cast<Set&>(w.at<EdgeSet>(0)) = w.at<EdgeSet>(1); }},
      {"assignment of a temporary as a set", make,
       [](World& w) { static_cast<Set&>(w.at<EdgeSet>(0)) = Set(w.at<EdgeSet>(1).regions()); }},
      {"add", make, [](World& w) { w.at<EdgeSet>(2).add(Handle(new Region)); }},
      {"regions", make, [](World& w) { w.at<EdgeSet>(2).regions(w.at<Set>(3).regions()); }},
      {"repair into it", make, [](World& w) { w.at<EdgeSet>(1).regularize(w.at<EdgeSet>(0)); }},
  });
}

TEST(AllocationFailure, InArchives) {
  const auto shapes = [] {
    Region region(square(0, 10));
    region.holes({shared(square(1, 2)), shared(square(3, 4))});
    return world(Contour(round(9), false, 6), region, Set(many(3)),
                 EdgeContour(edgelets(square(0, 3)), shift()), EdgeRegion(),
                 EdgeSet({gxPtrHandle_const<EdgeRegion>(new EdgeRegion)}));
  };
  const std::filesystem::path path = std::filesystem::temp_directory_path() /
                                     ("gxshape-memory-" + std::to_string(std::random_device()()));
  std::vector<std::vector<unsigned char>> frames;
  const World stored = shapes();
  for (const auto& object : stored.objects) {
    gxArchive out;
    out.store(*object);
    frames.emplace_back(out.bytes().begin(), out.bytes().end());
  }
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const std::string name = "object " + std::to_string(i);
    all({
        {name + " stored", shapes,
         [i](World& w) {
           gxArchive out;
           out.store(*w.objects[i]);
           Numbers answer{static_cast<double>(out.bytes().size())};
           w.answer.swap(answer);
         }},
        {name + " stored to a stream", shapes,
         [i](World& w) {
           std::ostringstream stream;
           gxArchive out(stream);
           out.store(*w.objects[i]);
           Numbers answer{static_cast<double>(stream.str().size())};
           w.answer.swap(answer);
         }},
        {name + " loaded", shapes, [&, i](World& w) { gxArchive(frames[i]).load(*w.objects[i]); }, true},
        {name + " loaded from a stream", shapes,
         [&, i](World& w) {
           std::istringstream stream(std::string(frames[i].begin(), frames[i].end()));
           gxArchive in(stream);
           in.load(*w.objects[i]);
         },
         true},
        {name + " made and loaded", shapes,
         [&, i](World& w) {
           std::shared_ptr<gxPersistent> made(gxArchive(frames[i]).loadNew());
           w.objects[i].swap(made);
         }},
        {name + " in a file", shapes,
         [&, i](World& w) {
           gxArchive out;
           out.store(*w.objects[i]);
           out.writeFile(path);
           gxArchive in = gxArchive::fromFile(path);
           std::shared_ptr<gxPersistent> made(in.loadNew());
           w.objects[i].swap(made);
         }},
    });
  }
  std::filesystem::remove(path);
}

// A store that fails has stored nothing, in an archive that holds frames already.
TEST(AllocationFailure, LeavesAnArchiveAsItWas) {
  const Set set(many(3));
  for (long k = 0;; ++k) {
    ASSERT_LT(k, 10000);
    gxArchive out;
    out.store(Contour(square(0, 1)));
    const std::vector<unsigned char> before(out.bytes().begin(), out.bytes().end());
    bool happened = false;
    {
      const memory_test::FailingAllocation failing(k);
      try {
        out.store(set);
      } catch (const std::bad_alloc&) {
        happened = true;
      }
    }
    if (!happened) break;
    EXPECT_TRUE(std::equal(before.begin(), before.end(), out.bytes().begin(), out.bytes().end())) << k;
    out.store(set);
    gxArchive in(out.bytes());
    Contour contour;
    Set back;
    in.load(contour);
    in.load(back);
    EXPECT_TRUE(back == set);
  }
}
