/// Printing of points and shapes, for messages and logs.
#pragma once

#include <velstd/export.h>

#include <iosfwd>

class gxCircle;
class gxDegree;
class gxEllipse;
class gxLine;
class gxLineSeg;
class gxPolygon;
class gxRadian;
class gxRect;
template <int N>
class gxMatrix;
template <int N>
class gxVector;
template <int N>
class gxXform;

/// Print one value on one line, every number by `gfNumberText`, so that it reads back as the same double:
///
///   (1, 2.5)                                        a point
///   0.5 rad, 45 deg                                 angles
///   [(0, 0), (4, 3)]                                a rectangle, its lowest and its highest corner
///   (0, 0) to (4, 3)                                a segment
///   through (0, 0) along (1, 0)                     a line
///   circle at (0, 0), radius 2                      a circle
///   ellipse at (0, 0), radii (2, 1), rotation 0.5   an ellipse
///   [1 0; 0 1]                                      a matrix, row by row
///   [1 0; 0 1] + (0, 0)                             a transform
///   polygon of 4 vertices                           a polygon
VELSTD_API std::ostream& operator<<(std::ostream& out, const gxVector<2>& vector);
VELSTD_API std::ostream& operator<<(std::ostream& out, const gxRadian& angle);
VELSTD_API std::ostream& operator<<(std::ostream& out, const gxDegree& angle);
VELSTD_API std::ostream& operator<<(std::ostream& out, const gxRect& rect);
VELSTD_API std::ostream& operator<<(std::ostream& out, const gxLineSeg& seg);
VELSTD_API std::ostream& operator<<(std::ostream& out, const gxLine& line);
VELSTD_API std::ostream& operator<<(std::ostream& out, const gxCircle& circle);
VELSTD_API std::ostream& operator<<(std::ostream& out, const gxEllipse& ellipse);
VELSTD_API std::ostream& operator<<(std::ostream& out, const gxMatrix<2>& matrix);
VELSTD_API std::ostream& operator<<(std::ostream& out, const gxXform<2>& xform);
VELSTD_API std::ostream& operator<<(std::ostream& out, const gxPolygon& polygon);
