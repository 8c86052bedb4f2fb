// Distances of many points from a chord, four points side by side, each with the bits that it has alone.
#include <gauge/internal/chord.h>

#include <algorithm>
#include <cstring>

namespace {

GX_FOURFOLD double measureAll(const gx_Chord& chord, std::span<const gxVector<2>> points,
                              double* measures) {
  constexpr std::size_t kLanes = 4;
  std::size_t i = 0;
  gx_Four largest = gx_Four{} - 1.0;
  for (; i + kLanes <= points.size(); i += kLanes) {
    gx_Four x;
    gx_Four y;
    gx_Four here;
    gf_LoadFour(&points[i], x, y);
    chord.measureEach(x, y, here);
    largest = here > largest ? here : largest;
    here = __builtin_shufflevector(here, here, 0, 2, 1, 3);
    std::memcpy(measures + i, &here, sizeof here);
  }
  double most = std::max(std::max(largest[0], largest[1]), std::max(largest[2], largest[3]));
  for (; i < points.size(); ++i) {
    measures[i] = chord.measure(points[i]);
    most = std::max(most, measures[i]);
  }
  return most;
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) double byRegistersOfFour(const gx_Chord& chord,
                                                         std::span<const gxVector<2>> points,
                                                         double* measures) {
  return measureAll(chord, points, measures);
}
#endif

double asBuilt(const gx_Chord& chord, std::span<const gxVector<2>> points, double* measures) {
  return measureAll(chord, points, measures);
}

}  // namespace

double gx_Chord::measureAll(std::span<const gxVector<2>> points, double* measures) const {
#if defined(__x86_64__)
  static const bool wide = __builtin_cpu_supports("avx2");
  if (wide) return byRegistersOfFour(*this, points, measures);
#endif
  return asBuilt(*this, points, measures);
}
