// GeoJSON.  A geometry's type may come behind its coordinates: then they are passed over, and read when
// the type is known.
#include <io/internal/json_rings.h>
#include <io/json.h>

#include <optional>

namespace {

using Code = gxReadError::Code;
using Kind = gxRecord::Kind;

class FeatureReader {
 public:
  FeatureReader(std::string_view text, const gxReadLimits& limits, std::string_view idField,
                gxRecord& record)
      : in_(text, limits), idField_(idField), record_(record) {}

  void read() {
    object(1);
    in_.skipSpace();
    if (!in_.atEnd()) in_.failWanted("the end of the feature");
    if (!record_.id.isGiven && property_.isGiven) record_.id = property_;
  }

 private:
  // A feature or a geometry: both are objects whose members are told apart by name.
  void object(int depth) {
    std::string type;
    std::uint64_t typeAt = in_.byte();
    std::optional<gx_JsonScanner> coordinates;
    bool hasGeometry = false;
    in_.beginObject(depth);
    std::string key;
    while (in_.nextKey(key)) {
      if (key == "type") {
        in_.skipSpace();
        typeAt = in_.byte();
        in_.string(type);
      } else if (key == "geometry" && depth == 1) {
        hasGeometry = true;
        if (!in_.takeNull()) object(depth + 1);
      } else if (key == "coordinates") {
        coordinates = in_;
        in_.skipValue(depth + 1);
      } else {
        other(key, depth);
      }
    }
    if (type == "Feature" || (type.empty() && hasGeometry)) return;
    geometry(type, typeAt, coordinates, depth + 1);
  }

  void other(const std::string& key, int depth) {
    if (key == "id" && depth == 1) return in_.id(record_.id);
    if (key == "properties" && depth == 1 && !idField_.empty()) return properties();
    in_.skipValue(depth + 1);
  }

  void properties() {
    if (in_.takeNull()) return;
    in_.beginObject(2);
    std::string key;
    while (in_.nextKey(key)) {
      if (key == idField_)
        in_.id(property_);
      else
        in_.skipValue(3);
    }
  }

  void geometry(const std::string& type, std::uint64_t typeAt, std::optional<gx_JsonScanner>& at,
                int depth) {
    for (const char* known : {"GeometryCollection", "MultiLineString"}) {
      if (type == known) throw gxReadError(Code::eUnsupported, typeAt, type + " is not read");
    }
    const bool exists = type == "Polygon" || type == "MultiPolygon" || type == "LineString" ||
                        type == "Point" || type == "MultiPoint";
    if (!exists) {
      throw gxReadError(Code::eBadType, typeAt,
                        type.empty() ? "\"type\" is missing"
                                     : "the type \"" + type.substr(0, 40) + "\" does not exist");
    }
    if (!at) throw gxReadError(Code::eBadSyntax, typeAt, "\"coordinates\" is missing");
    shape(type, *at, depth);
  }

  void shape(const std::string& type, gx_JsonScanner& at, int depth) {
    if (type == "MultiPolygon") {
      record_.kind = Kind::eSet;
      return gx_readParts(at, record_, depth);
    }
    if (type == "Polygon") {
      record_.kind = Kind::eRegion;
      gx_readPart(at, record_, depth);
    } else if (type == "Point") {
      record_.kind = Kind::ePoints;
      point(at, depth);
      record_.endPart();
    } else {
      record_.kind = type == "LineString" ? Kind::eOpen : Kind::ePoints;
      gx_readRing(at, record_, false, depth);
      record_.endPart();
    }
    record_.dropEmptyRing();
  }

  // An empty array is the point without coordinates.
  void point(gx_JsonScanner& at, int depth) {
    gx_JsonScanner ahead = at;
    ahead.beginArray(depth);
    if (ahead.nextItem()) gx_readPoint(at, record_, depth);
    record_.endRing(false);
  }

  gx_JsonScanner in_;
  std::string_view idField_;
  gxRecord& record_;
  gxRecordId property_;
};

void appendGeometry(const gxRecord& record, std::string& out) {
  const bool none = record.partCount() == 0;
  const auto first = none ? std::span<const gxVector<2>>() : record.ring(0);
  switch (record.kind) {
    case Kind::eEmpty: out += "null"; return;
    case Kind::eRegion:
      out += "{\"type\":\"Polygon\",\"coordinates\":";
      if (none)
        out += "[]";
      else
        gx_appendPart(record, 0, true, out);
      break;
    case Kind::eSet:
      out += "{\"type\":\"MultiPolygon\",\"coordinates\":";
      gx_appendParts(record, true, out);
      break;
    case Kind::eOpen:
      out += "{\"type\":\"LineString\",\"coordinates\":";
      gx_appendRing(first, false, false, out);
      break;
    case Kind::ePoints:
      out += first.size() == 1 ? "{\"type\":\"Point\",\"coordinates\":"
                               : "{\"type\":\"MultiPoint\",\"coordinates\":";
      if (first.size() == 1)
        gx_appendPoint(first[0], out);
      else
        gx_appendRing(first, false, false, out);
      break;
  }
  out += '}';
}

}  // namespace

void gfReadGeoJson(std::string_view text, gxRecord& record, const gxReadLimits& limits,
                   std::string_view idField) {
  FeatureReader(text, limits, idField, record).read();
}

void gfAppendGeoJson(const gxRecord& record, std::string& out) {
  out += "{\"type\":\"Feature\"";
  if (record.id.isGiven) {
    out += ",\"id\":";
    gx_appendId(record.id, out);
  }
  out += ",\"properties\":{},\"geometry\":";
  appendGeometry(record, out);
  out += '}';
}
