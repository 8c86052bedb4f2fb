// One record a thread, made when the thread first needs it: its number, its values by key, and the
// functions to run at its end.
//
// The record lies on the heap behind a plain pointer, and an object whose destructor the language
// runs at thread exit ends it: first the functions, newest first, while the values are still there,
// then the record itself.  The idea that failed was the record as a thread-local object: other
// thread-local objects may be destroyed later still, and what they called would have used a dead
// record.  They get a new, empty record now, which nothing ends.
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
};

thread_local ThreadRecord* current = nullptr;

struct ThreadEnd {
  ThreadEnd() = default;
  ThreadEnd(const ThreadEnd&) = delete;
  ThreadEnd& operator=(const ThreadEnd&) = delete;
  ~ThreadEnd() {
    while (!current->atExit.empty()) {
      const std::function<void()> function = std::move(current->atExit.back());
      current->atExit.pop_back();
      try {
        function();
      } catch (...) {  // nobody is left to tell
      }
    }
    delete current;
    current = nullptr;
  }
};

ThreadRecord& thisThread() {
  if (current == nullptr) {
    current = new ThreadRecord;
    thread_local const ThreadEnd end;
  }
  return *current;
}

std::uint64_t nextKey() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

}  // namespace

gxThreadID gfGetCurrentThreadID() {
  return gxThreadID(thisThread().number);
}

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

void gx_ThreadLocal::OSValue(void* value) {
  thisThread().values[key_] = value;
}
