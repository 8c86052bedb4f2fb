// Counting on the way.
//
// A step changes one winding number; where that changes what the ring encloses, the change goes up: to the
// region whose hole it is, and so on to the operand.  One sum of windings for all rings would do for
// disjoint, well-wound operands only: +1 and −1 of two tangled ones cancel.
#include <overlay/internal/membership.h>

gx_Membership::gx_Membership(const std::vector<gx_RingRole>& roles, std::size_t operands,
                             Question question)
    : rings_(roles.size()), regions_(operands, 0), question_(question) {
  for (std::size_t i = 0; i < roles.size(); ++i) {
    rings_[i].parent = roles[i].parent;
    rings_[i].operand = roles[i].operand;
    rings_[i].rule = roles[i].rule;
    rings_[i].counted =
        roles[i].together != gx_EdgeSet::kNone ? roles[i].together : static_cast<std::uint32_t>(i);
  }
}

void gx_Membership::step(std::uint32_t number, int by) {
  number = rings_[number].counted;
  Ring& ring = rings_[number];
  ring.around += by;
  bool encloses = false;
  switch (ring.rule) {
    case gx_RingRule::eEvenOdd: encloses = ring.around % 2 != 0; break;
    case gx_RingRule::eNonZero: encloses = ring.around != 0; break;
    case gx_RingRule::ePositive: encloses = ring.around > 0; break;
    case gx_RingRule::eNothing: break;
  }
  if (encloses == ring.encloses) return;
  ring.encloses = encloses;
  if (ring.holdingHoles == 0) changed_(number, encloses);
}

// The ring holds the place now, with its holes taken out, or no longer.
void gx_Membership::changed_(std::uint32_t number, bool holds) {
  for (;;) {
    const Ring& ring = rings_[number];
    if (ring.parent == gx_EdgeSet::kNone) {
      std::uint32_t& regions = regions_[ring.operand];
      if (holds ? regions++ == 0 : --regions == 0) holds ? ++holding_ : --holding_;
      return;
    }
    number = ring.parent;
    Ring& parent = rings_[number];
    if (holds ? parent.holdingHoles++ != 0 : --parent.holdingHoles != 0) return;
    if (!parent.encloses) return;
    holds = !holds;
  }
}

unsigned char gx_Membership::label() const {
  switch (question_) {
    case eUnion: return holding_ != 0 ? 1 : 0;
    case eIntersection: return holding_ == regions_.size() && holding_ != 0 ? 1 : 0;
    case eDifference: return holding_ == 1 && regions_[0] != 0 ? 1 : 0;
    case eSymmetric: return holding_ % 2 != 0 ? 1 : 0;
    case eFirstTwo: break;
  }
  const int first = !regions_.empty() && regions_[0] != 0 ? 1 : 0;
  const int second = regions_.size() > 1 && regions_[1] != 0 ? 2 : 0;
  return static_cast<unsigned char>(first + second);
}
