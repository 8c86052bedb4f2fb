/// What a call may cost, and the exception that ends one which costs more.
#pragma once

#include <velstd/exception.h>
#include <velstd/export.h>

#include <cstdint>
#include <functional>
#include <limits>

/// A call was stopped by its budget.  Whatever it was to change is as it was.
class VELSTD_API gxStopped final
    : public gx_ConcreteException<gxStopped, gxExceptionWithString, 0x10000151> {
 public:
  /// Makes the exception with this message.
  explicit gxStopped(const wchar_t* message = L"");
  gxStopped(const gxStopped&) noexcept;
  gxStopped& operator=(const gxStopped&) noexcept;
  ~gxStopped() override;
};

/// What may be spent on the calls that are given it: a number of steps, a question that is asked now
/// and then whether to go on, both, or no limit at all.
///
/// A step is a unit of work that takes some tens of nanoseconds, the test of a pair of edges or of boxes
/// for one; how many steps an operation takes may change from version to version, but not from run to
/// run.  One budget may serve several calls, one after the other, and then bounds their sum.  It is
/// handed from caller to callee as an argument, so that a call can only be stopped by who made it.
///
/// Threads.  A budget is used by one thread at a time.  To stop a call from another thread, let `stop`
/// read an atomic flag.
class VELSTD_API gxBudget {
 public:
  /// No limit.
  static constexpr std::uint64_t kUnlimited = (std::numeric_limits<std::uint64_t>::max)();
  /// So many steps pass from one question of `stop` to the next, at most a millisecond or so.
  static constexpr std::uint64_t kStepsBetweenQuestions = 4096;

  /// Makes a budget without limit: nothing that it is given to is ever stopped.
  gxBudget() noexcept = default;
  /// Makes a budget of so many steps.
  explicit gxBudget(std::uint64_t steps) noexcept;
  /// Makes a budget that asks `stop` whether to stop, at the first step and about every
  /// `kStepsBetweenQuestions` steps after, and that has no more than `steps` of them.  An exception that
  /// `stop` throws leaves the call, which then has changed nothing either.  An empty one is not asked.
  explicit gxBudget(std::function<bool()> stop, std::uint64_t steps = kUnlimited);

  /// Takes so many steps off.
  /// Throws: gxStopped when more than the limit are spent, or when `stop` says so; and again at every
  /// later call, where it was the limit.
  void spend(std::uint64_t steps = 1) {
    spent_ += steps;
    if (spent_ >= next_) ask_();
  }
  /// Returns how many steps were spent so far.
  std::uint64_t spent() const noexcept { return spent_; }

 private:
  void ask_();

  std::uint64_t spent_ = 0;
  std::uint64_t next_ = kUnlimited;  // from here on there is something to ask
  std::uint64_t limit_ = kUnlimited;
  std::function<bool()> stop_;
};
