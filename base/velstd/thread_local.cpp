// One record a thread, made when the thread first needs it: its number, its values by key, and the
// functions to run at its end.  The record's destructor is what the language runs at thread exit;
// it first runs the functions, newest first, while the values are still there.
#include <velstd/thread_local.h>

#include <atomic>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

std::uint64_t nextNumber() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

struct ThreadRecord {
  std::uint64_t number = nextNumber();
  std::unordered_map<std::uint64_t, void*> values;
  std::vector<std::function<void()>> atExit;

  ThreadRecord() = default;
  ThreadRecord(const ThreadRecord&) = delete;
  ThreadRecord& operator=(const ThreadRecord&) = delete;
  ~ThreadRecord() {
    while (!atExit.empty()) {
      const std::function<void()> function = std::move(atExit.back());
      atExit.pop_back();
      try {
        function();
      } catch (...) {  // nobody is left to tell
      }
    }
  }
};

ThreadRecord& thisThread() {
  thread_local ThreadRecord record;
  return record;
}

std::uint64_t nextKey() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

}  // namespace

gxThreadID gfGetCurrentThreadID() { return gxThreadID(thisThread().number); }

void gxThreadID::atexit(std::function<void()> function) {
  thisThread().atExit.push_back(std::move(function));
}

gx_ThreadLocal::gx_ThreadLocal() : key_(nextKey()) {}

gx_ThreadLocal::~gx_ThreadLocal() = default;

void* gx_ThreadLocal::OSValue() const {
  const auto& values = thisThread().values;
  const auto found = values.find(key_);
  return found == values.end() ? nullptr : found->second;
}

void gx_ThreadLocal::OSValue(void* value) { thisThread().values[key_] = value; }
