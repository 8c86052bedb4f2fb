/// Four numbers side by side, for loops over many points.  All libraries here use these lanes; nothing of them is
/// compiled into one.
#pragma once

#include <velstd/vector.h>

#include <cmath>
#include <cstddef>
#include <cstring>

#if defined(__SSE2__)
#  include <emmintrin.h>
#endif

/// Four doubles that are computed with together.  Each component has the bits that it would have
/// alone, whatever registers the machine has: compilers make two of them where four do not fit into one.
using gx_Four = double __attribute__((vector_size(32)));
using gx_Two = double __attribute__((vector_size(16)));  ///< and two

/// Marks code for one number or four that is compiled for the machine of its caller.  Fours are handed
/// on by reference: by value, they would be handed on in different ways on different machines.
#define GX_FOURFOLD __attribute__((always_inline)) inline

/// Puts the square roots of the components in their place.
GX_FOURFOLD void gf_TakeRoot(gx_Four& v) {
#if defined(__SSE2__)
  const __m128d low = _mm_sqrt_pd(_mm_setr_pd(v[0], v[1]));
  const __m128d high = _mm_sqrt_pd(_mm_setr_pd(v[2], v[3]));
  v = gx_Four{low[0], low[1], high[0], high[1]};
#else
  v = gx_Four{std::sqrt(v[0]), std::sqrt(v[1]), std::sqrt(v[2]), std::sqrt(v[3])};
#endif
}
GX_FOURFOLD void gf_TakeRoot(double& v) {
  v = std::sqrt(v);
}

/// Tells whether a comparison is true of all components.
template <class Truth>
GX_FOURFOLD bool gf_AllTrue(const Truth& truth) {
  return (truth[0] & truth[1] & truth[2] & truth[3]) != 0;
}
GX_FOURFOLD bool gf_AllTrue(bool truth) {
  return truth;
}

/// Adds up the components, always in the same order.
GX_FOURFOLD double gf_Total(const gx_Four& v) {
  return (v[0] + v[2]) + (v[1] + v[3]);
}

/// Loads the points p[0], p[2], p[1], p[3] in this order, which saves moving them.
GX_FOURFOLD void gf_LoadFour(const gxVector<2>* p, gx_Four& x, gx_Four& y) {
  gx_Four first;
  gx_Four second;
  std::memcpy(&first, p, sizeof first);
  std::memcpy(&second, p + 2, sizeof second);
  x = __builtin_shufflevector(first, second, 0, 4, 2, 6);
  y = __builtin_shufflevector(first, second, 1, 5, 3, 7);
}
