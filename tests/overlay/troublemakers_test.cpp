// The corpus of overlays: first the data against the exact judge, then the library against the data.
#include <overlay/troublemakers.h>

#include <overlay/boolean.h>
#include <overlay/cgal_judge.h>
#include <overlay/check.h>
#include <overlay/offset.h>
#include <overlay/repair.h>
#include <overlay/shape_builder.h>
#include <support/overlay_shapes.h>
#include <support/shape_text.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>

namespace {

using judge::Rule;

class Troublemakers : public testing::TestWithParam<std::string> {
 protected:
  Trouble trouble = troubleNamed(GetParam());
};

std::vector<std::string> wordsOf(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

Rule ruleOf(const std::vector<std::string>& words) {
  const std::string name = words.size() > 1 ? words[1] : "even-odd";
  if (name == "non-zero") return Rule::eNonZero;
  if (name == "positive") return Rule::ePositive;
  if (name == "outer") return Rule::eOuter;
  EXPECT_EQ(name, "even-odd");
  return Rule::eEvenOdd;
}

// The exact question, where the judge can answer it.
judge::Question questionOf(const Trouble& trouble, const std::vector<std::string>& words) {
  if (words[0] == "repair") return judge::repaired(trouble.operands[0], ruleOf(words));
  const std::string what = words[0];
  return judge::combined(trouble.operands, ruleOf(words), [what](const std::vector<bool>& held) {
    const bool any = std::count(held.begin(), held.end(), true) > 0;
    if (what == "union") return any;
    if (what == "difference") return held[0] && std::count(held.begin(), held.end(), true) == 1;
    return std::count(held.begin(), held.end(), false) == 0;
  });
}

bool isExact(const std::string& what) {
  return what == "repair" || what == "union" || what == "difference" || what == "intersection";
}

TEST_P(Troublemakers, haveTheAreasOfTheExactJudge) {
  for (const Trouble::Question& question : trouble.questions) {
    const auto words = wordsOf(question.ask);
    if (!isExact(words[0]) || question.area < 0.0) continue;
    const double area = judge::judgeByCgal(questionOf(trouble, words)).area;
    const double within = question.within >= 0.0 ? question.within : 1e-15 * area;
    EXPECT_NEAR(area, question.area, within) << question.ask;
  }
}

// ---- The library's answers --------------------------------------------------------------------------

gxFillRule fillRuleOf(const std::vector<std::string>& words) {
  return static_cast<gxFillRule>(static_cast<int>(ruleOf(words)));
}

slow::Set answerOf(const std::vector<slow::Set>& operands, const std::vector<std::string>& words) {
  const gxRegionSet a = judge::setFrom(operands[0]);
  if (words[0] == "repair") return judge::plainFrom(gfRepair(a, fillRuleOf(words)).regions);
  const gxRegionSet b = judge::setFrom(operands[1]);
  gxOverlayOptions options;
  options.rule = fillRuleOf(words);
  if (words[0] == "union") return judge::plainFrom(gfUnion(a, b, options));
  if (words[0] == "difference") return judge::plainFrom(gfDifference(a, b, options));
  return judge::plainFrom(gfIntersection(a, b, options));
}

slow::Set offsetOf(const Trouble& trouble, const std::vector<std::string>& words) {
  gxOffsetForm form;
  if (words[2] == "mitre") form.join = gxJoin::eMitre;
  if (words[2] == "bevel") form.join = gxJoin::eBevel;
  const double distance = std::stod(words[1]);
  if (trouble.operands.empty()) {
    return judge::plainFrom(gfOffsetPath(gxContour(trouble.path, false), distance, form));
  }
  return judge::plainFrom(gfOffset(judge::setFrom(trouble.operands[0]), distance, form));
}

std::size_t holesOf(const slow::Set& set) {
  std::size_t holes = 0;
  for (const slow::Region& region : set) holes += region.holes.size();
  return holes;
}

void expectAnswer(const Trouble::Question& question, const slow::Set& answer,
                  const judge::Rings& given) {
  EXPECT_EQ(judge::faultOf(answer), "");
  EXPECT_EQ(judge::disorderOf(answer), "");
  const double area = judge::areaOf(answer);
  if (question.rounded >= 0.0) {
    EXPECT_EQ(area, question.rounded);
  }
  if (question.area >= 0.0) {
    const double bend = 2.83 * judge::ulpOf(given) * judge::lengthOf(given);
    const double within = question.within >= 0.0 ? question.within : 1e-12 * question.area;
    EXPECT_NEAR(area, question.area, within + bend);
  }
  if (question.regions >= 0) {
    EXPECT_EQ(static_cast<int>(answer.size()), question.regions);
  }
  if (question.holes >= 0) {
    EXPECT_EQ(static_cast<int>(holesOf(answer)), question.holes);
  }
  if (question.points >= 0) {
    std::size_t points = 0;
    for (const judge::Ring& ring : judge::ringsOf(answer)) points += ring.size();
    EXPECT_EQ(static_cast<int>(points), question.points);
  }
}

// A repair moves no vertex; where there are no crossings, there are no others.
void expectVerticesKept(const Trouble& trouble, const std::vector<std::string>& words,
                        const slow::Set& answer, const judge::Rings& given) {
  if (words[0] == "repair") {
    const gxRepaired repaired = gfRepair(judge::setFrom(trouble.operands[0]), fillRuleOf(words));
    EXPECT_EQ(repaired.report.largestMove, 0.0);
    return;
  }
  for (const judge::Ring& ring : judge::ringsOf(answer)) {
    for (const gxVector<2>& p : ring) {
      EXPECT_TRUE(std::any_of(given.begin(), given.end(), [&](const judge::Ring& other) {
        return std::find(other.begin(), other.end(), p) != other.end();
      }));
    }
  }
}

judge::Rings givenRings(const Trouble& trouble) {
  judge::Rings given;
  for (const slow::Set& operand : trouble.operands) {
    for (const judge::Ring& ring : judge::ringsOf(operand)) given.push_back(ring);
  }
  if (!trouble.path.empty()) given.push_back(trouble.path);
  return given;
}

TEST_P(Troublemakers, areNoTroubleHere) {
  const judge::Rings given = givenRings(trouble);
  for (const Trouble::Question& question : trouble.questions) {
    SCOPED_TRACE(question.ask);
    const auto words = wordsOf(question.ask);
    if (words[0] == "check") {
      const auto problems = gfCheck(judge::setFrom(trouble.operands[0]));
      EXPECT_TRUE(std::any_of(problems.begin(), problems.end(), [&](const gxProblem& problem) {
        return gfName(problem.kind) == question.tells;
      }));
      continue;
    }
    const slow::Set answer =
        isExact(words[0]) ? answerOf(trouble.operands, words) : offsetOf(trouble, words);
    expectAnswer(question, answer, given);
    if (question.keepsVertices) expectVerticesKept(trouble, words, answer, given);
  }
}

std::vector<double> bitsOf(const slow::Set& set) {
  std::vector<double> bits;
  for (const slow::Region& region : set) {
    bits.push_back(static_cast<double>(region.holes.size()));
    for (const judge::Ring& ring : judge::ringsOf({region})) {
      bits.push_back(static_cast<double>(ring.size()));
      for (const gxVector<2>& p : ring) bits.insert(bits.end(), {p.x(), p.y()});
    }
  }
  return bits;
}

TEST_P(Troublemakers, giveTheSameBitsHoweverTheyAreSaid) {
  RandomShapes random("troublemakers " + GetParam(), 6);
  while (random.next()) {
    for (const Trouble::Question& question : trouble.questions) {
      const auto words = wordsOf(question.ask);
      if (!isExact(words[0])) continue;
      const slow::Set answer = answerOf(trouble.operands, words);
      std::vector<slow::Set> operands;
      const bool reverse = ruleOf(words) != Rule::ePositive;
      for (const slow::Set& operand : trouble.operands)
        operands.push_back(saidDifferently(random, operand, reverse));
      EXPECT_EQ(bitsOf(answerOf(operands, words)), bitsOf(answer)) << question.ask;
    }
  }
}

TEST_P(Troublemakers, scaleWithPowersOfTwo) {
  for (const int power : {900, -900}) {
    const auto scaled = [power](const slow::Set& set) {
      return mappedSet(set, [power](const auto& p) {
        return gxVector<2>(std::ldexp(p.x(), power), std::ldexp(p.y(), power));
      });
    };
    for (const Trouble::Question& question : trouble.questions) {
      const auto words = wordsOf(question.ask);
      if (!isExact(words[0])) continue;
      std::vector<slow::Set> operands;
      for (const slow::Set& operand : trouble.operands) operands.push_back(scaled(operand));
      EXPECT_EQ(bitsOf(answerOf(operands, words)), bitsOf(scaled(answerOf(trouble.operands, words))))
          << question.ask << " by 2^" << power;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Corpus, Troublemakers, testing::ValuesIn(troubleNames()),
                         [](const testing::TestParamInfo<std::string>& one) { return one.param; });

}  // namespace
