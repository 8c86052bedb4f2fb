// Shapes made of many shapes: repair, boolean operations with one shape, offset, simplification, hulls.  Each
// function returns (arrays of the shapes, block of columns, status, error, texts); a shape that failed, or
// of which nothing is left, stands as one without rings.
#include "batch.h"

#include <gauge/simplify.h>
#include <overlay/boolean.h>
#include <overlay/offset.h>
#include <overlay/repair.h>
#include <velstd/convex_hull.h>

#include <array>

namespace {

py::tuple answer(const MadeShapes& made, const Columns& columns, Failures& failures) {
  return py::make_tuple(made.arrays(), columns.block(), failures.statuses(), failures.errors(),
                        failures.texts());
}

gxRegionSet setOf(const Ragged& shapes, std::size_t i) {
  gxRecord record;
  shapes.get(i, record);
  if (record.kind == gxRecord::Kind::eOpen)
    throw gxContourDefs::BadParams(L"an open contour encloses nothing");
  record.kind = gxRecord::Kind::eSet;
  return record.toSet();
}

void take(const gxRegionSet& set, std::size_t i, MadeShapes& made) {
  gxRecord record;
  record.assign(set);
  made.set(i, record);
}

// Columns: area_before, area_after, regions, holes, rings_dropped, rings_snapped, largest_move.
py::tuple repair(const Ragged& shapes, int rule, unsigned threads, const py::object& progress) {
  MadeShapes made(shapes.size());
  Columns columns(7, shapes.size());
  Failures failures(shapes.size());
  const auto one = [&](std::size_t i) {
    const gxRepaired r = gfRepair(setOf(shapes, i), static_cast<gxFillRule>(rule));
    const gxRepairReport& report = r.report;
    const std::array<double, 7> row = {report.areaBefore,
                                       report.areaAfter,
                                       static_cast<double>(report.regions),
                                       static_cast<double>(report.holes),
                                       static_cast<double>(report.ringsDropped),
                                       static_cast<double>(report.ringsSnapped),
                                       report.largestMove};
    for (std::size_t c = 0; c < row.size(); ++c) columns.at(c, i) = row[c];
    take(r.regions, i, made);
    if (report.regions == 0) failures.status(i, gxStatus::eNone);
  };
  forEach(shapes.size(), threads, progress,
          [&]() -> Work { return [&](std::size_t i) { failures.guard(i, [&] { one(i); }); }; });
  return answer(made, columns, failures);
}

// Runs `make(i)`, which returns a set of regions, for each shape.
template <class Make>
py::tuple eachAsSet(const Ragged& shapes, unsigned threads, const py::object& progress,
                    const Make& make) {
  MadeShapes made(shapes.size());
  const Columns columns(0, shapes.size());
  Failures failures(shapes.size());
  const auto one = [&](std::size_t i) {
    const gxRegionSet result = make(i);
    take(result, i, made);
    if (result.regions().empty()) failures.status(i, gxStatus::eNone);
  };
  forEach(shapes.size(), threads, progress,
          [&]() -> Work { return [&](std::size_t i) { failures.guard(i, [&] { one(i); }); }; });
  return answer(made, columns, failures);
}

py::tuple boolean(const Ragged& shapes, const std::string& operation, const Shape& other, int rule,
                  unsigned threads, const py::object& progress) {
  gxOverlayOptions options;
  options.rule = static_cast<gxFillRule>(rule);
  const gxShapes second = other.isSet() ? gxShapes(other.set()) : gxShapes(other.region());
  return eachAsSet(shapes, threads, progress, [&](std::size_t i) {
    const gxRegionSet first = setOf(shapes, i);
    if (operation == "union") return gfUnion(first, second, options);
    if (operation == "intersection") return gfIntersection(first, second, options);
    if (operation == "difference") return gfDifference(first, second, options);
    return gfSymmetricDifference(first, second, options);
  });
}

py::tuple offset(const Ragged& shapes, double distance, int join, double mitreLimit, double arcTolerance,
                 unsigned threads, const py::object& progress) {
  gxOffsetForm form;
  form.join = static_cast<gxJoin>(join);
  form.mitreLimit = mitreLimit;
  form.arcTolerance = arcTolerance;
  return eachAsSet(shapes, threads, progress,
                   [&](std::size_t i) { return gfOffset(setOf(shapes, i), distance, form); });
}

// ---- Ring by ring -------------------------------------------------------------------------------------

// The rings of each shape by themselves; the first status that is not ok stands.
py::tuple simplify(const Ragged& shapes, double tolerance, bool keepsCrossingsOut, unsigned threads,
                   const py::object& progress) {
  MadeShapes made(shapes.size());
  const Columns columns(0, shapes.size());
  Failures failures(shapes.size());
  const auto one = [&](std::size_t i) {
    gxRecord record;
    gxRecord result;
    shapes.get(i, record);
    result.kind = record.kind;
    result.partEnds = record.partEnds;
    const bool closed = record.kind != gxRecord::Kind::eOpen;
    if (record.ringCount() == 0) failures.status(i, gxStatus::eEmpty);
    for (std::size_t r = 0; r < record.ringCount(); ++r) {
      const gxSimplified s = gfSimplify(record.ring(r), closed, tolerance, {keepsCrossingsOut});
      result.points.insert(result.points.end(), s.points.begin(), s.points.end());
      result.ringEnds.push_back(result.points.size());
      if (failures.status(i) == gxStatus::eOk) failures.status(i, s.status);
    }
    made.set(i, result);
  };
  forEach(shapes.size(), threads, progress,
          [&]() -> Work { return [&](std::size_t i) { failures.guard(i, [&] { one(i); }); }; });
  return answer(made, columns, failures);
}

py::tuple hull(const Ragged& shapes, unsigned threads, const py::object& progress) {
  MadeShapes made(shapes.size());
  const Columns columns(0, shapes.size());
  Failures failures(shapes.size());
  const auto one = [&](std::size_t i) {
    gxRecord record;
    gxRecord result;
    shapes.get(i, record);
    result.kind = gxRecord::Kind::eRegion;
    gfConvexHull(record.points, result.points);
    result.endRing(true);
    result.endPart();
    result.dropEmptyRing();
    if (record.points.empty()) failures.status(i, gxStatus::eEmpty);
    made.set(i, result);
  };
  forEach(shapes.size(), threads, progress,
          [&]() -> Work { return [&](std::size_t i) { failures.guard(i, [&] { one(i); }); }; });
  return answer(made, columns, failures);
}

}  // namespace

void bindBatchShapes(py::module_& module) {
  module.def("batch_repair", &repair, "shapes"_a, "rule"_a, "threads"_a, "progress"_a);
  module.def("batch_boolean", &boolean, "shapes"_a, "operation"_a, "other"_a, "rule"_a, "threads"_a,
             "progress"_a);
  module.def("batch_offset", &offset, "shapes"_a, "distance"_a, "join"_a, "mitre_limit"_a,
             "arc_tolerance"_a, "threads"_a, "progress"_a);
  module.def("batch_simplify", &simplify, "shapes"_a, "tolerance"_a, "keeps_crossings_out"_a,
             "threads"_a, "progress"_a);
  module.def("batch_hull", &hull, "shapes"_a, "threads"_a, "progress"_a);
}
