/// The ellipse that fits a set of points best.
#pragma once

#include <velstd/angle.h>
#include <velstd/ellipse.h>
#include <velstd/exception.h>
#include <velstd/export.h>
#include <velstd/vector.h>

#include <vector>

/// The scope of the ellipse fit's modes and exceptions.
class VELSTD_API gxEllipseFitDefs {
 public:
  /// What an ellipse fit may change.
  enum fit_mode : int {
    eFitAll = 0,         ///< centre, radii and rotation
    eFixedRotation = 1,  ///< centre and radii; the rotation is the one given in the parameters
  };

  /// Any failure of an ellipse fit; never thrown itself.
  class VELSTD_API Errors : public gxExceptionWithString {
   public:
    explicit Errors(const wchar_t* message = L"");
    Errors(const Errors&) noexcept;
    Errors& operator=(const Errors&) noexcept;
    ~Errors() override;
  };

  /// The parameters make no sense: an unknown mode, a held rotation that is not finite, a
  /// limit that is negative or NaN.
  class VELSTD_API BadParams final : public gx_ConcreteException<BadParams, Errors, 0x10000131> {
   public:
    explicit BadParams(const wchar_t* message = L"");
    BadParams(const BadParams&) noexcept;
    BadParams& operator=(const BadParams&) noexcept;
    ~BadParams() override;
  };

  /// The points do not determine an ellipse: too few distinct ones, all on one line, not finite.
  class VELSTD_API BadPoints final : public gx_ConcreteException<BadPoints, Errors, 0x10000132> {
   public:
    explicit BadPoints(const wchar_t* message = L"");
    BadPoints(const BadPoints&) noexcept;
    BadPoints& operator=(const BadPoints&) noexcept;
    ~BadPoints() override;
  };
};

/// What an ellipse fit is asked for.
class VELSTD_API gxEllipseFitParams {
 public:
  /// Keeps the four numbers as given; `gfEllipseFit` checks them.
  ///  - `mode`: what is fitted
  ///  - `rotation`: the rotation that mode `eFixedRotation` holds; read by no other mode
  ///  - `ignore`: the largest number of points that may be left out
  ///  - `limit`: a point may be left out when its distance to the fitted ellipse is above this;
  ///    with +infinity nobody is left out
  gxEllipseFitParams(gxEllipseFitDefs::fit_mode mode, const gxRadian& rotation, unsigned long ignore,
                     double limit)
      : mode_(mode), rotation_(rotation), ignore_(ignore), limit_(limit) {}

  gxEllipseFitDefs::fit_mode mode() const { return mode_; }
  const gxRadian& rotation() const { return rotation_; }
  unsigned long ignore() const { return ignore_; }
  double limit() const { return limit_; }

 private:
  gxEllipseFitDefs::fit_mode mode_;
  gxRadian rotation_;
  unsigned long ignore_;
  double limit_;
};

/// What an ellipse fit found.
class VELSTD_API gxEllipseFitResults {
 public:
  /// Builds the state before any fit: the default ellipse, residual 0, nobody left out.
  gxEllipseFitResults() = default;
  gxEllipseFitResults(const gxEllipse& ellipse, double residual,
                      const std::vector<unsigned long>& ignored)
      : ellipse_(ellipse), residual_(residual), ignored_(ignored) {}

  const gxEllipse& ellipse() const { return ellipse_; }
  /// Returns the root mean square of the distances between the ellipse and the points that were
  /// kept, in the unit of the points; 0 or more.
  double residual() const { return residual_; }
  /// Returns the indices of the points that were left out, ascending.
  const std::vector<unsigned long>& ignored() const { return ignored_; }

 private:
  gxEllipse ellipse_;
  double residual_ = 0.0;
  std::vector<unsigned long> ignored_;
};

/// Fits an ellipse to the points.
VELSTD_API void gfEllipseFit(const gxEllipseFitParams& params, const std::vector<gxVector<2>>& points,
                             gxEllipseFitResults& results);
