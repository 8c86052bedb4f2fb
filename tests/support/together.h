/// Threads that begin at the same moment.
#pragma once

#include <barrier>
#include <cstddef>
#include <thread>
#include <vector>

/// Runs `work(0)`, `work(1)` … on that many threads, which wait for each other before they begin, and
/// returns when all are done.
template <class Work>
void together(std::size_t threads, const Work& work) {
  std::barrier<> start(static_cast<std::ptrdiff_t>(threads));
  std::vector<std::thread> running;
  running.reserve(threads);
  for (std::size_t i = 0; i < threads; ++i) {
    running.emplace_back([&start, &work, i] {
      start.arrive_and_wait();
      work(i);
    });
  }
  for (std::thread& thread : running) thread.join();
}
