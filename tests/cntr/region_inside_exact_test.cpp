// Containment against exact even-odd on real outlines: coins, countries, glyphs.  docs/repair.md has the
// table that bench/repair/containment_report counts with more points.
#include <cntr/region.h>

#include <support/containment_queries.h>
#include <support/outline_files.h>
#include <support/source_folder.h>

#include <gtest/gtest.h>

#include <iostream>

namespace {

class InsideExact : public testing::TestWithParam<const char*> {};

TEST_P(InsideExact, DiffersOnlyNearTheBorder) {
  constexpr std::uint64_t kSeed = 7;
  SCOPED_TRACE("seed 7");
  RandomDoubles random(kSeed);
  ContainmentCounts counts{};
  for (const FiledShape& shape : filedShapes(sourceFolder() + "/tests/data/" + GetParam())) {
    askContainment(shape.outline, random, 25, counts);
    for (const auto& hole : shape.holes) askContainment(hole, random, 25, counts);
  }
  const auto of = [&counts](QueryKind kind) { return counts[static_cast<std::size_t>(kind)]; };
  for (int kind = 0; kind < static_cast<int>(QueryKind::eCount); ++kind) {
    const ContainmentCount& c = counts[static_cast<std::size_t>(kind)];
    std::cout << "[ inside   ] " << GetParam() << ", " << nameOf(static_cast<QueryKind>(kind)) << ": "
              << c.asked << " asked, " << c.saidInside << " inside, " << c.differ << " differ\n";
    EXPECT_LE(c.farthest, 2e-6);
  }
  EXPECT_GT(of(QueryKind::eAnywhere).asked, 500);
  EXPECT_EQ(of(QueryKind::eAnywhere).differ, 0);
  EXPECT_EQ(of(QueryKind::eOnVertex).differ, 0) << "a vertex is inside";
}

INSTANTIATE_TEST_SUITE_P(Files, InsideExact,
                         testing::Values("coins/outlines.jsonl", "countries/countries_110m.jsonl",
                                         "glyphs/glyphs.jsonl"));

}  // namespace
