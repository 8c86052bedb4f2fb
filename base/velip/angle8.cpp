// Rounding an angle in degrees to 256ths of a turn.
#include <velip/angle8.h>

#include <cmath>

gxAngle8::gxAngle8(const gxDegree& degrees) {
  const double turn = degrees.norm().toDouble();
  if (std::isnan(turn)) return;
  units_ = static_cast<unsigned char>(std::lround(turn / kDegreesPerUnit) % 256);
}
