/// Rows of cells with aligned columns.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

/// Aligns rows of cells that are parted by tabs, a thousand at a time.
class Table {
 public:
  Table(std::ostream& out, std::string head) : out_(out), head_(std::move(head)) {}

  /// Takes rows, each with its line end; may write.
  void add(std::string_view rows);
  /// Writes what has been taken, and the head where nothing has been written yet.
  void flush();

 private:
  std::ostream& out_;
  std::string head_;
  std::string rows_;
  std::size_t count_ = 0;
  bool isBegun_ = false;
  std::vector<std::size_t> widths_;
};
