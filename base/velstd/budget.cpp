// A budget is asked at every step of an inner loop, so a step is an addition and a comparison: one bound,
// the nearer of the limit and the next question, stands for both.
#include <velstd/budget.h>

#include <algorithm>
#include <string>
#include <utility>

gxStopped::gxStopped(const wchar_t* message) : gx_ConcreteException(message) {}
gxStopped::gxStopped(const gxStopped&) noexcept = default;
gxStopped& gxStopped::operator=(const gxStopped&) noexcept = default;
gxStopped::~gxStopped() = default;

gxBudget::gxBudget(std::uint64_t steps) noexcept
    : next_(steps == kUnlimited ? kUnlimited : steps + 1), limit_(steps) {}

gxBudget::gxBudget(std::function<bool()> stop, std::uint64_t steps) : gxBudget(steps) {
  stop_ = std::move(stop);
  if (stop_) next_ = 0;
}

void gxBudget::ask_() {
  if (spent_ > limit_) {
    throw gxStopped((L"stopped after " + std::to_wstring(limit_) + L" steps").c_str());
  }
  if (stop_ && stop_()) throw gxStopped(L"stopped by the caller");
  next_ = limit_ == kUnlimited ? kUnlimited : limit_ + 1;
  if (stop_) next_ = std::min(next_, spent_ + kStepsBetweenQuestions);
}
