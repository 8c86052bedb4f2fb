// What stands in front of a payload, byte by byte.
#include <velstd/internal/archive_frame.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace {

using Header = std::array<unsigned char, gx_ArchiveFrame::kHeader>;

Header headerOf(std::uint64_t length) {
  Header header{};
  std::copy_n(gx_ArchiveFrame::kMagic, 8, header.begin());
  gf_PutLittle(header.data() + 8, gx_ArchiveFrame::kFormat);
  gf_PutLittle(header.data() + 12, length);
  return header;
}

}  // namespace

TEST(ArchiveFrameHeader, BeginsWithTheMagicOrWithAsMuchOfItAsThereIs) {
  Header header = headerOf(5);
  for (std::size_t size = 0; size <= header.size(); ++size) {
    EXPECT_TRUE(gx_ArchiveFrame::mayBegin({header.data(), size})) << size;
  }
  for (std::size_t at = 0; at < 8; ++at) {
    Header other = header;
    ++other[at];
    EXPECT_TRUE(gx_ArchiveFrame::mayBegin({other.data(), at})) << at;
    EXPECT_FALSE(gx_ArchiveFrame::mayBegin({other.data(), at + 1})) << at;
    EXPECT_FALSE(gx_ArchiveFrame::mayBegin(other)) << at;
  }
}

TEST(ArchiveFrameHeader, KnowsOneFormat) {
  Header header = headerOf(5);
  EXPECT_TRUE(gx_ArchiveFrame::hasKnownFormat(header.data()));
  for (std::size_t at = 8; at < 12; ++at) {
    Header other = header;
    ++other[at];
    EXPECT_FALSE(gx_ArchiveFrame::hasKnownFormat(other.data())) << at;
  }
}

TEST(ArchiveFrameHeader, SaysHowLongTheFrameIsUpToALimit) {
  EXPECT_EQ(gx_ArchiveFrame::size(headerOf(0).data(), 28), 28U);
  EXPECT_EQ(gx_ArchiveFrame::size(headerOf(0).data(), 27), 0U);
  EXPECT_EQ(gx_ArchiveFrame::size(headerOf(100).data(), 128), 128U);
  EXPECT_EQ(gx_ArchiveFrame::size(headerOf(100).data(), 127), 0U);
  EXPECT_EQ(gx_ArchiveFrame::size(headerOf(100).data(), 5), 0U);
  const std::uint64_t most = ~std::uint64_t{0};
  EXPECT_EQ(gx_ArchiveFrame::size(headerOf(most).data(), most), 0U);
  EXPECT_EQ(gx_ArchiveFrame::size(headerOf(most - 27).data(), most), 0U);
  EXPECT_EQ(gx_ArchiveFrame::size(headerOf(most - 28).data(), most), most);
}
