// Reading the input.
//
//  1. A file of outlines has a JSON object on each line.  The outline stands under "points" (coins,
//     tangled outlines) or under "outer", with "holes" beside it (countries).
//  2. A file of edge points has a heading, then outline, vertex, x, y, magnitude, angle on each line,
//     sorted by outline and vertex.
//  3. Whatever is wrong with a line is reported with the file's name and the line's number.

#include "readers.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace {

using nlohmann::json;

std::ifstream openFile(const std::filesystem::path& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error(path.string() + ": cannot be opened");
  return file;
}

[[noreturn]] void refuse(const std::filesystem::path& path, std::size_t line, const std::string& why) {
  throw std::runtime_error(path.string() + ":" + std::to_string(line) + ": " + why);
}

std::vector<gxVector<2>> pointsOf(const json& ring) {
  std::vector<gxVector<2>> points;
  points.reserve(ring.size());
  for (const json& point : ring) {
    points.emplace_back(point.at(0).get<double>(), point.at(1).get<double>());
  }
  return points;
}

Outline outlineOf(const json& record) {
  Outline outline;
  outline.name = record.at("name").get<std::string>();
  if (record.contains("source")) {
    outline.origin =
        record.at("source").get<std::string>() + ", " + record.at("operation").get<std::string>();
  }
  outline.points = pointsOf(record.contains("points") ? record.at("points") : record.at("outer"));
  if (record.contains("holes")) {
    for (const json& hole : record.at("holes")) outline.holes.push_back(pointsOf(hole));
  }
  return outline;
}

}  // namespace

std::vector<Outline> readOutlines(const std::filesystem::path& path) {
  std::ifstream file = openFile(path);
  std::vector<Outline> outlines;
  std::string text;
  for (std::size_t line = 1; std::getline(file, text); ++line) {
    try {
      outlines.push_back(outlineOf(json::parse(text)));
    } catch (const json::exception& error) {
      refuse(path, line, error.what());
    }
  }
  return outlines;
}

std::vector<std::vector<gxEdgelet>> readEdgePoints(const std::filesystem::path& path) {
  std::ifstream file = openFile(path);
  std::vector<std::vector<gxEdgelet>> outlines;
  std::string text;
  std::getline(file, text);
  for (std::size_t line = 2; std::getline(file, text); ++line) {
    unsigned long outline = 0;
    unsigned long vertex = 0;
    double x = 0.0;
    double y = 0.0;
    unsigned short magnitude = 0;
    unsigned char angle = 0;
    const int found = std::sscanf(text.c_str(), "%lu,%lu,%lf,%lf,%hu,%hhu", &outline, &vertex, &x, &y,
                                  &magnitude, &angle);
    if (found != 6) refuse(path, line, "six numbers are expected");
    if (outline == outlines.size()) outlines.emplace_back();
    if (outline + 1 != outlines.size() || vertex != outlines.back().size()) {
      refuse(path, line, "edge points are expected in order of outline and vertex");
    }
    outlines.back().emplace_back(gxVector<2>(x, y), magnitude, gxAngle8(angle));
  }
  return outlines;
}
