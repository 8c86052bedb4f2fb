// Comma-separated points.  Lines are walked field by field; only the columns that were named are read, so
// that a table with other columns costs little.
#include <io/csv.h>
#include <io/internal/text_scanner.h>
#include <io/number_writer.h>

#include <array>
#include <cmath>
#include <utility>

namespace {

using Code = gxReadError::Code;
using Kind = gxRecord::Kind;

// The end of the field that begins at `from`: its comma, or the end of the line.
std::size_t endOfField(std::string_view line, std::size_t from) {
  if (from < line.size() && line[from] == '"') {
    bool inQuotes = false;
    for (std::size_t i = from; i < line.size(); ++i) {
      if (line[i] == '"')
        inQuotes = !inQuotes;
      else if (line[i] == ',' && !inQuotes)
        return i;
    }
    return line.size();
  }
  const std::size_t comma = line.find(',', from);
  return comma == std::string_view::npos ? line.size() : comma;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r'))
    text.remove_suffix(1);
  return text;
}

std::string unquoted(std::string_view field) {
  if (field.size() < 2 || field.front() != '"' || field.back() != '"') return std::string(field);
  std::string text;
  for (std::size_t i = 1; i + 1 < field.size(); ++i) {
    text += field[i];
    if (field[i] == '"' && i + 2 < field.size() && field[i + 1] == '"') ++i;
  }
  return text;
}

bool isWholeNumber(std::string_view text) {
  if (!text.empty() && text.front() == '-') text.remove_prefix(1);
  if (text.empty() || text.size() > 15 || (text.size() > 1 && text[0] == '0')) return false;
  for (const char c : text) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}

class LinesReader {
 public:
  LinesReader(std::string_view text, const gxCsvColumns& columns, const gxReadLimits& limits,
              gxRecord& record)
      : text_(text), columns_(columns), limits_(limits), record_(record) {
    last_ = (std::max)({columns.x, columns.y, columns.id, columns.type, columns.part, columns.ring,
                        columns.magnitude, columns.angle});
  }

  void read() {
    record_.kind = Kind::eRegion;
    std::size_t from = 0;
    while (from < text_.size()) {
      std::size_t to = from;
      bool inQuotes = false;
      while (to < text_.size() && (text_[to] != '\n' || inQuotes))
        inQuotes = inQuotes != (text_[to++] == '"');
      if (!trimmed(text_.substr(from, to - from)).empty()) line(from, to);
      from = to + 1;
    }
    if (record_.points.empty()) return;
    endRing();
    record_.endPart();
  }

 private:
  void line(std::size_t from, std::size_t to) {
    const std::string_view line = text_.substr(0, to);
    std::size_t at = from;
    for (int column = 0; column <= last_ && at <= to; ++column) {
      const std::size_t end = endOfField(line, at);
      fields_[slotOf(column)] = {at, end};
      at = end + 1;
      if (end == to && column < last_) missing(column + 1, to);
    }
    if (lines_++ == 0)
      firstLine();
    else
      newRing();
    const double x = numberOf(kX);
    const double y = numberOf(kY);
    if (record_.points.size() >= limits_.points) tooMany("points", limits_.points, from);
    record_.points.emplace_back(x, y);
    if (columns_.magnitude >= 0 && columns_.angle >= 0) edge();
  }

  enum Slot : std::size_t { kX, kY, kId, kType, kPart, kRing, kMagnitude, kAngle, kOther, kSlots };

  std::size_t slotOf(int column) const {
    const std::array<int, kOther> all = {columns_.x,         columns_.y,    columns_.id,
                                         columns_.type,      columns_.part, columns_.ring,
                                         columns_.magnitude, columns_.angle};
    for (std::size_t s = 0; s < kOther; ++s) {
      if (all[s] == column) return s;
    }
    return kOther;
  }

  std::string_view textOf(Slot slot) const {
    const auto [from, to] = fields_[slot];
    return trimmed(text_.substr(from, to - from));
  }

  [[noreturn]] static void missing(int column, std::size_t byte) {
    throw gxReadError(Code::eBadSyntax, byte, "column " + std::to_string(column + 1) + " is missing");
  }
  [[noreturn]] static void tooMany(const char* what, std::size_t limit, std::size_t byte) {
    throw gxReadError(Code::eTooMany, byte, "more than " + std::to_string(limit) + ' ' + what);
  }

  double numberOf(Slot slot) const {
    auto [from, to] = fields_[slot];
    if (to - from > 1 && text_[from] == '"' && text_[to - 1] == '"') ++from, --to;
    try {
      gx_TextScanner in(text_.substr(0, to), limits_);
      for (std::size_t i = 0; i < from; ++i) in.skip();
      const double value = in.number();
      in.skipSpace();
      if (!in.atEnd()) in.fail(Code::eBadNumber, "number expected, found " + in.here());
      return value;
    } catch (const gxReadError& error) {
      if (error.byte() < to) throw;
      throw gxReadError(Code::eBadNumber, from, "number expected, found an empty field");
    }
  }

  void firstLine() {
    if (columns_.id >= 0) takeId();
    if (columns_.type >= 0) takeType();
    if (columns_.part >= 0) part_ = std::string(textOf(kPart));
    if (columns_.ring >= 0) ring_ = std::string(textOf(kRing));
  }

  void takeId() {
    const std::string_view field = textOf(kId);
    record_.id.text = unquoted(field);
    record_.id.isGiven = !field.empty();
    record_.id.isNumber = isWholeNumber(field);
    if (record_.id.text.size() > limits_.idBytes) {
      throw gxReadError(Code::eTooLong, fields_[kId].first,
                        "an id of more than " + std::to_string(limits_.idBytes) + " bytes");
    }
  }

  void takeType() {
    const std::string type = unquoted(textOf(kType));
    if (type == "set")
      record_.kind = Kind::eSet;
    else if (type == "open")
      record_.kind = Kind::eOpen;
    else if (type == "points")
      record_.kind = Kind::ePoints;
    else if (type != "region" && !type.empty()) {
      throw gxReadError(Code::eBadType, fields_[kType].first,
                        "the type \"" + type.substr(0, 40) + "\" does not exist");
    }
  }

  void newRing() {
    const bool newPart = columns_.part >= 0 && textOf(kPart) != part_;
    const bool newRing = columns_.ring >= 0 && textOf(kRing) != ring_;
    if (newPart || newRing) endRing();
    if (newPart) {
      record_.endPart();
      part_ = std::string(textOf(kPart));
      if (record_.kind == Kind::eRegion) record_.kind = Kind::eSet;
    }
    if (newPart || newRing) ring_ = columns_.ring >= 0 ? std::string(textOf(kRing)) : std::string();
  }

  void endRing() {
    if (record_.ringEnds.size() >= limits_.rings) tooMany("rings", limits_.rings, fields_[kX].first);
    record_.endRing(record_.kind == Kind::eRegion || record_.kind == Kind::eSet);
  }

  void edge() {
    const double magnitude = numberOf(kMagnitude);
    if (!(magnitude >= 0.0 && magnitude <= 65535.0) || magnitude != std::floor(magnitude)) {
      throw gxReadError(Code::eBadNumber, fields_[kMagnitude].first,
                        "a whole number from 0 to 65535 expected");
    }
    const double angle = numberOf(kAngle);
    if (!(angle >= 0.0 && angle <= 255.0) || angle != std::floor(angle)) {
      throw gxReadError(Code::eBadNumber, fields_[kAngle].first,
                        "a whole number from 0 to 255 expected");
    }
    record_.magnitudes.push_back(static_cast<std::uint16_t>(magnitude));
    record_.angles.push_back(static_cast<std::uint8_t>(angle));
  }

  std::string_view text_;
  const gxCsvColumns& columns_;
  const gxReadLimits& limits_;
  gxRecord& record_;
  int last_ = 0;
  std::size_t lines_ = 0;
  std::array<std::pair<std::size_t, std::size_t>, kSlots> fields_{};
  std::string part_;
  std::string ring_;
};

const char* typeName(Kind kind) {
  switch (kind) {
    case Kind::eSet: return "set";
    case Kind::eOpen: return "open";
    case Kind::ePoints: return "points";
    default: return "region";
  }
}

}  // namespace

bool gfIsCsvHead(std::string_view line) {
  const std::string field = unquoted(trimmed(line.substr(0, endOfField(line, 0))));
  try {
    const gxReadLimits limits;
    gx_TextScanner in(field, limits);
    in.number();
    in.skipSpace();
    return !in.atEnd();
  } catch (const gxReadError&) {
    return !field.empty();
  }
}

std::string gfCsvField(std::string_view line, int column) {
  std::size_t at = 0;
  for (int i = 0; at <= line.size(); ++i) {
    const std::size_t end = endOfField(line, at);
    if (i == column) return unquoted(trimmed(line.substr(at, end - at)));
    at = end + 1;
  }
  return {};
}

gxCsvColumns gfReadCsvHead(std::string_view line) {
  gxCsvColumns c{-1, -1, -1, -1, -1, -1, -1, -1};
  const std::array<std::pair<const char*, int*>, 9> names = {{{"x", &c.x},
                                                              {"y", &c.y},
                                                              {"id", &c.id},
                                                              {"outline", &c.id},
                                                              {"type", &c.type},
                                                              {"part", &c.part},
                                                              {"ring", &c.ring},
                                                              {"magnitude", &c.magnitude},
                                                              {"angle", &c.angle}}};
  std::size_t at = 0;
  for (int i = 0; at <= line.size(); ++i) {
    const std::size_t end = endOfField(line, at);
    const std::string name = unquoted(trimmed(line.substr(at, end - at)));
    for (const auto& [known, place] : names) {
      if (name != known) continue;
      if (*place >= 0) throw gxReadError(Code::eBadSyntax, at, "the column " + name + " stands twice");
      *place = i;
    }
    at = end + 1;
  }
  if (c.x < 0 || c.y < 0) throw gxReadError(Code::eBadSyntax, 0, "no columns x and y");
  return c;
}

void gfReadCsv(std::string_view text, const gxCsvColumns& columns, gxRecord& record,
               const gxReadLimits& limits) {
  LinesReader(text, columns, limits, record).read();
  record.dropEmptyRing();
}

std::string gfCsvHead(bool withEdges) {
  return withEdges ? "id,type,part,ring,x,y,magnitude,angle\n" : "id,type,part,ring,x,y\n";
}

void gfAppendCsvField(std::string_view field, std::string& out) {
  if (field.find_first_of(",\"\r\n") == std::string_view::npos) {
    out += field;
    return;
  }
  out += '"';
  for (const char c : field) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
}

namespace {

class LinesWriter {
 public:
  LinesWriter(const gxRecord& record, bool withEdges, std::string& out)
      : record_(record), withEdges_(withEdges), out_(out) {
    // Quotes tell an id that is text from a number.
    if (!record.id.isNumber && isWholeNumber(record.id.text))
      head_ = '"' + record.id.text + '"';
    else
      gfAppendCsvField(record.id.text, head_);
    head_ += ',';
    head_ += typeName(record.kind);
    head_ += ',';
  }

  void write() {
    for (std::size_t p = 0; p < record_.partCount(); ++p) {
      for (std::size_t r = record_.firstRing(p); r < record_.partEnds[p]; ++r)
        ring(p, r - record_.firstRing(p), r);
    }
  }

 private:
  void ring(std::size_t part, std::size_t ringOfPart, std::size_t r) {
    const auto points = record_.ring(r);
    if (points.empty()) return;
    const std::string head = head_ + std::to_string(part) + ',' + std::to_string(ringOfPart) + ',';
    const std::size_t first = static_cast<std::size_t>(points.data() - record_.points.data());
    for (std::size_t i = 0; i < points.size(); ++i) line(head, first + i);
    const bool closed = record_.kind == Kind::eRegion || record_.kind == Kind::eSet;
    if (closed && points.size() > 1 && points.back() == points.front()) line(head, first);
  }

  void line(const std::string& head, std::size_t i) {
    out_ += head;
    gfAppendNumber(record_.points[i].x(), out_);
    out_ += ',';
    gfAppendNumber(record_.points[i].y(), out_);
    if (withEdges_) {
      const bool has = record_.hasEdges();
      out_ += ',' + std::to_string(has ? record_.magnitudes[i] : 0) + ',';
      out_ += std::to_string(has ? record_.angles[i] : 0);
    }
    out_ += '\n';
  }

  const gxRecord& record_;
  bool withEdges_;
  std::string& out_;
  std::string head_;
};

}  // namespace

void gfAppendCsv(const gxRecord& record, bool withEdges, std::string& out) {
  LinesWriter(record, withEdges, out).write();
}
