#pragma once

#include <velstd/angle.h>
#include <velstd/ellipse.h>
#include <velstd/exception.h>
#include <velstd/export.h>
#include <velstd/vector.h>

#include <vector>

class gxEllipseFitDefs {
 public:
  enum fit_mode : int { eFitAll = 0, eFixedRotation = 1 };
};

class VELSTD_API gxEllipseFitParams {
 public:
  gxEllipseFitParams(gxEllipseFitDefs::fit_mode mode, const gxRadian& rotation, unsigned long ignore,
                     double limit)
      : mode_(mode), rotation_(rotation), ignore_(ignore), limit_(limit) {}

 private:
  gxEllipseFitDefs::fit_mode mode_;
  gxRadian rotation_;
  unsigned long ignore_;
  double limit_;
};

class VELSTD_API gxEllipseFitResults {
 public:
  const gxEllipse& ellipse() const { return ellipse_; }
  double residual() const { return residual_; }

 private:
  gxEllipse ellipse_;
  double residual_ = 0.0;
};

VELSTD_API void gfEllipseFit(const gxEllipseFitParams& params, const std::vector<gxVector<2>>& points,
                             gxEllipseFitResults& results);
