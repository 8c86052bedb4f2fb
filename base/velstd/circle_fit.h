#pragma once

#include <velstd/circle.h>
#include <velstd/exception.h>
#include <velstd/export.h>
#include <velstd/vector.h>

#include <vector>

class gxCircleFitDefs {
 public:
  enum fit_mode : int { eFitAll = 0, eFixedRadius = 1 };
};

class VELSTD_API gxCircleFitParams {
 public:
  gxCircleFitParams(gxCircleFitDefs::fit_mode mode, double radius, unsigned long ignore, double limit)
      : mode_(mode), radius_(radius), ignore_(ignore), limit_(limit) {}

 private:
  gxCircleFitDefs::fit_mode mode_;
  double radius_;
  unsigned long ignore_;
  double limit_;
};

class VELSTD_API gxCircleFitResults {
 public:
  const gxCircle& circle() const { return circle_; }
  double residual() const { return residual_; }

 private:
  gxCircle circle_;
  double residual_ = 0.0;
};

VELSTD_API void gfCircleFit(const gxCircleFitParams& params, const std::vector<gxVector<2>>& points,
                            gxCircleFitResults& results);
