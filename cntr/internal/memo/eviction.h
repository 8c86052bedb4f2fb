/// The random choices of bounded memories.
#pragma once

#include <cntr/export.h>

/// Draws the position, 0 to size − 1, of the entry that a full memory of that size gives up.  The
/// generator is one object per thread, made with seed 1 on the thread's first draw and destroyed
/// when the thread ends; contours and region sets draw from the same one, so that the choices of a
/// thread are reproducible.
GXSHAPE_API long gx_drawEvicted(long size);
/// Makes the calling thread's generator where there is none yet, so that the next draw neither
/// allocates nor throws.
GXSHAPE_API void gx_prepareDraw();
