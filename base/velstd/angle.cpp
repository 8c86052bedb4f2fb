// Bringing an angle into one turn.  std::fmod is exact, so the only rounding is the one addition
// that lifts a negative remainder; where that addition rounds up to the full turn itself, the
// answer is 0, which keeps the range half open.
#include <velstd/angle.h>

#include <cmath>

namespace {

double intoOneTurn(double angle, double turn) {
  double rest = std::fmod(angle, turn);
  if (rest < 0.0) rest += turn;
  return rest >= turn ? 0.0 : rest + 0.0;  // + 0.0 turns -0.0 into 0.0
}

}  // namespace

gxRadian gxRadian::norm() const {
  return gxRadian(intoOneTurn(value_, 6.283185307179586));
}

gxDegree gxDegree::norm() const {
  return gxDegree(intoOneTurn(value_, 360.0));
}
