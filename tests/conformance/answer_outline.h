/// The operations that contours and regions have in common.
#pragma once

#include <conformance/answer_shapes.h>

/// Adds what asks something of the outline.
template <class Shape>
void addOutlineQueries(Operations<Shape>& can) {
  can["info"] = [](Shape& shape, const Json&) { return write(shape); };
  can["length"] = [](Shape& shape, const Json&) { return write(shape.length()); };
  can["closestVertexIndex"] = [](Shape& shape, const Json& args) {
    return Json(shape.closestVertexIndex(readPoint(args.at("point"))));
  };
  can["intersectionsEdges"] = [](Shape& shape, const Json& args) {
    std::vector<int> edges;
    const auto points =
        shape.intersections(readSegment(args.at("seg")), edges, readFlag(args, "countEndContacts"));
    return Json{{"points", write(points)}, {"edges", edges}};
  };
  can["isSelfIntersecting"] = [](Shape& shape, const Json&) { return Json(shape.isSelfIntersecting()); };
  can["extremalVertexIndex"] = [](Shape& shape, const Json& args) {
    return Json(shape.extremalVertexIndex(gxRadian(readNumber(args.at("angle")))));
  };
  can["extremalVertexPosition"] = [](Shape& shape, const Json& args) {
    return write(shape.extremalVertexPosition(gxRadian(readNumber(args.at("angle")))));
  };
  can["encloseRect"] = [](Shape& shape, const Json& args) {
    return write(shape.encloseRect(readXform(args.at("xform"))));
  };
  can["encloseCircle"] = [](Shape& shape, const Json& args) {
    return write(
        shape.encloseCircle(static_cast<gxContourDefs::DiameterMode>(args.at("mode").get<int>())));
  };
  can["diameter"] = [](Shape& shape, const Json& args) {
    return write(shape.diameter(static_cast<gxContourDefs::DiameterMode>(args.at("mode").get<int>())));
  };
  can["convexHull"] = [](Shape& shape, const Json&) {
    gxRegion hull;
    shape.convexHull(hull);
    return write(hull);
  };
  can["meanPosition"] = [](Shape& shape, const Json&) { return write(shape.meanPosition()); };
  can["medianFeatureSize"] = [](Shape& shape, const Json&) { return write(shape.medianFeatureSize()); };
  can["vertexIndex"] = [](Shape& shape, const Json& args) {
    return Json(shape.vertexIndex(readPoint(args.at("point")), readNumber(args.at("tolerance"))));
  };
  can["polygon"] = [](Shape& shape, const Json&) { return write(shape.polygon().vertices()); };
  can["isClosed"] = [](Shape& shape, const Json&) { return Json(shape.isClosed()); };
  can["label"] = [](Shape& shape, const Json&) { return Json(shape.label()); };
  can["cachedVectorSize"] = [](Shape& shape, const Json&) { return Json(shape.cachedVectorSize()); };
  can["lineSegs"] = [](Shape& shape, const Json&) {
    const std::vector<gxLineSeg> segments = shape.lineSegs();
    const std::vector<bool> valid = shape.validLine();
    Json json = Json::array();
    for (std::size_t i = 0; i < segments.size(); ++i) {
      json.push_back({{"seg", write(segments[i])}, {"valid", static_cast<bool>(valid.at(i))}});
    }
    return json;
  };
}

/// Adds what changes the outline; each gives the shape afterwards.
template <class Shape>
void addOutlineSetters(Operations<Shape>& can) {
  can["setPoints"] = [](Shape& shape, const Json& args) {
    shape.points(readPoints(args.at("points")));
    return write(shape);
  };
  can["setClosed"] = [](Shape& shape, const Json& args) {
    shape.isClosed(readFlag(args, "closed"));
    return write(shape);
  };
  can["setLabel"] = [](Shape& shape, const Json& args) {
    shape.label(args.at("label").get<unsigned long>());
    return write(shape);
  };
  can["setCachedVectorSize"] = [](Shape& shape, const Json& args) {
    shape.cachedVectorSize(args.at("n").get<long>());
    return write(shape);
  };
}
