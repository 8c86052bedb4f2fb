/// Which records are answered: --select 'area>=10 and holes=0'.
#pragma once

#include "row.h"

#include <string>
#include <vector>

/// Comparisons of columns with numbers, all of which must hold.  A NaN passes none but "!=".
class Selection {
 public:
  Selection() = default;
  /// Throws: UsageError.
  Selection(const std::string& text, const std::vector<Column>& columns);

  bool isEmpty() const { return tests_.empty(); }
  bool passes(const Row& row) const;
  /// Adds the columns that are compared to those that are wanted.
  void want(std::vector<bool>& wanted) const;

 private:
  enum class Compare { eLess, eAtMost, eEqual, eUnequal, eAtLeast, eMore };
  struct Test {
    Scalar scalar;
    Compare compare;
    double number;
  };
  std::vector<Column> columns_;
  std::vector<Test> tests_;
};
