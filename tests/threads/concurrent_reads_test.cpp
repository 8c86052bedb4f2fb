// Const operations of one object, and of objects that share parts, on several threads at once: each
// answer has the bits that a thread on its own gets.  Built with the thread sanitizer, the same
// scenarios show that nothing is written while another thread looks.
//
// Covers cntr/internal/memory/watch.cpp

#include "questions.h"
#include "subjects.h"

#include <ch_core/cntrtmpl.h>
#include <support/together.h>
#include <velstd/random.h>
#include <velstd/thread_local.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <numeric>
#include <thread>

namespace threads_test {
namespace {

bool soak() {
  const char* const value = std::getenv("GXSHAPE_SOAK");  // NOLINT(concurrency-mt-unsafe)
  return value != nullptr && *value == '1';
}

// What a thread on its own is told: each question is put to an object made for it.
struct Expected {
  std::vector<std::vector<Question>> questions;  // by object of the subject
  std::vector<std::vector<Bits>> answers;
};

Expected expectedOf(const Kind& kind) {
  Expected expected;
  const Subject shapes = kind.make();
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    expected.questions.push_back(questionsFor(*shapes[i]));
    auto& answers = expected.answers.emplace_back();
    for (const Question& question : expected.questions.back()) {
      answers.push_back(answerOf(question, *kind.make()[i]));
    }
  }
  return expected;
}

const Expected& expectedOnce(const Kind& kind) {
  static std::map<std::string, Expected> known;
  const auto found = known.find(kind.name);
  return found != known.end() ? found->second : known.emplace(kind.name, expectedOf(kind)).first->second;
}

void check(const Expected& expected, const Subject& subject, std::size_t object, std::size_t question) {
  const Question& q = expected.questions[object][question];
  if (answerOf(q, *subject[object]) != expected.answers[object][question]) {
    ADD_FAILURE() << q.name << " is answered differently to one of several threads";
  }
}

std::vector<std::size_t> shuffled(std::size_t count, long seed) {
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  gxRandomUniform random(seed);
  for (std::size_t i = count; i > 1; --i) {
    std::swap(order[i - 1], order[static_cast<std::size_t>(random.next(0.0, static_cast<double>(i)))]);
  }
  return order;
}

// ---- Everything at once -------------------------------------------------------------------------

struct Crowd {
  std::size_t kind;
  std::size_t threads;
};

class ConcurrentReads : public testing::TestWithParam<Crowd> {};

TEST_P(ConcurrentReads, OfAllQuestionsInAnyOrderAreAnsweredAsOneByOne) {
  const Kind& kind = kinds()[GetParam().kind];
  const Expected& expected = expectedOnce(kind);
  const int rounds = soak() ? 200 : 3;
  for (int round = 0; round < rounds; ++round) {
    const Subject subject = kind.make();
    together(GetParam().threads, [&](std::size_t thread) {
      const std::size_t object = thread % subject.size();
      const long seed = static_cast<long>(thread) + 100L * round + 1;
      for (const std::size_t q : shuffled(expected.questions[object].size(), seed)) {
        check(expected, subject, object, q);
      }
    });
  }
}

std::vector<Crowd> crowds() {
  std::vector<Crowd> all;
  for (std::size_t kind = 0; kind < kinds().size(); ++kind) {
    for (const std::size_t threads : {2U, 4U, 8U}) all.push_back({kind, threads});
  }
  return all;
}

INSTANTIATE_TEST_SUITE_P(Kinds, ConcurrentReads, testing::ValuesIn(crowds()), [](const auto& one) {
  return kinds()[one.param.kind].name + "By" + std::to_string(one.param.threads);
});

// ---- Two at a time ------------------------------------------------------------------------------

class ConcurrentPairs : public testing::TestWithParam<std::size_t> {};

// Each question meets each other one, and itself, as the first that the object is ever asked.
TEST_P(ConcurrentPairs, OfQuestionsToOneFreshObject) {
  const Kind& kind = kinds()[GetParam()];
  const Expected& expected = expectedOnce(kind);
  const std::size_t count = expected.questions[0].size();
  const std::size_t step = soak() ? 1 : 7;  // every seventh pair, a different seventh for each kind
  std::vector<std::pair<std::size_t, std::size_t>> pairs;
  for (std::size_t a = 0; a < count; ++a) {
    for (std::size_t b = a; b < count; ++b) {
      if ((a * count + b) % step == GetParam() % step) pairs.emplace_back(a, b);
    }
  }
  std::vector<Subject> subjects;
  subjects.reserve(pairs.size());
  for (std::size_t i = 0; i < pairs.size(); ++i) subjects.push_back(kind.make());
  // One meeting point for each pair keeps the two threads together without starting them anew.
  std::barrier<> meet(2);
  together(2, [&](std::size_t thread) {
    for (std::size_t i = 0; i < pairs.size(); ++i) {
      meet.arrive_and_wait();
      check(expected, subjects[i], 0, thread == 0 ? pairs[i].first : pairs[i].second);
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Kinds, ConcurrentPairs, testing::Range(std::size_t{0}, kinds().size()),
                         [](const auto& one) { return kinds()[one.param].name; });

// ---- Threads that come and go -------------------------------------------------------------------

TEST(ConcurrentThreads, ThatEndWhileOthersAskLeaveNothingBehind) {
  const Kind& kind = kinds()[8];
  const Expected& expected = expectedOnce(kind);
  const Subject subject = kind.make();
  together(3, [&](std::size_t thread) {
    for (int i = 0; i < (soak() ? 300 : 10); ++i) {
      std::thread([&] {
        const auto order =
            shuffled(expected.questions[0].size(), static_cast<long>(thread) * 50 + i + 1);
        for (std::size_t k = 0; k < 6; ++k) check(expected, subject, 0, order[k]);
      }).join();
    }
  });
}

TEST(ConcurrentThreads, MayAskAgainWhileTheyEnd) {
  const Kind& kind = kinds()[4];
  const Expected& expected = expectedOnce(kind);
  const Subject subject = kind.make();
  together(4, [&](std::size_t thread) {
    gxThreadID::atexit([&expected, &subject, thread] {
      for (const std::size_t q : shuffled(expected.questions[0].size(), static_cast<long>(thread) + 1)) {
        check(expected, subject, 0, q);
      }
    });
    for (std::size_t q = 0; q < expected.questions[0].size(); ++q) check(expected, subject, 0, q);
  });
}

TEST(ConcurrentHandles, OfOneHoleAreCopiedAndLetGoByAnyThread) {
  const gxPtrHandle_const<gxRegion> hole(new gxRegion(std::vector<gxVector<2>>{{0, 0}, {1, 0}, {0, 1}}));
  together(4, [&](std::size_t) {
    for (int i = 0; i < 5000; ++i) {
      const gxPtrHandle_const<gxRegion> mine(hole);
      EXPECT_EQ(mine->points().size(), 3U);
    }
  });
  EXPECT_EQ(hole->area(false), 0.5);
}

// A cycle of holes, which no setter sees: asking ends in an exception for every thread, and waits for
// nobody.
TEST(ConcurrentHoles, ThatGoInACircleAreRefusedToEveryThread) {
  const std::vector<gxVector<2>> outer{{-9, -9}, {9, -9}, {9, 9}, {-9, 9}};
  const std::vector<gxVector<2>> inner{{-5, -5}, {5, -5}, {5, 5}, {-5, 5}};
  gxPtrHandle<gxRegion> a(new gxRegion(outer));
  gxPtrHandle<gxRegion> b(new gxRegion(inner));
  a->holes({gxPtrHandle_const<gxRegion>(b)});
  b->holes({gxPtrHandle_const<gxRegion>(a)});
  together(4, [&](std::size_t thread) {
    for (int i = 0; i < 50; ++i) {
      const gxRegion& region = thread % 2 == 0 ? *a : *b;
      EXPECT_THROW(static_cast<void>(region.inside(gxVector<2>(0.5, 0.25), true)),
                   gxContourDefs::BadParams);
    }
  });
  b->holes({});
}

}  // namespace
}  // namespace threads_test
