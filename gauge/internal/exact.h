/// Decisions about circles without tolerance.
#pragma once

#include <cntr/export.h>
#include <velstd/vector.h>

/// Returns the sign of (a − p) · (b − p): +1 where the angle at p is acute, 0 where it is right or p is
/// one of the two, −1 where it is obtuse, so that p lies inside the circle on the diameter ab.  Exact for
/// every finite input.
///  - a NaN or infinite coordinate gives 0
/// Cost: two products and a comparison nearly always.
GXSHAPE_API int gx_DotSign(const gxVector<2>& p, const gxVector<2>& a, const gxVector<2>& b);

/// Returns +1 where p lies inside the circle through a, b and c, 0 where it lies on it, −1 outside,
/// whichever way a, b and c go around.  Exact for every finite input.
///  - a, b, c on one line: 0
///  - a NaN or infinite coordinate gives 0
/// Cost: some 20 operations nearly always; 100 to 300 ns where p lies on the circle within rounding.
GXSHAPE_API int gx_InCircle(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c,
                            const gxVector<2>& p);

/// Returns the sign of |a − b| − |c − d|, exactly.  NaN and infinities give 0.
GXSHAPE_API int gx_CompareDistances(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c,
                                    const gxVector<2>& d);
