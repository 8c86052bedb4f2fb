// The golden files: whatever this library becomes, it reads them for ever, as the same objects.
#include <archive/golden_cases.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

using archive_test::Bytes;
using archive_test::describe;
using archive_test::goldenBytes;
using archive_test::GoldenCase;
using archive_test::Object;

namespace {

class Golden : public testing::TestWithParam<GoldenCase> {};
class GoldenMade : public testing::TestWithParam<GoldenCase> {};

std::vector<GoldenCase> casesThatCallsCanMake() {
  std::vector<GoldenCase> cases = archive_test::goldenCases();
  std::erase_if(cases, [](const GoldenCase& one) { return !one.make; });
  return cases;
}

std::string nameOf(const testing::TestParamInfo<GoldenCase>& one) {
  return one.param.name;
}

Object loaded(const Bytes& bytes) {
  gxArchive archive(bytes);
  Object object = archive.loadNew();
  EXPECT_TRUE(archive.atEnd());
  return object;
}

}  // namespace

// With GXSHAPE_WRITE_GOLDEN set, new files are written; old ones never change.
TEST_P(Golden, FileIsWhatIsWrittenToday) {
  const Bytes bytes = archive_test::writtenBytes(GetParam());
  const std::filesystem::path path = archive_test::goldenFolder() / (GetParam().name + ".gxa");
  if (std::getenv("GXSHAPE_WRITE_GOLDEN") != nullptr && !exists(path)) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }
  EXPECT_TRUE(goldenBytes(GetParam().name) == bytes);
}

TEST_P(GoldenMade, FileGivesTheSameObject) {
  const Object wanted = GetParam().make();
  const Object object = loaded(goldenBytes(GetParam().name));
  const gxPersistent& found = *object;
  const gxPersistent& made = *wanted;
  EXPECT_TRUE(typeid(found) == typeid(made));
  EXPECT_TRUE(describe(*object) == describe(*wanted));
}

TEST_P(Golden, FileGivesTheSameObjectIntoOneThatWasUsed) {
  const Bytes bytes = goldenBytes(GetParam().name);
  const Object fresh = loaded(bytes);
  const gxPersistent& made = *fresh;
  const Object used(gx_Instantiator::make(gf_ClassName(typeid(made))));
  if (auto* edges = dynamic_cast<gxContourT<gxEdgelet>*>(used.get())) {
    *edges = gxContourT<gxEdgelet>(archive_test::edgelets(), archive_test::rigid());
  } else if (auto* contour = dynamic_cast<gxContour*>(used.get())) {
    contour->points(archive_test::square(0, 9));
  }
  if (auto* contour = dynamic_cast<gxContour*>(used.get())) {
    contour->label(99);
    contour->cachedVectorSize(77);
    if (dynamic_cast<gxRegion*>(used.get()) == nullptr) contour->isClosed(!contour->isClosed());
  }
  if (auto* region = dynamic_cast<gxRegion*>(used.get())) {
    region->holes({archive_test::region(archive_test::square(15, 16))});
  }
  if (auto* region = dynamic_cast<gxRegionT<gxEdgelet>*>(used.get())) {
    region->holes({archive_test::EdgeRegion(new gxRegionT<gxEdgelet>())});
  }
  if (auto* set = dynamic_cast<gxRegionSet*>(used.get())) *set = gxRegionSet({archive_test::region({})});
  gxArchive(bytes).load(*used);
  if (GetParam().name == "edgelet_contour_version_0") {
    // Its record has no transform, and the object keeps the one it has; everything else is the file's.
    auto& edges = dynamic_cast<gxContourT<gxEdgelet>&>(*used);
    ASSERT_FALSE(edges.dataFromPointsXform().isNull());
    EXPECT_EQ(edges.dataFromPointsXform()->mapPoint({1, 0}), archive_test::rigid()->mapPoint({1, 0}));
    EXPECT_EQ(edges.data(), archive_test::edgelets());
    EXPECT_EQ(edges.points(), archive_test::threePoints());
    EXPECT_EQ(edges.label(), 8U);
    return;
  }
  EXPECT_TRUE(describe(*used) == describe(*fresh)) << describe(*used) << "\n" << describe(*fresh);
}

TEST_P(Golden, FileIsStoredAgainAsTheCurrentVersion) {
  const std::string current = GetParam().current.empty() ? GetParam().name : GetParam().current;
  const Object object = loaded(goldenBytes(GetParam().name));
  EXPECT_TRUE(archive_test::storedBytes(*object) == goldenBytes(current));
}

INSTANTIATE_TEST_SUITE_P(Files, Golden, testing::ValuesIn(archive_test::goldenCases()), nameOf);
INSTANTIATE_TEST_SUITE_P(Files, GoldenMade, testing::ValuesIn(casesThatCallsCanMake()), nameOf);

TEST(GoldenFolder, HoldsExactlyTheFilesOfTheList) {
  std::set<std::string> listed;
  for (const GoldenCase& one : archive_test::goldenCases()) listed.insert(one.name + ".gxa");
  std::set<std::string> found;
  for (const auto& entry : std::filesystem::directory_iterator(archive_test::goldenFolder())) {
    found.insert(entry.path().filename().string());
  }
  EXPECT_EQ(found, listed);
}

TEST(GoldenFolder, HoldsEveryRegisteredClass) {
  std::set<std::string> missing;
  for (const std::string& name : gx_Instantiator::registeredClasses()) {
    if (name.starts_with("gx")) missing.insert(name);  // the others are the tests' own
  }
  for (const GoldenCase& one : archive_test::goldenCases()) {
    const Object object = loaded(goldenBytes(one.name));
    const gxPersistent& made = *object;
    missing.erase(gf_ClassName(typeid(made)));
  }
  EXPECT_EQ(missing, std::set<std::string>());
}

TEST(GoldenRegion, WithANullHoleHasIt) {
  const Object object = loaded(goldenBytes("region_with_a_null_hole"));
  const auto& region = dynamic_cast<const gxRegion&>(*object);
  EXPECT_EQ(region.points(), archive_test::house());
  EXPECT_EQ(region.label(), 3U);
  ASSERT_EQ(region.holes().size(), 2U);
  EXPECT_TRUE(region.holes()[0].isNull());
  ASSERT_FALSE(region.holes()[1].isNull());
  EXPECT_EQ(region.holes()[1]->points(), archive_test::square(1, 2));
  EXPECT_THROW(region.area(true), gxBadPointer);
  EXPECT_EQ(region.area(false), 16.0);
}

TEST(GoldenEdgeletContour, WithoutATransformHasPointsAndData) {
  for (const char* name : {"edgelet_contour_without_transform", "edgelet_contour_version_0"}) {
    const Object object = loaded(goldenBytes(name));
    const auto& contour = dynamic_cast<const gxContourT<gxEdgelet>&>(*object);
    EXPECT_EQ(contour.points(), archive_test::threePoints());
    EXPECT_EQ(contour.data(), archive_test::edgelets());
    EXPECT_EQ(contour.label(), 8U);
    EXPECT_TRUE(contour.dataFromPointsXform().isNull());
    EXPECT_THROW(contour.datum(gxVector<2>(0, 0)), gxBadPointer);
  }
}

TEST(GoldenEdgeletRegion, HasOutlineAndPlainHolesOnly) {
  const Object object = loaded(goldenBytes("edgelet_region"));
  const auto& region = dynamic_cast<const gxRegionT<gxEdgelet>&>(*object);
  EXPECT_EQ(region.points(), archive_test::square(0, 10));
  EXPECT_EQ(region.label(), 77U);
  EXPECT_TRUE(region.data().empty());
  EXPECT_TRUE(region.holes().empty());
  ASSERT_EQ(region.gxRegion::holes().size(), 1U);
  EXPECT_EQ(region.area(true), 99.0);
}

TEST(GoldenSharing, ComesBack) {
  const Object set = loaded(goldenBytes("region_set_with_a_shared_hole"));
  const auto regions = dynamic_cast<const gxRegionSet&>(*set).regions();
  ASSERT_EQ(regions.size(), 2U);
  EXPECT_EQ(regions[0]->holes()[0], regions[1]->holes()[0]);
  EXPECT_EQ(regions[0]->holes()[0]->refCount(), 2);

  const Object list = loaded(goldenBytes("shape_list_with_a_shared_transform"));
  const auto& shapes = dynamic_cast<const archive_test::ShapeList&>(*list).shapes;
  ASSERT_EQ(shapes.size(), 3U);
  const auto& first = dynamic_cast<const gxContourT<gxEdgelet>&>(*shapes[0]);
  const auto& second = dynamic_cast<const gxContourT<gxEdgelet>&>(*shapes[1]);
  EXPECT_TRUE(first == second) << "the very same transform";
}
