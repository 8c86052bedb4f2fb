// The demo: every scene in turn.
//
//   gxshape_demo DATA OUT
//
// DATA is examples/data, OUT a folder for the pictures and archives, made where there is none.
// Ends with 0, with 1 and a message when a scene fails, with 2 when the arguments are not two.

#include "scenes.h"

#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: gxshape_demo DATA OUT\n");
    return 2;
  }
  try {
    const std::filesystem::path data = argv[1];
    const std::filesystem::path out = argv[2];
    std::filesystem::create_directories(out);
    showCountries(data, out);
    showTangled(data, out);
    showCoinSet(data);
    showEdgePoints(data, out);
    showArchives(data, out);
    showInspection(data, out);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "gxshape_demo: %s\n", error.what());
    return 1;
  }
}
