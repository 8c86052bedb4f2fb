// The numbers of the exceptions of all libraries: a caller on the other side of a module's border tells
// errors apart by nothing else.
//
// Covers ch_core/cntrtmpl.h
#include <gtest/gtest.h>
#include <support/source_folder.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <string>

namespace {

// Every class that takes a number, by the text of the headers and sources: none can be left out.
std::multimap<long, std::string> numbersInTheText() {
  const std::regex declared(
      R"(gx_ConcreteException<\s*([A-Za-z_:]+)\s*,\s*[A-Za-z_:]+\s*,\s*(0x[0-9a-fA-F]+)\s*>)");
  const std::filesystem::path root(sourceFolder());
  std::multimap<long, std::string> numbers;
  for (const char* folder : {"base", "cntr", "ch_core", "gauge", "overlay"}) {
    if (!exists(root / folder)) continue;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root / folder)) {
      const std::string kind = entry.path().extension().string();
      if (kind != ".h" && kind != ".cpp") continue;
      std::ifstream file(entry.path());
      const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
      for (std::sregex_iterator it(text.begin(), text.end(), declared), end; it != end; ++it) {
        const std::string where = entry.path().filename().string() + ": " + (*it)[1].str();
        numbers.emplace(std::stol((*it)[2].str(), nullptr, 16), where);
      }
    }
  }
  return numbers;
}

}  // namespace

TEST(ExceptionNumbers, AreUsedOnceEach) {
  const std::multimap<long, std::string> numbers = numbersInTheText();
  EXPECT_GE(numbers.size(), 21U) << "the classes are found";
  for (auto one = numbers.begin(); one != numbers.end(); ++one) {
    const auto next = std::next(one);
    if (next != numbers.end() && next->first == one->first) {
      ADD_FAILURE() << std::hex << one->first << " is " << one->second << " and " << next->second;
    }
    EXPECT_NE(one->first, 0x10004681) << one->second << ": no class may take this one";
  }
}
