/// The sets of the judges as rings of an arrangement, and its regions as a set again.
#pragma once

#include <overlay/internal/arrangement.h>
#include <support/overlay_judge.h>

#include <vector>

namespace judge {

inline void addRegion(gx_RingList& list, const slow::Region& region, gx_RingRole role) {
  const std::uint32_t ring = list.add(region.outline, role);
  role.parent = ring;
  // The direction of a hole says nothing.
  if (role.rule == gx_RingRule::ePositive) role.rule = gx_RingRule::eNonZero;
  for (const slow::Region& hole : region.holes) addRegion(list, hole, role);
}

inline gx_RingList ringList(const std::vector<slow::Set>& operands, gx_RingRule rule) {
  gx_RingList list;
  for (std::size_t i = 0; i < operands.size(); ++i) {
    for (const slow::Region& region : operands[i]) {
      addRegion(list, region, {static_cast<std::uint32_t>(i), gx_EdgeSet::kNone, rule});
    }
  }
  return list;
}

inline slow::Set setOf(const std::vector<gx_ResultRegion>& regions) {
  slow::Set set;
  for (const gx_ResultRegion& region : regions) {
    set.push_back({region.outline.points, {}});
    for (const gx_ResultRing& hole : region.holes) set.back().holes.push_back({hole.points, {}});
  }
  return set;
}

/// What an arrangement of operands gives, and how it came about.
struct Overlaid {
  slow::Set set;
  std::uint32_t rounds = 0;
  std::size_t snapped = 0;
  double move = 0.0;
};

inline Overlaid overlaid(const std::vector<slow::Set>& operands, gx_RingRule rule,
                         gx_Membership::Question question) {
  const gxOverlayLimits limits;
  gx_Steps steps(limits);
  const gx_RingList list = ringList(operands, rule);
  const gx_Arrangement arrangement(list, steps);
  const gx_FaceLabels labels = arrangement.label(operands.size(), question);
  return {setOf(arrangement.regions(labels, gx_Keep())), arrangement.rounds(),
          arrangement.snappedRings(), arrangement.largestMove()};
}

}  // namespace judge
