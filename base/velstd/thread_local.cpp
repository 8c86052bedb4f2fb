// Each thread has a number, kept in a plain thread-local integer, and a record, made when the thread
// first sets a value or registers a function: its values by key, and the functions to run at its end.
//
// The record lies on the heap behind a plain pointer, and an object whose destructor the language
// runs at thread exit ends it: first the functions, newest first, while the values are still there,
// then the record itself.  The idea that failed was the record as a thread-local object: other
// thread-local objects may be destroyed later still, and what they called would have used a dead
// record.  Now they find no values, and what they set makes a late record, which nothing ends; a
// list keeps those, so that they are not lost.
#include <velstd/thread_local.h>

#include <atomic>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

struct ThreadRecord {
  std::unordered_map<std::uint64_t, void*> values;
  std::vector<std::function<void()>> atExit;
  ThreadRecord* nextLate = nullptr;
};

thread_local ThreadRecord* current = nullptr;
thread_local bool ended = false;

std::atomic<ThreadRecord*> lateRecords{nullptr};

struct ThreadEnd {
  ThreadEnd() = default;
  ThreadEnd(const ThreadEnd&) = delete;
  ThreadEnd& operator=(const ThreadEnd&) = delete;
  ~ThreadEnd() {
    if (current == nullptr) return;
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
    ended = true;
  }
};

void keepLate(ThreadRecord* record) {
  record->nextLate = lateRecords.load();
  while (!lateRecords.compare_exchange_weak(record->nextLate, record)) {}
}

ThreadRecord& thisThread() {
  if (current == nullptr) {
    thread_local const ThreadEnd end;
    current = new ThreadRecord;
    if (ended) keepLate(current);
  }
  // The analyzer ends `end` where its block ends, not where the thread does.
  return *current;  // NOLINT(clang-analyzer-core.uninitialized.UndefReturn)
}

std::uint64_t nextKey() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

}  // namespace

gxThreadID gfGetCurrentThreadID() {
  static std::atomic<std::uint64_t> last{0};
  thread_local const std::uint64_t number = ++last;
  return gxThreadID(number);
}

void gxThreadID::atexit(std::function<void()> function) {
  thisThread().atExit.push_back(std::move(function));
}

gx_ThreadLocal::gx_ThreadLocal() : key_(nextKey()) {}

void* gx_ThreadLocal::OSValue() const {
  if (current == nullptr) return nullptr;
  const auto found = current->values.find(key_);
  return found == current->values.end() ? nullptr : found->second;
}

void gx_ThreadLocal::OSValue(void* value) {
  thisThread().values[key_] = value;
}
