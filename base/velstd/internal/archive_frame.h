/// The frame of an archive: what stands in front of its payload and behind it.
#pragma once

#include <velstd/internal/archive_number.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

/// Looks at the bytes in front of a payload: the magic, the format's number, the payload's length.
struct gx_ArchiveFrame {
  static constexpr unsigned char kMagic[8] = {0x89, 'G', 'X', 'A', 0x0d, 0x0a, 0x1a, 0x0a};
  static constexpr std::uint32_t kFormat = 1;
  static constexpr std::size_t kHeader = 20;
  static constexpr std::size_t kSum = 8;

  /// Tells whether a frame may begin so: as many bytes of the magic as there are.
  static bool mayBegin(std::span<const unsigned char> bytes) {
    const std::size_t size = std::min(bytes.size(), sizeof kMagic);
    return std::equal(kMagic, kMagic + size, bytes.data());
  }
  /// Tells whether the format in a complete header is the one that is read here.
  static bool hasKnownFormat(const unsigned char* header) {
    return gf_GetLittle<std::uint32_t>(header + 8) == kFormat;
  }
  /// Returns the size of the whole frame with this header, 0 where it is more than `most`.
  static std::uint64_t size(const unsigned char* header, std::uint64_t most) {
    const std::uint64_t length = gf_GetLittle<std::uint64_t>(header + 12);
    if (length > most || most - length < kHeader + kSum) return 0;
    return kHeader + length + kSum;
  }
};
