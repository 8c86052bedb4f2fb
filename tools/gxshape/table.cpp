// A table in blocks: a thousand rows are kept, measured and written, so that any number of rows streams.
// Columns never grow narrower from block to block.  Cells are views of the kept text; nothing is copied.
#include "table.h"

#include <algorithm>
#include <ostream>

namespace {

using Cells = std::vector<std::vector<std::string_view>>;

// In letters, not bytes.
std::size_t lengthOf(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xc0U) != 0x80U;
  }));
}

void split(std::string_view text, Cells& rows) {
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    auto& row = rows.emplace_back();
    for (std::size_t tab = 0; tab != std::string_view::npos;) {
      tab = line.find('\t');
      row.push_back(line.substr(0, tab));
      if (tab != std::string_view::npos) line.remove_prefix(tab + 1);
    }
    text.remove_prefix(end + 1);
  }
}

void append(const std::vector<std::string_view>& row, const std::vector<std::size_t>& widths,
            std::string& out) {
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (i > 0) out += "  ";
    out.append(widths[i] - lengthOf(row[i]), ' ');
    out += row[i];
  }
  out += '\n';
}

}  // namespace

void Table::add(std::string_view rows) {
  constexpr std::size_t kBlock = 1000;
  while (!rows.empty()) {
    const std::size_t end = rows.find('\n');
    rows_ += rows.substr(0, end + 1);
    rows.remove_prefix(end + 1);
    if (++count_ == kBlock) flush();
  }
}

void Table::flush() {
  if (count_ == 0 && isBegun_) return;
  Cells cells;
  if (!isBegun_) split(head_, cells);
  split(rows_, cells);
  for (const auto& row : cells) {
    widths_.resize((std::max)(widths_.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths_[i] = (std::max)(widths_[i], lengthOf(row[i]));
  }
  std::string text;
  for (const auto& row : cells) append(row, widths_, text);
  out_.write(text.data(), static_cast<std::streamsize>(text.size()));
  isBegun_ = true;
  rows_.clear();
  count_ = 0;
}
