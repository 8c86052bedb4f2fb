/// All of gxshape: every public header, lowest layer first.  `make format` keeps the list.
#pragma once

#include <velstd/angle.h>
#include <velstd/archive.h>
#include <velstd/budget.h>
#include <velstd/circle.h>
#include <velstd/circle_fit.h>
#include <velstd/convex_hull.h>
#include <velstd/ellipse.h>
#include <velstd/ellipse_fit.h>
#include <velstd/exception.h>
#include <velstd/handle.h>
#include <velstd/language.h>
#include <velstd/line.h>
#include <velstd/line_seg.h>
#include <velstd/matrix.h>
#include <velstd/number_text.h>
#include <velstd/orientation.h>
#include <velstd/pair.h>
#include <velstd/persistent.h>
#include <velstd/point.h>
#include <velstd/polygon.h>
#include <velstd/print.h>
#include <velstd/random.h>
#include <velstd/real_eq.h>
#include <velstd/rect.h>
#include <velstd/registry.h>
#include <velstd/thread_local.h>
#include <velstd/vector.h>
#include <velstd/xform.h>
#include <velstd/xform_base.h>

#include <velip/angle8.h>
#include <velip/edgelet.h>
#include <velip/pel.h>

#include <veldispc/color.h>
#include <veldispc/recording_tablet.h>
#include <veldispc/svg_tablet.h>
#include <veldispc/tablet.h>

#include <cntr/contour.h>
#include <cntr/contourdefs.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <cntr/shapestat.h>

#include <gauge/align.h>
#include <gauge/arc.h>
#include <gauge/borders.h>
#include <gauge/clean.h>
#include <gauge/curvature.h>
#include <gauge/defects.h>
#include <gauge/descriptors.h>
#include <gauge/deviation.h>
#include <gauge/distance.h>
#include <gauge/enclosing.h>
#include <gauge/feret.h>
#include <gauge/form.h>
#include <gauge/frechet.h>
#include <gauge/gauge.h>
#include <gauge/hausdorff.h>
#include <gauge/inscribed.h>
#include <gauge/locate.h>
#include <gauge/measure.h>
#include <gauge/measure_many.h>
#include <gauge/moments.h>
#include <gauge/places.h>
#include <gauge/resample.h>
#include <gauge/robust_fit.h>
#include <gauge/simplify.h>
#include <gauge/smooth.h>
#include <gauge/uncertainty.h>
#include <gauge/wall.h>

#include <ch_core/cntrtmpl.h>

#include <overlay/boolean.h>
#include <overlay/check.h>
#include <overlay/edge_points.h>
#include <overlay/limits.h>
#include <overlay/offset.h>
#include <overlay/options.h>
#include <overlay/overlay.h>
#include <overlay/relate.h>
#include <overlay/repair.h>
#include <overlay/shapes.h>
