// The source of random shapes: it repeats, and its kinds are what they say.
#include <support/random_shapes.h>
#include <support/slow_truth_contour.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>

namespace {

TEST(RandomShapes, TheSameTagGivesTheSameRounds) {
  // A soak takes its seeds from the clock, unless one is given.
  const bool isGiven = std::getenv("GXSHAPE_SOAK") != nullptr && std::getenv("GXSHAPE_SEED") == nullptr;
  if (isGiven) setenv("GXSHAPE_SEED", "5", 1);
  RandomShapes first("the same tag", 3);
  RandomShapes second("the same tag", 3);
  if (isGiven) unsetenv("GXSHAPE_SEED");
  while (first.next() && second.next()) {
    EXPECT_EQ(first.trace(), second.trace());
    for (int i = 0; i < 20; ++i) EXPECT_EQ(first.uniform(-1.0, 1.0), second.uniform(-1.0, 1.0));
  }
}

// A variable of the environment, put back at the end.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    setenv(name, value, 1);
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable() {
    if (old_) {
      setenv(name_, old_->c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }

 private:
  const char* name_;
  std::optional<std::string> old_;
};

int roundsOf(int asked) {
  RandomShapes random("rounds of a soak", asked);
  int count = 0;
  while (random.next()) ++count;
  return count;
}

TEST(RandomShapes, ASoakMakesFiftyTimesTheRoundsAndGoesOnWhileThereIsTime) {
  const Variable soak("GXSHAPE_SOAK", "1");
  {
    const Variable none("GXSHAPE_SOAK_SECONDS", "0");
    EXPECT_EQ(roundsOf(60), 3000);
    EXPECT_EQ(roundsOf(3000), 150'000);
    EXPECT_EQ(roundsOf(7), 350);
  }
  const Variable many("GXSHAPE_SOAK_SECONDS", "100");
  EXPECT_EQ(roundsOf(60), 100'000);
  EXPECT_EQ(roundsOf(3000), 150'000);
  EXPECT_EQ(roundsOf(7), 350) << "costly rounds";
  const Variable twice("GXSHAPE_SOAK", "2");
  EXPECT_EQ(roundsOf(60), 200'000);
  EXPECT_EQ(roundsOf(7), 700);
  const Variable alone("GXSHAPE_ROUND", "12345");
  EXPECT_EQ(roundsOf(60), 1);
}

TEST(RandomShapes, RoundsDiffer) {
  RandomShapes random("rounds", 2);
  ASSERT_TRUE(random.next());
  const double first = random.uniform(0.0, 1.0);
  ASSERT_TRUE(random.next());
  EXPECT_NE(first, random.uniform(0.0, 1.0));
}

TEST(RandomShapes, NumbersStayInTheirRange) {
  RandomShapes random("ranges", 1);
  ASSERT_TRUE(random.next());
  for (int i = 0; i < 1000; ++i) {
    const double number = random.uniform(2.0, 2.5);
    EXPECT_TRUE(number >= 2.0 && number < 2.5);
    const int whole = random.integer(-2, 2);
    EXPECT_TRUE(whole >= -2 && whole <= 2);
  }
}

TEST(RandomShapes, StarsCombsSpiralsAndRegularOutlinesDoNotCrossThemselves) {
  RandomShapes random("simple kinds", 20);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    for (const OutlineKind kind :
         {OutlineKind::eStar, OutlineKind::eComb, OutlineKind::eSpiral, OutlineKind::eRegular}) {
      // A spiral of three turns needs ten points a turn and side: with four, its chords reach the next turn.
      const int count = kind == OutlineKind::eSpiral ? random.integer(60, 120) : random.integer(24, 60);
      const slow::Outline outline{random.outline(kind, count), true};
      EXPECT_FALSE(slow::isSelfIntersecting(outline)) << static_cast<int>(kind);
    }
  }
}

TEST(RandomShapes, SpecialKindsAreSpecial) {
  RandomShapes random("special kinds", 20);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    EXPECT_TRUE(slow::isSelfIntersecting({random.outline(OutlineKind::ePentagram, 7), true}));
    for (const auto& p : random.outline(OutlineKind::eLattice, 9)) {
      EXPECT_EQ(p.x(), std::round(p.x()));
    }
    const auto equal = random.outline(OutlineKind::eEqual, 5);
    for (const auto& p : equal) EXPECT_EQ(p, equal[0]);
    bool special = false;
    for (const auto& p : random.outline(OutlineKind::eNotFinite, 9)) {
      special = special || !(std::abs(p.x()) < 1e300 && std::abs(p.y()) < 1e300);
    }
    EXPECT_TRUE(special);
  }
}

TEST(RandomShapes, HolesLieInsideAndApart) {
  RandomShapes random("holes apart", 50);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const OutlineWithHoles shape = random.outlineWithHoles();
    for (std::size_t i = 0; i < shape.holes.size(); ++i) {
      const slow::Outline hole{shape.holes[i], true};
      EXPECT_TRUE(slow::intersections({shape.outline, true}, hole).empty());
      for (std::size_t j = 0; j < i; ++j) {
        EXPECT_TRUE(slow::intersections({shape.holes[j], true}, hole).empty());
      }
    }
  }
}

}  // namespace
