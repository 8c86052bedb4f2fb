// The answer of a call, and exceptions as answers: the class's name and the text divided by a line feed, and
// number, record and byte as numbers.
#include "binding.h"

#include <io/read_error.h>
#include <velstd/exception.h>

#include <exception>
#include <new>
#include <stdexcept>

namespace {

void tell(const std::string& name, double number, const std::string& message, double record,
          double byte) {
  gxwebAnswer& answer = gfAnswer();
  answer.clear();
  answer.text = name + '\n' + message;
  answer.numbers = {number, record, byte};
}

// "gxContourDefs::BadParams: text" is the class and the text; some classes have no text.
void tellLibraryError(const gxException& error) {
  const std::string what = error.what();
  const std::size_t colon = what.find(": ");
  const std::string name = what.substr(0, colon);
  const std::string message = colon == std::string::npos ? "" : what.substr(colon + 2);
  tell(name, static_cast<double>(error.errorNumber()), message, 0, 0);
}

}  // namespace

gxwebAnswer& gfAnswer() {
  static gxwebAnswer answer;
  return answer;
}

void gxwebAnswer::clear() {
  numbers.clear();
  text.clear();
}

void gxwebAnswer::add(const gxVector<2>& point) {
  add(point.x());
  add(point.y());
}

void gxwebAnswer::add(const gxPlace& place) {
  add(static_cast<double>(place.ring));
  add(static_cast<double>(place.edge));
  add(place.t);
  add(place.point);
}

void gfAnswerWithError() {
  try {
    throw;
  } catch (const gxReadError& error) {
    tell(std::string("gxReadError::") + error.name(), static_cast<double>(error.code()), error.what(),
         static_cast<double>(error.record()), static_cast<double>(error.byte()));
  } catch (const gxException& error) {
    tellLibraryError(error);
  } catch (const std::bad_alloc&) {
    tell("std::bad_alloc", 0, "out of memory", 0, 0);
  } catch (const std::invalid_argument& error) {
    tell("bad_argument", 0, error.what(), 0, 0);
  } catch (const std::exception& error) {
    tell("std::exception", 0, error.what(), 0, 0);
  } catch (...) {
    tell("unknown", 0, "an exception of no known class", 0, 0);
  }
}

GXWEB_API const double* gxweb_numbers() {
  return gfAnswer().numbers.data();
}
GXWEB_API std::size_t gxweb_number_count() {
  return gfAnswer().numbers.size();
}
GXWEB_API const char* gxweb_text() {
  return gfAnswer().text.data();
}
GXWEB_API std::size_t gxweb_text_size() {
  return gfAnswer().text.size();
}

/// Throws an exception of each kind, so that the tests see each of them arrive.
GXWEB_API int gxweb_throw_for_test(int which) {
  return gfAnswered([&](gxwebAnswer&) {
    switch (which) {
      case 0: throw gxContourDefs::EmptyContour();
      case 1: throw gxContourDefs::BadParams(L"a text, größer");
      case 2: throw gxBadPointer();
      case 3: throw gxMathError::Singular();
      case 4: throw std::bad_alloc();
      case 5: throw gxReadError(gxReadError::Code::eBadNumber, 7, 65, "number expected");
      case 6: throw std::runtime_error("something else");
      default: throw which;
    }
  });
}
