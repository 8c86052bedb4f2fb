// Fields: numbers of fixed width, and sequences of them.  A number is put together byte by byte, which
// compilers turn into one instruction where the machine's order is the archive's.
#include <velstd/archive.h>
#include <velstd/internal/archive_number.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <utility>

namespace {

constexpr std::size_t kSum = 8;  // the checksum behind the frame counts for the limit
constexpr std::size_t kSlack = 1U << 12U;

}  // namespace

void gxArchive::store_(const unsigned char* data, std::size_t size) {
  if (pass_ == nullptr) noPass_();
  const std::uint64_t used = buffer_.size() - frame_ + kSum;
  if (used > limits_.bytes || limits_.bytes - used < size) frameTooLong_(limits_);
  makeRoom_(size);
  buffer_.insert(buffer_.end(), data, data + size);
}

void gxArchive::frameTooLong_(const Limits& limits) {
  throw LimitExceeded(L"the frame is longer than " + std::to_wstring(limits.bytes) + L" bytes");
}

void gxArchive::noPass_() {
  throw BadFormat(L"no pass is running");
}

/// Lets the buffer take `size` more bytes in its place.  What follows a long list of points is short:
/// without the slack it would move them all again.
void gxArchive::makeRoom_(std::size_t size) {
  const std::size_t needed = buffer_.size() + size;
  if (needed > buffer_.capacity()) buffer_.reserve(std::max(2 * buffer_.size(), needed + kSlack));
}

std::span<const unsigned char> gxArchive::takeBytes(std::size_t size) {
  if (pass_ == nullptr) noPass_();
  if (bytesLeft() < size) truncated_(size);
  cursor_ += size;
  return {cursor_ - size, size};
}

gxArchive& gxArchive::operator||(bool& value) {
  unsigned char byte = value ? 1 : 0;
  transfer(&byte, 1);
  if (byte > 1) throw BadFormat(L"a flag that is neither 0 nor 1");
  if (isLoading()) value = byte != 0;
  return *this;
}

gxArchive& gxArchive::operator||(long& value) {
  using Limit = std::numeric_limits<std::int32_t>;
  const char* const name = std::exchange(field_, nullptr);
  if (isStoring() && (value < Limit::min() || value > Limit::max())) tooLarge_(name);
  auto word = static_cast<std::uint32_t>(value);
  gf_TransferLittle(*this, word);
  if (isLoading()) value = static_cast<std::int32_t>(word);
  return *this;
}

gxArchive& gxArchive::operator||(unsigned long& value) {
  const char* const name = std::exchange(field_, nullptr);
  if (isStoring() && value > std::numeric_limits<std::uint32_t>::max()) tooLarge_(name);
  auto word = static_cast<std::uint32_t>(value);
  gf_TransferLittle(*this, word);
  if (isLoading()) value = word;
  return *this;
}

void gxArchive::tooLarge_(const char* name) const {
  throw LimitExceeded(gf_Printable(name == nullptr ? "a number" : name) + L" does not fit into 32 bits");
}

gxArchive& operator||(gxArchive& archive, unsigned short& value) {
  std::uint16_t bits = value;
  gf_TransferLittle(archive, bits);
  if (archive.isLoading()) value = bits;
  return archive;
}

gxArchive& operator||(gxArchive& archive, double& value) {
  auto bits = std::bit_cast<std::uint64_t>(value);
  gf_TransferLittle(archive, bits);
  if (archive.isLoading()) value = std::bit_cast<double>(bits);
  return archive;
}

gxArchive& operator||(gxArchive& archive, gxVector<2>& value) {
  double x = value.x();
  double y = value.y();
  archive || x || y;
  if (archive.isLoading()) value = gxVector<2>(x, y);
  return archive;
}

std::size_t gxArchive::sequence(std::size_t count, std::size_t leastSize) {
  unsigned char version = 0;
  *this || version;
  if (version != 0) throw UnknownVersion(nullptr, 0);
  unsigned long written = count;
  field("the number of elements") || written;
  if (isStoring() && count <= limits_.bytes / std::max<std::size_t>(leastSize, 1))
    makeRoom_(count * leastSize);
  if (isLoading() && written > bytesLeft() / std::max<std::size_t>(leastSize, 1)) {
    throw Truncated(L"a sequence of " + std::to_wstring(written) + L" elements in the last " +
                    std::to_wstring(bytesLeft()) + L" bytes");
  }
  return written;
}

namespace {

/// Reads points out of bytes that stand at any address.  A vector fills itself from a pair of these
/// without setting its points to zero first, which took a third of the time of loading them.
class PackedPoint {
 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = gxVector<2>;
  using difference_type = std::ptrdiff_t;
  using pointer = const gxVector<2>*;
  using reference = gxVector<2>;

  PackedPoint() = default;
  explicit PackedPoint(const unsigned char* bytes) : bytes_(bytes) {}

  gxVector<2> operator*() const {
    gxVector<2> point;
    std::memcpy(&point, bytes_, sizeof point);
    return point;
  }
  PackedPoint& operator++() {
    bytes_ += sizeof(gxVector<2>);
    return *this;
  }
  PackedPoint operator++(int) {
    const PackedPoint before = *this;
    ++*this;
    return before;
  }
  friend bool operator==(const PackedPoint&, const PackedPoint&) = default;

 private:
  const unsigned char* bytes_ = nullptr;
};

}  // namespace

// A point in memory is its record where the machine is little-endian: two doubles without a gap.
gxArchive& operator||(gxArchive& archive, std::vector<gxVector<2>>& points) {
  const std::size_t count = archive.sequence(points.size(), sizeof(gxVector<2>));
  if constexpr (std::endian::native != std::endian::little) {
    if (archive.isLoading()) points.resize(count);
    for (gxVector<2>& point : points) archive || point;
  } else if (archive.isLoading()) {
    const std::span<const unsigned char> bytes = archive.takeBytes(count * sizeof(gxVector<2>));
    points.assign(PackedPoint(bytes.data()), PackedPoint(bytes.data() + bytes.size()));
  } else {
    archive.transfer(reinterpret_cast<unsigned char*>(points.data()), count * sizeof(gxVector<2>));
  }
  return archive;
}
