// From rings to a graph.
//
//  1. Noding in rounds; nearly always that is all.
//  2. Where it does not settle, the rings that still meet are put on a grid together with what is near them,
//     and noding begins anew.  Now it only finds nodes that lie exactly on links of the grid; should rings
//     outside the group not settle either, their turn comes in the next pass, and in the last one everything
//     goes on one grid.
#include <cntr/contourdefs.h>
#include <overlay/internal/arrangement.h>
#include <overlay/internal/snap.h>

#include <algorithm>
#include <utility>

namespace {

constexpr int kMostPasses = 4;

}  // namespace

gx_Arrangement::~gx_Arrangement() = default;

gx_Arrangement::gx_Arrangement(const gx_RingList& rings, gx_Steps& steps) : rings_(rings) {
  std::vector<gx_SnappedRing> snapped;
  std::vector<unsigned char> isSnapped;  // of every ring; empty while none is
  for (int pass = 0;; ++pass) {
    edges_ = std::make_unique<gx_EdgeSet>();
    for (std::size_t r = 0; r < rings.size(); ++r) {
      if (!isSnapped.empty() && isSnapped[r] != 0) {
        edges_->add(snapped[r].points.data(), snapped[r].points.size(), rings.isClosed(r),
                    snapped[r].sources.data());
      } else {
        edges_->add(rings.points(r).data(), rings.points(r).size(), rings.isClosed(r));
      }
    }
    edges_->finish();
    noding_ = std::make_unique<gx_Noding>(*edges_, steps);
    if (noding_->run()) break;
    if (pass == kMostPasses)
      throw gxContourDefs::BadParams(L"internal error: rings on a grid do not settle");
    snapped.resize(rings.size());
    isSnapped.resize(rings.size(), 0);
    for (gx_SnappedRing& moved :
         gx_snapRings(*edges_, noding_->unsettled(), pass + 1 == kMostPasses, steps)) {
      const std::uint32_t ring = moved.ring;
      isSnapped[ring] = 1;
      snapped[ring] = std::move(moved);
    }
  }
  for (std::size_t r = 0; r < isSnapped.size(); ++r) {
    if (isSnapped[r] == 0) continue;
    ++snappedRings_;
    for (std::size_t i = 0; i < snapped[r].points.size(); ++i) {
      const std::uint32_t source = snapped[r].sources[i];
      if (source % 2 != 0) continue;
      const double move = snapped[r].points[i].distance(rings.points(r)[source / 2]);
      largestMove_ = std::max(largestMove_, move);
    }
  }
  graph_ = std::make_unique<gx_Graph>(*noding_);
}

gx_FaceLabels gx_Arrangement::label(std::size_t operands, gx_Membership::Question question) const {
  gx_Membership membership(rings_.roles, operands, question);
  return gx_labelFaces(*graph_, membership);
}
