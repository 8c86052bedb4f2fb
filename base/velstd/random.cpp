// Uniform numbers.  low + u (high − low) may round up to high; the largest double below high is
// returned then, so that the range stays half open.
#include <velstd/random.h>

#include <cmath>

gxRandomUniform::gxRandomUniform(long seed) : state_(static_cast<std::uint64_t>(seed)) {}

double gxRandomUniform::next(double low, double high) {
  state_ += 0x9e3779b97f4a7c15ULL;
  std::uint64_t z = state_;
  z = (z ^ (z >> 30U)) * 0xbf58476d1ce4e5b9ULL;
  z = (z ^ (z >> 27U)) * 0x94d049bb133111ebULL;
  z ^= z >> 31U;
  const double u = static_cast<double>(z >> 11U) * 0x1p-53;
  if (!(low < high)) return low;
  const double span = high - low;
  const double drawn = std::isfinite(span) ? low + u * span : low * (1.0 - u) + high * u;
  return drawn < high ? drawn : std::nextafter(high, low);
}
