/// Threads that answer blocks.
#pragma once

#include "block.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

/// Threads that answer blocks of one file.  Blocks come back in the order in which they were given; with one
/// job they are answered by the caller's thread.
class Pool {
 public:
  Pool(const Plan& plan, const gxRecordReader& reader, unsigned jobs);
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;
  ~Pool();

  bool isFull() const { return given_.size() >= jobs_ + (jobs_ > 1 ? 2U : 0U); }
  bool isEmpty() const { return given_.empty(); }

  void give(std::unique_ptr<Block> block);
  /// Waits for the first of the blocks that were given.
  std::unique_ptr<Block> take();

 private:
  struct Task {
    std::unique_ptr<Block> block;
    bool isDone = false;
  };

  void work();

  const Plan& plan_;
  const gxRecordReader& reader_;
  std::size_t jobs_;
  Worker own_;
  std::mutex mutex_;
  std::condition_variable toDo_;
  std::condition_variable done_;
  std::deque<std::shared_ptr<Task>> given_;
  std::deque<std::shared_ptr<Task>> waiting_;
  bool ends_ = false;
  std::vector<std::thread> threads_;
};
