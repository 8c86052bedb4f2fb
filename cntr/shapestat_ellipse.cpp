// Ellipses: the one with a shape's second moments, and the one fitted to points.
//
// Equal moments.  The direction of the larger moment is half the angle of (m00 − m11, 2 m01), and of its
// two angles that in (−π/2, π/2]: an upright shape taller than wide has m01 = 0 but for the sign.  In
// the frame turned by it the moments d0, d1 are those of an ellipse with semi-axes r0, r1:
// d0 = π r0³ r1 / 4, d1 = π r0 r1³ / 4, hence r0⁸ = 16 d0³ / (π² d1), and r1 likewise; an eighth
// root is three square roots.
//
// Fitted.  An ellipse; where that fails, a circle; where that fails too, nothing, told by the
// residual −1.
#include <cntr/shapestat.h>
#include <velstd/circle_fit.h>
#include <velstd/ellipse_fit.h>
#include <velstd/exception.h>

#include <cmath>
#include <limits>

namespace {

// Principal moments below this are no area to speak of.
constexpr double kNoMoment = 1e-12;
constexpr double kHalfPi = 1.5707963267948966;
constexpr double kPiSquared = 9.869604401089358;

double eighthRoot(double value) {
  return std::sqrt(std::sqrt(std::sqrt(value)));
}

double radius(double along, double across) {
  return eighthRoot(16.0 * (along * along * along) / (kPiSquared * across));
}

bool fitsEllipse(const std::vector<gxVector<2>>& points, gxEllipse& ellipse, double& residual) {
  try {
    const gxEllipseFitParams params(gxEllipseFitDefs::fit_mode(0), gxRadian(0.0), 0,
                                    std::numeric_limits<double>::infinity());
    gxEllipseFitResults results;
    gfEllipseFit(params, points, results);
    ellipse = results.ellipse();
    residual = results.residual();
    return true;
  } catch (const gxException&) {
    return false;
  }
}

bool fitsCircle(const std::vector<gxVector<2>>& points, gxEllipse& ellipse, double& residual) {
  try {
    const gxCircleFitParams params(gxCircleFitDefs::fit_mode(0), 1.0, 0,
                                   std::numeric_limits<double>::infinity());
    gxCircleFitResults results;
    gfCircleFit(params, points, results);
    ellipse = gxEllipse(results.circle());
    residual = results.residual();
    return true;
  } catch (const gxException&) {
    return false;
  }
}

}  // namespace

gxEllipse gf_EllipseFromInertiaData(const gx_InertiaData& inertia) {
  const gxMatrix<2>& m = inertia.inertiaMatrix();
  const double half = 0.5 * std::atan2(2.0 * m.m01(), m.m00() - m.m11());
  const gxRadian theta(half == -kHalfPi ? kHalfPi : half);
  const gxMatrix<2> there(theta, theta, 1.0, 1.0);
  const gxMatrix<2> back(-theta, -theta, 1.0, 1.0);
  const gxMatrix<2> principal = (back * m) * there;
  const double d0 = std::abs(principal.m00());
  const double d1 = std::abs(principal.m11());
  if (!(d0 > kNoMoment && d1 > kNoMoment)) throw gxMathError::Singular();
  return gxEllipse(gxEllipse::gxEllipseGeom{
      inertia.centerOfMass(), {radius(d0, d1), radius(d1, d0)}, theta, false, false});
}

void gf_FitEllipse(const std::vector<gxVector<2>>& points, gxEllipse& ellipse, double& residual) {
  if (fitsEllipse(points, ellipse, residual) || fitsCircle(points, ellipse, residual)) return;
  ellipse = gxEllipse();
  residual = -1.0;
}

void gf_FitEllipse(const std::vector<gxEdgelet>& edgelets, gxEllipse& ellipse, double& residual) {
  std::vector<gxVector<2>> points;
  points.reserve(edgelets.size());
  for (const gxEdgelet& e : edgelets) points.push_back(e.position());
  gf_FitEllipse(points, ellipse, residual);
}
