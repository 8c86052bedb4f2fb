#include <io/records.h>

#include <io/writer.h>
#include <support/outline_files.h>
#include <support/random_doubles.h>
#include <support/source_folder.h>

#include <charconv>
#include <cmath>
#include <fstream>
#include <sstream>

namespace {

using Kind = gxRecord::Kind;

void addPoints(RandomDoubles& random, int count, gxRecord& record) {
  for (int i = 0; i < count; ++i) {
    switch (random.whole(4)) {
      case 0: record.points.emplace_back(random.anyFinite(), random.nasty()); break;
      case 1: record.points.emplace_back(random.whole(100), random.whole(100)); break;
      case 2: record.points.emplace_back(random.whole(100000) / 100.0, random.whole(7) / 8.0); break;
      default:
        record.points.emplace_back(random.uniform(-1e3, 1e3), random.withExponent(-30, 30));
        break;
    }
  }
}

void addId(RandomDoubles& random, gxRecord& record) {
  const char* const texts[] = {
      "a",  "plate 7",    "007", "quote\"d, with a comma", "\xc3\xa9\xe2\x82\xac\xf0\x9f\x99\x82",
      "-3", "back\\slash"};
  switch (random.whole(3)) {
    case 0: break;
    case 1: record.id = {std::to_string(1 + random.whole(1000000)), true, true}; break;
    default: record.id = {texts[random.whole(7)], true, false}; break;
  }
}

gxRecord recordOf(const FiledShape& shape) {
  gxRecord record;
  record.kind = Kind::eRegion;
  record.id = {shape.name, true, false};
  record.points = shape.outline;
  record.endRing(true);
  for (const auto& hole : shape.holes) {
    record.points.insert(record.points.end(), hole.begin(), hole.end());
    record.endRing(true);
  }
  record.endPart();
  return record;
}

}  // namespace

const std::vector<gxFormat>& everyFormat() {
  static const std::vector<gxFormat> all = {gxFormat::eWkt,   gxFormat::eWkb,    gxFormat::eGeoJson,
                                            gxFormat::eJsonl, gxFormat::eCsv,    gxFormat::eRagged,
                                            gxFormat::eNpz,   gxFormat::eArchive};
  return all;
}

gxRecord randomRecord(std::uint64_t seed) {
  RandomDoubles random(seed);
  gxRecord record;
  record.kind = static_cast<Kind>(random.whole(5));
  addId(random, record);
  if (record.kind == Kind::eEmpty) return record;
  const bool rings = record.kind == Kind::eRegion || record.kind == Kind::eSet;
  const int parts = record.kind == Kind::eSet ? random.whole(4) : 1;
  for (int p = 0; p < parts; ++p) {
    const int count = rings ? 1 + random.whole(3) : 1;
    for (int r = 0; r < count; ++r) {
      addPoints(random, 1 + random.whole(9), record);
      record.endRing(rings);
    }
    record.endPart();
  }
  return record;
}

std::vector<gxRecord> filedRecords() {
  std::vector<gxRecord> records;
  for (const char* file :
       {"/tests/data/coins/outlines.jsonl", "/tests/data/countries/countries_110m.jsonl",
        "/tests/data/glyphs/glyphs.jsonl"}) {
    for (const auto& shape : filedShapes(sourceFolder() + file)) records.push_back(recordOf(shape));
  }
  std::ifstream edges(sourceFolder() + "/examples/data/coins/edges.csv");
  gxRecordReader reader(edges);
  gxRecord record;
  while (reader.next(record)) records.push_back(record);
  return records;
}

std::string written(const std::vector<gxRecord>& records, gxFormat format) {
  std::ostringstream out;
  gxRecordWriter writer(out, format);
  for (const auto& record : records) writer.write(record);
  writer.finish();
  return out.str();
}

std::vector<gxRecord> allOf(const std::string& text, const gxReadOptions& options) {
  std::istringstream in(text);
  gxRecordReader reader(in, options);
  std::vector<gxRecord> records;
  gxRecord record;
  while (reader.next(record)) records.push_back(record);
  return records;
}

gxRecord asHeldBy(gxFormat format, const gxRecord& record) {
  gxRecord held = record;
  const bool noId = format == gxFormat::eWkt || format == gxFormat::eWkb;
  unsigned label = 0;
  const bool isLabel =
      record.id.isNumber &&
      std::from_chars(record.id.text.data(), record.id.text.data() + record.id.text.size(), label).ec ==
          std::errc() &&
      label > 0;
  if (noId || (format == gxFormat::eArchive && (!isLabel || record.kind == Kind::eSet))) held.id = {};
  const bool noEdges =
      noId || format == gxFormat::eGeoJson ||
      (format == gxFormat::eArchive && (record.kind == Kind::eSet || record.ringCount() != 1));
  if (noEdges) {
    held.magnitudes.clear();
    held.angles.clear();
  }
  if (format == gxFormat::eArchive) {
    if (held.kind == Kind::ePoints) held.kind = Kind::eOpen;
    if (held.kind == Kind::eEmpty) held.kind = Kind::eRegion;
  }
  return held;
}

std::vector<std::string> outcomes(const std::string& text, const gxReadOptions& options) {
  std::vector<std::string> all;
  try {
    std::istringstream in(text);
    gxRecordReader reader(in, options);
    gxRawRecord raw;
    gxRecord record;
    while (reader.cut(raw)) {
      try {
        reader.parse(raw, record);
        all.emplace_back("ok");
      } catch (const gxReadError& error) {
        all.emplace_back(error.name());
      }
    }
  } catch (const gxReadError& error) {
    all.push_back(std::string(error.name()) + "!");
  }
  return all;
}
