/// Answers: columns with names, and rows of values.
#pragma once

#include <gauge/places.h>
#include <velstd/vector.h>

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

enum class Type : std::uint8_t { eNumber, eAngle, eInteger, eText, eBool, ePoint, eBox, ePlace, eJson };

struct Column {
  const char* name;
  Type type;
  /// Takes so long that it is only given where --only names it, or with --all.
  bool isExtra = false;
};

/// One value; which members count the type of its column says.
struct Value {
  double number[4] = {};
  gxPlace place;
  std::string text;

  void set(double value) { number[0] = value; }
  void set(const gxVector<2>& point) {
    number[0] = point.x();
    number[1] = point.y();
  }
  void setBox(const gxVector<2>& low, const gxVector<2>& high) {
    set(low);
    number[2] = high.x();
    number[3] = high.y();
  }
};

/// One row: a value for every column of the command, those that are not wanted untouched.
struct Row {
  std::vector<Value> values;
  gxStatus status = gxStatus::eOk;
  bool isGood = true;  ///< false where the record was found wanting

  /// Puts numbers into the columns from the first on.
  void set(std::size_t first, std::initializer_list<double> numbers) {
    for (const double number : numbers) values[first++].set(number);
  }
};

/// The columns of a run: which are shown, in which order, and how.
class Layout {
 public:
  enum class Style : std::uint8_t { eTable, eCsv, eJsonl };

  Layout(const std::vector<Column>& columns, const std::vector<std::string>& only, Style style,
         bool degrees, bool withId, bool withExtras = false);

  bool isShown(std::size_t column) const { return shown_[column]; }
  Style style() const { return style_; }
  /// Returns the heads: of CSV with its line end, of a table cell by cell with tabs.
  std::string head() const;
  /// Appends a row.  Table cells are parted by tabs, to be aligned later.
  void append(std::string_view idText, const Row& row, std::string& out) const;
  /// Appends the row of a record that failed.
  void appendError(std::string_view idText, const std::string& code, long number,
                   const std::string& message, std::string& out) const;

 private:
  void appendJson(const Column& column, const Value& value, std::string& out) const;
  void appendCells(const Column& column, const Value& value, std::string& out) const;
  void appendCell(double number, std::string& out) const;
  void appendHeads(const Column& column, std::vector<std::string>& heads) const;

  std::vector<Column> columns_;
  std::vector<std::size_t> order_;
  std::vector<bool> shown_;
  Style style_;
  bool degrees_;
  bool withId_;
};

/// Returns the scalar that a name as "area" or "centre_x" stands for; NaN where the row has none.
/// `find` gives column and part once; `valueOf` reads it.
struct Scalar {
  std::size_t column = 0;
  std::size_t part = 0;
  bool isFound = false;
};
Scalar findScalar(const std::vector<Column>& columns, std::string_view name);
double valueOf(const Column& column, const Scalar& scalar, const Row& row);

/// Returns the name most like this one, empty where none is near.
std::string nearest(std::string_view name, const std::vector<std::string>& names);
