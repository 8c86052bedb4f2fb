// NAME OP NUMBER, joined by "and".  No language: whoever wants more has jq behind a pipe.
#include "select.h"

#include "options.h"

#include <array>
#include <cctype>
#include <cstdlib>
#include <utility>

namespace {

[[noreturn]] void wrong(const std::string& text) {
  throw UsageError{"--select: " + text + "; write it as 'area>=10 and holes=0'"};
}

void skipSpace(const std::string& text, std::size_t& at) {
  while (at < text.size() && text[at] == ' ') ++at;
}

std::string nameAt(const std::string& text, std::size_t& at) {
  skipSpace(text, at);
  const std::size_t first = at;
  while (at < text.size() &&
         (std::isalnum(static_cast<unsigned char>(text[at])) != 0 || text[at] == '_'))
    ++at;
  return text.substr(first, at - first);
}

double numberAt(const std::string& text, std::size_t& at) {
  skipSpace(text, at);
  char* end = nullptr;
  const double value = std::strtod(text.c_str() + at, &end);
  if (end == text.c_str() + at) wrong("number expected at '" + text.substr(at) + "'");
  at = static_cast<std::size_t>(end - text.c_str());
  return value;
}

}  // namespace

Selection::Selection(const std::string& text, const std::vector<Column>& columns) : columns_(columns) {
  static constexpr std::array<std::pair<const char*, Compare>, 7> kOperators = {
      {{"<=", Compare::eAtMost},
       {">=", Compare::eAtLeast},
       {"!=", Compare::eUnequal},
       {"==", Compare::eEqual},
       {"<", Compare::eLess},
       {">", Compare::eMore},
       {"=", Compare::eEqual}}};
  for (std::size_t at = 0; at < text.size();) {
    const std::string name = nameAt(text, at);
    const Scalar scalar = findScalar(columns, name);
    if (!scalar.isFound) wrong("no number '" + name + "' here");
    skipSpace(text, at);
    const auto* found = kOperators.begin();
    while (found != kOperators.end() &&
           text.compare(at, std::string(found->first).size(), found->first) != 0)
      ++found;
    if (found == kOperators.end()) wrong("one of < <= = != >= > expected behind '" + name + "'");
    at += std::string(found->first).size();
    tests_.push_back({scalar, found->second, numberAt(text, at)});
    skipSpace(text, at);
    if (at == text.size()) break;
    if (nameAt(text, at) != "and") wrong("'and' expected");
  }
}

bool Selection::passes(const Row& row) const {
  for (const Test& test : tests_) {
    const double value = valueOf(columns_[test.scalar.column], test.scalar, row);
    bool holds = false;
    switch (test.compare) {
      case Compare::eLess: holds = value < test.number; break;
      case Compare::eAtMost: holds = value <= test.number; break;
      case Compare::eEqual: holds = value == test.number; break;
      case Compare::eUnequal: holds = value != test.number; break;
      case Compare::eAtLeast: holds = value >= test.number; break;
      case Compare::eMore: holds = value > test.number; break;
    }
    if (!holds) return false;
  }
  return true;
}

void Selection::want(std::vector<bool>& wanted) const {
  for (const Test& test : tests_) wanted[test.scalar.column] = true;
}
