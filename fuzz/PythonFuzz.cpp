// What Python hands to the module and what it gets from it: fuzz/boundary.py calls everything with
// arrays of any shape, type and stride, with bytes that are a document or goblins, and with what
// is neither. Python's own exceptions are answers; anything else that happens is a fault.
#include <pybind11/embed.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace py = pybind11;

namespace {

py::function startPython() {
  static py::scoped_interpreter* const interpreter = new py::scoped_interpreter;  // NOLINT: stays
  (void)interpreter;
  py::list path = py::module_::import("sys").attr("path");
  path.insert(0, MORVANE_PYTHON_FOLDER);
  path.insert(0, MORVANE_FUZZ_FOLDER);
  return py::module_::import("boundary").attr("call");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const py::function& call = *new py::function(startPython());
  try {
    call(py::bytes(reinterpret_cast<const char*>(data), size));
  } catch (const py::error_already_set& error) {
    std::fprintf(stderr, "fuzz: %s\n", error.what());
    std::abort();
  }
  return 0;
}
