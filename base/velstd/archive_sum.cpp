// The checksum: four lanes of 64 bits, so that four multiplications run side by side and the memory
// is what limits the speed.
//
//   1. The bytes are cut into blocks of 32, the last one filled up with zeros; a block is four
//      little-endian words, one for each lane.
//   2. Each word enters its lane by   lane = rotl((lane ^ word) * kFactor, 29).   Exclusive or,
//      multiplication by an odd number and rotation each lose nothing, so a different word gives a
//      different lane for certain, also after any number of equal words that follow.
//   3. The sum starts as the number of bytes and takes in the four lanes by the same step.
//   4. A last  sum ^= sum >> 32,  sum *= kFactor,  sum ^= sum >> 29  spreads the bits.
//
// A CRC was the other choice.  It proves more about bursts of errors, which storage no longer makes, and
// needs either a look-up for each byte or instructions that not every machine has.
#include <velstd/internal/archive_sum.h>

#include <bit>
#include <cstring>
#include <initializer_list>

namespace {

constexpr std::uint64_t kFactor = 0xd6e8feb86659fd93U;
constexpr std::uint64_t kLanes[4] = {0x243f6a8885a308d3U, 0x13198a2e03707344U, 0xa4093822299f31d0U,
                                     0x082efa98ec4e6c89U};  // the digits of pi

std::uint64_t step(std::uint64_t lane, std::uint64_t word) noexcept {
  return std::rotl((lane ^ word) * kFactor, 29);
}

std::uint64_t wordAt(const unsigned char* bytes) noexcept {
  if constexpr (std::endian::native == std::endian::little) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
  }
  std::uint64_t word = 0;
  for (unsigned i = 0; i < 8; ++i) word |= std::uint64_t{bytes[i]} << (8 * i);
  return word;
}

}  // namespace

std::uint64_t gf_ArchiveSum(const unsigned char* bytes, std::size_t size) noexcept {
  std::uint64_t a = kLanes[0];
  std::uint64_t b = kLanes[1];
  std::uint64_t c = kLanes[2];
  std::uint64_t d = kLanes[3];
  const auto takeBlock = [&](const unsigned char* block) {
    a = step(a, wordAt(block));
    b = step(b, wordAt(block + 8));
    c = step(c, wordAt(block + 16));
    d = step(d, wordAt(block + 24));
  };
  std::size_t left = size;
  for (; left >= 32; left -= 32, bytes += 32) takeBlock(bytes);
  if (left != 0) {
    unsigned char last[32] = {};
    std::memcpy(last, bytes, left);
    takeBlock(last);
  }
  std::uint64_t sum = size;
  for (const std::uint64_t lane : {a, b, c, d}) sum = step(sum, lane);
  sum ^= sum >> 32U;
  sum *= kFactor;
  return sum ^ (sum >> 29U);
}
