/// Counting the steps of a call against its limits.
#pragma once

#include <cntr/export.h>
#include <overlay/limits.h>

#include <cstddef>

/// Asks `gxOverlayLimits::stop` every so many steps, and counts the meetings of edges.
class gx_Steps {
 public:
  static constexpr std::size_t kPairs = 4096;
  static constexpr std::size_t kNodes = 1024;

  /// Of limits that must outlive this object.
  explicit gx_Steps(const gxOverlayLimits& limits) : limits_(limits) {}

  /// Counts pairs of boxes that were looked at.
  void looked(std::size_t pairs) {
    pairs_ += pairs;
    if (pairs_ >= kPairs) ask_();
  }
  /// Counts a meeting.  Throws: gxLimitExceeded above the limit; gxStopped.
  void met() {
    if (++meetings_ > limits_.maxMeetings) exceeded_();
    if (++nodes_ >= kNodes) ask_();
  }
  std::size_t meetings() const { return meetings_; }

 private:
  GXSHAPE_API void ask_();
  GXSHAPE_API void exceeded_() const;

  const gxOverlayLimits& limits_;
  std::size_t pairs_ = 0;
  std::size_t nodes_ = 0;
  std::size_t meetings_ = 0;
};
