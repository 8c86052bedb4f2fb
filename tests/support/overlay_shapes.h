/// Random operands for overlays: families of shapes, each made for one kind of trouble.
#pragma once

#include <support/overlay_judge.h>
#include <support/random_shapes.h>

#include <string>
#include <vector>

/// A family of operands.
enum class OverlayFamily : int {
  eGeneral,         ///< outlines of random doubles, which cross themselves; some with loose holes
  eLattice,         ///< whole numbers of a lattice 4 to 32 wide: most edges meet somewhere
  eThin,            ///< 4 units of the last place high, up to a million long
  eStar,            ///< edges that pass close to one point
  eCopies,          ///< copies whose coordinates are moved by one unit of the last place, or none
  eMosaic,          ///< blocks of one distorted grid: borders in pieces the same
  eFolds,           ///< good outlines with spikes, repeated points and stretches there and back
  eTouchingHoles,   ///< holes that touch the outline and each other at points and along edges
  eComb,            ///< combs across each other: crossings as the square of the points
  eMixedExponents,  ///< coordinates of 2^-300 to 2^300 in one shape
  eFar,             ///< small shapes 1e8 from the origin
  eHuge,            ///< about 1e300
  eTiny,            ///< about 1e-300
  eCount
};

/// Returns what a family is called.
std::string nameOf(OverlayFamily family);

/// Draws a family: half of the time one of those in which faults live.
OverlayFamily someFamily(RandomShapes& random);

/// Draws that many operands of a family; one region each mostly, seldom two.
std::vector<slow::Set> overlayOperands(RandomShapes& random, OverlayFamily family, int count);

/// Draws a set that has a good chance to be valid: rectangles and triangles on a small lattice, some as holes,
/// which touch, share borders and nest.
slow::Set nearlyValidSet(RandomShapes& random);

/// Applies a function to each point.
slow::Set mappedSet(const slow::Set& set, const std::function<gxVector<2>(const gxVector<2>&)>& map);
/// Returns the same set said differently: rings begin elsewhere, run the other way, regions change places.
slow::Set saidDifferently(RandomShapes& random, const slow::Set& set, bool reverse);
