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
  eCount
};

/// Counts one computation of the calling thread: a call at the place where a result is computed,
/// not where it is remembered, lets a test see that a second question is answered from memory.
GXSHAPE_API void gx_countComputation(gx_Computation what) noexcept;
/// Returns how often the calling thread has computed it.
GXSHAPE_API long gx_computations(gx_Computation what) noexcept;
