// Remembering segments.
#include <veldispc/recording_tablet.h>

gxRecordingTablet::gxRecordingTablet() = default;
gxRecordingTablet::gxRecordingTablet(const gxRecordingTablet&) = default;
gxRecordingTablet& gxRecordingTablet::operator=(const gxRecordingTablet&) = default;
gxRecordingTablet::~gxRecordingTablet() = default;

void gxRecordingTablet::drawLineSeg(const gxPair<double>& from, const gxPair<double>& to,
                                    const gxColor& colour, Layers layer) {
  segments_.push_back({from, to, colour, layer});
}
