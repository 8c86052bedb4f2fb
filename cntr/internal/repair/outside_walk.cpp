// The walk around the outside.
//
//   1. Find an edge that is certainly outside.
//   2. From its first point, walk along the outline.  Where another part of the outline crosses the
//      way, turn onto it, against the direction so far: that keeps to the outside.
//   3. Stop where the start point comes up again, bit by bit.
//
// Rounding can lead the walk astray, into a loop that never meets its start.  The walk is a machine
// whose next step depends on its state alone, so a state that comes back proves that it goes round
// for ever; the number of steps is bounded besides.  A walk that meets no crossing comes to every
// point, and so closes; hence a loop that does not close has a crossing in it, and only the states
// right after crossings, which are few, need be kept.
#include <cntr/contourdefs.h>
#include <cntr/internal/repair/outside_walk.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <unordered_set>

namespace {

using Points = std::vector<gxVector<2>>;

[[noreturn]] void refuse() {
  throw gxContourDefs::BadParams(L"invalid contour");
}

bool liesOutside(const gxVector<2>& from, const gxVector<2>& to, double probe,
                 const gx_OutlineQuestions& outline) {
  const gxVector<2> middle = (from + to) * 0.5;
  const gxVector<2> along = (from - to).unit();
  const gxVector<2> across(-along.y() * probe, along.x() * probe);
  const gxVector<2> left = middle + across;
  const gxVector<2> right = middle - across;
  if (outline.contacts(gxLineSeg(left, right)) != 1) return false;
  if (outline.contacts(gxLineSeg(from, to)) != 2) return false;
  return outline.raysBothWays(left) == 0 || outline.raysBothWays(right) == 0;
}

// A state bit by bit: two states are the same exactly when every later step is.
struct StateBits {
  std::uint64_t x;
  std::uint64_t y;
  std::uint64_t nextAndDirection;
  bool operator==(const StateBits&) const = default;
};

struct StateHash {
  std::size_t operator()(const StateBits& s) const {
    std::uint64_t h = s.x * 0x9e3779b97f4a7c15ULL;
    h = (h ^ (h >> 29U) ^ s.y) * 0xbf58476d1ce4e5b9ULL;
    h = (h ^ (h >> 31U) ^ s.nextAndDirection) * 0x94d049bb133111ebULL;
    return static_cast<std::size_t>(h ^ (h >> 30U));
  }
};

StateBits bitsOf(const gx_WalkState& s) {
  return {std::bit_cast<std::uint64_t>(s.at.x()), std::bit_cast<std::uint64_t>(s.at.y()),
          2 * static_cast<std::uint64_t>(s.next) + (s.forward ? 1U : 0U)};
}

std::size_t oneBefore(std::size_t i, std::size_t count) {
  return i == 0 ? count - 1 : i - 1;
}

std::size_t oneAfter(std::size_t i, std::size_t count) {
  return i + 1 >= count ? i + 1 - count : i + 1;
}

}  // namespace

std::size_t gx_findStartEdge(const Points& points, double probe, const gx_OutlineQuestions& outline) {
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    if (liesOutside(points[i], points[i + 1], probe, outline)) return i;
  }
  refuse();
}

gx_WalkState gx_walkStep(const Points& points, const gx_WalkState& state,
                         const gx_OutlineQuestions& outline) {
  const std::size_t count = points.size();
  const std::size_t next = state.next;
  const std::size_t target =
      state.forward ? (next >= count ? next - count : next) : oneBefore(next, count);
  std::vector<int> edges;
  const std::size_t along = next >= count ? next - count : next;
  const Points hits = outline.crossings(gxLineSeg(state.at, points[target]), along, edges);
  if (hits.empty()) {
    return {points[target], state.forward ? oneAfter(next, count) : oneBefore(next, count),
            state.forward};
  }
  return {hits.front(), static_cast<std::size_t>(edges.front()), !state.forward};
}

std::size_t gx_mostWalkSteps(std::size_t points) {
  return std::max<std::size_t>(200'000, 64 * points);
}

Points gx_walkOutside(const Points& points, std::size_t start, const gx_OutlineQuestions& outline) {
  const std::size_t most = gx_mostWalkSteps(points.size());
  gx_WalkState state{points[start], start + 1, true};
  Points passed;
  passed.reserve(points.size() + points.size() / 16);
  std::unordered_set<StateBits, StateHash> seen;
  do {
    if (passed.size() == most) refuse();
    const bool wasForward = state.forward;
    state = gx_walkStep(points, state, outline);
    passed.push_back(state.at);
    const bool crossed = state.forward != wasForward;
    if (state.at == points[start]) break;
    if (crossed && !seen.insert(bitsOf(state)).second) refuse();
  } while (true);
  return passed;
}
