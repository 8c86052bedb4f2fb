/// What may stop an overlay before its end, and the exceptions that tell of it.
#pragma once

#include <cntr/contourdefs.h>
#include <cntr/export.h>
#include <velstd/budget.h>

#include <cstddef>
#include <functional>
#include <string>

/// The limits of one call of repair, of a boolean operation, or of anything else that computes with
/// the crossings of edges.  A default one lets every ordinary input pass.
struct gxOverlayLimits {
  /// Is asked about every 4,096 pairs of edges and every 1,024 crossings; true stops the call with
  /// `gxStopped`.  An exception that it throws passes through.  Whatever is to be changed by the call
  /// is then as it was.  Empty: the call is never stopped.
  std::function<bool()> stop;

  /// The most nodes inside of edges that a call may find before it throws `gxLimitExceeded`: a crossing
  /// makes two, one on each edge.  n edges can have n² of them, and each costs about 240 bytes: 8 million
  /// need about 2 GB (overlay_memory_benchmark).
  std::size_t maxMeetings = 8'000'000;
};

/// The edges of an input meet more often than `gxOverlayLimits::maxMeetings` allows.
class GXSHAPE_API gxLimitExceeded final
    : public gx_ConcreteException<gxLimitExceeded, gxContourDefs::Errors, 0x10004721> {
 public:
  /// Makes the exception with this message.
  explicit gxLimitExceeded(const std::basic_string<wchar_t>& message = std::basic_string<wchar_t>());
  gxLimitExceeded(const gxLimitExceeded&) noexcept;
  gxLimitExceeded& operator=(const gxLimitExceeded&) noexcept;
  ~gxLimitExceeded() override;
};
