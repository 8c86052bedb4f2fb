// How often containment agrees with exact even-odd, on real outlines.
//
//   containment_report tests/data      prints the tables of docs/repair.md
#include <support/containment_queries.h>
#include <support/outline_files.h>

#include <cmath>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

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

// A wavy outline: a circle of radius 100 with ripples, the more vertices the finer.
std::vector<gxVector<2>> wavy(int count) {
  std::vector<gxVector<2>> points;
  for (int i = 0; i < count; ++i) {
    const double t = 6.283185307179586 * i / count;
    const double r = 100.0 + 3.0 * std::sin(7.0 * t) + 1.0 * std::cos(40.0 * t);
    points.emplace_back(r * std::cos(t), r * std::sin(t));
  }
  return points;
}

// A comb: teeth side by side, so that most vertices lie in few directions from a tooth's tip.
std::vector<gxVector<2>> comb(int count) {
  std::vector<gxVector<2>> points;
  const int teeth = count / 2;
  for (int i = 0; i < teeth; ++i) {
    points.emplace_back(i, 0.0);
    points.emplace_back(i + 0.5, 20.0);
  }
  points.emplace_back(teeth, -1.0);
  points.emplace_back(0.0, -1.0);
  return points;
}

void reportNearVertices(const std::string& title, const std::vector<std::vector<gxVector<2>>>& outlines,
                        int each) {
  RandomDoubles random(20250102);
  NearVertexCounts counts{};
  for (const auto& outline : outlines) askNearVertices(outline, random, each, counts);
  const char* const kDecades[] = {"1e-3 to 1e-4", "1e-4 to 1e-5", "1e-5 to 1e-6"};
  for (std::size_t i = 0; i < counts.size(); ++i) {
    std::printf("| %s | %s | %ld | %ld | %.1e |\n", title.c_str(), kDecades[i], counts[i].asked,
                counts[i].differ, counts[i].farthest);
  }
}

std::vector<std::vector<gxVector<2>>> ringsOf(const std::string& path) {
  std::vector<std::vector<gxVector<2>>> rings;
  for (const FiledShape& shape : filedShapes(path)) {
    rings.push_back(shape.outline);
    rings.insert(rings.end(), shape.holes.begin(), shape.holes.end());
  }
  return rings;
}

void nearVertices(const std::string& data) {
  std::puts("\n| Outlines | from a vertex | asked | differ | farthest from the outline |");
  std::puts("|---|---|---|---|---|");
  reportNearVertices("coins", ringsOf(data + "/coins/outlines.jsonl"), 4000);
  reportNearVertices("countries", ringsOf(data + "/countries/countries_110m.jsonl"), 400);
  reportNearVertices("glyphs", ringsOf(data + "/glyphs/glyphs.jsonl"), 400);
  for (const int count : {32, 320, 3200, 32000})
    reportNearVertices("a wavy circle of " + std::to_string(count), {wavy(count)}, 60000);
  for (const int count : {320, 3200})
    reportNearVertices("a comb of " + std::to_string(count), {comb(count)}, 60000);
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
  nearVertices(data);
  return 0;
}
