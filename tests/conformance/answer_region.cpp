// Requests about regions.
#include <conformance/answer_outline.h>
#include <support/exposed.h>

namespace {

using Can = Operations<ExposedRegion>;

void addQueries(Can& can) {
  can["inside"] = [](ExposedRegion& region, const Json& args) {
    return Json(region.inside(readPoint(args.at("point")), readFlag(args, "considerHoles")));
  };
  can["insideCount"] = [](ExposedRegion& region, const Json& args) {
    const auto point = readPoint(args.at("point"));
    return Json(gx_RegionInside::insideCount(region, point, readFlag(args, "bothWays")));
  };
  can["closestPoint"] = [](ExposedRegion& region, const Json& args) {
    const auto point = readPoint(args.at("point"));
    return write(
        region.closestPoint(point, readFlag(args, "vertexOnly"), readFlag(args, "considerHoles")));
  };
  can["closestVertexIndexHoles"] = [](ExposedRegion& region, const Json& args) {
    const auto point = readPoint(args.at("point"));
    long hole = 0;
    const long index = region.closestVertexIndex(point, readFlag(args, "considerHoles"), hole);
    return Json{{"index", index}, {"holeIndex", hole}};
  };
  can["distToPoint"] = [](ExposedRegion& region, const Json& args) {
    const auto point = readPoint(args.at("point"));
    return write(region.distToPoint(point, readFlag(args, "vertexOnly"), readFlag(args, "considerHoles"),
                                    readFlag(args, "insideIsZero")));
  };
  can["intersectionsContour"] = [](ExposedRegion& region, const Json& args) {
    const Json& other = args.at("other");
    const bool holes = readFlag(args, "considerHoles");
    if (tellsRegion(other)) return write(region.intersections(*readRegion(other), holes));
    return write(region.intersections(readContour(other), holes));
  };
  can["intersectionsSeg"] = [](ExposedRegion& region, const Json& args) {
    return write(region.intersections(readSegment(args.at("seg")), readFlag(args, "contourFlag"),
                                      readFlag(args, "considerHoles")));
  };
}

void addMeasures(Can& can) {
  can["area"] = [](ExposedRegion& region, const Json& args) {
    return write(region.area(readFlag(args, "considerHoles")));
  };
  can["centerOfMass"] = [](ExposedRegion& region, const Json& args) {
    return write(region.centerOfMass(readFlag(args, "considerHoles")));
  };
  can["inertiaMatrix"] = [](ExposedRegion& region, const Json& args) {
    return write(region.inertiaMatrix(readFlag(args, "considerHoles")));
  };
}

void addRepairs(Can& can) {
  can["regularize"] = [](ExposedRegion& region, const Json&) {
    gxRegion result;
    region.regularize(result);
    return write(result);
  };
  can["outerHull"] = [](ExposedRegion& region, const Json&) {
    gxRegion result;
    region.outerHull(result);
    return write(result);
  };
  can["regularizeSelf"] = [](ExposedRegion& region, const Json&) {
    region.regularize(region);
    return write(region);
  };
  can["outerHullSelf"] = [](ExposedRegion& region, const Json&) {
    region.outerHull(region);
    return write(region);
  };
  can["splice"] = [](ExposedRegion& region, const Json& args) {
    gxRegion result;
    gx_RegionInside::splice(region, *readRegion(args.at("other")), result);
    return write(result);
  };
}

void addModel(Can& can) {
  can["map"] = [](ExposedRegion& region, const Json& args) {
    gxRegion result;
    region.map(readXform(args.at("xform")), result);
    return write(result);
  };
  can["draw"] = [](ExposedRegion& region, const Json&) {
    return drawn([&](gxUITablet& tablet) { region.draw(tablet, gxColor(), gxUITablet::eImageLayer); });
  };
  can["equals"] = [](ExposedRegion& region, const Json& args) {
    return Json(static_cast<const gxRegion&>(region) == *readRegion(args.at("other")));
  };
  can["assign"] = [](ExposedRegion& region, const Json& args) {
    static_cast<gxRegion&>(region) = *readRegion(args.at("other"));
    return write(region);
  };
  can["setHoles"] = [](ExposedRegion& region, const Json& args) {
    region.holes(readRegions(args.at("holes")));
    return write(region);
  };
}

// The region becomes a hole of its own hole; the cycle is undone afterwards, so that both go.
Json insideCycle(const Json& shape, const Json& args) {
  const gxPtrHandle<gxRegion> region = readRegion(shape);
  const gxPtrHandle<gxRegion> hole = readRegion(args.at("hole"));
  const auto undo = [&] { hole->holes({}); };
  try {
    hole->holes({region});
    region->holes({hole});
    const bool inside = region->inside(readPoint(args.at("point")), true);
    undo();
    return inside;
  } catch (...) {
    undo();
    throw;
  }
}

// Regions within regions, each the only hole of the one around it.
Json insideDeep(const Json& shape, const Json& args) {
  const auto points = readPoints(shape.at("points"));
  const long depth = args.at("depth").get<long>();
  gxPtrHandle<gxRegion> level;
  for (long k = depth; k >= 0; --k) {
    const double scale = 1.0 - 0.5 * static_cast<double>(k) / (static_cast<double>(depth) + 1.0);
    std::vector<gxVector<2>> scaled;
    for (const auto& point : points) scaled.push_back(point * scale);
    const gxPtrHandle<gxRegion> around(new gxRegion(scaled));
    if (k < depth) around->holes({level});
    level = around;
  }
  const gxRegion copy(*level);
  return {{"inside", copy.inside(readPoint(args.at("point")), true)}, {"area", write(copy.area(true))}};
}

Can operations() {
  Can can;
  addOutlineQueries(can);
  addOutlineSetters(can);
  addQueries(can);
  addMeasures(can);
  addRepairs(can);
  addModel(can);
  return can;
}

}  // namespace

Json answerRegion(const std::string& name, const Json& shape, const Json& args) {
  static const Can can = operations();
  if (name == "insideCycle") return insideCycle(shape, args);
  if (name == "insideDeep") return insideDeep(shape, args);
  ExposedRegion region(*readRegion(shape));
  return run(can, name, region, args);
}
