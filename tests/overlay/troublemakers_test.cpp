// The corpus of overlays: first the data against the exact judge, then the library against the data.
#include <overlay/troublemakers.h>

#include <overlay/cgal_judge.h>
#include <overlay/check.h>
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

INSTANTIATE_TEST_SUITE_P(Corpus, Troublemakers, testing::ValuesIn(troubleNames()),
                         [](const testing::TestParamInfo<std::string>& one) { return one.param; });

}  // namespace
