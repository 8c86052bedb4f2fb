// A region set stored, loaded, and refused where a byte is wrong.

#include <cntr/regionst.h>
#include <velstd/archive.h>

#include <cstdio>

int main() {
  const gxPtrHandle_const<gxRegion> square(new gxRegion({{0, 0}, {2, 0}, {2, 2}, {0, 2}}));
  const gxPtrHandle_const<gxRegion> triangle(new gxRegion({{5, 0}, {9, 0}, {5, 3}}));
  const gxRegionSet parts({square, triangle});

  gxArchive out;
  out.store(parts);
  std::printf("%zu regions in %zu bytes\n", parts.regions().size(), out.bytes().size());

  gxArchive in(out.bytes());
  gxRegionSet loaded;
  in.load(loaded);
  std::printf("%s, area %g\n", loaded == parts ? "equal" : "different", loaded.area(true));

  std::vector<unsigned char> damaged(out.bytes().begin(), out.bytes().end());
  damaged[60] ^= 1U;
  try {
    gxArchive broken(damaged);
    broken.load(loaded);
  } catch (const gxArchive::Errors& error) {
    std::printf("refused: %s\n", error.what());
  }
}
