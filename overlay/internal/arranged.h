/// Shapes as what they hold.
#pragma once

#include <overlay/internal/arrangement.h>
#include <overlay/internal/steps.h>
#include <overlay/shapes.h>

#include <vector>

/// Returns the regions that a shape holds by the even-odd rule: valid, whatever the shape is.
/// Throws: as `gfRepair`.
std::vector<gx_ResultRegion> gx_settled(const gxShapes& shape, gx_Steps& steps);
