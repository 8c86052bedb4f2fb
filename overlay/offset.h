/// Growing and shrinking shapes by a distance.
#pragma once

/// How an offset goes around a corner.
enum class gxJoin : int {
  eRound = 0,  ///< on a circle, as steps of its chord tolerance
  eMitre = 1,  ///< to where the sides meet, up to the mitre limit, beyond that as a bevel
  eBevel = 2,  ///< straight across
};

/// How the offset of an open contour ends.
enum class gxEnds : int {
  eRound = 0,   ///< in half a circle around the end
  eFlat = 1,    ///< straight across at the end
  eSquare = 2,  ///< straight across, the distance behind the end
};

/// The form of an offset.
struct gxOffsetForm {
  gxJoin join = gxJoin::eRound;
  gxEnds ends = gxEnds::eRound;
  /// How far a mitre may reach from its corner, in units of the distance; 1 or more.  The corner of a
  /// square reaches √2.
  double mitreLimit = 5.0;
  /// How far the chords of a round join may lie inside its circle, in the units of the coordinates; above
  /// 0, or 0 for a 500th of the distance, which are 52 chords to the full circle.
  double arcTolerance = 0.0;
};
