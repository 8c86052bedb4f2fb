/// The checksum at the end of an archive's frame.
#pragma once

#include <cstddef>
#include <cstdint>

/// Returns the 64-bit checksum of the bytes.  An error confined to one aligned word of 8 bytes, and
/// so every single flipped bit, always changes it; any other error goes unseen once in 2^64.
std::uint64_t gf_ArchiveSum(const unsigned char* bytes, std::size_t size) noexcept;
