// Formats by name and by content.  The file's name never decides: input comes through pipes too.
#include <io/ragged.h>
#include <io/reader.h>

#include <array>
#include <utility>

namespace {

constexpr std::array<std::pair<gxFormat, const char*>, 8> kNames = {{{gxFormat::eWkt, "wkt"},
                                                                     {gxFormat::eWkb, "wkb"},
                                                                     {gxFormat::eGeoJson, "geojson"},
                                                                     {gxFormat::eJsonl, "jsonl"},
                                                                     {gxFormat::eCsv, "csv"},
                                                                     {gxFormat::eRagged, "ragged"},
                                                                     {gxFormat::eNpz, "npz"},
                                                                     {gxFormat::eArchive, "gxa"}}};

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isHex(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// At least ten hexadecimal digits alone, beginning as well-known binary does.
bool isWkbLine(std::string_view text) {
  std::size_t count = 0;
  while (count < text.size() && isHex(text[count])) ++count;
  const bool ends =
      count == text.size() || text[count] == '\n' || text[count] == '\r' || text[count] == ' ';
  return count >= 10 && ends && text[0] == '0' && (text[1] == '0' || text[1] == '1');
}

// A GeoJSON object says so in its "type", or has "features".
bool isGeoJson(std::string_view text) {
  for (const char* word :
       {"\"Feature\"", "\"FeatureCollection\"", "\"features\"", "\"geometry\"", "\"coordinates\"",
        "\"Polygon\"", "\"MultiPolygon\"", "\"LineString\"", "\"MultiLineString\"", "\"Point\"",
        "\"MultiPoint\"", "\"GeometryCollection\""}) {
    if (text.find(word) != std::string_view::npos) return true;
  }
  return false;
}

// The names of well-known text are letters alone; those of columns end at a comma.
gxFormat byLetters(std::string_view text) {
  std::size_t end = 0;
  while (end < text.size() && (isLetter(text[end]) || text[end] == '_')) ++end;
  while (end < text.size() && (text[end] == ' ' || text[end] == '"')) ++end;
  return end < text.size() && text[end] == ',' ? gxFormat::eCsv : gxFormat::eWkt;
}

}  // namespace

const char* gfFormatName(gxFormat format) {
  for (const auto& [known, name] : kNames) {
    if (known == format) return name;
  }
  return "unknown";
}

gxFormat gfFormatOf(std::string_view name) {
  for (const auto& [format, known] : kNames) {
    if (name == known) return format;
  }
  return gxFormat::eUnknown;
}

gxFormat gfDetectFormat(std::string_view text) {
  using Code = gxReadError::Code;
  if (text.starts_with("\x89GXA")) return gxFormat::eArchive;
  if (text.starts_with(gnRaggedMark)) return gxFormat::eRagged;
  if (text.starts_with("PK")) return gxFormat::eNpz;
  if (text.starts_with("\x1f\x8b"))
    throw gxReadError(Code::eCompressed, 0, "compressed with gzip: gunzip first");
  if (text.starts_with("\x28\xb5\x2f\xfd"))
    throw gxReadError(Code::eCompressed, 0, "compressed with zstd: unzstd first");
  if (text.starts_with("\xef\xbb\xbf")) text.remove_prefix(3);
  while (!text.empty() && (text[0] == '\n' || text[0] == '\r' || text[0] == ' ' || text[0] == '\t'))
    text.remove_prefix(1);
  if (text.empty()) return gxFormat::eUnknown;
  if (text[0] == '{') return isGeoJson(text) ? gxFormat::eGeoJson : gxFormat::eJsonl;
  if (text[0] == '[') {
    throw gxReadError(Code::eUnsupported, 0, "a JSON array: make lines of it with jq -c '.[]'");
  }
  if (isWkbLine(text)) return gxFormat::eWkb;
  if (isLetter(text[0])) return byLetters(text);
  const bool number =
      isDigit(text[0]) || text[0] == '-' || text[0] == '+' || text[0] == '.' || text[0] == '"';
  return number ? gxFormat::eCsv : gxFormat::eUnknown;
}
