// Files of every format, as whoever wants to do harm would write them: the first byte says how the rest is
// read.  What was read must be writable in every format.
#include <io/reader.h>
#include <io/writer.h>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  gxReadOptions options;
  options.format = static_cast<gxFormat>(data[0] % 9);
  options.everyLine = (data[0] & 0x80U) != 0;
  options.limits.recordBytes = 1U << 16;
  std::istringstream in(std::string(reinterpret_cast<const char*>(data + 1), size - 1));
  try {
    gxRecordReader reader(in, options);
    gxRawRecord raw;
    gxRecord record;
    while (reader.cut(raw)) {
      try {
        reader.parse(raw, record);
      } catch (const gxReadError&) {
        continue;
      }
      std::string text;
      for (int format = 1; format <= 8; ++format)
        gxRecordWriter::append(static_cast<gxFormat>(format), record, text);
    }
  } catch (const gxReadError&) {
    return 0;
  }
  return 0;
}
