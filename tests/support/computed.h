/// Telling what was computed from what was remembered.
#pragma once

#include <cntr/internal/memory/computation_count.h>

/// Counts how often the calling thread computes one kind of result from here on.
class Computed {
 public:
  explicit Computed(gx_Computation what) : what_(what), before_(gx_computations(what)) {}

  /// Returns the number of computations since construction.
  long times() const { return gx_computations(what_) - before_; }

 private:
  gx_Computation what_;
  long before_;
};
