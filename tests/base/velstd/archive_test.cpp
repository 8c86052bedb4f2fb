// Frames, fields and limits of archives, on a small class of the tests.
//
// Covers base/velstd/archive_errors.cpp
// Covers base/velstd/archive_fields.cpp
// Covers base/velstd/archive_sum.cpp
// Covers base/velstd/internal/archive_sum.h
// Covers base/velstd/internal/archive_number.h
#include <archive/probe_node.h>
#include <archive/record_writer.h>
#include <gtest/gtest.h>
#include <velstd/archive.h>
#include <velstd/rect.h>

#include <cmath>
#include <limits>
#include <sstream>

using archive_test::Bytes;
using archive_test::kProbeName;
using archive_test::ProbeNode;
using archive_test::RecordWriter;

namespace {

Bytes stored(const gxPersistent& object) {
  gxArchive archive;
  archive.store(object);
  return {archive.bytes().begin(), archive.bytes().end()};
}

ProbeNode& fill(ProbeNode& node) {
  node.flag = true;
  node.number = -2;
  node.label = 0xfffffffe;
  node.magnitude = 0x1234;
  node.value = -0.0;
  node.position = gxVector<2>(1.5, std::numeric_limits<double>::infinity());
  node.points = {{1, 2}, {3, 4}};
  return node;
}

RecordWriter filledRecord() {
  RecordWriter w;
  w.object(1, 1, kProbeName).u8(7).u8(1).i32(-2).u32(0xfffffffe).u16(0x1234).f64(-0.0);
  w.f64(1.5).f64(std::numeric_limits<double>::infinity());
  return w.sequence(2).point(1, 2).point(3, 4).null();
}

// A record of a node up to the handle, with nothing in it.
RecordWriter& emptyRecord(RecordWriter& w) {
  return w.u8(7).u8(0).i32(0).u32(0).u16(0).f64(0).point(0, 0).sequence(0);
}

template <class Error>
Error errorOf(const Bytes& frame) {
  ProbeNode node;
  gxArchive archive(frame);
  try {
    archive.load(node);
  } catch (const Error& error) {
    return error;
  }
  throw std::runtime_error("nothing was thrown");
}

}  // namespace

TEST(ArchiveFrame, HoldsTheBytesThatTheFormatSays) {
  ProbeNode node;
  EXPECT_EQ(stored(fill(node)), filledRecord().frame());
}

TEST(ArchiveFrame, GivesBackEveryField) {
  const Bytes frame = filledRecord().frame();
  ProbeNode node;
  node.points.resize(10);
  gxArchive archive(frame);
  EXPECT_FALSE(archive.atEnd());
  archive.load(node);
  EXPECT_TRUE(archive.atEnd());
  EXPECT_TRUE(node.flag);
  EXPECT_EQ(node.number, -2);
  EXPECT_EQ(node.label, 0xfffffffeU);
  EXPECT_EQ(node.magnitude, 0x1234);
  EXPECT_TRUE(node.value == 0.0 && std::signbit(node.value));
  EXPECT_EQ(node.position, gxVector<2>(1.5, std::numeric_limits<double>::infinity()));
  EXPECT_EQ(node.points, (std::vector<gxVector<2>>{{1, 2}, {3, 4}}));
  EXPECT_TRUE(node.next.isNull());
}

TEST(ArchiveFrame, FollowsAnotherInTheSameArchive) {
  gxArchive out;
  ProbeNode node;
  for (node.number = 1; node.number <= 3; ++node.number) out.store(node);
  gxArchive in(out.bytes());
  for (long i = 1; i <= 3; ++i) {
    EXPECT_FALSE(in.atEnd());
    in.load(node);
    EXPECT_EQ(node.number, i);
  }
  EXPECT_TRUE(in.atEnd());
  EXPECT_THROW(in.load(node), gxArchive::Truncated);
}

TEST(ArchiveFrame, CutAnywhereIsTruncated) {
  const Bytes frame = filledRecord().frame();
  for (std::size_t size = 0; size < frame.size(); ++size) {
    const auto error =
        errorOf<gxArchive::Truncated>(Bytes(frame.begin(), frame.begin() + static_cast<long>(size)));
    EXPECT_TRUE(error.hasByteOffset());
  }
}

TEST(ArchiveFrame, AnyFlippedBitIsSeen) {
  const Bytes frame = filledRecord().frame();
  for (std::size_t bit = 0; bit < 8 * frame.size(); ++bit) {
    Bytes damaged = frame;
    damaged[bit / 8] = static_cast<unsigned char>(damaged[bit / 8] ^ (1U << bit % 8));
    ProbeNode node;
    gxArchive archive(damaged);
    EXPECT_THROW(archive.load(node), gxArchive::Errors) << "bit " << bit;
    EXPECT_EQ(node.number, 0) << "nothing is interpreted before the checksum";
  }
}

TEST(ArchiveFrame, OfAnotherFormatOrKindIsRefused) {
  Bytes frame = filledRecord().frame();
  frame[8] = 2;
  archive_test::mendChecksum(frame);
  EXPECT_EQ(errorOf<gxArchive::BadFormat>(frame).byteOffset(), 0U);
  EXPECT_NO_THROW(errorOf<gxArchive::BadFormat>({'h', 'e', 'l', 'l', 'o'}));
}

TEST(ArchiveFrame, WithBytesBehindItsObjectIsRefused) {
  EXPECT_NO_THROW(errorOf<gxArchive::BadFormat>(filledRecord().u8(0).frame()));
}

TEST(ArchiveFrame, OfAnotherClassIsRefusedByName) {
  gxRect rect;
  const Bytes frame = filledRecord().frame();
  gxArchive archive(frame);
  try {
    archive.load(rect);
    FAIL();
  } catch (const gxArchive::BadFormat& error) {
    EXPECT_STREQ(
        error.what(),
        "gxArchive::BadFormat: the archive holds a archive_test::ProbeNode, not a gxRect (at byte 52)");
  }
  ProbeNode node;
  archive.load(node);  // the archive stands where it stood before
  EXPECT_EQ(node.number, -2);
}

TEST(ArchiveFrame, WithoutAnObjectIsRefused) {
  EXPECT_NO_THROW(errorOf<gxArchive::BadFormat>(RecordWriter().null().frame()));
  EXPECT_NO_THROW(errorOf<gxArchive::Truncated>(RecordWriter().frame()));
}

TEST(ArchiveFields, FlagsAreZeroOrOne) {
  RecordWriter w;
  w.object(1, 1, kProbeName).u8(7).u8(2);
  EXPECT_NO_THROW(errorOf<gxArchive::BadFormat>(w.frame()));
}

TEST(ArchiveFields, NumbersThatDoNotFitAreRefusedByName) {
  const auto text = [](long number, unsigned long label) -> std::string {
    ProbeNode node;
    node.number = number;
    node.label = label;
    gxArchive archive;
    try {
      archive.store(node);
      return "";
    } catch (const gxArchive::LimitExceeded& error) {
      EXPECT_TRUE(archive.bytes().empty());
      return error.what();
    }
  };
  EXPECT_EQ(text(0x7fffffff, 0xffffffff), "");
  EXPECT_EQ(text(-0x80000000L, 0), "");
  EXPECT_EQ(text(0x80000000L, 0),
            "gxArchive::LimitExceeded: number of a probe does not fit into 32 bits (at byte 54)");
  EXPECT_EQ(text(-0x80000001L, 0),
            "gxArchive::LimitExceeded: number of a probe does not fit into 32 bits (at byte 54)");
  EXPECT_EQ(text(0, 0x100000000UL),
            "gxArchive::LimitExceeded: label of a probe does not fit into 32 bits (at byte 58)");
}

TEST(ArchiveFields, NaNKeepsItsBits) {
  ProbeNode node;
  const double nan = std::bit_cast<double>(std::uint64_t{0xfff8dead'beef1234});
  node.value = nan;
  node.points = {{nan, 0}};
  const Bytes frame = stored(node);
  ProbeNode back;
  gxArchive(frame).load(back);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(back.value), 0xfff8deadbeef1234U);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(back.points[0].x()), 0xfff8deadbeef1234U);
}

TEST(ArchiveSequences, OfAnotherVersionAreRefusedWithoutASource) {
  RecordWriter w;
  w.object(1, 1, kProbeName).u8(7).u8(0).i32(0).u32(0).u16(0).f64(0).point(0, 0).u8(1).u32(0).null();
  const auto error = errorOf<gxArchive::UnknownVersion>(w.frame());
  EXPECT_EQ(error.source(), nullptr);
  EXPECT_EQ(error.line(), 0);
  EXPECT_TRUE(error.hasByteOffset());
  EXPECT_STREQ(error.what(), "gxArchive::UnknownVersion: unknown version (at byte 89)");
}

TEST(ArchiveSequences, PromisingMoreThanIsThereAreRefusedBeforeAnythingIsAllocated) {
  for (const std::uint64_t count : {0xffffffffU, 0x80000000U, 0x10000000U, 3U}) {
    RecordWriter w;
    w.object(1, 1, kProbeName).u8(7).u8(0).i32(0).u32(0).u16(0).f64(0).point(0, 0).sequence(count);
    w.point(1, 1).point(2, 2);
    EXPECT_NO_THROW(errorOf<gxArchive::Truncated>(w.frame())) << count;
  }
}

TEST(ArchiveVersions, UnknownOnesCarryTheirPlace) {
  RecordWriter w;
  w.object(1, 1, kProbeName).u8(8);
  const auto error = errorOf<gxArchive::UnknownVersion>(w.frame());
  EXPECT_STREQ(error.source(), "tests/probe");
  EXPECT_EQ(error.line(), 12);
  EXPECT_STREQ(error.what(),
               "gxArchive::UnknownVersion: unknown version, refused by tests/probe, 12 (at byte 53)");
}

TEST(ArchiveErrors, KeepTheNumbersThatAreDocumentedAndCanBeRethrown) {
  EXPECT_EQ(gxArchive::Truncated().errorNumber(), 0x10000121);
  EXPECT_EQ(gxArchive::BadFormat().errorNumber(), 0x10000122);
  EXPECT_EQ(gxArchive::BadChecksum().errorNumber(), 0x10000123);
  EXPECT_EQ(gxArchive::LimitExceeded().errorNumber(), 0x10000124);
  EXPECT_EQ(gxArchive::BadReference().errorNumber(), 0x10000125);
  EXPECT_EQ(gxArchive::UnknownClass().errorNumber(), 0x10000126);
  EXPECT_EQ(gxArchive::UnknownVersion(nullptr, 0).errorNumber(), 0x10000127);
  EXPECT_EQ(gxArchive::FileError().errorNumber(), 0x10000128);
  auto* onHeap = new gxArchive::UnknownVersion("somewhere", 3);
  onHeap->byteOffset(17);
  try {
    onHeap->suicideAndRethrow();
    FAIL();
  } catch (const gxArchive::UnknownVersion& error) {
    EXPECT_STREQ(error.source(), "somewhere");
    EXPECT_EQ(error.byteOffset(), 17U);
  }
}

TEST(ArchiveErrors, KeepTheFirstPlace) {
  gxArchive::BadFormat error(L"text");
  EXPECT_FALSE(error.hasByteOffset());
  EXPECT_EQ(error.byteOffset(), 0U);
  EXPECT_STREQ(error.what(), "gxArchive::BadFormat: text");
  error.byteOffset(5);
  error.byteOffset(6);
  EXPECT_STREQ(error.what(), "gxArchive::BadFormat: text (at byte 5)");
}

TEST(ArchiveDirection, IsKept) {
  const Bytes frame = filledRecord().frame();
  ProbeNode node;
  gxArchive in(frame);
  EXPECT_TRUE(in.isLoading() && !in.isStoring());
  EXPECT_THROW(in.store(node), gxArchive::BadFormat);
  EXPECT_THROW(in.writeFile("nowhere"), gxArchive::BadFormat);
  gxArchive out;
  EXPECT_TRUE(out.isStoring() && !out.isLoading() && out.atEnd());
  EXPECT_THROW(out.load(node), gxArchive::BadFormat);
  EXPECT_THROW(out.loadNew(), gxArchive::BadFormat);
}

TEST(ArchivePass, IsNeededForFields) {
  gxArchive out;
  bool flag = false;
  gxPersistent* found = nullptr;
  EXPECT_THROW(out || flag, gxArchive::BadFormat);
  EXPECT_THROW(gxPersistent::serializePointer(out, nullptr, found), gxArchive::BadFormat);
  EXPECT_TRUE(out.bytes().empty());
}

// The bytes that stand there would do for any of these fields.
TEST(ArchivePass, IsNeededForFieldsThatAreLoadedAndTheArchiveStaysWhereItIs) {
  const Bytes frame = filledRecord().frame();
  gxArchive in(frame);
  bool flag = false;
  unsigned char byte = 7;
  unsigned short word = 7;
  long number = 7;
  unsigned long label = 7;
  double value = 7;
  gxVector<2> point(7, 7);
  std::vector<gxVector<2>> points(7);
  std::vector<unsigned char> bytes(7);
  unsigned char raw[4] = {};
  gxPtrHandle<ProbeNode> handle(new ProbeNode);
  gxPersistent* found = nullptr;
  EXPECT_THROW(in || flag, gxArchive::BadFormat);
  EXPECT_THROW(in || byte, gxArchive::BadFormat);
  EXPECT_THROW(in || word, gxArchive::BadFormat);
  EXPECT_THROW(in || number, gxArchive::BadFormat);
  EXPECT_THROW(in || label, gxArchive::BadFormat);
  EXPECT_THROW(in || value, gxArchive::BadFormat);
  EXPECT_THROW(in || point, gxArchive::BadFormat);
  EXPECT_THROW(in || points, gxArchive::BadFormat);
  EXPECT_THROW(in || bytes, gxArchive::BadFormat);
  EXPECT_THROW(in || handle, gxArchive::BadFormat);
  EXPECT_THROW(in.transfer(raw, 4), gxArchive::BadFormat);
  EXPECT_THROW(in.takeBytes(4), gxArchive::BadFormat);
  EXPECT_THROW(in.sequence(0, 1), gxArchive::BadFormat);
  EXPECT_THROW(gxPersistent::serializePointer(in, nullptr, found), gxArchive::BadFormat);
  EXPECT_TRUE(byte == 7 && word == 7 && number == 7 && label == 7 && value == 7);
  EXPECT_TRUE(points.size() == 7 && bytes.size() == 7);
  ProbeNode node;
  in.load(node);
  EXPECT_EQ(node.number, -2);
}

TEST(ArchivePass, CannotBeStartedInsideAnother) {
  ProbeNode node;
  ProbeNode other;
  node.onSerialize = [&](gxArchive& archive) { archive.store(other); };
  gxArchive out;
  EXPECT_THROW(out.store(node), gxArchive::BadFormat);
  EXPECT_TRUE(out.bytes().empty());
  out.store(other);
  EXPECT_FALSE(out.bytes().empty());
}

TEST(ArchivePass, ThatFailsHasStoredNothing) {
  ProbeNode node;
  gxArchive out;
  out.store(node);
  const std::size_t size = out.bytes().size();
  node.onSerialize = [](gxArchive&) { throw 1; };
  EXPECT_THROW(out.store(node), int);
  EXPECT_EQ(out.bytes().size(), size);
  node.onSerialize = nullptr;
  out.store(node);
  gxArchive in(out.bytes());
  in.load(node);
  in.load(node);
  EXPECT_TRUE(in.atEnd());
}

TEST(ArchiveLimits, BytesCountTheWholeFrameInBothDirections) {
  ProbeNode node;
  fill(node);
  const Bytes frame = stored(node);
  gxArchive::Limits limits;
  limits.bytes = frame.size();
  gxArchive out;
  out.limits(limits);
  out.store(node);
  EXPECT_EQ(out.bytes().size(), frame.size());
  out.store(node);  // each frame has the limit for itself
  gxArchive in(frame);
  in.limits(limits);
  in.load(node);

  for (std::uint64_t bytes = 0; bytes < frame.size(); ++bytes) {
    limits.bytes = bytes;
    gxArchive tightOut;
    tightOut.limits(limits);
    EXPECT_THROW(tightOut.store(node), gxArchive::LimitExceeded) << bytes;
    gxArchive tightIn(frame);
    tightIn.limits(limits);
    EXPECT_THROW(tightIn.load(node), gxArchive::LimitExceeded) << bytes;
  }
}

TEST(ArchiveLimits, AreTheDocumentedOnes) {
  const gxArchive archive;
  EXPECT_EQ(archive.limits().nesting, 256U);
  EXPECT_EQ(archive.limits().objects, 1000000U);
  EXPECT_EQ(archive.limits().bytes, 0x7fffffffU);
}

TEST(ArchiveLimits, ThatCannotBeKeptAreRefusedWhenTheyAreSet) {
  gxArchive::Limits limits;
  limits.objects = 5;
  limits.nesting = gxArchive::kMostNesting + 1;
  gxArchive archive;
  try {
    archive.limits(limits);
    FAIL();
  } catch (const gxArchive::LimitExceeded& error) {
    EXPECT_STREQ(error.what(),
                 "gxArchive::LimitExceeded: a nesting of 1001 levels cannot be set, 1000 is the most");
  }
  EXPECT_EQ(archive.limits().nesting, 256U);
  EXPECT_EQ(archive.limits().objects, 1000000U) << "none of them was set";
  EXPECT_THROW(gxArchive::fromFile("/nowhere", limits), gxArchive::LimitExceeded);
}

TEST(ArchiveLimits, TakeAnyOtherValue) {
  for (const std::uint32_t nesting : {0U, 1U, gxArchive::kMostNesting}) {
    for (const std::uint64_t most : {std::uint64_t{0}, ~std::uint64_t{0}}) {
      gxArchive::Limits limits;
      limits.nesting = nesting;
      limits.bytes = most;
      limits.objects = static_cast<std::uint32_t>(most);
      gxArchive archive;
      archive.limits(limits);
      EXPECT_EQ(archive.limits().nesting, nesting);
      EXPECT_EQ(archive.limits().bytes, most);
      EXPECT_EQ(archive.limits().objects, static_cast<std::uint32_t>(most));
      const bool fits = nesting != 0 && most != 0;
      ProbeNode node;
      if (fits) {
        archive.store(node);
        gxArchive in(archive.bytes());
        in.limits(limits);
        in.load(node);
      } else {
        EXPECT_THROW(archive.store(node), gxArchive::LimitExceeded);
      }
    }
  }
}

TEST(ArchiveLimits, ALengthBeyondThemIsRefusedBeforeAStreamIsRead) {
  std::string text("\x89GXA\r\n\x1a\n\x01\0\0\0", 12);
  text += std::string(8, '\xff');
  std::istringstream stream(text + "the rest");
  gxArchive in(stream);
  ProbeNode node;
  EXPECT_THROW(in.load(node), gxArchive::LimitExceeded);
  EXPECT_EQ(static_cast<std::size_t>(stream.tellg()), text.size());
}

TEST(ArchiveClasses, ThatNobodyRegisteredAreRefused) {
  class Stranger : public gxPersistent {};
  gxArchive out;
  EXPECT_THROW(out.store(Stranger()), gxArchive::UnknownClass);
  RecordWriter w;
  w.object(1, 1, kProbeName);
  emptyRecord(w).object(2, 2, "No\nSuchClass");
  EXPECT_STREQ(
      errorOf<gxArchive::UnknownClass>(w.frame()).what(),
      "gxArchive::UnknownClass: the archive names an unknown class, \"No?SuchClass\" (at byte 114)");
}

TEST(ArchiveClasses, AreNumberedInOrder) {
  for (const std::uint64_t number : {0U, 2U, 3U, 0xffffffffU}) {
    RecordWriter w;
    w.u32(1).u32(number).u8(3).u8('a').u8('b').u8('c');
    EXPECT_NO_THROW(errorOf<gxArchive::BadFormat>(w.frame())) << number;
  }
}
