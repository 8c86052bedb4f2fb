/// Writes archives byte by byte, as docs/archive.md describes them, without the library: what tests
/// need to write old versions, broken records and every kind of lie.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace archive_test {

using Bytes = std::vector<unsigned char>;

/// The checksum of docs/archive.md, written from there.
inline std::uint64_t checksumOf(const Bytes& bytes, std::size_t size) {
  constexpr std::uint64_t kFactor = 0xd6e8feb86659fd93U;
  std::uint64_t lanes[4] = {0x243f6a8885a308d3U, 0x13198a2e03707344U, 0xa4093822299f31d0U,
                            0x082efa98ec4e6c89U};
  const std::size_t padded = (size + 31) / 32 * 32;
  for (std::size_t at = 0; at < padded; at += 8) {
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < 8; ++i) {
      if (at + i < size) word |= std::uint64_t{bytes[at + i]} << (8 * i);
    }
    std::uint64_t& lane = lanes[at / 8 % 4];
    lane = std::rotl((lane ^ word) * kFactor, 29);
  }
  std::uint64_t sum = size;
  for (const std::uint64_t lane : lanes) sum = std::rotl((sum ^ lane) * kFactor, 29);
  sum ^= sum >> 32U;
  sum *= kFactor;
  return sum ^ (sum >> 29U);
}

/// Builds the payload of a frame, value by value.
class RecordWriter {
 public:
  RecordWriter& u8(unsigned value) { return little(value, 1); }
  RecordWriter& u16(unsigned value) { return little(value, 2); }
  RecordWriter& u32(std::uint64_t value) { return little(value, 4); }
  RecordWriter& i32(std::int64_t value) { return little(static_cast<std::uint64_t>(value), 4); }
  RecordWriter& u64(std::uint64_t value) { return little(value, 8); }
  RecordWriter& f64(double value) { return u64(std::bit_cast<std::uint64_t>(value)); }
  RecordWriter& point(double x, double y) { return f64(x).f64(y); }
  RecordWriter& raw(const Bytes& bytes) {
    payload_.insert(payload_.end(), bytes.begin(), bytes.end());
    return *this;
  }

  RecordWriter& null() { return u32(0); }
  /// Refers to an object that came earlier.
  RecordWriter& reference(std::uint64_t number) { return u32(number); }
  /// Begins a new object of a class that is named here for the first time.
  RecordWriter& object(std::uint64_t number, std::uint64_t classNumber, const std::string& className) {
    u32(number).u32(classNumber).u8(static_cast<unsigned>(className.size()));
    payload_.insert(payload_.end(), className.begin(), className.end());
    return *this;
  }
  /// Begins a new object of a class that was named before.
  RecordWriter& object(std::uint64_t number, std::uint64_t classNumber) {
    return u32(number).u32(classNumber);
  }
  /// Begins a sequence.
  RecordWriter& sequence(std::uint64_t count) { return u8(0).u32(count); }

  const Bytes& payload() const { return payload_; }

  /// Returns the whole frame.
  Bytes frame() const {
    RecordWriter whole;
    whole.raw({0x89, 'G', 'X', 'A', 0x0d, 0x0a, 0x1a, 0x0a}).u32(1).u64(payload_.size()).raw(payload_);
    whole.u64(checksumOf(whole.payload_, whole.payload_.size()));
    return whole.payload_;
  }

 private:
  RecordWriter& little(std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) payload_.push_back(static_cast<unsigned char>(value >> (8 * i)));
    return *this;
  }

  Bytes payload_;
};

/// Puts the checksum of a frame right again after its bytes were changed.
inline void mendChecksum(Bytes& frame) {
  if (frame.size() < 8) return;
  const std::size_t covered = frame.size() - 8;
  const std::uint64_t sum = checksumOf(frame, covered);
  for (std::size_t i = 0; i < 8; ++i) frame[covered + i] = static_cast<unsigned char>(sum >> (8 * i));
}

}  // namespace archive_test
