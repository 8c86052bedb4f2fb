/// What region sets answer, computed the slow and plain way; see slow_truth_contour.h.
#pragma once

#include <support/slow_truth_region.h>

namespace slow {

using Set = std::vector<Region>;

double area(const Set& set, bool considerHoles);
gxVector<2> centerOfMass(const Set& set, bool considerHoles);
gxMatrix<2> inertiaMatrix(const Set& set, bool considerHoles);
bool inside(const Set& set, const gxVector<2>& point, bool considerHoles);
double distToPoint(const Set& set, const gxVector<2>& point, bool vertexOnly, bool considerHoles,
                   bool insideIsZero);
gxRect encloseRect(const Set& set, const gxXform<2>& xform);

bool isSelfIntersecting(const Set& set);
/// Regions whose outlines meet spliced, pair by pair, in one pass.
Set merged(const Set& set);
Set regularize(const Set& set);
Set outerHull(const Set& set);

}  // namespace slow
