/// The motion that lays a shape upon a golden one.
#pragma once

#include <cntr/export.h>
#include <gauge/borders.h>
#include <gauge/places.h>
#include <velstd/angle.h>
#include <velstd/vector.h>
#include <velstd/xform.h>

#include <cstddef>
#include <iosfwd>
#include <limits>

/// What the alignment may change, where it begins and how long it tries.
struct GXSHAPE_API gxAlignOptions {
  /// Whether the size may change, too; mirrored it never is.
  bool scales = false;
  /// Whether points that deviate far more than the others lose their weight (Tukey's), so that chips and
  /// burrs do not pull; else all count alike.
  bool robust = true;
  /// Whether to begin where the shape lies; else by centres and axes, in several directions.
  bool startsInPlace = false;
  int mostRounds = 100;
  /// How many points of the border take part, at equal arc lengths.
  std::size_t samples = 1000;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxAlignOptions& options);

/// The motion found, p → centre + shift + scale · R(angle) (p − centre).
struct GXSHAPE_API gxAlignment {
  gxStatus status = gxStatus::eOk;
  gxRadian angle{std::numeric_limits<double>::quiet_NaN()};  ///< in (−π, π]
  double scale = std::numeric_limits<double>::quiet_NaN();
  /// By how much `centre`, the middle of the shape's box, moves.
  gxVector<2> shift{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};
  gxVector<2> centre{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};
  /// The root mean square of the distances of the samples from the golden border, each with its weight.
  double residual = std::numeric_limits<double>::quiet_NaN();
  int rounds = 0;          ///< after the start
  bool converged = false;  ///< whether the last step was below 1e-12 of the size
  /// What the shapes leave open, and was kept as the start had it: the rotation of circles, the shift of
  /// straight lines along themselves, the scale.
  bool freeAngle = false;
  bool freeShift = false;
  bool freeScale = false;

  /// Returns where the motion takes a point.
  gxVector<2> map(const gxVector<2>& point) const;
  /// Returns the motion as a transform.
  gxXform<2> transform() const;
};
GXSHAPE_API std::ostream& operator<<(std::ostream& out, const gxAlignment& alignment);

/// Returns the motion for which the distances of `shape`'s border from `golden`'s are least: the sum of
/// their squares, or with robust weights that of Tukey's function of them.  Least means that no small
/// motion makes it less: shapes that differ much have several minima, and that nearest to the start is given.
///
/// It starts from the centres of both borders, turned so that their axes agree, both ways around, and of
/// shapes whose axes say little in 24 directions; the best after a few rounds goes on.  Of equally good
/// ones, as a symmetric shape has, that with the least rotation.  The result depends on nothing but the
/// arguments.
///  - one of them has no points: `eEmpty`;  a NaN or infinite coordinate: `eNotFinite`
///  - no samples or no rounds: `eBadArgument`
///  - all points of one of them equal: `eUndetermined`.  All these: numbers NaN
/// Cost: rounds · samples · O(log m), after about 20 times some hundred samples for the start.
/// Sources: Y. Chen and G. Medioni, "Object modelling by registration of multiple range images", 1992,
/// for distances along normals; S. Umeyama, "Least-squares estimation of transformation parameters between
/// two point patterns", 1991, for the first rounds.
GXSHAPE_API gxAlignment gfAlign(const gxBorders& shape, const gxBorders& golden,
                                const gxAlignOptions& options = {});
