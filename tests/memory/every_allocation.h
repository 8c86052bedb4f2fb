/// Runs an operation again and again, with each of its allocations failing in turn.
#pragma once

#include <archive/describe.h>
#include <memory/failing_allocations.h>

#include <gtest/gtest.h>

#include <exception>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace memory_test {

/// What an operation works on: objects that it may change, and the answer that it gives.
struct World {
  std::vector<std::shared_ptr<gxPersistent>> objects;
  std::vector<double> answer;

  template <class T>
  T& at(std::size_t i) {
    return dynamic_cast<T&>(*objects.at(i));
  }
  std::string text() const {
    std::string result;
    for (const auto& object : objects) result += archive_test::describe(*object) + "\n";
    for (const double number : answer) result += std::to_string(number) + " ";
    return result;
  }
};

struct Operation {
  std::string name;
  std::function<World()> make;
  std::function<void(World&)> run;
  bool mayStayPartly = false;  // as loading, which may leave an object partly loaded
};

/// Checks that whichever allocation fails, the operation throws std::bad_alloc and has changed nothing
/// (or copes, with the answer that it gives anyway), that it gives that answer when it is tried again, and
/// that nothing leaks.
inline void failEveryAllocation(const Operation& operation) {
  World whole = operation.make();
  operation.run(whole);  // once before: what is made on first use is there then
  const std::string wanted = whole.text();
  constexpr long kMost = 50000;
  constexpr long kAll =
      300;  // behind these ever fewer: a fit that leaves points out allocates thousands
  long failures = 0;
  bool more = true;
  for (long k = 0; more; k += k < kAll ? 1 : k / 20) {
    ASSERT_LT(k, kMost) << operation.name << " allocates without end";
    const long blocks = blocksInUse();
    {
      World world = operation.make();
      const std::string before = world.text();
      bool threw = false;
      {
        const FailingAllocation failing(k);
        try {
          operation.run(world);
        } catch (const std::bad_alloc&) {
          threw = true;
        } catch (const std::exception& error) {
          ADD_FAILURE() << operation.name << ", allocation " << k << " failed: " << error.what();
        }
        more = failing.happened();
      }
      if (threw && !operation.mayStayPartly) {
        ASSERT_EQ(world.text(), before) << operation.name << ", allocation " << k;
      }
      if (threw) {
        ++failures;
        world.answer.clear();
        operation.run(world);
      }
      ASSERT_EQ(world.text(), wanted) << operation.name << ", allocation " << k;
    }
    ASSERT_EQ(blocksInUse(), blocks) << operation.name << " leaks where allocation " << k << " fails";
  }
  EXPECT_GT(failures, 0) << operation.name << " allocates nothing: leave it out";
}

}  // namespace memory_test
