/// Counting what is really computed.
#pragma once

#include <cntr/export.h>

/// The computations whose results shapes remember.
enum class gx_Computation : int {
  eLength,
  eEdges,
  eSelfIntersection,
  eExtremalVertex,
  eEncloseRect,
  eUprightBox,
  eEncloseCircle,
  eConvexHull,
  eMeanPosition,
  eMedianFeatureSize,
  eVertexGrid,
  eFitEllipse,
  eEdgeIndex,
  eArea,
  eAreaWithHoles,
  eCenterOfMass,
  eCenterOfMassWithHoles,
  eInertiaMatrix,
  eRegularize,
  eOuterHull,
  eSetArea,
  eSetCenterOfMass,
  eSetInertiaMatrix,
  eSetEncloseRect,
  eSetSelfIntersection,
  eSetRegularize,
  eSetOuterHull,
  eSetIndex,
  eCount
};

#if defined(GXSHAPE_COUNTS_COMPUTATIONS)
/// Counts one computation of the calling thread: a call at the place where a result is computed,
/// not where it is remembered, lets a test see that a second question is answered from memory.
/// Counts only in builds with tests; elsewhere it is nothing at all.
GXSHAPE_API void gx_countComputation(gx_Computation what) noexcept;
/// Returns how often the calling thread has computed it.
GXSHAPE_API long gx_computations(gx_Computation what) noexcept;
#else
inline void gx_countComputation(gx_Computation /*what*/) noexcept {}
#endif
