// What is done once in some thousand steps.
#include <overlay/internal/steps.h>

#include <string>

void gx_Steps::ask_() {
  pairs_ = 0;
  nodes_ = 0;
  if (limits_.stop && limits_.stop()) throw gxStopped(L"stopped by the caller");
}

void gx_Steps::exceeded_() const {
  throw gxLimitExceeded(L"the edges have more than " + std::to_wstring(limits_.maxMeetings) +
                        L" nodes inside of them");
}
