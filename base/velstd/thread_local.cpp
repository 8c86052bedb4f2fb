// Each thread has a number, kept in a plain thread-local integer, and a record, made when the thread
// first sets a value or registers a function: its values, and the functions to run at its end.
//
// An object's values lie at its slot, the same in every thread.  When the object dies, the next one takes
// the slot: no other thread's record can be reached from there, so what was set stays until it is
// overwritten, and a number beside it, which is the object's own, says whose it was.  (A key for each
// object, never used again, kept the values of the dead until the thread ended.)
//
// The record lies on the heap behind a plain pointer, and an object whose destructor the language
// runs at thread exit ends it: first the functions, newest first, while the values are still there,
// then the record itself.  The idea that failed was the record as a thread-local object: other
// thread-local objects may be destroyed later still, and what they called would have used a dead
// record.  Now they find no values, and what they set makes a late record, which nothing ends; a
// list keeps those, so that they are not lost.
#include <velstd/thread_local.h>

#include <atomic>
#include <mutex>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

struct Value {
  std::uint64_t owner = 0;
  void* value = nullptr;
};

struct ThreadRecord {
  std::unordered_map<std::size_t, Value> values;  // by slot
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

/// The slots.  Never destroyed: static objects of other libraries may outlive those of this one.
class Slots {
 public:
  static Slots& instance() {
    static Slots* const slots = new Slots;
    return *slots;
  }

  std::size_t take() {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (free_.empty()) {
      // So that giving back needs no memory.
      if (free_.capacity() <= made_) free_.reserve(2 * (made_ + 1));
      return made_++;
    }
    const std::size_t slot = free_.back();
    free_.pop_back();
    return slot;
  }

  void giveBack(std::size_t slot) noexcept {
    const std::lock_guard<std::mutex> lock(mutex_);
    free_.push_back(slot);
  }

 private:
  std::mutex mutex_;
  std::vector<std::size_t> free_;
  std::size_t made_ = 0;
};

std::uint64_t nextNumber() {
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

gx_ThreadLocal::gx_ThreadLocal() : slot_(Slots::instance().take()), number_(nextNumber()) {}

gx_ThreadLocal::~gx_ThreadLocal() {
  Slots::instance().giveBack(slot_);
}

void* gx_ThreadLocal::OSValue() const {
  if (current == nullptr) return nullptr;
  const auto found = current->values.find(slot_);
  return found == current->values.end() || found->second.owner != number_ ? nullptr
                                                                          : found->second.value;
}

void gx_ThreadLocal::OSValue(void* value) {
  thisThread().values[slot_] = {number_, value};
}
