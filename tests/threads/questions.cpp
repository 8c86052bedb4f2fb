// The questions, class by class.

#include "questions.h"

#include <ch_core/cntrtmpl.h>
#include <cntr/contour.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <veldispc/color.h>
#include <veldispc/tablet.h>
#include <velstd/archive.h>

#include <bit>
#include <exception>
#include <type_traits>

namespace threads_test {
namespace {

using V = gxVector<2>;

// ---- Answers as bits ----------------------------------------------------------------------------

void add(Bits& bits, double value) {
  bits.push_back(std::bit_cast<std::uint64_t>(value));
}
template <class T, std::enable_if_t<std::is_integral_v<T>, int> = 0>
void add(Bits& bits, T value) {
  bits.push_back(static_cast<std::uint64_t>(value));
}
void add(Bits& bits, const V& v) {
  add(bits, v.x());
  add(bits, v.y());
}
void add(Bits& bits, const gxRect& rect) {
  add(bits, rect.origin());
  add(bits, rect.corner());
}
void add(Bits& bits, const gxCircle& circle) {
  add(bits, circle.center());
  add(bits, circle.radius());
}
void add(Bits& bits, const gxMatrix<2>& m) {
  for (int i = 0; i < 2; ++i) {
    for (int k = 0; k < 2; ++k) add(bits, m.element(i, k));
  }
}
void add(Bits& bits, const gxEdgelet& edgelet) {
  add(bits, edgelet.position());
  add(bits, edgelet.magnitude());
  add(bits, edgelet.angle().toByte());
}
void add(Bits& bits, const gxContour& contour) {
  for (const V& point : contour.points()) add(bits, point);
  add(bits, contour.isClosed());
  add(bits, contour.label());
}
template <class T>
void add(Bits& bits, const std::vector<T>& list) {
  add(bits, list.size());
  for (const T& one : list) add(bits, one);
}
void add(Bits& bits, const std::vector<bool>& list) {
  add(bits, list.size());
  for (const bool one : list) add(bits, one);
}

class Tablet : public gxUITablet {
 public:
  void drawLineSeg(const gxPair<double>& a, const gxPair<double>& b, const gxColor&, Layers) override {
    for (const double value : {a.x(), a.y(), b.x(), b.y()}) add(drawn, value);
  }
  Bits drawn;
};

// ---- Making a question --------------------------------------------------------------------------

template <class Shape, class Ask>
Question question(std::string name, const Ask& ask) {
  return {std::move(name), [ask](const gxPersistent& object) {
            Bits bits;
            const auto& shape = dynamic_cast<const Shape&>(object);
            if constexpr (std::is_same_v<decltype(ask(shape)), Bits>) {
              bits = ask(shape);
            } else {
              add(bits, ask(shape));
            }
            return bits;
          }};
}

// Where points are asked about: in, out, near the border of shapes of some 10 units around (0, 0).
const std::vector<V>& places() {
  static const std::vector<V> all = {V(0.3, 0.2), V(4, -3),  V(9.5, 0.1),  V(-12, 5), V(2.5, 2.5),
                                     V(-3, 6),    V(5.5, 1), V(-1, -8.75), V(30, 30)};
  return all;
}

const std::vector<gxXform<2>>& frames() {
  static const std::vector<gxXform<2>> all = [] {
    std::vector<gxXform<2>> made;
    for (int i = 0; i < 7; ++i) {
      made.emplace_back(gxMatrix<2>(1.0 + i, 0.25 * i, -0.5 * i, 2.0), V(i, -i));
    }
    return made;
  }();
  return all;
}

// ---- Contours -----------------------------------------------------------------------------------

void addContourMeasures(std::vector<Question>& all) {
  using C = gxContour;
  all.push_back(question<C>("length", [](const C& c) { return c.length(); }));
  all.push_back(question<C>("meanPosition", [](const C& c) { return c.meanPosition(); }));
  all.push_back(question<C>("isSelfIntersecting", [](const C& c) { return c.isSelfIntersecting(); }));
  all.push_back(question<C>("circle on the farthest pair",
                            [](const C& c) { return c.encloseCircle(gxContourDefs::eAllPairs); }));
  all.push_back(question<C>("circle around the first point",
                            [](const C& c) { return c.encloseCircle(gxContourDefs::eFirstPoint); }));
  all.push_back(question<C>("encloseRect", [](const C& c) { return c.encloseRect(gxXform<2>::I); }));
  all.push_back(question<C>("encloseRect in many frames", [](const C& c) {
    Bits bits;
    for (const auto& frame : frames()) add(bits, c.encloseRect(frame));
    return bits;
  }));
  all.push_back(question<C>("extremalVertexIndex", [](const C& c) {
    Bits bits;
    for (int i = 0; i < 9; ++i) add(bits, c.extremalVertexIndex(gxRadian(i)));
    return bits;
  }));
  all.push_back(question<C>("convexHull", [](const C& c) {
    gxRegion hull;
    c.convexHull(hull);
    Bits bits;
    add(bits, hull);
    return bits;
  }));
  all.push_back(question<C>("fitEllipse", [](const C& c) {
    gxEllipse ellipse;
    double residual = 0.0;
    c.fitEllipse(ellipse, residual);
    Bits bits;
    add(bits, ellipse.geom().center);
    add(bits, ellipse.geom().radii);
    add(bits, ellipse.geom().rotation.toDouble());
    add(bits, residual);
    return bits;
  }));
}

void addContourSearches(std::vector<Question>& all) {
  using C = gxContour;
  all.push_back(question<C>("closestPoint, one by one", [](const C& c) {
    Bits bits;
    for (const V& place : places()) add(bits, c.closestPoint(place, false));
    return bits;
  }));
  all.push_back(question<C>("closestVertexIndex, one by one", [](const C& c) {
    Bits bits;
    for (const V& place : places()) add(bits, c.closestVertexIndex(place));
    return bits;
  }));
  all.push_back(
      question<C>("closestPoints", [](const C& c) { return c.closestPoints(places(), false); }));
  all.push_back(
      question<C>("distsToPoints", [](const C& c) { return c.distsToPoints(places(), false); }));
  all.push_back(question<C>("vertexIndex, until a grid pays", [](const C& c) {
    Bits bits;
    for (int i = 0; i < 20; ++i) add(bits, c.vertexIndex(V(5.0 * i / 20, 3), 2.5));
    return bits;
  }));
  all.push_back(question<C>("vertexIndex, many tolerances", [](const C& c) {
    Bits bits;
    for (int i = 0; i < 9; ++i) add(bits, c.vertexIndex(V(5, 1), 0.5 + 0.75 * i));
    return bits;
  }));
  all.push_back(question<C>("intersections with a segment", [](const C& c) {
    return c.intersections(gxLineSeg(V(-20, -1.5), V(20, 2.25)), true);
  }));
  all.push_back(question<C>("intersections with itself",
                            [](const C& c) { return c.intersections(static_cast<const C&>(c)); }));
}

void addContourCopies(std::vector<Question>& all) {
  using C = gxContour;
  all.push_back(question<C>("a copy, which is then asked", [](const C& c) {
    const C copy(c);
    Bits bits;
    add(bits, copy.length());
    add(bits, copy.encloseRect(gxXform<2>::I));
    for (const V& place : places()) add(bits, copy.closestPoint(place, false));
    return bits;
  }));
  all.push_back(question<C>("map", [](const C& c) {
    C mapped;
    c.map(frames()[2], mapped);
    Bits bits;
    add(bits, mapped);
    return bits;
  }));
  all.push_back(question<C>("polygon", [](const C& c) { return c.polygon().vertices(); }));
  all.push_back(question<C>("draw", [](const C& c) {
    Tablet tablet;
    c.draw(tablet, gxContourDefs::eDrawEdges, gxColor(), gxUITablet::Layers());
    return tablet.drawn;
  }));
}

// ---- Regions ------------------------------------------------------------------------------------

void addRegionMeasures(std::vector<Question>& all) {
  using R = gxRegion;
  for (const bool holes : {false, true}) {
    const std::string with = holes ? " with holes" : " without holes";
    all.push_back(question<R>("area" + with, [holes](const R& r) { return r.area(holes); }));
    all.push_back(
        question<R>("centerOfMass" + with, [holes](const R& r) { return r.centerOfMass(holes); }));
    all.push_back(question<R>("inside, one by one" + with, [holes](const R& r) {
      Bits bits;
      for (int round = 0; round < 5; ++round) {
        for (const V& place : places()) add(bits, r.inside(place, holes));
      }
      return bits;
    }));
    all.push_back(
        question<R>("inside, many" + with, [holes](const R& r) { return r.inside(places(), holes); }));
  }
  all.push_back(question<R>("inertiaMatrix", [](const R& r) { return r.inertiaMatrix(false); }));
}

void addRegionSearches(std::vector<Question>& all) {
  using R = gxRegion;
  all.push_back(question<R>("distToPoint", [](const R& r) {
    Bits bits;
    for (const V& place : places()) add(bits, r.distToPoint(place, false, true, true));
    return bits;
  }));
  all.push_back(question<R>("closestVertexIndex with holes", [](const R& r) {
    Bits bits;
    for (const V& place : places()) {
      long hole = -2;
      add(bits, r.closestVertexIndex(place, true, hole));
      add(bits, hole);
    }
    return bits;
  }));
  all.push_back(question<R>("intersections with holes", [](const R& r) {
    return r.intersections(gxLineSeg(V(-20, -1.5), V(20, 2.25)), false, true);
  }));
  for (const bool hull : {false, true}) {
    all.push_back(question<R>(hull ? "outerHull" : "regularize", [hull](const R& r) {
      R result;
      if (hull) {
        r.outerHull(result);
      } else {
        r.regularize(result);
      }
      Bits bits;
      add(bits, result);
      add(bits, result.holes().size());
      return bits;
    }));
  }
  all.push_back(question<R>("a copy of the region, which is then asked", [](const R& r) {
    const R copy(r);
    Bits bits;
    add(bits, copy.inside(places(), true));
    add(bits, copy.area(true));
    for (const auto& hole : copy.holes()) add(bits, hole->closestPoint(places()[1], false));
    return bits;
  }));
}

// ---- Sets ---------------------------------------------------------------------------------------

void addSet(std::vector<Question>& all) {
  using S = gxRegionSet;
  for (const bool holes : {false, true}) {
    const std::string with = holes ? " with holes" : " without holes";
    all.push_back(question<S>("area" + with, [holes](const S& s) { return s.area(holes); }));
    all.push_back(
        question<S>("centerOfMass" + with, [holes](const S& s) { return s.centerOfMass(holes); }));
    all.push_back(question<S>("inside, until the tree pays" + with, [holes](const S& s) {
      Bits bits;
      for (int round = 0; round < 4; ++round) {
        for (const V& place : places()) add(bits, s.inside(place, holes));
      }
      return bits;
    }));
    all.push_back(
        question<S>("inside, many" + with, [holes](const S& s) { return s.inside(places(), holes); }));
  }
  all.push_back(question<S>("inertiaMatrix", [](const S& s) { return s.inertiaMatrix(false); }));
  all.push_back(question<S>("encloseRect in many frames", [](const S& s) {
    Bits bits;
    for (const auto& frame : frames()) add(bits, s.encloseRect(frame));
    return bits;
  }));
  all.push_back(question<S>("distToPoint", [](const S& s) {
    Bits bits;
    for (const V& place : places()) add(bits, s.distToPoint(place, false, true, true));
    return bits;
  }));
  all.push_back(question<S>("isSelfIntersecting", [](const S& s) { return s.isSelfIntersecting(); }));
  for (const bool hull : {false, true}) {
    all.push_back(question<S>(hull ? "outerHull" : "regularize", [hull](const S& s) {
      S result;
      if (hull) {
        s.outerHull(result);
      } else {
        s.regularize(result);
      }
      Bits bits;
      for (const auto& region : result.regions()) add(bits, *region);
      return bits;
    }));
  }
  all.push_back(question<S>("a copy of the set, which is then asked", [](const S& s) {
    const S copy(s);
    Bits bits;
    add(bits, copy.inside(places(), true));
    add(bits, copy.area(true));
    return bits;
  }));
  all.push_back(question<S>("draw", [](const S& s) {
    Tablet tablet;
    s.draw(tablet, gxColor(), gxUITablet::Layers());
    return tablet.drawn;
  }));
}

// ---- Edge points, archives ----------------------------------------------------------------------

void addEdgePoints(std::vector<Question>& all) {
  using E = gxContourT<gxEdgelet>;
  all.push_back(question<E>("data", [](const E& e) { return e.data(); }));
  all.push_back(question<E>("point and datum", [](const E& e) {
    Bits bits;
    for (const gxEdgelet& edgelet : e.data()) add(bits, e.point(edgelet));
    for (const V& place : places()) add(bits, e.datum(place));
    return bits;
  }));
  all.push_back(question<E>("a copy with its edge points", [](const E& e) {
    const E copy(e);
    Bits bits;
    add(bits, copy.data());
    if (!copy.data().empty()) add(bits, copy.point(copy.data().front()));
    return bits;
  }));
}

void addArchive(std::vector<Question>& all) {
  all.push_back({"store", [](const gxPersistent& object) {
                   gxArchive archive;
                   archive.store(object);
                   return Bits(archive.bytes().begin(), archive.bytes().end());
                 }});
}

}  // namespace

std::vector<Question> questionsFor(const gxPersistent& object) {
  std::vector<Question> all;
  if (dynamic_cast<const gxContour*>(&object) != nullptr) {
    addContourMeasures(all);
    addContourSearches(all);
    addContourCopies(all);
  }
  if (dynamic_cast<const gxRegion*>(&object) != nullptr) {
    addRegionMeasures(all);
    addRegionSearches(all);
  }
  if (dynamic_cast<const gxRegionSet*>(&object) != nullptr) addSet(all);
  if (dynamic_cast<const gxContourT<gxEdgelet>*>(&object) != nullptr) addEdgePoints(all);
  addArchive(all);
  return all;
}

Bits answerOf(const Question& question, const gxPersistent& object) {
  try {
    return question.ask(object);
  } catch (const std::exception& error) {
    const std::string text = error.what();
    Bits bits(text.begin(), text.end());
    bits.push_back(~std::uint64_t{0});
    return bits;
  }
}

}  // namespace threads_test
