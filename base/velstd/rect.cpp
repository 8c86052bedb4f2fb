// The out-of-line part of rectangles.
#include <velstd/rect.h>

gxRect::~gxRect() = default;

void gxRect::reInit() {
  origin_ = corner_ = size_ = gxVector<2>();
  mutating_();
}
