/// What was asked on the command line.
#pragma once

#include <io/limits.h>
#include <io/reader.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

enum class OnError { eEmit, eSkip, eFail };

struct Options {
  std::string command;
  std::vector<std::string> files;

  // ---- Of all commands ------------------------------------------------------------------------------
  gxFormat format = gxFormat::eUnknown;
  std::string output;  ///< "table", or the word of a format; empty for the command's own
  std::string to;
  std::vector<std::string> only;
  std::string select;
  std::uint64_t limit = (std::numeric_limits<std::uint64_t>::max)();
  std::uint64_t skip = 0;
  std::string idField;
  unsigned jobs = 0;  ///< 0: all cores
  OnError onError = OnError::eEmit;
  bool logJsonl = false;
  bool lines = false;
  bool stats = false;
  bool time = false;
  bool degrees = false;
  bool quiet = false;
  gxReadLimits limits;

  // ---- Of some --------------------------------------------------------------------------------------
  bool outlineOnly = false;
  std::vector<std::string> at;
  std::string pointsFile;
  double within = 0.0;
  double max = std::numeric_limits<double>::quiet_NaN();
  std::string rule = "even-odd";
  bool report = false;
  std::string golden;
  std::string withFile;
  double step = 0.0;
  double by = std::numeric_limits<double>::quiet_NaN();
  std::string join = "round";
  std::string ends = "round";
  double tolerance = std::numeric_limits<double>::quiet_NaN();
  bool keepApart = false;
  std::string box;
  std::string kind;
  std::string reference;
  std::string datum;
  std::string align = "none";
  std::string weights;
  bool all = false;  ///< also the columns that take long
  std::string line;
  std::string operation = "intersection";
  std::string layers;
  std::string behind;
  std::string y = "down";
  std::string view;
  std::string scaleBar;
  double size = 800.0;
};

/// A command line that cannot be meant; the text says why.
struct UsageError {
  std::string text;
};
/// A file that cannot be read or written.
struct FileError {
  std::string text;
};
