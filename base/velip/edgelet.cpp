// The archive record of an edge point, 19 bytes: position, magnitude, angle.
#include <velip/edgelet.h>
#include <velstd/archive.h>

gxArchive& operator||(gxArchive& archive, gxEdgelet& edgelet) {
  unsigned char angle = edgelet.angle_.toByte();
  archive || edgelet.position_ || edgelet.magnitude_ || angle;
  edgelet.angle_ = gxAngle8(angle);
  return archive;
}
