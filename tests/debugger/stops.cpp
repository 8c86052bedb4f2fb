// A program for the debugger to stop in, with one value of each class that has a printer.
#include <gxshape/gxshape.h>

namespace {

[[gnu::noinline]] void stopHere() {
  asm volatile("");  // NOLINT(hicpp-no-assembler): a call that the compiler must make
}

}  // namespace

int main() {
  const gxVector<2> vector(1, 2.5);
  [[maybe_unused]] const gxPoint point(-1, 0.1);
  [[maybe_unused]] const gxPair<long> pair(3, 4);
  [[maybe_unused]] const gxRadian radian(0.5);
  const gxDegree degree(45);
  const gxMatrix<2> matrix(1, 2, 3, 4);
  const gxXform<2> xform(matrix, vector);
  const gxRect rect(gxVector<2>(0, 0), gxVector<2>(4, 3));
  const gxLine line(gxVector<2>(0, 0), gxVector<2>(1, 0));
  const gxLineSeg segment(gxVector<2>(0, 0), gxVector<2>(4, 3));
  const gxCircle circle(gxVector<2>(1, 2), 1e300);
  const gxEllipse ellipse(circle);
  const gxPolygon polygon({{0, 0}, {1, 0}, {1, 1}}, gxPolygon::eNonZero);
  const gxEdgelet edgelet(vector, 30, gxAngle8(64));
  [[maybe_unused]] const gxAngle8 eighth(200);
  const gxColor colour(255, 0, 16);
  const gxContour contour({{0, 0}, {4, 0}}, false, 7);
  const gxContour nothing;
  const gxRegion region({{0, 0}, {9, 0}, {9, 9}, {0, 9}},
                        std::vector<std::vector<gxVector<2>>>{{{1, 1}, {2, 1}, {2, 2}}});
  const gxPtrHandle<gxRegion> handle = gfMakeHandle<gxRegion>(region);
  const gxPtrHandle_const<gxRegion> nullHandle;
  const gxRegionSet set({handle, handle});
  const std::vector<gxEdgelet> edges{edgelet, edgelet};
  const gxContourT<gxEdgelet> edgeContour(edges);
  const gxRegionT<gxEdgelet> edgeRegion(edges);
  const gxRegionSetT<gxEdgelet> edgeSet;
  const gx2Rigid rigid(degree, vector);
  const gx2XformLinear linear(xform);
  gxBudget budget(1000);
  budget.spend(7);
  [[maybe_unused]] const gxThreadID thread = gfGetCurrentThreadID();
  gxRecordingTablet tablet;
  tablet.drawLineSeg({0, 0}, {1, 1}, colour, gxUITablet::eImageLayer);
  const gxCircleFitResults circleFit(circle, 0.25, {1, 2});
  const gxEllipseFitResults ellipseFit(ellipse, 0.5, {3});
  const gxContourDefs::BadParams refused(L"point 3 is wrong");
  const gxBadPointer badPointer;
  stopHere();
  return vector.x() + static_cast<double>(contour.size() + nothing.size() + edgeContour.size()) > 0 ? 0
                                                                                                    : 1;
}
