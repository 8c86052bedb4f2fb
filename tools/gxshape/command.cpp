// What commands share: making one by its name, reading their arguments.
#include "command.h"

#include <fstream>
#include <string_view>

std::vector<double> numbersOf(const std::string& option, const std::string& text, std::size_t count) {
  std::vector<double> numbers;
  std::string_view rest = text;
  while (true) {
    const std::size_t comma = rest.find(',');
    const std::string field(rest.substr(0, comma));
    try {
      std::size_t used = 0;
      numbers.push_back(std::stod(field, &used));
      if (used != field.size()) throw UsageError{option + ": number expected, found '" + field + "'"};
    } catch (const std::logic_error&) {
      throw UsageError{option + ": number expected, found '" + field + "'"};
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
  for (const auto make : {makeMeasure, makeDescribe, makePlaces, makeChecks, makeFit, makeShapes}) {
    if (auto command = make(options)) return command;
  }
  throw UsageError{"no command '" + options.command + "'"};
}
