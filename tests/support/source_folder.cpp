// The one file that is compiled with the checkout's place: the others come out the same wherever the
// checkout lies, so that a compiler cache serves all checkouts of one machine.

#include <support/source_folder.h>

std::string sourceFolder() {
  return GXSHAPE_SOURCE_DIR;
}
