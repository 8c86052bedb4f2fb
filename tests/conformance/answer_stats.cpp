// Requests about the statistics of point lists.
#include <conformance/answer_shapes.h>

namespace {

using Ask = std::function<Json(const Json& args)>;

std::map<std::string, Ask> operations() {
  std::map<std::string, Ask> can;
  can["area"] = [](const Json& args) { return write(gf_Area(readPoints(args.at("points")))); };
  can["centerOfMass"] = [](const Json& args) {
    return write(gf_CenterOfMass(readPoints(args.at("points"))));
  };
  can["areaEdgelets"] = [](const Json& args) {
    return write(gf_Area(readEdgelets(args.at("edgelets"))));
  };
  can["centerOfMassEdgelets"] = [](const Json& args) {
    return write(gf_CenterOfMass(readEdgelets(args.at("edgelets"))));
  };
  can["inertiaDataPolygon"] = [](const Json& args) {
    return write(gf_InertiaDataPolygon(readPoints(args.at("points"))));
  };
  can["inertiaAdd"] = [](const Json& args) {
    return write(readMoments(args.at("a")) + readMoments(args.at("b")));
  };
  can["ellipseFromInertiaData"] = [](const Json& args) {
    return write(gf_EllipseFromInertiaData(readMoments(args.at("record"))));
  };
  can["ellipseOfPolygon"] = [](const Json& args) {
    return write(gf_EllipseFromInertiaData(gf_InertiaDataPolygon(readPoints(args.at("points")))));
  };
  can["stdDev"] = [](const Json& args) {
    std::vector<double> values;
    for (const Json& value : args.at("values")) values.push_back(readNumber(value));
    return write(gf_StdDev(values));
  };
  return can;
}

}  // namespace

Json answerStats(const std::string& name, const Json& args) {
  static const std::map<std::string, Ask> can = operations();
  const auto found = can.find(name);
  if (found == can.end()) throw ProtocolError("no such operation: " + name);
  return found->second(args);
}
