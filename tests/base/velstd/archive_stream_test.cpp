// Archives on streams: in one piece, exactly one frame, and failing streams.
#include <archive/probe_node.h>
#include <archive/record_writer.h>
#include <gtest/gtest.h>
#include <velstd/archive.h>

#include <algorithm>
#include <new>
#include <sstream>
#include <streambuf>

using archive_test::ProbeNode;

namespace {

// Takes `room` bytes and then refuses, in the way that the test says.
class FullBuffer : public std::streambuf {
 public:
  FullBuffer(std::size_t room, bool throws) : room_(room), throws_(throws) {}
  std::string taken;

 protected:
  int_type overflow(int_type c) override {
    if (taken.size() == room_) {
      if (throws_) throw std::runtime_error("the disk is on fire");
      return traits_type::eof();
    }
    taken += traits_type::to_char_type(c);
    return c;
  }

 private:
  std::size_t room_;
  bool throws_;
};

// Cannot be flushed, or breaks when it is read.
class BrokenBuffer : public std::stringbuf {
 protected:
  int sync() override { return -1; }
  std::streamsize xsgetn(char*, std::streamsize) override { throw std::runtime_error("no"); }
};

// Runs out of memory, as a buffer that grows may.
class HungryBuffer : public std::streambuf {
 protected:
  int_type overflow(int_type) override { throw std::bad_alloc(); }
  int_type underflow() override { throw std::bad_alloc(); }
};

// Gives what it has, and knows the largest piece that it was asked for.
class AskedBuffer : public std::stringbuf {
 public:
  using std::stringbuf::stringbuf;
  std::streamsize most = 0;

 protected:
  std::streamsize xsgetn(char* to, std::streamsize size) override {
    most = std::max(most, size);
    return std::stringbuf::xsgetn(to, size);
  }
};

std::string frameOf(const ProbeNode& node) {
  std::ostringstream stream;
  gxArchive out(stream);
  out.store(node);
  return stream.str();
}

}  // namespace

TEST(ArchiveStream, HoldsTheSameBytesAsMemory) {
  ProbeNode node;
  node.points.resize(100);
  gxArchive memory;
  memory.store(node);
  memory.store(node);
  std::stringstream stream;
  gxArchive out(stream, gxArchive::Direction::eStoring);
  out.store(node);
  out.store(node);
  EXPECT_EQ(stream.str(), std::string(memory.bytes().begin(), memory.bytes().end()));
  EXPECT_TRUE(out.bytes().empty());
}

TEST(ArchiveStream, IsReadUpToTheEndOfTheFrame) {
  ProbeNode node;
  node.number = 5;
  node.points.resize(10000);
  std::stringstream stream;
  stream << "before";
  gxArchive out(stream, gxArchive::Direction::eStoring);
  out.store(node);
  stream << "between";
  out.store(node);

  std::string word(6, ' ');
  stream.read(word.data(), 6);
  gxArchive in(stream, gxArchive::Direction::eLoading);
  ProbeNode back;
  in.load(back);
  EXPECT_EQ(back.number, 5);
  EXPECT_EQ(back.points.size(), 10000U);
  word.resize(7);
  stream.read(word.data(), 7);
  EXPECT_EQ(word, "between");
  EXPECT_FALSE(in.atEnd());
  in.load(back);
  EXPECT_TRUE(in.atEnd());
  EXPECT_THROW(in.load(back), gxArchive::Truncated);
}

TEST(ArchiveStream, CountsBytesOverAllFrames) {
  ProbeNode node;
  const std::string frame = frameOf(node);
  std::string damaged = frame;
  damaged[20] = 9;  // the first object's number
  archive_test::Bytes bytes(damaged.begin(), damaged.end());
  archive_test::mendChecksum(bytes);
  std::istringstream stream(frame + std::string(bytes.begin(), bytes.end()));
  gxArchive in(stream);
  in.load(node);
  try {
    in.load(node);
    FAIL();
  } catch (const gxArchive::BadReference& error) {
    EXPECT_EQ(error.byteOffset(), frame.size() + 24);
  }
}

TEST(ArchiveStream, ThatEndsEarlyIsTruncated) {
  ProbeNode node;
  node.points.resize(20000);
  const std::string frame = frameOf(node);
  for (const std::size_t size : {std::size_t{0}, std::size_t{5}, std::size_t{19}, std::size_t{20},
                                 std::size_t{70000}, frame.size() - 1}) {
    std::istringstream stream(frame.substr(0, size));
    stream.exceptions(std::ios::failbit | std::ios::badbit | std::ios::eofbit);
    gxArchive in(stream);
    EXPECT_THROW(in.load(node), gxArchive::Truncated) << size;
  }
}

TEST(ArchiveStream, ThatFillsUpIsAnError) {
  ProbeNode node;
  const std::size_t size = frameOf(node).size();
  for (const bool throws : {false, true}) {
    for (std::size_t room = 0; room < size; room += 7) {
      FullBuffer buffer(room, throws);
      std::ostream stream(&buffer);
      gxArchive out(stream);
      EXPECT_THROW(out.store(node), gxArchive::FileError);
    }
    FullBuffer buffer(size, throws);
    std::ostream stream(&buffer);
    gxArchive out(stream);
    out.store(node);
    EXPECT_EQ(buffer.taken.size(), size);
  }
}

TEST(ArchiveStream, ThatCannotBeFlushedOrReadIsAnError) {
  ProbeNode node;
  BrokenBuffer buffer;
  std::iostream stream(&buffer);
  gxArchive out(stream, gxArchive::Direction::eStoring);
  EXPECT_THROW(out.store(node), gxArchive::FileError);
  gxArchive in(stream, gxArchive::Direction::eLoading);
  EXPECT_THROW(in.load(node), gxArchive::FileError);
  std::ostream nothing(nullptr);
  gxArchive toNothing(nothing);
  EXPECT_THROW(toNothing.store(node), gxArchive::FileError);
  std::istream empty(nullptr);
  gxArchive fromNothing(empty);
  EXPECT_TRUE(fromNothing.atEnd());
  EXPECT_THROW(fromNothing.load(node), gxArchive::FileError);
}

TEST(ArchiveStream, ThatRunsOutOfMemorySaysSo) {
  ProbeNode node;
  HungryBuffer buffer;
  std::iostream stream(&buffer);
  gxArchive out(stream, gxArchive::Direction::eStoring);
  EXPECT_THROW(out.store(node), std::bad_alloc);
  gxArchive in(stream, gxArchive::Direction::eLoading);
  EXPECT_THROW(in.load(node), std::bad_alloc);
}

TEST(ArchiveStream, IsAskedForNoMoreThanItsLengthSoFarSuggests) {
  std::string text("\x89GXA\r\n\x1a\n\x01\0\0\0\0\0\0\x70\0\0\0\0", 20);  // promises 1.8 GB
  for (const std::size_t behind : {std::size_t{1000}, std::size_t{1000000}}) {
    AskedBuffer buffer(text + std::string(behind, 'x'));
    std::istream stream(&buffer);
    gxArchive in(stream);
    ProbeNode node;
    EXPECT_THROW(in.load(node), gxArchive::Truncated);
    EXPECT_LE(buffer.most, static_cast<std::streamsize>(behind + 65536));
  }
}
