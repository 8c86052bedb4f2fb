// The described repairs by the native library, for the tests of the page: WKT in; for each record a line with the
// outside walked around and one with it cut to a single loop, or the exception's text.
#include <cntr/region.h>
#include <io/reader.h>
#include <io/wkt.h>

#include <exception>
#include <iostream>
#include <string>

namespace {

std::string repaired(const gxRegion& region, bool hull) {
  std::string text;
  try {
    gxRecord result;
    result.assign(hull ? region.outerHull() : region.regularized());
    gfAppendWkt(result, text);
  } catch (const std::exception& error) {
    text = error.what();
  }
  return text;
}

}  // namespace

int main() {
  gxRecordReader reader(std::cin);
  gxRecord record;
  while (reader.next(record)) {
    const gxRegion region = record.toRegion();
    std::cout << repaired(region, false) << '\n' << repaired(region, true) << '\n';
  }
}
