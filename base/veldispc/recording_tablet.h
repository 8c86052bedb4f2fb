/// A tablet that remembers what was drawn.
#pragma once

#include <veldispc/tablet.h>

#include <vector>

/// A tablet without a picture: it keeps the segments as they were drawn, in order, for callers that
/// want the edges of a shape as a list, and for tests.
class VELDISPC_API gxRecordingTablet : public gxUITablet {
 public:
  /// One drawn segment, number for number as it was handed over.
  struct Segment {
    gxPair<double> from;         ///< Where the segment begins.
    gxPair<double> to;           ///< Where it ends.
    gxColor colour;              ///< What it was drawn with.
    Layers layer = eImageLayer;  ///< What it was drawn on.

    /// Is true when all is equal, exactly (a NaN equals nothing).
    friend bool operator==(const Segment&, const Segment&) = default;
  };

  gxRecordingTablet();
  gxRecordingTablet(const gxRecordingTablet&);
  gxRecordingTablet& operator=(const gxRecordingTablet&);
  ~gxRecordingTablet() override;

  /// Appends the segment to the list: zero-length segments and any coordinates are kept too.
  void drawLineSeg(const gxPair<double>& from, const gxPair<double>& to, const gxColor& colour,
                   Layers layer) override;

  /// Returns what was drawn since construction or the last `clear`, first drawn first.
  const std::vector<Segment>& segments() const { return segments_; }

  /// Forgets what was drawn.
  void clear() { segments_.clear(); }

 private:
  std::vector<Segment> segments_;
};
