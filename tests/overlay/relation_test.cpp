// How two shapes lie to each other, by hand and against exact areas.
// Covers overlay/internal/relation.h
#include <overlay/internal/relation.h>

#include <overlay/cgal_judge.h>
#include <support/overlay_judge.h>
#include <support/overlay_shapes.h>
#include <support/shape_text.h>
#include <support/slab_judge.h>
#include <velstd/orientation.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace {

using V = gxVector<2>;
using slow::Region;
using slow::Set;

void addRings(const Region& region, int level, std::size_t owner, gx_RelationShape& shape) {
  const std::size_t at = shape.rings.size();
  shape.rings.push_back({&region.outline, level, owner});
  for (const Region& hole : region.holes) addRings(hole, level + 1, at, shape);
}

gx_RelationShape shapeOf(const Set& set) {
  gx_RelationShape shape;
  for (const Region& region : set) addRings(region, 0, gx_RelationShape::kNone, shape);
  return shape;
}

// As letters: I interiors meet, B borders, A first beyond, b second beyond; "?" for what is unclean.
std::string relationOf(const Set& a, const Set& b) {
  const gx_Relation r = gx_relate(shapeOf(a), shapeOf(b), {});
  if (r.unclean[0] || r.unclean[1])
    return std::string(r.unclean[0] ? "?1" : "") + (r.unclean[1] ? "?2" : "");
  return std::string(r.interiorsMeet ? "I" : "") + (r.bordersMeet ? "B" : "") +
         (r.firstBeyond ? "1" : "") + (r.secondBeyond ? "2" : "");
}

// What the other operand says of the same pair: 1 for 2 and 2 for 1, which stand in this order at the end.
std::string withSidesExchanged(const std::string& relation) {
  const bool first = relation.find('1') != std::string::npos;
  const bool second = relation.find('2') != std::string::npos;
  return relation.substr(0, relation.find_first_of("12")) + (second ? "1" : "") + (first ? "2" : "");
}

Set of(const std::string& outline) {
  return {{pointsOf(outline), {}}};
}
Set of(const std::string& outline, const std::string& hole) {
  return {{pointsOf(outline), {{pointsOf(hole), {}}}}};
}

const Set kSquare = of("0 0, 10 0, 10 10, 0 10");

TEST(Relation, knowsSquares) {
  EXPECT_EQ(relationOf(kSquare, of("20 0, 30 0, 30 10")), "12") << "apart";
  EXPECT_EQ(relationOf(kSquare, of("2 2, 4 2, 4 4")), "I1") << "within";
  EXPECT_EQ(relationOf(of("2 2, 4 2, 4 4"), kSquare), "I2");
  EXPECT_EQ(relationOf(kSquare, kSquare), "IB") << "equal";
  EXPECT_EQ(relationOf(kSquare, of("10 10, 10 0, 0 0, 0 10")), "IB") << "the other way round";
  EXPECT_EQ(relationOf(kSquare, of("5 5, 15 5, 15 15, 5 15")), "IB12") << "overlapping";
  EXPECT_EQ(relationOf(kSquare, of("10 0, 20 0, 20 10, 10 10")), "B12") << "side by side";
  EXPECT_EQ(relationOf(kSquare, of("10 10, 20 10, 20 20")), "B12") << "corner at corner";
  EXPECT_EQ(relationOf(kSquare, of("10 5, 20 0, 20 10")), "B12") << "corner at side";
  EXPECT_EQ(relationOf(kSquare, of("0 0, 10 0, 10 5, 0 5")), "IB1") << "within, along three sides";
  EXPECT_EQ(relationOf(kSquare, of("10 5, 5 8, 5 2")), "IB1") << "within, touching";
  EXPECT_EQ(relationOf(kSquare, of("0 0, 10 10, 15 -5")), "IB12") << "through two corners";
  EXPECT_EQ(relationOf(kSquare, of("-5 -5, 15 -5, 15 15, -5 15")), "I2");
}

TEST(Relation, knowsHoles) {
  const Set frame = of("0 0, 10 0, 10 10, 0 10", "2 2, 2 8, 8 8, 8 2");
  EXPECT_EQ(relationOf(frame, of("4 4, 6 4, 6 6")), "12") << "in the hole";
  EXPECT_EQ(relationOf(frame, of("2 2, 8 2, 8 8, 2 8")), "B12") << "filling the hole";
  EXPECT_EQ(relationOf(frame, of("1 1, 9 1, 9 9, 1 9")), "I12") << "around the hole";
  EXPECT_EQ(relationOf(frame, kSquare), "IB2");
  EXPECT_EQ(relationOf(frame, frame), "IB");
  EXPECT_EQ(relationOf(frame, of("2 5, 8 2, 8 8")), "B12") << "in the hole, touching";
  EXPECT_EQ(relationOf(frame, of("0.5 0.5, 1.5 0.5, 1 1.5")), "I1");
}

TEST(Relation, knowsSetsAndNothing) {
  const Set two = {kSquare[0], of("20 0, 30 0, 30 10, 20 10")[0]};
  EXPECT_EQ(relationOf(two, kSquare), "IB1");
  EXPECT_EQ(relationOf(two, {two[1], two[0]}), "IB");
  EXPECT_EQ(relationOf(two, of("10 0, 20 0, 20 10, 10 10")), "B12");
  EXPECT_EQ(relationOf({}, {}), "");
  EXPECT_EQ(relationOf({}, kSquare), "2");
  EXPECT_EQ(relationOf(kSquare, {}), "1");
}

TEST(Relation, tellsWhatItCannotTake) {
  const Set bow = of("0 0, 10 10, 10 0, 0 10");
  EXPECT_EQ(relationOf(bow, kSquare), "?1");
  EXPECT_EQ(relationOf(kSquare, bow), "?2");
  EXPECT_EQ(relationOf(bow, bow), "?1?2");
  EXPECT_EQ(relationOf(kSquare, of("0 0, 1 1")), "?2") << "no area";
  EXPECT_EQ(relationOf(kSquare, of("0 0, 1 1, 2 2")), "?2");
  EXPECT_EQ(relationOf(kSquare, of("0 0, 10 0, 14 0, 10 0, 5 8")), "?2") << "a spike";
  EXPECT_EQ(relationOf(of("0 0, 10 0, 10 10, 0 10", "12 2, 12 4, 14 4"), kSquare), "?1")
      << "a hole outside";
  EXPECT_EQ(relationOf({kSquare[0], of("2 2, 4 2, 4 4")[0]}, kSquare), "?1") << "a region in a region";
  Set nested = of("0 0, 10 0, 10 10, 0 10", "1 1, 1 9, 9 9, 9 1");
  nested[0].holes.push_back({pointsOf("3 3, 3 4, 4 4"), {}});
  EXPECT_EQ(relationOf(nested, kSquare), "?1") << "a hole in a hole";
  EXPECT_EQ(relationOf(of("0 0, 10 0, 10 10, 0 10", "0 5, 5 7, 5 3"), kSquare), "?1")
      << "a hole that touches";
}

TEST(Relation, takesTouchingRingsOnTrust) {
  const Set set = of("0 0, 10 0, 10 10, 0 10, 0 5", "0 5, 5 7, 5 3");
  gx_RelationShape shape = shapeOf(set);
  shape.trusted = true;
  const gx_Relation same = gx_relate(shape, shape, {});
  EXPECT_TRUE(same.interiorsMeet && same.bordersMeet && !same.firstBeyond && !same.secondBeyond);
  const Set inHole = of("0 5, 4 6, 4 4");
  const gx_Relation touching = gx_relate(shape, shapeOf(inHole), {});
  EXPECT_TRUE(!touching.interiorsMeet && touching.bordersMeet && touching.firstBeyond &&
              touching.secondBeyond);
}

TEST(Relation, refusesAndStops) {
  EXPECT_THROW(relationOf(kSquare, of("0 0, nan 1, 2 2")), gxContourDefs::BadParams);
  gxOverlayLimits limits;
  limits.maxMeetings = 3;
  EXPECT_THROW(gx_relate(shapeOf(kSquare), shapeOf(kSquare), limits), gxLimitExceeded);
  limits = {};
  limits.stop = [] { return true; };
  std::vector<V> many;
  for (int i = 0; i < 5000; ++i) many.emplace_back(i, i % 2 == 0 ? 0 : 1);
  many.emplace_back(5000, 50);
  many.emplace_back(0, 50);
  EXPECT_THROW(gx_relate(shapeOf({{many, {}}}), shapeOf({{many, {}}}), limits), gxStopped);
}

// ---- Against areas --------------------------------------------------------------------------------

bool bordersMeet(const Set& a, const Set& b) {
  for (const judge::Ring& ring : judge::ringsOf(a)) {
    for (std::size_t i = 0; i < ring.size(); ++i) {
      const V& p = ring[i];
      const V& q = ring[(i + 1) % ring.size()];
      for (const judge::Ring& other : judge::ringsOf(b)) {
        for (std::size_t j = 0; j < other.size(); ++j) {
          const V& r = other[j];
          const V& s = other[(j + 1) % other.size()];
          if (std::max(p.x(), q.x()) < std::min(r.x(), s.x()) ||
              std::max(r.x(), s.x()) < std::min(p.x(), q.x()) ||
              std::max(p.y(), q.y()) < std::min(r.y(), s.y()) ||
              std::max(r.y(), s.y()) < std::min(p.y(), q.y())) {
            continue;
          }
          if (gx_Orientation(p, q, r) * gx_Orientation(p, q, s) <= 0 &&
              gx_Orientation(r, s, p) * gx_Orientation(r, s, q) <= 0) {
            return true;
          }
        }
      }
    }
  }
  return false;
}

std::string relationByAreas(const Set& a, const Set& b, bool lattice) {
  const auto has = [&](bool inA, bool inB) {
    const judge::Question question =
        judge::combined({a, b}, judge::Rule::eEvenOdd,
                        [&](const std::vector<bool>& held) { return held[0] == inA && held[1] == inB; });
    return (lattice ? judge::judgeBySlabs(question) : judge::judgeByCgal(question)).area != 0.0;
  };
  return std::string(has(true, true) ? "I" : "") + (bordersMeet(a, b) ? "B" : "") +
         (has(true, false) ? "1" : "") + (has(false, true) ? "2" : "");
}

// Valid sets of mosaics share vertices and borders bit for bit.
std::vector<Set> cleanPair(RandomShapes& random, bool& lattice) {
  lattice = random.chance(0.6);
  if (lattice) {
    const Set set = nearlyValidSet(random);
    return {set, random.chance(0.05) ? saidDifferently(random, set, true) : nearlyValidSet(random)};
  }
  constexpr OverlayFamily kFamilies[] = {OverlayFamily::eMosaic, OverlayFamily::eCopies,
                                         OverlayFamily::eGeneral, OverlayFamily::eThin,
                                         OverlayFamily::eFar};
  return overlayOperands(random, kFamilies[random.integer(0, 4)], 2);
}

TEST(RelationSlowTruth, tellsWhatAreasTell) {
  RandomShapes random("relations", 4000);
  std::map<std::string, int> seen;
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    bool lattice = false;
    const auto pair = cleanPair(random, lattice);
    const std::string relation = relationOf(pair[0], pair[1]);
    if (relation.find('?') != std::string::npos) continue;
    ++seen[relation];
    const std::string exchanged = relationOf(pair[1], pair[0]);
    ++seen[exchanged];
    ASSERT_EQ(exchanged, withSidesExchanged(relation));
    ASSERT_EQ(relation, relationByAreas(pair[0], pair[1], lattice))
        << testing::PrintToString(judge::ringsOf(pair[0]))
        << testing::PrintToString(judge::ringsOf(pair[1]));
  }
  for (const char* relation : {"12", "B12", "I1", "I2", "IB1", "IB2", "IB12", "IB"}) {
    EXPECT_GT(seen[relation], 6 * random.share()) << relation;  // every pair is seen from both sides
  }
}

}  // namespace
