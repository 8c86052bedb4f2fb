#include <support/outline_files.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace {

std::vector<gxVector<2>> ringOf(const nlohmann::json& json) {
  std::vector<gxVector<2>> ring;
  ring.reserve(json.size());
  for (const auto& p : json) ring.emplace_back(p.at(0).get<double>(), p.at(1).get<double>());
  return ring;
}

}  // namespace

std::vector<FiledShape> filedShapes(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("there is no " + path);
  std::vector<FiledShape> shapes;
  for (std::string line; std::getline(file, line);) {
    const nlohmann::json json = nlohmann::json::parse(line);
    FiledShape shape;
    shape.name = json.at("name").get<std::string>();
    shape.operation = json.value("operation", "");
    shape.outline = ringOf(json.at(json.contains("points") ? "points" : "outer"));
    if (json.contains("holes")) {
      for (const auto& hole : json.at("holes")) shape.holes.push_back(ringOf(hole));
    }
    shapes.push_back(shape);
  }
  return shapes;
}
