// One generator per thread, kept in the base library's thread-local storage and freed by the
// functions that it runs at thread exit.
#include <cntr/internal/memo/eviction.h>
#include <velstd/random.h>
#include <velstd/real_eq.h>
#include <velstd/thread_local.h>

#include <memory>

namespace {

constexpr long kSeed = 1;

gx_ThreadLocal& slot() {
  // Never destroyed: a thread may still be drawing while the process ends.
  static gx_ThreadLocal* const threadLocal = new gx_ThreadLocal;
  return *threadLocal;
}

gxRandomUniform& generator() {
  gx_ThreadLocal& place = slot();
  if (place.OSValue() == nullptr) {
    auto made = std::make_unique<gxRandomUniform>(kSeed);
    gxThreadID::atexit([&place] {
      delete static_cast<gxRandomUniform*>(place.OSValue());
      place.OSValue(nullptr);
    });
    place.OSValue(made.get());
    static_cast<void>(made.release());
  }
  return *static_cast<gxRandomUniform*>(place.OSValue());
}

}  // namespace

void gx_prepareDraw() {
  generator();
}

long gx_drawEvicted(long size) {
  return gfIFloor(generator().next(0.0, static_cast<double>(size)));
}
