// Requests about region sets.
#include <cntr/regionst.h>
#include <conformance/answer_shapes.h>

namespace {

using Can = Operations<gxRegionSet>;

gxRegionSet readSet(const Json& json) {
  gxRegionSet set(readRegions(json.at("regions")), readMode(json));
  if (json.contains("cachedVectorSize")) set.cachedVectorSize(json.at("cachedVectorSize").get<long>());
  return set;
}

Json written(const gxRegionSet& set) {
  Json regions = Json::array();
  for (const auto& region : set.regions()) {
    regions.push_back(region.isNull() ? Json(nullptr) : write(*region));
  }
  return {{"regions", regions}, {"cachedVectorSize", set.cachedVectorSize()}};
}

void addMeasures(Can& can) {
  can["area"] = [](gxRegionSet& set, const Json& args) {
    return write(set.area(readFlag(args, "considerHoles")));
  };
  can["centerOfMass"] = [](gxRegionSet& set, const Json& args) {
    return write(set.centerOfMass(readFlag(args, "considerHoles")));
  };
  can["inertiaMatrix"] = [](gxRegionSet& set, const Json& args) {
    return write(set.inertiaMatrix(readFlag(args, "considerHoles")));
  };
  can["encloseRect"] = [](gxRegionSet& set, const Json& args) {
    return write(set.encloseRect(readXform(args.at("xform"))));
  };
}

void addQueries(Can& can) {
  can["info"] = [](gxRegionSet& set, const Json&) { return written(set); };
  can["inside"] = [](gxRegionSet& set, const Json& args) {
    return Json(set.inside(readPoint(args.at("point")), readFlag(args, "considerHoles")));
  };
  can["distToPoint"] = [](gxRegionSet& set, const Json& args) {
    const auto point = readPoint(args.at("point"));
    return write(set.distToPoint(point, readFlag(args, "vertexOnly"), readFlag(args, "considerHoles"),
                                 readFlag(args, "insideIsZero")));
  };
  can["isSelfIntersecting"] = [](gxRegionSet& set, const Json&) {
    return Json(set.isSelfIntersecting());
  };
  can["draw"] = [](gxRegionSet& set, const Json&) {
    return drawn([&](gxUITablet& tablet) { set.draw(tablet, gxColor(), gxUITablet::eImageLayer); });
  };
  can["equals"] = [](gxRegionSet& set, const Json& args) {
    return Json(set == readSet(args.at("other")));
  };
  can["cachedVectorSize"] = [](gxRegionSet& set, const Json&) { return Json(set.cachedVectorSize()); };
}

void addRepairs(Can& can) {
  can["regularize"] = [](gxRegionSet& set, const Json&) {
    gxRegionSet result;
    set.regularize(result);
    return written(result);
  };
  can["outerHull"] = [](gxRegionSet& set, const Json&) {
    gxRegionSet result;
    set.outerHull(result);
    return written(result);
  };
  can["regularizeSelf"] = [](gxRegionSet& set, const Json&) {
    set.regularize(set);
    return written(set);
  };
  can["outerHullSelf"] = [](gxRegionSet& set, const Json&) {
    set.outerHull(set);
    return written(set);
  };
}

void addSetters(Can& can) {
  can["setCachedVectorSize"] = [](gxRegionSet& set, const Json& args) {
    set.cachedVectorSize(args.at("n").get<long>());
    return written(set);
  };
  can["add"] = [](gxRegionSet& set, const Json& args) {
    set.add(readRegion(args.at("region")), readMode(args));
    return written(set);
  };
  can["setRegions"] = [](gxRegionSet& set, const Json& args) {
    set.regions(readRegions(args.at("regions")), readMode(args));
    return written(set);
  };
  can["assign"] = [](gxRegionSet& set, const Json& args) {
    set = static_cast<const gxRegionSet&>(readSet(args.at("other")));
    return written(set);
  };
}

Can operations() {
  Can can;
  addMeasures(can);
  addQueries(can);
  addRepairs(can);
  addSetters(can);
  return can;
}

}  // namespace

Json answerSet(const std::string& name, const Json& shape, const Json& args) {
  static const Can can = operations();
  gxRegionSet set = readSet(shape);
  return run(can, name, set, args);
}
