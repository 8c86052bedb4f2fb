// What commands share: making one by its name, reading their arguments.
#include "command.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string_view>

namespace {

bool isNumber(const std::string& word) {
  char* end = nullptr;
  std::strtod(word.c_str(), &end);
  return !word.empty() && *end == '\0';
}

std::ptrdiff_t commasIn(const std::string& text) {
  return std::count(text.begin(), text.end(), ',');
}

}  // namespace

std::vector<std::string> withNumbersBehindDashes(
    const std::vector<std::string>& words,
    const std::function<std::ptrdiff_t(const std::string&)>& numbersOfOption) {
  std::vector<std::string> out;
  std::size_t at = 0;
  while (at < words.size() && words[at] != "--") {
    out.push_back(words[at++]);
    const bool hasDashes = at + 1 < words.size() && words[at] == "--" && out.back().starts_with("--");
    const std::ptrdiff_t most = hasDashes ? numbersOfOption(out.back()) : 0;
    if (most == 0) continue;
    std::string value = words[at + 1];
    at += 2;
    while (at < words.size() && commasIn(value) + 1 < most && isNumber(words[at]))
      value += ',' + words[at++];
    out.back() += '=' + value;
  }
  out.insert(out.end(), words.begin() + static_cast<std::ptrdiff_t>(at), words.end());
  return out;
}

std::vector<double> numbersOf(const std::string& option, const std::string& text, std::size_t count) {
  const auto wrong = [&](const std::string& field) {
    return UsageError{option + ": number expected, found '" + field + "'"};
  };
  std::vector<double> numbers;
  std::string_view rest = text;
  while (true) {
    const std::size_t comma = rest.find(',');
    const std::string field(rest.substr(0, comma));
    try {
      std::size_t used = 0;
      numbers.push_back(std::stod(field, &used));
      if (used != field.size()) throw wrong(field);
    } catch (const std::logic_error&) {
      throw wrong(field);
    }
    if (comma == std::string_view::npos) break;
    rest.remove_prefix(comma + 1);
  }
  if (numbers.size() != count) {
    throw UsageError{option + ": " + std::to_string(count) + " numbers expected, as " +
                     (count == 2 ? "10,20" : "0,0,40,30") + ", found '" + text + "'"};
  }
  return numbers;
}

gxVector<2> pointOf(const std::string& option, const std::string& text) {
  const auto numbers = numbersOf(option, text, 2);
  return {numbers[0], numbers[1]};
}

gxFillRule fillRuleOf(std::string name) {
  std::replace(name.begin(), name.end(), '_', '-');
  if (name == "even-odd") return gxFillRule::eEvenOdd;
  if (name == "non-zero") return gxFillRule::eNonZero;
  if (name == "positive") return gxFillRule::ePositive;
  if (name == "outer") return gxFillRule::eOuter;
  throw UsageError{"--rule: even-odd, non-zero, positive or outer, not '" + name + "'"};
}

gxBorders bordersOf(const gxRecord& record) {
  std::vector<gxBorders::Ring> rings;
  for (std::size_t r = 0; r < record.ringCount(); ++r)
    rings.push_back({record.ring(r), record.kind != gxRecord::Kind::eOpen});
  return gxBorders(std::move(rings));
}

std::vector<gxRecord> recordsOf(const std::string& file, const Options& options) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw FileError{file + ": cannot be read"};
  try {
    gxReadOptions how;
    how.limits = options.limits;
    gxRecordReader reader(in, how);
    std::vector<gxRecord> records;
    gxRecord record;
    while (reader.next(record)) records.push_back(record);
    return records;
  } catch (const gxReadError& error) {
    throw FileError{file + ": " + error.what()};
  }
}

gxRecord firstRecordOf(const std::string& file, const Options& options) {
  auto records = recordsOf(file, options);
  if (records.empty()) throw FileError{file + ": holds no record"};
  return std::move(records.front());
}

std::unique_ptr<Command> makeCommand(const Options& options) {
  for (const auto make : {makeMeasure, makeDescribe, makePlaces, makeChecks, makeCompare, makeForm,
                          makeFit, makeShapes, makeDraw}) {
    if (auto command = make(options)) return command;
  }
  throw UsageError{"no command '" + options.command + "'"};
}
