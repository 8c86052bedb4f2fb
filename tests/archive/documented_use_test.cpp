// The code that docs/archive.md shows, compiled and run.  What stands between the marks here must stand
// in the document, line by line.
#include <archive/golden_cases.h>
#include <gtest/gtest.h>
#include <support/source_folder.h>

#include <filesystem>
#include <random>
#include <sstream>

namespace {

// clang-format off
// [own class]
class Drawing : public gxPersistent, public gxRepBase {
 public:
  std::vector<gxPtrHandle_const<gxContour>> shapes;   // shared shapes come back shared
  static gxPersistent* make() { return new Drawing; }

 protected:
  void dispatchSerialize(gxArchive& archive) override {
    const std::uint64_t key = archive.passAndLevel(0x100);   // 0x100 and up are free: one a class
    if (haveVisited(this, key)) return;
    unsigned char version = 0;
    archive || version;
    if (version != 0) throw gxArchive::UnknownVersion("Drawing", 0);
    archive || shapes;
    setVisited(this, key);
  }
};
static const gx_Instantiator drawingIsKnown(typeid(Drawing), &Drawing::make);
// [end]
// clang-format on

std::string textOf(const std::filesystem::path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// A folder to run in, gone afterwards.
class InFolder {
 public:
  InFolder() : before_(std::filesystem::current_path()) {
    std::random_device random;
    folder_ = std::filesystem::temp_directory_path() / ("gxshape-use-" + std::to_string(random()));
    std::filesystem::create_directory(folder_);
    std::filesystem::current_path(folder_);
  }
  InFolder(const InFolder&) = delete;
  InFolder& operator=(const InFolder&) = delete;
  ~InFolder() {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(folder_);
  }

 private:
  std::filesystem::path before_;
  std::filesystem::path folder_;
};

}  // namespace

TEST(ArchiveDocument, ShowsWorkingCode) {
  const InFolder folder;
  const gxRegionSet coins(
      {archive_test::region(archive_test::house()), archive_test::region(archive_test::square(5, 9))});
  const gxContourT<gxEdgelet> edges(archive_test::edgelets(), archive_test::linear());

  // clang-format off
// [in short]
gxArchive out;                      // into memory
out.store(coins);                   // a gxRegionSet: one frame
out.store(edges);                   // a gxContourT<gxEdgelet>: another frame
out.writeFile("coins.gxa");         // replaces the file in one step, or leaves the old one whole

gxArchive in = gxArchive::fromFile("coins.gxa");
gxRegionSet set;
in.load(set);                                                        // into an object of the class
const auto contour = in.loadHandle<gxContourT<gxEdgelet>>();         // or as a new object
// [end]
  // clang-format on

  EXPECT_TRUE(set == coins);
  ASSERT_FALSE(contour.isNull());
  EXPECT_EQ(archive_test::describe(*contour), archive_test::describe(edges));
  EXPECT_TRUE(in.atEnd());
}

TEST(ArchiveDocument, ShowsAClassThatKeepsSharing) {
  Drawing drawing;
  const gxPtrHandle<gxContour> shape(new gxContour(archive_test::house()));
  drawing.shapes = {shape, shape, nullptr};
  const archive_test::Bytes bytes = archive_test::storedBytes(drawing);
  Drawing back;
  gxArchive(bytes).load(back);
  ASSERT_EQ(back.shapes.size(), 3U);
  EXPECT_EQ(back.shapes[0], back.shapes[1]);
  EXPECT_TRUE(*back.shapes[0] == *shape);
  EXPECT_TRUE(back.shapes[2].isNull());
}

TEST(ArchiveDocument, ShowsThisCode) {
  const std::filesystem::path root(sourceFolder());
  const std::string document = textOf(root / "docs" / "archive.md");
  std::istringstream source(textOf(root / "tests" / "archive" / "documented_use_test.cpp"));
  std::size_t blocks = 0;
  bool inBlock = false;
  std::string block;
  for (std::string line; std::getline(source, line);) {
    if (inBlock && line == "// [end]") {
      EXPECT_NE(document.find(block), std::string::npos) << block;
      ++blocks;
      inBlock = false;
    } else if (inBlock) {
      block += line + '\n';
    } else if (line == "// [own class]" || line == "// [in short]") {
      inBlock = true;
      block.clear();
    }
  }
  EXPECT_EQ(blocks, 2U);
}
