// The out-of-line part of the drawing surface.
#include <veldispc/tablet.h>

gxUITablet::~gxUITablet() = default;
