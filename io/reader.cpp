// Cutting a file into records.
//
//   lines     WKT, WKB, JSON lines: up to the line feed.  CSV: lines as long as the id stays the same, up
//             to an empty one; without a column of ids, up to an empty line.
//   objects   GeoJSON: from brace to brace, strings passed over.  In a collection, the objects in its
//             "features" are cut and the rest is skipped; any other object is a record itself.
//   frames    the plain ragged file: by the length in front of each record.
//   loaded    .npz and archives, read whole, become ragged records in memory.
//
// A record that is longer than the limit is passed over while it is read, so that it takes no more memory
// than the limit.
#include <io/archive_records.h>
#include <io/internal/byte_scanner.h>
#include <io/internal/input_block.h>
#include <io/json.h>
#include <io/ragged.h>
#include <io/reader.h>
#include <io/wkb.h>
#include <io/wkt.h>

#include <array>
#include <deque>
#include <optional>

using Code = gxReadError::Code;

class gxRecordReader::Cutter {
 public:
  Cutter(std::unique_ptr<gx_InputBlock> in, const gxReadOptions& options)
      : in_(std::move(in)), limits_(options.limits), number_(options.firstNumber) {}
  virtual ~Cutter() = default;
  Cutter(const Cutter&) = delete;
  Cutter& operator=(const Cutter&) = delete;

  bool cut(gxRawRecord& raw) {
    in_->drop(used_);
    used_ = 0;
    error_.reset();
    raw = {};
    if (!cutNext(raw)) return false;
    raw.number = number_++;
    raw.error = error_ ? &*error_ : nullptr;
    return true;
  }
  virtual bool hasBuffered() const { return false; }
  std::uint64_t bytesCut() const { return in_->byte() + used_; }

 protected:
  virtual bool cutNext(gxRawRecord& raw) = 0;

  // Finds `c` from `from` on, reading more as needed; npos at the end or beyond the limit.
  std::size_t find(char c, std::size_t from) {
    while (true) {
      const std::size_t found = in_->text().find(c, from);
      if (found != std::string_view::npos) return found;
      from = in_->text().size();
      if (from > limits_.recordBytes || !in_->fill()) return std::string_view::npos;
    }
  }

  bool have(std::size_t bytes) {
    while (in_->text().size() < bytes) {
      if (!in_->fill()) return false;
    }
    return true;
  }

  // Leaves a record of which only `byte` is known, with what is wrong with it.
  void fail(gxRawRecord& raw, Code code, std::uint64_t byte, const std::string& cause) {
    raw.text = {};
    raw.byte = byte;
    error_.emplace(code, number_, byte, cause);
  }
  void failTooLong(gxRawRecord& raw, std::uint64_t byte) {
    fail(raw, Code::eTooLong, byte,
         "a record of more than " + std::to_string(limits_.recordBytes) + " bytes");
  }

  std::unique_ptr<gx_InputBlock> in_;
  gxReadLimits limits_;
  std::uint64_t number_;
  std::size_t used_ = 0;  // of the window, by the record that was cut last
  std::optional<gxReadError> error_;
};

// ---- Lines ---------------------------------------------------------------------------------------------------

class gxRecordReader::Lines : public Cutter {
 public:
  Lines(std::unique_ptr<gx_InputBlock> in, const gxReadOptions& options, bool csv)
      : Cutter(std::move(in), options), everyLine_(options.everyLine), csv_(csv) {}

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

// ---- Objects -------------------------------------------------------------------------------------------------

namespace {

// The bytes that say nothing of where an object ends.
constexpr auto kPlain = [] {
  std::array<bool, 256> plain{};
  plain.fill(true);
  for (const char c : {'"', '{', '}', '[', ']'}) plain[static_cast<unsigned char>(c)] = false;
  return plain;
}();

}  // namespace

class gxRecordReader::Objects : public Cutter {
 public:
  using Cutter::Cutter;

 protected:
  bool cutNext(gxRawRecord& raw) override {
    while (true) {
      if (!inFeatures_ && !enter(raw)) return raw.text.data() != nullptr || error_.has_value();
      if (!inFeatures_) continue;
      if (cutFeature(raw)) return true;
    }
  }

 private:
  // The next byte that is no space (nor a mark that begins a record in JSON text sequences); 0 at the end.
  char nextByte() {
    while (true) {
      const std::string_view text = in_->text();
      const std::size_t found = text.find_first_not_of(" \t\r\n\x1e");
      in_->drop(found == std::string_view::npos ? text.size() : found);
      if (found != std::string_view::npos) return in_->text()[0];
      if (!in_->fill()) return '\0';
    }
  }

  // Finds the end of the object at the beginning of the window: its length, 0 where it does not end.
  // Stops with `features` at the bracket of a member of that name of the outermost object.
  struct End {
    std::size_t length = 0;
    bool isFeatures = false;
    bool tooLong = false;
  };
  End scan(bool outermost) {
    std::size_t at = 0;
    int depth = 0;
    std::size_t nameFrom = 0;
    std::size_t nameTo = 0;
    while (have(at + 1)) {
      const std::string_view text = in_->text();
      while (at < text.size() && kPlain[static_cast<unsigned char>(text[at])]) ++at;
      if (at > limits_.recordBytes) return {at, false, true};
      if (at >= text.size()) continue;
      const char c = text[at];
      if (c == '"') {
        nameFrom = at + 1;
        at = endOfString(at + 1);
        if (at == 0) return {};
        nameTo = at - 1;
        continue;
      }
      depth += c == '{' || c == '[' ? 1 : -1;
      ++at;
      const bool entersSecond = outermost && c == '[' && depth == 2;
      if (entersSecond && text.substr(nameFrom, nameTo - nameFrom) == "features")
        return {at, true, false};
      if (depth == 0) return {at, false, false};
    }
    return {};
  }

  // The place behind the quote that ends a string; 0 where none does.
  std::size_t endOfString(std::size_t at) {
    while (have(at + 1)) {
      const char c = in_->text()[at++];
      if (c == '"') return at;
      if (c == '\\') ++at;
      if (at > limits_.recordBytes + 2) return at;
    }
    return 0;
  }

  // An object of the outermost level: a collection is entered, another one is the record.
  bool enter(gxRawRecord& raw) {
    const char c = nextByte();
    if (c == '\0') return false;
    if (c != '{') cannotGoOn("an object expected");
    const End end = scan(true);
    if (end.tooLong) {
      throw gxReadError(Code::eTooLong, in_->byte(),
                        "an object of more than " + std::to_string(limits_.recordBytes) + " bytes");
    }
    if (end.length == 0) cannotGoOn("braces that do not balance");
    if (end.isFeatures) {
      in_->drop(end.length);
      inFeatures_ = true;
      return true;
    }
    take(raw, end.length);
    return false;
  }

  void take(gxRawRecord& raw, std::size_t length) {
    raw.text = in_->text().substr(0, length);
    raw.byte = in_->byte();
    used_ = length;
  }

  [[noreturn]] void cannotGoOn(const std::string& cause) const {
    throw gxReadError(Code::eTruncated, in_->byte(), cause);
  }

  bool cutFeature(gxRawRecord& raw) {
    char c = nextByte();
    if (c == ',') {
      in_->drop(1);
      c = nextByte();
    }
    if (c == ']') {
      leave();
      return false;
    }
    if (c != '{') cannotGoOn(c == '\0' ? "the collection ends in the middle" : "a feature expected");
    const End end = scan(false);
    if (end.tooLong) {
      failTooLong(raw, in_->byte());
      passOver();
      return true;
    }
    if (end.length == 0) cannotGoOn("braces that do not balance");
    take(raw, end.length);
    return true;
  }

  // Drops an object that is too long, byte by byte.
  void passOver() {
    int depth = 0;
    bool inString = false;
    while (have(2)) {
      const char c = in_->text()[0];
      if (inString && c == '\\')
        in_->drop(1);
      else if (c == '"')
        inString = !inString;
      else if (!inString && (c == '{' || c == '['))
        ++depth;
      else if (!inString && (c == '}' || c == ']'))
        --depth;
      in_->drop(1);
      if (depth == 0 && !inString) return;
    }
    cannotGoOn("braces that do not balance");
  }

  // Behind the features: the rest of the collection is skipped.
  void leave() {
    in_->drop(1);
    inFeatures_ = false;
    int depth = 1;
    bool inString = false;
    while (depth > 0 && have(1)) {
      const char c = in_->text()[0];
      if (inString && c == '\\' && have(2))
        in_->drop(1);
      else if (c == '"')
        inString = !inString;
      else if (!inString && (c == '{' || c == '['))
        ++depth;
      else if (!inString && (c == '}' || c == ']'))
        --depth;
      in_->drop(1);
    }
    if (depth > 0) cannotGoOn("the collection ends in the middle");
  }

  bool inFeatures_ = false;
};

// ---- Frames, and what is loaded whole --------------------------------------------------------------------

class gxRecordReader::Frames : public Cutter {
 public:
  Frames(std::unique_ptr<gx_InputBlock> in, const gxReadOptions& options)
      : Cutter(std::move(in), options) {
    if (!have(16)) throw gxReadError(Code::eTruncated, in_->text().size(), "ends within its head");
    gx_ByteScanner head(in_->text().data() + 8, 8);
    const auto version = head.readUnchecked<std::uint32_t>();
    if (version != 1)
      throw gxReadError(Code::eUnsupported, 8, "version " + std::to_string(version) + " is not read");
    in_->drop(16);
  }

 protected:
  bool cutNext(gxRawRecord& raw) override {
    if (!have(1)) return false;
    if (!have(4)) throw gxReadError(Code::eTruncated, in_->byte(), "ends within the length of a record");
    gx_ByteScanner head(in_->text().data(), 4);
    const std::size_t length = head.readUnchecked<std::uint32_t>();
    raw.byte = in_->byte() + 4;
    if (length > limits_.recordBytes) {
      failTooLong(raw, raw.byte);
      passOver(length + 4);
      return true;
    }
    if (!have(length + 4)) throw gxReadError(Code::eTruncated, in_->byte(), "ends within a record");
    raw.text = in_->text().substr(4, length);
    used_ = length + 4;
    return true;
  }

 private:
  void passOver(std::size_t bytes) {
    while (bytes > 0 && have(1)) {
      const std::size_t part = (std::min)(bytes, in_->text().size());
      in_->drop(part);
      bytes -= part;
    }
  }
};

class gxRecordReader::Loaded : public Cutter {
 public:
  Loaded(std::unique_ptr<gx_InputBlock> in, const gxReadOptions& options, gxFormat format)
      : Cutter(std::move(in), options) {
    const std::size_t most = 16 * limits_.recordBytes;
    while (in_->text().size() <= most && in_->fill()) {}
    if (in_->text().size() > most) {
      throw gxReadError(Code::eTooLong, 0,
                        "a file of more than " + std::to_string(most) + " bytes, which is read whole");
    }
    size_ = in_->text().size();
    if (format == gxFormat::eNpz) {
      arrays_.emplace(in_->text());
    } else {
      readArchive();
    }
    in_->drop(size_);
  }

 protected:
  bool cutNext(gxRawRecord& raw) override {
    body_.clear();
    if (arrays_ && next_ < arrays_->size()) {
      arrays_->get(next_++, record_);
      gfAppendRagged(record_, body_);
    } else if (!bodies_.empty()) {
      body_ = std::move(bodies_.front().second);
      raw.byte = bodies_.front().first;
      bodies_.pop_front();
    } else if (broken_) {
      fail(raw, broken_->code(), broken_->byte(), broken_->cause());
      broken_.reset();
      return true;
    } else {
      return false;
    }
    raw.text = body_;
    return true;
  }

 private:
  void readArchive() {
    try {
      gfReadArchive(in_->text(), [this](const gxRecord& record) {
        bodies_.emplace_back(record.byte, std::string());
        gfAppendRagged(record, bodies_.back().second);
      });
    } catch (const gxReadError& error) {
      broken_.emplace(error);
    }
  }

  std::size_t size_ = 0;
  std::optional<gxRaggedArrays> arrays_;
  std::size_t next_ = 0;
  std::deque<std::pair<std::uint64_t, std::string>> bodies_;
  std::optional<gxReadError> broken_;
  gxRecord record_;
  std::string body_;
};

// ---- The reader ----------------------------------------------------------------------------------------------

gxRecordReader::gxRecordReader(std::istream& stream, const gxReadOptions& options) : options_(options) {
  auto in = std::make_unique<gx_InputBlock>(stream);
  constexpr std::size_t kEnough = 4096;
  // A first line is enough too: whoever sends one and waits for its answer sends no more.
  while (in->text().size() < kEnough && in->text().find('\n') == std::string_view::npos && in->fill()) {}
  if (options_.format == gxFormat::eUnknown) options_.format = gfDetectFormat(in->text());
  if (in->text().starts_with("\xef\xbb\xbf")) in->drop(3);
  switch (options_.format) {
    case gxFormat::eUnknown:
      if (in->text().find_first_not_of(" \t\r\n") != std::string_view::npos) {
        throw gxReadError(Code::eBadSyntax, 0, "the content is of no known format");
      }
      cutter_ = std::make_unique<Lines>(std::move(in), options_, false);
      break;
    case gxFormat::eWkt:
    case gxFormat::eWkb:
    case gxFormat::eJsonl: cutter_ = std::make_unique<Lines>(std::move(in), options_, false); break;
    case gxFormat::eCsv: {
      auto lines = std::make_unique<Lines>(std::move(in), options_, true);
      columns_ = lines->readHead();
      cutter_ = std::move(lines);
      break;
    }
    case gxFormat::eGeoJson: cutter_ = std::make_unique<Objects>(std::move(in), options_); break;
    case gxFormat::eRagged: cutter_ = std::make_unique<Frames>(std::move(in), options_); break;
    case gxFormat::eNpz:
    case gxFormat::eArchive:
      cutter_ = std::make_unique<Loaded>(std::move(in), options_, options_.format);
      break;
  }
}

gxRecordReader::~gxRecordReader() = default;

gxFormat gxRecordReader::format() const {
  return options_.format;
}
bool gxRecordReader::cut(gxRawRecord& raw) {
  return cutter_->cut(raw);
}
bool gxRecordReader::hasBuffered() const {
  return cutter_->hasBuffered();
}
std::uint64_t gxRecordReader::bytesCut() const {
  return cutter_->bytesCut();
}

void gxRecordReader::parse(const gxRawRecord& raw, gxRecord& record) const {
  record.clear();
  record.number = raw.number;
  record.byte = raw.byte;
  if (raw.error != nullptr) throw gxReadError(*raw.error);
  try {
    switch (options_.format) {
      case gxFormat::eWkt: gfReadWkt(raw.text, record, options_.limits); break;
      case gxFormat::eWkb: gfReadWkbHex(raw.text, record, options_.limits); break;
      case gxFormat::eGeoJson: gfReadGeoJson(raw.text, record, options_.limits, options_.idField); break;
      case gxFormat::eJsonl: gfReadJson(raw.text, record, options_.limits, options_.idField); break;
      case gxFormat::eCsv: gfReadCsv(raw.text, columns_, record, options_.limits); break;
      default: gfReadRagged(raw.text, record, options_.limits); break;
    }
  } catch (const gxReadError& error) {
    throw gxReadError(error.code(), raw.number, raw.byte + error.byte(), error.cause());
  }
}

bool gxRecordReader::next(gxRecord& record) {
  gxRawRecord raw;
  if (!cut(raw)) return false;
  parse(raw, record);
  return true;
}
