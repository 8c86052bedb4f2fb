/// What the functions of the module share.
///
/// JavaScript calls functions of C (`gxweb_…`).  A shape crosses as an address, coordinates as one array of
/// doubles, an answer as one array of doubles and a text that stay until the next call.  No exception crosses:
/// `answered` catches it, and its class, number and text are then the answer.
#pragma once

#include <cntr/region.h>
#include <gauge/locate.h>
#include <gauge/places.h>
#include <io/record.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#if defined(__EMSCRIPTEN__)
#  include <emscripten.h>
#  define GXWEB_API extern "C" EMSCRIPTEN_KEEPALIVE
#else
#  define GXWEB_API extern "C"
#endif

/// A shape as the page holds it: the record, and what has been made of it so far.  A change of points drops
/// the latter.
struct gxwebShape {
  gxRecord record;

  const gxRegion& region();     ///< of a set the first region
  const gxLocator& locator();   ///< of the whole
  std::vector<double> numbers;  ///< of the shape itself: a repair's report
  void changed();

  bool isSet() const { return record.kind == gxRecord::Kind::eSet; }
  bool isArea() const { return isSet() || record.kind == gxRecord::Kind::eRegion; }

 private:
  std::optional<gxRegion> region_;
  std::unique_ptr<gxLocator> locator_;
};

/// The answer of the last call.
struct gxwebAnswer {
  std::vector<double> numbers;
  std::string text;

  void clear();
  void add(double number) { numbers.push_back(number); }
  void add(gxStatus status) { numbers.push_back(static_cast<double>(status)); }
  void add(const gxVector<2>& point);
  void add(const gxPlace& place);  ///< ring, edge, t, x, y
};

gxwebAnswer& gfAnswer();
/// Turns the exception that is being handled into the answer.
void gfAnswerWithError();

/// Runs one call: what it adds to the answer is the answer, 0 is returned; after an exception −1, and the
/// answer tells of it.
template <class Work>
int gfAnswered(const Work& work) {
  gfAnswer().clear();
  try {
    work(gfAnswer());
    return 0;
  } catch (...) {
    gfAnswerWithError();
    return -1;
  }
}

/// The same for what makes a shape: null after an exception.
template <class Work>
gxwebShape* gfMade(const Work& work) {
  gfAnswer().clear();
  try {
    auto shape = std::make_unique<gxwebShape>();
    work(*shape);
    return shape.release();
  } catch (...) {
    gfAnswerWithError();
    return nullptr;
  }
}
