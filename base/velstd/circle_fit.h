/// The circle that fits a set of points best.
#pragma once

#include <velstd/circle.h>
#include <velstd/exception.h>
#include <velstd/export.h>
#include <velstd/vector.h>

#include <vector>

/// The scope of the circle fit's modes and exceptions.
class VELSTD_API gxCircleFitDefs {
 public:
  /// What a circle fit may change.
  enum fit_mode : int {
    eFitAll = 0,       ///< centre and radius
    eFixedRadius = 1,  ///< the centre; the radius is the one given in the parameters
  };

  /// Any failure of a circle fit; never thrown itself.
  class VELSTD_API Errors : public gxExceptionWithString {
   public:
    explicit Errors(const wchar_t* message = L"");
    Errors(const Errors&) noexcept;
    Errors& operator=(const Errors&) noexcept;
    ~Errors() override;
  };

  /// The parameters make no sense: an unknown mode, a held radius that is not a positive finite
  /// number, a limit that is negative or NaN.
  class VELSTD_API BadParams final : public gx_ConcreteException<BadParams, Errors, 0x10000121> {
   public:
    explicit BadParams(const wchar_t* message = L"");
    BadParams(const BadParams&) noexcept;
    BadParams& operator=(const BadParams&) noexcept;
    ~BadParams() override;
  };

  /// The points do not determine a circle: too few distinct ones, all on one line, not finite.
  class VELSTD_API BadPoints final : public gx_ConcreteException<BadPoints, Errors, 0x10000122> {
   public:
    explicit BadPoints(const wchar_t* message = L"");
    BadPoints(const BadPoints&) noexcept;
    BadPoints& operator=(const BadPoints&) noexcept;
    ~BadPoints() override;
  };
};

/// What a circle fit is asked for.
class VELSTD_API gxCircleFitParams {
 public:
  /// Keeps the four numbers as given; `gfCircleFit` checks them.
  ///  - `mode`: what is fitted
  ///  - `radius`: the radius that mode `eFixedRadius` holds; read by no other mode
  ///  - `ignore`: the largest number of points that may be left out
  ///  - `limit`: a point may be left out when its distance to the fitted circle is above this;
  ///    with +infinity nobody is left out
  gxCircleFitParams(gxCircleFitDefs::fit_mode mode, double radius, unsigned long ignore, double limit)
      : mode_(mode), radius_(radius), ignore_(ignore), limit_(limit) {}

  gxCircleFitDefs::fit_mode mode() const { return mode_; }
  double radius() const { return radius_; }
  unsigned long ignore() const { return ignore_; }
  double limit() const { return limit_; }

 private:
  gxCircleFitDefs::fit_mode mode_;
  double radius_;
  unsigned long ignore_;
  double limit_;
};

/// What a circle fit found.
class VELSTD_API gxCircleFitResults {
 public:
  /// Builds the state before any fit: the default circle, residual 0, nobody left out.
  gxCircleFitResults() = default;
  gxCircleFitResults(const gxCircle& circle, double residual, const std::vector<unsigned long>& ignored)
      : circle_(circle), residual_(residual), ignored_(ignored) {}

  const gxCircle& circle() const { return circle_; }
  /// Returns the root mean square of the distances between the circle and the points that were
  /// kept, in the unit of the points; 0 or more.
  double residual() const { return residual_; }
  /// Returns the indices of the points that were left out, ascending.
  const std::vector<unsigned long>& ignored() const { return ignored_; }

 private:
  gxCircle circle_;
  double residual_ = 0.0;
  std::vector<unsigned long> ignored_;
};

/// Fits a circle to the points.
VELSTD_API void gfCircleFit(const gxCircleFitParams& params, const std::vector<gxVector<2>>& points,
                            gxCircleFitResults& results);
