// Threads that ask one shape are in each other's way where asking writes: a counter, a flag, a latch in a
// cache line of the shape.  Here all memory of a shape that has been asked before is made read-only, and is
// asked on: a question that writes to it ends the process.
#include <cntr/region.h>
#include <memory/failing_allocations.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using V = gxVector<2>;

// A round outline with waves; a hole within it.
std::vector<V> wave(std::size_t count, double radius) {
  std::vector<V> points;
  for (std::size_t i = 0; i < count; ++i) {
    const double angle =
        2.0 * 3.14159265358979323846 * static_cast<double>(i) / static_cast<double>(count);
    const double r = radius * (1.0 + 0.1 * std::sin(9.0 * angle));
    points.emplace_back(r * std::cos(angle), r * std::sin(angle));
  }
  return points;
}

V place(int i) {
  return V(130.0 * std::sin(i * 0.7), 130.0 * std::cos(i * 1.1));
}

struct Question {
  std::string name;
  std::function<double(const gxRegion&, const V&)> ask;
};

const std::vector<Question>& questions() {
  static const std::vector<Question> all = {
      {"containment", [](const gxRegion& r, const V& p) { return r.inside(p, false) ? 1.0 : 0.0; }},
      {"nearest", [](const gxRegion& r, const V& p) { return r.gxContour::closestPoint(p, false).x(); }},
      {"crossings",
       [](const gxRegion& r, const V& p) {
         return static_cast<double>(r.intersections(gxLineSeg(p, p * -0.5), true).size());
       }},
      {"area", [](const gxRegion& r, const V&) { return r.area(true); }},
      {"centre", [](const gxRegion& r, const V&) { return r.centerOfMass(true).x(); }},
      {"length", [](const gxRegion& r, const V&) { return r.length(); }},
      {"self-crossing", [](const gxRegion& r, const V&) { return r.isSelfIntersecting() ? 1.0 : 0.0; }},
      {"circle",
       [](const gxRegion& r, const V&) { return r.encloseCircle(gxContourDefs::eFirstPoint).radius(); }},
  };
  return all;
}

constexpr int kTimes = 3000;

double askOften(const Question& question, const gxRegion& region) {
  double sum = 0.0;
  for (int i = 0; i < kTimes; ++i) sum += question.ask(region, place(i));
  return sum;
}

// Asks often until all that is made on demand is there, seals the shape's memory, asks on.  Exits with 0
// where the sums are the same.
[[noreturn]] void askSealed(const Question& question, std::size_t count) {
  memory_test::SealableMemory memory(std::size_t{1} << 25);
  const auto region = std::make_unique<gxRegion>(wave(count, 100.0));
  region->holes(std::vector<gxRegion>{gxRegion(wave(count, 40.0))});
  const double before = askOften(question, *region);
  memory.stopGathering();
  memory.seal();
  const double after = askOften(question, *region);
  std::_Exit(after == before && memory.used() > count * sizeof(V) ? 0 : 1);
}

class ReadsWriteNothing : public testing::TestWithParam<Question> {};

TEST_P(ReadsWriteNothing, OnceWhatIsMadeOnDemandIsThere) {
  for (const std::size_t count : {5U, 100U, 1000U}) {
    EXPECT_EXIT(askSealed(GetParam(), count), testing::ExitedWithCode(0), "")
        << GetParam().name << " of " << count << " points";
  }
}
INSTANTIATE_TEST_SUITE_P(All, ReadsWriteNothing, testing::ValuesIn(questions()), [](const auto& one) {
  std::string name = one.param.name;
  std::erase(name, '-');
  return name;
});

// That the seal holds: the process ends on a write.
TEST(SealedMemory, EndsTheProcessOnAWrite) {
  const auto write = [] {
    memory_test::SealableMemory memory(std::size_t{1} << 20);
    const auto region = std::make_unique<gxRegion>(wave(20, 100.0));
    memory.stopGathering();
    memory.seal();
    region->cachedVectorSize(7);
    std::_Exit(0);
  };
  EXPECT_EXIT(
      write(), [](int status) { return !testing::ExitedWithCode(0)(status); }, "");
}

}  // namespace
