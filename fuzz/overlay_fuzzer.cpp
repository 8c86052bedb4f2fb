// Overlays of whatever the fuzzer draws: results are valid by the plain test, the same however they are said,
// and areas add up.
//
// An input is a list of bytes: the first says how coordinates are made (a small lattice, units of the last
// place, any doubles), the rest are points; a byte of 255 ends a ring, two end an operand.
#include <overlay/overlay.h>
#include <overlay/shape_builder.h>
#include <support/overlay_judge.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

using V = gxVector<2>;

constexpr std::size_t kMostBytes = 400;

void expect(bool what) {
  if (!what) __builtin_trap();
}

double coordinate(const std::uint8_t*& at, const std::uint8_t* end, std::uint8_t kind) {
  if (kind % 4 == 3 && end - at >= 8) {
    double value = 0.0;
    std::memcpy(&value, at, 8);
    at += 8;
    return std::isfinite(value) && std::fabs(value) < 1e300 ? value : 1.0;
  }
  const double whole = at == end ? 0.0 : *at++ % 32;
  if (kind % 4 == 1) return 0x1p52 + whole;
  return kind % 4 == 2 ? whole / 7.0 : whole;
}

std::vector<slow::Set> operandsOf(const std::uint8_t* at, const std::uint8_t* end) {
  std::vector<slow::Set> operands(2);
  if (at == end) return operands;
  const std::uint8_t kind = *at++;
  std::size_t operand = 0;
  bool hole = false;
  judge::Ring ring;
  const auto finish = [&] {
    if (hole && !operands[operand].empty()) {
      operands[operand].back().holes.push_back({ring, {}});
    } else {
      operands[operand].push_back({ring, {}});
    }
    ring.clear();
  };
  while (at != end) {
    if (*at == 255) {
      ++at;
      if (ring.empty()) operand = 1 - operand;
      if (!ring.empty()) finish();
      hole = at != end && *at % 2 == 1;
      continue;
    }
    const double x = coordinate(at, end, kind);
    ring.emplace_back(x, coordinate(at, end, kind));
  }
  finish();
  return operands;
}

slow::Set sound(const gxRegionSet& set) {
  const slow::Set plain = judge::plainFrom(set);
  expect(judge::faultOf(plain).empty());
  expect(judge::disorderOf(plain).empty());
  return plain;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > kMostBytes) return -1;
  const std::vector<slow::Set> operands = operandsOf(data, data + size);
  const gxRegionSet a = judge::setFrom(operands[0]);
  const gxRegionSet b = judge::setFrom(operands[1]);
  for (int rule = 0; rule < 4; ++rule) {
    const gxRegionSet once = gfRepair(a, static_cast<gxFillRule>(rule)).regions;
    const slow::Set plain = sound(once);
    expect(judge::ringsOf(judge::plainFrom(gfRepair(once).regions)) == judge::ringsOf(plain));
    expect(gfCheck(once).empty());
  }
  const slow::Set either = sound(gfUnion(a, b));
  expect(judge::ringsOf(judge::plainFrom(gfUnion(b, a))) == judge::ringsOf(either));
  sound(gfIntersection(a, b));
  sound(gfDifference(a, b));
  sound(gfSymmetricDifference(a, b));
  const gxRelation relation = gfRelate(a, b);
  expect(!relation.equal() || relation.covers());
  if (data != nullptr && size > 1) {
    const double unit = judge::ulpOf(judge::ringsOf(operands[0]));
    const double distance = unit * 4096 * (1 + data[1]);
    if (distance < 1e300) {
      sound(gfOffset(a, distance));
      sound(gfOffset(a, -distance));
    }
  }
  return 0;
}
