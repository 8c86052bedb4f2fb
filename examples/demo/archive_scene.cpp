// Scene 5: what was measured is kept.
//
//  1. The coin set is stored in one frame of an archive, which goes to a file.
//  2. The contours of edge points are stored one after the other, each in a frame of its own.
//  3. Both files are read back and compared with what was stored.  Two contours of edge points are equal
//     (==) only where they hold the very same transform object, so here edge points, points and the
//     numbers of the transform are compared.

#include "scenes.h"
#include "shapes.h"

#include <velstd/archive.h>
#include <velstd/xform_base.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using EdgeContour = gxContourT<gxEdgelet>;

void check(bool equal, const char* what) {
  if (!equal) throw std::runtime_error(std::string(what) + " came back different");
}

gxXform<2> transformOf(const EdgeContour& contour) {
  const auto* const linear = dynamic_cast<const gx2XformLinear*>(contour.dataFromPointsXform().get());
  if (linear == nullptr) throw std::runtime_error("the transform is not a linear one");
  return linear->xform();
}

bool isSame(const EdgeContour& a, const EdgeContour& b) {
  return a.data() == b.data() && a.points() == b.points() && a.label() == b.label() &&
         a.isClosed() == b.isClosed() && transformOf(a) == transformOf(b);
}

void keepCoinSet(const gxRegionSet& coins, const std::filesystem::path& path) {
  gxArchive archive;
  archive.store(coins);
  archive.writeFile(path);

  gxArchive file = gxArchive::fromFile(path);
  gxRegionSet loaded;
  file.load(loaded);
  check(loaded == coins && loaded.area(true) == coins.area(true), "the coin set");
  std::printf("coin set: %zu regions in %zu bytes, %s; loaded, equal\n", loaded.regions().size(),
              archive.bytes().size(), path.c_str());
}

void keepEdgeContours(const std::vector<EdgeContour>& contours, const std::filesystem::path& path) {
  gxArchive archive;
  for (const EdgeContour& contour : contours) archive.store(contour);
  archive.writeFile(path);

  gxArchive file = gxArchive::fromFile(path);
  std::size_t edgePoints = 0;
  for (const EdgeContour& contour : contours) {
    EdgeContour loaded;
    file.load(loaded);
    check(isSame(loaded, contour), "a contour of edge points");
    edgePoints += loaded.data().size();
  }
  check(file.atEnd(), "the end of the archive");
  std::printf("edge contours: %zu contours with %zu edge points in %zu bytes, %s; loaded, equal\n",
              contours.size(), edgePoints, archive.bytes().size(), path.c_str());
}

}  // namespace

void showArchives(const std::filesystem::path& data, const std::filesystem::path& out) {
  std::printf("\n== 5. Archives\n\n");
  keepCoinSet(makeCoinSet(data), out / "coins.gxa");
  const std::vector<gxRegionT<gxEdgelet>> regions = readEdgeRegions(data);
  keepEdgeContours(std::vector<EdgeContour>(regions.begin(), regions.end()), out / "edges.gxa");
}
