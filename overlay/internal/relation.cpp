// How two shapes lie to each other.  Nothing is constructed, so the answer is that of the input's bits.
//
//  1. The edges of both stand in one list.  One search gives the pairs that meet: pairs of one shape tell
//     that it cannot be taken as it is, pairs of both tell how they meet.
//  2. Where edges of A and B cross within both, the four ways around the crossing are in both, in A alone, in
//     B alone and in neither: everything is known.
//  3. Without such a crossing the shapes meet in input vertices only.  Around each, the directions of the
//     edges of both are sorted; each edge has solid on one side.  A direction of A that is none of B's
//     lies in a gap between two of them, inside or outside of B, and tells the same of the whole piece
//     of A's border up to the next meeting; one that is also one of B's is common border, with the solids
//     on the same side or not.
//  4. A ring that meets none of the other shape lies inside or outside it as one of its points does: by
//     counting the edges that a ray to the left crosses.
//  5. A piece of A's border inside B has area of both on the one side and of B alone on the other; outside B,
//     area of A alone.  Every face of the drawing of both has such a piece around it, so nothing is missed.
#include <overlay/internal/relation.h>

#include <overlay/internal/edge_set.h>
#include <overlay/internal/predicates.h>

#include <algorithm>
#include <limits>
#include <string>

namespace {

using V = gxVector<2>;

// Edges of both shapes that meet at a point.
struct Contact {
  V point;
  std::uint32_t edge[2];  // of A, of B
};

// A way out of a point along an edge; `solidLeft` tells of the side that comes next counter-clockwise.
struct Ray {
  V to;
  int shape;
  bool solidLeft;
};

// The half turn that a direction lies in, beginning with the one upwards of the ray to the right.
int half(const V& v, const V& p) {
  return p.y() > v.y() || (p.y() == v.y() && p.x() > v.x()) ? 0 : 1;
}

// Orders directions from v counter-clockwise.
int compareAround(const V& v, const V& p, const V& q) {
  const int a = half(v, p);
  const int b = half(v, q);
  return a != b ? a - b : -gx_Orientation(v, p, q);
}

class Relate {
 public:
  Relate(const gx_RelationShape& a, const gx_RelationShape& b, const gxOverlayLimits& limits)
      : shapes_{&a, &b}, limits_(limits) {}

  gx_Relation run() {
    for (int s = 0; s < 2; ++s) addRings_(s);
    edges_.finish();
    for (std::size_t r = 0; r < ring_.size(); ++r) measure_(static_cast<std::uint32_t>(r));
    findMeetings_();
    for (int s = 0; s < 2; ++s) {
      if (!shapes_[s]->trusted && !unclean(s)) result_.unclean[s] = hasFolds_(s) || nestsWrongly_(s);
    }
    if (unclean(0) || unclean(1)) return result_;
    if (crossed_) {
      result_ = {true, true, true, true, {false, false}};
      return result_;
    }
    aroundContacts_();
    withoutContacts_();
    return result_;
  }

 private:
  struct RingState {
    int shape = 0;
    std::size_t number = 0;  // in its shape
    bool solidLeft = true;
    bool meets = false;
    std::uint32_t first = 0;  // its first point by x, then y
  };

  bool unclean(int shape) const { return result_.unclean[shape]; }
  const gx_RelationShape::Ring& given_(std::size_t ring) const {
    return shapes_[ring_[ring].shape]->rings[ring_[ring].number];
  }

  // ---- Rings --------------------------------------------------------------------------------------

  void addRings_(int shape) {
    const auto& rings = shapes_[shape]->rings;
    begin_[shape] = ring_.size();
    for (std::size_t i = 0; i < rings.size(); ++i) {
      edges_.add(rings[i].points->data(), rings[i].points->size(), true);
      ring_.push_back({shape, i, true, false, 0});
    }
  }

  void measure_(std::uint32_t r) {
    const gx_EdgeSet::Ring& ring = edges_.ring(r);
    if (ring.edges() < 3) {
      result_.unclean[ring_[r].shape] = true;
      return;
    }
    std::uint32_t first = ring.first;
    for (std::uint32_t i = ring.first + 1; i < ring.end; ++i) {
      if (gx_before(edges_.point(i), edges_.point(first))) first = i;
    }
    const V& before = edges_.point(first == ring.first ? ring.end - 1 : first - 1);
    const bool forward = gx_Orientation(before, edges_.point(first), edges_.point(first + 1)) > 0;
    ring_[r].first = first;
    ring_[r].solidLeft = forward == (given_(r).level % 2 == 0);
  }

  bool hasFolds_(int shape) const {
    bool found = false;
    edges_.forEachJoint([&](std::uint32_t i, std::uint32_t j) {
      if (!found && ring_[edges_.ringOf(i)].shape == shape) {
        found = gx_isFold(edges_.from(i), edges_.to(i), edges_.to(j));
      }
    });
    return found;
  }

  // ---- Meetings -----------------------------------------------------------------------------------

  void findMeetings_() {
    std::size_t sinceAsked = 0;
    const auto tick = [&](std::size_t pairs) {
      constexpr std::size_t kPairsBetween = 4096;
      sinceAsked += pairs;
      if (sinceAsked < kPairsBetween) return;
      sinceAsked = 0;
      if (limits_.stop && limits_.stop()) throw gxStopped(L"the comparison was stopped");
    };
    const bool trusted = shapes_[0]->trusted && shapes_[1]->trusted;
    edges_.forEachPair(
        [&](std::uint32_t i, std::uint32_t j) {
          const int one = ring_[edges_.ringOf(i)].shape;
          const int other = ring_[edges_.ringOf(j)].shape;
          if (one != other) return meetingOfBoth_(one == 0 ? i : j, one == 0 ? j : i) && trusted;
          if (shapes_[one]->trusted || unclean(one)) return false;
          result_.unclean[one] =
              gx_meetingOf(edges_.from(i), edges_.to(i), edges_.from(j), edges_.to(j)).kind !=
              gx_EdgeMeeting::eApart;
          return unclean(0) && unclean(1);
        },
        tick);
  }

  // Tells whether that settles everything.
  bool meetingOfBoth_(std::uint32_t i, std::uint32_t j) {
    if (crossed_) return true;
    const V ends[] = {edges_.from(i), edges_.to(i), edges_.from(j), edges_.to(j)};
    const gx_EdgeMeeting meeting = gx_meetingOf(ends[0], ends[1], ends[2], ends[3]);
    crossed_ = meeting.kind == gx_EdgeMeeting::eCrossing;
    for (unsigned k = 0; k < 4; ++k) {
      if ((meeting.ends >> k & 1U) != 0) addContact_(ends[k], i, j);
    }
    return crossed_;
  }

  void addContact_(const V& point, std::uint32_t i, std::uint32_t j) {
    if (contacts_.size() >= limits_.maxMeetings) {
      throw gxLimitExceeded(L"the edges meet more than " + std::to_wstring(limits_.maxMeetings) +
                            L" times, which is the limit");
    }
    contacts_.push_back({point, {i, j}});
    ring_[edges_.ringOf(i)].meets = true;
    ring_[edges_.ringOf(j)].meets = true;
  }

  // ---- Around a vertex ----------------------------------------------------------------------------

  void aroundContacts_() {
    std::sort(contacts_.begin(), contacts_.end(),
              [](const Contact& p, const Contact& q) { return gx_before(p.point, q.point); });
    for (std::size_t i = 0; i < contacts_.size() && !settled_();) {
      std::size_t end = i + 1;
      while (end < contacts_.size() && contacts_[end].point == contacts_[i].point) ++end;
      around_(i, end);
      i = end;
    }
  }

  bool settled_() const {
    return result_.interiorsMeet && result_.bordersMeet && result_.firstBeyond && result_.secondBeyond;
  }

  void around_(std::size_t first, std::size_t end) {
    result_.bordersMeet = true;
    const V& v = contacts_[first].point;
    rays_.clear();
    for (int s = 0; s < 2; ++s) {
      through_.clear();
      for (std::size_t i = first; i < end; ++i) through_.push_back(contacts_[i].edge[s]);
      std::sort(through_.begin(), through_.end());
      through_.erase(std::unique(through_.begin(), through_.end()), through_.end());
      for (const std::uint32_t edge : through_) addRays_(v, edge, s);
    }
    std::sort(rays_.begin(), rays_.end(), [&v](const Ray& p, const Ray& q) {
      const int order = compareAround(v, p.to, q.to);
      return order != 0 ? order < 0 : p.shape < q.shape;
    });
    for (int s = 0; s < 2; ++s) sweep_(v, s);
  }

  void addRays_(const V& v, std::uint32_t edge, int shape) {
    const bool solidLeft = ring_[edges_.ringOf(edge)].solidLeft;
    if (!(edges_.to(edge) == v)) rays_.push_back({edges_.to(edge), shape, solidLeft});
    if (!(edges_.from(edge) == v)) rays_.push_back({edges_.from(edge), shape, !solidLeft});
  }

  // Tells of every ray of one shape where it lies in the other.
  void sweep_(const V& v, int shape) {
    const std::size_t n = rays_.size();
    std::size_t last = n;  // the last ray of the other shape that was passed
    for (std::size_t i = 0; i < n; ++i) {
      if (rays_[i].shape != shape) last = i;
    }
    if (last == n) return;
    for (std::size_t i = 0; i < n; ++i) {
      if (rays_[i].shape != shape) {
        last = i;
        continue;
      }
      const std::size_t same = sameDirection_(v, i, last);
      if (same != n) {
        alongBorder_(rays_[i].solidLeft == rays_[same].solidLeft);
      } else {
        piece_(shape, rays_[last].solidLeft);
      }
    }
  }

  // Of rays in one direction those of A come first: the other shape's is the last passed, or the next.
  std::size_t sameDirection_(const V& v, std::size_t i, std::size_t last) const {
    if (compareAround(v, rays_[i].to, rays_[last].to) == 0) return last;
    for (std::size_t j = i + 1; j < rays_.size() && compareAround(v, rays_[i].to, rays_[j].to) == 0;
         ++j) {
      if (rays_[j].shape != rays_[i].shape) return j;
    }
    return rays_.size();
  }

  // ---- What a piece of border tells ---------------------------------------------------------------

  void piece_(int shape, bool inside) {
    bool& own = shape == 0 ? result_.firstBeyond : result_.secondBeyond;
    bool& others = shape == 0 ? result_.secondBeyond : result_.firstBeyond;
    if (inside) {
      result_.interiorsMeet = true;
      others = true;
    } else {
      own = true;
    }
  }

  void alongBorder_(bool sameSide) {
    if (sameSide) {
      result_.interiorsMeet = true;
    } else {
      result_.firstBeyond = true;
      result_.secondBeyond = true;
    }
  }

  // ---- Rings that meet nothing --------------------------------------------------------------------

  void withoutContacts_() {
    for (std::size_t r = 0; r < ring_.size() && !settled_(); ++r) {
      if (!ring_[r].meets)
        piece_(ring_[r].shape, isInside_(edges_.point(ring_[r].first), 1 - ring_[r].shape));
    }
  }

  // Tells whether an edge crosses the ray from p to the left: exactly, p lies on none.
  bool crossesRay_(std::uint32_t edge, const V& p) const {
    const V& a = edges_.from(edge);
    const V& b = edges_.to(edge);
    if ((a.y() <= p.y()) == (b.y() <= p.y())) return false;
    return (a.y() <= p.y()) == (gx_Orientation(a, b, p) < 0);
  }

  static gx_Box rayBox_(const V& p) {
    return {-std::numeric_limits<double>::infinity(), p.y(), p.x(), p.y()};
  }

  bool isInside_(const V& p, int shape) const {
    bool odd = false;
    edges_.forEachMeeting(rayBox_(p), [&](std::uint32_t edge) {
      if (ring_[edges_.ringOf(edge)].shape == shape) odd ^= crossesRay_(edge, p);
    });
    return odd;
  }

  // ---- Nesting ------------------------------------------------------------------------------------

  // Of rings that do not meet: the innermost one around each is to be its owner, or, around an outline, a
  // hole.
  bool nestsWrongly_(int shape) const {
    const std::size_t first = begin_[shape];
    const std::size_t count = shapes_[shape]->rings.size();
    if (count == 1) return false;
    for (std::size_t r = first; r < first + count; ++r) {
      const std::size_t parent = parentOf_(r);
      const std::size_t owner = given_(r).owner;
      if (owner != gx_RelationShape::kNone) {
        if (parent != first + owner) return true;
      } else if (parent != gx_RelationShape::kNone && given_(parent).level % 2 == 0) {
        return true;
      }
    }
    return false;
  }

  std::size_t parentOf_(std::size_t r) const {
    const V& p = edges_.point(ring_[r].first);
    std::vector<std::uint32_t> crossed;
    edges_.forEachMeeting(rayBox_(p), [&](std::uint32_t edge) {
      const std::uint32_t other = edges_.ringOf(edge);
      const bool asked = other != r && ring_[other].shape == ring_[r].shape;
      if (asked && crossesRay_(edge, p)) crossed.push_back(other);
    });
    std::sort(crossed.begin(), crossed.end());
    std::size_t parent = gx_RelationShape::kNone;
    for (std::size_t i = 0; i < crossed.size();) {
      std::size_t end = i + 1;
      while (end < crossed.size() && crossed[end] == crossed[i]) ++end;
      if ((end - i) % 2 != 0 && (parent == gx_RelationShape::kNone || isWithin_(crossed[i], parent))) {
        parent = crossed[i];
      }
      i = end;
    }
    return parent;
  }

  // Rings around one point that do not meet lie in each other, and so do their boxes.
  bool isWithin_(std::size_t inner, std::size_t outer) const {
    return edges_.ring(inner).box.lowX > edges_.ring(outer).box.lowX;
  }

  const gx_RelationShape* shapes_[2];
  const gxOverlayLimits& limits_;
  gx_EdgeSet edges_;
  std::vector<RingState> ring_;
  std::size_t begin_[2] = {0, 0};
  std::vector<Contact> contacts_;
  std::vector<Ray> rays_;
  std::vector<std::uint32_t> through_;
  bool crossed_ = false;
  gx_Relation result_;
};

}  // namespace

gx_Relation gx_relate(const gx_RelationShape& a, const gx_RelationShape& b,
                      const gxOverlayLimits& limits) {
  return Relate(a, b, limits).run();
}
