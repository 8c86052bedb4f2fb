// The archive record of an edge point, 19 bytes: position, magnitude, angle.  Lists go through a
// buffer of a few hundred records at a time: one call of the archive for each number of each point
// took four times as long to store.
#include <velip/edgelet.h>
#include <velstd/archive.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace {

constexpr std::size_t kRecord = gx_LeastEncodedSize<gxEdgelet>::value;
constexpr std::size_t kAtATime = 256;

template <class Unsigned>
void put(unsigned char* bytes, Unsigned value) {
  for (std::size_t i = 0; i < sizeof value; ++i) bytes[i] = static_cast<unsigned char>(value >> (8 * i));
}

template <class Unsigned>
Unsigned get(const unsigned char* bytes) {
  Unsigned value = 0;
  for (std::size_t i = 0; i < sizeof value; ++i) {
    value = static_cast<Unsigned>(value | static_cast<Unsigned>(Unsigned{bytes[i]} << (8 * i)));
  }
  return value;
}

void pack(const gxEdgelet& edgelet, unsigned char* bytes) {
  put(bytes, std::bit_cast<std::uint64_t>(edgelet.position().x()));
  put(bytes + 8, std::bit_cast<std::uint64_t>(edgelet.position().y()));
  put(bytes + 16, static_cast<std::uint16_t>(edgelet.magnitude()));
  bytes[18] = edgelet.angle().toByte();
}

gxEdgelet unpack(const unsigned char* bytes) {
  const gxVector<2> position(std::bit_cast<double>(get<std::uint64_t>(bytes)),
                             std::bit_cast<double>(get<std::uint64_t>(bytes + 8)));
  return {position, get<std::uint16_t>(bytes + 16), gxAngle8(bytes[18])};
}

}  // namespace

gxArchive& operator||(gxArchive& archive, gxEdgelet& edgelet) {
  std::array<unsigned char, kRecord> bytes{};
  if (archive.isStoring()) pack(edgelet, bytes.data());
  archive.transfer(bytes.data(), bytes.size());
  if (archive.isLoading()) edgelet = unpack(bytes.data());
  return archive;
}

gxArchive& operator||(gxArchive& archive, std::vector<gxEdgelet>& edgelets) {
  const std::size_t count = archive.sequence(edgelets.size(), kRecord);
  if (archive.isLoading()) edgelets.resize(count);
  std::array<unsigned char, kRecord * kAtATime> bytes{};
  for (std::size_t from = 0; from < count; from += kAtATime) {
    const std::size_t some = std::min(kAtATime, count - from);
    if (archive.isStoring()) {
      for (std::size_t i = 0; i < some; ++i) pack(edgelets[from + i], bytes.data() + kRecord * i);
    }
    archive.transfer(bytes.data(), kRecord * some);
    if (archive.isLoading()) {
      for (std::size_t i = 0; i < some; ++i) edgelets[from + i] = unpack(bytes.data() + kRecord * i);
    }
  }
  return archive;
}
