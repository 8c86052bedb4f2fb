// A program outside the library's own build. It uses something of each library, catches the
// library's exceptions across the border of the shared libraries, and looks at one of their types
// at run time: what goes wrong first when symbols or type information are not exported.

#include <gxshape/gxshape.h>

#include <cstdio>
#include <vector>

int main() {
  const std::vector<gxVector<2>> corners = {{0, 0}, {4, 0}, {4, 3}, {0, 3}};
  const gxContour rectangle(corners, true, 7);
  std::printf("length %.1f, label %ld\n", rectangle.length(), static_cast<long>(rectangle.label()));

  const gxEdgelet edgelet(gxVector<2>(1, 2), 30, gxAngle8(64));
  std::printf("edgelet at (%.1f, %.1f)\n", edgelet.position().x(), edgelet.position().y());

  // Loading knows classes by their numbers: whoever leaves a class out of a static program finds it here.
  gxArchive stored;
  stored.store(gxRegionSet({gfMakeHandle<gxRegion>(corners)}));
  gxArchive archive(stored.bytes());
  gxRegionSet loaded;
  archive.load(loaded);
  std::printf("loaded %zu region of area %.1f\n", loaded.regions().size(), loaded.area(true));

  const gxContour empty;
  try {
    static_cast<void>(empty.closestPoint(gxVector<2>(0, 0), false));
  } catch (const gxException& error) {
    std::printf("refused: %s\n", error.what());
    return 0;
  }
  std::printf("an empty contour has no closest point, and said nothing\n");
  return 1;
}
