// Runs every file of the corpus: one test a file, named by it.
#include <cntr/region.h>
#include <support/exposed.h>
#include <support/shape_text.h>
#include <support/source_folder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>

namespace {

using Numbers = std::vector<double>;

struct Question {
  std::string ask;
  std::string expect;
  std::string throws;
  double within = 0.0;
};

struct Case {
  std::string name;
  std::string shape;
  std::string points;
  std::vector<std::string> holes;
  std::vector<Question> questions;
};

// ---- Reading ------------------------------------------------------------------------------------

std::string trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r");
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

void take(Case& c, const std::string& key, const std::string& value) {
  if (key == "name") {
    c.name = value;
  } else if (key == "shape") {
    c.shape = value;
  } else if (key == "points") {
    c.points = value;
  } else if (key == "hole") {
    c.holes.push_back(value);
  } else if (key == "ask") {
    c.questions.push_back({value, "", "", 0.0});
  } else if (key == "expect" && !c.questions.empty()) {
    c.questions.back().expect = value;
  } else if (key == "within" && !c.questions.empty()) {
    c.questions.back().within = std::stod(value);
  } else if (key == "throws" && !c.questions.empty()) {
    c.questions.back().throws = value;
  } else {
    throw std::runtime_error("a corpus file cannot have \"" + key + "\" there");
  }
}

Case readCase(const std::filesystem::path& path) {
  std::ifstream file(path);
  Case c;
  std::string line;
  std::string key;
  std::string value;
  const auto finish = [&] {
    if (!key.empty()) take(c, key, trimmed(value));
    key.clear();
  };
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#') continue;
    if (line[0] == ' ') {
      value += line;
      continue;
    }
    finish();
    const auto colon = line.find(':');
    if (colon == std::string::npos) throw std::runtime_error("no key in the line: " + line);
    key = line.substr(0, colon);
    value = line.substr(colon + 1);
  }
  finish();
  if (c.name.empty() || c.shape.empty() || c.questions.empty()) throw std::runtime_error("incomplete");
  return c;
}

Numbers numbersOf(std::istringstream& in) {
  Numbers numbers;
  for (std::string word; in >> word;) numbers.push_back(std::strtod(word.c_str(), nullptr));
  return numbers;
}

// ---- Asking -------------------------------------------------------------------------------------

Numbers flat(const std::vector<gxVector<2>>& points) {
  Numbers numbers;
  for (const gxVector<2>& p : points) {
    numbers.push_back(p.x());
    numbers.push_back(p.y());
  }
  return numbers;
}

Numbers flat(const gxMatrix<2>& m) {
  return {m.m00(), m.m01(), m.m10(), m.m11()};
}

using Ask =
    std::function<Numbers(const ExposedContour& contour, const ExposedRegion& region, const Numbers& a)>;

gxVector<2> pointAt(const Numbers& a, std::size_t i = 0) {
  return {a.at(i), a.at(i + 1)};
}

gxRegion repaired(const ExposedRegion& region, bool hull) {
  gxRegion result;
  hull ? region.outerHull(result) : region.regularize(result);
  return result;
}

// What can be asked.  Contours answer about their edges, regions about their area.
const std::map<std::string, Ask>& asks() {
  using C = const ExposedContour&;
  using R = const ExposedRegion&;
  using A = const Numbers&;
  static const std::map<std::string, Ask> table = {
      {"length", [](C c, R, A) { return Numbers{c.length()}; }},
      {"closestPoint", [](C c, R, A a) { return flat({c.closestPoint(pointAt(a), false)}); }},
      {"closestVertexIndex",
       [](C c, R, A a) { return Numbers{1.0 * static_cast<double>(c.closestVertexIndex(pointAt(a)))}; }},
      {"distToPoint", [](C c, R, A a) { return Numbers{c.distToPoint(pointAt(a), false)}; }},
      {"intersections",
       [](C c, R, A a) { return flat(c.intersections(gxLineSeg(pointAt(a), pointAt(a, 2)), true)); }},
      {"isSelfIntersecting", [](C c, R, A) { return Numbers{c.isSelfIntersecting() ? 1.0 : 0.0}; }},
      {"encloseRect",
       [](C c, R, A) {
         const gxRect r = c.encloseRect(gxXform<2>());
         return flat({r.origin(), r.corner()});
       }},
      {"diameter", [](C c, R, A) { return Numbers{c.diameter(gxContourDefs::eAllPairs)}; }},
      {"meanPosition", [](C c, R, A) { return flat({c.meanPosition()}); }},
      {"medianFeatureSize", [](C c, R, A) { return Numbers{c.medianFeatureSize()}; }},
      {"vertexIndex",
       [](C c, R, A a) {
         const auto found = c.vertexIndex(pointAt(a), a.at(2));
         return Numbers(found.begin(), found.end());
       }},
      {"area", [](C, R r, A) { return Numbers{r.area(true)}; }},
      {"centerOfMass", [](C, R r, A) { return flat({r.centerOfMass(true)}); }},
      {"inertiaMatrix", [](C, R r, A) { return flat(r.inertiaMatrix(false)); }},
      {"inside", [](C, R r, A a) { return Numbers{r.inside(pointAt(a), true) ? 1.0 : 0.0}; }},
      {"regularize", [](C, R r, A) { return flat(repaired(r, false).points()); }},
      {"outerHull", [](C, R r, A) { return flat(repaired(r, true).points()); }},
  };
  return table;
}

std::string answered(const Case& c, const Question& question, Numbers& numbers) {
  const auto points = pointsOf(c.points);
  const ExposedContour contour(points, c.shape != "open contour");
  ExposedRegion region(points);
  std::istringstream words(question.ask);
  std::string what;
  words >> what;
  const auto found = asks().find(what);
  if (found == asks().end()) throw std::runtime_error("nobody knows how to ask " + what);
  const Numbers arguments = numbersOf(words);
  try {
    std::vector<gxPtrHandle_const<gxRegion>> holes;
    for (const std::string& hole : c.holes) holes.emplace_back(new gxRegion(pointsOf(hole)));
    if (!holes.empty()) region.holes(holes);
    numbers = found->second(contour, region, arguments);
  } catch (const gxException& error) {
    return error.what();
  }
  return "";
}

bool near(double a, double b, double within) {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  return a == b || std::abs(a - b) <= within;
}

// ---- The tests ----------------------------------------------------------------------------------

std::vector<std::string> files() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(sourceFolder() + "/tests/corpus")) {
    if (entry.path().extension() == ".txt") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

class Corpus : public testing::TestWithParam<std::string> {};

TEST_P(Corpus, StaysRight) {
  const Case c = readCase(sourceFolder() + "/tests/corpus/" + GetParam() + ".txt");
  for (const Question& question : c.questions) {
    SCOPED_TRACE(c.name + ": " + question.ask);
    Numbers got;
    EXPECT_EQ(answered(c, question, got), question.throws);
    std::istringstream words(question.expect);
    const Numbers want = numbersOf(words);
    ASSERT_EQ(got.size(), want.size()) << testing::PrintToString(got);
    for (std::size_t i = 0; i < got.size(); ++i) {
      EXPECT_TRUE(near(got[i], want[i], question.within))
          << "number " << i << " is " << testing::PrintToString(got[i]);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Files, Corpus, testing::ValuesIn(files()),
                         [](const auto& file) { return file.param; });

TEST(CorpusFiles, ThereAreSome) {
  EXPECT_GE(files().size(), 5U);
}

}  // namespace
