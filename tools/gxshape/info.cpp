// info: what a file holds, in one line.
#include "files.h"
#include "run.h"

#include <velstd/number_text.h>

#include <algorithm>
#include <iostream>

namespace {

struct Totals {
  std::uint64_t records = 0, regions = 0, sets = 0, open = 0, points = 0, failed = 0, holes = 0,
                bare = 0;
  double low[2] = {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
  double high[2] = {-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

  void add(const gxRecord& record) {
    using Kind = gxRecord::Kind;
    ++records;
    regions += record.kind == Kind::eRegion ? 1U : 0U;
    sets += record.kind == Kind::eSet ? 1U : 0U;
    open += record.kind == Kind::eOpen ? 1U : 0U;
    bare += record.kind == Kind::ePoints ? 1U : 0U;
    holes += record.holeCount();
    points += record.points.size();
    for (const auto& p : record.points) {
      if (p.x() < low[0]) low[0] = p.x();
      if (p.y() < low[1]) low[1] = p.y();
      if (p.x() > high[0]) high[0] = p.x();
      if (p.y() > high[1]) high[1] = p.y();
    }
  }
};

std::string counted(std::uint64_t count, const char* one) {
  return std::to_string(count) + ' ' + one + (count == 1 ? "" : "s");
}

std::string lineOf(const Totals& t) {
  std::string line = counted(t.records, "record") + " (" + counted(t.regions, "region") + ", " +
                     counted(t.sets, "set") + ", " + std::to_string(t.open) + " open";
  if (t.bare > 0) line += ", " + std::to_string(t.bare) + " of points";
  line += "), " + counted(t.holes, "hole") + ", " + counted(t.points, "point");
  if (t.low[0] <= t.high[0] && t.low[1] <= t.high[1]) {
    line += ", box";
    for (const double side : {t.low[0], t.low[1], t.high[0], t.high[1]})
      line += ' ' + gfNumberText(side);
  }
  if (t.failed > 0) line += ", " + std::to_string(t.failed) + " failed";
  return line;
}

// Returns the status of one file.
int tellOf(const std::string& file, const Options& options) {
  Input input(file);
  gxReadOptions how;
  how.format = options.format;
  how.limits = options.limits;
  gxRecordReader reader(input.stream(), how);
  Totals totals;
  gxRawRecord raw;
  gxRecord record;
  while (reader.cut(raw)) {
    try {
      reader.parse(raw, record);
      totals.add(record);
    } catch (const gxReadError& error) {
      if (++totals.failed <= 10)
        std::cerr << "gxshape: " << input.name() << ": " << error.what() << '\n';
    }
  }
  const bool empty = reader.format() == gxFormat::eUnknown;
  std::cout << input.name() << ": " << (empty ? "empty" : gfFormatName(reader.format())) << ", "
            << lineOf(totals) << '\n';
  return totals.failed > 0 ? 1 : 0;
}

}  // namespace

int runInfo(const Options& options) {
  int status = 0;
  for (const auto& file : options.files.empty() ? std::vector<std::string>{"-"} : options.files) {
    try {
      status = (std::max)(status, tellOf(file, options));
    } catch (const gxReadError& error) {
      std::cerr << "gxshape: " << (file == "-" ? "(standard input)" : file) << ": " << error.what()
                << '\n';
      status = 3;
    } catch (const FileError& error) {
      std::cerr << "gxshape: " << error.text << '\n';
      status = 3;
    }
  }
  return status;
}
