// Files and texts: whole files into ragged arrays and back, single shapes as WKT, WKB and GeoJSON.
#include "batch.h"

#include <io/reader.h>
#include <io/wkb.h>
#include <io/wkt.h>
#include <io/writer.h>

#include <sstream>
#include <streambuf>

namespace {

// Bytes that are there already, as a stream.
class Memory : public std::streambuf {
 public:
  explicit Memory(std::string_view bytes) {
    char* begin = const_cast<char*>(bytes.data());  // a get area is read only
    setg(begin, begin, begin + bytes.size());
  }
};

py::object idOf(const gxRecord& record) {
  if (!record.id.isGiven) return py::int_(record.number);
  if (record.id.isNumber) return py::int_(py::str(record.id.text));
  return py::str(record.id.text);
}

struct Read {
  std::vector<gxRecord> records;
  std::vector<gxReadError> errors;
  std::vector<std::size_t> places;  // of the errors among the records
  std::string format;
};

Read readAll(std::string_view bytes, const std::string& format, const std::string& idField) {
  Memory memory(bytes);
  std::istream stream(&memory);
  gxReadOptions options;
  options.format = gfFormatOf(format);
  options.idField = idField;
  gxRecordReader reader(stream, options);
  Read read;
  read.format = gfFormatName(reader.format());
  gxRecord record;
  while (true) {
    try {
      if (!reader.next(record)) return read;
    } catch (const gxReadError& error) {
      if (error.record() == 0) throw;
      read.errors.push_back(error);
      read.places.push_back(read.records.size());
      record.clear();
      record.number = error.record();
    }
    read.records.push_back(record);
  }
}

// A record that could not be read stands as a shape without rings, so that rows keep their places.
py::tuple readFile(const py::bytes& content, const std::string& format, const std::string& idField) {
  const std::string_view bytes = content;
  const Read read = unlocked(bytes.size() / 16, [&] { return readAll(bytes, format, idField); });
  MadeShapes made(read.records.size());
  py::list ids;
  for (std::size_t i = 0; i < read.records.size(); ++i) {
    gxRecord record = read.records[i];
    if (record.kind == gxRecord::Kind::ePoints) record.kind = gxRecord::Kind::eOpen;
    made.set(i, record);
    ids.append(idOf(record));
  }
  py::list errors;
  for (std::size_t k = 0; k < read.errors.size(); ++k) {
    const gxReadError& e = read.errors[k];
    errors.append(py::make_tuple(read.places[k], e.name(), static_cast<long>(e.code()), e.what(),
                                 e.record(), e.byte()));
  }
  return py::make_tuple(made.arrays(), ids, errors, read.format);
}

gxRecordId idFrom(const py::handle& id) {
  if (id.is_none()) return {};
  return {py::str(id).cast<std::string>(), true, py::isinstance<py::int_>(id)};
}

py::bytes writeFile(const Ragged& shapes, const py::list& ids, const std::string& format) {
  const gxFormat wanted = gfFormatOf(format);
  if (wanted == gxFormat::eUnknown) throw std::invalid_argument("no format '" + format + "'");
  std::ostringstream stream;
  gxRecordWriter writer(stream, wanted);
  gxRecord record;
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    shapes.get(i, record);
    record.number = i + 1;
    if (i < ids.size()) record.id = idFrom(ids[i]);
    writer.write(record);
  }
  writer.finish();
  return stream.str();
}

std::string toWkt(const Shape& shape) {
  gxRecord record;
  shape.into(record);
  std::string text;
  gfAppendWkt(record, text);
  return text;
}

py::bytes toWkb(const Shape& shape) {
  gxRecord record;
  shape.into(record);
  std::string bytes;
  gfAppendWkb(record, bytes);
  return bytes;
}

Shape fromWkt(const std::string& text) {
  gxRecord record;
  record.number = 1;
  gfReadWkt(text, record);
  return shapeOf(record);
}

Shape fromWkb(const py::bytes& content) {
  const std::string_view bytes = content;
  gxRecord record;
  record.number = 1;
  gfReadWkb(std::span(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()), record);
  return shapeOf(record);
}

Shape shapeAt(const Ragged& shapes, std::size_t i) {
  gxRecord record;
  shapes.get(i, record);
  return shapeOf(record);
}

// The arrays of shapes that stand one by one.
py::tuple gather(const std::vector<Shape>& shapes) {
  MadeShapes made(shapes.size());
  gxRecord record;
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    shapes[i].into(record);
    made.set(i, record);
  }
  return made.arrays();
}

}  // namespace

void bindFiles(py::module_& module) {
  module.def("read_file", &readFile, "content"_a, "format"_a, "id_field"_a);
  module.def("write_file", &writeFile, "shapes"_a, "ids"_a, "format"_a);
  module.def("to_wkt", &toWkt, "shape"_a);
  module.def("to_wkb", &toWkb, "shape"_a);
  module.def("from_wkt", &fromWkt, "text"_a);
  module.def("from_wkb", &fromWkb, "content"_a);
  module.def("shape_at", &shapeAt, "shapes"_a, "index"_a);
  module.def("gather", &gather, "shapes"_a);
}
