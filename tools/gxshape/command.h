/// What a subcommand is: columns or shapes, made of one record.
#pragma once

#include "options.h"
#include "row.h"

#include <gauge/borders.h>
#include <io/record.h>
#include <overlay/options.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// What a record was answered with.
struct Answer {
  std::vector<Row> rows;         ///< of a command that answers
  std::vector<gxRecord> shapes;  ///< of a command that makes shapes
  std::size_t rowCount = 0;
  std::string document;  ///< of a command that draws
  bool isGood = true;    ///< false where the record was found wanting

  void clear() {
    rowCount = 0;
    shapes.clear();
    isGood = true;
  }
  /// Returns the next row, with `columns` values; what it held before is still in it.
  Row& addRow(std::size_t columns) {
    if (rows.size() == rowCount) rows.emplace_back();
    Row& row = rows[rowCount++];
    row.values.resize(columns);
    row.status = gxStatus::eOk;
    return row;
  }
};

/// A subcommand, made for a run.  `answer` is called by several threads at a time.
class Command {
 public:
  Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;
  virtual ~Command() = default;

  /// Columns of the answers; none of a command that makes shapes.
  const std::vector<Column>& columns() const { return columns_; }
  bool givesShapes() const { return columns_.empty(); }
  /// Which columns are asked for; others may stay as they are.
  void wanted(const std::vector<bool>& columns) { wanted_ = columns; }

  virtual void answer(const gxRecord& record, Answer& answer) const = 0;
  /// Whether all records are taken in first, and answered together by `finish`.
  virtual bool joinsAll() const { return false; }
  virtual void finish(Answer&) const {}
  /// Whether `finish` leaves a document, which goes out as it is.
  virtual bool draws() const { return false; }

 protected:
  /// Whether a column from the first to the last is asked for.
  bool wants(std::size_t first, std::size_t last) const {
    for (std::size_t i = first; i <= last; ++i) {
      if (wanted_.empty() || wanted_[i]) return true;
    }
    return false;
  }
  std::vector<Column> columns_;
  std::vector<bool> wanted_;
};

/// Makes the command of the options.  Throws: UsageError, FileError.
std::unique_ptr<Command> makeCommand(const Options& options);

// The makers of single families, each in its file.
std::unique_ptr<Command> makeMeasure(const Options& options);
std::unique_ptr<Command> makeDescribe(const Options& options);
std::unique_ptr<Command> makePlaces(const Options& options);   // inside, closest, distance, intersect
std::unique_ptr<Command> makeChecks(const Options& options);   // check
std::unique_ptr<Command> makeCompare(const Options& options);  // compare
std::unique_ptr<Command> makeForm(const Options& options);     // form
std::unique_ptr<Command> makeFit(const Options& options);      // fit
std::unique_ptr<Command> makeShapes(
    const Options& options);  // hull, repair, union, clip, offset, simplify, convert

std::unique_ptr<Command> makeDraw(const Options& options);  // draw

/// The measures that --select knows of for any record: those of `measure`.
const std::vector<Column>& measureColumns();
void measureInto(const gxRecord& record, bool outlineOnly, Row& row);

/// Returns the rule of that name.  Throws: UsageError.
gxFillRule fillRuleOf(std::string name);
/// Returns the borders of all rings; they look at the record's points.
gxBorders bordersOf(const gxRecord& record);

/// Makes "--by -- -1" into "--by=-1".  What has several numbers may have them as words of their own there:
/// "--at -- -5 12" is "--at=-5,12".  A "--" behind another word ends the options, as ever.  `numbersOfOption`
/// tells how many an option takes, 0 for what is no option with a value.
std::vector<std::string> withNumbersBehindDashes(
    const std::vector<std::string>& words,
    const std::function<std::ptrdiff_t(const std::string&)>& numbersOfOption);
/// Reads "X,Y" or another list of numbers.  Throws: UsageError that names the option.
std::vector<double> numbersOf(const std::string& option, const std::string& text, std::size_t count);
gxVector<2> pointOf(const std::string& option, const std::string& text);
/// Reads all records of a file, or its first.  Throws: FileError.
std::vector<gxRecord> recordsOf(const std::string& file, const Options& options);
gxRecord firstRecordOf(const std::string& file, const Options& options);
