#include <support/overlay_shapes.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using V = gxVector<2>;
using Points = std::vector<V>;
using slow::Region;
using slow::Set;

V nudged(RandomShapes& random, const V& p) {
  const auto one = [&](double c) {
    const int way = random.integer(-1, 1);
    return way == 0 ? c : std::nextafter(c, way > 0 ? HUGE_VAL : -HUGE_VAL);
  };
  const double x = one(p.x());
  return {x, one(p.y())};
}

Points cloud(RandomShapes& random, int least, int most, double size) {
  Points points;
  for (int n = random.integer(least, most); n > 0; --n) {
    const double x = random.uniform(-size, size);
    points.emplace_back(x, random.uniform(-size, size));
  }
  return points;
}

Points onLattice(RandomShapes& random, int least, int most, int wide, int high) {
  Points points;
  for (int n = random.integer(least, most); n > 0; --n) {
    const int x = random.integer(0, wide);
    points.emplace_back(x, random.integer(0, high));
  }
  return points;
}

// Some regions, each of an outline and seldom a loose hole.
template <class Draw>
Set regionsOf(RandomShapes& random, const Draw& draw) {
  Set set;
  for (int n = random.chance(0.15) ? 2 : 1; n > 0; --n) {
    Region region{draw(), {}};
    while (random.chance(0.2)) region.holes.push_back({draw(), {}});
    set.push_back(region);
  }
  return set;
}

Set general(RandomShapes& random) {
  return regionsOf(random, [&] {
    return random.chance(0.5)
               ? cloud(random, 3, 10, 10.0)
               : random.star(random.integer(3, 14), V(random.uniform(-4, 4), 0), 2.0, 9.0);
  });
}

Set lattice(RandomShapes& random) {
  const int wide = 1 << random.integer(2, 5);
  return regionsOf(random, [&] { return onLattice(random, 3, 10, wide, wide); });
}

// In units of the last place: from 2^52 on these are 1.
Set thin(RandomShapes& random) {
  const int wide = random.chance(0.5) ? random.integer(8, 64) : random.integer(64, 1000000);
  const bool upright = random.chance(0.3);
  const Set set = regionsOf(random, [&] { return onLattice(random, 3, 7, wide, 4); });
  return mappedSet(set, [&](const V& p) {
    return upright ? V(0x1p52 + p.y(), 0x1p52 + p.x()) : V(0x1p52 + p.x(), 0x1p52 + p.y());
  });
}

Set star(RandomShapes& random) {
  const double noise = random.chance(0.3) ? 0.0 : std::ldexp(1.0, -random.integer(20, 53));
  return regionsOf(random, [&] {
    Points points;
    for (int n = random.integer(2, 6); n > 0; --n) {
      const double angle = random.uniform(0, 2 * std::numbers::pi);
      const double r = random.uniform(1, 5);
      points.emplace_back(r * std::cos(angle), r * std::sin(angle));
      const double s = random.uniform(1, 5);
      points.emplace_back(-s * std::cos(angle) + noise * random.uniform(-1, 1),
                          -s * std::sin(angle) + noise * random.uniform(-1, 1));
    }
    return points;
  });
}

// The corners of a distorted grid are the same for all operands of a case.
struct Grid {
  std::vector<V> corners;
  static constexpr int kSide = 6;
  const V& at(int column, int row) const {
    return corners[static_cast<std::size_t>(row * (kSide + 1) + column)];
  }
};

Grid distortedGrid(RandomShapes& random) {
  Grid grid;
  for (int row = 0; row <= Grid::kSide; ++row) {
    for (int column = 0; column <= Grid::kSide; ++column) {
      const double x = column + random.uniform(-0.3, 0.3);
      grid.corners.emplace_back(x, row + random.uniform(-0.3, 0.3));
    }
  }
  return grid;
}

Points block(const Grid& grid, int left, int low, int right, int high) {
  Points points;
  for (int c = left; c < right; ++c) points.push_back(grid.at(c, low));
  for (int r = low; r < high; ++r) points.push_back(grid.at(right, r));
  for (int c = right; c > left; --c) points.push_back(grid.at(c, high));
  for (int r = high; r > low; --r) points.push_back(grid.at(left, r));
  return points;
}

Points someBlock(RandomShapes& random, const Grid& grid) {
  const int left = random.integer(0, Grid::kSide - 1);
  const int low = random.integer(0, Grid::kSide - 1);
  return block(grid, left, low, random.integer(left + 1, Grid::kSide),
               random.integer(low + 1, Grid::kSide));
}

Set mosaic(RandomShapes& random, const Grid& grid) {
  return regionsOf(random, [&] { return someBlock(random, grid); });
}

// Stretches there and back, repeated points, spikes.
void spoil(RandomShapes& random, Points& points) {
  for (int n = random.integer(1, 3); n > 0; --n) {
    const auto i = static_cast<std::size_t>(random.integer(0, static_cast<int>(points.size()) - 1));
    const auto here = points.begin() + static_cast<std::ptrdiff_t>(i);
    const V p = points[i];
    const V q = points[(i + 1) % points.size()];
    const int kind = random.integer(0, 3);
    if (kind == 0) {
      points.insert(here, p);
    } else if (kind == 1) {
      points.insert(here, {p, V(p.x() + random.integer(-3, 3), p.y() + random.integer(-3, 3))});
    } else if (kind == 2) {
      points.insert(here + 1, {q, p});
    } else {
      points.insert(here + 1, V((p.x() + q.x()) / 2, (p.y() + q.y()) / 2));
    }
  }
}

Set folds(RandomShapes& random) {
  const bool whole = random.chance(0.5);
  return regionsOf(random, [&] {
    Points points =
        random.star(random.integer(3, 8), V(random.integer(-2, 2), random.integer(-2, 2)), 2, 7);
    if (whole) {
      for (V& p : points) p = V(std::round(p.x()), std::round(p.y()));
    }
    spoil(random, points);
    return points;
  });
}

Points rectangle(double left, double low, double right, double high) {
  return {V(left, low), V(right, low), V(right, high), V(left, high)};
}

Set touchingHoles(RandomShapes& random) {
  const int side = random.integer(4, 10);
  Region region{rectangle(0, 0, side, side), {}};
  if (random.chance(0.3))
    region.outline = {V(0, 0), V(side, 0), V(side, side), V(side / 2, side), V(0, side)};
  for (int n = random.integer(1, 4); n > 0; --n) {
    Region hole{onLattice(random, 3, 4, side, side), {}};
    if (random.chance(0.3)) hole.holes.push_back({onLattice(random, 3, 4, side, side), {}});
    region.holes.push_back(hole);
  }
  const double turn = random.chance(0.5) ? 0.0 : 0.5;
  return mappedSet({region}, [&](const V& p) { return V(p.x() - turn * p.y(), p.y() + turn * p.x()); });
}

Points comb(RandomShapes& random, bool upright) {
  Points points;
  const int teeth = random.integer(2, 6);
  const double tilt = random.uniform(-0.5, 0.5);
  for (int t = 0; t < teeth; ++t) {
    points.emplace_back(2 * t, 1 + t % 2);
    points.emplace_back(2 * t + tilt, 12);
    points.emplace_back(2 * t + 1 + tilt, 12);
    points.emplace_back(2 * t + 1, 1 + t % 2);
  }
  points.emplace_back(2 * teeth, 0);
  points.emplace_back(0, 0);
  for (V& p : points) p = upright ? p : V(p.y(), p.x());
  return points;
}

Set mixedExponents(RandomShapes& random) {
  const int most = random.chance(0.5) ? 300 : random.integer(10, 60);
  const auto number = [&] {
    return std::ldexp(random.uniform(-2, 2), random.chance(0.4) ? 0 : random.integer(-most, most));
  };
  return regionsOf(random, [&] {
    Points points;
    for (int n = random.integer(3, 6); n > 0; --n) {
      const double x = number();
      points.emplace_back(x, number());
    }
    return points;
  });
}

Set scaled(const Set& set, double factor, double move) {
  return mappedSet(set, [&](const V& p) { return V(p.x() * factor + move, p.y() * factor + move); });
}

Set one(RandomShapes& random, OverlayFamily family, const Grid& grid, bool odd) {
  switch (family) {
    case OverlayFamily::eLattice: return lattice(random);
    case OverlayFamily::eThin: return thin(random);
    case OverlayFamily::eStar: return star(random);
    case OverlayFamily::eMosaic: return mosaic(random, grid);
    case OverlayFamily::eFolds: return folds(random);
    case OverlayFamily::eTouchingHoles: return touchingHoles(random);
    case OverlayFamily::eComb: return regionsOf(random, [&] { return comb(random, odd); });
    case OverlayFamily::eMixedExponents: return mixedExponents(random);
    case OverlayFamily::eFar: return scaled(general(random), random.chance(0.5) ? 1.0 : 0x1p-20, 1e8);
    case OverlayFamily::eHuge:
      return scaled(random.chance(0.5) ? general(random) : lattice(random), 0x1p996, 0);
    case OverlayFamily::eTiny:
      return scaled(random.chance(0.5) ? general(random) : lattice(random), 0x1p-996, 0);
    default: return general(random);
  }
}

}  // namespace

std::string nameOf(OverlayFamily family) {
  static const char* const kNames[] = {
      "general", "lattice",         "thin", "star", "copies", "mosaic", "folds", "touching holes",
      "comb",    "mixed exponents", "far",  "huge", "tiny"};
  return kNames[static_cast<int>(family)];
}

OverlayFamily someFamily(RandomShapes& random) {
  constexpr OverlayFamily kHard[] = {OverlayFamily::eLattice, OverlayFamily::eThin,
                                     OverlayFamily::eCopies, OverlayFamily::eMixedExponents};
  if (random.chance(0.35)) return kHard[random.integer(0, 3)];
  return static_cast<OverlayFamily>(random.integer(0, static_cast<int>(OverlayFamily::eCount) - 1));
}

std::vector<Set> overlayOperands(RandomShapes& random, OverlayFamily family, int count) {
  std::vector<Set> operands;
  const Grid grid = distortedGrid(random);
  for (int i = 0; i < count; ++i) {
    if (family == OverlayFamily::eCopies && i > 0) {
      operands.push_back(mappedSet(operands.front(), [&](const V& p) { return nudged(random, p); }));
      continue;
    }
    Set set = one(random, family, grid, i % 2 != 0);
    if (family == OverlayFamily::eCopies && random.chance(0.5)) set = folds(random);
    if (family == OverlayFamily::eCopies && count == 1) {
      const Set copy = mappedSet(set, [&](const V& p) { return nudged(random, p); });
      set.insert(set.end(), copy.begin(), copy.end());
    }
    operands.push_back(set);
  }
  return operands;
}

Set nearlyValidSet(RandomShapes& random) {
  const int wide = random.integer(5, 12);
  const auto piece = [&] {
    const int x = random.integer(0, wide - 1);
    const int y = random.integer(0, wide - 1);
    const int right = random.integer(x + 1, std::min(wide, x + 5));
    const int high = random.integer(y + 1, std::min(wide, y + 5));
    Points ring{V(x, y), V(right, y), V(right, high), V(x, high)};
    if (random.chance(0.5)) ring.erase(ring.begin() + random.integer(0, 3));
    return ring;
  };
  Set set;
  for (int n = random.integer(1, 3); n > 0; --n) {
    Region region{piece(), {}};
    if (random.chance(0.6)) region.outline = {V(0, 0), V(wide, 0), V(wide, wide), V(0, wide)};
    if (random.chance(0.1)) region.outline = reversed(region.outline);
    for (int holes = random.integer(0, 3); holes > 0; --holes) {
      Points hole = reversed(piece());
      if (random.chance(0.05)) hole = reversed(hole);
      region.holes.push_back({hole, {}});
    }
    set.push_back(region);
  }
  return set;
}

Set mappedSet(const Set& set, const std::function<V(const V&)>& map) {
  Set result = set;
  for (Region& region : result) {
    for (V& p : region.outline) p = map(p);
    region.holes = mappedSet(region.holes, map);
  }
  return result;
}

Set saidDifferently(RandomShapes& random, const Set& set, bool reverse) {
  Set result = set;
  for (Region& region : result) {
    const int last = static_cast<int>(region.outline.size()) - 1;
    if (last > 0) {
      region.outline = rotatedStart(region.outline, static_cast<std::size_t>(random.integer(0, last)));
    }
    if (reverse && random.chance(0.5)) std::reverse(region.outline.begin(), region.outline.end());
    region.holes = saidDifferently(random, region.holes, reverse);
  }
  for (std::size_t i = result.size(); i > 1; --i) {
    std::swap(result[i - 1],
              result[static_cast<std::size_t>(random.integer(0, static_cast<int>(i) - 1))]);
  }
  return result;
}
