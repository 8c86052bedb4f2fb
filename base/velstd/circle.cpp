// The out-of-line part of circles.
#include <velstd/circle.h>

gxCircle::~gxCircle() = default;

void gxCircle::reInit() {
  center_ = gxVector<2>();
  radius_ = 0.0;
  mutating_();
}
