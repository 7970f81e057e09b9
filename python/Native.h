#ifndef MORVANE_PYTHON_NATIVE_H_
#define MORVANE_PYTHON_NATIVE_H_

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <atomic>
#include <string>

#include "psd/PsdDocument.h"
#include "util/Status.h"

// What the sources of morvane._native share. The package's Python files hold what people see: the
// documentation, the class Goblin, and checks of arguments.

namespace morvane_python {

namespace py = pybind11;

// Throws what stands for a failure in Python: FileNotFoundError and PermissionError for a file
// named `path` (empty: no file takes part), ValueError for a caller's own values, MemoryError, else
// morvane.Error with the code's name.
void check(const morvane::Status& status, const std::string& path = {});

[[noreturn]] void throwError(const char* code, const std::string& text);

// A document and the rule that only one thread at a time is in it.
struct SharedDocument {
  morvane::PsdDocument document{1, 1};
  std::atomic<bool> busy{false};
  std::uint64_t generation = 0;  // grows whenever a layer comes or goes
};

// The right to use a document, for as long as this object lives. Throws when another thread has it,
// which can be only while that thread is without the interpreter's lock.
class DocumentUse {
 public:
  explicit DocumentUse(SharedDocument& shared);
  ~DocumentUse() { shared_.busy = false; }
  DocumentUse(const DocumentUse&) = delete;
  DocumentUse& operator=(const DocumentUse&) = delete;

  morvane::PsdDocument* operator->() { return &shared_.document; }
  morvane::PsdDocument& operator*() { return shared_.document; }

 private:
  SharedDocument& shared_;
};

// The bytes of a str as names are stored: UTF-8, with whatever else was read in its place. Throws
// for a zero byte; `argument` names the str.
std::string storedText(const py::str& text, const char* argument);
py::str shownText(const char* bytes, std::size_t size);

// The bytes of a bytes-like object; they stay put for as long as this object lives.
class BytesArgument {
 public:
  // Throws TypeError, naming the argument, for what is not bytes-like, and ValueError for bytes
  // that do not lie in a row.
  BytesArgument(const py::handle& object, const char* argument);
  ~BytesArgument() { PyBuffer_Release(&buffer_); }
  BytesArgument(const BytesArgument&) = delete;
  BytesArgument& operator=(const BytesArgument&) = delete;

  const std::uint8_t* data() const { return static_cast<const std::uint8_t*>(buffer_.buf); }
  std::size_t size() const { return static_cast<std::size_t>(buffer_.len); }

 private:
  Py_buffer buffer_;
};

void bindDocument(py::module_& module);
void bindGoblins(py::module_& module);

}  // namespace morvane_python

#endif  // MORVANE_PYTHON_NATIVE_H_
