/// What is said to a person, on standard error.
#pragma once

#include "block.h"
#include "options.h"

#include <chrono>
#include <cstdint>
#include <string>

/// Returns the number with commas: 1,240,000.
std::string grouped(std::uint64_t number);

/// Failures, warnings and progress of a run.
class Messages {
 public:
  explicit Messages(const Options& options);

  /// Tells of a record that failed: each as JSON, or the first ten in words.
  void tell(const std::string& file, const Failure& failure);
  void warn(const std::string& text);
  /// Redraws the line of progress, where there is one and it is time.  `size` is 0 where it is not known.
  void progress(std::uint64_t records, std::uint64_t bytes, std::uint64_t size);
  /// Tells how many failures were not told, and how long all took.
  void finish(std::uint64_t records);

  std::uint64_t failures() const { return failures_; }

 private:
  using Clock = std::chrono::steady_clock;
  double elapsed() const { return std::chrono::duration<double>(Clock::now() - start_).count(); }
  void tellAsJson(const std::string& file, const Failure& failure);
  void clearProgress();

  const Options& options_;
  Clock::time_point start_ = Clock::now();
  double last_ = 0.0;
  bool showsProgress_ = false;
  bool shown_ = false;
  std::uint64_t failures_ = 0;
};
