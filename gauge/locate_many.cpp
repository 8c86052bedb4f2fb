// Many points against many outlines, each by one look at every edge: of few points, an index costs more.
#include <cntr/contourdefs.h>
#include <gauge/internal/frame.h>
#include <gauge/measure_many.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

using Points = std::span<const gxVector<2>>;

bool isFinite(const gxVector<2>& p) {
  return std::isfinite(p.x()) && std::isfinite(p.y());
}

// Even-odd, exactly: an edge holds its lower end's level but not its upper end's.
gxState stateOf(Points points, const gxVector<2>& p) {
  bool odd = false;
  const gxVector<2>* a = &points.back();
  for (const gxVector<2>& b : points) {
    const bool aboveA = a->y() > p.y();
    const bool aboveB = b.y() > p.y();
    if (aboveA != aboveB) {
      const int side = gx_Orientation(*a, b, p);
      if (side == 0) return gxState::eBorder;
      odd ^= (side > 0) == aboveB;
    } else if (b.y() == p.y()) {
      const bool holds = std::min(a->x(), b.x()) <= p.x() && p.x() <= std::max(a->x(), b.x());
      if (b.x() == p.x() || (a->y() == p.y() && holds)) return gxState::eBorder;
    }
    a = &b;
  }
  return odd ? gxState::eInside : gxState::eOutside;
}

void locateList(Points outline, Points queries, std::span<gxState> states) {
  const bool answers = !outline.empty() && gx_allFinite(outline);
  for (std::size_t j = 0; j < queries.size(); ++j) {
    states[j] = answers && isFinite(queries[j]) ? stateOf(outline, queries[j]) : gxState::eOutside;
  }
}

}  // namespace

std::vector<gxState> gfLocateMany(const gxOutlines& outlines, const gxOutlines& queries) {
  std::vector<gxState> states(queries.points().size(), gxState::eOutside);
  gfLocateMany(outlines, queries, 0, outlines.size(), states);
  return states;
}

void gfLocateMany(const gxOutlines& outlines, const gxOutlines& queries, std::size_t first,
                  std::size_t last, std::span<gxState> states) {
  if (states.size() < queries.points().size()) {
    throw gxContourDefs::BadParams(L"fewer states than points to locate");
  }
  last = std::min({last, outlines.size(), queries.size()});
  for (std::size_t k = first; k < last; ++k) {
    const Points asked = queries[k];
    if (!asked.empty()) locateList(outlines[k], asked, states.subspan(queries.offset(k), asked.size()));
  }
}
