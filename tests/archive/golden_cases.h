/// The golden files: what each of them holds, and how its bytes come about.
#pragma once

#include <archive/describe.h>
#include <archive/record_writer.h>
#include <support/source_folder.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace archive_test {

using Object = std::unique_ptr<gxPersistent>;
using Points = std::vector<gxVector<2>>;

struct GoldenCase {
  std::string name;
  std::function<Object()> make;  // the object that the file holds; none: it cannot be built by calls
  std::function<Bytes()> write;  // the bytes; none: the library stores what `make` gives
  std::string current = "";      // the file that it is stored as today; empty: as itself
};

inline void PrintTo(const GoldenCase& one, std::ostream* out) {
  *out << one.name;
}

inline Bytes storedBytes(const gxPersistent& object) {
  gxArchive archive;
  archive.store(object);
  return {archive.bytes().begin(), archive.bytes().end()};
}

inline std::filesystem::path goldenFolder() {
  return std::filesystem::path(sourceFolder()) / "tests" / "golden";
}

inline Bytes goldenBytes(const std::string& name) {
  std::ifstream file(goldenFolder() / (name + ".gxa"), std::ios::binary);
  if (!file) throw std::runtime_error("there is no golden file " + name);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// ---- Shapes -----------------------------------------------------------------------------------------

inline Points square(double low, double high) {
  return {{low, low}, {high, low}, {high, high}, {low, high}};
}
inline Points house() {
  return {{0, 0}, {4, 0}, {4, 3}, {2, 5}, {0, 3}};
}

inline Points specialNumbers() {
  using Limit = std::numeric_limits<double>;
  return {{0.0, -0.0},
          {Limit::infinity(), -Limit::infinity()},
          {Limit::quiet_NaN(), -Limit::quiet_NaN()},
          {Limit::denorm_min(), -Limit::denorm_min()},
          {Limit::max(), Limit::lowest()},
          {0.1, 1.0 / 3.0}};
}

// A hundred rows of a thousand points, no two alike.
inline Points manyPoints() {
  constexpr int kCount = 100000;
  Points points;
  for (int i = 0; i < kCount; ++i) points.emplace_back(i * 0.25, (i % 1000) * 0.125 + i / 1000);
  return points;
}

using Region = gxPtrHandle_const<gxRegion>;

inline Region region(const Points& points, std::vector<Region> holes = {}) {
  const gxPtrHandle<gxRegion> made(new gxRegion(points));
  made->holes(holes);
  return made;
}

inline Object contour(const Points& points, bool closed, unsigned long label, long size = 3) {
  auto made = std::make_unique<gxContour>(points, closed, label);
  made->cachedVectorSize(size);
  return made;
}

inline Object regionObject(const Points& points, const std::vector<Region>& holes,
                           unsigned long label = 0) {
  auto made = std::make_unique<gxRegion>(points);
  made->holes(holes);
  made->label(label);
  return made;
}

inline std::vector<gxEdgelet> edgelets() {
  return {{{10, 20}, 100, gxAngle8(0)}, {{30, 20}, 0xffff, gxAngle8(64)}, {{20, 45}, 7, gxAngle8(255)}};
}

inline gxPtrHandle<gx2XformBase> linear() {
  return gxPtrHandle<gx2XformBase>(
      new gx2XformLinear(gxXform<2>(gxMatrix<2>(2, 0.5, -0.25, 4), gxVector<2>(10, -20))));
}
inline gxPtrHandle<gx2XformBase> rigid() {
  // A quarter turn is exact, so that the points are the same on every machine.
  return gxPtrHandle<gx2XformBase>(new gx2Rigid(gxDegree(90), gxVector<2>(1.5, -2.5)));
}

using EdgeRegion = gxPtrHandle_const<gxRegionT<gxEdgelet>>;

// ---- Old versions, which only tests write -------------------------------------------------------------

inline RecordWriter& pointList(RecordWriter& w, const Points& points) {
  w.sequence(points.size());
  for (const gxVector<2>& p : points) w.point(p.x(), p.y());
  return w;
}

inline Bytes contourVersion0() {
  RecordWriter w;
  w.object(1, 1, "gxContour").u8(0).u8(0);
  return pointList(w, house()).u8(0xee).i32(5).u8(0).frame();
}

// What a region's outline said of itself in version 0: not closed.
inline Object regionOfVersion0() {
  auto made = std::make_unique<gxRegion>(house());
  made->cachedVectorSize(6);
  made->gxContour::isClosed(false);
  return made;
}

inline RecordWriter& regionRecordVersion0(RecordWriter& w, const Points& points) {
  return pointList(w.u8(0).u8(0), points).u8(0xee).i32(6);
}

inline Bytes regionVersion0() {
  RecordWriter w;
  w.object(1, 1, "gxRegion");
  return regionRecordVersion0(w, house()).frame();
}

inline Bytes regionSetVersion0() {
  RecordWriter w;
  w.object(1, 1, "gxRegionSet").u8(0).sequence(3);
  regionRecordVersion0(w.object(2, 2, "gxRegion"), house());
  return w.null().reference(2).frame();
}

inline Object regionSetOfVersion0() {
  const gxPtrHandle<gxRegion> one(dynamic_cast<gxRegion*>(regionOfVersion0().release()));
  return std::make_unique<gxRegionSet>(std::vector<Region>{one, nullptr, one});
}

inline RecordWriter& contourRecord(RecordWriter& w, const Points& points, unsigned long label) {
  return pointList(w.u8(1).u32(label).u8(1), points).i32(3);
}

inline RecordWriter& edgeletList(RecordWriter& w) {
  w.sequence(edgelets().size());
  for (const gxEdgelet& e : edgelets()) {
    w.point(e.position().x(), e.position().y()).u16(e.magnitude()).u8(e.angle().toByte());
  }
  return w;
}

inline Points threePoints() {
  return {{0, 0}, {4, 0}, {4, 3}};
}

/// A contour of edge points without a transform; `points` are as many as the edge points, where it is to
/// be one that can be loaded.
inline Bytes edgeletContour(unsigned version, const Points& points = threePoints()) {
  RecordWriter w;
  contourRecord(w.object(1, 1, "gxContourT<gxEdgelet>").u8(version), points, 8);
  edgeletList(w);
  return (version == 0 ? w : w.null()).frame();
}

// ---- The list -----------------------------------------------------------------------------------------

inline Object regionSetSharedHole() {
  const Region hole = region(square(1, 2));
  auto made = std::make_unique<gxRegionSet>(std::vector<Region>{
      region(square(0, 10), {hole}), region(square(-3, 3), {hole, region(square(-2, -1))})});
  made->cachedVectorSize(11);
  return made;
}

inline Object edgeletSet() {
  const EdgeRegion a(new gxRegionT<gxEdgelet>());
  const EdgeRegion b(new gxRegionT<gxEdgelet>());
  return std::make_unique<gxRegionSetT<gxEdgelet>>(std::vector<EdgeRegion>{a, nullptr, b, a});
}

inline Object shapeList() {
  auto list = std::make_unique<ShapeList>();
  const gxPtrHandle<gxContourT<gxEdgelet>> first(new gxContourT<gxEdgelet>(edgelets(), linear()));
  list->shapes = {first, gxPtrHandle<gxContourT<gxEdgelet>>(new gxContourT<gxEdgelet>(*first)),
                  gxPtrHandle<gxContour>(new gxContour(house()))};
  return list;
}

inline Object nestedHoles() {
  const Region island = region(square(3, 4));
  const Region shared = region(square(7, 8));
  return regionObject(square(0, 10), {region(square(2, 5), {island}), shared, shared, shared}, 9);
}

inline std::vector<GoldenCase> goldenCases() {
  return {
      {"line", [] { return std::make_unique<gxLine>(gxVector<2>(1, 2), gxVector<2>(-3, 0.5)); }, {}},
      {"line_segment",
       [] { return std::make_unique<gxLineSeg>(gxVector<2>(1, 2), gxVector<2>(3, 4)); },
       {}},
      {"rectangle",
       [] { return std::make_unique<gxRect>(gxVector<2>(0.1, 0.2), gxVector<2>(0.7, 0.3)); },
       {}},
      {"rectangle_from_corners",
       [] {
         return std::make_unique<gxRect>(
             gxRect::fromCorners(gxVector<2>(1e16, -1), gxVector<2>(1.0000000000000002e16, 0.1)));
       },
       {}},
      {"circle", [] { return std::make_unique<gxCircle>(gxVector<2>(1, 2), 3); }, {}},
      {"transform_linear",
       [] { return Object(new gx2XformLinear(dynamic_cast<gx2XformLinear&>(*linear()))); },
       {}},
      {"transform_rigid", [] { return Object(new gx2Rigid(gxDegree(30), gxVector<2>(1.5, -2.5))); }, {}},

      {"bad_params", [] { return std::make_unique<gxContourDefs::BadParams>(L"not stored"); }, {}},
      {"empty_contour", [] { return std::make_unique<gxContourDefs::EmptyContour>(); }, {}},
      {"empty_region_set", [] { return std::make_unique<gxContourDefs::EmptyRegionSet>(); }, {}},
      {"region_cannot_be_set_open",
       [] { return std::make_unique<gxContourDefs::RegionCannotBeSetOpen>(); },
       {}},

      {"contour_without_points", [] { return std::make_unique<gxContour>(); }, {}},
      {"contour_closed", [] { return contour(house(), true, 7, 9); }, {}},
      {"contour_open", [] { return contour(house(), false, 8, 0); }, {}},
      {"contour_largest_numbers",
       [] {
         return contour({{1, 1}}, true, 0xffffffff, 0x7fffffff);
       },
       {}},
      {"contour_special_numbers", [] { return contour(specialNumbers(), true, 1); }, {}},
      {"contour_100000_points", [] { return contour(manyPoints(), true, 100000); }, {}},
      {"contour_unlabelled", [] { return contour(house(), false, 0, 5); }, {}},
      {"contour_version_0", [] { return contour(house(), false, 0, 5); }, contourVersion0,
       "contour_unlabelled"},

      {"region_without_points", [] { return std::make_unique<gxRegion>(); }, {}},
      {"region", [] { return regionObject(house(), {}, 12); }, {}},
      {"region_with_nested_and_shared_holes", nestedHoles, {}},
      {"region_with_a_null_hole",
       {},
       [] {
         RecordWriter w;
         contourRecord(w.object(1, 1, "gxRegion").u8(1), house(), 3).sequence(2).null();
         contourRecord(w.object(2, 1).u8(1), square(1, 2), 0).sequence(0);
         return w.frame();
       }},
      {"region_not_closed", regionOfVersion0, {}},
      {"region_version_0", regionOfVersion0, regionVersion0, "region_not_closed"},

      {"region_set_without_regions", [] { return std::make_unique<gxRegionSet>(); }, {}},
      {"region_set_with_a_shared_hole", regionSetSharedHole, {}},
      {"region_set_of_equal_and_null", regionSetOfVersion0, {}},
      {"region_set_version_0", regionSetOfVersion0, regionSetVersion0, "region_set_of_equal_and_null"},

      {"edgelet_contour_default", [] { return Object(new gxContourT<gxEdgelet>()); }, {}},
      {"edgelet_contour_identity", [] { return Object(new gxContourT<gxEdgelet>(edgelets())); }, {}},
      {"edgelet_contour_linear",
       [] { return Object(new gxContourT<gxEdgelet>(edgelets(), linear())); },
       {}},
      {"edgelet_contour_rigid",
       [] { return Object(new gxContourT<gxEdgelet>(edgelets(), rigid())); },
       {}},
      {"edgelet_contour_without_transform", {}, [] { return edgeletContour(1); }},
      {"edgelet_contour_version_0",
       {},
       [] { return edgeletContour(0); },
       "edgelet_contour_without_transform"},
      {"edgelet_region_default", [] { return Object(new gxRegionT<gxEdgelet>()); }, {}},
      {"edgelet_region",
       {},
       [] {
         RecordWriter w;
         contourRecord(w.object(1, 1, "gxRegionT<gxEdgelet>").u8(0).u8(1), square(0, 10), 77)
             .sequence(1);
         contourRecord(w.object(2, 2, "gxRegion").u8(1), square(1, 2), 0).sequence(0);
         return w.frame();
       }},
      {"edgelet_region_set_default", [] { return Object(new gxRegionSetT<gxEdgelet>()); }, {}},
      {"edgelet_region_set", edgeletSet, {}},
      {"shape_list_with_a_shared_transform", shapeList, {}},
  };
}

/// Returns the bytes that the file of a case should hold.
inline Bytes writtenBytes(const GoldenCase& one) {
  return one.write ? one.write() : storedBytes(*one.make());
}

}  // namespace archive_test
