// Files: bytes that JavaScript has put into memory, read record by record.  A broken record is an error with its
// number and byte, and the next call goes on behind it.
#include "binding.h"

#include <io/reader.h>

#include <memory>
#include <sstream>
#include <string>

/// A file in memory, and how far it has been read.
struct gxwebFile {
  std::istringstream stream;
  std::unique_ptr<gxRecordReader> reader;
};

/// Begins to read; `format` is the number of one, 0 to tell it by the content.  Null after an error.
GXWEB_API gxwebFile* gxweb_open(const char* bytes, std::size_t size, int format) {
  gfAnswer().clear();
  try {
    auto file = std::make_unique<gxwebFile>();
    file->stream.str(std::string(bytes, size));
    gxReadOptions options;
    options.format = static_cast<gxFormat>(format);
    file->reader = std::make_unique<gxRecordReader>(file->stream, options);
    gfAnswer().text = gfFormatName(file->reader->format());
    return file.release();
  } catch (...) {
    gfAnswerWithError();
    return nullptr;
  }
}

/// Reads the next record.  Null at the end, where the answer is without numbers, and after an error, where it
/// has those of the error: the record's number is 0 where reading cannot go on.
GXWEB_API gxwebShape* gxweb_next(gxwebFile* file) {
  bool ended = false;
  gxwebShape* shape = gfMade([&](gxwebShape& made) { ended = !file->reader->next(made.record); });
  if (!ended) return shape;
  delete shape;
  return nullptr;
}

GXWEB_API void gxweb_close(gxwebFile* file) {
  delete file;
}
