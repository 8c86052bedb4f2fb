// Cutting lines.
//
//   WKT, WKB, JSON lines   up to the line feed.
//   CSV                    lines as long as the id stays the same, up to an empty one; without a column of
//                          ids, up to an empty line.  A line feed in quotes ends no line.
//
// A line that is longer than the limit is passed over while it is read, block by block.
#include <io/internal/cutter.h>

namespace {

class Lines final : public gx_Cutter {
 public:
  Lines(std::unique_ptr<gx_InputBlock> in, const gxReadOptions& options, bool csv)
      : gx_Cutter(std::move(in), options), everyLine_(options.everyLine), csv_(csv) {}

  // The names of the columns, where the first line has some.
  gxCsvColumns readHead() {
    gxCsvColumns columns;
    while (true) {
      const std::string_view line = nextLine();
      if (isBlank(line) && lineEnd_ < in_->text().size()) {
        in_->drop(lineEnd_ + 1);
        continue;
      }
      if (line.empty() || !gfIsCsvHead(line)) return columns;
      columns = gfReadCsvHead(line);
      idColumn_ = columns.id;
      in_->drop((std::min)(lineEnd_ + 1, in_->text().size()));
      return columns;
    }
  }

  bool hasBuffered() const override {
    return in_->text().substr(used_).find('\n') != std::string_view::npos;
  }

 protected:
  bool cutNext(gxRawRecord& raw) override { return csv_ ? cutRows(raw) : cutLine(raw); }

 private:
  static bool isBlank(std::string_view line) {
    return line.find_first_not_of(" \t\r") == std::string_view::npos;
  }

  // The line at the beginning of the window; lineEnd_ is its line feed, or the end.
  std::string_view nextLine() {
    const std::size_t found = find('\n', 0);
    lineEnd_ = found == std::string_view::npos ? in_->text().size() : found;
    return in_->text().substr(0, lineEnd_);
  }

  bool cutLine(gxRawRecord& raw) {
    while (true) {
      const std::string_view line = nextLine();
      const bool atEnd = lineEnd_ == in_->text().size();
      if (atEnd && line.empty()) return false;
      if (line.size() > limits_.recordBytes) {
        passOver(raw);
        return true;
      }
      if (everyLine_ || !isBlank(line)) {
        raw.text = line;
        raw.byte = in_->byte();
        used_ = atEnd ? lineEnd_ : lineEnd_ + 1;
        return true;
      }
      in_->drop(atEnd ? lineEnd_ : lineEnd_ + 1);
    }
  }

  // Drops the rest of a line that is too long, block by block.
  void passOver(gxRawRecord& raw) {
    failTooLong(raw, in_->byte());
    while (true) {
      const std::size_t found = in_->text().find('\n');
      if (found != std::string_view::npos) {
        in_->drop(found + 1);
        return;
      }
      in_->drop(in_->text().size());
      if (!in_->fill()) return;
    }
  }

  // The end of the line that begins at `from`, a line feed in quotes not being one.
  std::size_t endOfRow(std::size_t from) {
    std::size_t at = from;
    while (true) {
      const std::size_t found = find('\n', at);
      const std::size_t end = found == std::string_view::npos ? in_->text().size() : found;
      std::size_t quotes = 0;
      for (std::size_t i = from; i < end; ++i) quotes += in_->text()[i] == '"' ? 1U : 0U;
      if (quotes % 2 == 0 || found == std::string_view::npos) return end;
      at = found + 1;
    }
  }

  bool cutRows(gxRawRecord& raw) {
    while (true) {
      if (!have(1)) return false;
      const std::size_t end = endOfRow(0);
      if (!isBlank(in_->text().substr(0, end))) break;
      in_->drop((std::min)(end + 1, in_->text().size()));
    }
    std::string id;
    std::size_t to = 0;
    while (have(to + 1)) {
      const std::size_t end = endOfRow(to);
      if (end > limits_.recordBytes) {
        passOverRows(raw);
        return true;
      }
      const std::string_view line = in_->text().substr(to, end - to);
      if (isBlank(line)) break;
      if (idColumn_ >= 0) {
        std::string own = gfCsvField(line, idColumn_);
        if (to > 0 && own != id) break;
        id = std::move(own);
      }
      to = (std::min)(end + 1, in_->text().size());
    }
    raw.text = in_->text().substr(0, to);
    raw.byte = in_->byte();
    used_ = to;
    return true;
  }

  // Drops rows up to an empty one or a new id.
  void passOverRows(gxRawRecord& raw) {
    failTooLong(raw, in_->byte());
    std::string id;
    for (bool first = true; have(1); first = false) {
      const std::size_t end = endOfRow(0);
      const std::string_view line = in_->text().substr(0, end);
      const std::string own = idColumn_ >= 0 && line.size() <= limits_.recordBytes
                                  ? gfCsvField(line, idColumn_)
                                  : std::string();
      if (isBlank(line) || (!first && own != id)) return;
      id = own;
      in_->drop((std::min)(end + 1, in_->text().size()));
    }
  }

  bool everyLine_;
  bool csv_;
  int idColumn_ = -1;
  std::size_t lineEnd_ = 0;
};

}  // namespace

std::unique_ptr<gx_Cutter> gf_LineCutter(std::unique_ptr<gx_InputBlock> input,
                                         const gxReadOptions& options) {
  return std::make_unique<Lines>(std::move(input), options, false);
}

std::unique_ptr<gx_Cutter> gf_RowCutter(std::unique_ptr<gx_InputBlock> input,
                                        const gxReadOptions& options, gxCsvColumns& columns) {
  auto lines = std::make_unique<Lines>(std::move(input), options, true);
  columns = lines->readHead();
  return lines;
}
