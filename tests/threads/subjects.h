/// The shapes that several threads ask at once.
#pragma once

#include <velstd/persistent.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace threads_test {

/// What one scenario asks: one object, or several that share holes, regions or what they remember.
using Subject = std::vector<std::shared_ptr<const gxPersistent>>;

struct Kind {
  std::string name;
  /// Makes the objects anew, with nothing remembered.
  std::function<Subject()> make;
};

/// Returns all kinds.
const std::vector<Kind>& kinds();

}  // namespace threads_test
