// A run:
//
//   1. The main thread cuts the input into blocks of about 1 MiB, of whole records.
//   2. Workers answer blocks; at most jobs + 2 exist at a time.
//   3. The main thread writes the answers in the order of the blocks.
//
// With one job the same blocks go the same way without threads, so that bits, order and texts are equal.
#include "run.h"

#include "files.h"
#include "messages.h"
#include "pool.h"
#include "table.h"

#include <io/writer.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <iostream>

namespace {

volatile std::sig_atomic_t interrupted = 0;
void onInterrupt(int) {
  interrupted = 1;
}

class Run {
 public:
  explicit Run(const Options& options)
      : options_(options), command_(makeCommand(options)), messages_(options) {
    plan_.options = &options_;
    plan_.command = command_.get();
    const auto& columns = command_->givesShapes() ? measureColumns() : command_->columns();
    plan_.selection = Selection(options_.select, columns);
    if (!command_->givesShapes())
      layOut();
    else if (!options_.only.empty())
      throw UsageError{"--only: " + options_.command + " gives shapes, not columns"};
    jobs_ = options_.lines ? 1U : options_.jobs;
    if (jobs_ == 0) jobs_ = (std::max)(std::thread::hardware_concurrency(), 1U);
    shapeFormat();
  }

  int all() {
    std::ios::sync_with_stdio(false);
    std::signal(SIGINT, onInterrupt);
    output_ = std::make_unique<Output>(options_.to);
    if (layout_ && layout_->style() == Layout::Style::eTable) {
      table_ = std::make_unique<Table>(output_->stream(), layout_->head());
    } else if (layout_ && layout_->style() == Layout::Style::eCsv) {
      output_->stream() << layout_->head();
    }
    bool filesGood = true;
    for (const auto& file : options_.files.empty() ? std::vector<std::string>{"-"} : options_.files) {
      if (isOver()) break;
      filesGood = oneFile(file) && filesGood;
    }
    finish();
    if (interrupted != 0) return 130;
    if (!filesGood) return 3;
    if (options_.lines) return 0;
    return messages_.failures() > 0 || !isGood_ ? 1 : 0;
  }

 private:
  void layOut() {
    Layout::Style style = Layout::Style::eTable;
    if (options_.output == "csv")
      style = Layout::Style::eCsv;
    else if (options_.output == "jsonl" || options_.lines)
      style = Layout::Style::eJsonl;
    else if (!options_.output.empty() && options_.output != "table") {
      throw UsageError{"--output: " + options_.command + " answers as table, jsonl or csv, not " +
                       options_.output};
    }
    auto only = options_.only;
    const auto& columns = command_->columns();
    const bool judges = !only.empty() && std::string(columns.back().name) == "within";
    if (judges && std::find(only.begin(), only.end(), "within") == only.end())
      only.emplace_back("within");
    layout_ = std::make_unique<Layout>(columns, only, style, options_.degrees, true, options_.all);
    plan_.layout = layout_.get();
    std::vector<bool> wanted(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) wanted[i] = layout_->isShown(i);
    plan_.selection.want(wanted);
    command_->wanted(wanted);
    for (std::size_t i = 0; options_.stats && i < columns.size(); ++i) {
      const bool counts = columns[i].type == Type::eNumber || columns[i].type == Type::eInteger ||
                          columns[i].type == Type::eAngle;
      if (counts && layout_->isShown(i)) plan_.statColumns.push_back({i, 0, true});
    }
    sums_.resize(plan_.statColumns.size());
  }

  // Shapes come out in the format that they came in, unless another is asked for.
  void shapeFormat() {
    if (!command_->givesShapes() || command_->draws() || options_.output.empty()) return;
    plan_.shapeFormat = gfFormatOf(options_.output);
    if (plan_.shapeFormat == gxFormat::eUnknown) {
      throw UsageError{"--output: " + options_.command +
                       " gives wkt, wkb, geojson, jsonl, csv, ragged, npz or gxa, not " +
                       options_.output};
    }
  }

  bool isOver() const { return stops_ || interrupted != 0; }

  // Returns false where the file could not be read, or holds no record of any format.
  bool oneFile(const std::string& file) {
    try {
      Input input(file);
      gxReadOptions how;
      how.format =
          options_.lines && options_.format == gxFormat::eUnknown ? gxFormat::eJsonl : options_.format;
      how.limits = options_.limits;
      how.idField = options_.idField;
      how.everyLine = options_.lines;
      how.firstNumber = cut_ + 1;
      gxRecordReader reader(input.stream(), how);
      if (input.buffer().failed()) throw FileError{file + ": cannot be read"};
      if (reader.format() == gxFormat::eUnknown) return true;
      return readAll(input, reader);
    } catch (const gxReadError& error) {
      messages_.warn(inputName(file) + ": " + error.what());
    } catch (const FileError& error) {
      messages_.warn(error.text);
    }
    return false;
  }

  static std::string inputName(const std::string& file) {
    return file == "-" ? "(standard input)" : file;
  }

  bool readAll(Input& input, gxRecordReader& reader) {
    if (command_->givesShapes() && plan_.shapeFormat == gxFormat::eUnknown)
      plan_.shapeFormat = reader.format();
    Pool pool(plan_, reader, jobs_);
    bool isWhole = true;
    bool atEnd = false;
    while (!atEnd && !isOver()) {
      auto block = emptyBlock();
      try {
        atEnd = !fill(input, reader, *block);
      } catch (const gxReadError& error) {
        messages_.warn(input.name() + ": " + error.what());
        isWhole = false;
        atEnd = true;
      }
      if (!block->raws.empty()) pool.give(std::move(block));
      while (!pool.isEmpty() && (atEnd || pool.isFull() || options_.lines))
        writeFirst(input.name(), pool);
      messages_.progress(records_, reader.bytesCut(), input.size());
      if (options_.lines && !reader.hasBuffered() && !input.buffer().hasWaiting())
        output_->stream().flush();
    }
    while (!pool.isEmpty()) writeFirst(input.name(), pool);
    if (input.buffer().failed()) throw FileError{input.name() + ": cannot be read"};
    return isWhole;
  }

  // Blocks that were written are filled again: a new MiB from the system costs a fifth of the time that reading it
  // as well-known text does.
  std::unique_ptr<Block> emptyBlock() {
    if (spare_.empty()) return std::make_unique<Block>();
    auto block = std::move(spare_.back());
    spare_.pop_back();
    return block;
  }

  void writeFirst(const std::string& file, Pool& pool) {
    auto block = pool.take();
    write(file, *block);
    block->clear();
    spare_.push_back(std::move(block));
  }

  // Cuts records until there is about a block; false at the end.
  bool fill(Input& input, gxRecordReader& reader, Block& block) {
    constexpr std::size_t kBlock = std::size_t{1} << 20;
    gxRawRecord raw;
    while (block.text.size() < kBlock) {
      if (plan_.selection.isEmpty() && cut_ >= options_.skip && cut_ - options_.skip >= options_.limit)
        return false;
      if (!reader.cut(raw)) return false;
      ++cut_;
      if (cut_ <= options_.skip) continue;
      const std::size_t from = block.text.size();
      block.text += raw.text;
      block.raws.push_back(
          {raw.number, raw.byte, from, block.text.size(),
           raw.error != nullptr ? std::optional<gxReadError>(*raw.error) : std::nullopt});
      // A partner may be waiting for the answers to what it has sent.
      if (options_.lines && !reader.hasBuffered() && !input.buffer().hasWaiting()) return true;
    }
    return true;
  }

  void write(const std::string& file, const Block& block) {
    for (const auto& failure : block.failures) messages_.tell(file, failure);
    if (block.hadMore && !toldMore_) {
      messages_.warn(file + ": third and fourth coordinates were dropped");
      toldMore_ = true;
    }
    records_ += block.records;
    isGood_ = isGood_ && block.isGood;
    for (std::size_t i = 0; i < sums_.size(); ++i) sums_[i].add(block.sums[i]);
    std::size_t from = 0;
    for (const auto& piece : block.pieces) {
      if (written_ >= options_.limit) {
        stops_ = true;
        break;
      }
      writePiece(std::string_view(block.out).substr(from, piece.end - from), piece.hasEdges);
      from = piece.end;
    }
    if (block.isLast) stops_ = true;
    output_->check();
  }

  void writePiece(std::string_view text, bool hasEdges) {
    ++written_;
    if (table_) return table_->add(text);
    if (layout_) {
      output_->stream().write(text.data(), static_cast<std::streamsize>(text.size()));
      return;
    }
    if (!writer_) writer_ = std::make_unique<gxRecordWriter>(output_->stream(), plan_.shapeFormat);
    writer_->writeText(text, hasEdges);
  }

  void finish() {
    if (command_->joinsAll()) {
      Answer answer;
      command_->finish(answer);
      output_->stream() << answer.document;
      if (plan_.shapeFormat == gxFormat::eUnknown) plan_.shapeFormat = gxFormat::eWkt;
      for (const auto& shape : answer.shapes) {
        std::string text;
        gxRecordWriter::append(plan_.shapeFormat, shape, text);
        writePiece(text, false);
      }
    }
    if (table_) table_->flush();
    const bool wantsFrame =
        command_->givesShapes() && !command_->draws() && plan_.shapeFormat != gxFormat::eUnknown;
    if (!writer_ && wantsFrame)
      writer_ = std::make_unique<gxRecordWriter>(output_->stream(), plan_.shapeFormat);
    if (writer_) writer_->finish();
    output_->finish();
    messages_.finish(records_);
    tellStats();
  }

  void tellStats() const {
    if (!options_.stats) return;
    std::fprintf(stderr, "%-24s %10s %14s %14s %14s\n", "", "count", "least", "mean", "greatest");
    for (std::size_t i = 0; i < sums_.size(); ++i) {
      const Sums& s = sums_[i];
      const char* const name = command_->columns()[plan_.statColumns[i].column].name;
      const double mean = s.count == 0 ? 0.0 : s.sum / static_cast<double>(s.count);
      std::fprintf(stderr, "%-24s %10llu %14.6g %14.6g %14.6g\n", name,
                   static_cast<unsigned long long>(s.count), s.least, mean, s.greatest);
    }
  }

  const Options& options_;
  std::unique_ptr<Command> command_;
  Messages messages_;
  Plan plan_;
  unsigned jobs_ = 1;
  std::unique_ptr<Layout> layout_;
  std::unique_ptr<Output> output_;
  std::unique_ptr<Table> table_;
  std::unique_ptr<gxRecordWriter> writer_;
  std::vector<Sums> sums_;
  std::vector<std::unique_ptr<Block>> spare_;
  std::uint64_t cut_ = 0;
  std::uint64_t records_ = 0;
  std::uint64_t written_ = 0;
  bool isGood_ = true;
  bool stops_ = false;
  bool toldMore_ = false;
};

}  // namespace

int runCommand(const Options& options) {
  try {
    return Run(options).all();
  } catch (const FileError& error) {
    std::cerr << "gxshape: " << error.text << '\n';
    return 3;
  }
}
