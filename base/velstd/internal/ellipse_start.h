/// Ellipses to start a fit from.
#pragma once

#include <velstd/internal/ellipse_forms.h>
#include <velstd/vector.h>

#include <optional>
#include <vector>

/// Returns the ellipse of the least algebraic error, always an ellipse, for points in a frame; with
/// `upright` one with its axes along x and y.  Nothing where the points lie on a line.
///
/// This is the direct least squares fit: the conic of the least algebraic error among those with
/// 4 xx yy − xy² = 1 (A. Fitzgibbon, M. Pilu and R. Fisher, "Direct least square fitting of ellipses",
/// IEEE PAMI 21, 1999), with the linear terms eliminated first (R. Halíř and J. Flusser, "Numerically
/// stable direct least squares fitting of ellipses", WSCG 1998).
std::optional<gx_EllipseImage> gx_DirectEllipse(const std::vector<gxVector<2>>& points, bool upright);

/// Returns the ellipse whose outline has the points' centroid and second moments.
gx_EllipseImage gx_MomentsEllipse(const std::vector<gxVector<2>>& points, bool upright);
