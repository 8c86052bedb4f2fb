// JSON to shapes and back.  Numbers that JSON cannot write are the words "nan", "inf" and "-inf".
#include <conformance/answer_shapes.h>
#include <veldispc/recording_tablet.h>

#include <cmath>
#include <limits>

// ---- Numbers and values -------------------------------------------------------------------------

double readNumber(const Json& json) {
  if (!json.is_string()) return json.get<double>();
  const auto word = json.get<std::string>();
  if (word == "nan") return std::numeric_limits<double>::quiet_NaN();
  if (word == "inf") return std::numeric_limits<double>::infinity();
  if (word == "-inf") return -std::numeric_limits<double>::infinity();
  throw ProtocolError("not a number: " + word);
}

bool readFlag(const Json& args, const char* name) {
  return args.at(name).get<bool>();
}

gxVector<2> readPoint(const Json& json) {
  if (json.size() != 2) throw ProtocolError("a point has two coordinates");
  return {readNumber(json.at(0)), readNumber(json.at(1))};
}

std::vector<gxVector<2>> readPoints(const Json& json) {
  std::vector<gxVector<2>> points;
  for (const Json& point : json) points.push_back(readPoint(point));
  return points;
}

gxLineSeg readSegment(const Json& json) {
  return {readPoint(json.at(0)), readPoint(json.at(1))};
}

gxXform<2> readXform(const Json& json) {
  if (json.is_null()) return {};
  if (json.size() != 6) throw ProtocolError("a transform has six numbers");
  const auto at = [&](std::size_t i) { return readNumber(json.at(i)); };
  return {{at(0), at(1), at(2), at(3)}, {at(4), at(5)}};
}

gxEdgelet readEdgelet(const Json& json) {
  return {{readNumber(json.at(0)), readNumber(json.at(1))},
          json.at(2).get<unsigned short>(),
          gxAngle8(json.at(3).get<unsigned char>())};
}

std::vector<gxEdgelet> readEdgelets(const Json& json) {
  std::vector<gxEdgelet> edgelets;
  for (const Json& edgelet : json) edgelets.push_back(readEdgelet(edgelet));
  return edgelets;
}

gx_InertiaData readMoments(const Json& json) {
  const Json& m = json.at("matrix");
  return {readNumber(json.at("area")),
          readPoint(json.at("center")),
          {readNumber(m.at(0)), readNumber(m.at(1)), readNumber(m.at(2)), readNumber(m.at(3))}};
}

gxContourDefs::IntersectionMode readMode(const Json& object) {
  return static_cast<gxContourDefs::IntersectionMode>(object.value("mode", 0));
}

Json write(double number) {
  if (std::isnan(number)) return "nan";
  if (std::isinf(number)) return number > 0 ? "inf" : "-inf";
  return number;
}

Json write(const gxVector<2>& point) {
  return Json::array({write(point.x()), write(point.y())});
}

Json write(const std::vector<gxVector<2>>& points) {
  Json json = Json::array();
  for (const gxVector<2>& point : points) json.push_back(write(point));
  return json;
}

Json write(const gxLineSeg& segment) {
  return Json::array({write(segment.p1()), write(segment.p2())});
}

Json write(const gxRect& rect) {
  return {{"origin", write(rect.origin())}, {"size", write(rect.size())}};
}

Json write(const gxCircle& circle) {
  return {{"center", write(circle.center())}, {"radius", write(circle.radius())}};
}

Json write(const gxEllipse& ellipse) {
  return {{"center", write(ellipse.geom().center)},
          {"radii", write(ellipse.geom().radii)},
          {"rotation", write(ellipse.geom().rotation.toDouble())}};
}

Json write(const gxMatrix<2>& matrix) {
  return Json::array(
      {write(matrix.m00()), write(matrix.m01()), write(matrix.m10()), write(matrix.m11())});
}

Json write(const gx_InertiaData& moments) {
  return {{"area", write(moments.area())},
          {"center", write(moments.centerOfMass())},
          {"matrix", write(moments.inertiaMatrix())}};
}

Json write(const gxEdgelet& edgelet) {
  return Json::array({write(edgelet.position().x()), write(edgelet.position().y()), edgelet.magnitude(),
                      edgelet.angle().toByte()});
}

Json write(const std::vector<gxEdgelet>& edgelets) {
  Json json = Json::array();
  for (const gxEdgelet& edgelet : edgelets) json.push_back(write(edgelet));
  return json;
}

// ---- Shapes -------------------------------------------------------------------------------------

gxContour readContour(const Json& json) {
  const auto label = json.value("label", 0UL);
  gxContour contour =
      json.contains("polygon")
          ? gxContour(gxPolygon(readPoints(json.at("polygon")), gxPolygon::eEvenOdd), label)
          : gxContour(readPoints(json.at("points")), json.value("closed", true), label);
  if (json.contains("cachedVectorSize"))
    contour.cachedVectorSize(json.at("cachedVectorSize").get<long>());
  return contour;
}

bool tellsRegion(const Json& json) {
  return json.contains("holes") || json.contains("mode") || json.contains("contour");
}

gxPtrHandle<gxRegion> readRegion(const Json& json) {
  if (json.is_null()) return nullptr;
  gxPtrHandle<gxRegion> region;
  const auto mode = readMode(json);
  if (json.contains("contour")) {
    region = gxPtrHandle<gxRegion>(new gxRegion(readContour(json.at("contour")), mode));
  } else if (json.contains("polygon")) {
    const gxPolygon polygon(readPoints(json.at("polygon")), gxPolygon::eEvenOdd);
    region = gxPtrHandle<gxRegion>(new gxRegion(polygon, mode));
  } else {
    region = gxPtrHandle<gxRegion>(new gxRegion(readPoints(json.at("points")), mode));
  }
  if (json.contains("label")) region->label(json.at("label").get<unsigned long>());
  if (json.contains("cachedVectorSize"))
    region->cachedVectorSize(json.at("cachedVectorSize").get<long>());
  if (json.contains("holes") && !json.at("holes").empty()) region->holes(readRegions(json.at("holes")));
  return region;
}

std::vector<gxPtrHandle_const<gxRegion>> readRegions(const Json& json) {
  std::vector<gxPtrHandle_const<gxRegion>> regions;
  for (const Json& region : json) regions.push_back(readRegion(region));
  return regions;
}

Json write(const gxContour& contour) {
  return {{"points", write(contour.points())},
          {"closed", contour.isClosed()},
          {"label", contour.label()},
          {"cachedVectorSize", contour.cachedVectorSize()}};
}

Json write(const gxRegion& region) {
  Json json = write(static_cast<const gxContour&>(region));
  Json holes = Json::array();
  for (const auto& hole : region.holes()) holes.push_back(hole.isNull() ? Json(nullptr) : write(*hole));
  json["holes"] = holes;
  return json;
}

Json drawn(const std::function<void(gxUITablet&)>& draw) {
  gxRecordingTablet tablet;
  draw(tablet);
  Json segments = Json::array();
  for (const auto& s : tablet.segments()) {
    segments.push_back(write(gxLineSeg({s.from.x(), s.from.y()}, {s.to.x(), s.to.y()})));
  }
  return segments;
}
