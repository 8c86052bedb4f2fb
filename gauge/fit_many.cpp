// Fits of many lists: the single forms, row by row, with one copy of the points that every row uses again.
// What a single form throws for what its points are like becomes the row's status.
#include <cntr/contourdefs.h>
#include <gauge/fit_many.h>
#include <gauge/internal/frame.h>
#include <gauge/robust_fit.h>
#include <velstd/circle_fit.h>
#include <velstd/ellipse_fit.h>

#include <algorithm>
#include <initializer_list>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

using Points = std::vector<gxVector<2>>;

// ---- One row -------------------------------------------------------------------------------------

void put(const gxRobustLine& line, std::size_t k, gxLineColumns& c) {
  c.pointX[k] = line.point.x();
  c.pointY[k] = line.point.y();
  c.angle[k] = line.angle.toDouble();
  c.residual[k] = line.residualRms;
}

void put(const gxCircleFitResults& found, std::size_t k, gxCircleColumns& c) {
  c.centreX[k] = found.circle().center().x();
  c.centreY[k] = found.circle().center().y();
  c.radius[k] = found.circle().radius();
  c.residual[k] = found.residual();
}

void put(const gxEllipseFitResults& found, std::size_t k, gxEllipseColumns& c) {
  const gxEllipse::gxEllipseGeom& geom = found.ellipse().geom();
  c.centreX[k] = geom.center.x();
  c.centreY[k] = geom.center.y();
  c.a[k] = geom.radii.x();
  c.b[k] = geom.radii.y();
  c.angle[k] = geom.rotation.toDouble();
  c.residual[k] = found.residual();
}

void putNaN(std::initializer_list<std::vector<double>*> numbers, std::size_t k) {
  for (std::vector<double>* column : numbers) (*column)[k] = kNaN;
}
void putNaN(std::size_t k, gxLineColumns& c) {
  putNaN({&c.pointX, &c.pointY, &c.angle, &c.residual}, k);
}
void putNaN(std::size_t k, gxCircleColumns& c) {
  putNaN({&c.centreX, &c.centreY, &c.radius, &c.residual}, k);
}
void putNaN(std::size_t k, gxEllipseColumns& c) {
  putNaN({&c.centreX, &c.centreY, &c.a, &c.b, &c.angle, &c.residual}, k);
}

gxStatus fit(const Points& points, std::size_t k, gxLineColumns& columns) {
  gxRobustOptions options;
  options.weights = gxFitWeights::eLeastSquares;
  const gxRobustLine line = gfRobustLine(points, options);
  put(line, k, columns);
  return line.status;
}

gxStatus fit(const Points& points, std::size_t k, gxCircleColumns& columns) {
  try {
    gxCircleFitResults found;
    gfCircleFit(gxCircleFitParams(gxCircleFitDefs::eFitAll, 0.0, 0, 0.0), points, found);
    put(found, k, columns);
    return gxStatus::eOk;
  } catch (const gxCircleFitDefs::BadPoints&) {
    putNaN(k, columns);
    return gxStatus::eUndetermined;
  }
}

gxStatus fit(const Points& points, std::size_t k, gxEllipseColumns& columns) {
  try {
    gxEllipseFitResults found;
    gfEllipseFit(gxEllipseFitParams(gxEllipseFitDefs::eFitAll, gxRadian(0.0), 0, 0.0), points, found);
    put(found, k, columns);
    return gxStatus::eOk;
  } catch (const gxEllipseFitDefs::BadPoints&) {
    putNaN(k, columns);
    return gxStatus::eUndetermined;
  }
}

// ---- All rows ------------------------------------------------------------------------------------

gxStatus withoutFit(const gxOutlines& lists, std::size_t k) {
  if (!lists.valid(k)) return gxStatus::eBadArgument;
  if (lists[k].empty()) return gxStatus::eEmpty;
  return gx_allFinite(lists[k]) ? gxStatus::eOk : gxStatus::eNotFinite;
}

template <class Columns>
void fitRows(const gxOutlines& lists, std::size_t first, std::size_t last, Columns& columns) {
  last = std::min(last, lists.size());
  if (columns.size() < last) {
    throw gxContourDefs::BadParams(L"the columns are shorter than the range");
  }
  Points points;
  for (std::size_t k = first; k < last; ++k) {
    columns.status[k] = withoutFit(lists, k);
    if (columns.status[k] != gxStatus::eOk) {
      putNaN(k, columns);
      continue;
    }
    points.assign(lists[k].begin(), lists[k].end());
    columns.status[k] = fit(points, k, columns);
  }
}

template <class Columns>
Columns fitAll(const gxOutlines& lists) {
  Columns columns;
  columns.resize(lists.size());
  fitRows(lists, 0, lists.size(), columns);
  return columns;
}

void lengthen(std::vector<gxStatus>& status, std::initializer_list<std::vector<double>*> numbers,
              std::size_t rows) {
  status.resize(rows, gxStatus::eEmpty);
  for (std::vector<double>* column : numbers) column->resize(rows, kNaN);
}

}  // namespace

void gxLineColumns::resize(std::size_t rows) {
  lengthen(status, {&pointX, &pointY, &angle, &residual}, rows);
}

void gxCircleColumns::resize(std::size_t rows) {
  lengthen(status, {&centreX, &centreY, &radius, &residual}, rows);
}

void gxEllipseColumns::resize(std::size_t rows) {
  lengthen(status, {&centreX, &centreY, &a, &b, &angle, &residual}, rows);
}

gxLineColumns gfFitLinesMany(const gxOutlines& lists) {
  return fitAll<gxLineColumns>(lists);
}

void gfFitLinesMany(const gxOutlines& lists, std::size_t first, std::size_t last,
                    gxLineColumns& columns) {
  fitRows(lists, first, last, columns);
}

gxCircleColumns gfFitCirclesMany(const gxOutlines& lists) {
  return fitAll<gxCircleColumns>(lists);
}

void gfFitCirclesMany(const gxOutlines& lists, std::size_t first, std::size_t last,
                      gxCircleColumns& columns) {
  fitRows(lists, first, last, columns);
}

gxEllipseColumns gfFitEllipsesMany(const gxOutlines& lists) {
  return fitAll<gxEllipseColumns>(lists);
}

void gfFitEllipsesMany(const gxOutlines& lists, std::size_t first, std::size_t last,
                       gxEllipseColumns& columns) {
  fitRows(lists, first, last, columns);
}
