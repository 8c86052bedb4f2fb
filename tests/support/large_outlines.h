/// Outlines of so many points that the indexed forms answer for them.
#pragma once

#include <support/random_shapes.h>
#include <support/slow_truth_contour.h>

/// Of a random kind, with 65 to some 300 points, somewhere, of some size, closed or open.
inline slow::Outline largeOutline(RandomShapes& random) {
  const auto kind =
      static_cast<OutlineKind>(random.integer(0, static_cast<int>(OutlineKind::eCount) - 1));
  slow::Outline outline{random.outline(kind, random.integer(65, 300)), true};
  while (outline.points.size() <= 64) outline.points = random.outline(OutlineKind::eCloud, 100);
  if (random.chance(0.5)) outline.points = random.placed(outline.points);
  outline.closed = random.chance(0.7);
  return outline;
}
