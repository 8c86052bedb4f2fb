// How often containment agrees with exact even-odd, on real outlines.
//
//   containment_report tests/data      prints the table of docs/repair.md
#include <support/containment_queries.h>
#include <support/outline_files.h>

#include <cstdio>
#include <iostream>
#include <string>

namespace {

constexpr int kEach = 400;  // points of every kind an outline, corners of the box apart

void report(const std::string& title, const std::string& path) {
  RandomDoubles random(20250101);
  ContainmentCounts counts{};
  long outlines = 0;
  for (const FiledShape& shape : filedShapes(path)) {
    askContainment(shape.outline, random, kEach, counts);
    for (const auto& hole : shape.holes) askContainment(hole, random, kEach, counts);
    outlines += 1 + static_cast<long>(shape.holes.size());
  }
  for (int kind = 0; kind < static_cast<int>(QueryKind::eCount); ++kind) {
    const ContainmentCount& c = counts[static_cast<std::size_t>(kind)];
    std::printf("| %s (%ld) | %s | %ld | %ld | %ld | %.1e |\n", title.c_str(), outlines,
                nameOf(static_cast<QueryKind>(kind)), c.asked, c.saidInside, c.differ, c.farthest);
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: containment_report tests/data\n";
    return 2;
  }
  const std::string data = arguments[1];
  std::puts("| Outlines | Points | asked | said inside | differ | farthest from the outline |");
  std::puts("|---|---|---|---|---|---|");
  report("coins", data + "/coins/outlines.jsonl");
  report("countries", data + "/countries/countries_110m.jsonl");
  report("glyphs", data + "/glyphs/glyphs.jsonl");
  return 0;
}
