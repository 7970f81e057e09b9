#include "python/Native.h"

#include <cerrno>
#include <cstring>

namespace morvane_python {
namespace {

const char* codeName(morvane::StatusCode code) {
  switch (code) {
    case morvane::StatusCode::kOk:
      return "ok";
    case morvane::StatusCode::kNotFound:
      return "not-found";
    case morvane::StatusCode::kNotAllowed:
      return "not-allowed";
    case morvane::StatusCode::kReadOnly:
      return "read-only";
    case morvane::StatusCode::kNotAFile:
      return "not-a-file";
    case morvane::StatusCode::kBadArgument:
      return "bad-argument";
    case morvane::StatusCode::kOtherKind:
      return "other-kind";
    case morvane::StatusCode::kDamaged:
      return "damaged";
    case morvane::StatusCode::kUnsupported:
      return "unsupported";
    case morvane::StatusCode::kTooLarge:
      return "too-large";
    case morvane::StatusCode::kNoRoom:
      return "no-room";
    case morvane::StatusCode::kNoSpace:
      return "no-space";
    case morvane::StatusCode::kChanged:
      return "changed";
    case morvane::StatusCode::kOutOfMemory:
      return "out-of-memory";
    case morvane::StatusCode::kCannotRead:
      return "cannot-read";
    case morvane::StatusCode::kCannotWrite:
      return "cannot-write";
  }
  return "unknown";
}

// `type` is FileNotFoundError or another that takes an errno, its text and a file name.
[[noreturn]] void throwFileError(PyObject* type, int reason, const std::string& path) {
  const py::object name = py::reinterpret_steal<py::object>(
      PyUnicode_DecodeFSDefaultAndSize(path.data(), static_cast<Py_ssize_t>(path.size())));
  const py::object arguments = py::make_tuple(reason, std::strerror(reason), name);
  PyErr_SetObject(type, arguments.ptr());
  throw py::error_already_set();
}

}  // namespace

void throwError(const char* code, const std::string& text) {
  const py::object type = py::module_::import("morvane._errors").attr("Error");
  const py::object error = type(shownText(text.data(), text.size()), code);
  PyErr_SetObject(type.ptr(), error.ptr());
  throw py::error_already_set();
}

void check(const morvane::Status& status, const std::string& path) {
  switch (status.code()) {
    case morvane::StatusCode::kOk:
      return;
    case morvane::StatusCode::kNotFound:
      if (!path.empty()) throwFileError(PyExc_FileNotFoundError, ENOENT, path);
      break;
    case morvane::StatusCode::kNotAllowed:
    case morvane::StatusCode::kReadOnly:
      throwFileError(PyExc_PermissionError, EACCES, path);
    case morvane::StatusCode::kBadArgument:
      PyErr_SetObject(PyExc_ValueError,
                      shownText(status.text().data(), status.text().size()).ptr());
      throw py::error_already_set();
    case morvane::StatusCode::kOutOfMemory:
      PyErr_SetString(PyExc_MemoryError, status.text().c_str());
      throw py::error_already_set();
    default:
      break;
  }
  throwError(codeName(status.code()), status.text());
}

DocumentUse::DocumentUse(SharedDocument& shared) : shared_(shared) {
  if (shared.busy.exchange(true)) throwError("busy", "another thread is using the document");
}

std::string storedText(const py::str& text, const char* argument) {
  const py::object bytes = py::reinterpret_steal<py::object>(
      PyUnicode_AsEncodedString(text.ptr(), "utf-8", "surrogateescape"));
  if (!bytes) throw py::error_already_set();
  std::string stored = bytes.cast<std::string>();
  if (stored.find('\0') != std::string::npos)
    throw py::value_error(std::string(argument) + " holds a zero byte");
  return stored;
}

py::str shownText(const char* bytes, std::size_t size) {
  PyObject* const text =
      PyUnicode_DecodeUTF8(bytes, static_cast<Py_ssize_t>(size), "surrogateescape");
  if (text == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(text);
}

BytesArgument::BytesArgument(const py::handle& object, const char* argument) {
  if (PyObject_CheckBuffer(object.ptr()) == 0)
    throw py::type_error(std::string(argument) + " is not bytes-like");
  if (PyObject_GetBuffer(object.ptr(), &buffer_, PyBUF_SIMPLE) != 0) {
    PyErr_Clear();
    throw py::value_error(std::string(argument) + ": its bytes do not lie in a row; copy it first");
  }
}

}  // namespace morvane_python

PYBIND11_MODULE(_native, module) {
  module.doc() = "What the package morvane is made of; import that.";
  morvane_python::bindDocument(module);
  morvane_python::bindGoblins(module);
}
