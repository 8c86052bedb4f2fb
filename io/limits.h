/// How much a reader takes from a file that it does not trust.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

/// Limits of one record; what is beyond them is refused with "too_long", "too_deep" or "too_many".
struct gxReadLimits {
  std::size_t recordBytes = std::size_t{64}
                            << 20;  ///< of text; of the whole file for .npz and archives ×16
  int nesting = 64;                 ///< of brackets and objects in JSON
  std::size_t rings = 1'000'000;
  std::size_t points = (std::numeric_limits<std::int32_t>::max)();
  std::size_t idBytes = 1024;
};
