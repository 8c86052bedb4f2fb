// One mutex guards the list of blocks that wait and the marks of those that are done; answering is outside.
#include "pool.h"

Pool::Pool(const Plan& plan, const gxRecordReader& reader, unsigned jobs)
    : plan_(plan), reader_(reader), jobs_(jobs), own_(plan, reader) {
  for (unsigned i = 0; jobs > 1 && i < jobs; ++i) threads_.emplace_back([this] { work(); });
}

Pool::~Pool() {
  {
    const std::scoped_lock lock(mutex_);
    ends_ = true;
  }
  toDo_.notify_all();
  for (auto& thread : threads_) thread.join();
}

void Pool::give(std::unique_ptr<Block> block) {
  auto task = std::make_shared<Task>();
  task->block = std::move(block);
  if (threads_.empty()) {
    own_.run(*task->block);
    task->isDone = true;
  }
  {
    const std::scoped_lock lock(mutex_);
    given_.push_back(task);
    if (!threads_.empty()) waiting_.push_back(task);
  }
  toDo_.notify_one();
}

std::unique_ptr<Block> Pool::take() {
  auto task = given_.front();
  std::unique_lock lock(mutex_);
  done_.wait(lock, [&] { return task->isDone; });
  given_.pop_front();
  return std::move(task->block);
}

void Pool::work() {
  Worker worker(plan_, reader_);
  std::unique_lock lock(mutex_);
  while (true) {
    toDo_.wait(lock, [&] { return ends_ || !waiting_.empty(); });
    if (ends_) return;
    const auto task = waiting_.front();
    waiting_.pop_front();
    lock.unlock();
    worker.run(*task->block);
    lock.lock();
    task->isDone = true;
    done_.notify_one();
  }
}
