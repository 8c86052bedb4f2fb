// numpy's .npz: a zip file of stored .npy members, which is what numpy.savez writes.
//
//   1. The members are found from the front, header by header, by their stored sizes (numpy writes the
//      64-bit form too, so both are read).  The directory at the end is not needed for that.
//   2. A .npy member is a head, a Python dictionary as text of which three entries count, and raw numbers.
//   3. Offsets are checked once: they begin with 0, never fall, end at the length of what they index.
//
// Deflated members (numpy.savez_compressed) are told, not read: they would need zlib.
#include <io/internal/byte_scanner.h>
#include <io/ragged.h>

#include <array>
#include <cmath>
#include <map>

namespace {

using Code = gxReadError::Code;

struct Array {
  std::string type;  // numpy's: "<f8"
  std::uint64_t rows = 0;
  std::uint64_t columns = 1;
  std::string_view data;
  std::uint64_t at = 0;  // in the file
};

using Arrays = std::map<std::string, Array, std::less<>>;

[[noreturn]] void fail(Code code, std::uint64_t at, const std::string& cause) {
  throw gxReadError(code, at, cause);
}

// The text behind a name in the head of a .npy member.
std::string_view entry(std::string_view head, std::string_view name, std::uint64_t at) {
  const std::size_t found = head.find(name);
  if (found == std::string_view::npos)
    fail(Code::eBadSyntax, at, std::string(name) + " is missing in an array's head");
  std::string_view text = head.substr(found + name.size());
  while (!text.empty() && (text.front() == ':' || text.front() == ' ')) text.remove_prefix(1);
  return text;
}

std::uint64_t wholeNumber(std::string_view& text, std::uint64_t at) {
  std::uint64_t value = 0;
  bool any = false;
  while (!text.empty() && text.front() >= '0' && text.front() <= '9') {
    if (value > (std::uint64_t{1} << 48)) fail(Code::eTooMany, at, "an array of too many rows");
    value = 10 * value + static_cast<std::uint64_t>(text.front() - '0');
    text.remove_prefix(1);
    any = true;
  }
  if (!any) fail(Code::eBadSyntax, at, "an array whose shape is no number");
  return value;
}

std::uint64_t itemBytes(const std::string& type, std::uint64_t at) {
  if (type.size() < 3) fail(Code::eBadType, at, "an array of type '" + type + "'");
  std::string_view digits = std::string_view(type).substr(2);
  const std::uint64_t size = wholeNumber(digits, at);
  if (size > (1U << 20)) fail(Code::eTooLong, at, "an array of too long items");
  return type[1] == 'U' ? 4 * size : size;
}

Array readArray(std::string_view member, std::uint64_t at) {
  gx_ByteScanner in(member.data(), member.size());
  in.want(10, "an array");
  if (member.substr(0, 6) != std::string_view("\x93NUMPY", 6))
    fail(Code::eBadSyntax, at, "a member that is no array of numpy");
  in.skip(6, "an array");
  const auto version = in.readUnchecked<std::uint16_t>();
  const std::uint64_t length =
      (version & 255) == 1 ? in.read<std::uint16_t>("an array") : in.read<std::uint32_t>("an array");
  in.want(length, "an array's head");
  const std::string_view head = member.substr(in.byte(), length);
  in.skip(length, "an array's head");
  if (entry(head, "'fortran_order'", at).substr(0, 4) == "True")
    fail(Code::eUnsupported, at, "an array in Fortran order");
  Array a;
  std::string_view type = entry(head, "'descr'", at);
  if (type.empty() || type.front() != '\'') fail(Code::eBadType, at, "an array of structures");
  type.remove_prefix(1);
  a.type = std::string(type.substr(0, (std::min)(type.find('\''), std::size_t{12})));
  std::string_view shape = entry(head, "'shape'", at);
  if (shape.empty() || shape.front() != '(') fail(Code::eBadSyntax, at, "an array without a shape");
  shape.remove_prefix(1);
  a.rows = wholeNumber(shape, at);
  while (!shape.empty() && (shape.front() == ',' || shape.front() == ' ')) shape.remove_prefix(1);
  if (!shape.empty() && shape.front() != ')') a.columns = wholeNumber(shape, at);
  if (a.type.front() == '>') fail(Code::eUnsupported, at, "an array in big-endian order");
  const std::uint64_t row = itemBytes(a.type, at) * a.columns;
  if (a.columns > 2 || a.rows * row > in.left())
    fail(Code::eTruncated, at, "an array shorter than its shape says");
  a.data = member.substr(in.byte(), a.rows * row);
  a.at = at + in.byte();
  return a;
}

// The sizes of a member whose head says that they stand in the 64-bit field.
std::uint64_t wideSize(std::string_view extra, std::uint64_t at) {
  gx_ByteScanner in(extra.data(), extra.size());
  while (in.left() >= 4) {
    const auto tag = in.readUnchecked<std::uint16_t>();
    const auto size = in.readUnchecked<std::uint16_t>();
    if (tag == 1) return in.read<std::uint64_t>("a zip head");
    in.skip(size, "a zip head");
  }
  fail(Code::eBadSyntax, at, "a zip member without a size");
}

Arrays readMembers(std::string_view file) {
  Arrays arrays;
  gx_ByteScanner in(file.data(), file.size());
  while (in.left() >= 4 && file.substr(in.byte(), 4) == std::string_view("PK\3\4", 4)) {
    const std::uint64_t at = in.byte();
    in.want(30, "a zip head");
    in.skip(6, "a zip head");
    const auto flags = in.readUnchecked<std::uint16_t>();
    const auto method = in.readUnchecked<std::uint16_t>();
    in.skip(8, "a zip head");
    in.readUnchecked<std::uint32_t>();
    std::uint64_t size = in.readUnchecked<std::uint32_t>();
    const auto nameBytes = in.readUnchecked<std::uint16_t>();
    const auto extraBytes = in.readUnchecked<std::uint16_t>();
    in.want(std::uint64_t{nameBytes} + extraBytes, "a zip head");
    const std::string_view name = file.substr(in.byte(), nameBytes);
    const std::string_view extra = file.substr(in.byte() + nameBytes, extraBytes);
    in.skip(std::uint64_t{nameBytes} + extraBytes, "a zip head");
    if (method != 0) fail(Code::eCompressed, at, "compressed arrays: write with numpy.savez");
    if ((flags & 8) != 0 && size == 0)
      fail(Code::eUnsupported, at, "a zip member whose size stands behind it");
    if (size == 0xffffffffU) size = wideSize(extra, at);
    in.want(size, "a zip member");
    const std::string_view member = file.substr(in.byte(), size);
    if (name.size() > 4 && name.substr(name.size() - 4) == ".npy") {
      arrays.insert_or_assign(std::string(name.substr(0, name.size() - 4)),
                              readArray(member, in.byte()));
    }
    in.skip(size, "a zip member");
  }
  return arrays;
}

template <class T, class Out>
void convert(const Array& a, std::vector<Out>& out) {
  gx_ByteScanner in(a.data.data(), a.data.size());
  out.reserve(a.rows * a.columns);
  for (std::uint64_t i = 0; i < a.rows * a.columns; ++i)
    out.push_back(static_cast<Out>(in.readUnchecked<T>()));
}

template <class Out>
std::vector<Out> integers(const Array& a, const char* name) {
  std::vector<Out> out;
  const std::string type = a.type.substr(1);
  if (type == "i8" || type == "u8")
    convert<std::int64_t>(a, out);
  else if (type == "i4")
    convert<std::int32_t>(a, out);
  else if (type == "u4")
    convert<std::uint32_t>(a, out);
  else if (type == "u2")
    convert<std::uint16_t>(a, out);
  else if (type == "i1")
    convert<std::int8_t>(a, out);
  else if (type == "u1")
    convert<std::uint8_t>(a, out);
  else
    fail(Code::eBadType, a.at, std::string(name) + " is of type '" + a.type + "', want integers");
  return out;
}

std::vector<double> doubles(const Array& a) {
  std::vector<double> out;
  if (a.type == "<f8")
    convert<double>(a, out);
  else if (a.type == "<f4")
    convert<float>(a, out);
  else
    fail(Code::eBadType, a.at, "coords is of type '" + a.type + "', want float64");
  return out;
}

const Array& wanted(const Arrays& arrays, const char* name) {
  const auto found = arrays.find(name);
  if (found == arrays.end()) fail(Code::eBadSyntax, 0, std::string("no array ") + name);
  return found->second;
}

std::vector<std::int64_t> offsets(const Arrays& arrays, const char* name, std::size_t last) {
  const Array& a = wanted(arrays, name);
  auto all = integers<std::int64_t>(a, name);
  std::int64_t before = 0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (all[i] < before || (i == 0 && all[i] != 0)) {
      fail(Code::eBadSyntax, a.at,
           std::string(name) + "[" + std::to_string(i) + "] is " + std::to_string(all[i]) +
               ": offsets begin with 0 and never fall");
    }
    before = all[i];
  }
  if (all.empty() || all.back() != static_cast<std::int64_t>(last)) {
    fail(Code::eBadSyntax, a.at, std::string(name) + " does not end with " + std::to_string(last));
  }
  return all;
}

void appendUtf8(std::uint32_t c, std::string& text) {
  const auto put = [&](std::uint32_t byte) {
    text += static_cast<char>(static_cast<unsigned char>(byte));
  };
  if (c < 0x80) return put(c);
  if (c >= 0x800) {
    if (c >= 0x10000) {
      put(0xf0 | (c >> 18 & 7));
      put(0x80 | (c >> 12 & 0x3f));
    } else {
      put(0xe0 | c >> 12);
    }
    put(0x80 | (c >> 6 & 0x3f));
  } else {
    put(0xc0 | c >> 6);
  }
  put(0x80 | (c & 0x3f));
}

// Text is kept as JSON has it: a number as its digits, text in quotes; so one array holds both.
std::vector<gxRecordId> idsOf(const Array& a) {
  std::vector<gxRecordId> ids;
  if (a.type.size() < 3 || a.type[1] != 'U') {
    for (const std::int64_t number : integers<std::int64_t>(a, "id"))
      ids.push_back({std::to_string(number), true, true});
    return ids;
  }
  gx_ByteScanner in(a.data.data(), a.data.size());
  const std::uint64_t length = a.rows == 0 ? 0 : a.data.size() / a.rows / 4;
  for (std::uint64_t i = 0; i < a.rows; ++i) {
    std::string text;
    for (std::uint64_t k = 0; k < length; ++k) {
      const auto c = in.readUnchecked<std::uint32_t>();
      if (c != 0) appendUtf8(c, text);
    }
    const bool quoted = text.size() > 1 && text.front() == '"' && text.back() == '"';
    if (quoted) text = text.substr(1, text.size() - 2);
    ids.push_back({text, !text.empty() || quoted, !quoted && !text.empty()});
  }
  return ids;
}

// ---- Writing ---------------------------------------------------------------------------------------------

std::uint32_t crc32(std::string_view bytes) {
  static const auto table = [] {
    std::array<std::uint32_t, 256> t{};
    for (std::uint32_t i = 0; i < 256; ++i) {
      std::uint32_t c = i;
      for (int k = 0; k < 8; ++k) c = (c & 1) != 0 ? 0xedb88320U ^ (c >> 1) : c >> 1;
      t[i] = c;
    }
    return t;
  }();
  std::uint32_t crc = 0xffffffffU;
  for (const char c : bytes) crc = table[(crc ^ static_cast<unsigned char>(c)) & 255] ^ (crc >> 8);
  return ~crc;
}

// A zip file of stored members, always with the 64-bit sizes.
class ZipWriter {
 public:
  void add(const std::string& name, std::string_view content) {
    const std::uint64_t at = out_.size();
    const std::uint32_t sum = crc32(content);
    gx_appendLittle(std::uint32_t{0x04034b50}, out_);
    fields(sum, name, out_);
    gx_appendLittle(std::uint16_t{20}, out_);
    out_ += name;
    gx_appendLittle(std::uint16_t{1}, out_);
    gx_appendLittle(std::uint16_t{16}, out_);
    gx_appendLittle(static_cast<std::uint64_t>(content.size()), out_);
    gx_appendLittle(static_cast<std::uint64_t>(content.size()), out_);
    out_ += content;
    directoryEntry(sum, name, content.size(), at);
    ++count_;
  }

  std::string finish() {
    const std::uint64_t at = out_.size();
    out_ += directory_;
    const std::uint64_t end = out_.size();
    gx_appendLittle(std::uint32_t{0x06064b50}, out_);
    gx_appendLittle(std::uint64_t{44}, out_);
    gx_appendLittle(std::uint16_t{45}, out_);
    gx_appendLittle(std::uint16_t{45}, out_);
    gx_appendLittle(std::uint64_t{0}, out_);
    for (const std::uint64_t number : {std::uint64_t{count_}, std::uint64_t{count_}, end - at, at})
      gx_appendLittle(number, out_);
    gx_appendLittle(std::uint32_t{0x07064b50}, out_);
    gx_appendLittle(std::uint32_t{0}, out_);
    gx_appendLittle(end, out_);
    gx_appendLittle(std::uint32_t{1}, out_);
    gx_appendLittle(std::uint32_t{0x06054b50}, out_);
    gx_appendLittle(std::uint32_t{0}, out_);
    gx_appendLittle(std::uint16_t{count_}, out_);
    gx_appendLittle(std::uint16_t{count_}, out_);
    gx_appendLittle(std::uint32_t{0xffffffff}, out_);
    gx_appendLittle(std::uint32_t{0xffffffff}, out_);
    gx_appendLittle(std::uint16_t{0}, out_);
    return std::move(out_);
  }

 private:
  // What a member's head and its entry in the directory have alike.
  static void fields(std::uint32_t sum, const std::string& name, std::string& out) {
    gx_appendLittle(std::uint16_t{45}, out);  // the version that reads 64-bit sizes
    gx_appendLittle(std::uint16_t{0}, out);
    gx_appendLittle(std::uint16_t{0}, out);  // stored
    gx_appendLittle(std::uint16_t{0}, out);
    gx_appendLittle(std::uint16_t{0x21}, out);  // 1 January 1980: the same bytes every day
    gx_appendLittle(sum, out);
    gx_appendLittle(std::uint32_t{0xffffffff}, out);
    gx_appendLittle(std::uint32_t{0xffffffff}, out);
    gx_appendLittle(static_cast<std::uint16_t>(name.size()), out);
  }

  void directoryEntry(std::uint32_t sum, const std::string& name, std::uint64_t size, std::uint64_t at) {
    gx_appendLittle(std::uint32_t{0x02014b50}, directory_);
    gx_appendLittle(std::uint16_t{45}, directory_);
    fields(sum, name, directory_);
    gx_appendLittle(std::uint16_t{28}, directory_);
    directory_.append(10, '\0');
    gx_appendLittle(std::uint32_t{0xffffffff}, directory_);
    directory_ += name;
    gx_appendLittle(std::uint16_t{1}, directory_);
    gx_appendLittle(std::uint16_t{24}, directory_);
    for (const std::uint64_t number : {size, size, at}) gx_appendLittle(number, directory_);
  }

  std::string out_;
  std::string directory_;
  std::uint16_t count_ = 0;
};

std::string npyHead(const std::string& type, const std::string& shape) {
  std::string head = "{'descr': '" + type + "', 'fortran_order': False, 'shape': " + shape + ", }";
  while ((head.size() + 11) % 64 != 0) head += ' ';
  head += '\n';
  std::string out("\x93NUMPY\1\0", 8);
  gx_appendLittle(static_cast<std::uint16_t>(head.size()), out);
  return out + head;
}

template <class T>
void addArray(ZipWriter& zip, const char* name, const char* type, const std::vector<T>& numbers) {
  std::string out = npyHead(type, "(" + std::to_string(numbers.size()) + ",)");
  for (const T number : numbers) gx_appendLittle(number, out);
  zip.add(std::string(name) + ".npy", out);
}

std::vector<std::uint32_t> codePoints(const std::string& utf8) {
  std::vector<std::uint32_t> all;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto c = static_cast<unsigned char>(utf8[i++]);
    std::uint32_t code = c < 0x80 ? c : (c >= 0xf0 ? c & 7U : (c >= 0xe0 ? c & 15U : c & 31U));
    while (c >= 0xc0 && i < utf8.size() && (static_cast<unsigned char>(utf8[i]) & 0xc0) == 0x80) {
      code = code << 6 | (static_cast<unsigned char>(utf8[i++]) & 0x3fU);
    }
    all.push_back(code);
  }
  return all;
}

void addIds(ZipWriter& zip, const std::vector<gxRecordId>& ids) {
  std::vector<std::vector<std::uint32_t>> texts;
  std::size_t longest = 1;
  for (const auto& id : ids) {
    texts.push_back(codePoints(id.isGiven && !id.isNumber ? '"' + id.text + '"' : id.text));
    longest = (std::max)(longest, texts.back().size());
  }
  std::string out = npyHead("<U" + std::to_string(longest), "(" + std::to_string(ids.size()) + ",)");
  for (auto& text : texts) {
    text.resize(longest, 0);
    for (const std::uint32_t c : text) gx_appendLittle(c, out);
  }
  zip.add("id.npy", out);
}

}  // namespace

gxRaggedArrays::gxRaggedArrays(std::string_view file) {
  const Arrays arrays = readMembers(file);
  const Array& coords = wanted(arrays, "coords");
  const auto numbers = doubles(coords);
  if (coords.columns != 2 && !numbers.empty())
    fail(Code::eBadType, coords.at, "coords is not of shape (n, 2)");
  for (std::size_t i = 0; i + 1 < numbers.size(); i += 2)
    coords_.emplace_back(numbers[i], numbers[i + 1]);
  rings_ = offsets(arrays, "ring_offsets", coords_.size());
  const std::size_t rings = rings_.size() - 1;
  if (arrays.contains("part_offsets")) {
    parts_ = offsets(arrays, "part_offsets", rings);
    shapes_ = offsets(arrays, "shape_offsets", parts_.size() - 1);
  } else {
    parts_ = offsets(arrays, "shape_offsets", rings);
    shapes_.resize(parts_.size());
    for (std::size_t i = 0; i < shapes_.size(); ++i) shapes_[i] = static_cast<std::int64_t>(i);
  }
  if (arrays.contains("kind")) kinds_ = integers<std::int8_t>(wanted(arrays, "kind"), "kind");
  if (arrays.contains("id")) ids_ = idsOf(wanted(arrays, "id"));
  if (arrays.contains("magnitude"))
    magnitudes_ = integers<std::uint16_t>(wanted(arrays, "magnitude"), "magnitude");
  if (arrays.contains("angle")) angles_ = integers<std::uint8_t>(wanted(arrays, "angle"), "angle");
  hasEdges_ =
      magnitudes_.size() == coords_.size() && angles_.size() == coords_.size() && !coords_.empty();
  const bool lengthsFit = (kinds_.empty() || kinds_.size() == size()) &&
                          (ids_.empty() || ids_.size() == size()) &&
                          (hasEdges_ || (magnitudes_.empty() && angles_.empty()));
  if (!lengthsFit)
    fail(Code::eBadSyntax, 0, "kind and id have one entry a shape, magnitude and angle one a point");
  for (const std::int8_t kind : kinds_) {
    if (kind < 0 || kind > 4)
      fail(Code::eBadType, 0, "the kind " + std::to_string(kind) + " does not exist");
  }
}

void gxRaggedArrays::get(std::size_t shape, gxRecord& record) const {
  record.clear();
  const auto part0 = static_cast<std::size_t>(shapes_[shape]);
  const auto part1 = static_cast<std::size_t>(shapes_[shape + 1]);
  record.kind = kinds_.empty() ? (part1 - part0 == 1 ? gxRecord::Kind::eRegion : gxRecord::Kind::eSet)
                               : static_cast<gxRecord::Kind>(kinds_[shape]);
  const bool closed = record.kind == gxRecord::Kind::eRegion || record.kind == gxRecord::Kind::eSet;
  for (std::size_t p = part0; p < part1; ++p) {
    for (auto r = static_cast<std::size_t>(parts_[p]); r < static_cast<std::size_t>(parts_[p + 1]);
         ++r) {
      for (auto i = static_cast<std::size_t>(rings_[r]); i < static_cast<std::size_t>(rings_[r + 1]);
           ++i) {
        record.points.push_back(coords_[i]);
        if (hasEdges_) record.magnitudes.push_back(magnitudes_[i]);
        if (hasEdges_) record.angles.push_back(angles_[i]);
      }
      record.endRing(closed);
    }
    record.endPart();
  }
  if (!ids_.empty()) record.id = ids_[shape];
  record.dropEmptyRing();
}

void gxRaggedArrays::add(const gxRecord& record) {
  const bool closed = record.kind == gxRecord::Kind::eRegion || record.kind == gxRecord::Kind::eSet;
  // Arrays of edges have an entry for every point, so those of earlier shapes come when the first has some.
  hasEdges_ = hasEdges_ || record.hasEdges();
  const auto addPoint = [&](std::size_t i) {
    coords_.push_back(record.points[i]);
    if (!hasEdges_) return;
    magnitudes_.resize(coords_.size());
    angles_.resize(coords_.size());
    if (record.hasEdges()) magnitudes_.back() = record.magnitudes[i];
    if (record.hasEdges()) angles_.back() = record.angles[i];
  };
  for (std::size_t p = 0; p < record.partCount(); ++p) {
    for (std::size_t r = record.firstRing(p); r < record.partEnds[p]; ++r) {
      const auto ring = record.ring(r);
      const auto first = static_cast<std::size_t>(ring.data() - record.points.data());
      for (std::size_t i = 0; i < ring.size(); ++i) addPoint(first + i);
      if (closed && ring.size() > 1 && ring.back() == ring.front()) addPoint(first);
      rings_.push_back(static_cast<std::int64_t>(coords_.size()));
    }
    parts_.push_back(static_cast<std::int64_t>(rings_.size() - 1));
  }
  shapes_.push_back(static_cast<std::int64_t>(parts_.size() - 1));
  kinds_.push_back(static_cast<std::int8_t>(record.kind));
  ids_.push_back(record.id);
}

std::string gxRaggedArrays::file() const {
  ZipWriter zip;
  std::string coords = npyHead("<f8", "(" + std::to_string(coords_.size()) + ", 2)");
  for (const auto& p : coords_) {
    gx_appendLittle(p.x(), coords);
    gx_appendLittle(p.y(), coords);
  }
  zip.add("coords.npy", coords);
  addArray(zip, "ring_offsets", "<i8", rings_);
  addArray(zip, "part_offsets", "<i8", parts_);
  addArray(zip, "shape_offsets", "<i8", shapes_);
  addArray(zip, "kind", "|i1", kinds_);
  addIds(zip, ids_);
  if (hasEdges_) addArray(zip, "magnitude", "<u2", magnitudes_);
  if (hasEdges_) addArray(zip, "angle", "|u1", angles_);
  return zip.finish();
}
