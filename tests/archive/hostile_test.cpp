// Archives that lie.  Whatever the bytes, loading ends in one of the archive's own exceptions, or in
// an object on which every public question runs without harm; it takes at most 64 times the input
// plus 1 MiB of memory, and nothing leaks.
#include <archive/ask_everything.h>
#include <archive/golden_cases.h>
#include <archive/memory_count.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <random>
#include <set>

using archive_test::askEverything;
using archive_test::Bytes;
using archive_test::goldenBytes;
using archive_test::GoldenCase;
using archive_test::mendChecksum;
using archive_test::Object;
using archive_test::RecordWriter;

namespace {

constexpr std::size_t kHeader = 20;
constexpr std::size_t kSum = 8;
constexpr std::size_t kSmall = 4096;  // files up to this size are tried in every way

std::vector<GoldenCase> smallCases() {
  std::vector<GoldenCase> cases = archive_test::goldenCases();
  std::erase_if(cases, [](const GoldenCase& one) {
    std::error_code missing;  // a file that is not there is the golden test's affair
    return file_size(archive_test::goldenFolder() / (one.name + ".gxa"), missing) > kSmall;
  });
  return cases;
}

std::string nameOf(const testing::TestParamInfo<GoldenCase>& one) {
  return one.param.name;
}

void putWord(Bytes& frame, std::size_t at, std::uint64_t value) {
  for (std::size_t i = 0; i < 4; ++i) frame[at + i] = static_cast<unsigned char>(value >> (8 * i));
}

// What a test did with its frames: loaded and asked, or refused.
struct Tally {
  std::size_t loaded = 0;
  std::size_t refused = 0;
  std::set<std::string> errors;
};

enum class Ask { eNothing, eEverything };

// Loads and asks; anything but the documented ends is a failure of the test, or of the sanitizers.
void tryFrame(const Bytes& frame, Tally& tally, Ask ask = Ask::eEverything) {
  const std::size_t before = archive_test::bytesInUse();
  archive_test::forgetPeak();
  {
    Object object;
    try {
      gxArchive archive(frame);
      object = archive.loadNew();
      ++tally.loaded;
    } catch (const gxArchive::Errors& error) {
      ++tally.refused;
      tally.errors.insert(gf_ClassName(typeid(error)));
      EXPECT_TRUE(error.hasByteOffset());
      EXPECT_LE(error.byteOffset(), frame.size()) << error.what();
    }
    EXPECT_LE(archive_test::peakBytes() - before, 64 * frame.size() + (1U << 20U));
    if (object != nullptr && ask == Ask::eEverything) askEverything(*object);
  }
}

class Hostile : public testing::TestWithParam<GoldenCase> {
 protected:
  Bytes frame_ = goldenBytes(GetParam().name);
  Tally tally_;
};

// Cuts the payload and mends length and checksum, so that the cut is met where a field is read.
Bytes cutInside(const Bytes& frame, std::size_t payload) {
  RecordWriter w;
  w.raw(Bytes(frame.begin() + kHeader, frame.begin() + static_cast<long>(kHeader + payload)));
  return w.frame();
}

}  // namespace

TEST_P(Hostile, CutAtEveryByte) {
  for (std::size_t size = 0; size < frame_.size(); ++size) {
    tryFrame(Bytes(frame_.begin(), frame_.begin() + static_cast<long>(size)), tally_);
  }
  EXPECT_EQ(tally_.loaded, 0U);
  EXPECT_EQ(tally_.errors, std::set<std::string>{"gxArchive::Truncated"});
}

TEST_P(Hostile, CutAtEveryByteOfThePayload) {
  const std::size_t payload = frame_.size() - kHeader - kSum;
  for (std::size_t size = 0; size < payload; ++size) tryFrame(cutInside(frame_, size), tally_);
  EXPECT_EQ(tally_.loaded, 0U);
}

TEST_P(Hostile, EveryBitFlippedWithAWrongChecksum) {
  for (std::size_t bit = 0; bit < 8 * frame_.size(); ++bit) {
    Bytes damaged = frame_;
    damaged[bit / 8] = static_cast<unsigned char>(damaged[bit / 8] ^ (1U << bit % 8));
    tryFrame(damaged, tally_);
  }
  EXPECT_EQ(tally_.loaded, 0U) << "a flipped bit always changes the checksum";
}

TEST_P(Hostile, EveryBitFlippedWithTheChecksumPutRight) {
  for (std::size_t bit = 8 * kHeader; bit < 8 * (frame_.size() - kSum); ++bit) {
    Bytes damaged = frame_;
    damaged[bit / 8] = static_cast<unsigned char>(damaged[bit / 8] ^ (1U << bit % 8));
    mendChecksum(damaged);
    tryFrame(damaged, tally_);
  }
  EXPECT_GT(tally_.refused, 0U);
}

// Every place where a count could stand, without asking the library where counts are.
TEST_P(Hostile, FalseCountsEverywhere) {
  for (std::size_t at = kHeader; at + 4 + kSum <= frame_.size(); ++at) {
    const std::size_t left = frame_.size() - kSum - at - 4;
    for (const std::uint64_t count :
         {std::uint64_t{0xffffffff}, std::uint64_t{0x80000000}, std::uint64_t{0x10000000},
          std::uint64_t{left / 16 + 1}, std::uint64_t{left / 19 + 1}, std::uint64_t{left / 4 + 1}}) {
      Bytes lying = frame_;
      putWord(lying, at, count);
      mendChecksum(lying);
      tryFrame(lying, tally_, Ask::eNothing);
    }
  }
  EXPECT_GT(tally_.refused, 0U);
}

// Every place where a reference or a class number could stand.
TEST_P(Hostile, FalseReferencesEverywhere) {
  for (std::size_t at = kHeader; at + 4 + kSum <= frame_.size(); ++at) {
    for (std::uint64_t number = 0; number <= 8; ++number) {
      Bytes lying = frame_;
      putWord(lying, at, number);
      mendChecksum(lying);
      tryFrame(lying, tally_);
    }
  }
  EXPECT_GT(tally_.refused, 0U);
}

TEST_P(Hostile, EveryClassInThePlaceOfEachOther) {
  std::vector<std::string> names = gx_Instantiator::registeredClasses();
  for (const char* name : {"gxContourDefs::Errors", "gxContourBase", "gxContourBase2", "gxPersistent",
                           "gx2XformBase", "gxException", "", "gxContou", "gxContourT<gxEdgelet> "}) {
    names.emplace_back(name);
  }
  std::size_t places = 0;
  for (std::size_t at = kHeader; at + kSum < frame_.size(); ++at) {
    const std::size_t length = frame_[at];
    if (length < 4 || at + 1 + length > frame_.size() - kSum) continue;
    const std::string text(frame_.begin() + static_cast<long>(at) + 1,
                           frame_.begin() + static_cast<long>(at + 1 + length));
    if (gx_Instantiator::factory(text) == nullptr) continue;
    ++places;
    for (const std::string& name : names) {
      RecordWriter w;
      w.raw(Bytes(frame_.begin() + kHeader, frame_.begin() + static_cast<long>(at)));
      w.u8(static_cast<unsigned>(name.size())).raw(Bytes(name.begin(), name.end()));
      w.raw(Bytes(frame_.begin() + static_cast<long>(at + 1 + length), frame_.end() - kSum));
      tryFrame(w.frame(), tally_);
    }
  }
  EXPECT_GE(places, 1U);
  EXPECT_TRUE(tally_.errors.contains("gxArchive::UnknownClass"));
}

INSTANTIATE_TEST_SUITE_P(Files, Hostile, testing::ValuesIn(smallCases()), nameOf);

// At every byte near both ends, where the fields are; between them the bytes are those of points, and every
// 61st is enough but for a soak: each try reads all that comes before it.
TEST(HostileLargeFile, CutAnywhere) {
  const Bytes frame = goldenBytes("contour_100000_points");
  constexpr std::size_t kEnds = 4096;
  const std::size_t stride = std::getenv("GXSHAPE_SOAK") != nullptr ? 1 : 61;
  std::size_t tried = 0;
  std::size_t truncated = 0;
  for (std::size_t size = 0; size < frame.size();
       size += size < kEnds || size + kEnds > frame.size() ? 1 : stride) {
    ++tried;
    gxContour contour;
    gxArchive archive(std::span(frame.data(), size));
    try {
      archive.load(contour);
    } catch (const gxArchive::Truncated&) {
      ++truncated;
    }
  }
  EXPECT_GT(tried, 2 * kEnds);
  EXPECT_EQ(truncated, tried);
}

TEST(HostileLargeFile, CutAtManyPlacesOfThePayload) {
  const Bytes frame = goldenBytes("contour_100000_points");
  Tally tally;
  for (std::size_t size = 0; size < frame.size() - kHeader - kSum; size += 16411) {
    tryFrame(cutInside(frame, size), tally, Ask::eNothing);
  }
  EXPECT_EQ(tally.loaded, 0U);
}

// Objects are the dearest thing that few bytes can buy.
TEST(HostileMemory, ManySmallObjectsStayWithinTheBound) {
  for (const char* name :
       {"gxRegion", "gxRegionT<gxEdgelet>", "gxContourDefs::BadParams", "gxRegionSet",
        "gxContourT<gxEdgelet>", "gxRegionSetT<gxEdgelet>", "gx2Rigid", "gxContour"}) {
    const std::string text = name;
    RecordWriter record;
    if (text == "gxContourDefs::BadParams") {
      record.u8(0).u8(0);
    } else if (text == "gx2Rigid") {
      record.u8(0).f64(0).point(0, 0);
    } else if (text == "gxRegionSet") {
      record.u8(0).sequence(0);
    } else if (text == "gxRegionSetT<gxEdgelet>") {
      record.u8(0).u8(0).sequence(0).sequence(0);
    } else if (text == "gxRegion") {
      record.u8(0).u8(0).sequence(0).u8(0).i32(0);
    } else if (text == "gxRegionT<gxEdgelet>") {
      record.u8(0).u8(0).u8(0).sequence(0).u8(0).i32(0);
    } else {
      if (text == "gxContourT<gxEdgelet>") record.u8(0);
      record.u8(0).u8(0).sequence(0).u8(0).i32(0).u8(0);
      if (text == "gxContourT<gxEdgelet>") record.sequence(0);
    }
    // Counts at which the pass's own tables have just grown are the dearest.
    double worst = 0.0;
    for (const std::uint64_t objects : {10924U, 16384U, 16386U, 21846U, 21850U, 32770U, 43692U}) {
      RecordWriter w;
      w.object(1, 1, "gxRegionSet").u8(0).sequence(objects);
      w.object(2, 2, name).raw(record.payload());
      for (std::uint64_t i = 3; i <= objects + 1; ++i) w.object(i, 2).raw(record.payload());
      const Bytes frame = w.frame();
      const std::size_t before = archive_test::bytesInUse();
      archive_test::forgetPeak();
      {
        gxArchive archive(frame);
        gxRegionSet set;
        archive.load(set);
        EXPECT_EQ(set.regions().size(), objects);
      }
      const std::size_t peak = archive_test::peakBytes() - before;
      EXPECT_LE(peak, 64 * frame.size() + (1U << 20U)) << name << ' ' << objects;
      worst = std::max(worst, static_cast<double>(peak) / static_cast<double>(frame.size()));
    }
    std::printf("%-28s at most %.1f times its bytes\n", name, worst);
  }
}

TEST(HostileMemory, NothingIsLeftBehind) {
  Tally tally;
  const auto tryAll = [&] {
    for (const GoldenCase& one : smallCases()) {
      const Bytes frame = goldenBytes(one.name);
      for (std::size_t at = kHeader; at + 4 + kSum <= frame.size(); at += 3) {
        Bytes lying = frame;
        putWord(lying, at, at % 5);
        mendChecksum(lying);
        tryFrame(lying, tally);
      }
    }
  };
  tryAll();  // what is made once a thread is made now
  const std::size_t before = archive_test::bytesInUse();
  tryAll();
  EXPECT_EQ(archive_test::bytesInUse(), before);
}

TEST(HostileNesting, OfHolesAtTheLimitCanBeAsked) {
  const auto nested = [](std::uint64_t levels) {
    RecordWriter w;
    for (std::uint64_t i = 1; i <= levels; ++i) {
      if (i == 1) {
        w.object(i, 1, "gxRegion");
      } else {
        w.object(i, 1);
      }
      const double d = static_cast<double>(i) / 1024;
      archive_test::contourRecord(w.u8(1), archive_test::square(d, 10 - d), i)
          .sequence(i == levels ? 0 : 1);
    }
    return w.frame();
  };
  Tally tally;
  tryFrame(nested(256), tally);
  EXPECT_EQ(tally.loaded, 1U);
  tryFrame(nested(257), tally);
  tryFrame(nested(1000000), tally);
  EXPECT_EQ(tally.loaded, 1U);
  EXPECT_EQ(tally.errors, std::set<std::string>{"gxArchive::LimitExceeded"});
}

// Each level refers twice to the next, so that paths double while objects do not.
TEST(HostileNesting, WithDoublingPathsCanBeAsked) {
  RecordWriter w;
  constexpr std::uint64_t kLevels = 256;
  for (std::uint64_t i = 1; i <= kLevels; ++i) {
    if (i == 1) {
      w.object(i, 1, "gxRegion");
    } else {
      w.object(i, 1);
    }
    const double d = static_cast<double>(i) / 1024;
    archive_test::contourRecord(w.u8(1), archive_test::square(d, 10 - d), i)
        .sequence(i == kLevels ? 0 : 2);
  }
  for (std::uint64_t i = kLevels; i >= 2; --i) w.reference(i);
  Tally tally;
  tryFrame(w.frame(), tally);
  EXPECT_EQ(tally.loaded, 1U);
}

// Holes that are shared are asked once, and answer as if each had been asked on its own.
TEST(HostileNesting, OfSharedHolesAnswersAsPlainRecursionDoes) {
  std::mt19937_64 random(20);
  SCOPED_TRACE("seed 20");
  std::vector<archive_test::Region> inner;
  for (int level = 8; level >= 1; --level) {
    std::vector<archive_test::Region> next;
    for (int i = 0; i < 3; ++i) {
      const double shift = 0.01 * static_cast<double>(random() % 40);
      std::vector<archive_test::Region> holes;
      for (int k = 0; k < 3 && !inner.empty(); ++k) holes.push_back(inner[random() % inner.size()]);
      next.push_back(
          archive_test::region(archive_test::square(level + shift, 20 - level - shift), holes));
    }
    inner = next;
  }
  const std::function<bool(const gxRegion&, const gxVector<2>&)> plain = [&](const gxRegion& region,
                                                                             const gxVector<2>& point) {
    return region.inside(point, false) &&
           std::none_of(region.holes().begin(), region.holes().end(),
                        [&](const archive_test::Region& hole) { return plain(*hole, point); });
  };
  std::size_t insides = 0;
  for (double x = 0.05; x < 20; x += 0.1) {
    for (const archive_test::Region& region : inner) {
      const gxVector<2> point(x, 10.013);
      const bool wanted = plain(*region, point);
      EXPECT_EQ(region->inside(point, true), wanted) << x;
      insides += wanted ? 1 : 0;
    }
  }
  EXPECT_GT(insides, 100U);
  EXPECT_LT(insides, 500U);
}

TEST(HostileObject, PartlyLoadedIsSafeToAskAndUse) {
  for (const GoldenCase& one : smallCases()) {
    const Bytes frame = goldenBytes(one.name);
    const Object model = [&] {
      gxArchive archive(frame);
      return archive.loadNew();
    }();
    const gxPersistent& made = *model;
    const std::string name = gf_ClassName(typeid(made));
    for (std::size_t size = 0; size < frame.size() - kHeader - kSum; ++size) {
      const Bytes cut = cutInside(frame, size);
      const Object object(gx_Instantiator::make(name));
      {
        gxArchive whole(frame);
        whole.load(*object);  // an object that holds and remembers something
      }
      if (size % 7 == 0) askEverything(*object);
      gxArchive archive(cut);
      EXPECT_THROW(archive.load(*object), gxArchive::Errors);
      if (size % 7 == 0) askEverything(*object);
      gxArchive again(frame);
      again.load(*object);
      EXPECT_EQ(archive_test::describe(*object), archive_test::describe(*model));
    }
  }
}
