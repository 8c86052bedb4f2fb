// Requests about contours.
#include <conformance/answer_outline.h>
#include <support/exposed.h>

namespace {

// Hands the contour that `json` tells, or the region's outline, to `use`.
Json withOther(const Json& json, const std::function<Json(const gxContour&)>& use) {
  if (tellsRegion(json)) return use(*readRegion(json));
  return use(readContour(json));
}

Operations<ExposedContour> operations() {
  Operations<ExposedContour> can;
  addOutlineQueries(can);
  addOutlineSetters(can);
  can["closestPoint"] = [](ExposedContour& contour, const Json& args) {
    return write(contour.closestPoint(readPoint(args.at("point")), readFlag(args, "vertexOnly")));
  };
  can["distToPoint"] = [](ExposedContour& contour, const Json& args) {
    return write(contour.distToPoint(readPoint(args.at("point")), readFlag(args, "vertexOnly")));
  };
  can["intersectionsSeg"] = [](ExposedContour& contour, const Json& args) {
    return write(contour.intersections(readSegment(args.at("seg")), readFlag(args, "countEndContacts")));
  };
  can["intersectionsContour"] = [](ExposedContour& contour, const Json& args) {
    return withOther(args.at("other"),
                     [&](const gxContour& other) { return write(contour.intersections(other)); });
  };
  can["map"] = [](ExposedContour& contour, const Json& args) {
    gxContour result;
    contour.map(readXform(args.at("xform")), result);
    return write(result);
  };
  can["draw"] = [](ExposedContour& contour, const Json&) {
    return drawn([&](gxUITablet& tablet) {
      contour.draw(tablet, gxContourDefs::eDrawEdges, gxColor(), gxUITablet::eImageLayer);
    });
  };
  can["equals"] = [](ExposedContour& contour, const Json& args) {
    return withOther(args.at("other"), [&](const gxContour& other) {
      return Json(static_cast<const gxContour&>(contour) == other);
    });
  };
  can["assign"] = [](ExposedContour& contour, const Json& args) {
    return withOther(args.at("other"), [&](const gxContour& other) {
      static_cast<gxContour&>(contour) = other;
      return write(contour);
    });
  };
  return can;
}

}  // namespace

Json answerContour(const std::string& name, const Json& shape, const Json& args) {
  static const Operations<ExposedContour> can = operations();
  ExposedContour contour(readContour(shape));
  return run(can, name, contour, args);
}
