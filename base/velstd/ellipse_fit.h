/// The ellipse that fits a set of points best.
#pragma once

#include <velstd/angle.h>
#include <velstd/budget.h>
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
    /// Makes the exception with this message.
    explicit Errors(const wchar_t* message = L"");
    Errors(const Errors&) noexcept;
    Errors& operator=(const Errors&) noexcept;
    ~Errors() override;
  };

  /// The parameters make no sense: an unknown mode, a held rotation that is not finite, a
  /// limit that is negative or NaN.
  class VELSTD_API BadParams final : public gx_ConcreteException<BadParams, Errors, 0x10000131> {
   public:
    /// Makes the exception with this message.
    explicit BadParams(const wchar_t* message = L"");
    BadParams(const BadParams&) noexcept;
    BadParams& operator=(const BadParams&) noexcept;
    ~BadParams() override;
  };

  /// The points do not determine an ellipse: too few distinct ones, all on one line, not finite.
  class VELSTD_API BadPoints final : public gx_ConcreteException<BadPoints, Errors, 0x10000132> {
   public:
    /// Makes the exception with this message.
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

  /// Return what was given.
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

  /// Returns the fitted ellipse.
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

/// Fits an ellipse to the points: the one with the least sum of squared distances from the points to
/// the ellipse, measured along its normals.  The result does not depend on the unit of the points
/// (powers of two: in no bit) nor, within the rounding of their coordinates, on where they are.
///
/// The ellipse is described in one way only: `radii.x()` is the longer semi-axis, `radii.y()` the
/// shorter one, and `rotation` the direction of the longer axis, in (−π/2, π/2], from the x axis
/// towards the y axis.  Equal radii have rotation 0.  The two flags are false.
///
/// Mode `eFixedRotation` holds the directions of both axes: one along the given rotation, the other
/// across it; which is the longer is for the points to say.  The result's rotation is then the given
/// angle, or the one across, in (−π/2, π/2]: of a given angle that is there already, the very bits.
///
/// It is never worse than the circle that `gfCircleFit` finds for the same points, `ignore` and
/// `limit`: where no ellipse has a smaller residual, that circle is returned.
///
/// Where the points leave the size of the ellipse open, as a short noisy arc does (the standard error
/// of the longer semi-axis is above 3 % of it), the sum hardly changes from some small ellipse to one
/// that is nearly a parabola.  Then a smaller ellipse is preferred among those that are as good within
/// the noise; its residual is above the least possible by a part of at most some 3 in n.
///
/// Outliers, `ignore` and `limit`: as for `gfCircleFit`.
///
///  - fewer than 5 distinct points (4 with a held rotation), or points on a straight line within
///    rounding: `BadPoints`
///  - a NaN or infinite coordinate, or an ellipse too large for double precision: `BadPoints`
/// The result depends on nothing but the arguments: the random choices begin alike each time.
///
/// Throws: gxEllipseFitDefs::BadParams, gxEllipseFitDefs::BadPoints; then `results` is as it was.
/// Cost: linear for many points, two or three passes over all of them and some thirty over up to 1000
/// of them; with outliers some five hundred passes over up to 400 points and some twenty over all.
/// Sources: the start is the direct fit of A. Fitzgibbon, M. Pilu and R. Fisher, IEEE PAMI 21, 1999,
/// in the form of R. Halíř and J. Flusser, WSCG 1998; distances follow D. Eberly, "Distance from a
/// point to an ellipse, an ellipsoid, or a hyperellipsoid", 2013; least squares by the method of
/// K. Levenberg and D. Marquardt.  How near it comes, and beside which others: docs/accuracy.md.
VELSTD_API void gfEllipseFit(const gxEllipseFitParams& params, const std::vector<gxVector<2>>& points,
                             gxEllipseFitResults& results);
/// The same within a budget.  A step is a point in one pass: with outliers there may be hundreds of passes.
/// Throws: gxStopped besides, with `results` as it was.
VELSTD_API void gfEllipseFit(const gxEllipseFitParams& params, const std::vector<gxVector<2>>& points,
                             gxEllipseFitResults& results, gxBudget& budget);
