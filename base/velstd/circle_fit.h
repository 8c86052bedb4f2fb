/// The circle that fits a set of points best.
#pragma once

#include <velstd/budget.h>
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
    /// Makes the exception with this message.
    explicit Errors(const wchar_t* message = L"");
    Errors(const Errors&) noexcept;
    Errors& operator=(const Errors&) noexcept;
    ~Errors() override;
  };

  /// The parameters make no sense: an unknown mode, a held radius that is not a positive finite
  /// number, a limit that is negative or NaN.
  class VELSTD_API BadParams final : public gx_ConcreteException<BadParams, Errors, 0x10000141> {
   public:
    /// Makes the exception with this message.
    explicit BadParams(const wchar_t* message = L"");
    BadParams(const BadParams&) noexcept;
    BadParams& operator=(const BadParams&) noexcept;
    ~BadParams() override;
  };

  /// The points do not determine a circle: too few distinct ones, all on one line, not finite.
  class VELSTD_API BadPoints final : public gx_ConcreteException<BadPoints, Errors, 0x10000142> {
   public:
    /// Makes the exception with this message.
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

  /// Return what was given.
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

  /// Returns the fitted circle.
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

/// Fits a circle to the points: the one with the least sum of squared distances from the points to
/// the circle, measured along its normals.  The result does not depend on the unit of the points
/// (powers of two: in no bit) nor, within the rounding of their coordinates, on where they are.
///
/// With `ignore` > 0 and a finite `limit`, up to `ignore` points farther than `limit` from the circle
/// are left out: those for which the squared distances of the others plus `limit`² for each point left
/// out come out least.  With few enough outliers, however gross (up to about half of the points), the
/// circle is that of the others.  Nobody within the limit is left out.  With `ignore` 0 or `limit`
/// +infinity everybody counts.
///
///  - points on a straight line, within rounding, or fewer than 3 distinct ones: `BadPoints`
///  - a NaN or infinite coordinate, or a circle too large for double precision: `BadPoints`
///  - a held radius leaves two circles for points on a short arc, one on either side: the one nearer to
///    the points is returned
/// The result depends on nothing but the arguments: the random choices begin alike each time.
///
/// Throws: gxCircleFitDefs::BadParams, gxCircleFitDefs::BadPoints; then `results` is as it was.
/// Cost: linear, about 5 passes over the points; with outliers some hundred passes over up to 400
/// points and some twenty over all of them.
/// Sources: the start is the hyperaccurate algebraic fit of A. Al-Sharadqah and N. Chernov, "Error
/// analysis for circle fitting algorithms", Electronic Journal of Statistics 3, 2009; the refinement
/// follows N. Chernov and C. Lesort, "Least squares fitting of circles", Journal of Mathematical
/// Imaging and Vision 23, 2005; the outliers P. Rousseeuw and K. Van Driessen, "Computing LTS
/// regression for large data sets", Data Mining and Knowledge Discovery 12, 2006.
VELSTD_API void gfCircleFit(const gxCircleFitParams& params, const std::vector<gxVector<2>>& points,
                            gxCircleFitResults& results);
/// The same within a budget.  A step is a point in one pass: with outliers there may be hundreds of passes.
/// Throws: gxStopped besides, with `results` as it was.
VELSTD_API void gfCircleFit(const gxCircleFitParams& params, const std::vector<gxVector<2>>& points,
                            gxCircleFitResults& results, gxBudget& budget);
