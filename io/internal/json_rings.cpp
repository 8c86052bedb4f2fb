// Arrays within arrays, read and written the same way by both kinds of JSON.
#include <io/internal/json_rings.h>
#include <io/json.h>
#include <io/number_writer.h>

#include <cmath>

void gx_readPoint(gx_JsonScanner& in, gxRecord& record, int depth) {
  in.beginArray(depth);
  double xy[2] = {0.0, 0.0};
  int count = 0;
  while (in.nextItem()) {
    const double value = in.numberOrWord();
    if (count < 2)
      xy[count] = value;
    else
      record.hadMore = true;
    ++count;
  }
  if (count < 2)
    in.fail(gxReadError::Code::eBadType,
            "a point of two numbers expected, found " + std::to_string(count));
  in.addPoint(record, xy[0], xy[1]);
}

void gx_readRing(gx_JsonScanner& in, gxRecord& record, bool closed, int depth) {
  in.beginArray(depth);
  bool more = in.nextItem();
  while (more) {
    gx_readPoint(in, record, depth + 1);
    more = in.nextItem();
  }
  in.endRing(record, closed);
}

void gx_readPart(gx_JsonScanner& in, gxRecord& record, int depth) {
  in.beginArray(depth);
  while (in.nextItem()) gx_readRing(in, record, true, depth + 1);
  record.endPart();
}

void gx_readParts(gx_JsonScanner& in, gxRecord& record, int depth) {
  in.beginArray(depth);
  while (in.nextItem()) gx_readPart(in, record, depth + 1);
}

namespace {

void appendNumber(double value, std::string& out) {
  if (std::isfinite(value)) return gfAppendNumber(value, out);
  out += '"';
  gfAppendNumber(value, out);
  out += '"';
}

}  // namespace

void gx_appendPoint(const gxVector<2>& p, std::string& out) {
  out += '[';
  appendNumber(p.x(), out);
  out += ',';
  appendNumber(p.y(), out);
  out += ']';
}

void gx_appendRing(std::span<const gxVector<2>> ring, bool closed, bool repeat, std::string& out) {
  out += '[';
  for (const auto& p : ring) {
    if (&p != ring.data()) out += ',';
    gx_appendPoint(p, out);
  }
  const bool looksRepeated = ring.size() > 1 && ring.back() == ring.front();
  if (closed && !ring.empty() && (repeat || looksRepeated)) {
    out += ',';
    gx_appendPoint(ring[0], out);
  }
  out += ']';
}

void gx_appendPart(const gxRecord& record, std::size_t part, bool repeat, std::string& out) {
  out += '[';
  for (std::size_t r = record.firstRing(part); r < record.partEnds[part]; ++r) {
    if (r > record.firstRing(part)) out += ',';
    gx_appendRing(record.ring(r), true, repeat, out);
  }
  out += ']';
}

void gx_appendParts(const gxRecord& record, bool repeat, std::string& out) {
  out += '[';
  for (std::size_t p = 0; p < record.partCount(); ++p) {
    if (p > 0) out += ',';
    gx_appendPart(record, p, repeat, out);
  }
  out += ']';
}

void gx_appendId(const gxRecordId& id, std::string& out) {
  if (id.isNumber)
    out += id.text;
  else
    gfAppendJsonString(id.text, out);
}
