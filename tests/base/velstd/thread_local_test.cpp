#include <velstd/thread_local.h>

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

TEST(ThreadId, EachThreadHasItsOwn) {
  const gxThreadID mine = gfGetCurrentThreadID();
  EXPECT_EQ(mine, gfGetCurrentThreadID());
  EXPECT_EQ(mine.number(), gfGetCurrentThreadID().number());
  std::set<std::uint64_t> numbers{mine.number()};
  for (int i = 0; i < 10; ++i) {
    // One after the other: a number is not used again after its thread ended.
    std::thread([&] { numbers.insert(gfGetCurrentThreadID().number()); }).join();
  }
  EXPECT_EQ(numbers.size(), 11U);
}

TEST(ThreadLocal, IsNullUntilSet) {
  gx_ThreadLocal local;
  EXPECT_EQ(local.OSValue(), nullptr);
  int mine = 0;
  local.OSValue(&mine);
  EXPECT_EQ(local.OSValue(), &mine);
  local.OSValue(nullptr);
  EXPECT_EQ(local.OSValue(), nullptr);
}

TEST(ThreadLocal, ObjectsDoNotShareTheirValues) {
  gx_ThreadLocal a;
  gx_ThreadLocal b;
  int value = 0;
  a.OSValue(&value);
  EXPECT_EQ(b.OSValue(), nullptr);
}

TEST(ThreadLocal, ALaterObjectDoesNotSeeTheValuesOfAnEarlierOne) {
  int value = 0;
  std::optional<gx_ThreadLocal> local(std::in_place);
  local->OSValue(&value);
  local.emplace();  // at the same address
  EXPECT_EQ(local->OSValue(), nullptr);
}

TEST(ThreadLocal, EveryThreadHasItsOwnValue) {
  gx_ThreadLocal local;
  int mine = 0;
  local.OSValue(&mine);
  std::atomic<int> right{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&] {
      int theirs = 0;
      bool good = local.OSValue() == nullptr;
      for (int round = 0; round < 1000; ++round) {
        local.OSValue(&theirs);
        good = good && local.OSValue() == &theirs;
      }
      if (good) ++right;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 8);
  EXPECT_EQ(local.OSValue(), &mine);
}

TEST(ThreadAtExit, FunctionsRunAtTheEndOfTheirThreadLastRegisteredFirst) {
  std::string order;
  std::thread([&] {
    gxThreadID::atexit([&] { order += 'a'; });
    gxThreadID::atexit([&] { order += 'b'; });
    gxThreadID::atexit([&] { order += 'c'; });
    order += '-';
  }).join();
  EXPECT_EQ(order, "-cba");
}

TEST(ThreadAtExit, OtherThreadsDoNotRunThem) {
  std::atomic<int> runs{0};
  std::atomic<bool> registered{false};
  std::atomic<bool> mayEnd{false};
  std::thread holder([&] {
    gxThreadID::atexit([&] { ++runs; });
    registered = true;
    while (!mayEnd) std::this_thread::yield();
  });
  while (!registered) std::this_thread::yield();
  std::thread([] { gfGetCurrentThreadID(); }).join();
  EXPECT_EQ(runs, 0);
  mayEnd = true;
  holder.join();
  EXPECT_EQ(runs, 1);
}

TEST(ThreadAtExit, FunctionsMayRegisterMore) {
  std::string order;
  std::thread([&] {
    gxThreadID::atexit([&] { order += 'a'; });
    gxThreadID::atexit([&] {
      order += 'b';
      gxThreadID::atexit([&] { order += 'c'; });
    });
  }).join();
  EXPECT_EQ(order, "bca");
}

TEST(ThreadAtExit, WhatAFunctionThrowsIsDropped) {
  bool reached = false;
  std::thread([&] {
    gxThreadID::atexit([&] { reached = true; });
    gxThreadID::atexit([] { throw std::runtime_error("dropped"); });
  }).join();
  EXPECT_TRUE(reached);
}

TEST(ThreadLocalLifetime, ALaterObjectNeverSeesAnEarlierOnesValues) {
  int value = 0;
  for (int i = 0; i < 1000; ++i) {
    gx_ThreadLocal local;
    ASSERT_EQ(local.OSValue(), nullptr) << i;
    local.OSValue(&value);
    ASSERT_EQ(local.OSValue(), &value) << i;
  }
}

TEST(ThreadLocalLifetime, ALaterObjectSeesNothingOnAThreadThatKnewAnEarlierOne) {
  auto local = std::make_unique<gx_ThreadLocal>();
  int value = 0;
  void* seen = &value;
  std::mutex mutex;
  std::condition_variable changed;
  int step = 0;
  std::thread other([&] {
    std::unique_lock<std::mutex> lock(mutex);
    local->OSValue(&value);
    step = 1;
    changed.notify_all();
    changed.wait(lock, [&] { return step == 2; });
    seen = local->OSValue();
  });
  {
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [&] { return step == 1; });
    local.reset();
    local = std::make_unique<gx_ThreadLocal>();  // takes the earlier one's place
    int mine = 0;
    local->OSValue(&mine);
    EXPECT_EQ(local->OSValue(), &mine);
    step = 2;
  }
  changed.notify_all();
  other.join();
  EXPECT_EQ(seen, nullptr);
}

TEST(ThreadLocalLifetime, LivingObjectsKeepApartWhicheverDied) {
  std::vector<std::unique_ptr<gx_ThreadLocal>> locals(100);
  std::vector<int> values(100);
  for (std::size_t round = 0; round < 5; ++round) {
    for (std::size_t i = round % 3; i < locals.size(); i += 1 + round % 3) {
      locals[i] = std::make_unique<gx_ThreadLocal>();
      EXPECT_EQ(locals[i]->OSValue(), nullptr);
      locals[i]->OSValue(&values[i]);
    }
    for (std::size_t i = 0; i < locals.size(); ++i) EXPECT_EQ(locals[i]->OSValue(), &values[i]);
    for (std::size_t i = 0; i < locals.size(); i += 2 + round) locals[i].reset();
    for (std::size_t i = 0; i < locals.size(); ++i) {
      if (locals[i] == nullptr) {
        locals[i] = std::make_unique<gx_ThreadLocal>();
        locals[i]->OSValue(&values[i]);
      }
    }
  }
}

TEST(ThreadAtExit, ValuesAreStillThere) {
  gx_ThreadLocal local;
  int value = 0;
  void* seen = nullptr;
  std::thread([&] {
    local.OSValue(&value);
    gxThreadID::atexit([&] { seen = local.OSValue(); });
  }).join();
  EXPECT_EQ(seen, &value);
}

TEST(ThreadAtExit, FreesWhatTheThreadMade) {
  // The way a generator per thread is kept: made on first use, freed at the end of its thread.
  struct Counted {
    explicit Counted(std::atomic<int>& living) : living_(living) { ++living_; }
    ~Counted() { --living_; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    std::atomic<int>& living_;
  };
  gx_ThreadLocal local;
  std::atomic<int> living{0};
  std::atomic<int> most{0};
  const auto use = [&] {
    if (local.OSValue() != nullptr) return;
    auto* const made = new Counted(living);
    local.OSValue(made);
    gxThreadID::atexit([made] { delete made; });
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 6; ++i) {
    threads.emplace_back([&] {
      use();
      use();
      ++most;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(most, 6);
  EXPECT_EQ(living, 0);
}

gx_ThreadLocal& lateLocal() {
  static gx_ThreadLocal local;
  return local;
}
std::atomic<int> lateSeen{-1};
std::atomic<std::uint64_t> lateNumber{0};
std::atomic<bool> lateKept{false};

// Destroyed after the thread's record, because it was made before it.
struct AsksLate {
  AsksLate() = default;
  AsksLate(const AsksLate&) = delete;
  AsksLate& operator=(const AsksLate&) = delete;
  ~AsksLate() {
    lateSeen = lateLocal().OSValue() == nullptr ? 0 : 1;
    lateNumber = gfGetCurrentThreadID().number();
    int value = 0;
    lateLocal().OSValue(&value);
    lateKept = lateLocal().OSValue() == &value;
    gxThreadID::atexit([] { lateSeen = -2; });  // too late: never run
  }
  void touch() const {}
};

TEST(ThreadAtExit, DestructorsThatRunLaterStillFindNoValuesAndMaySetNewOnes) {
  std::uint64_t number = 0;
  std::thread([&] {
    static thread_local AsksLate late;
    late.touch();
    number = gfGetCurrentThreadID().number();
    int value = 0;
    lateLocal().OSValue(&value);
  }).join();
  EXPECT_EQ(lateSeen, 0);
  EXPECT_EQ(lateNumber, number);
  EXPECT_TRUE(lateKept);
}

TEST(ThreadAtExitDeathTest, OnTheMainThreadFunctionsRunWhenTheProgramExits) {
  EXPECT_EXIT(
      {
        gxThreadID::atexit([] { std::fputs("first\n", stderr); });
        gxThreadID::atexit([] { std::fputs("second\n", stderr); });
        std::exit(7);
      },
      testing::ExitedWithCode(7), "second\nfirst\n");
}

}  // namespace
