// Exceptions of the library as exceptions of Python.  Python's classes stand in gxshape/_errors.py, whose
// function `from_library` makes one of the name of the C++ class, its number and its message; so a new
// class of the library needs nothing here.
#include "binding.h"

#include <io/read_error.h>
#include <velstd/exception.h>

namespace {

void raise(const std::string& name, long number, const std::string& message, std::uint64_t record,
           std::uint64_t byte) {
  const py::object make = py::module_::import("gxshape._errors").attr("from_library");
  const py::object error = make(name, number, message, record, byte);
  PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(error.ptr())), error.ptr());
}

// "gxContourDefs::BadParams: text" is the class and the text; some classes have no text.
std::pair<std::string, std::string> parted(const std::string& what) {
  const std::size_t colon = what.find(": ");
  if (colon == std::string::npos) return {what, ""};
  return {what.substr(0, colon), what.substr(colon + 2)};
}

// pybind11 calls it with a copy.
void translate(std::exception_ptr thrown) {  // NOLINT(performance-unnecessary-value-param)
  try {
    if (thrown) std::rethrow_exception(thrown);
  } catch (const gxReadError& error) {
    raise(error.name(), static_cast<long>(error.code()), error.what(), error.record(), error.byte());
  } catch (const gxException& error) {
    const auto [name, message] = parted(error.what());
    raise(name, error.errorNumber(), message, 0, 0);
  }
}

}  // namespace

void bindErrors(py::module_& module) {
  py::register_exception_translator(&translate);
  module.def(
      "throw_for_test",
      [](int which) {
        switch (which) {
          case 0: throw gxContourDefs::EmptyContour();
          case 1: throw gxContourDefs::BadParams(L"a text");
          case 2: throw gxBadPointer();
          case 3: throw gxMathError::Singular();
          case 4: throw std::bad_alloc();
          default: throw gxReadError(gxReadError::Code::eBadNumber, 7, 65, "number expected");
        }
      },
      "which"_a);
}
