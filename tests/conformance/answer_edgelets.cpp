// Requests about contours, regions and region sets of edge points.
#include <ch_core/cntrtmpl.h>
#include <conformance/answer_shapes.h>

namespace {

using EdgeletContour = gxContourT<gxEdgelet>;
using EdgeletRegion = gxRegionT<gxEdgelet>;
using EdgeletSet = gxRegionSetT<gxEdgelet>;

// ---- Shapes -------------------------------------------------------------------------------------

// The transform from points to edge points; a null handle where there is none.
gxPtrHandle_const<gx2XformBase> readXformHandle(const Json& json) {
  const Json xform = json.value("xform", Json(nullptr));
  if (xform.is_null()) return nullptr;
  return gxPtrHandle_const<gx2XformBase>(new gx2XformLinear(readXform(xform)));
}

EdgeletContour readEdgeletContour(const Json& json) {
  if (!json.contains("data")) return EdgeletContour();
  return EdgeletContour(readEdgelets(json.at("data")), readXformHandle(json));
}

gxPtrHandle<EdgeletRegion> readEdgeletRegion(const Json& json) {
  if (json.is_null()) return nullptr;
  const auto label = json.value("label", 0UL);
  if (!json.contains("data")) {
    gxPtrHandle<EdgeletRegion> region(new EdgeletRegion);
    if (json.contains("label")) region->label(label);
    return region;
  }
  return gxPtrHandle<EdgeletRegion>(
      new EdgeletRegion(readEdgelets(json.at("data")), readXformHandle(json), label));
}

EdgeletSet readEdgeletSet(const Json& json) {
  if (!json.contains("regions")) return EdgeletSet();
  std::vector<gxPtrHandle_const<EdgeletRegion>> regions;
  for (const Json& region : json.at("regions")) regions.push_back(readEdgeletRegion(region));
  return EdgeletSet(regions);
}

template <class Shape>
Json written(const Shape& shape) {
  return {{"points", write(shape.points())},
          {"data", write(shape.data())},
          {"closed", shape.isClosed()},
          {"label", shape.label()}};
}

template <class Handles>
Json outlines(const Handles& handles) {
  Json json = Json::array();
  for (const auto& handle : handles) {
    json.push_back(handle.isNull() ? Json(nullptr) : write(handle->points()));
  }
  return json;
}

Json written(const EdgeletSet& set) {
  return {{"regions", outlines(set.regions())}, {"regionsT", outlines(set.regionsT())}};
}

// ---- Operations ---------------------------------------------------------------------------------

// What contours and regions of edge points have in common.
template <class Shape>
void addModel(Operations<Shape>& can) {
  can["info"] = [](Shape& shape, const Json&) { return written(shape); };
  can["setPoints"] = [](Shape& shape, const Json& args) {
    shape.points(readPoints(args.at("points")));
    return written(shape);
  };
  can["setData"] = [](Shape& shape, const Json& args) {
    shape.data(readEdgelets(args.at("data")));
    return written(shape);
  };
  can["equalsCopy"] = [](Shape& shape, const Json&) {
    const Shape copy(shape);
    return Json(shape == copy);
  };
  can["mapT"] = [](Shape& shape, const Json&) {
    Shape result;
    shape.mapT(gxXform<2>(), result);
    return written(result);
  };
}

Operations<EdgeletContour> contourOperations() {
  Operations<EdgeletContour> can;
  addModel(can);
  can["datum"] = [](EdgeletContour& contour, const Json& args) {
    return write(contour.datum(readPoint(args.at("point"))));
  };
  can["point"] = [](EdgeletContour& contour, const Json& args) {
    return write(contour.point(readEdgelet(args.at("edgelet"))));
  };
  can["equalsRebuilt"] = [](EdgeletContour& contour, const Json& args) {
    return Json(contour == readEdgeletContour(args.at("other")));
  };
  can["length"] = [](EdgeletContour& contour, const Json&) { return write(contour.length()); };
  can["convexHullT"] = [](EdgeletContour& contour, const Json&) {
    EdgeletRegion hull;
    contour.convexHullT(hull);
    return written(hull);
  };
  return can;
}

Operations<EdgeletRegion> regionOperations() {
  Operations<EdgeletRegion> can;
  addModel(can);
  can["area"] = [](EdgeletRegion& region, const Json& args) {
    return write(region.area(readFlag(args, "considerHoles")));
  };
  can["draw"] = [](EdgeletRegion& region, const Json&) {
    return drawn([&](gxUITablet& tablet) { region.draw(tablet, gxColor(), gxUITablet::eImageLayer); });
  };
  can["regularizeT"] = [](EdgeletRegion& region, const Json&) {
    EdgeletRegion result;
    region.regularizeT(result);
    return written(result);
  };
  return can;
}

Operations<EdgeletSet> setOperations() {
  Operations<EdgeletSet> can;
  can["info"] = [](EdgeletSet& set, const Json&) { return written(set); };
  can["area"] = [](EdgeletSet& set, const Json& args) {
    return write(set.area(readFlag(args, "considerHoles")));
  };
  can["add"] = [](EdgeletSet& set, const Json& args) {
    set.add(readRegion(args.at("region")), readMode(args));
    return written(set);
  };
  can["setRegions"] = [](EdgeletSet& set, const Json& args) {
    set.regions(readRegions(args.at("regions")), readMode(args));
    return written(set);
  };
  can["draw"] = [](EdgeletSet& set, const Json&) {
    return drawn([&](gxUITablet& tablet) { set.draw(tablet, gxColor(), gxUITablet::eImageLayer); });
  };
  can["mapT"] = [](EdgeletSet& set, const Json&) {
    EdgeletSet result;
    set.mapT(gxXform<2>(), result);
    return written(result);
  };
  can["regularizeT"] = [](EdgeletSet& set, const Json&) {
    EdgeletSet result;
    set.regularizeT(result);
    return written(result);
  };
  return can;
}

}  // namespace

Json answerEdgeletContour(const std::string& name, const Json& shape, const Json& args) {
  static const auto can = contourOperations();
  EdgeletContour contour = readEdgeletContour(shape);
  return run(can, name, contour, args);
}

Json answerEdgeletRegion(const std::string& name, const Json& shape, const Json& args) {
  static const auto can = regionOperations();
  const gxPtrHandle<EdgeletRegion> region = readEdgeletRegion(shape);
  return run(can, name, *region, args);
}

Json answerEdgeletSet(const std::string& name, const Json& shape, const Json& args) {
  static const auto can = setOperations();
  EdgeletSet set = readEdgeletSet(shape);
  return run(can, name, set, args);
}
