// Every value in one line, its numbers by gfNumberText.
#include <velstd/angle.h>
#include <velstd/circle.h>
#include <velstd/ellipse.h>
#include <velstd/line.h>
#include <velstd/line_seg.h>
#include <velstd/matrix.h>
#include <velstd/number_text.h>
#include <velstd/polygon.h>
#include <velstd/print.h>
#include <velstd/rect.h>
#include <velstd/vector.h>
#include <velstd/xform.h>

#include <ostream>

std::ostream& operator<<(std::ostream& out, const gxVector<2>& vector) {
  return out << '(' << gfNumberText(vector.x()) << ", " << gfNumberText(vector.y()) << ')';
}

std::ostream& operator<<(std::ostream& out, const gxRadian& angle) {
  return out << gfNumberText(angle.toDouble()) << " rad";
}

std::ostream& operator<<(std::ostream& out, const gxDegree& angle) {
  return out << gfNumberText(angle.toDouble()) << " deg";
}

std::ostream& operator<<(std::ostream& out, const gxRect& rect) {
  return out << '[' << rect.origin() << ", " << rect.corner() << ']';
}

std::ostream& operator<<(std::ostream& out, const gxLineSeg& seg) {
  return out << seg.p1() << " to " << seg.p2();
}

std::ostream& operator<<(std::ostream& out, const gxLine& line) {
  return out << "through " << line.point() << " along " << line.direction();
}

std::ostream& operator<<(std::ostream& out, const gxCircle& circle) {
  return out << "circle at " << circle.center() << ", radius " << gfNumberText(circle.radius());
}

std::ostream& operator<<(std::ostream& out, const gxEllipse& ellipse) {
  const auto& geom = ellipse.geom();
  return out << "ellipse at " << geom.center << ", radii " << geom.radii << ", rotation "
             << gfNumberText(geom.rotation.toDouble());
}

std::ostream& operator<<(std::ostream& out, const gxMatrix<2>& matrix) {
  return out << '[' << gfNumberText(matrix.m00()) << ' ' << gfNumberText(matrix.m01()) << "; "
             << gfNumberText(matrix.m10()) << ' ' << gfNumberText(matrix.m11()) << ']';
}

std::ostream& operator<<(std::ostream& out, const gxXform<2>& xform) {
  return out << xform.matrix() << " + " << xform.translation();
}

std::ostream& operator<<(std::ostream& out, const gxPolygon& polygon) {
  return out << "polygon of " << polygon.size() << " vertices";
}
