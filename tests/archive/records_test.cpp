// The records of the single classes: which versions they refuse and in whose name, what they refuse
// else, and what loading does to the object.
//
// Covers base/velstd/shape_archive.cpp
// Covers base/velstd/internal/shape_records.h
// Covers cntr/internal/archive/archive_record.h
// Covers cntr/internal/archive/archive_legacy.h
// Covers cntr/region_archive.cpp
// Covers cntr/regionst_archive.cpp
// Covers ch_core/cntrtmpl_archive.cpp
// Covers ch_core/registration.cpp
#include <archive/golden_cases.h>
#include <gtest/gtest.h>
#include <velstd/registry.h>

#include <optional>

using archive_test::Bytes;
using archive_test::contourRecord;
using archive_test::house;
using archive_test::RecordWriter;
using archive_test::square;
using archive_test::storedBytes;

namespace {

// Loads the frame and returns the error; none when it loads.
template <class Error>
std::optional<Error> refusal(const Bytes& frame) {
  gxArchive archive(frame);
  try {
    archive.loadNew();
  } catch (const Error& error) {
    return error;
  }
  return std::nullopt;
}

using EdgeContour = gxContourT<gxEdgelet>;

// A class that handles the record of its base so and so often within one of its own, as one does whose
// two bases share a third.
template <class Base, int Times>
class Repeated : public Base {
 public:
  static gxPersistent* make() { return new Repeated; }

 protected:
  void dispatchSerialize(gxArchive& archive) override {
    for (int i = 0; i < Times; ++i) Base::dispatchSerialize(archive);
  }
};

template <class Base, int Times>
Bytes storedWith(const Base& value) {
  const gx_Instantiator known(typeid(Repeated<Base, Times>), &Repeated<Base, Times>::make);
  Repeated<Base, Times> object;
  static_cast<Base&>(object) = value;
  const Bytes bytes = storedBytes(object);
  const archive_test::Object back = gxArchive(bytes).loadNew();
  const std::string prefix = gf_ClassName(typeid(object));
  EXPECT_EQ(archive_test::describe(*back), archive_test::describe(object)) << prefix;
  return bytes;
}

// The exceptions' base, which is handled once however often it is called.
template <int Times>
class OwnError : public gxContourDefs::Errors {
 public:
  OwnError() = default;
  static gxPersistent* make() { return new OwnError; }
  long errorNumber() const override { return 1; }
  void suicideAndRethrow() override { delete this; }

 protected:
  void dispatchSerialize(gxArchive& archive) override {
    for (int i = 0; i < Times; ++i) Errors::dispatchSerialize(archive);
  }
};

template <int Times>
std::size_t sizeOfOwnError() {
  const gx_Instantiator known(typeid(OwnError<Times>), &OwnError<Times>::make);
  const Bytes bytes = storedBytes(OwnError<Times>());
  EXPECT_NE(gxArchive(bytes).loadNew(), nullptr);
  return bytes.size();
}

// An edge-point region that does not lose its edge points: both of its halves are in its record, and
// the outline, which they share, once.
class WholeRegion : public gxRegionT<gxEdgelet> {
 public:
  using gxRegionT<gxEdgelet>::gxRegionT;
  static gxPersistent* make() { return new WholeRegion; }

 protected:
  void dispatchSerialize(gxArchive& archive) override {
    gxRegion::dispatchSerialize(archive);
    gxContourT<gxEdgelet>::dispatchSerialize(archive);
  }
};
const gx_Instantiator wholeRegionIsKnown(typeid(WholeRegion), &WholeRegion::make);

struct Refused {
  const char* className;
  Bytes record;
  const char* source;
  int line;
};

Bytes bytesOf(const RecordWriter& w) {
  return w.payload();
}

std::vector<Refused> refusedVersions() {
  std::vector<Refused> cases;
  const auto add = [&](const char* className, const RecordWriter& w, const char* source, int line) {
    cases.push_back({className, bytesOf(w), source, line});
  };
  const auto w = [] { return RecordWriter(); };
  for (const unsigned version : {2U, 3U, 128U, 255U}) {
    add("gxContour", w().u8(version), "cntr/contour", 904);
    add("gxRegion", w().u8(version), "cntr/region", 819);
    add("gxRegion", w().u8(1).u8(version), "cntr/contour", 904);
    add("gxRegionSet", w().u8(version), "cntr/regionst", 479);
    add("gxContourT<gxEdgelet>", w().u8(version), "ch_core/cntrtmpl", 98);
  }
  for (const unsigned version : {1U, 2U, 255U}) {
    add("gxContour", w().u8(0).u8(version), "cntr/contour", 894);
    add("gxRegion", w().u8(0).u8(version), "cntr/region", 809);
    add("gxRegionT<gxEdgelet>", w().u8(version), "ch_core/cntrtmpl", 186);
    add("gxRegionSetT<gxEdgelet>", w().u8(version), "ch_core/cntrtmpl", 283);
    add("gxContourDefs::EmptyContour", w().u8(0).u8(version), "gxContourDefs::Errors", 0);
    add("gxContourDefs::EmptyContour", w().u8(version), "gxContourDefs::EmptyContour", 0);
    add("gxContourDefs::EmptyRegionSet", w().u8(version), "gxContourDefs::EmptyRegionSet", 0);
    add("gxContourDefs::BadParams", w().u8(version), "gxContourDefs::BadParams", 0);
    add("gxContourDefs::RegionCannotBeSetOpen", w().u8(version), "gxContourDefs::RegionCannotBeSetOpen",
        0);
    add("gxLine", w().u8(version), "velstd/gxLine", 0);
    add("gxLineSeg", w().u8(version), "velstd/gxLineSeg", 0);
    add("gxRect", w().u8(version), "velstd/gxRect", 0);
    add("gxCircle", w().u8(version), "velstd/gxCircle", 0);
    add("gx2XformLinear", w().u8(version), "velstd/gx2XformLinear", 0);
    add("gx2Rigid", w().u8(version), "velstd/gx2Rigid", 0);
  }
  return cases;
}

}  // namespace

TEST(RecordVersions, ThatAreUnknownAreRefusedInTheNameOfTheirClass) {
  for (const Refused& one : refusedVersions()) {
    RecordWriter w;
    w.object(1, 1, one.className).raw(one.record).u64(0).u64(0);
    const auto error = refusal<gxArchive::UnknownVersion>(w.frame());
    ASSERT_TRUE(error.has_value()) << one.className;
    EXPECT_STREQ(error->source(), one.source) << one.className;
    EXPECT_EQ(error->line(), one.line) << one.className;
    const std::size_t headAndName = 20 + 4 + 4 + 1 + std::string(one.className).size();
    EXPECT_EQ(error->byteOffset(), headAndName + one.record.size()) << one.className;
  }
}

TEST(RecordVersions, OfSequencesAreRefusedWithoutAName) {
  RecordWriter w;
  w.object(1, 1, "gxContour").u8(1).u32(0).u8(1).u8(1).u32(0).i32(3);
  const auto error = refusal<gxArchive::UnknownVersion>(w.frame());
  ASSERT_TRUE(error.has_value());
  EXPECT_EQ(error->source(), nullptr);
  EXPECT_EQ(error->line(), 0);
}

TEST(RecordRegistration, IsInTheFixedOrder) {
  std::vector<std::string> names = gx_Instantiator::registeredClasses();
  ASSERT_GE(names.size(), 16U);
  EXPECT_EQ(
      std::vector<std::string>(names.begin() + 6, names.begin() + 16),
      (std::vector<std::string>{"gxContourDefs::BadParams", "gxContourDefs::EmptyContour",
                                "gxContourDefs::EmptyRegionSet", "gxContourDefs::RegionCannotBeSetOpen",
                                "gxContour", "gxRegion", "gxRegionSet", "gxContourT<gxEdgelet>",
                                "gxRegionSetT<gxEdgelet>", "gxRegionT<gxEdgelet>"}));
  for (const char* name : {"gxContourDefs::Errors", "gxContourBase", "gxContourBase2"}) {
    EXPECT_EQ(gx_Instantiator::factory(name), nullptr) << name;
  }
}

TEST(RecordFields, ANegativeCachedVectorSizeIsRefused) {
  RecordWriter contour;
  archive_test::pointList(contour.object(1, 1, "gxContour").u8(1).u32(0).u8(1), house()).i32(-1);
  EXPECT_TRUE(refusal<gxArchive::BadFormat>(contour.frame()).has_value());
  RecordWriter old;
  archive_test::pointList(old.object(1, 1, "gxContour").u8(0).u8(0), house()).u8(0).i32(-5).u8(1);
  EXPECT_TRUE(refusal<gxArchive::BadFormat>(old.frame()).has_value());
  RecordWriter region;
  archive_test::pointList(region.object(1, 1, "gxRegion").u8(0).u8(0), house()).u8(0).i32(-5);
  EXPECT_TRUE(refusal<gxArchive::BadFormat>(region.frame()).has_value());
  RecordWriter set;
  set.object(1, 1, "gxRegionSet").u8(1).sequence(0).i32(-0x7fffffff - 1);
  EXPECT_TRUE(refusal<gxArchive::BadFormat>(set.frame()).has_value());
}

TEST(RecordFields, AClosedFlagIsZeroOrOne) {
  for (const unsigned flag : {2U, 128U, 255U}) {
    RecordWriter w;
    archive_test::pointList(w.object(1, 1, "gxContour").u8(1).u32(0).u8(flag), house()).i32(3);
    EXPECT_TRUE(refusal<gxArchive::BadFormat>(w.frame()).has_value()) << flag;
  }
}

TEST(RecordFields, BeyondThirtyTwoBitsAreNotStored) {
  const auto message = [](const gxPersistent& object) -> std::string {
    try {
      storedBytes(object);
      return "stored";
    } catch (const gxArchive::LimitExceeded& error) {
      return error.what();
    }
  };
  gxContour contour(house());
  contour.label(0x100000000UL);
  EXPECT_NE(message(contour).find("gxContour: label does not fit into 32 bits"), std::string::npos);
  contour.label(0xffffffffUL);
  EXPECT_EQ(message(contour), "stored");
  contour.cachedVectorSize(0x80000000L);
  EXPECT_NE(message(contour).find("gxContour: cachedVectorSize does not fit into 32 bits"),
            std::string::npos);
  gxRegionSet set;
  set.cachedVectorSize(0x80000000L);
  EXPECT_NE(message(set).find("gxRegionSet: cachedVectorSize does not fit into 32 bits"),
            std::string::npos);
}

TEST(RecordLoading, DropsEverythingRemembered) {
  gxRegion region(square(0, 10));
  EXPECT_EQ(region.area(true), 100.0);
  EXPECT_EQ(region.length(), 40.0);
  EXPECT_FALSE(region.isSelfIntersecting());
  const Bytes bytes = storedBytes(gxRegion(square(0, 2)));
  gxArchive(bytes).load(region);
  EXPECT_EQ(region.area(true), 4.0);
  EXPECT_EQ(region.length(), 8.0);

  gxRegionSet set({archive_test::region(square(0, 10))});
  EXPECT_EQ(set.area(true), 100.0);
  const Bytes smaller = storedBytes(gxRegionSet({archive_test::region(square(0, 3))}));
  gxArchive(smaller).load(set);
  EXPECT_EQ(set.area(true), 9.0);
}

TEST(RecordLoading, ComputesTheInverseOfTheTransformAfresh) {
  gxContourT<gxEdgelet> contour(archive_test::edgelets(), archive_test::rigid());
  contour.point(gxEdgelet());
  const Bytes bytes = storedBytes(gxContourT<gxEdgelet>(archive_test::edgelets()));
  gxArchive(bytes).load(contour);
  EXPECT_EQ(contour.point(gxEdgelet(gxVector<2>(5, 6), 0, gxAngle8(0))), gxVector<2>(5, 6));
}

TEST(RecordLoading, IsAChangeAndStoringIsNone) {
  gxRegion region(square(0, 10));
  const Bytes bytes = storedBytes(region);
  region.trackChanges(true);
  storedBytes(region);
  EXPECT_EQ(region.changeCount(), 0U);
  gxArchive(bytes).load(region);
  EXPECT_GT(region.changeCount(), 0U);
}

TEST(RecordLoading, OfARegionSetOfVersionZeroKeepsCachedVectorSize) {
  gxRegionSet set;
  set.cachedVectorSize(17);
  const Bytes bytes = archive_test::goldenBytes("region_set_version_0");
  gxArchive(bytes).load(set);
  EXPECT_EQ(set.cachedVectorSize(), 17);
  EXPECT_EQ(set.regions().size(), 3U);
}

TEST(RecordLoading, OfOldRecordsCanBeRepeatedInOnePass) {
  RecordWriter w;
  w.object(1, 1, "gxRegionSet").u8(1).sequence(3);
  archive_test::regionRecordVersion0(w.object(2, 2, "gxRegion"), house());
  archive_test::regionRecordVersion0(w.object(3, 2), square(0, 1));
  archive_test::regionRecordVersion0(w.object(4, 2), square(0, 2));
  const Bytes bytes = w.i32(3).frame();
  gxRegionSet set;
  gxArchive(bytes).load(set);
  ASSERT_EQ(set.regions().size(), 3U);
  EXPECT_EQ(set.regions()[1]->points(), square(0, 1));
  EXPECT_EQ(set.regions()[2]->points(), square(0, 2));
}

TEST(RecordLoading, OfAnEdgePointContourOfVersionZeroKeepsTheTransform) {
  EdgeContour contour(archive_test::edgelets(), archive_test::linear());
  const gxPtrHandle_const<gx2XformBase> xform = contour.dataFromPointsXform();
  contour.point(gxEdgelet());
  const Bytes bytes = archive_test::goldenBytes("edgelet_contour_version_0");
  gxArchive(bytes).load(contour);
  EXPECT_EQ(contour.dataFromPointsXform(), xform);
  EXPECT_EQ(contour.points(), archive_test::threePoints())
      << "as they were written, not made from the data";
  EXPECT_NO_THROW(contour.data(archive_test::edgelets()));

  // A record of version 1 without a transform says so.
  const Bytes without = archive_test::goldenBytes("edgelet_contour_without_transform");
  gxArchive(without).load(contour);
  EXPECT_TRUE(contour.dataFromPointsXform().isNull());
}

TEST(RecordLoading, OfAnEdgePointContourNeedsAnEdgePointForEveryPoint) {
  for (const unsigned version : {0U, 1U}) {
    for (const archive_test::Points& points :
         {archive_test::Points{}, square(0, 1), house(), archive_test::Points{{0, 0}, {1, 1}}}) {
      const Bytes bytes = archive_test::edgeletContour(version, points);
      const auto error = refusal<gxArchive::BadFormat>(bytes);
      ASSERT_TRUE(error.has_value()) << points.size();
      EXPECT_NE(std::string(error->what())
                    .find("a contour of " + std::to_string(points.size()) + " points has 3 edge points"),
                std::string::npos)
          << error->what();
      EdgeContour contour(archive_test::edgelets());
      EXPECT_THROW(gxArchive(bytes).load(contour), gxArchive::BadFormat);
      EXPECT_TRUE(contour.data().empty()) << "none is better than too few";
    }
  }
}

TEST(RecordLoading, OfVersionZeroHasLabelZero) {
  gxContour contour(square(0, 1), true, 9);
  gxArchive(archive_test::goldenBytes("contour_version_0")).load(contour);
  EXPECT_EQ(contour.label(), 0U);
  EXPECT_FALSE(contour.isClosed());
  EXPECT_EQ(contour.cachedVectorSize(), 5);
  gxRegion region(square(0, 1));
  region.label(9);
  region.holes({archive_test::region(square(5, 6))});
  gxArchive(archive_test::goldenBytes("region_version_0")).load(region);
  EXPECT_EQ(region.label(), 0U);
  EXPECT_TRUE(region.holes().empty());
  EXPECT_EQ(region.cachedVectorSize(), 6);
}

// The frame is whole, its checksum right, and its record ends too early: new points are there when the
// exception comes, and nothing that was remembered of the old ones may answer for them.
TEST(RecordLoading, ThatFailsHalfWayLeavesNoOldAnswer) {
  const auto refused = [](const RecordWriter& w, gxPersistent& object) {
    const Bytes bytes = w.frame();
    EXPECT_THROW(gxArchive(bytes).load(object), gxArchive::Truncated);
  };
  RecordWriter contourUpToTheSize;
  archive_test::pointList(contourUpToTheSize.object(1, 1, "gxContour").u8(1).u32(4).u8(1), square(0, 2));
  gxContour contour(archive_test::Points{{0, 0}, {1, 0}});
  EXPECT_EQ(contour.length(), 2.0);
  refused(contourUpToTheSize, contour);
  EXPECT_EQ(contour.points(), square(0, 2));
  EXPECT_EQ(contour.length(), 8.0);

  RecordWriter oldContour;
  archive_test::pointList(oldContour.object(1, 1, "gxContour").u8(0).u8(0), square(0, 3));
  EXPECT_EQ(contour.length(), 8.0);
  refused(oldContour, contour);
  EXPECT_EQ(contour.length(), 12.0);

  RecordWriter regionUpToTheHoles;
  contourRecord(regionUpToTheHoles.object(1, 1, "gxRegion").u8(1), square(0, 2), 0);
  gxRegion region(square(0, 10));
  EXPECT_EQ(region.area(true), 100.0);
  EXPECT_TRUE(region.inside({5, 5}, false));
  EXPECT_EQ(region.length(), 40.0);
  refused(regionUpToTheHoles, region);
  EXPECT_EQ(region.area(true), 4.0);
  EXPECT_FALSE(region.inside({5, 5}, false));
  EXPECT_EQ(region.length(), 8.0);

  RecordWriter setUpToTheSize;
  setUpToTheSize.object(1, 1, "gxRegionSet").u8(1).sequence(1);
  contourRecord(setUpToTheSize.object(2, 2, "gxRegion").u8(1), square(0, 3), 0).sequence(0);
  gxRegionSet set({archive_test::region(square(0, 10))});
  EXPECT_EQ(set.area(true), 100.0);
  EXPECT_EQ(set.encloseRect(gxXform<2>::I).size(), gxVector<2>(10, 10));
  refused(setUpToTheSize, set);
  EXPECT_EQ(set.area(true), 9.0);
  EXPECT_EQ(set.encloseRect(gxXform<2>::I).size(), gxVector<2>(3, 3));

  RecordWriter edgesUpToTheData;
  contourRecord(edgesUpToTheData.object(1, 1, "gxContourT<gxEdgelet>").u8(1), square(0, 2), 0);
  EdgeContour edges(archive_test::edgelets());
  EXPECT_NE(edges.length(), 8.0);
  refused(edgesUpToTheData, edges);
  EXPECT_EQ(edges.length(), 8.0);
  EXPECT_TRUE(edges.data().empty());
}

TEST(RecordVisits, ARecordIsHandledOncePerPassHoweverOftenItIsReached) {
  const gxContour contour(house(), false, 3);
  EXPECT_EQ((storedWith<gxContour, 2>(contour).size()), (storedWith<gxContour, 1>(contour).size()));
  gxRegion region(square(0, 10));
  region.holes({archive_test::region(square(1, 2))});
  EXPECT_EQ((storedWith<gxRegion, 2>(region).size()), (storedWith<gxRegion, 1>(region).size()));
  const gxRegionSet set({archive_test::region(square(0, 10))});
  EXPECT_EQ((storedWith<gxRegionSet, 2>(set).size()), (storedWith<gxRegionSet, 1>(set).size()));
  const EdgeContour edges(archive_test::edgelets(), archive_test::rigid());
  EXPECT_EQ((storedWith<EdgeContour, 2>(edges).size()), (storedWith<EdgeContour, 1>(edges).size()));
  using EdgeRegionClass = gxRegionT<gxEdgelet>;
  EXPECT_EQ((storedWith<EdgeRegionClass, 2>(EdgeRegionClass()).size()),
            (storedWith<EdgeRegionClass, 1>(EdgeRegionClass()).size()));
  using EdgeSet = gxRegionSetT<gxEdgelet>;
  EXPECT_EQ((storedWith<EdgeSet, 2>(EdgeSet()).size()), (storedWith<EdgeSet, 1>(EdgeSet()).size()));
  EXPECT_EQ(sizeOfOwnError<2>(), sizeOfOwnError<1>());

  EXPECT_EQ((storedWith<gxLine, 2>(gxLine()).size()), (storedWith<gxLine, 1>(gxLine()).size()));
  EXPECT_EQ((storedWith<gxLineSeg, 2>(gxLineSeg()).size()),
            (storedWith<gxLineSeg, 1>(gxLineSeg()).size()));
  EXPECT_EQ((storedWith<gxRect, 2>(gxRect()).size()), (storedWith<gxRect, 1>(gxRect()).size()));
  EXPECT_EQ((storedWith<gxCircle, 2>(gxCircle()).size()), (storedWith<gxCircle, 1>(gxCircle()).size()));
  EXPECT_EQ((storedWith<gx2XformLinear, 2>(gx2XformLinear()).size()),
            (storedWith<gx2XformLinear, 1>(gx2XformLinear()).size()));
  EXPECT_EQ((storedWith<gx2Rigid, 2>(gx2Rigid()).size()), (storedWith<gx2Rigid, 1>(gx2Rigid()).size()));
}

TEST(RecordVisits, TheOutlineThatTwoBasesShareIsWrittenOnce) {
  WholeRegion region(archive_test::edgelets(), archive_test::rigid(), 5UL);
  region.holes(std::vector<archive_test::Region>{archive_test::region(square(25, 26))});
  region.data(archive_test::edgelets());
  const Bytes bytes = storedBytes(region);
  RecordWriter w;
  w.object(1, 1, gf_ClassName(typeid(WholeRegion))).u8(1);
  contourRecord(w, region.points(), 5).sequence(1);
  contourRecord(w.object(2, 2, "gxRegion").u8(1), square(25, 26), 0).sequence(0);
  archive_test::edgeletList(w.u8(1));  // the outline is there already
  w.object(3, 3, "gx2Rigid").u8(0).f64(90).point(1.5, -2.5);
  EXPECT_EQ(bytes, w.frame());
  WholeRegion back;
  gxArchive(bytes).load(back);
  EXPECT_EQ(archive_test::describe(back), archive_test::describe(region));
  EXPECT_EQ(back.data(), archive_test::edgelets());
}

TEST(RecordHandles, ToAnUnexpectedClassLoadAsNull) {
  RecordWriter w;
  w.object(1, 1, "gxRegion").u8(1);
  contourRecord(w, square(0, 10), 0).sequence(3);
  contourRecord(w.object(2, 2, "gxContour"), square(1, 2), 0);  // a contour is no region
  w.object(3, 3, "gxContourDefs::BadParams").u8(0).u8(0);
  contourRecord(w.object(4, 4, "gxRegionT<gxEdgelet>").u8(0).u8(1), square(3, 4), 0).sequence(0);
  const Bytes bytes = w.frame();
  gxRegion region;
  gxArchive(bytes).load(region);
  ASSERT_EQ(region.holes().size(), 3U);
  EXPECT_TRUE(region.holes()[0].isNull());
  EXPECT_TRUE(region.holes()[1].isNull());
  ASSERT_FALSE(region.holes()[2].isNull()) << "an edge-point region is a region";
  EXPECT_EQ(region.holes()[2]->points(), square(3, 4));
  EXPECT_THROW(region.area(true), gxBadPointer);
}

TEST(RecordHandles, LetGoOfWhatTheyHeld) {
  const gxPtrHandle<gxRegion> hole(new gxRegion(square(1, 2)));
  gxRegion region(square(0, 10));
  region.holes({hole});
  EXPECT_EQ(hole->refCount(), 2);
  const Bytes bytes = storedBytes(gxRegion(house()));
  gxArchive(bytes).load(region);
  EXPECT_EQ(hole->refCount(), 1);
}

TEST(RecordReInit, BringsBackTheDefaultState) {
  for (const archive_test::GoldenCase& one : archive_test::goldenCases()) {
    const Bytes bytes = archive_test::goldenBytes(one.name);
    gxArchive archive(bytes);
    const archive_test::Object object = archive.loadNew();
    const gxPersistent& made = *object;
    if (dynamic_cast<const archive_test::ShapeList*>(&made) != nullptr) continue;
    const archive_test::Object fresh(gx_Instantiator::make(gf_ClassName(typeid(made))));
    object->reInit();
    EXPECT_EQ(archive_test::describe(*object), archive_test::describe(*fresh)) << one.name;
  }
}

TEST(RecordBaseShapes, CompareAndContainAsBefore) {
  const gxRect rect =
      gxRect::fromCorners(gxVector<2>(1e16, -1), gxVector<2>(1.0000000000000002e16, 0.1));
  gxRect back;
  const Bytes bytes = storedBytes(rect);
  gxArchive(bytes).load(back);
  EXPECT_EQ(back, rect);
  EXPECT_TRUE(back.within(rect.corner()));
  EXPECT_TRUE(back.overlaps(gxRect(rect.corner(), gxVector<2>(1, 1))));

  // A direction beyond what lines keep is scaled, as the constructor scales it.
  RecordWriter w;
  w.object(1, 1, "gxLine").u8(0).point(1, 2).point(1e300, 1e300);
  const Bytes huge = w.frame();
  gxLine line;
  gxArchive(huge).load(line);
  EXPECT_EQ(line.direction(), gxLine(gxVector<2>(1, 2), gxVector<2>(1e300, 1e300)).direction());
  EXPECT_LT(line.direction().len(), 3.0);
}
