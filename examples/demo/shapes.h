/// Makes the shapes that more than one scene works with.
#pragma once

#include <ch_core/cntrtmpl.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <velstd/ellipse.h>

#include <filesystem>
#include <vector>

/// Degrees in a radian, for printing.
inline constexpr double kDegrees = gx_kDegreesPerRadian;

/// Returns the region of each coin, labelled with its number.
std::vector<gxRegion> readCoins(const std::filesystem::path& data);

/// Returns the coins as one shape, in their order.
gxRegionSet makeCoinSet(const std::filesystem::path& data);

/// Returns the edge points of each coin as a region in millimetres, labelled with its number.
std::vector<gxRegionT<gxEdgelet>> readEdgeRegions(const std::filesystem::path& data);

/// Returns the calibration of those regions, from millimetres to pixels: 0.25 mm a pixel, the origin in
/// the middle of the picture, the y axis upwards, the camera turned by 3 degrees.  The picture does not
/// tell the true scale; these numbers stand for a calibration.
gxXform<2> pixelsFromMillimetres();

/// Returns the ellipse whose filled area has the region's moments; its axes are the principal axes.
gxEllipse principalEllipse(const gxRegion& region);
