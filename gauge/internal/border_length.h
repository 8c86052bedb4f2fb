/// The length of borders, and their centre.
#pragma once

#include <cntr/export.h>
#include <gauge/internal/frame.h>
#include <gauge/internal/rings.h>

#include <span>

/// Returns the length of a ring, the closing edge of a closed one included, in the scale of the frame.
GXSHAPE_API double gx_ringLength(const gx_Ring& ring, const gx_Frame& frame);

/// Returns the centre of all borders, weighted with length; of borders without length the first point.
GXSHAPE_API gxVector<2> gx_borderCentre(std::span<const gx_Ring> rings, const gx_Frame& frame);
