/// Shapes and numbers from JSON and back.
#pragma once

#include <cntr/contour.h>
#include <cntr/region.h>
#include <cntr/shapestat.h>
#include <conformance/answer.h>
#include <velip/edgelet.h>

#include <vector>

// ---- Numbers and values -------------------------------------------------------------------------

double readNumber(const Json& json);
bool readFlag(const Json& args, const char* name);
gxVector<2> readPoint(const Json& json);
std::vector<gxVector<2>> readPoints(const Json& json);
gxLineSeg readSegment(const Json& json);
gxXform<2> readXform(const Json& json);
gxEdgelet readEdgelet(const Json& json);
std::vector<gxEdgelet> readEdgelets(const Json& json);
gx_InertiaData readMoments(const Json& json);
gxContourDefs::IntersectionMode readMode(const Json& object);

Json write(double number);
Json write(const gxVector<2>& point);
Json write(const std::vector<gxVector<2>>& points);
Json write(const gxLineSeg& segment);
Json write(const gxRect& rect);
Json write(const gxCircle& circle);
Json write(const gxEllipse& ellipse);
Json write(const gxMatrix<2>& matrix);
Json write(const gx_InertiaData& moments);
Json write(const gxEdgelet& edgelet);
Json write(const std::vector<gxEdgelet>& edgelets);

// ---- Shapes -------------------------------------------------------------------------------------

gxContour readContour(const Json& json);
/// Is the shape a region's, where a contour's may stand too?
bool tellsRegion(const Json& json);
/// On the heap, held by a handle; a null handle for null.
gxPtrHandle<gxRegion> readRegion(const Json& json);
std::vector<gxPtrHandle_const<gxRegion>> readRegions(const Json& json);

Json write(const gxContour& contour);
Json write(const gxRegion& region);

/// What `draw` draws, as segments.
Json drawn(const std::function<void(gxUITablet&)>& draw);
